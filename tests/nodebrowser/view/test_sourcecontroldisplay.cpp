// SPDX-License-Identifier: MIT
#include "nodebrowser/rowlayout.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/propertiesmanager.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/testmain.h"

#include <memory>
#include <string>

using memorymodel::NewItem;
using vireo::datamodel::IItemLibraryNotification;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;

/// A browser whose properties manager is in the hands of the test. Files are under version control, the property is
/// off.
class TestSourceControlDisplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_record.Forget();
        m_layer.reset(new memorymodel::DataLayer);
        m_layer->GetSourceControl().SetVersionControlActive(true);
        m_manager.reset(new FakePropertiesManager(m_record));
        m_layer->SetService("RevisionControlPropertiesMgr", m_manager.get());
        m_library = &m_layer->AddLibrary("A");
        m_blend = m_library->Add(NewItem::Compound("Blend"));
        m_fade = m_library->Add(NewItem::Compound("Fade"));
        m_add = m_library->Add(NewItem::Solver("Add"));
        m_spy.reset(new SpyLayer);
        m_browser.reset(new ProbedBrowser);
        m_accessor = m_spy->Watch(m_library->GetAccessor());
    }

    void cleanup()
    {
        m_browser.reset();
        m_accessor = ItemLibraryAccessor();
        m_spy.reset();
        m_layer.reset();
        m_manager.reset();
    }

    void aBrowserWithoutLibraryRequestsNothingOnceAndForAll()
    {
        ShowBrowser(*m_browser);
        QCOMPARE(Requests(), QString::fromLatin1("0"));
        m_browser->update();
        Settle();
        QCOMPARE(Requests(), QString::fromLatin1("0"));
    }

    void statesAreRequestedWhileTheDisplayIsOffToo()
    {
        Show();
        QCOMPARE(Requests(), QString::fromLatin1("2"));
        QVERIFY(!IsDisplayed());
    }

    void statesAreRequestedExactlyWhenTheyAreStale()
    {
        Show();
        QCOMPARE(Requests(), QString::fromLatin1("2"));
        m_library->Add(NewItem::Compound("Clamp"));
        Settle();
        m_browser->SearchField().setText(QString::fromLatin1("f"));
        Settle();
        m_browser->TabBar()->setCurrentIndex(2);
        Settle();
        m_library->Invalidate();
        Settle();
        m_browser->resize(310, 410);
        Settle();
        QCOMPARE(Requests(), QString::fromLatin1("2"));
        Enable(true);
        Settle();
        QCOMPARE(Requests(), QString::fromLatin1("2 3"));
        Enable(false);
        m_browser->update();
        Settle();
        QCOMPARE(Requests(), QString::fromLatin1("2 3"));
        m_browser->SetItemLibrary(m_accessor);
        Settle();
        QCOMPARE(Requests(), QString::fromLatin1("2 3 3"));
    }

    void enablingRepaintsAndRequestsOnce()
    {
        Show();
        m_spy->Forget();
        QVERIFY(CountPaints(*m_browser, [&] { Enable(true); }) > 0);
        QCOMPARE(CountPaints(*m_browser, [] {}), 0);
        QCOMPARE(m_spy->CountRebuilds(), 1);
        QCOMPARE(Requests(), QString::fromLatin1("2"));
        QVERIFY(IsDisplayed());
    }

    void enablingAgainDoesNothing()
    {
        Show();
        Enable(true);
        Settle();
        m_spy->Forget();
        QCOMPARE(CountPaints(*m_browser, [&] { Enable(true); }), 0);
        QCOMPARE(m_spy->Log().join(QLatin1String("|")), QString::fromLatin1("active"));
        QVERIFY(m_spy->m_icons.empty());
    }

    void enablingTwiceBetweenPaintsRequestsOnce()
    {
        Show();
        m_spy->Forget();
        Enable(true);
        Enable(true);
        Settle();
        QCOMPARE(Requests(), QString::fromLatin1("2"));
    }

    void enablingComposesNothingBeforeThePaint()
    {
        Show();
        NotifyState(m_blend, 3);
        Settle();
        m_spy->Forget();
        Enable(true);
        QVERIFY(m_spy->m_icons.empty());
        QCOMPARE(m_spy->CountRebuilds(), 0);
    }

    void disablingTakesTheStatesAwayWithoutARepaint()
    {
        Show();
        Enable(true);
        Settle();
        NotifyState(m_blend, 3);
        NotifyState(m_fade, 4);
        Settle();
        m_spy->Forget();
        QCOMPARE(CountPaints(*m_browser, [&] { Enable(false); }), 0);
        QCOMPARE(m_spy->Log().join(QLatin1String("|")), QString::fromLatin1("icon 0"));
        // Both records take one icon.
        QCOMPARE(m_spy->m_icons.size(), std::size_t(1));
        QCOMPARE(m_spy->m_icons[0].m_state, 0u);
        QVERIFY(!m_spy->m_icons[0].m_active);
        // Their state is 0 now.
        m_spy->Forget();
        NotifyState(m_blend, 0);
        QVERIFY(m_spy->m_icons.empty());
    }

    void disablingTakesTheStatesOfHiddenItemsAwayToo()
    {
        Show();
        Enable(true);
        m_browser->SearchField().setText(QString::fromLatin1("fade"));
        Settle();
        QCOMPARE(m_browser->GetRowCount(), std::size_t(1));
        NotifyState(m_blend, 3);
        NotifyState(m_fade, 4);
        Enable(false);
        // Being told the state that it has already repaints nothing, whether an item is hidden or not.
        QCOMPARE(CountPaints(*m_browser, [this] { NotifyState(m_blend, 0); }), 0);
        QCOMPARE(CountPaints(*m_browser, [this] { NotifyState(m_fade, 0); }), 0);
    }

    void disablingComposesOnlyIconsThatHaveAState()
    {
        m_library->Add(NewItem::Solver("Without a state"));
        Show();
        Enable(true);
        Settle();
        NotifyState(m_blend, 0);
        NotifyState(m_fade, 4);
        m_spy->Forget();
        Enable(false);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(1));
    }

    void disablingAlsoTakesTheRequestedStateAway()
    {
        Show();
        Enable(true);
        QImage picture(300, 400, QImage::Format_ARGB32);
        m_browser->render(&picture);
        m_spy->Forget();
        Enable(false);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(1));
        QCOMPARE(m_spy->m_icons[0].m_state, 0u);
    }

    void disablingAgainDoesNothing()
    {
        Show();
        Enable(true);
        Settle();
        Enable(false);
        NotifyState(m_blend, 3);
        Settle();
        m_spy->Forget();
        QCOMPARE(CountPaints(*m_browser, [&] { Enable(false); }), 0);
        QVERIFY(m_spy->m_icons.empty());
    }

    void disablingWhatWasNeverEnabledDoesNothing()
    {
        Show();
        NotifyState(m_blend, 3);
        Settle();
        m_spy->Forget();
        QCOMPARE(CountPaints(*m_browser, [&] { Enable(false); }), 0);
        QVERIFY(m_spy->m_icons.empty());
    }

    void switchingOnAndOffBetweenPaintsStillRequestsTheStates()
    {
        Show();
        m_spy->Forget();
        Enable(true);
        Enable(false);
        Settle();
        QCOMPARE(Requests(), QString::fromLatin1("2"));
        QVERIFY(!IsDisplayed());
    }

    void switchingOffAndOnRequestsAnew()
    {
        Show();
        Enable(true);
        Settle();
        m_spy->Forget();
        Enable(false);
        Enable(true);
        Settle();
        QCOMPARE(Requests(), QString::fromLatin1("2"));
        QVERIFY(IsDisplayed());
    }

    void anEnabledManagerCountsFromTheBeginning()
    {
        m_browser.reset();
        m_manager->m_enabled = true;
        m_browser.reset(new ProbedBrowser);
        m_spy->Forget();
        Show();
        QCOMPARE(Requests(), QString::fromLatin1("2"));
        QVERIFY(IsDisplayed());
    }

    void aNullManagerSwitchesTheDisplayOff()
    {
        Show();
        Enable(true);
        Settle();
        NotifyState(m_blend, 3);
        m_record.Forget();
        m_spy->Forget();
        m_manager->Notify(nullptr);
        QVERIFY(!m_spy->m_icons.empty());
        QVERIFY(m_record.Log().isEmpty());
        QCOMPARE(m_spy->Count("active"), 0);
        QVERIFY(!IsDisplayed());
    }

    void aManagerWithoutPropertiesIsNotReadAndSwitchesOff()
    {
        Show();
        Enable(true);
        Settle();
        m_record.Forget();
        m_manager->m_has = false;
        m_manager->Notify(m_manager.get());
        QCOMPARE(m_record.Log().join(QLatin1String(",")), QString::fromLatin1("has"));
        QVERIFY(!IsDisplayed());
    }

    void aManagerWithPropertiesIsAskedFirstAndReadThen()
    {
        m_record.Forget();
        Enable(true);
        QCOMPARE(m_record.Log().join(QLatin1String(",")), QString::fromLatin1("has,read"));
    }

    void withoutVersionControlTheDisplayStaysOff()
    {
        m_layer->GetSourceControl().SetVersionControlActive(false);
        Show();
        m_spy->Forget();
        QCOMPARE(CountPaints(*m_browser, [&] { Enable(true); }), 0);
        QCOMPARE(Requests(), QString());
        // Nobody tells the browser of version control itself: the next change of the properties does.
        m_layer->GetSourceControl().SetVersionControlActive(true);
        Settle();
        QVERIFY(!IsDisplayed());
        Enable(true);
        Settle();
        QVERIFY(IsDisplayed());
    }

    void versionControlIsAskedAboutOnlyWhenTheDisplayIsToBeOn()
    {
        Show();
        m_spy->Forget();
        Enable(false);
        QCOMPARE(m_spy->Count("active"), 0);
        Enable(true);
        QCOMPARE(m_spy->Count("active"), 1);
    }

    void badgesAlsoNeedVersionControlWhileTheyAreComposed()
    {
        Show();
        Enable(true);
        Settle();
        QVERIFY(IsDisplayed());
        m_layer->GetSourceControl().SetVersionControlActive(false);
        QVERIFY(!IsDisplayed());
    }

    void theDataLayersOwnManagerSwitchesTheDisplayToo()
    {
        m_browser.reset();
        m_layer->RestoreService("RevisionControlPropertiesMgr");
        m_browser.reset(new ProbedBrowser);
        Show();
        QVERIFY(!IsDisplayed());
        QCOMPARE(CountPaints(*m_browser, [&] { m_layer->GetSourceControl().SetEnabled(true); }) > 0, true);
        QVERIFY(IsDisplayed());
        m_layer->GetSourceControl().SetHasProperties(false);
        QVERIFY(!IsDisplayed());
        m_layer->GetSourceControl().SetHasProperties(true);
        QVERIFY(IsDisplayed());
        m_layer->GetSourceControl().SetEnabled(false);
        QVERIFY(!IsDisplayed());
    }

    void badgesAppearWithTheAnsweredStates()
    {
        m_layer->GetSourceControl().SetState(m_blend, memorymodel::eCheckedOut);
        Show();
        const QImage before = Picture();
        Enable(true);
        Settle();
        m_layer->GetSourceControl().DeliverRequestedStates();
        Settle();
        const QImage badged = Picture();
        QVERIFY(badged != before);
        Enable(false);
        QCOMPARE(Picture(), before);
    }

    void iconsOfBadgedAndPlainRowsStandInOneColumn()
    {
        using namespace memorymodel;
        const unsigned states[] = {eCheckedIn, eCheckedOut, eCheckedOutByOther, eOutOfDate, eWritable, eAdded};
        for (const unsigned state : states)
        {
            const std::string name = "Node " + std::to_string(state);
            m_layer->GetSourceControl().SetState(m_library->Add(NewItem::Compound(name)), state);
        }
        DataSource& product = m_library->AddDataSource("Product", eFactorySource | eReadOnlySource);
        m_library->Add(NewItem::Compound("Zoom").In(product));
        m_library->Add(NewItem::Solver("Zero"));
        // What stands left of the icons differs from row to row, the icons and what is right of them do not.
        Show();
        const QImage plain = Picture();
        Enable(true);
        const QImage requested = Picture();
        QCOMPARE(CompareRows(requested, plain, 9), QString());
        QCOMPARE(CompareRows(requested, plain, 0), QString());
        m_layer->GetSourceControl().DeliverRequestedStates();
        const QImage badged = Picture();
        QCOMPARE(CompareRows(badged, plain, 9), QString());
        // Each compound that takes changes has its badge now: Blend, Fade and the six.
        QCOMPARE(CompareRows(badged, plain, 0), QString::fromLatin1("Blend,Fade,Node 1,Node 2,Node 3,Node 4,Node 5,"
                                                                    "Node 6"));
    }

