# Checks the file of the Windows library. CMakeLists.txt runs this script as a test.
cmake_minimum_required(VERSION 3.25)

function(expect_equal what actual expected)
    if(NOT actual STREQUAL expected)
        message(SEND_ERROR "${what}:\n  actual   ${actual}\n  expected ${expected}")
    endif()
endfunction()

# matches(RESULT TEXT REGEX): sets RESULT to the first group of each match, sorted
function(matches result text regex)
    set(found "")
    string(REGEX MATCHALL "${regex}" lines "${text}")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "${regex}" "\\1" name "${line}")
        list(APPEND found "${name}")
    endforeach()
    list(SORT found)
    set(${result} "${found}" PARENT_SCOPE)
endfunction()

function(dump result)
    execute_process(COMMAND "${OBJDUMP}" ${ARGN} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    set(${result} "${text}" PARENT_SCOPE)
endfunction()

# hex_of(RESULT TEXT FILL): sets RESULT to the bytes of an ASCII text in hexadecimal, FILL after each
function(hex_of result text fill)
    string(HEX "${text}" hex)
    string(REGEX REPLACE "(..)" "\\1${fill}" hex "${hex}")
    set(${result} "${hex}" PARENT_SCOPE)
endfunction()

dump(headers -p "${DLL}")
dump(sections -h "${DLL}")
dump(symbols -h "${DLL}.debug")
file(READ "${DLL}" bytes HEX)

string(REGEX MATCH "Name Pointer\\] Table\n(\t\\[[^\n]*\n)+" exports "${headers}")
matches(names "${exports}" "\\[ *[0-9]+\\] ([A-Za-z_0-9]+)")
expect_equal("exports" "${names}" "qt_plugin_instance;qt_plugin_query_metadata_v2")

matches(names "${headers}" "DLL Name: ([^\n]+)")
expect_equal("imports" "${names}" "KERNEL32.dll;Qt6Core.dll;Qt6Gui.dll;TimeShiftBufferModel.dll;libgcc_s_seh-1.dll;libstdc++-6.dll;msvcrt.dll")

matches(names "${headers}" "\n[\t ]+(HIGH_ENTROPY_VA|DYNAMIC_BASE|NX_COMPAT)")
expect_equal("hardening" "${names}" "DYNAMIC_BASE;HIGH_ENTROPY_VA;NX_COMPAT")

# Qt scans the file for the metadata, 116 bytes after a marker. The third byte is the minor version of
# Qt. The fourth is 1 for a release build with g++, and 0 with the client's compiler, which does not
# define the macros for the processor.
math(EXPR minor "${QT_MINOR} + 0x100" OUTPUT_FORMAT HEXADECIMAL)
string(REGEX REPLACE "^0x1" "" minor "${minor}")
hex_of(marker "QTMETADATA !" "")
hex_of(iid "com.MARLUNE.UIFramework.PluginInterface" "")
hex_of(class "Tessaline" "")
hex_of(client_only "ClientOnly" "")
hex_of(plugin_id "PluginID" "")
hex_of(id "2F6394EE90434A7190D7511370AFAE17" "")
set(blob "0106${minor}01bf027827${iid}0369${class}04a26a${client_only}f468${plugin_id}7820${id}ff")
string(LENGTH "${blob}" length)
expect_equal("digits of the metadata" "${length}" 232)
string(FIND "${bytes}" "${marker}" at)
string(SUBSTRING "${bytes}" ${at} 256 found)
expect_equal("metadata" "${found}" "${marker}${blob}")

# Texts of a version resource are UTF-16.
foreach(text IN ITEMS "Tessaline.dll" "Video bookmarks for the surveillance client" "1.0.0")
    hex_of(text_bytes "${text}" "00")
    string(FIND "${bytes}" "${text_bytes}" at)
    if(at LESS 0)
        message(SEND_ERROR "the version resource lacks \"${text}\"")
    endif()
endforeach()

foreach(folder IN LISTS FOLDERS)
    hex_of(folder_bytes "${folder}" "")
    string(FIND "${bytes}" "${folder_bytes}" at)
    if(at GREATER_EQUAL 0)
        message(SEND_ERROR "the library contains a folder of the build machine: ${folder}")
    endif()
endforeach()

matches(names "${sections}" " (\\.debug_info|\\.gnu_debuglink) ")
expect_equal("symbols in the library" "${names}" ".gnu_debuglink")
matches(names "${symbols}" " (\\.debug_info) ")
expect_equal("symbols in the debug file" "${names}" ".debug_info")
