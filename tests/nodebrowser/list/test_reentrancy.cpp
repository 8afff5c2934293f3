// SPDX-License-Identifier: MIT
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/commandbrowser.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/nodebrowser/support/propertiesmanager.h"
#include "tests/support/testmain.h"

#include <QHelpEvent>

#include <algorithm>
#include <memory>
#include <set>
#include <string>

using qtcompat::FromLatin1;
using vireo::datamodel::IItemLibraryNotification;
using vireo::datamodel::IItemTOCNotification;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::UnspecifiedAccessor;
using vireo::datamodel::VireoType;

namespace
{

/// A shown browser of some items in the tab that shows everything, and a second library beside it. "Blend" is a
/// compound with an object; it stands in row 1.
struct Scene
{
    Scene()
        : m_properties(m_layer),
          m_otherContents(std::make_shared<FakeContents>(m_layer)),
          m_otherLibrary(std::make_shared<FakeLibrary>(m_layer, *m_otherContents))
    {
        m_properties.m_enabled = true;
        m_layer.SetService("RevisionControlPropertiesMgr", &m_properties);
        m_layer.ShowSourceControl();
        m_layer.Add(VireoType::gSolver, "Alpha");
        m_layer.GiveObject(m_layer.AddCompound("Blend"));
        m_layer.Add(LibType::gType, "Colour");
        m_layer.Add(VireoType::gSolver, "Delta");
        m_layer.GiveObject(m_layer.AddCompound("Echo"));
        m_layer.GetItem(4).m_signature = true;
        for (std::uint64_t number = 1; number <= 3; ++number)
        {
            const std::shared_ptr<FakeItem> item = std::make_shared<FakeItem>();
            item->m_recorder = &m_layer;
            item->m_id = ItemID(VireoType::gSolver, 0xB, number);
            item->m_listedAs = VireoType::gSolver;
            item->m_name = "Other " + std::to_string(number);
            m_otherContents->m_items.push_back(item);
        }
        m_browser.reset(new CommandBrowser);
        ShowAll(*m_browser, m_layer.GetAccessor());
        m_layer.Forget();
    }

    ItemLibraryAccessor Other() const { return ItemLibraryAccessor(UnspecifiedAccessor(m_otherLibrary)); }
    ItemLibraryAccessor Current() const { return m_otherAttached ? Other() : m_layer.GetAccessor(); }

    void Attach(bool in_other)
    {
        m_otherAttached = in_other;
        m_browser->SetItemLibrary(Current());
    }

    template <class Notification> void Notify(Notification in_notify)
    {
        const std::vector<IItemLibraryNotification*> observers =
            (m_otherAttached ? *m_otherLibrary : *m_layer.m_library).m_observers;
        ItemLibraryAccessor library = Current();
        for (IItemLibraryNotification* const observer : observers)
            in_notify(*observer, library);
    }

    void NotifyInvalidated()
    {
        Notify([](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
            in_observer.LibraryInvalidated(in_library);
        });
    }

    /// What the library that is attached has, in the order of the rows.
    QStringList ExpectedRows() const
    {
        QStringList names;
        for (const std::shared_ptr<FakeItem>& item : (m_otherAttached ? *m_otherContents : *m_layer.m_contents).m_items)
            names << FromLatin1(item->m_name);
        names.sort();
        return names;
    }

    /// Whether no item has two rows. A row of an item that is gone counts for nothing.
    bool HasNoDoubledRow() const
    {
        std::set<ItemID> items;
        for (std::size_t row = 0; row < m_browser->GetRowCount(); ++row)
        {
            const ItemAccessor item = m_browser->GetRowItem(row);
            if (item.IsValid() && !items.insert(item.GetItemID()).second)
                return false;
        }
        return true;
    }

