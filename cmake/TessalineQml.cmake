# tessaline_add_qml_module(TARGET URI [LINK target...] [SOURCES file...] QML_FILES file...)
#
# Adds the C++ and QML files of a folder as the module URI. QML may import the modules whose targets are
# linked.
function(tessaline_add_qml_module target uri)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "LINK;SOURCES;QML_FILES")
    set(modules "")
    foreach(linked IN LISTS arg_LINK)
        get_target_property(module ${linked} TESSALINE_QML_URI)
        if(module)
            list(APPEND modules ${module})
        endif()
    endforeach()
    qt_add_library(${target} STATIC)
    set_target_properties(${target} PROPERTIES TESSALINE_QML_URI ${uri})
    qt_add_qml_module(${target}
        URI ${uri}
        VERSION 1.0
        RESOURCE_PREFIX /tessaline
        NO_PLUGIN
        IMPORT_PATH ${TESSALINE_QML_IMPORT_PATH}
        DEPENDENCIES QtQuick QtQml.Models ${modules} # base classes of the types in C++
        NO_CACHEGEN # compiling QML takes longer than it saves at start
        SOURCES ${arg_SOURCES}
        QML_FILES ${arg_QML_FILES})
    # Public, because the generated registration of QML types includes headers by their names.
    target_include_directories(${target} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${target}
        PUBLIC ${arg_LINK} Qt6::Qml Qt6::Quick
        PRIVATE tessaline_settings)
    set_property(GLOBAL APPEND PROPERTY TESSALINE_QML_MODULES ${target})
endfunction()

# tessaline_link_qml_modules(TARGET LIBRARY...)
#
# Links a program with libraries and with all object files of QML modules: the linker would drop those
# that only register QML types, because no code calls them.
function(tessaline_link_qml_modules target)
    get_property(modules GLOBAL PROPERTY TESSALINE_QML_MODULES)
    list(JOIN modules "," modules)
    set_target_properties(${target} PROPERTIES LINK_LIBRARY_OVERRIDE "WHOLE_ARCHIVE,${modules}")
    target_link_libraries(${target} PRIVATE ${ARGN})
endfunction()
