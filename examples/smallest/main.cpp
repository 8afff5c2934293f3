// SPDX-License-Identifier: MIT
// A browser on the in-memory data layer, in a window of its own.
#include <memorymodel/datalayer.h>
#include <nodebrowser/nodebrowser.h>

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    memorymodel::DataLayer layer;
    memorymodel::Library& library = layer.AddLibrary("Nodes");
    library.Add(memorymodel::NewItem::Compound("Blend").Tags("colour;mix"));
    CNodeBrowser browser(eConfigNodeBrowser);
    browser.SetItemLibrary(library.GetAccessor());
    browser.SetCommandManager(&layer.GetCommandManager());
    browser.resize(300, 400);
    browser.show();
    return application.exec();
}
