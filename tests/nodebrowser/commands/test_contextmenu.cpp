// SPDX-License-Identifier: MIT
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/commandbrowser.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/support/otherservice.h"
#include "tests/support/testmain.h"

#include <QPointer>
#include <QTranslator>

#include <functional>
#include <memory>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace
{

/// What a person can see and do about the entries of a menu.
struct MenuLook
{
    QStringList m_entries; ///< "Rename Blend", with " (off)" behind what is disabled
    bool m_plain = true;   ///< no icon, shortcut, separator or check mark anywhere
    bool m_owned = true;   ///< every entry is the menu's own
    bool m_topLevel = true;

    /// Looks at the context menu of a row, which is opened with the right button and left with Escape. A menu that is
    /// not shown looks like one without entries.
    MenuLook(CommandBrowser& in_browser, int in_row)
    {
        ModalUser user;
        user.IfMenuOpens([this](QMenu& in_menu) {
            Take(in_menu);
            Press(in_menu, Qt::Key_Escape);
        });
        in_browser.RightPress(in_row);
        QVERIFY(user.IsDone());
    }

    /// The same for the data sources in the context menu.
    static MenuLook OfSources(CommandBrowser& in_browser, int in_row)
    {
        MenuLook look;
        UseMenu(in_browser, in_row, [&look](QMenu& in_menu) {
            look.Take(*FindEntry(in_menu, "Compound source")->menu());
            Press(in_menu, Qt::Key_Escape);
        });
        return look;
    }

    MenuLook() = default;

    void Take(const QMenu& in_menu)
    {
        m_topLevel = !in_menu.parent();
        const QList<QAction*> actions = in_menu.actions();
        for (int i = 0; i < actions.size(); ++i)
        {
            const QAction& action = *actions.at(i);
            m_entries << (action.isEnabled() ? action.text() : action.text() + FromLatin1(" (off)"));
            m_plain = m_plain && action.icon().isNull() && action.shortcut().isEmpty() && !action.isSeparator() &&
                      !action.isCheckable();
            m_owned = m_owned && (action.menu() ? action.menu()->parent() : action.parent()) == &in_menu;
        }
    }
};

/// Changes every text that is meant for translation.
class Shouting : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    // The toolkit's versions differ in which of these two there is to override.
    // NOLINTBEGIN(modernize-use-override)
    QString translate(const char*, const char* in_text, const char*) const { return FromLatin1(in_text).toUpper(); }
    QString translate(const char*, const char* in_text, const char*, int) const
    {
        return FromLatin1(in_text).toUpper();
    }
    // NOLINTEND(modernize-use-override)
};

} // namespace

/// Writes down which of its commands are called, and what else happens in between.
class ListeningBrowser : public CommandBrowser
{
    Q_OBJECT

public:
    ListeningBrowser() { connect(this, SIGNAL(SelectionChanged()), this, SLOT(NoteSelection())); }

    QStringList m_calls;
    bool m_threw = false;

protected:
    void OnRenameItem() override { m_calls << FromLatin1("rename"); }
    void OnDeleteItem() override { m_calls << FromLatin1("delete"); }
    void OnShowItemFiles() override { m_calls << FromLatin1("show files"); }
    void OnEditItemTags() override { m_calls << FromLatin1("edit tags"); }
    void OnDatasourceChange() override
    {
        const QAction* const action = qobject_cast<QAction*>(sender());
        m_calls << FromLatin1("move to ") + (action ? action->text() : FromLatin1("nowhere"));
    }
    void PopContexMenu(const QPoint& in_position, std::size_t in_row) override
    {
        // What the data layer throws must not travel through the toolkit, not even in a test.
        try
        {
            CommandBrowser::PopContexMenu(in_position, in_row);
        }
        catch (const nexa4::ExBase::NullPtr&)
        {
            m_threw = true;
        }
        m_calls << FromLatin1("menu closed");
    }

private Q_SLOTS:
    void NoteSelection() { m_calls << FromLatin1("selection changed"); }
};

class TestContextMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRowPastTheLastOneIsStoredAndOpensNoMenu()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Solver("a"));
        CommandBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        ModalUser user;
        browser.PopContexMenu(QPoint(50, 50), 2);
        QVERIFY(user.IsDone());
        QVERIFY(!browser.GetSelection().IsValid());
        QCOMPARE(browser.SignalCount(), 0);

        library.Add(NewItem::Solver("b"));
        const ItemID c = library.Add(NewItem::Solver("c"));
        Settle();
        // It was stored: now that there is such a row, it is the selected one.
        QVERIFY(browser.GetSelection() == c);
    }

    void aRowPastTheLastOneReplacesTheSelection()
    {
        FakeLayer layer;
        layer.Add(VireoType::gSolver, "a");
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        browser.Select(0);
        QVERIFY(browser.GetSelection().IsValid());
        browser.PopContexMenu(QPoint(50, 50), 1);
        QVERIFY(!browser.GetSelection().IsValid());
    }

    void aRowIsNotNarrowed()
    {
        if (sizeof(std::size_t) <= 4)
            return;
        FakeLayer layer;
        layer.Add(VireoType::gSolver, "a");
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        ModalUser user;
        browser.PopContexMenu(QPoint(50, 50), static_cast<std::size_t>(Q_UINT64_C(0x100000000)));
        QVERIFY(user.IsDone());
        QVERIFY(!browser.GetSelection().IsValid());
    }

    void aRowThatTheListIsTooShortForOpensNoMenu()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("a"));
        library.Add(NewItem::Compound("b"));
        Library& smaller = layer.AddLibrary("Small");
        const ItemID only = smaller.Add(NewItem::Compound("c"));
        CommandBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.SetItemLibrary(smaller.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(2));
        ModalUser user;
        browser.PopContexMenu(QPoint(50, 50), 1);
        QVERIFY(user.IsDone());
        QVERIFY(!browser.GetSelection().IsValid());
        const ItemID second = smaller.Add(NewItem::Compound("d"));
        browser.repaint();
        QVERIFY(browser.GetSelection() == second);
        QVERIFY(only != second);
    }

    void aRightPressBelowTheLastRowOpensNoMenu()
    {
        FakeLayer layer;
        layer.Add(VireoType::gSolver, "a");
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        ModalUser user;
        browser.RightPress(1);
        QVERIFY(user.IsDone());
        QVERIFY(browser.m_menuRows.empty());
        QVERIFY(!browser.GetSelection().IsValid());
    }

    void entriesOfEachKindOfItem_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<bool>("known");
        QTest::addColumn<QStringList>("entries");
        const QByteArray compound("compound"), signature("signature"), solver("solver"), constant("constant"),
            polymorphic("polymorphic"), type("type");
        const QString files = FromLatin1("Show Files for X"), rename = FromLatin1("Rename X"),
                      remove = FromLatin1("Delete X (off)"), source = FromLatin1("Compound source"),
                      tags = FromLatin1("Edit Tags for X");
        const QStringList all = QStringList() << files << rename << remove << source << tags;
        QTest::newRow("compound with an object") << compound << true << all;
        QTest::newRow("compound without") << compound << false << (QStringList() << rename << remove << tags);
        QTest::newRow("signature with an object") << signature << true << all;
        QTest::newRow("signature without") << signature << false << (QStringList() << rename << remove << tags);
        QTest::newRow("solver with an object") << solver << true << (QStringList() << files << tags);
        QTest::newRow("solver without") << solver << false << (QStringList() << tags);
        QTest::newRow("constant with an object") << constant << true << (QStringList() << files << tags);
        QTest::newRow("constant without") << constant << false << (QStringList() << tags);
        QTest::newRow("polymorphic solver with an object") << polymorphic << true << (QStringList() << files);
        QTest::newRow("polymorphic solver without") << polymorphic << false << QStringList();
        QTest::newRow("type with an object") << type << true << (QStringList() << files);
        QTest::newRow("type without") << type << false << QStringList();
    }

    void entriesOfEachKindOfItem()
    {
        QFETCH(QByteArray, type);
        QFETCH(bool, known);
        QFETCH(QStringList, entries);
        FakeLayer layer;
        FakeItem& item = AddKind(layer, type);
        if (known)
            layer.GiveObject(item);
        CommandBrowser browser;
        ShowAll(browser, layer.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
        const MenuLook look(browser, 0);
        QCOMPARE(look.m_entries, entries);
        QVERIFY(look.m_plain);
        QVERIFY(look.m_owned);
        QVERIFY(look.m_topLevel);
        QCOMPARE(browser.SignalCount(), 1);
    }

    void entriesThatNeedAnObjectGoWhenThereIsNone_data()
    {
        QTest::addColumn<int>("lack");
        QTest::newRow("nothing is missing") << int(eNothing);
        QTest::newRow("no system") << int(eNoSystem);
        QTest::newRow("no helper") << int(eNoHelper);
        QTest::newRow("another service of that name") << int(eOtherService);
        QTest::newRow("an identity that is no UID") << int(eNoUid);
        QTest::newRow("an object that is unknown") << int(eUnknown);
    }

    void entriesThatNeedAnObjectGoWhenThereIsNone()
    {
        QFETCH(int, lack);
        FakeLayer layer;
        OtherService other;
        FakeCompound& compound = layer.AddCompound("X");
        layer.GiveObject(compound, lack != eUnknown);
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        if (lack == eNoSystem)
            layer.SetSystemPresent(false);
        if (lack == eNoHelper)
            layer.SetService("RevisionControlUIHelper", nullptr);
        if (lack == eOtherService)
            layer.SetService("RevisionControlUIHelper", &other);
        if (lack == eNoUid)
            compound.m_uid = "12345";
        layer.Forget();
        const MenuLook look(browser, 0);
        QCOMPARE(bool(look.m_entries.contains(FromLatin1("Show Files for X"))), lack == eNothing);
        QCOMPARE(bool(look.m_entries.contains(FromLatin1("Compound source"))), lack == eNothing);
        QVERIFY(look.m_entries.contains(FromLatin1("Rename X")));
        QVERIFY(look.m_entries.contains(FromLatin1("Edit Tags for X")));
        const bool asked = lack == eNothing || lack == eUnknown;
        QCOMPARE(layer.Lines("find "),
                 asked ? QStringList(FromLatin1("find ") + FromLatin1(compound.m_uid.c_str())) : QStringList());
    }

    void theDataLayerIsAskedInAFixedOrder()
    {
        FakeLayer layer;
        FakeCompound& compound = layer.AddCompound("X");
        layer.GiveObject(compound);
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        layer.Forget();
        QStringList log;
        ModalUser user;
        user.WhenMenuOpens([&layer, &log](QMenu& in_menu) {
            log = layer.Lines("service|read-only|find|can modify");
            Press(in_menu, Qt::Key_Escape);
        });
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        const QStringList expected = QStringList()
                                     << FromLatin1("service 'RevisionControlUIHelper'") << FromLatin1("read-only X")
                                     << FromLatin1("find ") + FromLatin1(compound.m_uid.c_str())
                                     << FromLatin1("can modify X, with source: yes");
        QCOMPARE(log, expected);
    }

    void tagsOfWhatIsNoCompoundCanBeEditedUnlessItIsReadOnly_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("read-only solver") << QByteArray("solver") << true;
        QTest::newRow("writable solver") << QByteArray("solver") << false;
        QTest::newRow("read-only constant") << QByteArray("constant") << true;
        QTest::newRow("writable constant") << QByteArray("constant") << false;
    }

    void tagsOfWhatIsNoCompoundCanBeEditedUnlessItIsReadOnly()
    {
        QFETCH(QByteArray, type);
        QFETCH(bool, readOnly);
        FakeLayer layer;
        AddKind(layer, type).m_readOnly = readOnly;
        CommandBrowser browser;
        ShowAll(browser, layer.GetAccessor());
        const MenuLook look(browser, 0);
        QCOMPARE(look.m_entries, QStringList(FromLatin1(readOnly ? "Edit Tags for X (off)" : "Edit Tags for X")));
    }

    void onlyTheCompoundItselfSaysWhetherItCanBeEdited_data()
    {
        QTest::addColumn<bool>("readOnly");
        QTest::addColumn<bool>("modifiable");
        QTest::newRow("takes changes") << false << true;
        QTest::newRow("refused though not read-only") << false << false;
        QTest::newRow("takes changes though read-only") << true << true;
        QTest::newRow("refuses changes") << true << false;
    }

    void onlyTheCompoundItselfSaysWhetherItCanBeEdited()
    {
        QFETCH(bool, readOnly);
        QFETCH(bool, modifiable);
        FakeLayer layer;
        FakeCompound& compound = layer.AddCompound("X");
        compound.m_readOnly = readOnly;
        compound.m_modifiable = modifiable;
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        const MenuLook look(browser, 0);
        const QStringList on = QStringList() << FromLatin1("Rename X") << FromLatin1("Delete X (off)")
                                             << FromLatin1("Edit Tags for X");
        const QStringList off = QStringList() << FromLatin1("Rename X (off)") << FromLatin1("Delete X (off)")
                                              << FromLatin1("Edit Tags for X (off)");
        QCOMPARE(look.m_entries, modifiable ? on : off);
        QCOMPARE(layer.Lines("can modify"), QStringList(FromLatin1("can modify X, with source: yes")));
    }

    void aCompoundWithoutAModelCannotBeEdited()
    {
        FakeLayer layer;
        layer.Add(VireoType::gCompound, "X"); // its model is no compound
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        const MenuLook look(browser, 0);
        QCOMPARE(look.m_entries, QStringList() << FromLatin1("Rename X (off)") << FromLatin1("Delete X (off)")
                                               << FromLatin1("Edit Tags for X (off)"));
    }

    void showingFilesNeedsNoWriteAccess()
    {
        FakeLayer layer;
        FakeItem& item = layer.Add(VireoType::gSolver, "X");
        item.m_readOnly = true;
        layer.GiveObject(item);
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        const MenuLook look(browser, 0);
        QCOMPARE(look.m_entries, QStringList()
                                     << FromLatin1("Show Files for X") << FromLatin1("Edit Tags for X (off)"));
    }

    void typesAreComparedByAddress()
    {
        FakeLayer layer;
        layer.AddAs(VireoType::gCompound, gOtherCompound, "X");
        CommandBrowser browser;
        ShowAll(browser, layer.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
        QVERIFY(std::string(gOtherCompound) == VireoType::gCompound);
        const MenuLook look(browser, 0);
        QCOMPARE(look.m_entries, QStringList());
    }

    void namesStandInTheTextsAsTheyAre_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("plain") << QByteArray("Blend");
        QTest::newRow("blanks") << QByteArray("  two words ");
        QTest::newRow("a place marker") << QByteArray("%1");
        QTest::newRow("place markers") << QByteArray("50%1 %2 %L1 %%");
        QTest::newRow("beyond ASCII") << QByteArray("Gr\xF6\xDF"
                                                    "e");
        QTest::newRow("an ampersand") << QByteArray("Salt & Pepper");
        QTest::newRow("empty") << QByteArray("");
    }

    void namesStandInTheTextsAsTheyAre()
    {
        QFETCH(QByteArray, name);
        FakeLayer layer;
        layer.GiveObject(layer.AddCompound(name.constData()));
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        const MenuLook look(browser, 0);
        const QString shown = FromLatin1(name.constData());
        QCOMPARE(look.m_entries, QStringList()
                                     << FromLatin1("Show Files for ") + shown << FromLatin1("Rename ") + shown
                                     << FromLatin1("Delete ") + shown + FromLatin1(" (off)")
                                     << FromLatin1("Compound source") << FromLatin1("Edit Tags for ") + shown);
    }

    void theMenuOpensAtTheGivenPointAndSelectsItsRow()
    {
        FakeLayer layer;
        layer.AddCompound("a");
        layer.AddCompound("b");
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        const QPoint position(83, 61);
        QPoint menuPosition;
        ItemID selection;
        ModalUser user;
        user.WhenMenuOpens([&](QMenu& in_menu) {
            menuPosition = in_menu.pos();
            selection = browser.GetSelection();
            Press(in_menu, Qt::Key_Escape);
        });
        browser.PopContexMenu(position, 1);
        QVERIFY(user.IsDone());
        QCOMPARE(menuPosition, position);
        QVERIFY(selection == layer.m_contents->m_items[1]->m_id);
        // The signal is the business of whoever opened the menu.
        QCOMPARE(browser.SignalCount(), 0);
    }

    void noEntryIsMarkedWhenTheMenuOpens()
    {
        FakeLayer layer;
        layer.AddCompound("a");
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        bool marked = true;
        UseMenu(browser, 0, [&](QMenu& in_menu) {
            marked = in_menu.activeAction() != nullptr;
            Press(in_menu, Qt::Key_Escape);
        });
        QVERIFY(!marked);
    }

    void theMenuIsMadeAfreshForEachPress()
    {
        FakeLayer layer;
        FakeCompound& compound = layer.AddCompound("Old");
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        QCOMPARE(MenuLook(browser, 0).m_entries, QStringList()
                                                     << FromLatin1("Rename Old") << FromLatin1("Delete Old (off)")
                                                     << FromLatin1("Edit Tags for Old"));
        compound.m_name = "New";
        compound.m_modifiable = false;
        layer.GiveObject(compound);
        QCOMPARE(MenuLook(browser, 0).m_entries,
                 QStringList() << FromLatin1("Show Files for New") << FromLatin1("Rename New (off)")
                               << FromLatin1("Delete New (off)") << FromLatin1("Compound source")
                               << FromLatin1("Edit Tags for New (off)"));
    }

    void nothingIsLeftOfAMenuThatWasClosed()
    {
        FakeLayer layer;
        layer.GiveObject(layer.AddCompound("X"));
        layer.AddResource("Local", "//local", layer.MakeSource("//local"));
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        QPointer<QMenu> menu;
        QPointer<QMenu> submenu;
        QPointer<QAction> entry;
        ModalUser user;
        user.WhenMenuOpens([&](QMenu& in_menu) {
            menu = &in_menu;
            submenu = FindEntry(in_menu, "Compound source")->menu();
            entry = submenu->actions().at(0);
            Press(in_menu, Qt::Key_Escape);
        });
        browser.PopContexMenu(QPoint(10, 10), 0);
        QVERIFY(user.IsDone());
        QVERIFY(!menu);
        QVERIFY(!submenu);
        QVERIFY(!entry);
    }

    void eachEntryCallsItsCommandBeforeTheMenuReturns_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QString>("call");
        QTest::newRow("show files") << QByteArray("Show Files for X") << FromLatin1("show files");
        QTest::newRow("rename") << QByteArray("Rename X") << FromLatin1("rename");
        QTest::newRow("edit tags") << QByteArray("Edit Tags for X") << FromLatin1("edit tags");
    }

    void eachEntryCallsItsCommandBeforeTheMenuReturns()
    {
        QFETCH(QByteArray, entry);
        QFETCH(QString, call);
        FakeLayer layer;
        layer.GiveObject(layer.AddCompound("X"));
        ListeningBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        const QStringList wanted = QStringList()
                                   << call << FromLatin1("menu closed") << FromLatin1("selection changed");
        UseMenu(browser, 0, [&entry](QMenu& in_menu) { Choose(in_menu, entry.constData()); });
        QCOMPARE(browser.m_calls, wanted);

        browser.m_calls.clear();
        UseMenu(browser, 0, [&entry](QMenu& in_menu) { ClickEntry(in_menu, entry.constData()); });
        QCOMPARE(browser.m_calls, wanted);
    }

    void deletingIsAlwaysShownAndNeverOffered_data()
    {
        QTest::addColumn<bool>("signature");
        QTest::addColumn<bool>("modifiable");
        QTest::addColumn<bool>("known");
        const char* const kinds[] = {"compound", "signature"};
        const char* const changes[] = {"refuses changes", "takes changes"};
        const char* const objects[] = {"no object", "an object"};
        for (int i = 0; i < 8; ++i)
        {
            const bool signature = (i & 1) != 0, modifiable = (i & 2) != 0, known = (i & 4) != 0;
            const std::string tag = std::string(kinds[signature]) + ", " + changes[modifiable] + ", " + objects[known];
            QTest::newRow(tag.c_str()) << signature << modifiable << known;
        }
    }

    void deletingIsAlwaysShownAndNeverOffered()
    {
        QFETCH(bool, signature);
        QFETCH(bool, modifiable);
        QFETCH(bool, known);
        FakeLayer layer;
        FakeCompound& compound = layer.AddCompound("X");
        compound.m_signature = signature;
        compound.m_modifiable = modifiable;
        if (known)
            layer.GiveObject(compound);
        ListeningBrowser browser;
        ShowAll(browser, layer.GetAccessor());
        bool there = false;
        bool enabled = true;
        UseMenu(browser, 0, [&](QMenu& in_menu) {
            const QAction* const entry = FindEntry(in_menu, "Delete X");
            there = entry != nullptr;
            enabled = entry && entry->isEnabled();
            ClickEntry(in_menu, "Delete X");
            if (in_menu.isVisible() && GoTo(in_menu, "Delete X"))
                Press(in_menu, Qt::Key_Return);
            if (in_menu.isVisible())
                Press(in_menu, Qt::Key_Escape);
        });
        QVERIFY(there);
        QVERIFY(!enabled);
        QCOMPARE(browser.m_calls, QStringList() << FromLatin1("menu closed") << FromLatin1("selection changed"));
        QCOMPARE(layer.m_contents->m_items.size(), std::size_t(1));
    }

    void theDeleteEntryIsConnectedAllTheSame()
    {
        FakeLayer layer;
        layer.AddCompound("X");
        ListeningBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        UseMenu(browser, 0, [](QMenu& in_menu) {
            FindEntry(in_menu, "Delete X")->setEnabled(true);
            Choose(in_menu, "Delete X");
        });
        QCOMPARE(browser.m_calls.value(0), FromLatin1("delete"));
    }

    void anItemWithoutEntriesHasAnEmptyMenuOrNone()
    {
        FakeLayer layer;
        layer.Add(LibType::gType, "X");
        ListeningBrowser browser;
        ShowAll(browser, layer.GetAccessor());
        QStringList entries;
        QStringList callsInMenu;
        ModalUser user;
        user.IfMenuOpens([&](QMenu& in_menu) {
            entries = Texts(in_menu);
            callsInMenu = browser.m_calls;
            Press(in_menu, Qt::Key_Escape);
        });
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        QCOMPARE(entries, QStringList());
        // Where it is shown it is modal: nothing went on before it was left.
        QCOMPARE(callsInMenu, QStringList());
        QCOMPARE(browser.m_calls, QStringList() << FromLatin1("menu closed") << FromLatin1("selection changed"));
    }

    void theDataSourcesOfACompound()
    {
        FakeLayer layer;
        FakeCompound& compound = layer.AddCompound("X");
        layer.GiveObject(compound)->m_source = layer.MakeSource("//here");
        const auto here = layer.AddResource("Here", "//here", layer.MakeSource("//here"));
        layer.AddResource("Nowhere", "//nowhere", nullptr);
        const auto there = layer.AddResource("There", "//there/%1", layer.MakeSource("//there"));
        const auto fixed = layer.AddResource("Fixed", "//fixed", layer.MakeSource("//fixed", 1));
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        layer.Forget();
        MenuLook look;
        QStringList tips;
        QList<QVariant> data;
        bool entryOn = false;
        UseMenu(browser, 0, [&](QMenu& in_menu) {
            const QAction& entry = *FindEntry(in_menu, "Compound source");
            entryOn = entry.isEnabled();
            look.Take(*entry.menu());
            const QList<QAction*> actions = entry.menu()->actions();
            for (int i = 0; i < actions.size(); ++i)
            {
                tips << actions.at(i)->toolTip();
                data << actions.at(i)->data();
            }
            Press(in_menu, Qt::Key_Escape);
        });
        QVERIFY(entryOn);
        QCOMPARE(look.m_entries, QStringList() << FromLatin1("Here[Current] (off)") << FromLatin1("There")
                                               << FromLatin1("Fixed [Read-Only] (off)"));
        QVERIFY(look.m_plain);
        QVERIFY(look.m_owned);
        const QString tip = FromLatin1("Move compound to this data source\n");
        QCOMPARE(tips, QStringList() << tip + FromLatin1("//here") << tip + FromLatin1("//there/%1")
                                     << tip + FromLatin1("//fixed"));
        QCOMPARE(data.size(), 3);
        const std::string ids[] = {here->m_id.GetStr(), there->m_id.GetStr(), fixed->m_id.GetStr()};
        for (int i = 0; i < 3; ++i)
        {
            QCOMPARE(QByteArray(data.at(i).typeName()), QByteArray("QStringList"));
            QCOMPARE(data.at(i).toStringList(),
                     QStringList() << FromLatin1(compound.m_uid.c_str()) << FromLatin1(ids[i].c_str()));
        }
        QCOMPARE(layer.Lines("query"),
                 QStringList(FromLatin1("query 'select object where IS_OF_TYPE_VERSION( "
                                        "{0FACE000-1111-2222-3333-444455556666 } )', loaded: yes")));
    }

    void aDataSourceIsChosenWithTheKeyboard()
    {
        FakeLayer layer;
        layer.GiveObject(layer.AddCompound("X"));
        layer.AddResource("Fixed", "//fixed", layer.MakeSource("//fixed", 1));
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        ListeningBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        UseSources(browser, 0, [](QMenu& in_submenu) { Choose(in_submenu, "There"); });
        QCOMPARE(browser.m_calls, QStringList() << FromLatin1("move to There") << FromLatin1("menu closed")
                                                << FromLatin1("selection changed"));
    }

    void aDataSourceThatIsOffCannotBeClicked()
    {
        FakeLayer layer;
        layer.GiveObject(layer.AddCompound("X"));
        layer.AddResource("Fixed", "//fixed", layer.MakeSource("//fixed", 1));
        ListeningBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        bool there = false;
        UseSources(browser, 0, [&there](QMenu& in_submenu) {
            there = FindEntry(in_submenu, "Fixed [Read-Only]") != nullptr;
            ClickEntry(in_submenu, "Fixed [Read-Only]");
            CloseMenus();
        });
        QVERIFY(there);
        QCOMPARE(browser.m_calls, QStringList() << FromLatin1("menu closed") << FromLatin1("selection changed"));
    }

    void aCompoundInAReadOnlySourceCanBeMovedNowhere()
    {
        FakeLayer layer;
        layer.GiveObject(layer.AddCompound("X"))->m_source = layer.MakeSource("//here", 1);
        layer.AddResource("Here", "//here", layer.MakeSource("//here", 1));
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        layer.AddResource("Fixed", "//fixed", layer.MakeSource("//fixed", 1));
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        const MenuLook look = MenuLook::OfSources(browser, 0);
        QCOMPARE(look.m_entries, QStringList() << FromLatin1("Here[Current] [Read-Only] (off)")
                                               << FromLatin1("There (off)") << FromLatin1("Fixed [Read-Only] (off)"));
    }

    void theSubmenuIsThereForACompoundThatCannotBeEdited()
    {
        FakeLayer layer;
        FakeCompound& compound = layer.AddCompound("X");
        compound.m_modifiable = false;
        layer.GiveObject(compound);
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        const MenuLook look = MenuLook::OfSources(browser, 0);
        QCOMPARE(look.m_entries, QStringList(FromLatin1("There")));
    }

    void anEmptySubmenuIsShown_data()
    {
        QTest::addColumn<bool>("matches");
        QTest::newRow("the query finds nothing") << false;
        QTest::newRow("no resource leads to a source") << true;
    }

    void anEmptySubmenuIsShown()
    {
        QFETCH(bool, matches);
        FakeLayer layer;
        layer.GiveObject(layer.AddCompound("X"));
        if (matches)
            layer.AddResource("Nowhere", "//nowhere", nullptr);
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        bool found = false;
        bool empty = false;
        bool visible = false;
        UseMenu(browser, 0, [&](QMenu& in_menu) {
            const QAction* const entry = FindEntry(in_menu, "Compound source");
            found = entry && entry->menu() && entry->isEnabled();
            empty = found && entry->menu()->actions().isEmpty();
            visible = found && entry->isVisible() &&
                      in_menu.actionGeometry(FindEntry(in_menu, "Compound source")).height() > 0;
            Press(in_menu, Qt::Key_Escape);
        });
        QVERIFY(found);
        QVERIFY(empty);
        QVERIFY(visible);
    }

    void nullPointersOfTheDatabaseAreThrownThroughTheMenu_data()
    {
        QTest::addColumn<int>("hole");
        QTest::newRow("the object has no manager") << 0;
        QTest::newRow("the manager has no database") << 1;
        QTest::newRow("a match is no value") << 2;
        QTest::newRow("the object has no source") << 3;
    }

    void nullPointersOfTheDatabaseAreThrownThroughTheMenu()
    {
        QFETCH(int, hole);
        FakeLayer layer;
        const auto object = layer.GiveObject(layer.AddCompound("X"));
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        ListeningBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        if (hole == 0)
            object->m_manager.reset();
        else if (hole == 1)
            layer.m_database->m_reachable = false;
        else if (hole == 2)
            layer.m_database->m_matches.push_back(object->m_id);
        else
            object->m_source.reset();
        const nexa4::DisableErrorReportingGuard quiet;
        ModalUser user;
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        QVERIFY(browser.m_threw);
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(browser.GetSelection() == layer.m_contents->m_items[0]->m_id);
    }

    void hostMenusGetTheCommands_data()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<QString>("text");
        QTest::newRow("signature") << 0 << FromLatin1("Compound signature");
        QTest::newRow("compound") << 1 << FromLatin1("Public compound");
        QTest::newRow("loop compound") << 2 << FromLatin1("Public looping compound");
        QTest::newRow("save") << 3 << FromLatin1("Save graph library");
    }

    void hostMenusGetTheCommands()
    {
        QFETCH(int, command);
        QFETCH(QString, text);
        CommandBrowser browser;
        QMenu menu;
        QAction* const before = menu.addAction(FromLatin1("Quit"));
        browser.CreateMenuCommand(static_cast<CNodeBrowser::eMenuCommand>(command), &menu);
        QCOMPARE(menu.actions().size(), 2);
        QVERIFY(menu.actions().at(0) == before);
        QAction& action = *menu.actions().at(1);
        QCOMPARE(action.text(), text);
        QVERIFY(action.isEnabled());
        QVERIFY(action.parent() == &menu);
        QVERIFY(action.icon().isNull());
        QVERIFY(action.shortcut().isEmpty());
        QVERIFY(!action.isSeparator());
        QVERIFY(!action.menu());
    }

    void theValuesOfTheHostCommandsAreFixed()
    {
        QCOMPARE(int(CNodeBrowser::eNewSignature), 0);
        QCOMPARE(int(CNodeBrowser::eNewCompound), 1);
        QCOMPARE(int(CNodeBrowser::eNewLoopCompound), 2);
        QCOMPARE(int(CNodeBrowser::eSaveGraphLibrary), 3);
    }

    void hostMenusGetNothingForOtherValues_data()
    {
        QTest::addColumn<int>("command");
        QTest::newRow("4") << 4;
        QTest::newRow("5") << 5;
        QTest::newRow("-1") << -1;
        QTest::newRow("largest") << 0x7FFFFFFF;
    }

    void hostMenusGetNothingForOtherValues()
    {
        QFETCH(int, command);
        CommandBrowser browser;
        QMenu menu;
        menu.addAction(FromLatin1("Quit"));
        // The value reaches the browser as a host that is newer than it would pass it.
        void (CNodeBrowser::* const create)(CNodeBrowser::eMenuCommand, QMenu*) = &CNodeBrowser::CreateMenuCommand;
        (browser.*create)(static_cast<CNodeBrowser::eMenuCommand>(command), &menu);
        QCOMPARE(Texts(menu), QStringList(FromLatin1("Quit")));
        QVERIFY(menu.findChildren<QMenu*>().isEmpty());
    }

    void theSameCommandCanBePutIntoSeveralMenus()
    {
        CommandBrowser browser;
        QMenu first;
        std::unique_ptr<QMenu> second(new QMenu);
        browser.CreateMenuCommand(CNodeBrowser::eSaveGraphLibrary, &first);
        browser.CreateMenuCommand(CNodeBrowser::eSaveGraphLibrary, second.get());
        browser.CreateMenuCommand(CNodeBrowser::eNewCompound, &first);
        const QPointer<QAction> inSecond(second->actions().at(0));
        second.reset();
        QVERIFY(!inSecond);
        QCOMPARE(Texts(first), QStringList() << FromLatin1("Save graph library") << FromLatin1("Public compound"));
    }

    void hostCommandsAreDeafOnceTheBrowserIsGone()
    {
        FakeLayer layer;
        std::unique_ptr<CommandBrowser> browser(new CommandBrowser);
        browser->SetItemLibrary(layer.GetAccessor());
        QMenu menu;
        for (int command = 0; command < 4; ++command)
            browser->CreateMenuCommand(static_cast<CNodeBrowser::eMenuCommand>(command), &menu);
        browser.reset();
        QCOMPARE(menu.actions().size(), 4);
        ModalUser user;
        for (int i = 0; i < 4; ++i)
            menu.actions().at(i)->trigger();
        QVERIFY(user.IsDone());
        QCOMPARE(layer.Commands(), QStringList());
    }

    void onlyTheContextMenuIsTranslated()
    {
        FakeLayer layer;
        layer.GiveObject(layer.AddCompound("name %1"));
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        Shouting translator;
        QApplication::installTranslator(&translator);
        const MenuLook look(browser, 0);
        QMenu menu;
        for (int command = 0; command < 4; ++command)
            browser.CreateMenuCommand(static_cast<CNodeBrowser::eMenuCommand>(command), &menu);
        QApplication::removeTranslator(&translator);
        QCOMPARE(look.m_entries, QStringList() << FromLatin1("SHOW FILES FOR name %1") << FromLatin1("RENAME name %1")
                                               << FromLatin1("DELETE name %1 (off)") << FromLatin1("COMPOUND SOURCE")
                                               << FromLatin1("EDIT TAGS FOR name %1"));
        QCOMPARE(Texts(menu), QStringList()
                                  << FromLatin1("Compound signature") << FromLatin1("Public compound")
                                  << FromLatin1("Public looping compound") << FromLatin1("Save graph library"));
    }

    void whatIsChosenActsOnWhatTheRowHoldsByThen()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID a = library.Add(NewItem::Solver("a"));
        const ItemID b = library.Add(NewItem::Solver("b"));
        std::vector<ItemID> shown;
        layer.GetSourceControl().SetShowFilesHandler([&shown](const ItemID& in_item) { shown.push_back(in_item); });
        CommandBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        UseMenu(browser, 0, [&](QMenu& in_menu) {
            library.Remove(a);
            Settle(); // the rows are laid out anew while the menu is open
            Choose(in_menu, "Show Files for a");
        });
        QCOMPARE(shown.size(), std::size_t(1));
        QVERIFY(shown[0] == b);
        QVERIFY(browser.GetSelection() == b);
        QCOMPARE(browser.SignalCount(), 1);
    }

    void whatIsChosenDoesNothingWhenTheRowIsGone_data()
    {
        QTest::addColumn<int>("change");
        QTest::addColumn<QByteArray>("entry");
        const char* const changes[] = {"the item is removed", "the library is closed", "the library is destroyed",
                                       "no library", "an empty library"};
        const char* const entries[] = {"Show Files for a", "Edit Tags for a", "Rename a", "There"};
        for (int change = 0; change < 5; ++change)
            for (int entry = 0; entry < 4; ++entry)
                QTest::newRow((std::string(changes[change]) + ", " + entries[entry]).c_str())
                    << change << QByteArray(entries[entry]);
    }

    void whatIsChosenDoesNothingWhenTheRowIsGone()
    {
        QFETCH(int, change);
        QFETCH(QByteArray, entry);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.AddDataSource("Here");
        library.AddDataSource("There");
        library.Add(NewItem::Compound("a"));
        int shown = 0;
        layer.GetSourceControl().SetShowFilesHandler([&shown](const ItemID&) { ++shown; });
        GuardedBrowser browser;
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowLibrary(browser, library.GetAccessor());
        const nexa4::DisableErrorReportingGuard quiet;
        const std::function<void(QMenu&)> choose = [&](QMenu& in_menu) {
            TakeRowAway(change, layer, library, browser);
            Settle(); // the rows are laid out anew while the menu is open
            Choose(in_menu, entry.constData());
        };
        if (entry == "There")
            UseSources(browser, 0, choose);
        else
            UseMenu(browser, 0, choose);
        QCOMPARE(shown, 0);
        // A move knows its compound by itself; it goes by what the database still has.
        const bool stillThere = change == eNoLibrary || change == eEmptyLibrary;
        QCOMPARE(browser.m_threw, entry == "There" && !stillThere);
        QCOMPARE(layer.GetCommandManager().GetStack().count(), entry == "There" && stillThere ? 1 : 0);
        QVERIFY(!browser.GetSelection().IsValid());
        QCOMPARE(browser.SignalCount(), 1);
    }

    void theSignalComesAlsoWhenTheRowIsGoneMeanwhile()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Solver("a"));
        CommandBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        UseMenu(browser, 0, [&](QMenu& in_menu) {
            layer.RemoveLibrary(library);
            Press(in_menu, Qt::Key_Escape);
        });
        QCOMPARE(browser.SignalCount(), 1);
        QVERIFY(!browser.GetSelection().IsValid());
    }

    void aMenuOfRowsThatAreGoneSinceTheLastPaintIsEmpty()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("a"));
        CommandBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        layer.RemoveLibrary(library);
        const MenuLook look(browser, 0);
        QCOMPARE(look.m_entries, QStringList());
        QCOMPARE(browser.SignalCount(), 1);
    }

    void theBrowserMayBeDestroyedWhileItsMenuIsOpen_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::newRow("left with Escape") << QByteArray();
        QTest::newRow("show files") << QByteArray("Show Files for a");
        QTest::newRow("rename") << QByteArray("Rename a");
        QTest::newRow("edit tags") << QByteArray("Edit Tags for a");
    }

    void theBrowserMayBeDestroyedWhileItsMenuIsOpen()
    {
        QFETCH(QByteArray, entry);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("a"));
        int shown = 0;
        layer.GetSourceControl().SetShowFilesHandler([&shown](const ItemID&) { ++shown; });
        std::unique_ptr<CommandBrowser> browser(new CommandBrowser);
        ShowLibrary(*browser, library.GetAccessor());
        UseMenu(*browser, 0, [&](QMenu& in_menu) {
            browser.reset();
            if (entry.isEmpty())
                Press(in_menu, Qt::Key_Escape);
            else
                Choose(in_menu, entry.constData());
        });
        QVERIFY(!browser);
        QCOMPARE(shown, 0);
    }

