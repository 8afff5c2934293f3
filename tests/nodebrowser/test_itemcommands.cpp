#include "tests/nodebrowser/commandbrowser.h"
#include "tests/nodebrowser/commandlayer.h"
#include "tests/nodebrowser/modaluser.h"
#include "tests/support/testmain.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QUndoStack>

#include <functional>
#include <memory>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace
{

const char gTagsTitle[] = "Edit Item Tags";

QString Text(const char* in_text)
{
    return QString::fromLatin1(in_text);
}

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

/// Waits for one of the two dialogs on the compound "Blend".
void WhenOneOpens(ModalUser& out_user, bool in_tags, const std::function<void(QDialog&)>& in_action)
{
    if (in_tags)
        out_user.WhenDialogOpens(gTagsTitle, in_action);
    else
        out_user.WhenLaidOutDialogOpens("Rename Blend", in_action);
}

/// A browser on a library of one compound "Blend" that has an object, its row selected.
struct OneCompound
{
    OneCompound() : m_compound(m_layer.AddCompound("Blend"))
    {
        m_compound.m_tags = "color;mix";
        m_layer.GiveObject(m_compound);
        m_browser.SetItemLibrary(m_layer.GetAccessor());
        m_browser.SetCommandManager(&m_layer.m_commands);
        ShowBrowser(m_browser);
        m_browser.Select(0);
        m_layer.m_log.clear();
    }

    CommandLayer m_layer;
    RecordedCompound& m_compound;
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
        OneCompound one;
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
        QCOMPARE(one.m_layer.m_log, QStringList());
    }

    void renamingAsksWithThePresentNameSelected()
    {
        OneCompound one;
        QString text;
        QString selected;
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend", [&](QDialog& in_dialog) {
            text = Field(in_dialog).text();
            selected = Field(in_dialog).selectedText();
            Press(in_dialog, Qt::Key_Escape);
        });
        one.m_browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QCOMPARE(text, Text("Blend"));
        QCOMPARE(selected, Text("Blend"));
        QCOMPARE(one.m_layer.m_log, QStringList());
    }

    void renaming_data()
    {
        QTest::addColumn<QByteArray>("typed");
        QTest::addColumn<QStringList>("log");
        QTest::newRow("another name") << QByteArray("Mix") << QStringList(Text("rename Blend to 'Mix', the manager"));
        QTest::newRow("another case") << QByteArray("bLEND")
                                      << QStringList(Text("rename Blend to 'bLEND', the manager"));
        QTest::newRow("beyond ASCII") << QByteArray("Gr\xF6\xDF"
                                                    "e")
                                      << QStringList(Text("rename Blend to 'Gr\xF6\xDF"
                                                          "e', the manager"));
        QTest::newRow("a blank behind") << QByteArray("Blend ")
                                        << QStringList(Text("rename Blend to 'Blend ', the manager"));
        QTest::newRow("the same name") << QByteArray("Blend") << QStringList();
    }

    void renaming()
    {
        QFETCH(QByteArray, typed);
        QFETCH(QStringList, log);
        OneCompound one;
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend",
                                    [&typed](QDialog& in_dialog) { FillIn(in_dialog, typed.constData()); });
        one.m_browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.m_log, log);
    }

    void confirmingTheNameUntouchedWritesNothing()
    {
        OneCompound one;
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend", [](QDialog& in_dialog) {
            QTest::mouseClick(in_dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
        });
        one.m_browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.m_log, QStringList());
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
        OneCompound one;
        ModalUser user;
        const auto leave = [way](QDialog& in_dialog) {
            Retype(Field(in_dialog), "Mix");
            if (way == 0)
                ClickCancel(in_dialog);
            else if (way == 1)
                Press(in_dialog, Qt::Key_Escape);
            else
                in_dialog.close();
        };
        if (tags)
            user.WhenDialogOpens(gTagsTitle, leave);
        else
            user.WhenLaidOutDialogOpens("Rename Blend", leave);
        if (tags)
            one.m_browser.OnEditItemTags();
        else
            one.m_browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.m_log, QStringList());
    }

    void writesPassOnAMissingCommandManager()
    {
        OneCompound one;
        one.m_browser.SetCommandManager(nullptr);
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend", [](QDialog& in_dialog) { FillIn(in_dialog, "Mix"); });
        user.WhenDialogOpens(gTagsTitle, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        one.m_browser.OnRenameItem();
        one.m_browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.m_log, QStringList() << Text("rename Blend to 'Mix', no manager")
                                                  << Text("tag Blend under 'ApplicationTags' with 'x', no manager"));
    }

    void writesGoToTheCommandManagerOfTheMoment()
    {
        OneCompound one;
        NamedManager other("another manager");
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend", [&](QDialog& in_dialog) {
            one.m_browser.SetCommandManager(&other);
            FillIn(in_dialog, "Mix");
        });
        one.m_browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.m_log, QStringList(Text("rename Blend to 'Mix', another manager")));
    }

    void writeAccessIsNotTheBusinessOfTheCommands()
    {
        OneCompound one;
        one.m_compound.m_readOnly = true;
        one.m_compound.m_modifiable = false;
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend", [](QDialog& in_dialog) { FillIn(in_dialog, "Mix"); });
        user.WhenDialogOpens(gTagsTitle, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        one.m_browser.OnRenameItem();
        one.m_browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        // Asked and left to the data layer; whether it may be changed is not even asked.
        QCOMPARE(one.m_layer.m_log, QStringList() << Text("rename Blend to 'Mix', the manager")
                                                  << Text("tag Blend under 'ApplicationTags' with 'x', the manager"));
    }

    void renamingWhatIsNoCompoundAsksAndWritesNothing()
    {
        CommandLayer layer;
        layer.Add(VireoType::gSolver, "Solver");
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        browser.Select(0);
        QString text;
        ModalUser user;
        // The title comes from the compound, which there is none of.
        user.WhenLaidOutDialogOpens("Rename ", [&text](QDialog& in_dialog) {
            text = Field(in_dialog).text();
            FillIn(in_dialog, "Mix");
        });
        browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QCOMPARE(text, Text("Solver"));
        QCOMPARE(layer.m_log, QStringList());
    }

    void aRefusedRenameIsSilent()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("Blend").ReadOnly());
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowBrowser(browser);
        browser.Select(0);
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend", [](QDialog& in_dialog) { FillIn(in_dialog, "Mix"); });
        user.WhenDialogOpens(gTagsTitle, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        browser.OnRenameItem();
        browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QVERIFY(library.GetAccessor().GetItemName(item, true, nullptr) == "Blend");
        QVERIFY(library.GetAccessor().GetItemTags(item, "ApplicationTags").empty());
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 0);
    }

    void aChangeOfCaseAloneIsOneStepToUndo()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("Blend"));
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowBrowser(browser);
        browser.Select(0);
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend", [](QDialog& in_dialog) { FillIn(in_dialog, "BLEND"); });
        browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QVERIFY(library.GetAccessor().GetItemName(item, true, nullptr) == "BLEND");
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 1);
        layer.GetCommandManager().GetStack().undo();
        QVERIFY(library.GetAccessor().GetItemName(item, true, nullptr) == "Blend");
    }

    void deletingDoesNothing()
    {
        OneCompound one;
        ModalUser user;
        const int paints = CountPaints(one.m_browser, [&] { one.m_browser.OnDeleteItem(); });
        QVERIFY(user.IsDone());
        QCOMPARE(paints, 0);
        QCOMPARE(one.m_layer.m_log, QStringList());
        QCOMPARE(one.m_browser.SignalCount(), 1);
        QVERIFY(one.m_browser.GetSelection() == one.m_compound.m_id);
    }

    void deletingLeavesTheItemAndTheUndoStack()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend"));
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowBrowser(browser);
        browser.Select(0);
        browser.OnDeleteItem();
        QCOMPARE(library.GetItemCount(), std::size_t(1));
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 0);
    }

    void tagsAreAskedForWithTheNameAndTheOldTags()
    {
        OneCompound one;
        QString tags;
        bool named = false;
        ModalUser user;
        user.WhenDialogOpens(gTagsTitle, [&](QDialog& in_dialog) {
            tags = Field(in_dialog).text();
            const QList<QLabel*> labels = in_dialog.findChildren<QLabel*>();
            for (int i = 0; i < labels.size(); ++i)
                named = named || labels.at(i)->text() == Text("Blend");
            Press(in_dialog, Qt::Key_Escape);
        });
        one.m_browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QCOMPARE(tags, Text("color;mix"));
        QVERIFY(named);
        QCOMPARE(one.m_layer.m_log, QStringList());
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
        OneCompound one;
        one.m_compound.m_tags = old.constData();
        ModalUser user;
        user.WhenDialogOpens(gTagsTitle, [&typed](QDialog& in_dialog) { FillIn(in_dialog, typed.constData()); });
        one.m_browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        const QStringList wanted(
            Text("tag Blend under 'ApplicationTags' with '%1', the manager").arg(Text(written.constData())));
        QCOMPARE(one.m_layer.m_log, written == "-" ? QStringList() : wanted);
    }

    void confirmingUntouchedTagsWritesTheirPlainForm_data()
    {
        QTest::addColumn<QByteArray>("old");
        QTest::addColumn<QStringList>("log");
        QTest::newRow("plain already") << QByteArray("a;b") << QStringList();
        QTest::newRow("with a blank") << QByteArray("a; b")
                                      << QStringList(Text("tag Blend under 'ApplicationTags' with 'a;b', the manager"));
    }

    void confirmingUntouchedTagsWritesTheirPlainForm()
    {
        QFETCH(QByteArray, old);
        QFETCH(QStringList, log);
        OneCompound one;
        one.m_compound.m_tags = old.constData();
        ModalUser user;
        user.WhenDialogOpens(gTagsTitle, [](QDialog& in_dialog) { Press(in_dialog, Qt::Key_Return); });
        one.m_browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.m_log, log);
    }

    void aTagsDialogThatIsNotAcceptedWritesNothing()
    {
        OneCompound one;
        ModalUser user;
        user.WhenDialogOpens(gTagsTitle, [](QDialog& in_dialog) {
            FillIn(in_dialog, "x");
            in_dialog.setResult(QDialog::Rejected);
        });
        one.m_browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.m_log, QStringList());
    }

    void everyResultButZeroAccepts()
    {
        OneCompound one;
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend", [](QDialog& in_dialog) {
            Retype(Field(in_dialog), "Mix");
            in_dialog.done(2);
        });
        user.WhenDialogOpens(gTagsTitle, [](QDialog& in_dialog) {
            FillIn(in_dialog, "x");
            in_dialog.setResult(2);
        });
        one.m_browser.OnRenameItem();
        one.m_browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.Lines("rename").size(), 1);
        QCOMPARE(one.m_layer.Lines("tag").size(), 1);
    }

    void theListIsLeftToTheNotifications()
    {
        OneCompound one;
        one.m_layer.m_library->m_walks = 0;
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename Blend", [](QDialog& in_dialog) { FillIn(in_dialog, "Mix"); });
        user.WhenDialogOpens(gTagsTitle, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        one.m_browser.OnRenameItem();
        one.m_browser.OnEditItemTags();
        one.m_browser.OnShowItemFiles();
        QVERIFY(user.IsDone());
        Settle();
        QCOMPARE(one.m_layer.m_library->m_walks, 0);
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
        browser->SetItemLibrary(library.GetAccessor());
        ShowBrowser(*browser);
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
        OneCompound one;
        one.m_layer.m_library->m_refusing = true;
        ModalUser user;
        user.WhenDialogOpens(gTagsTitle, [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        one.m_browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QCOMPARE(one.m_layer.Lines("tag").size(), 1);
    }

    void newTagsAreOneStepThatTheNextSearchSees()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend").Tags("old"));
        library.Add(NewItem::Compound("Mix"));
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowBrowser(browser);
        browser.Select(0);
        ModalUser user;
        user.WhenDialogOpens(gTagsTitle, [](QDialog& in_dialog) { FillIn(in_dialog, "fresh"); });
        browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 1);
        browser.SearchField().setText(Text("fresh"));
        Settle();
        QCOMPARE(browser.RowNames(library.GetAccessor()), QStringList(Text("Blend")));
        layer.GetCommandManager().GetStack().undo();
        QVERIFY(library.GetAccessor().GetItemTags(library.FindByName("Blend"), "ApplicationTags") == "old");
    }

    void filesAreShownThroughTheHelper()
    {
        OneCompound one;
        one.m_browser.OnShowItemFiles();
        const QString uid = Text(one.m_compound.m_uid.c_str());
        QCOMPARE(one.m_layer.m_log, QStringList()
                                        << Text("find ") + uid << Text("show files %1, options: null").arg(uid));
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
        OneCompound one;
        if (lack == 0)
            one.m_layer.SetSystemPresent(false);
        else if (lack == 1)
            one.m_layer.m_helperPresent = false;
        else if (lack == 2)
            one.m_compound.m_uid = "C0DE0000-0000-0000-0000-00000000000";
        else
            one.m_compound.m_uid = "C0DE0000-0000-0000-0000-0000DEADDEAD";
        one.m_browser.OnShowItemFiles();
        QCOMPARE(one.m_layer.m_log,
                 asked ? QStringList(Text("find ") + Text(one.m_compound.m_uid.c_str())) : QStringList());
    }

    void filesOfEveryKindOfItemCanBeShown_data()
    {
        QTest::addColumn<int>("row");
        for (int row = 0; row < 7; ++row)
            QTest::newRow(QByteArray::number(row).constData()) << row;
    }

    void filesOfEveryKindOfItemCanBeShown()
    {
        QFETCH(int, row);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("1"));
        library.Add(NewItem::Signature("2"));
        library.Add(NewItem::LoopCompound("3"));
        library.Add(NewItem::Solver("4"));
        library.Add(NewItem::PolymorphicSolver("5"));
        library.Add(NewItem::GlobalConstant("6"));
        library.Add(NewItem::Type("7"));
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
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("Blend"));
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowBrowser(browser);
        browser.Select(0);
        ModalUser user;
        WhenOneOpens(user, tags, [&](QDialog& in_dialog) {
            if (change == 0)
                library.Remove(item);
            else if (change == 1)
                library.Close();
            else
                layer.RemoveLibrary(library);
            Settle();
            FillIn(in_dialog, "x");
        });
        if (tags)
            browser.OnEditItemTags();
        else
            browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 0);
        QVERIFY(!browser.GetSelection().IsValid());
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
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("Blend"));
        Library& other = layer.AddLibrary("Others");
        const ItemID foreign = other.Add(NewItem::Compound("Alpha"));
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowBrowser(browser);
        browser.Select(0);
        ItemID first;
        ModalUser user;
        WhenOneOpens(user, tags, [&](QDialog& in_dialog) {
            first = library.Add(NewItem::Compound("Alpha"));
            if (otherLibrary)
                browser.SetItemLibrary(other.GetAccessor());
            Settle();
            FillIn(in_dialog, "x");
        });
        if (tags)
            browser.OnEditItemTags();
        else
            browser.OnRenameItem();
        QVERIFY(user.IsDone());
        QVERIFY(browser.GetSelection() == (otherLibrary ? foreign : first));
        const ItemLibraryAccessor accessor = library.GetAccessor();
        QVERIFY((tags ? accessor.GetItemTags(item, "ApplicationTags") : accessor.GetItemName(item, true, nullptr)) ==
                "x");
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 1);
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
        CommandLayer layer;
        layer.AddCompound("Blend");
        std::unique_ptr<CommandBrowser> browser(new CommandBrowser);
        browser->SetItemLibrary(layer.GetAccessor());
        browser->SetCommandManager(&layer.m_commands);
        ShowBrowser(*browser);
        ModalUser user;
        user.WhenMenuOpens([tags](QMenu& in_menu) { Choose(in_menu, tags ? "Edit Tags for Blend" : "Rename Blend"); });
        WhenOneOpens(user, tags, [&](QDialog& in_dialog) {
            layer.m_log.clear();
            browser.reset();
            FillIn(in_dialog, "x");
        });
        browser->RightPress(0);
        QVERIFY(user.IsDone());
        QVERIFY(!browser);
        QCOMPARE(layer.m_log, QStringList());
    }

    void rowsWhoseItemsAreGoneSinceTheLastPaintAreHarmless()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend"));
        int shown = 0;
        layer.GetSourceControl().SetShowFilesHandler([&shown](const ItemID&) { ++shown; });
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowBrowser(browser);
        browser.Select(0);
        layer.RemoveLibrary(library);
        ModalUser user;
        user.WhenLaidOutDialogOpens("Rename ", [](QDialog& in_dialog) { FillIn(in_dialog, "x"); });
        // The rows are still those of the last paint, and hold nothing any more.
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
        browser.OnShowItemFiles();
        browser.OnRenameItem();
        // The dialog's event loop has painted the browser, which has no rows by now.
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
        browser.OnEditItemTags();
        QVERIFY(user.IsDone());
        QCOMPARE(shown, 0);
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 0);
    }
};

NODEBROWSER_TEST_MAIN(TestItemCommands)
#include "test_itemcommands.moc"
