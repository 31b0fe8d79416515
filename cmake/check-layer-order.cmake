# Fails when a feature folder under DIR includes a feature that comes after it in the layer order
# below, or when a source under DIR stands in no folder of that order. A feature may include itself
# and every feature before it, so each dependency points one way, down the list, and none loops.
# Usage: cmake -DDIR=<folder> [-DSTAMP=<file>] -P check-layer-order.cmake
if(NOT DIR)
    message(FATAL_ERROR "check-layer-order: DIR is not set")
endif()
# The features of the core, lowest first.
set(layers support json platform async api recording settings auth hierarchy compose storage submit notify myday
           shell app)
string(REPLACE ";" " " order "${layers}")
file(GLOB_RECURSE sources RELATIVE "${DIR}" "${DIR}/*.h" "${DIR}/*.cpp")
list(SORT sources)
set(violations "")
foreach(source IN LISTS sources)
    string(REGEX MATCH "^[^/]+/" folder "${source}")
    string(REGEX REPLACE "/$" "" feature "${folder}")
    list(FIND layers "${feature}" rank)
    if(rank EQUAL -1)
        string(APPEND violations "\n  ${DIR}/${source}: in no feature folder of the order")
        continue()
    endif()
    # Only the lines that include a feature of the core: a whole file read as a CMake list would join
    # the lines between an unmatched "[" and the next "]".
    file(STRINGS "${DIR}/${source}" includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]core/[A-Za-z0-9_]+/")
    foreach(line IN LISTS includes)
        string(REGEX MATCH "[<\"]core/[A-Za-z0-9_]+/" target "${line}")
        string(REGEX REPLACE "^[<\"]core/|/$" "" target "${target}")
        list(FIND layers "${target}" included)
        if(included GREATER rank)
            string(APPEND violations "\n  ${DIR}/${source}: ${line} (${feature} -> ${target})")
        endif()
    endforeach()
endforeach()
if(violations)
    message(FATAL_ERROR "The features of the core break their layer order.\n"
                        "  Each includes only itself and the features before it: ${order}${violations}")
endif()
if(STAMP)
    file(TOUCH "${STAMP}")
endif()
