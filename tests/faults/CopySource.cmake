# Copies SOURCE to COPY. With FAULT, a folder, the text in its find.txt is replaced by that in its
# replace.txt, and that in its include.txt is put at the top.
#
# The text has to be found exactly once: a fault without a place proves nothing. Indentation and line
# breaks do not matter.
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
            message(FATAL_ERROR "${SOURCE}: a fault needs one place, found ${count} of:\n${find}")
        endif()
        string(REPLACE "@place@" "${replace}" content "${content}")
    endif()
    file(READ "${FAULT}/include.txt" include)
    string(PREPEND content "${include}\n")
endif()
file(WRITE "${COPY}" "${content}")
