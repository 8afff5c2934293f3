// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>

#include <memory>

using memorymodel::NewItem;
using vireo::datamodel::gApplicationTagsKey;
using vireo::datamodel::IItemLibraryNotification;
using vireo::datamodel::IItemTOCNotification;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::ItemTOCAccessor;

namespace
{

/// A second observer beside the browser: writes down what it is told.
class SecondObserver : public IItemTOCNotification, public IItemLibraryNotification
{
public:
    explicit SecondObserver(const memorymodel::Library& in_library)
        : m_library(in_library.GetAccessor()), m_toc(vireo::datamodel::GetTOC(m_library))
    {
        m_library.AddObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
        m_toc.AddObserver(this, vireo::datamodel::eItemTOCNotificationKind, m_toc.GetContext());
    }
    ~SecondObserver() override
    {
        m_toc.RemoveObserver(this, vireo::datamodel::eItemTOCNotificationKind, m_toc.GetContext());
        m_library.RemoveObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
    }
    SecondObserver(const SecondObserver&) = delete;
    SecondObserver& operator=(const SecondObserver&) = delete;

    void ItemAdded(ItemAccessor&) override { Write("added"); }
    void ItemRemoved(ItemAccessor&) override { Write("removed"); }
    void OnBeginChanges(ItemLibraryAccessor&) override { Write("begin"); }
    void OnEndChanges(ItemLibraryAccessor&) override { Write("end"); }
    void LibraryInvalidated(ItemLibraryAccessor&) override { Write("invalidated"); }
    void ItemNameChanged(ItemLibraryAccessor&, const ItemID&) override { Write("name"); }
    void ItemTagsChanged(ItemLibraryAccessor&, const ItemID&, const char*) override { Write("tags"); }
    void ItemAccessStateChanged(ItemLibraryAccessor&, const ItemID&, long in_state) override
    {
        m_log << QString::fromLatin1("state %1").arg(in_state);
    }
    void OnPreCommit(ItemLibraryAccessor&, bool*) override { Write("pre-commit"); }
    void OnPostCommit(ItemLibraryAccessor&) override { Write("post-commit"); }

    QStringList m_log;

private:
    void Write(const char* in_line) { m_log << QString::fromLatin1(in_line); }

    ItemLibraryAccessor m_library;
    ItemTOCAccessor m_toc;
};

/// A revision-control service that knows no object, and reports a state of an item whenever it is asked for one.
class ReportingHelper : public nexa4::IRevisionControlUIHelper
{
public:
    ReportingHelper(memorymodel::SourceControl& in_sourceControl, const ItemID& in_item)
        : m_sourceControl(in_sourceControl), m_item(in_item)
    {
    }
    void CheckOut(const nexa4::NEXAHandle<nexa4::IDbObject>&, bool*, bool) override {}
    void MakeWritable(const nexa4::NEXAHandle<nexa4::IDbObject>&, bool) override {}
    nexa4::NEXAHandle<nexa4::IDbObject> FindObject(const nexa4::DbObjectId&) override
    {
        m_sourceControl.SetState(m_item, ++m_reports + 100);
        return nexa4::NEXAHandle<nexa4::IDbObject>();
    }
    void ShowFiles(const nexa4::NEXAHandle<nexa4::IDbObject>&, const char*) override {}

    unsigned m_reports = 0;

private:
    memorymodel::SourceControl& m_sourceControl;
    ItemID m_item;
};

} // namespace

