# SPDX-License-Identifier: MIT
# The script that the other tests run programs with lets no fault pass.
function(expect_status expected_status expected_text)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LIMIT=4 ${IN_WINDOW} ${ARGN}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL expected_status OR NOT output MATCHES "${expected_text}")
        message(SEND_ERROR
            "${ARGN} ended with ${result}, not with ${expected_status} and \"${expected_text}\":\n${output}")
    endif()
endfunction()

expect_status(1 "sleep has no window after 4 seconds" sleep 100)
expect_status(1 "true ended with status 0 before it had a window" true)
expect_status(1 "ended with status 127 before it had a window" /nonexistent)
expect_status(1 "still runs 4 seconds after its window was closed" ${PROGRAM} stays)
expect_status(3 ".*" ${PROGRAM} fails)
