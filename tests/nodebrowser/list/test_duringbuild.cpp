// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/nodebrowser/support/propertiesmanager.h"
#include "tests/support/testmain.h"

#include <stdexcept>

using vireo::datamodel::IItemLibraryNotification;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace
{

/// A shown browser of three items in the tab that shows everything. Nothing is written down yet.
struct Scene
{
    Scene() : m_properties(m_layer)
    {
        m_layer.SetService("RevisionControlPropertiesMgr", &m_properties);
        m_layer.ShowSourceControl();
        m_layer.AddCompound("Blend");
        m_layer.Add(VireoType::gSolver, "Add");
        m_layer.Add(LibType::gType, "Colour");
        m_browser.reset(new ProbedBrowser);
        ShowAll(*m_browser, m_layer.GetAccessor());
        m_layer.Forget();
    }

    void NotifyInvalidated()
    {
        m_layer.NotifyLibrary([](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
            in_observer.LibraryInvalidated(in_library);
        });
    }

    void Rename(FakeItem& out_item, const char* in_name)
    {
        out_item.m_name = in_name;
        m_layer.NotifyLibrary([&out_item](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
            in_observer.ItemNameChanged(in_library, out_item.m_id);
        });
    }

    void SwitchSourceControl(bool in_on)
    {
        m_properties.m_enabled = in_on;
        m_properties.Notify(&m_properties);
    }

    QString Rows() { return m_browser->RowNames(m_layer.GetAccessor()).join(QLatin1String(",")); }

    FakeLayer m_layer;
    FakePropertiesManager m_properties;
    std::unique_ptr<ProbedBrowser> m_browser;
};

/// Lets nothing through the toolkit, which leaks when something is thrown in a paint.
class CatchingBrowser : public ProbedBrowser
{
public:
    bool m_hasThrown = false;

protected:
    void paintEvent(QPaintEvent* in_event) override
    {
        try
        {
            ProbedBrowser::paintEvent(in_event);
        }
        catch (const std::runtime_error&)
        {
            m_hasThrown = true;
        }
    }
};

/// The reads that a build makes, as rows of test data.
void AddReads()
{
    QTest::addColumn<QByteArray>("read");
    QTest::newRow("first list") << QByteArray("iterate PolymorphicSolver");
    QTest::newRow("last list") << QByteArray("iterate Type");
    QTest::newRow("fitness") << QByteArray("valid Type Colour");
    QTest::newRow("value") << QByteArray("value Colour");
    QTest::newRow("identity") << QByteArray("identity Colour");
    QTest::newRow("name") << QByteArray("name Colour");
    QTest::newRow("tags") << QByteArray("tags Colour");
    QTest::newRow("uid") << QByteArray("uid Blend");
    QTest::newRow("service") << QByteArray("service 'RevisionControlUIHelper'");
}

} // namespace

