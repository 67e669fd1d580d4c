# tessaline_add_test(NAME [PLUGIN] [LIBRARIES target...] [SEARCH target...])
#
# Adds the QtTest program NAME with the source NAME.cpp. PLUGIN links the harness, which loads the built
# library as the host does. SEARCH: see tessaline_set_test_environment.
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

# The variable with the search path for libraries; tools/wine.sh reads TESSALINE_DLL_PATH.
if(NOT WIN32)
    set(tessaline_search_path LD_LIBRARY_PATH)
elseif(CMAKE_CROSSCOMPILING)
    set(tessaline_search_path TESSALINE_DLL_PATH)
else()
    set(tessaline_search_path PATH)
endif()

# Every test runs without a display, in a zone with daylight saving and in a locale whose short dates
# have two-digit years, independent of the machine's settings. TSAN_OPTIONS: Qt is not instrumented, so
# the thread sanitizer does not see its locks. ASAN_OPTIONS: freed memory is overwritten, because Qt's
# code could otherwise read it unnoticed.
set(tessaline_test_environment "TSAN_OPTIONS=ignore_noninstrumented_modules=1;ASAN_OPTIONS=max_free_fill_size=65536:free_fill_byte=221;QT_QPA_PLATFORM=offscreen;TZ=Europe/Berlin;LC_ALL=en_US.UTF-8")

# tessaline_set_test_environment(NAME [VAR=value...] [SEARCH target...])
#
# Sets the environment of a test. SEARCH adds the folders of libraries to the search path.
function(tessaline_set_test_environment name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SEARCH")
    if(WIN32 AND NOT arg_SEARCH)
        # Windows programs do not store the folders of their libraries.
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
