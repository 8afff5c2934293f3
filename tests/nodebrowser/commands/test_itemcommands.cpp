// SPDX-License-Identifier: MIT
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/onecompound.h"
#include "tests/support/testmain.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QUndoStack>

#include <functional>
#include <memory>

using qtcompat::FromLatin1;

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::VireoType;

namespace
{

const char gTagsTitle[] = "Edit Item Tags";

QLineEdit& Field(QDialog& in_dialog)
{
    return *in_dialog.findChild<QLineEdit*>();
}

/// Types a text in the place of what stands in a dialog's field, and confirms.
void FillIn(QDialog& in_dialog, const char* in_text)
{
    Retype(Field(in_dialog), in_text);
    Press(Field(in_dialog), Qt::Key_Return);
}

using InDialog = std::function<void(QDialog&)>;

/// Waits for one of the two dialogs on the compound "Blend".
void WhenOneOpens(ModalUser& out_user, bool in_tags, const InDialog& in_action)
{
    if (in_tags)
        out_user.WhenDialogOpens(gTagsTitle, in_action);
    else
        out_user.WhenDialogOpens("Rename Blend", in_action);
}

/// Gives one of the two commands, and does something in the dialog that it opens.
void RenameOrEditTags(CommandBrowser& in_browser, bool in_tags, const InDialog& in_action)
{
    ModalUser user;
    WhenOneOpens(user, in_tags, in_action);
    if (in_tags)
        in_browser.OnEditItemTags();
    else
        in_browser.OnRenameItem();
    QVERIFY(user.IsDone());
}

void Rename(CommandBrowser& in_browser, const InDialog& in_action)
{
    RenameOrEditTags(in_browser, false, in_action);
}

void EditTags(CommandBrowser& in_browser, const InDialog& in_action)
{
    RenameOrEditTags(in_browser, true, in_action);
}

/// A browser on a library that does what it is asked for. It has one compound "Blend", whose row is selected.
struct RealCompound
{
    explicit RealCompound(const NewItem& in_compound = NewItem::Compound("Blend"))
        : m_library(m_layer.AddLibrary("Nodes")),
          m_item(m_library.Add(in_compound)),
          m_stack(m_layer.GetCommandManager().GetStack())
    {
        m_browser.SetCommandManager(&m_layer.GetCommandManager());
        ShowLibrary(m_browser, m_library.GetAccessor());
        m_browser.Select(0);
    }

    std::string GetName() const { return m_library.GetAccessor().GetItemName(m_item, true, nullptr); }
    std::string GetTags() const { return m_library.GetAccessor().GetItemTags(m_item, "ApplicationTags"); }

    DataLayer m_layer;
    Library& m_library;
    const ItemID m_item;
    QUndoStack& m_stack;
    CommandBrowser m_browser;
};

void ClickCancel(QDialog& in_dialog)
{
    for (QPushButton* const button : in_dialog.findChildren<QPushButton*>())
        if (button->text().remove(QLatin1Char('&')) == QString::fromLatin1("Cancel"))
            QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace

/// Destroys a browser as soon as an item changes.
class Destroyer : public vireo::datamodel::IItemLibraryNotification
{
public:
    explicit Destroyer(std::unique_ptr<CommandBrowser>& in_browser) : m_browser(in_browser) {}
    void OnBeginChanges(ItemLibraryAccessor&) override {}
    void OnEndChanges(ItemLibraryAccessor&) override {}
    void LibraryInvalidated(ItemLibraryAccessor&) override {}
    void ItemNameChanged(ItemLibraryAccessor&, const ItemID&) override { m_browser.reset(); }
    void ItemTagsChanged(ItemLibraryAccessor&, const ItemID&, const char*) override { m_browser.reset(); }
    void ItemAccessStateChanged(ItemLibraryAccessor&, const ItemID&, long) override {}
    void OnPreCommit(ItemLibraryAccessor&, bool*) override { m_browser.reset(); }
    void OnPostCommit(ItemLibraryAccessor&) override {}

private:
    std::unique_ptr<CommandBrowser>& m_browser;
};

class TestItemCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsWithoutASelectedRowDoNothing_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("no row") << -1;
        QTest::newRow("a row past the last one") << 1;
        QTest::newRow("a row far past the last one") << 0x7FFFFFFF;
    }

