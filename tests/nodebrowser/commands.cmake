# The commands: the context menu, the slots behind it, and what they ask the data layer for.
nodebrowser_test(test_datasourcelist SOURCES ${PROJECT_SOURCE_DIR}/nodebrowser/datasourcelist.cpp
    LIBRARIES datamodel memorymodel)
foreach(name contextmenu creationcommands itemcommands sourcecontrolcommands renamejourney)
    nodebrowser_test(test_${name} LIBRARIES nodebrowser memorymodel)
endforeach()