    FakeLayer m_layer;
    FakePropertiesManager m_properties;
    const std::shared_ptr<FakeContents> m_otherContents;
    const std::shared_ptr<FakeLibrary> m_otherLibrary;
    std::unique_ptr<CommandBrowser> m_browser;
    bool m_otherAttached = false;
};

/// Something that a data layer must not do inside a read.
struct Action
{
    const char* m_name;
    void (*m_do)(Scene& io_scene);
};

void Render(QWidget& in_widget)
{
    QImage picture(in_widget.size(), QImage::Format_ARGB32);
    in_widget.render(&picture);
}

const Action gActions[] = {
    {"event loop", [](Scene&) { Settle(); }},
    {"repaint", [](Scene& io_scene) { io_scene.m_browser->repaint(); }},
    {"picture", [](Scene& io_scene) { Render(*io_scene.m_browser); }},
    {"attach other", [](Scene& io_scene) { io_scene.Attach(true); }},
    {"attach other and paint",
     [](Scene& io_scene) {
         io_scene.Attach(true);
         Render(*io_scene.m_browser);
     }},
    {"attach again", [](Scene& io_scene) { io_scene.Attach(io_scene.m_otherAttached); }},
    {"detach and attach",
     [](Scene& io_scene) {
         io_scene.m_browser->SetItemLibrary(ItemLibraryAccessor());
         Render(*io_scene.m_browser);
         io_scene.Attach(false);
     }},
    {"remove",
     [](Scene& io_scene) {
         // The first items go while they are being read.
         io_scene.m_layer.Remove(0);
         Render(*io_scene.m_browser);
     }},
    {"add",
     [](Scene& io_scene) {
         io_scene.m_layer.Add(VireoType::gSolver, "New");
         ItemAccessor item(UnspecifiedAccessor(io_scene.m_layer.m_contents->m_items.back()));
         const std::vector<IItemTOCNotification*> observers = io_scene.m_layer.m_contents->m_observers;
         for (IItemTOCNotification* const observer : observers)
             observer->ItemAdded(item);
         Render(*io_scene.m_browser);
     }},
    {"rename",
     [](Scene& io_scene) {
         FakeItem& item = io_scene.m_layer.GetItem(0);
         item.m_name = "Zoom";
         io_scene.Notify([&item](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
             in_observer.ItemNameChanged(in_library, item.m_id);
         });
         Render(*io_scene.m_browser);
     }},
    {"tag",
     [](Scene& io_scene) {
         for (const std::shared_ptr<FakeItem>& item : io_scene.m_layer.m_contents->m_items)
         {
             item->m_tags = "fresh";
             io_scene.Notify([&item](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
                 in_observer.ItemTagsChanged(in_library, item->m_id, vireo::datamodel::gApplicationTagsKey);
             });
         }
         Render(*io_scene.m_browser);
     }},
    {"state",
     [](Scene& io_scene) {
         for (const std::shared_ptr<FakeItem>& item : io_scene.m_layer.m_contents->m_items)
             io_scene.Notify([&item](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
                 in_observer.ItemAccessStateChanged(in_library, item->m_id, 91);
             });
         Render(*io_scene.m_browser);
     }},
    {"invalidate",
     [](Scene& io_scene) {
         io_scene.NotifyInvalidated();
         Render(*io_scene.m_browser);
     }},
    {"switch source control",
     [](Scene& io_scene) {
         for (const bool on : {false, true})
         {
             io_scene.m_properties.m_enabled = on;
             io_scene.m_properties.Notify(&io_scene.m_properties);
             Render(*io_scene.m_browser);
         }
     }},
    {"search",
     [](Scene& io_scene) {
         io_scene.m_browser->SearchField().setText(QString::fromLatin1("l"));
         Render(*io_scene.m_browser);
     }},
    {"another browser",
     [](Scene& io_scene) {
         ProbedBrowser other;
         other.SetItemLibrary(io_scene.Current());
         other.show();
         Settle();
     }},
};

/// A moment at which the browser reads, and the reads that it then makes.
struct Moment
{
    const char* m_name;
    const char* m_reads; ///< the beginnings of their lines, separated by "|"
    void (*m_prepare)(Scene& io_scene);
    void (*m_reach)(Scene& io_scene);
};

void DoNothing(Scene&) {}

const Moment gMoments[] = {
    {"attach", "contents of|iterate|valid|value|identity|name|tags|icon", DoNothing,
     [](Scene& io_scene) { io_scene.Attach(false); }},
    {"rebuild", "iterate|valid|value|identity|uid|find|name|tags|signature|icon|service|active|dirty",
     [](Scene& io_scene) { io_scene.NotifyInvalidated(); }, [](Scene& io_scene) { io_scene.m_browser->repaint(); }},
    {"rebuild with states", "iterate|uid|name|request",
     [](Scene& io_scene) {
         for (const bool on : {false, true})
         {
             io_scene.m_properties.m_enabled = on;
             io_scene.m_properties.Notify(&io_scene.m_properties);
         }
     },
     [](Scene& io_scene) { io_scene.m_browser->repaint(); }},
    {"paint", "identity|name|dirty", DoNothing, [](Scene& io_scene) { io_scene.m_browser->repaint(); }},
    {"picture", "name", DoNothing, [](Scene& io_scene) { Render(*io_scene.m_browser); }},
    {"relayout item by item", "identity|name|signature",
     [](Scene& io_scene) {
         io_scene.m_layer.Remove(3);
         Render(*io_scene.m_browser);
         io_scene.m_browser->SearchField().setText(QString::fromLatin1("e"));
     },
     [](Scene& io_scene) { Render(*io_scene.m_browser); }},
    {"compare", "identity|name|signature",
     [](Scene& io_scene) { io_scene.m_browser->SearchField().setText(QString::fromLatin1("e")); },
     [](Scene& io_scene) {
         ItemAccessor item = io_scene.m_browser->GetRowItem(1);
         std::size_t score = 0;
         io_scene.m_browser->CompareToFilter(item, &score);
     }},
    {"state", "identity|icon|active", DoNothing,
     [](Scene& io_scene) {
         const ItemID blend = io_scene.m_layer.GetItem(1).m_id;
         io_scene.Notify([&blend](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
             in_observer.ItemAccessStateChanged(in_library, blend, 5);
         });
     }},
    {"tags", "tags", DoNothing,
     [](Scene& io_scene) {
         const ItemID blend = io_scene.m_layer.GetItem(1).m_id;
         io_scene.Notify([&blend](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
             in_observer.ItemTagsChanged(in_library, blend, vireo::datamodel::gApplicationTagsKey);
         });
     }},
    {"source control off", "active|has|read", [](Scene& io_scene) { io_scene.m_properties.m_enabled = true; },
     [](Scene& io_scene) { io_scene.m_properties.Notify(&io_scene.m_properties); }},
    {"menu", "identity|name|service|read-only|uid|find|model|can modify", DoNothing,
     [](Scene& io_scene) {
         ModalUser user;
         user.IfMenuOpens([](QMenu& in_menu) { Press(in_menu, Qt::Key_Escape); });
         io_scene.m_browser->PopContexMenu(QPoint(50, 50), 1);
     }},
    {"tool tip", "identity|service|uid|find", DoNothing,
     [](Scene& io_scene) {
         const QPoint point = io_scene.m_browser->RowCentre(1);
         QHelpEvent event(QEvent::ToolTip, point, io_scene.m_browser->mapToGlobal(point));
         QCoreApplication::sendEvent(io_scene.m_browser.get(), &event);
     }},
    {"double click", "identity|model", DoNothing,
     [](Scene& io_scene) {
         QTest::mouseDClick(io_scene.m_browser.get(), Qt::LeftButton, Qt::NoModifier, io_scene.m_browser->RowCentre(1));
     }},
    {"selection", "identity", [](Scene& io_scene) { io_scene.m_browser->Select(1); },
     [](Scene& io_scene) { io_scene.m_browser->GetSelection(); }},
};

} // namespace

