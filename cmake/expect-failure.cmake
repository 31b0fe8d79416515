# cmake -DCOMMAND=<program> -DEXPECTED=<text> -P expect-failure.cmake
# Runs a program that must fail, with EXPECTED in what it writes: the test of a check whose work is
# to make a test fail.
execute_process(COMMAND ${COMMAND} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result STREQUAL "0")
    message(FATAL_ERROR "${COMMAND} passed, and should have failed:\n${output}")
endif()
string(FIND "${output}" "${EXPECTED}" found)
if(found EQUAL -1)
    message(FATAL_ERROR "${COMMAND} failed (${result}) without \"${EXPECTED}\":\n${output}")
endif()
message(STATUS "${COMMAND} failed as it should (${result}): ${EXPECTED}")
