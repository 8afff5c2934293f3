# SPDX-License-Identifier: MIT
# The script that the other tests run programs with lets no fault pass.
function(expect_status limit expected_status expected_text)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LIMIT=${limit} ${IN_WINDOW} ${ARGN}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL expected_status OR NOT output MATCHES "${expected_text}")
        message(SEND_ERROR
            "${ARGN} ended with ${result}, not with ${expected_status} and \"${expected_text}\":\n${output}")
    endif()
endfunction()

# A limit that is waited for is short, but leaves a busy machine the time to start a window manager or a window.
expect_status(8 1 "sleep has no window after 8 seconds" sleep 100)
expect_status(60 1 "true ended with status 0 before it had a window" true)
expect_status(60 1 "ended with status 127 before it had a window" /nonexistent)
expect_status(12 1 "still runs 12 seconds after its window was closed" ${PROGRAM} stays)
expect_status(60 3 ".*" ${PROGRAM} fails)
