# Helpers that add tests with their CTest label. Labels: unit, integration, platform, ui, e2e,
# fuzz. Tests labelled platform, ui or e2e run inside the hermetic desktop session (Xvfb, a
# private session bus, a keyring, a notification server and a tray host) of tests/harness.

set(NORVANEBAR_HARNESS "${PROJECT_SOURCE_DIR}/tests/harness/desktop-session")
set(NORVANEBAR_SESSION_DIR "${PROJECT_BINARY_DIR}/desktop-session")

# norvanebar_add_test(<name> LABEL <label> COMMAND <cmd...> [DESKTOP] [ENVIRONMENT <k=v...>])
# DESKTOP runs the command in the shared desktop session started by the "desktop" fixture.
function(norvanebar_add_test name)
    cmake_parse_arguments(arg "DESKTOP" "LABEL;TIMEOUT" "COMMAND;ENVIRONMENT" ${ARGN})
    set(command ${arg_COMMAND})
    if(arg_DESKTOP)
        set(command ${NORVANEBAR_HARNESS} exec ${NORVANEBAR_SESSION_DIR} -- ${command})
    endif()
    add_test(NAME ${name} COMMAND ${command})
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABEL}")
    if(arg_TIMEOUT)
        set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT})
    endif()
    if(arg_DESKTOP)
        set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED desktop)
    endif()
    if(arg_DESKTOP AND arg_LABEL STREQUAL "ui")
        # Windows of the shared session take the keyboard focus from each other, and a popover that
        # loses it closes: one window test at a time.
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK desktop-focus)
    endif()
    if(arg_ENVIRONMENT)
        set_tests_properties(${name} PROPERTIES ENVIRONMENT "${arg_ENVIRONMENT}")
    endif()
endfunction()

# norvanebar_qt_test(<name> LABEL <label> SOURCES <files...> [LIBRARIES <libs...>] [DESKTOP])
# A Qt Test executable named after the test, run as one CTest test; it links the test kit.
function(norvanebar_qt_test name)
    cmake_parse_arguments(arg "DESKTOP" "LABEL;TIMEOUT" "SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test norvanebar_test_support ${arg_LIBRARIES})
    set(desktop "")
    if(arg_DESKTOP)
        set(desktop DESKTOP)
    endif()
    set(timeout "")
    if(arg_TIMEOUT)
        set(timeout TIMEOUT ${arg_TIMEOUT})
    endif()
    norvanebar_add_test(${name} LABEL ${arg_LABEL} COMMAND $<TARGET_FILE:${name}> ${desktop} ${timeout}
                        ENVIRONMENT ${arg_ENVIRONMENT})
endfunction()

# norvanebar_source_check(<name> SCRIPT <script> DIR <folder> ACCEPTS <what> REFUSAL <regex>
#                         PLANTED <folder under tests/data> CASES <cases...> [PASSING <cases...>]
#                         [ARGS <-Dname=value...>])
# A check of source files, a CMake script run on a folder: <name>Accepts<what> passes on DIR,
# <name>Rejects<case> sees the script refuse tests/data/<planted>/<case>, with a message that matches
# REFUSAL and names a Planted file of the case, and <name>Accepts<case> sees it pass each PASSING case.
function(norvanebar_source_check name)
    cmake_parse_arguments(arg "" "SCRIPT;DIR;ACCEPTS;REFUSAL;PLANTED" "CASES;PASSING;ARGS" ${ARGN})
    norvanebar_add_test(${name}Accepts${arg_ACCEPTS} LABEL unit
        COMMAND ${CMAKE_COMMAND} -DDIR=${arg_DIR} ${arg_ARGS} -P ${arg_SCRIPT})
    foreach(planted IN LISTS arg_CASES)
        norvanebar_add_test(${name}Rejects${planted} LABEL unit
            COMMAND ${CMAKE_COMMAND} -DDIR=${PROJECT_SOURCE_DIR}/tests/data/${arg_PLANTED}/${planted} ${arg_ARGS}
                    -P ${arg_SCRIPT})
        set_tests_properties(${name}Rejects${planted} PROPERTIES
            PASS_REGULAR_EXPRESSION "${arg_REFUSAL}.*${planted}/([^ ]*/)?Planted")
    endforeach()
    foreach(planted IN LISTS arg_PASSING)
        norvanebar_add_test(${name}Accepts${planted} LABEL unit
            COMMAND ${CMAKE_COMMAND} -DDIR=${PROJECT_SOURCE_DIR}/tests/data/${arg_PLANTED}/${planted} ${arg_ARGS}
                    -P ${arg_SCRIPT})
    endforeach()
endfunction()
