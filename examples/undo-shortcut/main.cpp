// SPDX-License-Identifier: MIT
// A window whose Ctrl+Z undoes changes of the library, also while the search field has the focus.
#include <memorymodel/datalayer.h>
#include <nodebrowser/nodebrowser.h>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

// Leaves the keys for undo and redo to the window's shortcuts. A field would use them to edit its own text.
class UndoKeys : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* in_event) override
    {
        // Before a shortcut gets a key, this event asks whoever has the focus. To accept it is to keep the key.
        if (in_event->type() != QEvent::ShortcutOverride)
            return false;
        const QKeyEvent* const key = static_cast<QKeyEvent*>(in_event);
        if (!key->matches(QKeySequence::Undo) && !key->matches(QKeySequence::Redo))
            return false;
        in_event->ignore();
        return true;
    }
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    memorymodel::DataLayer layer;
    memorymodel::Library& library = layer.AddLibrary("Nodes");
    for (const char* const name : {"Blend", "Noise"})
        library.Add(memorymodel::NewItem::Compound(name));

    QMainWindow window;
    CNodeBrowser* const browser = new CNodeBrowser(eConfigNodeBrowser);
    browser->SetItemLibrary(library.GetAccessor());
    browser->SetCommandManager(&layer.GetCommandManager());
    window.setCentralWidget(browser);

    QMenu* const edit = window.menuBar()->addMenu("Edit");
    QUndoStack& stack = layer.GetCommandManager().GetStack();
    QAction* const undo = stack.createUndoAction(edit);
    QAction* const redo = stack.createRedoAction(edit);
    undo->setShortcut(QKeySequence::Undo);
    redo->setShortcut(QKeySequence::Redo);
    edit->addAction(undo);
    edit->addAction(redo);
    UndoKeys keys;
    browser->findChild<QLineEdit*>()->installEventFilter(&keys);

    window.resize(300, 400);
    window.show();
    return application.exec();
}
