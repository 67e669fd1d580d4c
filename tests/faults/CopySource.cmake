# Copies SOURCE to COPY. If the folder FAULT is given, the text in its find.txt is replaced by the text
# in its replace.txt, and the text in its include.txt is put at the top.
#
# Fails unless the text is found exactly once, because a fault that is not planted tests nothing.
# Indentation and line breaks are ignored.
file(READ "${SOURCE}" content)
if(FAULT)
    file(READ "${FAULT}/find.txt" find)
    file(READ "${FAULT}/replace.txt" replace)
    string(STRIP "${find}" find)
    if(NOT find STREQUAL "")
        string(REGEX REPLACE "([][+.*()^$?|\\])" "\\\\\\1" pattern "${find}")
        string(REGEX REPLACE "[ \n]+" "[ \n]+" pattern "${pattern}")
        string(REGEX REPLACE "${pattern}" "@place@" content "${content}")
        string(REGEX MATCHALL "@place@" places "${content}")
        list(LENGTH places count)
        if(NOT count EQUAL 1)
            message(FATAL_ERROR "${SOURCE}: the FIND text of a fault must occur once; it occurs ${count} times. "
                "Change it in tests/faults/CMakeLists.txt:\n${find}")
        endif()
        string(REPLACE "@place@" "${replace}" content "${content}")
    endif()
    file(READ "${FAULT}/include.txt" include)
    string(PREPEND content "${include}\n")
endif()
file(WRITE "${COPY}" "${content}")
