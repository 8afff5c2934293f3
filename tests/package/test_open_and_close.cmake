# SPDX-License-Identifier: MIT
# The script that the other tests run programs with notices a program that hangs, one that ends at once, and one that cannot
# be started.
function(expect_failure expected)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LIMIT=2 ${IN_WINDOW} ${ARGN}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 1 OR NOT output MATCHES "${expected}")
        message(FATAL_ERROR "${ARGN} ended with ${result}, not with 1 and \"${expected}\":\n${output}")
    endif()
endfunction()

expect_failure("sleep has no window after 2 seconds" sleep 100)
expect_failure("true ended with status 0 before it had a window" true)
expect_failure("ended with status 127 before it had a window" /nonexistent)
