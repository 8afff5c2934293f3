#include "tests/nodebrowser/commandbrowser.h"
#include "tests/nodebrowser/commandlayer.h"
#include "tests/nodebrowser/modaluser.h"
#include "tests/nodebrowser/pictures.h"
#include "tests/nodebrowser/spylayer.h"
#include "tests/support/testmain.h"

#include <QTimer>
#include <QUndoStack>

using memorymodel::DataLayer;
using memorymodel::DataSource;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;
using vireo::datamodel::VireoType;

namespace
{

QString Text(const char* in_text)
{
    return QString::fromLatin1(in_text);
}

/// Chooses an entry of the submenu "Compound source" with the keyboard.
void ChooseSource(ModalUser& out_user, const char* in_text)
{
    const std::string text = in_text;
    out_user.WhenMenuOpens([](QMenu& in_menu) {
        if (GoTo(in_menu, "Compound source"))
            Press(in_menu, Qt::Key_Right);
    });
    out_user.WhenSubmenuOpens([text](QMenu& in_submenu) { Choose(in_submenu, text.c_str()); });
}

} // namespace

/// Keeps what a move throws away from the toolkit.
class MovingBrowser : public CommandBrowser
{
    Q_OBJECT

public:
    bool m_threw = false;

public Q_SLOTS:
    void CallFromOutside() { CNodeBrowser::OnDatasourceChange(); }

protected:
    void OnDatasourceChange() override
    {
        try
        {
            CNodeBrowser::OnDatasourceChange();
        }
        catch (const nexa4::ExBase::NullPtr&)
        {
            m_threw = true;
        }
    }
};

/// A source-control display that counts how often it is asked whether there is any.
class CountingDisplay : private ISourceControlDisplay
{
public:
    CountingDisplay()
    {
        m_before = InstallProvider(Provider());
        Provider provider = m_before;
        provider.m_sourceControl = this;
        InstallProvider(provider);
    }
    ~CountingDisplay() override { InstallProvider(m_before); }
    CountingDisplay(const CountingDisplay&) = delete;
    CountingDisplay& operator=(const CountingDisplay&) = delete;

    bool m_active = true;
    int m_activeQueries = 0;

private:
    void RequestObjectStates(const ScsTask&, const std::list<nexa4::NEXAHandle<nexa4::IDbObject>>&) override {}
    void TaskEnded(const ScsTask&) override {}
    bool IsFileVersionControlActive() override
    {
        ++m_activeQueries;
        return m_active;
    }
    QPixmap GetAssetStateIcon(const QPixmap& in_base, unsigned, bool, bool) override { return in_base; }
    QString GetToolTip(const nexa4::NEXAHandle<nexa4::IDbObject>&, const QString&) override { return QString(); }

    Provider m_before;
};

class TestSourceControlCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkingOutAndMakingWritableGoThroughTheHelper()
    {
        CommandLayer layer;
        RecordedCompound& compound = layer.AddCompound("Blend");
        layer.GiveObject(compound);
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        browser.Select(0);
        layer.m_log.clear();
        const int paints = CountPaints(browser, [&browser] {
            browser.OnCheckOutItem();
            browser.OnMakeItemWritable();
        });
        // The new state comes back by itself or not at all: nothing is refreshed here.
        QCOMPARE(paints, 0);
        const QString uid = Text(compound.m_uid.c_str());
        QCOMPARE(layer.m_log, QStringList()
                                  << Text("find ") + uid << Text("check out %1, result: yes, interactive: yes").arg(uid)
                                  << Text("find ") + uid << Text("make writable %1, interactive: yes").arg(uid));
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
        CommandLayer layer;
        layer.GiveObject(layer.Add(VireoType::gSolver, "Solver"));
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
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
        CommandLayer layer;
        RecordedCompound& compound = layer.AddCompound("Blend");
        layer.GiveObject(compound);
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        browser.Select(lack == 0 ? 1 : 0);
        ModalUser user;
        if (lack == 1)
            browser.PopContexMenu(QPoint(10, 10), 1);
        else if (lack == 2)
            layer.SetSystemPresent(false);
        else if (lack == 3)
            layer.m_helperPresent = false;
        else if (lack == 4)
            compound.m_uid = "Blend";
        else if (lack == 5)
            compound.m_uid = "C0DE0000-0000-0000-0000-0000DEADDEAD";
        else if (lack == 6)
            compound.m_alive = false;
        layer.m_log.clear();
        browser.OnCheckOutItem();
        browser.OnMakeItemWritable();
        QVERIFY(user.IsDone());
        const QString find = Text("find C0DE0000-0000-0000-0000-0000DEADDEAD");
        QCOMPARE(layer.m_log, asked ? QStringList() << find << find : QStringList());
    }

    void theNewStateComesBackAsANotification()
    {
        DataLayer layer;
        layer.GetSourceControl().SetVersionControlActive(true);
        layer.GetSourceControl().SetEnabled(true);
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("Blend"));
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        ShowBrowser(browser);
        browser.Select(0);
        QCOMPARE(CountPaints(browser, [&browser] { browser.OnCheckOutItem(); }), 1);
        QCOMPARE(layer.GetSourceControl().GetState(item), unsigned(memorymodel::eCheckedOut));
        QCOMPARE(CountPaints(browser, [&browser] { browser.OnMakeItemWritable(); }), 1);
        QCOMPARE(layer.GetSourceControl().GetState(item), unsigned(memorymodel::eWritable));
    }

    void aChosenSourceIsMovedToThroughTheHelper()
    {
        CommandLayer layer;
        RecordedCompound& compound = layer.AddCompound("Blend");
        layer.GiveObject(compound);
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        layer.m_log.clear();
        ModalUser user;
        ChooseSource(user, "There");
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        const QString uid = Text(compound.m_uid.c_str());
        QCOMPARE(layer.m_log.mid(3), QStringList() << Text("find ") + uid << Text("database helper")
                                                   << Text("move %1 to '//there', with content: yes").arg(uid));
        QCOMPARE(layer.m_log.at(0), Text("find ") + uid);
        QVERIFY(layer.m_log.at(1).startsWith(Text("can modify Blend")));
        QVERIFY(layer.m_log.at(2).startsWith(Text("query")));
    }

    void aMoveKnowsItsCompoundByItself()
    {
        CommandLayer layer;
        RecordedCompound& compound = layer.AddCompound("Blend");
        layer.GiveObject(compound);
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        ModalUser user;
        user.WhenMenuOpens([&browser](QMenu& in_menu) {
            browser.Select(1); // nothing is selected any more
            if (GoTo(in_menu, "Compound source"))
                Press(in_menu, Qt::Key_Right);
        });
        user.WhenSubmenuOpens([](QMenu& in_submenu) { Choose(in_submenu, "There"); });
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        QVERIFY(!browser.GetSelection().IsValid());
        QCOMPARE(layer.Lines("move"),
                 QStringList(Text("move %1 to '//there', with content: yes").arg(Text(compound.m_uid.c_str()))));
    }

    void aMoveLeavesTheListToTheNotifications()
    {
        CommandLayer layer;
        layer.GiveObject(layer.AddCompound("Blend"));
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        layer.m_library->m_walks = 0;
        ModalUser user;
        ChooseSource(user, "There");
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        Settle();
        QCOMPARE(layer.Lines("move").size(), 1);
        QCOMPARE(layer.m_library->m_walks, 0);
    }

    void aMoveDoesNotAskAgainWhatTheMenuAsked()
    {
        CommandLayer layer;
        RecordedCompound& compound = layer.AddCompound("Blend");
        const auto object = layer.GiveObject(compound);
        const auto there = layer.MakeSource("//there");
        layer.AddResource("There", "//there", there);
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        ModalUser user;
        user.WhenMenuOpens([&](QMenu& in_menu) {
            if (GoTo(in_menu, "Compound source"))
                Press(in_menu, Qt::Key_Right);
        });
        user.WhenSubmenuOpens([&](QMenu& in_submenu) {
            there->m_state = 1;
            object->m_source->m_state = 1;
            Choose(in_submenu, "There");
        });
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        QCOMPARE(layer.Lines("move").size(), 1);
    }

    void aRefusedMoveOrCheckOutIsLeftAtThat()
    {
        CommandLayer layer;
        layer.GiveObject(layer.AddCompound("Blend"));
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        layer.m_database->m_refusing = true;
        CommandBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        browser.Select(0);
        layer.m_log.clear();
        QCOMPARE(CountPaints(browser, [&browser] { browser.OnCheckOutItem(); }), 0);
        QCOMPARE(layer.m_log.filter(Text("check out ")).size(), 1);

        ModalUser user;
        user.WhenMenuOpens([](QMenu& in_menu) {
            if (GoTo(in_menu, "Compound source"))
                Press(in_menu, Qt::Key_Right);
        });
        user.WhenSubmenuOpens([](QMenu& in_submenu) { Choose(in_submenu, "There"); });
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        QCOMPARE(layer.m_log.filter(Text("move ")).size(), 1);
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(CountPaints(browser, [] {}), 0);
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
        CommandLayer layer;
        layer.GiveObject(layer.AddCompound("Blend"));
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        MovingBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        ModalUser user;
        user.WhenMenuOpens([](QMenu& in_menu) {
            if (GoTo(in_menu, "Compound source"))
                Press(in_menu, Qt::Key_Right);
        });
        user.WhenSubmenuOpens([&](QMenu& in_submenu) {
            if (system)
                layer.m_helperPresent = false;
            else
                layer.SetSystemPresent(false);
            // Without a helper nobody looks at what the entry would move where.
            for (QAction* const action : in_submenu.actions())
                action->setData(QVariant());
            layer.m_log.clear();
            Choose(in_submenu, "There");
        });
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        QVERIFY(!browser.m_threw);
        QCOMPARE(layer.m_log, QStringList());
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
        CommandLayer layer;
        const auto object = layer.GiveObject(layer.AddCompound("Blend"));
        const auto resource = layer.AddResource("There", "//there", layer.MakeSource("//there"));
        const QString objectId = Text(object->m_id.GetStr().c_str());
        MovingBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        const nexa4::DisableErrorReportingGuard quiet;
        ModalUser user;
        user.WhenMenuOpens([](QMenu& in_menu) {
            if (GoTo(in_menu, "Compound source"))
                Press(in_menu, Qt::Key_Right);
        });
        user.WhenSubmenuOpens([&](QMenu& in_submenu) {
            (compound ? object->m_id : resource->m_id) = layer.m_database->MakeId(0xBADu);
            layer.m_log.clear();
            Choose(in_submenu, "There");
        });
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        QVERIFY(browser.m_threw);
        // It looked as far as there was something to be found.
        QCOMPARE(layer.m_log, compound ? QStringList(Text("find ") + objectId)
                                       : QStringList() << Text("find ") + objectId << Text("database helper"));
    }

    void aMoveThatNoEntryAskedForDoesNothing()
    {
        CommandLayer layer;
        layer.GiveObject(layer.AddCompound("Blend"));
        MovingBrowser browser;
        browser.SetItemLibrary(layer.GetAccessor());
        ShowBrowser(browser);
        browser.Select(0);
        layer.m_log.clear();
        browser.CallFromOutside();
        QTimer timer;
        timer.setSingleShot(true);
        connect(&timer, SIGNAL(timeout()), &browser, SLOT(OnDatasourceChange()));
        timer.start(0);
        QVERIFY(WaitFor([&timer] { return !timer.isActive(); }));
        QVERIFY(!browser.m_threw);
        QCOMPARE(layer.m_log, QStringList());
    }

    void aMoveIsOneStepToUndoAndShowsInTheNextMenu()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& here = library.AddDataSource("Here");
        DataSource& there = library.AddDataSource("There");
        const ItemID item = library.Add(NewItem::Compound("Blend").In(here));
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        browser.SetCommandManager(&layer.GetCommandManager());
        ShowBrowser(browser);
        ModalUser user;
        ChooseSource(user, "There");
        browser.RightPress(0);
        QVERIFY(user.IsDone());
        QVERIFY(library.GetSourceOf(item) == &there);
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 1);
        Settle();
        ChooseSource(user, "Here");
        browser.RightPress(0);
        QVERIFY(user.IsDone());
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
        FakePropertiesManager manager(m_log);
        layer.SetService("RevisionControlPropertiesMgr", &manager);
        CommandBrowser browser;
        browser.SetItemLibrary(spy.Watch(library.GetAccessor()));
        ShowBrowser(browser);
        spy.Forget();
        manager.m_enabled = true;
        QVERIFY(CountPaints(browser, [&manager] { manager.Tell(&manager); }) > 0);
        QCOMPARE(CountLines(spy.m_log, "request 1"), 1);
        QCOMPARE(spy.CountRebuilds(), 1);
        spy.Forget();
        QCOMPARE(CountPaints(browser, [&manager] { manager.Tell(&manager); }), 0);
        QCOMPARE(CountLines(spy.m_log, "request"), 0);
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
        browser.SetItemLibrary(library.GetAccessor());
        ShowBrowser(browser);
        layer.GetSourceControl().SetState(blend, memorymodel::eCheckedOut);
        Settle();
        const QImage badged = qtcompat::ScreenPicture(browser).toImage();
        QCOMPARE(CountPaints(browser, [&layer] { layer.GetSourceControl().SetEnabled(false); }), 0);
        QVERIFY(qtcompat::ScreenPicture(browser).toImage() == badged);
        browser.update();
        Settle();
        const QImage plain = qtcompat::ScreenPicture(browser).toImage();
        QVERIFY(plain != badged);

        CommandBrowser fresh;
        fresh.SetItemLibrary(library.GetAccessor());
        ShowBrowser(fresh);
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
        FakePropertiesManager manager(m_log);
        manager.m_enabled = true;
        layer.SetService("RevisionControlPropertiesMgr", &manager);
        CommandBrowser browser;
        ShowAll(browser, library.GetAccessor());
        spy.Forget();
        manager.m_enabled = false;
        QCOMPARE(CountPaints(browser, [&manager] { manager.Tell(&manager); }), 0);
        // Only the compound had a state; its icon is composed without versioning.
        QCOMPARE(spy.m_icons.size(), std::size_t(1));
        QCOMPARE(spy.m_icons[0].m_state, 0u);
        QVERIFY(!spy.m_icons[0].m_active);
        QCOMPARE(CountPaints(browser, [&manager] { manager.Tell(&manager); }), 0);
        QCOMPARE(spy.m_icons.size(), std::size_t(1));
        QCOMPARE(CountLines(spy.m_log, "request"), 0);
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
        FakePropertiesManager manager(m_log);
        manager.m_enabled = true;
        layer.SetService("RevisionControlPropertiesMgr", &manager);
        CommandBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        ShowBrowser(browser);
        manager.m_has = change != 1;
        manager.m_enabled = change != 2;
        layer.GetSourceControl().SetVersionControlActive(change != 3);
        m_log.clear();
        spy.Forget();
        QCOMPARE(CountPaints(browser, [&] { manager.Tell(change == 0 ? nullptr : &manager); }), 0);
        QCOMPARE(m_log, change == 0   ? QStringList()
                        : change == 1 ? QStringList(Text("has"))
                                      : QStringList() << Text("has") << Text("read"));
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
        FakePropertiesManager manager(m_log);
        layer.SetService("RevisionControlPropertiesMgr", &manager);
        CommandBrowser browser;
        CountingDisplay display;
        manager.Tell(nullptr);
        manager.Tell(&manager);
        manager.m_enabled = true;
        manager.m_has = false;
        manager.Tell(&manager);
        QCOMPARE(display.m_activeQueries, 0);
        manager.m_has = true;
        display.m_active = false;
        manager.Tell(&manager);
        QCOMPARE(display.m_activeQueries, 1);
    }

private:
    QStringList m_log;
};

NODEBROWSER_TEST_MAIN(TestSourceControlCommands)
#include "test_sourcecontrolcommands.moc"
