# tessaline_add_test(NAME [PLUGIN] [LIBRARIES target...] [SEARCH target...])
#
# Adds the QtTest program NAME, made of NAME.cpp in the current folder. With PLUGIN it gets the
# harness that loads the built library as the host does. SEARCH: see below.
function(tessaline_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "PLUGIN" "" "LIBRARIES;SEARCH")
    add_executable(${name} ${name}.cpp)
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} Qt6::Test tessaline_settings)
    if(arg_PLUGIN)
        target_link_libraries(${name} PRIVATE tessaline_harness)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    tessaline_set_test_environment(${name} SEARCH ${arg_SEARCH})
endfunction()

# Where a program looks for libraries; tools/wine.sh makes its own of the second.
if(NOT WIN32)
    set(tessaline_search_path LD_LIBRARY_PATH)
elseif(CMAKE_CROSSCOMPILING)
    set(tessaline_search_path TESSALINE_DLL_PATH)
else()
    set(tessaline_search_path PATH)
endif()

# Every test runs without a display, in a zone with daylight saving and in a locale whose short
# dates have two-digit years, whatever the machine is set to. The thread sanitizer sees none of the
# locks inside Qt, which is not instrumented. Freed memory is overwritten, as Qt's own code would
# read it unnoticed otherwise.
set(tessaline_test_environment "TSAN_OPTIONS=ignore_noninstrumented_modules=1;ASAN_OPTIONS=max_free_fill_size=65536:free_fill_byte=221;QT_QPA_PLATFORM=offscreen;TZ=Europe/Berlin;LC_ALL=en_US.UTF-8;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0")

# tessaline_set_test_environment(NAME [VAR=value...] [SEARCH target...])
#
# SEARCH: the search path has the folders of these libraries.
function(tessaline_set_test_environment name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SEARCH")
    if(WIN32 AND NOT arg_SEARCH)
        # A program does not know where the libraries lie that it was linked with.
        set(arg_SEARCH TimeShiftBufferModel QarnLogUtl)
    endif()
    set(folders "")
    foreach(target IN LISTS arg_SEARCH)
        list(APPEND folders
            "${tessaline_search_path}=path_list_prepend:$<TARGET_FILE_DIR:${target}>")
    endforeach()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 120
        ENVIRONMENT "${tessaline_test_environment};${arg_UNPARSED_ARGUMENTS}"
        ENVIRONMENT_MODIFICATION "${folders}")
endfunction()
