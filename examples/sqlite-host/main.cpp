// SPDX-License-Identifier: MIT
// A browser on the nodes of an SQLite file:
//
//     sqlite-host [FILE]        "nodes.sqlite" when no file is named; a new file gets a few nodes
#include "sqlitelayer.h"

#include <nodebrowser/nodebrowser.h>

#include <QApplication>
#include <QStringList>

#include <cstdio>
#include <stdexcept>

using namespace vireo::datamodel;

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    std::unique_ptr<SqliteLayer> layer;
    try
    {
        layer.reset(new SqliteLayer(application.arguments().value(1, QLatin1String("nodes.sqlite"))));
    }
    catch (const std::runtime_error& error)
    {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    if (GetTOC(layer->GetLibrary()).IterateItems(VireoType::gSolver).IsAtEnd())
    {
        layer->Add(VireoType::gSolver, "Add", "math");
        layer->Add(VireoType::gSolver, "Noise", "texture");
        layer->Add(VireoType::gCompound, "Brick wall", "texture;building");
        layer->Add(VireoType::gCompound, "Marble", "texture;stone");
    }

    CNodeBrowser browser(eConfigNodeBrowser);
    browser.SetItemLibrary(layer->GetLibrary());
    browser.resize(300, 400);
    browser.show();
    return application.exec();
}