/// A data layer that breaks the rule that a read neither runs the event loop nor changes anything. The browser may show
/// stale rows until its next rebuild, and never crashes.
class TestReentrancy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLibraryThatOnlyTheBrowserKeepsOutlivesItsReads_data()
    {
        QTest::addColumn<QByteArray>("read");
        QTest::addColumn<int>("event");
        QTest::newRow("name in a paint") << QByteArray("name") << 0;
        QTest::newRow("dirty mark in a paint") << QByteArray("dirty") << 0;
        QTest::newRow("name in a build") << QByteArray("name") << 1;
        QTest::newRow("tags") << QByteArray("tags") << 2;
        QTest::newRow("read-only in the menu") << QByteArray("read-only") << 3;
        QTest::newRow("model at a double click") << QByteArray("model") << 4;
    }

    /// The read attaches another library. Nobody else keeps the one that is being read.
    void aLibraryThatOnlyTheBrowserKeepsOutlivesItsReads()
    {
        QFETCH(QByteArray, read);
        QFETCH(int, event);
        FakeLayer layer;
        layer.AddNodes(2);
        layer.AddCompound("Aa");
        CommandBrowser browser;
        browser.TabBar()->setCurrentIndex(2);
        std::weak_ptr<FakeLibrary> kept;
        {
            const std::shared_ptr<FakeLibrary> library = std::make_shared<FakeLibrary>(layer, *layer.m_contents);
            kept = library;
            browser.SetItemLibrary(ItemLibraryAccessor(UnspecifiedAccessor(library)));
        }
        ShowBrowser(browser);
        bool attached = false;
        layer.WhenNext(read.constData(), [&] {
            browser.SetItemLibrary(layer.GetAccessor());
            attached = true;
        });
        IItemLibraryNotification& observer = *kept.lock()->m_observers.front();
        ItemLibraryAccessor library = layer.GetAccessor();
        ModalUser user;
        switch (event)
        {
        case 0:
            break;
        case 1:
            observer.LibraryInvalidated(library);
            break;
        case 2:
            observer.ItemTagsChanged(library, layer.GetItem(0).m_id, vireo::datamodel::gApplicationTagsKey);
            break;
        case 3:
            user.IfMenuOpens([](QMenu& in_menu) { Press(in_menu, Qt::Key_Escape); });
            browser.PopContexMenu(browser.mapToGlobal(QPoint(5, 5)), 0);
            break;
        default:
            QTest::mouseDClick(&browser, Qt::LeftButton, Qt::NoModifier, browser.RowCentre(0));
        }
        browser.repaint();
        Settle();
        QVERIFY(attached);
        QVERIFY(kept.expired());
        QCOMPARE(browser.GetRowCount(), std::size_t(3));
    }

    void aLibraryThatIsAttachedWhileTheOneBeforeIsLeftStays_data()
    {
        QTest::addColumn<QByteArray>("step");
        QTest::newRow("the contents are left") << QByteArray("contents-");
        QTest::newRow("the library is left") << QByteArray("library-");
    }

    void aLibraryThatIsAttachedWhileTheOneBeforeIsLeftStays()
    {
        QFETCH(QByteArray, step);
        Scene scene;
        bool attached = false;
        scene.m_layer.WhenNext(step.constData(), [&] {
            scene.Attach(true);
            attached = true;
        });
        scene.m_browser->SetItemLibrary(scene.m_layer.GetAccessor());
        Settle();
        QVERIFY(attached);
        QCOMPARE(scene.m_layer.m_library->m_observers.size(), std::size_t(0));
        QCOMPARE(scene.m_layer.m_contents->m_observers.size(), std::size_t(0));
        QCOMPARE(scene.m_otherLibrary->m_observers.size(), std::size_t(1));
        QCOMPARE(scene.m_otherContents->m_observers.size(), std::size_t(1));
        QCOMPARE(scene.m_browser->RowNames(scene.Other()), scene.ExpectedRows());
    }

    void aReadThatComesBackDoesNoHarm_data()
    {
        QTest::addColumn<int>("moment");
        QTest::addColumn<int>("action");
        QTest::addColumn<QByteArray>("read");
        const int moments = static_cast<int>(sizeof gMoments / sizeof *gMoments);
        const int actions = static_cast<int>(sizeof gActions / sizeof *gActions);
        for (int moment = 0; moment < moments; ++moment)
        {
            const QList<QByteArray> reads = QByteArray(gMoments[moment].m_reads).split('|');
            for (int i = 0; i < reads.size(); ++i)
                for (int action = 0; action < actions; ++action)
                    QTest::newRow(
                        (QByteArray(gMoments[moment].m_name) + ": " + reads.at(i) + ": " + gActions[action].m_name)
                            .constData())
                        << moment << action << reads.at(i);
        }
    }

    void aReadThatComesBackDoesNoHarm()
    {
        QFETCH(int, moment);
        QFETCH(int, action);
        QFETCH(QByteArray, read);
        Scene scene;
        gMoments[moment].m_prepare(scene);
        // In the first such call, and in a later one if there are as many.
        int calls = 0;
        scene.m_layer.When(read.constData(), [&] {
            ++calls;
            if (calls == 1 || calls == 3)
                gActions[action].m_do(scene);
        });
        gMoments[moment].m_reach(scene);
        QVERIFY(calls > 0);
        scene.m_layer.ForgetHooks();
        scene.m_browser->SearchField().clear();
        Settle();
        Render(*scene.m_browser);
        QVERIFY(scene.HasNoDoubledRow());
        scene.NotifyInvalidated();
        Settle();
        QVERIFY(scene.HasNoDoubledRow());
        QCOMPARE(scene.m_browser->RowNames(scene.Current()).join(QLatin1String(",")),
                 scene.ExpectedRows().join(QLatin1String(",")));
        // It observes what is attached, once, and nothing that was attached meanwhile.
        const std::size_t other = scene.m_otherAttached ? 1 : 0;
        QCOMPARE(scene.m_layer.m_library->m_observers.size(), 1 - other);
        QCOMPARE(scene.m_layer.m_contents->m_observers.size(), 1 - other);
        QCOMPARE(scene.m_otherLibrary->m_observers.size(), other);
        QCOMPARE(scene.m_otherContents->m_observers.size(), other);
        scene.m_browser.reset();
        QVERIFY(scene.m_layer.m_library->m_observers.empty());
        QVERIFY(scene.m_layer.m_contents->m_observers.empty());
        QVERIFY(scene.m_otherLibrary->m_observers.empty());
        QVERIFY(scene.m_otherContents->m_observers.empty());
    }
};

NODEBROWSER_TEST_MAIN(TestReentrancy)
#include "test_reentrancy.moc"
