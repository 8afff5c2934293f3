// SPDX-License-Identifier: MIT
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/onecompound.h"
#include "tests/nodebrowser/support/pictures.h"
#include "tests/nodebrowser/support/plaindisplay.h"
#include "tests/nodebrowser/support/propertiesmanager.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QTimer>
#include <QUndoStack>

using qtcompat::FromLatin1;

using memorymodel::DataLayer;
using memorymodel::DataSource;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;
using vireo::datamodel::VireoType;

namespace
{

/// Moves the compound of the first row to another data source.
void MoveTo(CommandBrowser& in_browser, const char* in_source)
{
    UseSources(in_browser, 0, [in_source](QMenu& in_submenu) { Choose(in_submenu, in_source); });
}

} // namespace

/// A browser that can be told to move something from outside of any menu.
class MovingBrowser : public GuardedBrowser
{
    Q_OBJECT

public Q_SLOTS:
    // Past the guard, which waits for a menu.
    void CallFromOutside() { CNodeBrowser::OnDatasourceChange(); } // NOLINT(bugprone-parent-virtual-call)
};

class TestSourceControlCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkingOutAndMakingWritableGoThroughTheHelper()
    {
        OneCompound<> one;
        const int paints = CountPaints(one.m_browser, [&one] {
            one.m_browser.OnCheckOutItem();
            one.m_browser.OnMakeItemWritable();
        });
        // The new state comes back by itself or not at all: nothing is refreshed here.
        QCOMPARE(paints, 0);
        QCOMPARE(one.m_layer.Commands(), QStringList()
                                             << FromLatin1("find ") + one.Uid()
                                             << FromLatin1("check out %1, result: yes, interactive: yes").arg(one.Uid())
                                             << FromLatin1("find ") + one.Uid()
                                             << FromLatin1("make writable %1, interactive: yes").arg(one.Uid()));
    }

    void theyAreCommandsThatAHostCanConnect_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("check out") << QByteArray("OnCheckOutItem") << QByteArray("check out");
        QTest::newRow("make writable") << QByteArray("OnMakeItemWritable") << QByteArray("make writable");
    }

    void theyAreCommandsThatAHostCanConnect()
    {
        QFETCH(QByteArray, slot);
        QFETCH(QByteArray, line);
        FakeLayer layer;
        layer.GiveObject(layer.Add(VireoType::gSolver, "Solver"));
        CommandBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        browser.Select(0);
        QVERIFY(QMetaObject::invokeMethod(&browser, slot.constData()));
        QCOMPARE(layer.Lines(line.constData()).size(), 1);
    }

    void theyDoNothingWithoutARowAHelperOrAnObject_data()
    {
        QTest::addColumn<int>("lack");
        QTest::addColumn<bool>("asked");
        QTest::newRow("no row") << 0 << false;
        QTest::newRow("a row past the last one") << 1 << false;
        QTest::newRow("no system") << 2 << false;
        QTest::newRow("no helper") << 3 << false;
        QTest::newRow("an identity that is no UID") << 4 << false;
        QTest::newRow("an object that is unknown") << 5 << true;
        QTest::newRow("an item that is gone") << 6 << false;
    }

    void theyDoNothingWithoutARowAHelperOrAnObject()
    {
        QFETCH(int, lack);
        QFETCH(bool, asked);
        OneCompound<> one;
        one.m_browser.Select(lack == 0 ? 1 : 0);
        ModalUser user;
        if (lack == 1)
            one.m_browser.PopContexMenu(QPoint(10, 10), 1);
        else if (lack == 2)
            one.m_layer.SetSystemPresent(false);
        else if (lack == 3)
            one.m_layer.SetService("RevisionControlUIHelper", nullptr);
        else if (lack == 4)
            one.m_compound.m_uid = "Blend";
        else if (lack == 5)
            one.m_compound.m_uid = "C0DE0000-0000-0000-0000-0000DEADDEAD";
        else if (lack == 6)
            one.m_compound.m_alive = false;
        one.m_layer.Forget();
        one.m_browser.OnCheckOutItem();
        one.m_browser.OnMakeItemWritable();
        QVERIFY(user.IsDone());
        const QString find = FromLatin1("find C0DE0000-0000-0000-0000-0000DEADDEAD");
        QCOMPARE(one.m_layer.Commands(), asked ? QStringList() << find << find : QStringList());
    }

    void theNewStateComesBackAsANotification()
    {
        DataLayer layer;
        layer.GetSourceControl().SetVersionControlActive(true);
        layer.GetSourceControl().SetEnabled(true);
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("Blend"));
        CommandBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.Select(0);
        QCOMPARE(CountPaints(browser, [&browser] { browser.OnCheckOutItem(); }), 1);
        QCOMPARE(layer.GetSourceControl().GetState(item), unsigned(memorymodel::eCheckedOut));
        QCOMPARE(CountPaints(browser, [&browser] { browser.OnMakeItemWritable(); }), 1);
        QCOMPARE(layer.GetSourceControl().GetState(item), unsigned(memorymodel::eWritable));
    }

    void aChosenSourceIsMovedToThroughTheHelper()
    {
        OneCompound<> one;
        one.m_layer.AddResource("There", "//there", one.m_layer.MakeSource("//there"));
        MoveTo(one.m_browser, "There");
        QCOMPARE(QStringList(one.m_layer.Commands().mid(3)),
                 QStringList() << FromLatin1("find ") + one.Uid() << FromLatin1("database helper")
                               << FromLatin1("move %1 to '//there', with content: yes").arg(one.Uid()));
        QCOMPARE(one.m_layer.Commands().at(0), FromLatin1("find ") + one.Uid());
        QVERIFY(one.m_layer.Commands().at(1).startsWith(FromLatin1("can modify Blend")));
        QVERIFY(one.m_layer.Commands().at(2).startsWith(FromLatin1("query")));
    }

    void aMoveKnowsItsCompoundByItself()
    {
        OneCompound<> one;
        one.m_layer.AddResource("There", "//there", one.m_layer.MakeSource("//there"));
        ModalUser user;
        user.WhenMenuOpens([&one](QMenu& in_menu) {
            one.m_browser.Select(1); // nothing is selected any more
            if (GoTo(in_menu, "Compound source"))
                Press(in_menu, Qt::Key_Right);
        });
        user.WhenMenuOpens([](QMenu& in_submenu) { Choose(in_submenu, "There"); });
        one.m_browser.RightPress(0);
        QVERIFY(user.IsDone());
        QVERIFY(!one.m_browser.GetSelection().IsValid());
        QCOMPARE(one.m_layer.Lines("move"),
                 QStringList(FromLatin1("move %1 to '//there', with content: yes").arg(one.Uid())));
    }

    void aMoveLeavesTheListToTheNotifications()
    {
        OneCompound<> one;
        one.m_layer.AddResource("There", "//there", one.m_layer.MakeSource("//there"));
        MoveTo(one.m_browser, "There");
        Settle();
        QCOMPARE(one.m_layer.Lines("move").size(), 1);
        QCOMPARE(one.m_layer.Count("iterate"), 0);
    }

    void aMoveDoesNotAskAgainWhatTheMenuAsked()
    {
        OneCompound<> one;
        const auto there = one.m_layer.MakeSource("//there");
        one.m_layer.AddResource("There", "//there", there);
        UseSources(one.m_browser, 0, [&](QMenu& in_submenu) {
            there->m_state = 1;
            one.m_object->m_source->m_state = 1;
            Choose(in_submenu, "There");
        });
        QCOMPARE(one.m_layer.Lines("move").size(), 1);
    }

    void aRefusedMoveOrCheckOutIsLeftAtThat()
    {
        OneCompound<> one;
        one.m_layer.AddResource("There", "//there", one.m_layer.MakeSource("//there"));
        one.m_layer.m_database->m_refusing = true;
        QCOMPARE(CountPaints(one.m_browser, [&one] { one.m_browser.OnCheckOutItem(); }), 0);
        QCOMPARE(one.m_layer.Commands().filter(FromLatin1("check out ")).size(), 1);

        MoveTo(one.m_browser, "There");
        QCOMPARE(one.m_layer.Commands().filter(FromLatin1("move ")).size(), 1);
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(CountPaints(one.m_browser, [] {}), 0);
    }

    void aMoveWithoutAHelperDoesNothing_data()
    {
        QTest::addColumn<bool>("system");
        QTest::newRow("no system") << false;
        QTest::newRow("no helper") << true;
    }

    void aMoveWithoutAHelperDoesNothing()
    {
        QFETCH(bool, system);
        OneCompound<MovingBrowser> one;
        one.m_layer.AddResource("There", "//there", one.m_layer.MakeSource("//there"));
        UseSources(one.m_browser, 0, [&](QMenu& in_submenu) {
            if (system)
                one.m_layer.SetService("RevisionControlUIHelper", nullptr);
            else
                one.m_layer.SetSystemPresent(false);
            // Without a helper nobody looks at what the entry would move where.
            for (QAction* const action : in_submenu.actions())
                action->setData(QVariant());
            one.m_layer.Forget();
            Choose(in_submenu, "There");
        });
        QVERIFY(!one.m_browser.m_threw);
        QCOMPARE(one.m_layer.Commands(), QStringList());
    }

    void aMoveOfWhatIsUnknownThrowsAndMovesNothing_data()
    {
        QTest::addColumn<bool>("compound");
        QTest::newRow("the compound") << true;
        QTest::newRow("the resource") << false;
    }

    void aMoveOfWhatIsUnknownThrowsAndMovesNothing()
    {
        QFETCH(bool, compound);
        OneCompound<MovingBrowser> one;
        const auto resource = one.m_layer.AddResource("There", "//there", one.m_layer.MakeSource("//there"));
        const QString uid = one.Uid();
        const nexa4::DisableErrorReportingGuard quiet;
        UseSources(one.m_browser, 0, [&](QMenu& in_submenu) {
            (compound ? one.m_object->m_id : resource->m_id) = one.m_layer.m_database->MakeId(0xBADu);
            one.m_layer.Forget();
            Choose(in_submenu, "There");
        });
        QVERIFY(one.m_browser.m_threw);
        // It looked as far as there was something to be found.
        QCOMPARE(one.m_layer.Commands(), compound ? QStringList(FromLatin1("find ") + uid)
                                                  : QStringList()
                                                        << FromLatin1("find ") + uid << FromLatin1("database helper"));
    }

    void aMoveThatNoEntryAskedForDoesNothing()
    {
        OneCompound<MovingBrowser> one;
        one.m_browser.CallFromOutside();
        QTimer timer;
        timer.setSingleShot(true);
        connect(&timer, SIGNAL(timeout()), &one.m_browser, SLOT(OnDatasourceChange()));
        timer.start(0);
        QVERIFY(WaitFor([&timer] { return !timer.isActive(); }));
        QVERIFY(!one.m_browser.m_threw);
        QCOMPARE(one.m_layer.Commands(), QStringList());
    }

    void aMoveIsOneStepToUndoAndShowsInTheNextMenu()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& here = library.AddDataSource("Here");
        DataSource& there = library.AddDataSource("There");
        const ItemID item = library.Add(NewItem::Compound("Blend").In(here));
        CommandBrowser browser;
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowLibrary(browser, library.GetAccessor());
        MoveTo(browser, "There");
        QVERIFY(library.GetSourceOf(item) == &there);
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 1);
        Settle();
        MoveTo(browser, "Here");
        QVERIFY(library.GetSourceOf(item) == &here);
        layer.GetCommandManager().GetStack().undo();
        QVERIFY(library.GetSourceOf(item) == &there);
    }

    void switchingOnAsksForStatesAndARepaintOnce()
    {
        DataLayer layer;
        SpyLayer spy;
        layer.GetSourceControl().SetVersionControlActive(true);
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend"));
        FakePropertiesManager manager(m_record);
        layer.SetService("RevisionControlPropertiesMgr", &manager);
        CommandBrowser browser;
        ShowLibrary(browser, spy.Watch(library.GetAccessor()));
        spy.Forget();
        manager.m_enabled = true;
        QVERIFY(CountPaints(browser, [&manager] { manager.Notify(&manager); }) > 0);
        QCOMPARE(spy.Count("request 1"), 1);
        QCOMPARE(spy.CountRebuilds(), 1);
        spy.Forget();
        QCOMPARE(CountPaints(browser, [&manager] { manager.Notify(&manager); }), 0);
        QCOMPARE(spy.Count("request"), 0);
        QCOMPARE(spy.CountRebuilds(), 0);
    }

    void switchingOffClearsTheBadgesWithoutARepaint()
    {
        DataLayer layer;
        layer.GetSourceControl().SetVersionControlActive(true);
        layer.GetSourceControl().SetEnabled(true);
        Library& library = layer.AddLibrary("Nodes");
        const ItemID blend = library.Add(NewItem::Compound("Blend"));
        library.Add(NewItem::Compound("Mix"));
        CommandBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        layer.GetSourceControl().SetState(blend, memorymodel::eCheckedOut);
        Settle();
        const QImage badged = testcompat::ScreenPicture(browser).toImage();
        QCOMPARE(CountPaints(browser, [&layer] { layer.GetSourceControl().SetEnabled(false); }), 0);
        QVERIFY(testcompat::ScreenPicture(browser).toImage() == badged);
        browser.update();
        Settle();
        const QImage plain = testcompat::ScreenPicture(browser).toImage();
        QVERIFY(plain != badged);

        CommandBrowser fresh;
        ShowLibrary(fresh, library.GetAccessor());
        QVERIFY(PictureWithoutChildren(browser) == PictureWithoutChildren(fresh));
    }

    void switchingOffTwiceClearsOnce()
    {
        DataLayer layer;
        SpyLayer spy;
        layer.GetSourceControl().SetVersionControlActive(true);
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend"));
        library.Add(NewItem::Solver("Solver"));
        FakePropertiesManager manager(m_record);
        manager.m_enabled = true;
        layer.SetService("RevisionControlPropertiesMgr", &manager);
        CommandBrowser browser;
        ShowAll(browser, library.GetAccessor());
        spy.Forget();
        manager.m_enabled = false;
        QCOMPARE(CountPaints(browser, [&manager] { manager.Notify(&manager); }), 0);
        // Only the compound had a state; its icon is composed without versioning.
        QCOMPARE(spy.m_icons.size(), std::size_t(1));
        QCOMPARE(spy.m_icons[0].m_state, 0u);
        QVERIFY(!spy.m_icons[0].m_active);
        QCOMPARE(CountPaints(browser, [&manager] { manager.Notify(&manager); }), 0);
        QCOMPARE(spy.m_icons.size(), std::size_t(1));
        QCOMPARE(spy.Count("request"), 0);
    }

    void whatSwitchesTheDisplayOff_data()
    {
        QTest::addColumn<int>("change");
        QTest::newRow("no manager") << 0;
        QTest::newRow("a manager without properties") << 1;
        QTest::newRow("the property") << 2;
        QTest::newRow("no version control of files") << 3;
    }

    void whatSwitchesTheDisplayOff()
    {
        QFETCH(int, change);
        DataLayer layer;
        SpyLayer spy;
        layer.GetSourceControl().SetVersionControlActive(true);
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("Blend"));
        FakePropertiesManager manager(m_record);
        manager.m_enabled = true;
        layer.SetService("RevisionControlPropertiesMgr", &manager);
        CommandBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        manager.m_has = change != 1;
        manager.m_enabled = change != 2;
        layer.GetSourceControl().SetVersionControlActive(change != 3);
        m_record.Forget();
        spy.Forget();
        QCOMPARE(CountPaints(browser, [&] { manager.Notify(change == 0 ? nullptr : &manager); }), 0);
        QCOMPARE(m_record.Log(), change == 0   ? QStringList()
                                 : change == 1 ? QStringList(FromLatin1("has"))
                                               : QStringList() << FromLatin1("has") << FromLatin1("read"));
        // Cleared at once, and drawn without versioning from then on.
        QCOMPARE(spy.m_icons.size(), std::size_t(1));
        layer.GetSourceControl().SetVersionControlActive(true);
        layer.GetSourceControl().SetState(item, memorymodel::eOutOfDate);
        QCOMPARE(spy.m_icons.size(), std::size_t(2));
        QVERIFY(!spy.m_icons[1].m_active);
    }

    void versionControlIsAskedForOnlyWhenTheDisplayIsWanted()
    {
        DataLayer layer;
        FakePropertiesManager manager(m_record);
        layer.SetService("RevisionControlPropertiesMgr", &manager);
        CommandBrowser browser;
        PlainDisplay display;
        manager.Notify(nullptr);
        manager.Notify(&manager);
        manager.m_enabled = true;
        manager.m_has = false;
        manager.Notify(&manager);
        QCOMPARE(display.m_activeQueries, 0);
        manager.m_has = true;
        display.m_active = false;
        manager.Notify(&manager);
        QCOMPARE(display.m_activeQueries, 1);
    }

private:
    Recorder m_record;
};

NODEBROWSER_TEST_MAIN(TestSourceControlCommands)
#include "test_sourcecontrolcommands.moc"
