# tessaline_add_test(NAME [PLUGIN] [LIBRARIES target...] [ENVIRONMENT VAR=value...])
#
# Adds the QtTest program NAME, made of NAME.cpp in the current folder. With PLUGIN it gets the
# harness that loads the built library as the host does.
function(tessaline_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "PLUGIN" "" "LIBRARIES;ENVIRONMENT")
    add_executable(${name} ${name}.cpp)
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} Qt6::Test tessaline_settings)
    if(arg_PLUGIN)
        target_link_libraries(${name} PRIVATE tessaline_harness)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    tessaline_set_test_environment(${name} ${arg_ENVIRONMENT})
endfunction()

# Every test runs without a display, in a zone with daylight saving and in a locale whose short
# dates have two-digit years, whatever the machine is set to.
function(tessaline_set_test_environment name)
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 120
        # Freed memory is overwritten, as Qt's own code, which is not instrumented, would read it
        # unnoticed otherwise.
        ENVIRONMENT "ASAN_OPTIONS=max_free_fill_size=65536:free_fill_byte=221;QT_QPA_PLATFORM=offscreen;TZ=Europe/Berlin;LC_ALL=en_US.UTF-8;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0;${ARGN}")
endfunction()