private:
    enum eLack
    {
        eNothing,
        eNoSystem,
        eNoHelper,
        eOtherService,
        eNoUid,
        eUnknown
    };

    enum eChange
    {
        eItemRemoved,
        eLibraryClosed,
        eLibraryDestroyed,
        eNoLibrary,
        eEmptyLibrary
    };

    static FakeItem& AddKind(FakeLayer& out_layer, const QByteArray& in_kind)
    {
        if (in_kind == "compound")
            return out_layer.AddCompound("X");
        if (in_kind == "signature")
        {
            FakeCompound& signature = out_layer.AddCompound("X");
            signature.m_signature = true;
            return signature;
        }
        if (in_kind == "solver")
            return out_layer.Add(VireoType::gSolver, "X");
        if (in_kind == "constant")
            return out_layer.Add(VireoType::gGlobalConstant, "X");
        return out_layer.Add(in_kind == "type" ? LibType::gType : VireoType::gPolymorphicSolver, "X");
    }

    static void TakeRowAway(int in_change, DataLayer& in_layer, Library& in_library, CNodeBrowser& in_browser)
    {
        if (in_change == eItemRemoved)
            in_library.Remove(in_library.GetItems().front());
        else if (in_change == eLibraryClosed)
            in_library.Close();
        else if (in_change == eLibraryDestroyed)
            in_layer.RemoveLibrary(in_library);
        else if (in_change == eNoLibrary)
            in_browser.SetItemLibrary(ItemLibraryAccessor());
        else
            in_browser.SetItemLibrary(in_layer.AddLibrary("Empty").GetAccessor());
        // An invalid library asks for no repaint by itself.
        in_browser.update();
    }
};

NODEBROWSER_TEST_MAIN(TestContextMenu)
#include "test_contextmenu.moc"
