// SPDX-License-Identifier: MIT
// Asks for a type and prints its name. There is no browser besides.
#include <memorymodel/datalayer.h>
#include <nodebrowser/typeselector.h>

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    memorymodel::DataLayer layer;
    memorymodel::Library& library = layer.AddLibrary("Types");
    for (const char* const name : {"color", "float", "vector"})
        library.Add(memorymodel::NewItem::Type(name));
    layer.SetCurrentLibrary(&library); // the one that the selector reads

    CTypeSelector selector(nullptr);
    if (selector.exec() == QDialog::Accepted)
        std::puts(library.GetAccessor().GetItemName(selector.GetSelected(), true, nullptr).c_str());
    return 0;
}
