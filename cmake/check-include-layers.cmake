# Fails when a source under DIR includes a header of the project without naming its layer, or names
# a layer it may not include. Every project header is included by its path from its layer's root:
# "core/compose/TaskDraft.h", "platform/linux/SingleInstance.h", "desktop/compose/ComposerViewModel.h",
# "sandbox/service/SandboxService.h", the test kit's "support/TestMain.h" and "bench/MyDaySeed.h".
# LAYERS lists the layers that sources under DIR may include; the code generator's "Foo.moc" and
# "moc_Foo.cpp" are the only quoted includes without one.
# DIR may name several folders, separated by commas.
# Usage: cmake -DDIR=<folder,...> -DLAYERS=<layer,...> [-DSTAMP=<file>] -P check-include-layers.cmake
if(NOT DIR OR NOT LAYERS)
    message(FATAL_ERROR "check-include-layers: DIR and LAYERS must be set")
endif()
string(REPLACE "," ";" LAYERS "${LAYERS}")
set(project_layers core platform desktop sandbox support bench)
list(JOIN LAYERS " " allowed)
string(REPLACE "," ";" folders "${DIR}")
set(sources "")
foreach(folder IN LISTS folders)
    file(GLOB_RECURSE found "${folder}/*.h" "${folder}/*.cpp")
    list(APPEND sources ${found})
endforeach()
list(SORT sources)
set(violations "")
foreach(source IN LISTS sources)
    file(STRINGS "${source}" includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]")
    foreach(line IN LISTS includes)
        string(REGEX MATCH "[<\"][^>\"]*" path "${line}")
        string(SUBSTRING "${path}" 0 1 delimiter)
        string(SUBSTRING "${path}" 1 -1 path)
        string(REGEX MATCH "^[A-Za-z0-9_]+/" layer "${path}")
        string(REGEX REPLACE "/$" "" layer "${layer}")
        get_filename_component(name "${path}" NAME)
        if(delimiter STREQUAL "\"" AND (name MATCHES "\\.moc$" OR name MATCHES "^moc_.*\\.cpp$"))
            continue()
        endif()
        list(FIND LAYERS "${layer}" may)
        list(FIND project_layers "${layer}" known)
        # In quotes, only a layer it may include; in angle brackets, a header from outside the
        # project, or a layer it may include.
        if(may EQUAL -1 AND (delimiter STREQUAL "\"" OR NOT known EQUAL -1))
            string(APPEND violations "\n  ${source}: ${line}")
        endif()
    endforeach()
endforeach()
if(violations)
    message(FATAL_ERROR "Includes must name a layer they may include (${allowed}):${violations}")
endif()
if(STAMP)
    file(TOUCH "${STAMP}")
endif()
