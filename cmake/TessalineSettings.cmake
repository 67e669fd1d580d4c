# Compiler settings for every target of the project, as one interface target.

option(TESSALINE_SANITIZE "Build with the sanitizers" OFF)
set(TESSALINE_SANITIZERS address,undefined,float-cast-overflow CACHE STRING "Sanitizers for TESSALINE_SANITIZE")
option(TESSALINE_COVERAGE "Count executed lines and branches" OFF)
set(TESSALINE_QT_API 0x060400 CACHE STRING "Reject functions that this Qt version has deprecated")

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)

# Relative search paths, so that no library contains a folder of the build machine.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

add_library(tessaline_settings INTERFACE)
target_compile_definitions(tessaline_settings INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_FOREACH
    QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=${TESSALINE_QT_API})

if(MSVC)
    target_compile_options(tessaline_settings INTERFACE /W4 /permissive- /utf-8)
else()
    target_compile_options(tessaline_settings INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Wnon-virtual-dtor -Wconversion
        -Wundef -Wimplicit-fallthrough
        # __FILE__ and debug information have paths relative to the source tree, except for coverage
        # reports, which have to find the files.
        $<$<NOT:$<BOOL:${TESSALINE_COVERAGE}>>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=>
        $<$<NOT:$<BOOL:${TESSALINE_COVERAGE}>>:-ffile-prefix-map=${CMAKE_BINARY_DIR}/=build/>)
endif()

if(TESSALINE_SANITIZE)
    target_compile_options(tessaline_settings INTERFACE
        -fsanitize=${TESSALINE_SANITIZERS}
        -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tessaline_settings INTERFACE -fsanitize=${TESSALINE_SANITIZERS})
endif()

if(TESSALINE_FUZZ)
    target_compile_options(tessaline_settings INTERFACE
        -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer -Wno-gnu-zero-variadic-macro-arguments)
    target_link_options(tessaline_settings INTERFACE -fsanitize=address,undefined)
endif()

if(TESSALINE_COVERAGE)
    target_compile_options(tessaline_settings INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(tessaline_settings INTERFACE --coverage)
endif()