private:
    /// The names of the rows in which two pictures of the list differ, from a column up to where the names begin.
    QString CompareRows(const QImage& in_left, const QImage& in_right, int in_from)
    {
        const QStringList names = m_browser->RowNames(m_accessor);
        QStringList different;
        for (int row = 0; row < names.size(); ++row)
        {
            const QRect area(in_from, nodebrowser::gRowHeight * row, 35 - in_from, nodebrowser::gRowHeight);
            if (in_left.copy(area) != in_right.copy(area))
                different << names.at(row);
        }
        return different.join(QLatin1String(","));
    }

    void Show() { ShowLibrary(*m_browser, m_accessor); }

    void Enable(bool in_enabled)
    {
        m_manager->m_enabled = in_enabled;
        m_manager->Notify(m_manager.get());
    }

    void NotifyState(const ItemID& in_item, long in_state)
    {
        ItemLibraryAccessor library = m_accessor;
        IItemLibraryNotification& observer = *m_browser;
        observer.ItemAccessStateChanged(library, in_item, in_state);
    }

    /// Whether badges are shown, as the next composed icon tells.
    bool IsDisplayed()
    {
        m_spy->m_icons.clear();
        NotifyState(m_add, ++m_lastState);
        return m_spy->m_icons.size() == 1 && m_spy->m_icons[0].m_active;
    }

    /// How many objects each request was made for.
    QString Requests() const
    {
        QStringList sizes;
        for (const auto& request : m_spy->m_requests)
            sizes << QString::number(request.size());
        return sizes.join(QLatin1String(" "));
    }

    /// The list as it is painted now.
    QImage Picture()
    {
        QImage picture(300, 400, QImage::Format_ARGB32);
        picture.fill(0);
        m_browser->render(&picture);
        return picture.copy(0, gBrowserTop, 280, 300);
    }

    Recorder m_record;
    std::unique_ptr<FakePropertiesManager> m_manager;
    std::unique_ptr<memorymodel::DataLayer> m_layer;
    std::unique_ptr<SpyLayer> m_spy;
    std::unique_ptr<ProbedBrowser> m_browser;
    memorymodel::Library* m_library = nullptr;
    ItemLibraryAccessor m_accessor;
    ItemID m_blend;
    ItemID m_fade;
    ItemID m_add;
    long m_lastState = 100;
};

NODEBROWSER_TEST_MAIN(TestSourceControlDisplay)
#include "test_sourcecontroldisplay.moc"
