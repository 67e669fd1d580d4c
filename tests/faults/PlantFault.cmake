# plant_fault(NAME FILE file CAUGHT_BY check... [AS status] [FIND text REPLACE text] [INCLUDE header]
#             [LINK_OPTIONS option...])
#
# Builds a variant of the plug-in in which the text FIND in FILE of src/ is replaced by REPLACE. Adds a
# test check_fault_NAME_CHECK for each check, which passes if the check reports the defect with the
# status AS, by default "fail". INCLUDE adds an #include line to the top of FILE.
function(plant_fault name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "FILE;AS;FIND;REPLACE;INCLUDE" "CAUGHT_BY;LINK_OPTIONS")
    set(target "fault_${name}")
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/${name}")
    set(exports "${PROJECT_SOURCE_DIR}/src/Tessaline.map")
    set(copies "")   # files of src/ that are compiled or read again
    set(replaced "") # regular expression for the object files that the copies replace

    add_library(${target} MODULE EXCLUDE_FROM_ALL)
    add_dependencies(check_faults ${target})
    set_target_properties(${target} PROPERTIES AUTOMOC OFF)
    if(arg_FILE MATCHES "\\.cpp$")
        set(copies "${arg_FILE}")
        string(REPLACE "." "\\." replaced "/${arg_FILE}.")
    elseif(arg_FILE STREQUAL "RequestContexts.h")
        # A source finds the changed header only in its own folder, so all files that include it are copied.
        set(copies RequestContexts.h RequestContexts.cpp Tessaline.cpp Tessaline_Req.cpp
            Tessaline_ReqRespHandler.cpp)
        set(replaced "/(RequestContexts|Tessaline(_Req|_ReqRespHandler)?)\\.cpp\\.")
    elseif(arg_FILE MATCHES "\\.(h|json)$")
        # Only the declarations for the meta-object system are compiled again.
        set(copies Tessaline.h)
        set_target_properties(${target} PROPERTIES AUTOMOC ON)
        set(replaced "/mocs_compilation\\.cpp\\.")
    elseif(arg_FILE MATCHES "\\.map$")
        set(copies "${arg_FILE}")
        set(exports "${folder}/${arg_FILE}")
        set_target_properties(${target} PROPERTIES LINK_DEPENDS "${exports}")
    endif()

    # CopySource.cmake reads the texts from files, because a command line can't contain line breaks.
    file(CONFIGURE OUTPUT "${folder}/find.txt" CONTENT "${arg_FIND}" @ONLY)
    file(CONFIGURE OUTPUT "${folder}/replace.txt" CONTENT "${arg_REPLACE}" @ONLY)
    if(arg_INCLUDE)
        string(PREPEND arg_INCLUDE "#include ")
    endif()
    file(CONFIGURE OUTPUT "${folder}/include.txt" CONTENT "${arg_INCLUDE}" @ONLY)
    foreach(copy IN LISTS copies)
        copy_source("${folder}" "${copy}" "${arg_FILE}")
        target_sources(${target} PRIVATE "${folder}/${copy}")
    endforeach()
    if(arg_FILE MATCHES "^Tessaline\\.(h|json)$")
        # A separate target, because a data file of moc among the sources would be a cycle for ninja.
        copy_source("${folder}" Tessaline.json "${arg_FILE}")
        add_custom_target(${target}_metadata DEPENDS "${folder}/Tessaline.json")
        set_target_properties(${target} PROPERTIES AUTOGEN_TARGET_DEPENDS ${target}_metadata)
    endif()

    set(objects "$<TARGET_OBJECTS:tessaline_objects>")
    if(replaced)
        set(objects "$<FILTER:${objects},EXCLUDE,${replaced}>")
    endif()
    target_sources(${target} PRIVATE "${objects}")
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/src")
    target_compile_options(${target} PRIVATE -fno-gnu-unique -O0 -w)
    target_compile_definitions(${target} PRIVATE QT_PLUGIN)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}"
        LINKER:-z,relro,-z,now LINKER:--as-needed LINKER:-z,defs ${arg_LINK_OPTIONS})
    target_link_libraries(${target} PRIVATE
        tessaline_host Qt6::Core Qt6::Gui TimeShiftBufferModel)
    set_target_properties(${target} PROPERTIES
        PREFIX ""
        LINKER_LANGUAGE CXX
        LIBRARY_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}")

    if(NOT arg_AS)
        set(arg_AS fail)
    endif()
    foreach(check IN LISTS arg_CAUGHT_BY)
        set(test "check_fault_${name}_${check}")
        string(REPLACE "." "\\." pattern "${check}")
        add_test(NAME ${test} COMMAND tessaline-check --timeout 10 --include "^${pattern}$"
            "$<TARGET_FILE:${target}>")
        tessaline_set_test_environment(${test})
        set_tests_properties(${test} PROPERTIES
            FIXTURES_REQUIRED check_faults
            PASS_REGULAR_EXPRESSION "(^|\n)${arg_AS} +${pattern} ")
    endforeach()
endfunction()

# Copies a file of src/ when the variant is built, and plants the fault if it is the changed file.
function(copy_source folder file changed)
    set(source "${PROJECT_SOURCE_DIR}/src/${file}")
    set(arguments "-DSOURCE=${source}" "-DCOPY=${folder}/${file}")
    set(script "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/CopySource.cmake")
    set(depends "${source}" "${script}")
    if(file STREQUAL changed)
        list(APPEND arguments "-DFAULT=${folder}")
        list(APPEND depends "${folder}/find.txt" "${folder}/replace.txt" "${folder}/include.txt")
    endif()
    add_custom_command(OUTPUT "${folder}/${file}"
        COMMAND ${CMAKE_COMMAND} ${arguments} -P "${script}" DEPENDS ${depends} VERBATIM)
    get_source_file_property(definitions "${source}"
        TARGET_DIRECTORY tessaline_objects COMPILE_DEFINITIONS)
    if(definitions)
        set_source_files_properties("${folder}/${file}" PROPERTIES COMPILE_DEFINITIONS "${definitions}")
    endif()
endfunction()
