# What the browser is made of, what it keeps of a library, and how it answers changes of it.
set(records ${parts}/browseritem.cpp ${parts}/dbobject.cpp ${parts}/itemkind.cpp ${parts}/stateicon.cpp
    ${PROJECT_SOURCE_DIR}/res/nodebrowser.qrc)

foreach(name test_construction test_itemlist test_notifications test_sourcecontroldisplay test_filter test_fastfilter test_reads test_betweenpaints)
    nodebrowser_test(${name} LIBRARIES nodebrowser memorymodel)
endforeach()

# The factory objects are looked up once per process, so each case of them is a program of its own.
foreach(name test_stateicon test_browseritem test_secondfactory test_nofactory)
    nodebrowser_part_test(${name} ${records})
    set_target_properties(${name} PROPERTIES AUTORCC ON)
endforeach()

nodebrowser_test(test_versions)
target_compile_definitions(test_versions PRIVATE SOURCE_FOLDER="${PROJECT_SOURCE_DIR}")