/// What a data layer does from inside of the reads that build the list.
class TestDuringBuild : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangeThatIsToldDuringABuildLeadsToAnother_data() { AddReads(); }

    void aChangeThatIsToldDuringABuildLeadsToAnother()
    {
        QFETCH(QByteArray, read);
        Scene scene;
        int told = 0;
        scene.m_layer.WhenNext(read.constData(), [&scene, &told] {
            ++told;
            scene.Rename(scene.m_layer.GetItem(1), "Zoom");
        });
        scene.NotifyInvalidated();
        QCOMPARE(told, 0);
        Settle();
        QCOMPARE(told, 1);
        QCOMPARE(scene.m_layer.CountRebuilds(), 2);
        QCOMPARE(scene.Rows(), QString::fromLatin1("Blend,Colour,Zoom"));
        QCOMPARE(CountPaints(*scene.m_browser, [] {}), 0);
    }

    void anItemThatLeavesDuringABuildHasNoRow_data() { AddReads(); }

    void anItemThatLeavesDuringABuildHasNoRow()
    {
        QFETCH(QByteArray, read);
        Scene scene;
        scene.m_layer.WhenNext(read.constData(), [&scene] { scene.m_layer.Remove(1); });
        scene.NotifyInvalidated();
        Settle();
        QCOMPARE(scene.m_layer.Count("notify contents"), 1);
        QCOMPARE(scene.m_layer.CountRebuilds(), 2);
        QCOMPARE(scene.Rows(), QString::fromLatin1("Blend,Colour"));
    }

    void aChangeThatIsToldDuringANotificationIsOneBuild()
    {
        Scene scene;
        scene.m_layer.WhenNext("notify library", [&scene] { scene.Rename(scene.m_layer.GetItem(1), "Zoom"); });
        scene.NotifyInvalidated();
        Settle();
        QCOMPARE(scene.m_layer.Count("notify library"), 2);
        QCOMPARE(scene.m_layer.CountRebuilds(), 1);
        QCOMPARE(scene.Rows(), QString::fromLatin1("Blend,Colour,Zoom"));
    }

    void statesThatAreWantedDuringABuildAreRequestedByAnother_data() { AddReads(); }

    void statesThatAreWantedDuringABuildAreRequestedByAnother()
    {
        QFETCH(QByteArray, read);
        Scene scene;
        int told = 0;
        scene.m_layer.WhenNext(read.constData(), [&scene, &told] {
            ++told;
            scene.SwitchSourceControl(false);
            scene.SwitchSourceControl(true);
        });
        scene.SwitchSourceControl(true);
        QCOMPARE(told, 0);
        Settle();
        QCOMPARE(told, 1);
        QCOMPARE(scene.m_layer.CountRebuilds(), 2);
        QCOMPARE(scene.m_layer.Count("request"), 2);
        QCOMPARE(CountPaints(*scene.m_browser, [] {}), 0);
    }

    void aReadThatThrowsLeavesAListThatCanBeBuiltAnew_data() { AddReads(); }

    void aReadThatThrowsLeavesAListThatCanBeBuiltAnew()
    {
        QFETCH(QByteArray, read);
        Scene scene;
        scene.m_layer.WhenNext(read.constData(), [] { throw std::runtime_error("the disk is gone"); });
        bool threw = false;
        try
        {
            scene.m_browser->SetItemLibrary(scene.m_layer.GetAccessor());
        }
        catch (const std::runtime_error&)
        {
            threw = true;
        }
        QVERIFY(threw);
        scene.m_browser->SetItemLibrary(scene.m_layer.GetAccessor());
        Settle();
        QCOMPARE(scene.Rows(), QString::fromLatin1("Add,Blend,Colour"));
        QTest::mousePress(scene.m_browser.get(), Qt::LeftButton, Qt::NoModifier, scene.m_browser->RowCentre(1));
        QVERIFY(scene.m_browser->GetSelection() == scene.m_layer.GetItem(0).m_id);
    }

    void aPaintThatThrowsLeavesItsWorkToTheNext_data() { AddReads(); }

    void aPaintThatThrowsLeavesItsWorkToTheNext()
    {
        QFETCH(QByteArray, read);
        Scene scene;
        CatchingBrowser* const browser = new CatchingBrowser;
        scene.m_browser.reset(browser);
        ShowAll(*browser, scene.m_layer.GetAccessor());
        scene.m_layer.Forget();
        scene.SwitchSourceControl(false);
        scene.SwitchSourceControl(true); // asks for the states again
        scene.m_layer.WhenNext(read.constData(), [] { throw std::runtime_error("the disk is gone"); });
        browser->repaint();
        QVERIFY(browser->m_hasThrown);
        const int requests = scene.m_layer.Count("request");
        scene.m_browser->update();
        Settle();
        QCOMPARE(scene.Rows(), QString::fromLatin1("Add,Blend,Colour"));
        QCOMPARE(scene.m_layer.Count("request"), requests + 1);
    }
};

NODEBROWSER_TEST_MAIN(TestDuringBuild)
#include "test_duringbuild.moc"