    void commandsWithoutASelectedRowDoNothing()
    {
        QFETCH(int, row);
        OneCompound<> one;
        ModalUser user;
        if (row < 0)
            one.m_browser.Select(1);
        else
            one.m_browser.PopContexMenu(QPoint(10, 10), static_cast<std::size_t>(row));
        one.m_browser.OnRenameItem();
        one.m_browser.OnDeleteItem();
        one.m_browser.OnEditItemTags();
        one.m_browser.OnShowItemFiles();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.Commands(), QStringList());
    }

    void renamingAsksWithThePresentNameSelected()
    {
        OneCompound<> one;
        QString text;
        QString selected;
        Rename(one.m_browser, [&](QDialog& in_dialog) {
            text = Field(in_dialog).text();
            selected = Field(in_dialog).selectedText();
            Press(in_dialog, Qt::Key_Escape);
        });
        QCOMPARE(text, FromLatin1("Blend"));
        QCOMPARE(selected, FromLatin1("Blend"));
        QCOMPARE(one.m_layer.Commands(), QStringList());
    }

    void renaming_data()
    {
        QTest::addColumn<QByteArray>("typed");
        QTest::addColumn<QStringList>("log");
        QTest::newRow("another name") << QByteArray("Mix")
                                      << QStringList(FromLatin1("rename Blend to 'Mix', the manager"));
        QTest::newRow("another case") << QByteArray("bLEND")
                                      << QStringList(FromLatin1("rename Blend to 'bLEND', the manager"));
        QTest::newRow("beyond ASCII") << QByteArray("Gr\xF6\xDF"
                                                    "e")
                                      << QStringList(FromLatin1("rename Blend to 'Gr\xF6\xDF"
                                                                "e', the manager"));
        QTest::newRow("a blank behind") << QByteArray("Blend ")
                                        << QStringList(FromLatin1("rename Blend to 'Blend ', the manager"));
        QTest::newRow("the same name") << QByteArray("Blend") << QStringList();
    }

    void renaming()
    {
        QFETCH(QByteArray, typed);
        QFETCH(QStringList, log);
        OneCompound<> one;
        Rename(one.m_browser, [&typed](QDialog& in_dialog) { FillIn(in_dialog, typed.constData()); });
        QCOMPARE(one.m_layer.Commands(), log);
    }

    void confirmingTheNameUntouchedWritesNothing()
    {
        OneCompound<> one;
        Rename(one.m_browser, [](QDialog& in_dialog) {
            QTest::mouseClick(in_dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
        });
        QCOMPARE(one.m_layer.Commands(), QStringList());
    }

    void leavingADialogWritesNothing_data()
    {
        QTest::addColumn<bool>("tags");
        QTest::addColumn<int>("way");
        QTest::newRow("Cancel, name") << false << 0;
        QTest::newRow("Escape, name") << false << 1;
        QTest::newRow("closing the window, name") << false << 2;
        QTest::newRow("Cancel, tags") << true << 0;
        QTest::newRow("Escape, tags") << true << 1;
        QTest::newRow("closing the window, tags") << true << 2;
    }

    void leavingADialogWritesNothing()
    {
        QFETCH(bool, tags);
        QFETCH(int, way);
        OneCompound<> one;
        RenameOrEditTags(one.m_browser, tags, [way](QDialog& in_dialog) {
            Retype(Field(in_dialog), "Mix");
            if (way == 0)
                ClickCancel(in_dialog);
            else if (way == 1)
                Press(in_dialog, Qt::Key_Escape);
            else
                in_dialog.close();
        });
        QCOMPARE(one.m_layer.Commands(), QStringList());
    }

    void writesPassOnAMissingCommandManager()
    {
        OneCompound<> one;
        one.m_browser.SetCommandManager(nullptr);
        Rename(one.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "Mix"); });
        EditTags(one.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        QCOMPARE(one.m_layer.Commands(), QStringList()
                                             << FromLatin1("rename Blend to 'Mix', no manager")
                                             << FromLatin1("tag Blend under 'ApplicationTags' with 'x', no manager"));
    }

    void writesGoToTheCommandManagerOfTheMoment()
    {
        OneCompound<> one;
        NamedManager other("another manager");
        Rename(one.m_browser, [&](QDialog& in_dialog) {
            one.m_browser.SetCommandManager(&other);
            FillIn(in_dialog, "Mix");
        });
        QCOMPARE(one.m_layer.Commands(), QStringList(FromLatin1("rename Blend to 'Mix', another manager")));
    }

    void writeAccessIsNotTheBusinessOfTheCommands()
    {
        OneCompound<> one;
        one.m_compound.m_readOnly = true;
        one.m_compound.m_modifiable = false;
        Rename(one.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "Mix"); });
        EditTags(one.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        // Asked and left to the data layer; whether it may be changed is not even asked.
        QCOMPARE(one.m_layer.Commands(), QStringList()
                                             << FromLatin1("rename Blend to 'Mix', the manager")
                                             << FromLatin1("tag Blend under 'ApplicationTags' with 'x', the manager"));
    }

    void renamingWhatIsNoCompoundAsksAndWritesNothing()
    {
        FakeLayer layer;
        layer.Add(VireoType::gSolver, "Solver");
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        browser.Select(0);
        QString text;
        ModalUser user;
        // The title comes from the compound, which there is none of.
        user.WhenDialogOpens("Rename ", [&text](QDialog& in_dialog) {
            text = Field(in_dialog).text();
            FillIn(in_dialog, "Mix");
        });
        browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QCOMPARE(text, FromLatin1("Solver"));
        QCOMPARE(layer.Commands(), QStringList());
    }

    void aRefusedRenameIsSilent()
    {
        RealCompound real(NewItem::Compound("Blend").ReadOnly());
        Rename(real.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "Mix"); });
        EditTags(real.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        QVERIFY(real.GetName() == "Blend");
        QVERIFY(real.GetTags().empty());
        QCOMPARE(real.m_stack.count(), 0);
    }

    void aChangeOfCaseAloneIsOneStepToUndo()
    {
        RealCompound real;
        Rename(real.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "BLEND"); });
        QVERIFY(real.GetName() == "BLEND");
        QCOMPARE(real.m_stack.count(), 1);
        real.m_stack.undo();
        QVERIFY(real.GetName() == "Blend");
    }

    void deletingDoesNothing()
    {
        OneCompound<> one;
        ModalUser user;
        const int paints = CountPaints(one.m_browser, [&] { one.m_browser.OnDeleteItem(); });
        QVERIFY(user.IsDone());
        QCOMPARE(paints, 0);
        QCOMPARE(one.m_layer.Commands(), QStringList());
        QCOMPARE(one.m_browser.SignalCount(), 1);
        QVERIFY(one.m_browser.GetSelection() == one.m_compound.m_id);
    }

    void deletingLeavesTheItemAndTheUndoStack()
    {
        RealCompound real;
        real.m_browser.OnDeleteItem();
        QCOMPARE(real.m_library.GetItemCount(), std::size_t(1));
        QCOMPARE(real.m_stack.count(), 0);
    }

    void tagsAreAskedForWithTheNameAndTheOldTags()
    {
        OneCompound<> one;
        QString tags;
        bool named = false;
        EditTags(one.m_browser, [&](QDialog& in_dialog) {
            tags = Field(in_dialog).text();
            const QList<QLabel*> labels = in_dialog.findChildren<QLabel*>();
            for (int i = 0; i < labels.size(); ++i)
                named = named || labels.at(i)->text() == FromLatin1("Blend");
            Press(in_dialog, Qt::Key_Escape);
        });
        QCOMPARE(tags, FromLatin1("color;mix"));
        QVERIFY(named);
        QCOMPARE(one.m_layer.Commands(), QStringList());
    }

    void editingTags_data()
    {
        QTest::addColumn<QByteArray>("old");
        QTest::addColumn<QByteArray>("typed");
        QTest::addColumn<QByteArray>("written"); // "-" when nothing is
        QTest::newRow("more") << QByteArray("a") << QByteArray("a;b") << QByteArray("a;b");
        QTest::newRow("another order") << QByteArray("a;b") << QByteArray("b;a") << QByteArray("b;a");
        QTest::newRow("another case") << QByteArray("a") << QByteArray("A") << QByteArray("A");
        QTest::newRow("none any more") << QByteArray("a") << QByteArray("") << QByteArray("");
        QTest::newRow("blanks and empty tags") << QByteArray("") << QByteArray(" a ; b;;c ;") << QByteArray("a;b;c");
        QTest::newRow("beyond ASCII") << QByteArray("") << QByteArray("gr\xFCn") << QByteArray("gr\xFCn");
        QTest::newRow("the same") << QByteArray("a;b") << QByteArray("a;b") << QByteArray("-");
        QTest::newRow("the same but for blanks") << QByteArray("a;b") << QByteArray(" a;b ;") << QByteArray("-");
        QTest::newRow("none as before") << QByteArray("") << QByteArray(" ; ") << QByteArray("-");
    }

    void editingTags()
    {
        QFETCH(QByteArray, old);
        QFETCH(QByteArray, typed);
        QFETCH(QByteArray, written);
        OneCompound<> one;
        one.m_compound.m_tags = old.constData();
        EditTags(one.m_browser, [&typed](QDialog& in_dialog) { FillIn(in_dialog, typed.constData()); });
        const QStringList wanted(FromLatin1("tag Blend under 'ApplicationTags' with '%1', the manager")
                                     .arg(FromLatin1(written.constData())));
        QCOMPARE(one.m_layer.Commands(), written == "-" ? QStringList() : wanted);
    }

    void confirmingUntouchedTagsWritesTheirPlainForm_data()
    {
        QTest::addColumn<QByteArray>("old");
        QTest::addColumn<QStringList>("log");
        QTest::newRow("plain already") << QByteArray("a;b") << QStringList();
        QTest::newRow("with a blank") << QByteArray("a; b")
                                      << QStringList(
                                             FromLatin1("tag Blend under 'ApplicationTags' with 'a;b', the manager"));
    }

    void confirmingUntouchedTagsWritesTheirPlainForm()
    {
        QFETCH(QByteArray, old);
        QFETCH(QStringList, log);
        OneCompound<> one;
        one.m_compound.m_tags = old.constData();
        EditTags(one.m_browser, [](QDialog& in_dialog) { Press(in_dialog, Qt::Key_Return); });
        QCOMPARE(one.m_layer.Commands(), log);
    }

    void whatStandsBehindANullCharacterIsNoPartOfTheTags()
    {
        OneCompound<> one;
        one.m_compound.m_tags = "a";
        EditTags(one.m_browser, [](QDialog& in_dialog) {
            Field(in_dialog).setText(FromLatin1("a") + QChar(0) + FromLatin1("b"));
            Press(in_dialog, Qt::Key_Return);
        });
        QCOMPARE(one.m_layer.Commands(), QStringList());
    }

    void aTagsDialogThatIsNotAcceptedWritesNothing()
    {
        OneCompound<> one;
        EditTags(one.m_browser, [](QDialog& in_dialog) {
            FillIn(in_dialog, "x");
            in_dialog.setResult(QDialog::Rejected);
        });
        QCOMPARE(one.m_layer.Commands(), QStringList());
    }

    void everyResultButZeroAccepts()
    {
        OneCompound<> one;
        Rename(one.m_browser, [](QDialog& in_dialog) {
            Retype(Field(in_dialog), "Mix");
            in_dialog.done(2);
        });
        EditTags(one.m_browser, [](QDialog& in_dialog) {
            FillIn(in_dialog, "x");
            in_dialog.setResult(2);
        });
        QCOMPARE(one.m_layer.Lines("rename").size(), 1);
        QCOMPARE(one.m_layer.Lines("tag ").size(), 1);
    }

    void theListIsLeftToTheNotifications()
    {
        OneCompound<> one;
        Rename(one.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "Mix"); });
        EditTags(one.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        one.m_browser.OnShowItemFiles();
        Settle();
        QCOMPARE(one.m_layer.Count("iterate"), 0);
    }

    void aBrowserMayBeDestroyedByWhatItWrites_data()
    {
        QTest::addColumn<bool>("tags");
        QTest::newRow("renaming") << false;
        QTest::newRow("tags") << true;
    }

    void aBrowserMayBeDestroyedByWhatItWrites()
    {
        QFETCH(bool, tags);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend"));
        std::unique_ptr<CommandBrowser> browser(new CommandBrowser);
        ShowLibrary(*browser, library.GetAccessor());
        Destroyer destroyer(browser);
        const ItemLibraryAccessor accessor = library.GetAccessor();
        accessor.AddObserver(&destroyer, vireo::datamodel::eItemLibraryNotificationKind, accessor.GetContext());
        ModalUser user;
        user.WhenMenuOpens([tags](QMenu& in_menu) { Choose(in_menu, tags ? "Edit Tags for Blend" : "Rename Blend"); });
        WhenOneOpens(user, tags, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        browser->RightPress(0);
        accessor.RemoveObserver(&destroyer, vireo::datamodel::eItemLibraryNotificationKind, accessor.GetContext());
        QVERIFY(user.IsDone());
        QVERIFY(!browser);
        const ItemID item = library.GetItems().front();
        QVERIFY((tags ? accessor.GetItemTags(item, "ApplicationTags") : accessor.GetItemName(item, true, nullptr)) ==
                "x");
    }

    void aRefusedTagWriteIsSilent()
    {
        OneCompound<> one;
        one.m_layer.m_library->m_refusing = true;
        EditTags(one.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        QCOMPARE(one.m_layer.Lines("tag ").size(), 1);
    }

    void newTagsAreOneStepThatTheNextSearchSees()
    {
        RealCompound real(NewItem::Compound("Blend").Tags("old"));
        real.m_library.Add(NewItem::Compound("Mix"));
        EditTags(real.m_browser, [](QDialog& in_dialog) { FillIn(in_dialog, "fresh"); });
        QCOMPARE(real.m_stack.count(), 1);
        real.m_browser.SearchField().setText(FromLatin1("fresh"));
        Settle();
        QCOMPARE(real.m_browser.RowNames(real.m_library.GetAccessor()), QStringList(FromLatin1("Blend")));
        real.m_stack.undo();
        QVERIFY(real.GetTags() == "old");
    }

    void filesAreShownThroughTheHelper()
    {
        OneCompound<> one;
        one.m_browser.OnShowItemFiles();
        const QString uid = one.Uid();
        QCOMPARE(one.m_layer.Commands(),
                 QStringList() << FromLatin1("find ") + uid << FromLatin1("show files %1, options: null").arg(uid));
    }

    void filesAreNotShownWithoutAnObject_data()
    {
        QTest::addColumn<int>("lack");
        QTest::addColumn<bool>("asked");
        QTest::newRow("no system") << 0 << false;
        QTest::newRow("no helper") << 1 << false;
        QTest::newRow("an identity that is no UID") << 2 << false;
        QTest::newRow("an object that is unknown") << 3 << true;
    }

    void filesAreNotShownWithoutAnObject()
    {
        QFETCH(int, lack);
        QFETCH(bool, asked);
        OneCompound<> one;
        if (lack == 0)
            one.m_layer.SetSystemPresent(false);
        else if (lack == 1)
            one.m_layer.SetService("RevisionControlUIHelper", nullptr);
        else if (lack == 2)
            one.m_compound.m_uid = "C0DE0000-0000-0000-0000-00000000000";
        else
            one.m_compound.m_uid = "C0DE0000-0000-0000-0000-0000DEADDEAD";
        one.m_browser.OnShowItemFiles();
        QCOMPARE(one.m_layer.Commands(), asked ? QStringList(FromLatin1("find ") + one.Uid()) : QStringList());
    }

    void filesOfEveryKindOfItemCanBeShown_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("compound") << 0;
        QTest::newRow("signature") << 1;
        QTest::newRow("loop compound") << 2;
        QTest::newRow("solver") << 3;
        QTest::newRow("polymorphic solver") << 4;
        QTest::newRow("global constant") << 5;
        QTest::newRow("type") << 6;
    }

    void filesOfEveryKindOfItemCanBeShown()
    {
        QFETCH(int, row);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        AddEveryKind(library);
        std::vector<ItemID> shown;
        layer.GetSourceControl().SetShowFilesHandler([&shown](const ItemID& in_item) { shown.push_back(in_item); });
        CommandBrowser browser;
        ShowAll(browser, library.GetAccessor());
        browser.Select(row);
        browser.OnShowItemFiles();
        QCOMPARE(shown.size(), std::size_t(1));
        QVERIFY(shown[0] == library.GetItems()[static_cast<std::size_t>(row)]);
    }

    void whatADialogIsAboutMayGoWhileItIsOpen_data()
    {
        QTest::addColumn<bool>("tags");
        QTest::addColumn<int>("change");
        const char* const changes[] = {"the item is removed", "the library is closed", "the library is destroyed"};
        for (int change = 0; change < 3; ++change)
        {
            QTest::newRow((std::string("renaming, ") + changes[change]).c_str()) << false << change;
            QTest::newRow((std::string("tags, ") + changes[change]).c_str()) << true << change;
        }
    }

    void whatADialogIsAboutMayGoWhileItIsOpen()
    {
        QFETCH(bool, tags);
        QFETCH(int, change);
        RealCompound real;
        RenameOrEditTags(real.m_browser, tags, [&](QDialog& in_dialog) {
            if (change == 0)
                real.m_library.Remove(real.m_item);
            else if (change == 1)
                real.m_library.Close();
            else
                real.m_layer.RemoveLibrary(real.m_library);
            Settle();
            FillIn(in_dialog, "x");
        });
        QCOMPARE(real.m_stack.count(), 0);
        QVERIFY(!real.m_browser.GetSelection().IsValid());
    }

    void aDialogKeepsToTheItemThatItWasOpenedFor_data()
    {
        QTest::addColumn<bool>("tags");
        QTest::addColumn<bool>("otherLibrary");
        QTest::newRow("renaming while the rows move") << false << false;
        QTest::newRow("tags while the rows move") << true << false;
        QTest::newRow("renaming while another library comes") << false << true;
        QTest::newRow("tags while another library comes") << true << true;
    }

    void aDialogKeepsToTheItemThatItWasOpenedFor()
    {
        QFETCH(bool, tags);
        QFETCH(bool, otherLibrary);
        RealCompound real;
        Library& other = real.m_layer.AddLibrary("Others");
        const ItemID foreign = other.Add(NewItem::Compound("Alpha"));
        ItemID first;
        RenameOrEditTags(real.m_browser, tags, [&](QDialog& in_dialog) {
            first = real.m_library.Add(NewItem::Compound("Alpha"));
            if (otherLibrary)
                real.m_browser.SetItemLibrary(other.GetAccessor());
            Settle();
            FillIn(in_dialog, "x");
        });
        QVERIFY(real.m_browser.GetSelection() == (otherLibrary ? foreign : first));
        QVERIFY((tags ? real.GetTags() : real.GetName()) == "x");
        QCOMPARE(real.m_stack.count(), 1);
    }

    void aBrowserDestroyedWhileItsDialogIsOpenWritesNothing_data()
    {
        QTest::addColumn<bool>("tags");
        QTest::newRow("renaming") << false;
        QTest::newRow("tags") << true;
    }

    void aBrowserDestroyedWhileItsDialogIsOpenWritesNothing()
    {
        QFETCH(bool, tags);
        FakeLayer layer;
        layer.AddCompound("Blend");
        std::unique_ptr<CommandBrowser> browser(new CommandBrowser);
        browser->SetCommandManager(&layer.m_commands);
        ShowLibrary(*browser, layer.GetAccessor());
        ModalUser user;
        user.WhenMenuOpens([tags](QMenu& in_menu) { Choose(in_menu, tags ? "Edit Tags for Blend" : "Rename Blend"); });
        WhenOneOpens(user, tags, [&](QDialog& in_dialog) {
            layer.Forget();
            browser.reset();
            FillIn(in_dialog, "x");
        });
        browser->RightPress(0);
        QVERIFY(user.IsDone());
        QVERIFY(!browser);
        QCOMPARE(layer.Commands(), QStringList());
    }

    void rowsWhoseItemsAreGoneSinceTheLastPaintAreHarmless()
    {
        RealCompound real;
        int shown = 0;
        real.m_layer.GetSourceControl().SetShowFilesHandler([&shown](const ItemID&) { ++shown; });
        real.m_layer.RemoveLibrary(real.m_library);
        ModalUser user;
        user.WhenDialogOpens("Rename ", [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        // The rows are still those of the last paint, and hold nothing any more.
        QCOMPARE(real.m_browser.GetRowCount(), std::size_t(1));
        real.m_browser.OnShowItemFiles();
        real.m_browser.OnRenameItem();
        // The dialog's event loop has painted the browser, which has no rows by now.
        QCOMPARE(real.m_browser.GetRowCount(), std::size_t(0));
        real.m_browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QCOMPARE(shown, 0);
        QCOMPARE(real.m_stack.count(), 0);
    }
};

NODEBROWSER_TEST_MAIN(TestItemCommands)
#include "test_itemcommands.moc"
