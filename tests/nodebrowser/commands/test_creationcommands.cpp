// SPDX-License-Identifier: MIT
#include "datamodel/helpers.h"
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/commandbrowser.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/support/itemwriter.h"
#include "tests/support/modaluser.h"
#include "tests/support/testmain.h"

#include <QComboBox>
#include <QUndoStack>

#include <functional>
#include <memory>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIDUnlock;
using vireo::datamodel::ItemLibraryAccessor;

namespace
{

/// The line edit of a dialog in a row: 0 for the name, 1 for the category.
QLineEdit& Field(QDialog& in_dialog, int in_row)
{
    const QList<QLineEdit*> edits = in_dialog.findChildren<QLineEdit*>();
    return *(edits.at(0)->y() < edits.at(1)->y() ? edits.at(in_row) : edits.at(1 - in_row));
}

void ClickButton(QDialog& in_dialog, const char* in_text)
{
    const QList<QPushButton*> buttons = in_dialog.findChildren<QPushButton*>();
    for (int i = 0; i < buttons.size(); ++i)
        if (buttons.at(i)->text() == FromLatin1(in_text))
            QTest::mouseClick(buttons.at(i), Qt::LeftButton);
}

/// Types a name and a category and confirms with the Return key.
void FillIn(QDialog& in_dialog, const char* in_name, const char* in_category)
{
    Retype(Field(in_dialog, 0), in_name);
    Retype(Field(in_dialog, 1), in_category);
    Press(Field(in_dialog, 1), Qt::Key_Return);
}

/// One of the three commands that make something.
struct Creation
{
    CNodeBrowser::eMenuCommand m_command;
    const char* m_title;
    const char* m_defaultName;
    const char* m_log; ///< what the data layer is asked for with nothing but the default name and a manager
};

const Creation gCreations[] = {
    {CNodeBrowser::eNewSignature, "Create signature", "signature",
     "create 'signature', signature: yes, base class: null, category: '', the manager"},
    {CNodeBrowser::eNewCompound, "Create compound", "compound",
     "create 'compound', signature: no, base class: '', category: '', the manager"},
    {CNodeBrowser::eNewLoopCompound, "Create loop compound", "loopcompound",
     "create loop 'loopcompound', base class: '', category: '', the manager"},
};

/// Triggers a command from a menu of the host, like the host's user does.
void Trigger(CommandBrowser& in_browser, CNodeBrowser::eMenuCommand in_command)
{
    QMenu menu;
    in_browser.CreateMenuCommand(in_command, &menu);
    menu.actions().at(0)->trigger();
}

/// Triggers a command, and does something in the dialog that it opens.
void Create(CommandBrowser& in_browser, const Creation& in_creation, const std::function<void(QDialog&)>& in_action)
{
    ModalUser user;
    user.WhenDialogOpens(in_creation.m_title, in_action);
    Trigger(in_browser, in_creation.m_command);
    QVERIFY(user.IsDone());
}

/// Triggers a command and confirms its dialog as it is.
void Create(CommandBrowser& in_browser, const Creation& in_creation)
{
    Create(in_browser, in_creation, [](QDialog& in_dialog) { Press(in_dialog, Qt::Key_Return); });
}

void AddCreationRows()
{
    QTest::addColumn<int>("kind");
    for (int i = 0; i < 3; ++i)
        QTest::newRow(gCreations[i].m_defaultName) << i;
}

/// The command of the row that is being tested.
const Creation& FetchCreation()
{
    QFETCH(int, kind);
    return gCreations[kind];
}

} // namespace

class TestCreationCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void confirmingTheDefaultNameCreatesAndMakesItTheTarget_data() { AddCreationRows(); }

    void confirmingTheDefaultNameCreatesAndMakesItTheTarget()
    {
        const Creation& creation = FetchCreation();
        FakeLayer layer;
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        browser.SetCommandManager(&layer.m_commands);
        QString name;
        int combos = -1;
        Create(browser, creation, [&](QDialog& in_dialog) {
            name = Field(in_dialog, 0).text();
            combos = static_cast<int>(in_dialog.findChildren<QComboBox*>().size());
            Press(in_dialog, Qt::Key_Return);
        });
        QCOMPARE(name, FromLatin1(creation.m_defaultName));
        // Only a signature has no signature to build on.
        QCOMPARE(combos, creation.m_command == CNodeBrowser::eNewSignature ? 0 : 1);
        QCOMPARE(layer.Commands(), QStringList()
                                       << FromLatin1(creation.m_log)
                                       << FromLatin1("target %1, root none").arg(FromLatin1(creation.m_defaultName)));
    }

    void nameAndCategoryArriveAsTyped_data() { AddCreationRows(); }

    void nameAndCategoryArriveAsTyped()
    {
        const Creation& creation = FetchCreation();
        FakeLayer layer;
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        Create(browser, creation, [](QDialog& in_dialog) { FillIn(in_dialog, "my node-\xE4", "a / b \xF6 "); });
        QCOMPARE(layer.Commands().size(), 2);
        QVERIFY(layer.Commands().at(0).contains(FromLatin1("'my_node_\xE4'")));
        QVERIFY(layer.Commands().at(0).contains(FromLatin1("category: 'a / b \xF6 '")));
    }

    void aMissingCommandManagerIsPassedOnAsItIs_data() { AddCreationRows(); }

    void aMissingCommandManagerIsPassedOnAsItIs()
    {
        const Creation& creation = FetchCreation();
        FakeLayer layer;
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        Create(browser, creation);
        QCOMPARE(layer.Commands().size(), 2);
        QVERIFY(layer.Commands().at(0).endsWith(FromLatin1(", no manager")));
    }

    void leavingTheDialogCreatesNothing_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("way");
        const char* const ways[] = {"Cancel", "Escape", "closing the window"};
        for (int kind = 0; kind < 3; ++kind)
            for (int way = 0; way < 3; ++way)
                QTest::newRow((std::string(gCreations[kind].m_defaultName) + ", " + ways[way]).c_str()) << kind << way;
    }

    void leavingTheDialogCreatesNothing()
    {
        QFETCH(int, way);
        const Creation& creation = FetchCreation();
        FakeLayer layer;
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        Create(browser, creation, [way](QDialog& in_dialog) {
            Retype(Field(in_dialog, 0), "typed");
            if (way == 0)
                ClickButton(in_dialog, "Cancel");
            else if (way == 1)
                Press(in_dialog, Qt::Key_Escape);
            else
                in_dialog.close();
        });
        QCOMPARE(layer.Commands(), QStringList());
    }

    void theNameAloneDecidesNotTheDialogsResult_data() { AddCreationRows(); }

    void theNameAloneDecidesNotTheDialogsResult()
    {
        const Creation& creation = FetchCreation();
        FakeLayer layer;
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        browser.SetCommandManager(&layer.m_commands);
        Create(browser, creation, [](QDialog& in_dialog) {
            Press(in_dialog, Qt::Key_Return);
            in_dialog.setResult(QDialog::Rejected);
        });
        QCOMPARE(layer.Lines("create"), QStringList(FromLatin1(creation.m_log)));
        QCOMPARE(layer.Lines("target").size(), 1);
    }

    void theListIsLeftToTheNotifications_data() { AddCreationRows(); }

    void theListIsLeftToTheNotifications()
    {
        FakeLayer layer;
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        int iterations = 0;
        Create(browser, FetchCreation(), [&layer, &iterations](QDialog& in_dialog) {
            iterations = layer.Count("iterate"); // the dialog has gone through the compounds for its signatures
            Press(in_dialog, Qt::Key_Return);
        });
        Settle();
        QCOMPARE(layer.Lines("create").size(), 1);
        QCOMPARE(layer.Count("iterate"), iterations);
    }

    void anEmptyNameIsRefusedAndThenLeft_data() { AddCreationRows(); }

    void anEmptyNameIsRefusedAndThenLeft()
    {
        const Creation& creation = FetchCreation();
        FakeLayer layer;
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        bool stayedOpen = false;
        ModalUser user;
        user.WhenDialogOpens(creation.m_title, [](QDialog& in_dialog) { FillIn(in_dialog, "", "some"); });
        user.WhenDialogOpens("Invalid Name", [](QDialog& in_box) { Press(in_box, Qt::Key_Return); });
        user.WhenDialogOpens(creation.m_title, [&stayedOpen](QDialog& in_dialog) {
            stayedOpen = in_dialog.isVisible();
            Press(in_dialog, Qt::Key_Escape);
        });
        Trigger(browser, creation.m_command);
        QVERIFY(user.IsDone());
        QVERIFY(stayedOpen);
        QCOMPARE(layer.Commands(), QStringList());
    }

    void aNameAfterARefusalStillCounts()
    {
        FakeLayer layer;
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ModalUser user;
        user.WhenDialogOpens("Create compound", [](QDialog& in_dialog) { FillIn(in_dialog, "", "some"); });
        user.WhenDialogOpens("Invalid Name", [](QDialog& in_box) { Press(in_box, Qt::Key_Return); });
        user.WhenDialogOpens("Create compound", [](QDialog& in_dialog) { FillIn(in_dialog, "Late", "some"); });
        Trigger(browser, CNodeBrowser::eNewCompound);
        QVERIFY(user.IsDone());
        QCOMPARE(
            layer.Commands(),
            QStringList() << FromLatin1("create 'Late', signature: no, base class: '', category: 'some', no manager")
                          << FromLatin1("target Late, root none"));
    }

    void theChosenSignatureBecomesTheBaseClass_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("compound") << 1;
        QTest::newRow("loop compound") << 2;
    }

    void theChosenSignatureBecomesTheBaseClass()
    {
        const Creation& creation = FetchCreation();
        FakeLayer layer;
        FakeCompound& second = layer.AddCompound("b");
        second.m_signature = true;
        layer.GiveObject(second);
        FakeCompound& first = layer.AddCompound("a");
        first.m_signature = true;
        layer.GiveObject(first);
        layer.AddCompound("c");
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        layer.Forget();
        Create(browser, creation, [](QDialog& in_dialog) {
            QComboBox& combo = *in_dialog.findChild<QComboBox*>();
            Press(combo, Qt::Key_Down);
            Press(combo, Qt::Key_Down);
            ClickButton(in_dialog, "Ok");
        });
        QCOMPARE(layer.Commands().size(), 2);
        QVERIFY(layer.Commands().at(0).contains(FromLatin1("base class: '%1'").arg(FromLatin1(second.m_uid.c_str()))));
    }

    void aRefusedCreationLeavesTheTarget_data() { AddCreationRows(); }

    void aRefusedCreationLeavesTheTarget()
    {
        const Creation& creation = FetchCreation();
        FakeLayer layer;
        layer.m_library->m_refusing = true;
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        browser.SetCommandManager(&layer.m_commands);
        Create(browser, creation);
        QCOMPARE(layer.Commands(), QStringList(FromLatin1(creation.m_log)));
    }

    void withoutALibraryTheDialogOpensAndNothingIsMade_data() { AddCreationRows(); }

    void withoutALibraryTheDialogOpensAndNothingIsMade()
    {
        const Creation& creation = FetchCreation();
        FakeLayer layer;
        CommandBrowser browser;
        Create(browser, creation);
        QCOMPARE(layer.Commands(), QStringList());
    }

    void eachCreationIsOneStepThatIsTheTargetAndInTheListAfterTheNextPaint_data() { AddCreationRows(); }

    void eachCreationIsOneStepThatIsTheTargetAndInTheListAfterTheNextPaint()
    {
        QFETCH(int, kind);
        const Creation& creation = gCreations[kind];
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID signature = library.Add(NewItem::Signature("Shape"));
        library.Add(NewItem::Compound("Zoo"));
        CommandBrowser browser;
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowAll(browser, library.GetAccessor());
        browser.Select(0);
        Create(browser, creation, [](QDialog& in_dialog) {
            if (QComboBox* const combo = in_dialog.findChild<QComboBox*>())
                Press(*combo, Qt::Key_Down);
            FillIn(in_dialog, "Middle", "Maths");
        });
        QCOMPARE(browser.GetRowCount(), std::size_t(2)); // only the next paint knows of it
        Settle();
        const QStringList two = QStringList() << FromLatin1("Shape") << FromLatin1("Zoo");
        const QStringList three = QStringList() << FromLatin1("Middle") << two;
        QCOMPARE(browser.RowNames(library.GetAccessor()), three);

        const ItemID made = library.FindByName("Middle");
        QCOMPARE(library.IsSignature(made), kind == 0);
        QCOMPARE(library.IsLoopCompound(made), kind == 2);
        QVERIFY(library.GetCategory(made) == "Maths");
        QVERIFY(library.GetBaseClass(made) == (kind == 0 ? "" : ItemIDUnlock::GetItemIDUID(signature)));
        QVERIFY(layer.GetCompoundTarget() == made);
        QVERIFY(!layer.GetCompoundTargetRoot().IsValid());
        // Neither the selection nor its signal has anything to do with it.
        QCOMPARE(browser.SignalCount(), 1);

        QUndoStack& stack = layer.GetCommandManager().GetStack();
        QCOMPARE(stack.count(), 1);
        stack.undo();
        Settle();
        QCOMPARE(browser.RowNames(library.GetAccessor()), two);
        stack.redo();
        Settle();
        QCOMPARE(browser.RowNames(library.GetAccessor()), three);
    }

    void aNameInUseIsLeftToTheDataLayer()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("compound"));
        int targets = 0;
        layer.SetCompoundTargetHandler([&targets] { ++targets; });
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        Create(browser, gCreations[CNodeBrowser::eNewCompound]);
        QCOMPARE(library.GetItemCount(), std::size_t(1));
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 0);
        QCOMPARE(targets, 0);
    }

    void creatingInALibraryThatIsGoneByThenMakesNothing_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("destroyed");
        for (int kind = 0; kind < 3; ++kind)
        {
            QTest::newRow((std::string(gCreations[kind].m_defaultName) + ", closed").c_str()) << kind << false;
            QTest::newRow((std::string(gCreations[kind].m_defaultName) + ", destroyed").c_str()) << kind << true;
        }
    }

    void creatingInALibraryThatIsGoneByThenMakesNothing()
    {
        QFETCH(bool, destroyed);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("Shape"));
        int targets = 0;
        layer.SetCompoundTargetHandler([&targets] { ++targets; });
        CommandBrowser browser;
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowLibrary(browser, library.GetAccessor());
        Create(browser, FetchCreation(), [&](QDialog& in_dialog) {
            if (destroyed)
                layer.RemoveLibrary(library);
            else
                library.Close();
            Settle();
            Press(in_dialog, Qt::Key_Return);
        });
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 0);
        QCOMPARE(targets, 0);
    }

    void aNewItemGoesToTheLibraryThatItWasAskedForIn_data() { AddCreationRows(); }

    void aNewItemGoesToTheLibraryThatItWasAskedForIn()
    {
        DataLayer layer;
        Library& first = layer.AddLibrary("First");
        Library& second = layer.AddLibrary("Second");
        CommandBrowser browser;
        browser.SetItemLibrary(first.GetAccessor());
        Create(browser, FetchCreation(), [&](QDialog& in_dialog) {
            browser.SetItemLibrary(second.GetAccessor());
            browser.SetCommandManager(&layer.GetCommandManager());
            Press(in_dialog, Qt::Key_Return);
        });
        QCOMPARE(first.GetItemCount(), std::size_t(1));
        QCOMPARE(second.GetItemCount(), std::size_t(0));
        // The command manager is the one there is at the end: another one may be gone by then.
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 1);
    }

    void aBrowserDestroyedWhileItsDialogIsOpenMakesNothing_data() { AddCreationRows(); }

    void aBrowserDestroyedWhileItsDialogIsOpenMakesNothing()
    {
        FakeLayer layer;
        std::unique_ptr<CommandBrowser> browser(new CommandBrowser);
        browser->SetItemLibrary(layer.GetAccessor());
        browser->SetCommandManager(&layer.m_commands);
        Create(*browser, FetchCreation(), [&browser](QDialog& in_dialog) {
            browser.reset();
            Press(in_dialog, Qt::Key_Return);
        });
        QVERIFY(!browser);
        QCOMPARE(layer.Commands(), QStringList());
    }

    void aBrowserMayBeDestroyedByWhatItCreates_data() { AddCreationRows(); }

    void aBrowserMayBeDestroyedByWhatItCreates()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        std::unique_ptr<CommandBrowser> browser(new CommandBrowser);
        browser->SetItemLibrary(library.GetAccessor());
        browser->SetCommandManager(&layer.GetCommandManager());
        Destroyer destroyer(browser);
        ItemLibraryAccessor accessor = library.GetAccessor();
        const vireo::datamodel::ItemTOCAccessor toc = GetTOC(accessor);
        toc.AddObserver(&destroyer, vireo::datamodel::eItemTOCNotificationKind, toc.GetContext());
        Create(*browser, FetchCreation());
        toc.RemoveObserver(&destroyer, vireo::datamodel::eItemTOCNotificationKind, toc.GetContext());
        QVERIFY(!browser);
        QCOMPARE(library.GetItemCount(), std::size_t(1));
        QVERIFY(layer.GetCompoundTarget() == library.GetItems().front());
    }

    void savingPreparesThenCommitsAndShowsNothing_data()
    {
        QTest::addColumn<bool>("failing");
        QTest::newRow("nothing to save") << false;
        QTest::newRow("the disk is full") << true;
    }

    void savingPreparesThenCommitsAndShowsNothing()
    {
        QFETCH(bool, failing);
        FakeLayer layer;
        layer.m_library->m_refusing = failing;
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        const int windows = CountVisibleWindows();
        ModalUser user;
        const int paints = CountPaints(browser, [&] { Trigger(browser, CNodeBrowser::eSaveGraphLibrary); });
        QVERIFY(user.IsDone());
        QCOMPARE(paints, 0);
        QCOMPARE(CountVisibleWindows(), windows);
        QCOMPARE(layer.Commands(), QStringList() << FromLatin1("pre-commit")
                                                 << FromLatin1("commit, everything: no, source: "
                                                               "00000000-0000-0000-0000-000000000000, messages: 0"));
    }

    void savingAnInvalidLibraryAsksForNothing_data()
    {
        QTest::addColumn<bool>("attached");
        QTest::newRow("no library") << false;
        QTest::newRow("a library that is gone") << true;
    }

    void savingAnInvalidLibraryAsksForNothing()
    {
        QFETCH(bool, attached);
        FakeLayer layer;
        CommandBrowser browser;
        if (attached)
            browser.SetItemLibrary(layer.GetAccessor());
        layer.m_library->m_alive = false;
        Trigger(browser, CNodeBrowser::eSaveGraphLibrary);
        QCOMPARE(layer.Commands(), QStringList());
    }

    void savingClearsTheDirtyMarksOfTheWholeLibrary()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID a = library.Add(NewItem::Compound("a"));
        const ItemID b = library.Add(NewItem::Solver("b"));
        library.Rename(a, "c");
        library.SetTags(b, "x");
        std::vector<ItemID> written;
        SetWriter(library, [&written](const ItemID& in_item) {
            written.push_back(in_item);
            return std::string();
        });
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        QVERIFY(library.GetAccessor().ItemIsDirty(a));
        Trigger(browser, CNodeBrowser::eSaveGraphLibrary);
        QVERIFY(!library.GetAccessor().ItemIsDirty(a));
        QVERIFY(!library.GetAccessor().ItemIsDirty(b));
        QCOMPARE(written.size(), std::size_t(2));
        // Not everything, only what has changes.
        Trigger(browser, CNodeBrowser::eSaveGraphLibrary);
        QCOMPARE(written.size(), std::size_t(2));
    }

    void savingIsNoStepToUndo()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Rename(library.Add(NewItem::Compound("a")), "b");
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        Trigger(browser, CNodeBrowser::eSaveGraphLibrary);
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 0);
    }

private:
    /// Destroys a browser as soon as an item comes.
    class Destroyer : public vireo::datamodel::IItemTOCNotification
    {
    public:
        explicit Destroyer(std::unique_ptr<CommandBrowser>& in_browser) : m_browser(in_browser) {}
        void ItemAdded(ItemAccessor&) override { m_browser.reset(); }
        void ItemRemoved(ItemAccessor&) override {}

    private:
        std::unique_ptr<CommandBrowser>& m_browser;
    };

    static int CountVisibleWindows()
    {
        int count = 0;
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (int i = 0; i < windows.size(); ++i)
            count += windows.at(i)->isVisible() ? 1 : 0;
        return count;
    }
};

NODEBROWSER_TEST_MAIN(TestCreationCommands)
#include "test_creationcommands.moc"
