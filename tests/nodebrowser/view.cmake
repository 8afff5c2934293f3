# The browser as it is seen and touched: geometry, pixels, mouse, wheel, tool tips, names of every kind, drag and drop.
foreach(name layout painting selection drag tooltip wheel longnames)
    nodebrowser_test(test_${name} LIBRARIES nodebrowser memorymodel)
endforeach()

# A drag lasts until the pointer lets go, which the platform has to carry out. The offscreen one ends every drag before
# it has begun; the minimal one drags within the program, on any system.
set_tests_properties(test_drag PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=minimal TIMEOUT 120)

# The same drags once more as the windows of a real X server do them, by its protocol. The X platform would start a
# session bus of its own; it gets an address that leads nowhere instead.
if(UNIX AND NOT APPLE)
    add_test(NAME test_drag_x11 COMMAND xvfb-run -a $<TARGET_FILE:test_drag>)
    set_tests_properties(test_drag_x11 PROPERTIES TIMEOUT 120
        ENVIRONMENT "QT_QPA_PLATFORM=xcb;DBUS_SESSION_BUS_ADDRESS=disabled:"
        FAIL_REGULAR_EXPRESSION "QWARN;QCRITICAL;QSYSTEM;QFATAL")
endif()

# Only Qt 5 and later tell the beginning and the end of a gesture.
if(NODEBROWSER_QT_MAJOR GREATER_EQUAL 5)
    nodebrowser_test(test_gesture LIBRARIES nodebrowser memorymodel)
endif()
