# The four dialogs. Only three are exported: the rename dialog and the rule for names are compiled anew.
foreach(name test_createdialog test_tagsdialog test_typeselector)
    nodebrowser_test(${name} SOURCES dialogfixture.h LIBRARIES nodebrowser memorymodel)
endforeach()

set(dialogParts ${PROJECT_SOURCE_DIR}/nodebrowser)
nodebrowser_test(test_compoundname SOURCES ${dialogParts}/compoundname.cpp)
nodebrowser_test(test_renamedialog
    SOURCES dialogfixture.h ${dialogParts}/compoundname.cpp ${dialogParts}/renamedialog.cpp
    LIBRARIES datamodel memorymodel)