/// A browser on a library of three items, shown and painted, with the spies' notes empty.
class TestNotifications : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_layer.reset(new memorymodel::DataLayer);
        m_library = &m_layer->AddLibrary("A");
        m_add = m_library->Add(NewItem::Solver("Add").Tags("sum"));
        m_blend = m_library->Add(NewItem::Compound("Blend"));
        m_colour = m_library->Add(NewItem::Type("Colour"));
        m_spy.reset(new SpyLayer);
        m_browser.reset(new ProbedBrowser);
        m_accessor = m_spy->Watch(m_library->GetAccessor());
        m_browser->SetItemLibrary(m_accessor);
        m_browser->TabBar()->setCurrentIndex(2);
        ShowBrowser(*m_browser);
        m_layer->GetSourceControl().DeliverRequestedStates();
        Settle();
        m_spy->Forget();
    }

    void cleanup()
    {
        m_browser.reset();
        m_accessor = ItemLibraryAccessor();
        m_spy.reset();
        m_layer.reset();
    }

    void structuralChangesAreListedAtTheNextPaint_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("rows");
        QTest::newRow("added") << QString::fromLatin1("add") << QString::fromLatin1("Add,Blend,Clamp,Colour");
        QTest::newRow("removed") << QString::fromLatin1("remove") << QString::fromLatin1("Add,Colour");
        QTest::newRow("renamed") << QString::fromLatin1("rename") << QString::fromLatin1("Add,Colour,Zoom");
        QTest::newRow("invalidated") << QString::fromLatin1("invalidate") << QString::fromLatin1("Add,Blend,Colour");
        QTest::newRow("closed") << QString::fromLatin1("close") << QString();
    }

    void structuralChangesAreListedAtTheNextPaint()
    {
        QFETCH(QString, change);
        QFETCH(QString, rows);
        QSignalSpy selections(m_browser.get(), SIGNAL(SelectionChanged()));
        const int paints = CountPaints(*m_browser, [&] {
            Change(change);
            QCOMPARE(m_spy->CountRebuilds(), 0);
            QCOMPARE(m_browser->GetRowCount(), std::size_t(3));
        });
        QVERIFY(paints > 0);
        // A build asks for a repaint itself, and that one leads to no other.
        QCOMPARE(CountPaints(*m_browser, [] {}), 0);
        QCOMPARE(m_browser->RowNames(m_accessor).join(QLatin1String(",")), rows);
        QCOMPARE(m_spy->CountRebuilds(), change == QLatin1String("close") ? 0 : 1);
        QCOMPARE(m_spy->m_requests.size(), std::size_t(0));
        QCOMPARE(selections.count(), 0);
    }

    void theNextPaintWithoutAChangeReadsNoList()
    {
        QCOMPARE(CountPaints(*m_browser, [&] { m_browser->update(); }), 1);
        QCOMPARE(m_spy->Count("iterate"), 0);
        QCOMPARE(m_spy->Count("request"), 0);
        QVERIFY(m_spy->m_icons.empty());
        // Each of the three drawn rows asks for its name and its dirty mark, and nobody else does.
        QCOMPARE(m_spy->Count("name"), 3);
        QCOMPARE(m_spy->Count("dirty"), 3);
    }

    void aBurstOfAThousandItemsIsOneRebuild()
    {
        for (int i = 0; i < 1000; ++i)
            m_library->Add(NewItem::Solver(QString::number(i).toLatin1().constData()));
        QCOMPARE(m_spy->CountRebuilds(), 0);
        Settle();
        QCOMPARE(m_spy->CountRebuilds(), 1);
        QCOMPARE(m_spy->Count("iterate"), 5);
        QCOMPARE(m_browser->GetRowCount(), std::size_t(1003));
    }

    void aMixedBurstIsOneRebuildAndOnePaint()
    {
        const int paints = CountPaints(*m_browser, [&] {
            Change(QString::fromLatin1("add"));
            Change(QString::fromLatin1("rename"));
            Change(QString::fromLatin1("remove"));
            Change(QString::fromLatin1("invalidate"));
            m_browser->SearchField().setText(QString::fromLatin1("c"));
        });
        QVERIFY(paints >= 1);
        QCOMPARE(m_spy->CountRebuilds(), 1);
        QCOMPARE(m_browser->RowNames(m_accessor).join(QLatin1String(",")), QString::fromLatin1("Clamp,Colour"));
    }

    void aHiddenBrowserRebuildsOnceWhenItIsShownAgain()
    {
        m_browser->hide();
        Settle();
        m_spy->Forget();
        Change(QString::fromLatin1("add"));
        Settle();
        Change(QString::fromLatin1("remove"));
        Settle();
        QCOMPARE(m_spy->CountRebuilds(), 0);
        m_browser->m_paints = 0;
        ShowBrowser(*m_browser);
        QCOMPARE(m_spy->CountRebuilds(), 1);
        QCOMPARE(m_browser->RowNames(m_accessor).join(QLatin1String(",")), QString::fromLatin1("Add,Clamp,Colour"));
    }

    void aPaintRebuildsThenRequestsThenLaysOutThenDraws()
    {
        m_layer->GetSourceControl().SetVersionControlActive(true);
        m_layer->GetSourceControl().SetEnabled(true);
        m_library->Add(NewItem::Compound("Aaa"));
        QImage picture(300, 400, QImage::Format_ARGB32);
        m_browser->render(&picture);
        const QStringList log = m_spy->Lines("library|contents|iterate|valid|dirty|request|task ended");
        QVERIFY(FirstLine(log, "iterate") >= 0);
        QVERIFY(FirstLine(log, "valid") >= 0);
        QVERIFY(LastLine(log, "valid") < FirstLine(log, "request"));
        QVERIFY(LastLine(log, "iterate") < FirstLine(log, "request"));
        QCOMPARE(CountLines(log, "request"), 1);
        QVERIFY(FirstLine(log, "request") < FirstLine(log, "dirty"));
        // The new item is drawn by the very paint that rebuilt the list.
        QCOMPARE(LastLine(log, "dirty") - FirstLine(log, "dirty"), 3);
        QCOMPARE(m_browser->GetRowCount(), std::size_t(4));
    }

    void aSearchAndAChangeBetweenPaintsAreLaidOutOnceAfterTheRebuild()
    {
        m_browser->SearchField().setText(QString::fromLatin1("cl"));
        m_library->Add(NewItem::Solver("Clamp"));
        QImage picture(300, 400, QImage::Format_ARGB32);
        m_browser->render(&picture);
        QCOMPARE(m_spy->CountRebuilds(), 1);
        // The four names are read once by the rebuild, and that of the drawn row once more.
        QCOMPARE(m_spy->Count("name"), 4 + m_spy->Count("dirty"));
        QCOMPARE(m_spy->Count("dirty"), 1);
        QCOMPARE(Rows(), QString::fromLatin1("Clamp"));
    }

    void undoneAndRedoneChangesAreListedToo()
    {
        memorymodel::CommandManager& commands = m_layer->GetCommandManager();
        QVERIFY(m_library->Rename(m_add, "Sum", &commands));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Blend,Colour,Sum"));
        commands.GetStack().undo();
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Add,Blend,Colour"));
        commands.GetStack().redo();
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Blend,Colour,Sum"));
        QVERIFY(m_library->Remove(m_blend, &commands));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Colour,Sum"));
        commands.GetStack().undo();
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Blend,Colour,Sum"));
        QCOMPARE(m_spy->CountRebuilds(), 5);
    }

    void bracketsAndCommitsAreIgnored()
    {
        IItemLibraryNotification& observer = *m_browser;
        ItemLibraryAccessor library = m_accessor;
        const int paints = CountPaints(*m_browser, [&] {
            observer.OnBeginChanges(library);
            observer.OnEndChanges(library);
            observer.OnPostCommit(library);
        });
        QCOMPARE(paints, 0);
        QVERIFY(m_spy->Log().isEmpty());
    }

    void aCommitsVetoIsLeftAsItIs()
    {
        IItemLibraryNotification& observer = *m_browser;
        ItemLibraryAccessor library = m_accessor;
        const int paints = CountPaints(*m_browser, [&] {
            bool veto = false;
            observer.OnPreCommit(library, &veto);
            QVERIFY(!veto);
            veto = true;
            observer.OnPreCommit(library, &veto);
            QVERIFY(veto);
            observer.OnPreCommit(library, nullptr);
        });
        QCOMPARE(paints, 0);
        QVERIFY(m_spy->Log().isEmpty());
    }

    void aChangeOfTagsAsksForNoRepaintAndNoRelayout()
    {
        m_browser->SearchField().setText(QString::fromLatin1("sum"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Add"));
        m_spy->Forget();
        QCOMPARE(CountPaints(*m_browser, [&] { m_library->SetTags(m_add, "plus"); }), 0);
        QCOMPARE(m_spy->Log().join(QLatin1String("|")), QString::fromLatin1("tags Add 'ApplicationTags'"));
        QCOMPARE(Joined(m_add), QString::fromLatin1("Solver|plus"));
        // Even a repaint for another reason leaves the rows as they are.
        m_browser->update();
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Add"));
    }

    void changedTagsTakeEffectAtTheNextSearch()
    {
        m_library->SetTags(m_add, "plus");
        m_browser->SearchField().setText(QString::fromLatin1("plus"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Add"));
        m_browser->SearchField().setText(QString::fromLatin1("sum"));
        Settle();
        QCOMPARE(Rows(), QString());
        QCOMPARE(m_spy->CountRebuilds(), 0);
    }

    void anItemWithoutTagsKeepsItsTypeAsOne()
    {
        m_library->SetTags(m_add, "");
        QCOMPARE(Joined(m_add), QString::fromLatin1("Solver"));
        m_library->SetTags(m_add, "plus");
        QCOMPARE(Joined(m_add), QString::fromLatin1("Solver|plus"));
    }

    void tagsOfAnItemThatTheTabHidesAreRefreshedToo()
    {
        m_browser->TabBar()->setCurrentIndex(0);
        Settle();
        m_library->SetTags(m_colour, "red");
        QCOMPARE(Joined(m_colour), QString::fromLatin1("Type|red"));
    }

    void otherTagKeysAreIgnored_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::newRow("other") << QByteArray("OtherTags");
        QTest::newRow("longer") << QByteArray("ApplicationTags2");
        QTest::newRow("shorter") << QByteArray("ApplicationTag");
        QTest::newRow("other case") << QByteArray("applicationtags");
        QTest::newRow("empty") << QByteArray("");
    }

    void otherTagKeysAreIgnored()
    {
        QFETCH(QByteArray, key);
        QVERIFY(!DoesKeyRefresh(key.constData()));
    }

    void theTagKeyIsComparedByContent()
    {
        QVERIFY(!DoesKeyRefresh(nullptr));
        const QByteArray copy = QByteArray("Application") + QByteArray("Tags");
        QVERIFY(copy.constData() != gApplicationTagsKey);
        QVERIFY(DoesKeyRefresh(copy.constData()));
    }

    void tagsOfItemsThatAreNotListedAreIgnored()
    {
        const ItemID nested = m_library->Add(NewItem::Solver("Nested").Parent("Blend"));
        Settle();
        m_library->SetTags(nested, "hidden");
        QCOMPARE(Joined(nested), QString());
        // Nor are those of an item that waits for the next rebuild.
        const ItemID fresh = m_library->Add(NewItem::Solver("Fresh"));
        m_library->SetTags(fresh, "new");
        QCOMPARE(Joined(fresh), QString());
        Settle();
        QCOMPARE(Joined(fresh), QString::fromLatin1("Solver|new"));
    }

    void aNewStateComposesTheIconOfItsItemAndRepaintsOnce()
    {
        QCOMPARE(CountPaints(*m_browser, [&] { Notify(m_blend, memorymodel::eCheckedOut); }), 1);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(1));
        QCOMPARE(m_spy->m_icons[0].m_state, unsigned(memorymodel::eCheckedOut));
        QVERIFY(!m_spy->m_icons[0].m_active);
        QCOMPARE(m_spy->CountRebuilds(), 0);
        QCOMPARE(m_spy->m_requests.size(), std::size_t(0));
    }

    void theSameStateDoesNothing()
    {
        Notify(m_blend, memorymodel::eCheckedOut);
        Settle();
        m_spy->Forget();
        QCOMPARE(CountPaints(*m_browser, [&] { Notify(m_blend, memorymodel::eCheckedOut); }), 0);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(0));
    }

    void aStateOfAnUnknownItemDoesNothing()
    {
        const ItemID nested = m_library->Add(NewItem::Compound("Nested").Parent("Blend"));
        memorymodel::Library& other = m_layer->AddLibrary("B");
        const ItemID foreign = other.Add(NewItem::Compound("Foreign"));
        Settle();
        m_spy->Forget();
        const int paints = CountPaints(*m_browser, [&] {
            Notify(nested, 3);
            Notify(foreign, 3);
            Notify(ItemID(), 3);
        });
        QCOMPARE(paints, 0);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(0));
    }

    void aStateOfAnItemThatHasJustLeftDoesNothing()
    {
        Notify(m_add, 2);
        m_library->Remove(m_blend);
        m_spy->Forget();
        Notify(m_blend, 3);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(0));
    }

    void aStateOfAnItemThatTheTabHidesRepaintsAllTheSame()
    {
        m_browser->TabBar()->setCurrentIndex(1);
        Settle();
        QCOMPARE(CountPaints(*m_browser, [&] { Notify(m_blend, 3); }), 1);
    }

    void everyKindOfItemTakesAState()
    {
        QCOMPARE(CountPaints(*m_browser, [&] { Notify(m_colour, 3); }), 1);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(1));
        QCOMPARE(m_spy->m_icons[0].m_state, 3u);
    }

    void statesAreNarrowedTo32Bits_data()
    {
        QTest::addColumn<qlonglong>("state");
        QTest::addColumn<uint>("narrowed");
        QTest::newRow("-1") << qlonglong(-1) << 4294967295u;
        QTest::newRow("smallest of 32 bits") << qlonglong(-2147483647) - 1 << 2147483648u;
        QTest::newRow("largest of 31 bits") << qlonglong(2147483647) << 2147483647u;
        if (sizeof(long) > 4)
        {
            QTest::newRow("above 32 bits") << (qlonglong(1) << 32) + 5 << 5u;
            QTest::newRow("below -32 bits") << -(qlonglong(1) << 32) + 7 << 7u;
        }
    }

    void statesAreNarrowedTo32Bits()
    {
        QFETCH(qlonglong, state);
        QFETCH(uint, narrowed);
        Notify(m_blend, static_cast<long>(state));
        QCOMPARE(m_spy->m_icons.size(), std::size_t(1));
        QCOMPARE(m_spy->m_icons[0].m_state, narrowed);
        Notify(m_blend, static_cast<long>(state));
        QCOMPARE(m_spy->m_icons.size(), std::size_t(1));
    }

    void statesAreComparedAfterNarrowing()
    {
        Notify(m_blend, static_cast<long>(4294967295u));
        Settle();
        m_spy->Forget();
        QCOMPARE(CountPaints(*m_browser, [&] { Notify(m_blend, -1); }), 0);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(0));
    }

    void aRebuildForgetsTheStates()
    {
        Notify(m_blend, 3);
        Change(QString::fromLatin1("add"));
        Settle();
        m_spy->Forget();
        Notify(m_blend, 0);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(0));
        Notify(m_blend, 3);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(1));
    }

    void statesReachTheItemsOfTheNewListAfterARebuild()
    {
        Notify(m_blend, 3);
        const ItemID first = m_library->Add(NewItem::Compound("Aaa"));
        Settle();
        m_spy->Forget();
        Notify(first, 4);
        Notify(m_blend, 5);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(2));
        Notify(first, 4);
        Notify(m_blend, 5);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(2));
    }

    void aStateReportedWhileTheListIsBuiltDoesNotHideLaterOnes()
    {
        ReportingHelper helper(m_layer->GetSourceControl(), m_blend);
        m_layer->SetService("RevisionControlUIHelper", &helper);
        m_library->Invalidate();
        Settle();
        m_layer->RestoreService("RevisionControlUIHelper");
        QVERIFY(helper.m_reports > 0);
        const ItemID items[] = {m_add, m_blend, m_colour};
        for (const ItemID& item : items)
            QCOMPARE(CountPaints(*m_browser, [&] { m_layer->GetSourceControl().SetState(item, 77); }), 1);
    }

    void requestedStatesArriveOnePerItem()
    {
        m_layer->GetSourceControl().SetVersionControlActive(true);
        memorymodel::Library& other = m_layer->AddLibrary("B");
        const ItemID first = other.Add(NewItem::Compound("First"));
        const ItemID second = other.Add(NewItem::Compound("Second"));
        m_layer->GetSourceControl().SetState(second, memorymodel::eCheckedOut);
        SecondObserver observer(other);
        m_browser->SetItemLibrary(m_spy->Watch(other.GetAccessor(), "B"));
        QImage picture(300, 400, QImage::Format_ARGB32);
        m_browser->render(&picture);
        QVERIFY(observer.m_log.isEmpty());
        m_spy->Forget();
        m_layer->GetSourceControl().DeliverRequestedStates();
        QCOMPARE(observer.m_log.join(QLatin1String(",")), QString::fromLatin1("begin,state 1,state 2,end"));
        QCOMPARE(m_spy->m_icons.size(), std::size_t(2));
        QCOMPARE(m_spy->m_icons[0].m_state, 1u);
        QCOMPARE(m_spy->m_icons[1].m_state, 2u);
        Notify(first, 1);
        Notify(second, 2);
        QCOMPARE(m_spy->m_icons.size(), std::size_t(2));
    }

    void aSecondObserverIsToldInOrderBesideTheBrowser()
    {
        SecondObserver observer(*m_library);
        const ItemID item = m_library->Add(NewItem::Compound("Clamp"));
        m_library->Rename(item, "Clip");
        m_library->SetTags(item, "limit");
        m_layer->GetSourceControl().SetState(item, memorymodel::eCheckedOut);
        m_library->Remove(item);
        m_library->Invalidate();
        QCOMPARE(observer.m_log.join(QLatin1String(",")),
                 QString::fromLatin1("begin,added,end,begin,name,end,begin,tags,end,begin,state 2,end,"
                                     "begin,removed,end,begin,invalidated,end"));
        Settle();
        QCOMPARE(m_spy->CountRebuilds(), 1);
        QCOMPARE(Rows(), QString::fromLatin1("Add,Blend,Colour"));
    }

    void aSecondBrowserIsToldAlike()
    {
        ProbedBrowser second;
        second.SetItemLibrary(m_library->GetAccessor());
        second.TabBar()->setCurrentIndex(2);
        ShowBrowser(second);
        Change(QString::fromLatin1("rename"));
        Settle();
        QCOMPARE(second.RowNames(m_accessor).join(QLatin1String(",")), QString::fromLatin1("Add,Colour,Zoom"));
        QCOMPARE(Rows(), QString::fromLatin1("Add,Colour,Zoom"));
    }

    void theLibraryBeforeIsNotHeardAnyMore()
    {
        memorymodel::Library& other = m_layer->AddLibrary("B");
        m_browser->SetItemLibrary(m_spy->Watch(other.GetAccessor(), "B"));
        Settle();
        m_spy->Forget();
        const int paints = CountPaints(*m_browser, [&] {
            Change(QString::fromLatin1("add"));
            Change(QString::fromLatin1("rename"));
            Change(QString::fromLatin1("invalidate"));
            m_library->Close();
        });
        QCOMPARE(paints, 0);
        QCOMPARE(m_spy->CountRebuilds(), 0);
    }

    void aClosedLibraryMayBeFollowedByAnother()
    {
        m_library->Close();
        memorymodel::Library& other = m_layer->AddLibrary("B");
        other.Add(NewItem::Solver("Only"));
        m_browser->SetItemLibrary(other.GetAccessor());
        Settle();
        QCOMPARE(m_browser->RowNames(other.GetAccessor()).join(QLatin1String(",")), QString::fromLatin1("Only"));
    }

    void aRemovedItemIsNoSelectionEvenBeforeTheNextPaint()
    {
        QTest::mousePress(m_browser.get(), Qt::LeftButton, Qt::NoModifier, m_browser->RowCentre(1));
        QVERIFY(m_browser->GetSelection() == m_blend);
        m_library->Remove(m_blend);
        QVERIFY(!m_browser->GetSelection().IsValid());
        Settle();
        // The selection is a row: the next item has moved into it.
        QVERIFY(m_browser->GetSelection() == m_colour);
    }

