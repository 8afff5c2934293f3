// SPDX-License-Identifier: MIT
// A browser with a context menu of its own, where "Delete" deletes, and with the host's own dialog to rename.
#include <memorymodel/datalayer.h>
#include <nodebrowser/nodebrowser.h>

#include <QApplication>
#include <QInputDialog>
#include <QMenu>

class Browser : public CNodeBrowser
{
public:
    Browser(memorymodel::Library& in_library, memorymodel::CommandManager& in_commands)
        : CNodeBrowser(eConfigNodeBrowser), m_library(in_library)
    {
        SetItemLibrary(in_library.GetAccessor());
        SetCommandManager(&in_commands);
    }

protected:
    // A right press has selected the row before it calls this.
    void PopContexMenu(const QPoint& in_position, std::size_t) override
    {
        QMenu menu;
        menu.addAction("Rename...", this, SLOT(OnRenameItem()));
        menu.addAction("Tags...", this, SLOT(OnEditItemTags())); // the browser's own slot
        menu.addAction("Delete", this, SLOT(OnDeleteItem()));
        menu.exec(in_position);
    }

    void OnRenameItem() override
    {
        const vireo::datamodel::ItemID item = GetSelection();
        const std::string before = m_library.GetAccessor().GetItemName(item, true, nullptr);
        bool accepted = false;
        const QString name = QInputDialog::getText(this, "Rename", "Name:", QLineEdit::Normal,
                                                   QString::fromLatin1(before.c_str()), &accepted);
        if (accepted && !name.isEmpty())
            m_library.Rename(item, name.toLatin1().constData(), GetCommandManager());
    }

    void OnDeleteItem() override { m_library.Remove(GetSelection(), GetCommandManager()); }

private:
    memorymodel::Library& m_library;
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    memorymodel::DataLayer layer;
    memorymodel::Library& library = layer.AddLibrary("Nodes");
    for (const char* const name : {"Blend", "Brick wall", "Marble"})
        library.Add(memorymodel::NewItem::Compound(name));
    Browser browser(library, layer.GetCommandManager());
    browser.resize(300, 400);
    browser.show();
    return application.exec();
}
