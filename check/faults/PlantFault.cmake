# plant_fault(NAME FILE file CAUGHT_BY check... [AS status] [FIND text REPLACE text] [INCLUDE header]
#             [LINK_OPTIONS option...])
#
# Builds a variant of the plug-in with one defect: FILE of src/ with one place replaced, and what
# else the plug-in is made of as it is. Adds a test check_fault_NAME_CHECK for each check, which
# demands that it reports the defect, and as that status ("fail" where nothing else is said).
#
# A text that is not found exactly once is an error: a fault that has lost its place proves nothing.
function(plant_fault name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "FILE;AS;FIND;REPLACE;INCLUDE" "CAUGHT_BY;LINK_OPTIONS")
    set(target "fault_${name}")
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/${name}")
    set(exports "${PROJECT_SOURCE_DIR}/src/Tessaline.map")
    set(replaced "")

    add_library(${target} MODULE EXCLUDE_FROM_ALL)
    add_dependencies(check_faults ${target})
    set_target_properties(${target} PROPERTIES AUTOMOC OFF)
    if(arg_FILE)
        fault_copy("${folder}" "${arg_FILE}" "${arg_FIND}" "${arg_REPLACE}" "${arg_INCLUDE}")
    endif()
    if(arg_FILE MATCHES "\\.cpp$")
        target_sources(${target} PRIVATE "${folder}/${arg_FILE}")
        get_source_file_property(definitions "${PROJECT_SOURCE_DIR}/src/${arg_FILE}"
            TARGET_DIRECTORY tessaline_objects COMPILE_DEFINITIONS)
        if(definitions)
            set_source_files_properties("${folder}/${arg_FILE}" PROPERTIES
                COMPILE_DEFINITIONS "${definitions}")
        endif()
        string(REPLACE "." "\\." replaced "/${arg_FILE}.")
    elseif(arg_FILE STREQUAL "RequestContexts.h")
        # Sources find the changed header only from its own folder, so each that includes it moves there.
        foreach(part IN ITEMS RequestContexts Tessaline Tessaline_Req Tessaline_ReqRespHandler)
            fault_copy("${folder}" "${part}.cpp" "" "" "")
            target_sources(${target} PRIVATE "${folder}/${part}.cpp")
            set_source_files_properties("${folder}/${part}.cpp" PROPERTIES
                COMPILE_DEFINITIONS "TESSALINE_SOURCE=\"src/${part}.cpp\"")
        endforeach()
        set(replaced "/(RequestContexts|Tessaline(_Req|_ReqRespHandler)?)\\.cpp\\.")
    elseif(arg_FILE MATCHES "\\.(h|json)$")
        # What the header declares for the meta-object system: that alone is compiled again.
        foreach(part IN ITEMS Tessaline.h Tessaline.json)
            if(NOT part STREQUAL arg_FILE)
                fault_copy("${folder}" "${part}" "" "" "")
            endif()
        endforeach()
        target_sources(${target} PRIVATE "${folder}/Tessaline.h")
        set_target_properties(${target} PROPERTIES AUTOMOC ON)
        set(replaced "/mocs_compilation\\.cpp\\.")
    elseif(arg_FILE MATCHES "\\.map$")
        set(exports "${folder}/${arg_FILE}")
    endif()

    set(objects "$<TARGET_OBJECTS:tessaline_objects>")
    if(replaced)
        set(objects "$<FILTER:${objects},EXCLUDE,${replaced}>")
    endif()
    target_sources(${target} PRIVATE "${objects}")
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/src")
    # Defects are looked for, not speed.
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

# Puts a file of src/ into a folder, with one place replaced unless there is nothing to find.
function(fault_copy folder file find replace include)
    set(source "${PROJECT_SOURCE_DIR}/src/${file}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
    file(READ "${source}" content)
    if(NOT find STREQUAL "")
        # How the place is indented and broken into lines does not matter.
        string(STRIP "${find}" find)
        string(REGEX REPLACE "([][+.*()^$?|\\])" "\\\\\\1" pattern "${find}")
        string(REGEX REPLACE "[ \n]+" "[ \n]+" pattern "${pattern}")
        string(REGEX REPLACE "${pattern}" "@place@" content "${content}")
        string(REGEX MATCHALL "@place@" places "${content}")
        list(LENGTH places count)
        if(NOT count EQUAL 1)
            message(FATAL_ERROR "A fault needs one place in ${file}, found ${count}:\n${find}")
        endif()
        string(REPLACE "@place@" "${replace}" content "${content}")
    endif()
    if(NOT include STREQUAL "")
        set(content "#include ${include}\n${content}")
    endif()
    file(GENERATE OUTPUT "${folder}/${file}" CONTENT "${content}")
endfunction()