private:
    void Change(const QString& in_change)
    {
        if (in_change == QLatin1String("add"))
            m_library->Add(NewItem::Solver("Clamp"));
        else if (in_change == QLatin1String("remove"))
            m_library->Remove(m_blend);
        else if (in_change == QLatin1String("rename"))
            m_library->Rename(m_blend, "Zoom");
        else if (in_change == QLatin1String("invalidate"))
            m_library->Invalidate();
        else
            m_library->Close();
    }

    void Notify(const ItemID& in_item, long in_state)
    {
        ItemLibraryAccessor library = m_accessor;
        IItemLibraryNotification& observer = *m_browser;
        observer.ItemAccessStateChanged(library, in_item, in_state);
    }

    /// Whether a change of tags that is told under a key reaches the browser's own tags.
    bool DoesKeyRefresh(const char* in_key)
    {
        ItemLibraryAccessor library = m_accessor;
        IItemLibraryNotification& observer = *m_browser;
        m_spy->Forget();
        observer.ItemTagsChanged(library, m_add, in_key);
        return m_spy->Count("tags") > 0;
    }

    QString Rows() const { return m_browser->RowNames(m_accessor).join(QLatin1String(",")); }

    QString Joined(const ItemID& in_item) const
    {
        QStringList tags;
        for (const std::string& tag : m_browser->GetSearchTags(in_item))
            tags << QString::fromLatin1(tag.c_str());
        return tags.join(QLatin1String("|"));
    }

    std::unique_ptr<memorymodel::DataLayer> m_layer;
    std::unique_ptr<SpyLayer> m_spy;
    std::unique_ptr<ProbedBrowser> m_browser;
    memorymodel::Library* m_library = nullptr;
    ItemLibraryAccessor m_accessor;
    ItemID m_add;
    ItemID m_blend;
    ItemID m_colour;
};

NODEBROWSER_TEST_MAIN(TestNotifications)
#include "test_notifications.moc"
