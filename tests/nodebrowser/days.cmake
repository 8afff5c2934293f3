# Whole days of random events, held against a plain second model of the browser.
nodebrowser_test(test_randomdays SOURCES randomdays_model.h randomdays_person.h randomdays_world.h
    LIBRARIES nodebrowser memorymodel)

# Another day on the platform that carries drags out.
add_test(NAME test_randomdays_drag COMMAND test_randomdays)
set_tests_properties(test_randomdays_drag PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=minimal;NODEBROWSER_SEED=4711;NODEBROWSER_EVENTS=4000"
    FAIL_REGULAR_EXPRESSION "QWARN;QCRITICAL;QSYSTEM;QFATAL" TIMEOUT 600)
