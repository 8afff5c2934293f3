// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>

#include <memory>

using memorymodel::NewItem;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;

namespace
{

QString Joined(const std::set<std::string>& in_tags)
{
    QStringList tags;
    for (const std::string& tag : in_tags)
        tags << QString::fromLatin1(tag.c_str());
    return tags.join(QLatin1String("|"));
}

NewItem MakeItem(const QString& in_kind, const char* in_name)
{
    if (in_kind == QLatin1String("compound"))
        return NewItem::Compound(in_name);
    if (in_kind == QLatin1String("loop"))
        return NewItem::LoopCompound(in_name);
    if (in_kind == QLatin1String("signature"))
        return NewItem::Signature(in_name);
    if (in_kind == QLatin1String("solver"))
        return NewItem::Solver(in_name);
    if (in_kind == QLatin1String("polymorphic"))
        return NewItem::PolymorphicSolver(in_name);
    if (in_kind == QLatin1String("constant"))
        return NewItem::GlobalConstant(in_name);
    return NewItem::Type(in_name);
}

} // namespace

class TestListedItems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_layer.reset(new memorymodel::DataLayer);
        m_library = &m_layer->AddLibrary("A");
    }

    void cleanup() { m_layer.reset(); }

    void typesAreAskedForInTheirFixedOrder()
    {
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        const QStringList log = spy.Lines("library|contents|iterate|valid|dirty|request|task ended");
        QCOMPARE(QStringList(log.mid(3)).join(QLatin1String("|")),
                 QString::fromLatin1("iterate PolymorphicSolver|iterate Compound|iterate GlobalConstant|"
                                     "iterate Solver|iterate Type"));
    }

    void everyKindIsListedAndSortedByNameAcrossKinds()
    {
        AddAll("f:type c:compound a:solver e:constant b:signature g:loop d:polymorphic");
        QCOMPARE(ListedNames(), QString::fromLatin1("a,b,c,d,e,f,g"));
    }

    void namesAreSortedWithoutRegardToCase()
    {
        AddAll("banana:solver Apple:solver cherry:compound BLUE:type apricot:constant");
        QCOMPARE(ListedNames(), QString::fromLatin1("Apple,apricot,banana,BLUE,cherry"));
    }

    void lettersAreFoldedToLowerCaseSoThatTheUnderscoreComesFirst()
    {
        AddAll("aB:solver a_:solver ac:solver");
        QCOMPARE(ListedNames(), QString::fromLatin1("a_,aB,ac"));
    }

    void onlyAsciiLettersAreFolded()
    {
        // 0xC9 and 0xE9 are the capital and the small e with acute accent.
        m_library->Add(NewItem::Solver("\xE9"
                                       "a"));
        m_library->Add(NewItem::Solver("\xC9"
                                       "b"));
        m_library->Add(NewItem::Solver("z"));
        QCOMPARE(ListedNames(), QString::fromLatin1("z,\xC9"
                                                    "b,\xE9"
                                                    "a"));
    }

    void namesThatDifferOnlyInCaseStandTogether()
    {
        AddAll("abd:solver ABC:solver abb:solver abc:type Abc:compound");
        const QStringList names = ListedNames().split(QLatin1Char(','));
        QCOMPARE(names.size(), 5);
        QCOMPARE(names.at(0), QString::fromLatin1("abb"));
        QCOMPARE(names.at(4), QString::fromLatin1("abd"));
        QStringList middle = names.mid(1, 3);
        middle.sort();
        QCOMPARE(middle.join(QLatin1String(",")), QString::fromLatin1("ABC,Abc,abc"));
    }

    void aShorterNameComesFirstAndAnEmptyOneBeforeAll()
    {
        AddAll("ab:solver a:solver");
        m_library->Add(NewItem::Solver(""));
        QCOMPARE(ListedNames(), QString::fromLatin1(",a,ab"));
    }

    void itemsThatBelongToOthersAreNeverListed_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("compound") << QString::fromLatin1("compound");
        QTest::newRow("loop compound") << QString::fromLatin1("loop");
        QTest::newRow("signature") << QString::fromLatin1("signature");
        QTest::newRow("solver") << QString::fromLatin1("solver");
        QTest::newRow("polymorphic solver") << QString::fromLatin1("polymorphic");
        QTest::newRow("constant") << QString::fromLatin1("constant");
        QTest::newRow("type") << QString::fromLatin1("type");
    }

    void itemsThatBelongToOthersAreNeverListed()
    {
        QFETCH(QString, kind);
        m_library->Add(MakeItem(kind, "Listed"));
        const ItemID nested = m_library->Add(MakeItem(kind, "Nested").Parent("Listed"));
        const ItemID variant = m_library->Add(MakeItem(kind, "Variant").Specializes("Listed"));
        const ItemID both = m_library->Add(MakeItem(kind, "Both").Parent("Listed").Specializes("Listed"));
        const ItemID unfit = m_library->Add(MakeItem(kind, "Unfit").NotForGraphs());
        ProbedBrowser browser;
        ShowAll(browser);
        QCOMPARE(browser.RowNames(m_library->GetAccessor()).join(QLatin1String(",")), QString::fromLatin1("Listed"));
        // Nor does the search know them.
        QVERIFY(browser.GetSearchTags(nested).empty());
        QVERIFY(browser.GetSearchTags(variant).empty());
        QVERIFY(browser.GetSearchTags(both).empty());
        QVERIFY(browser.GetSearchTags(unfit).empty());
    }

    void whetherAnItemFitsGraphsIsAskedWithTheListsType()
    {
        AddAll("a:compound b:type c:solver d:polymorphic e:constant f:signature");
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        QCOMPARE(spy.Count("valid Compound"), 2);
        QCOMPARE(spy.Count("valid Type"), 1);
        QCOMPARE(spy.Count("valid Solver"), 1);
        QCOMPARE(spy.Count("valid PolymorphicSolver"), 1);
        QCOMPARE(spy.Count("valid GlobalConstant"), 1);
        QCOMPARE(spy.Count("valid"), 6);
    }

    void anEmptyLibraryIsListedAsNothing()
    {
        ProbedBrowser browser;
        ShowAll(browser);
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
    }

    void buildingWithoutALibraryStillMarksARelayout()
    {
        m_library->Add(NewItem::Solver("Add"));
        ProbedBrowser browser;
        ShowAll(browser);
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
        browser.SetItemLibrary(ItemLibraryAccessor());
        browser.update();
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
    }

    void aClosedLibraryIsListedAsNothing()
    {
        m_library->Add(NewItem::Solver("Add"));
        ItemLibraryAccessor closed = m_library->GetAccessor();
        m_library->Close();
        ProbedBrowser browser;
        ShowLibrary(browser, closed);
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
    }

    void anItemsTagsAreItsOwnAndItsType_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("tags");
        QTest::addColumn<QString>("expected");
        QTest::newRow("own and type") << QString::fromLatin1("compound") << QByteArray("mix;colour")
                                      << QString::fromLatin1("Compound|colour|mix");
        QTest::newRow("none but type") << QString::fromLatin1("solver") << QByteArray()
                                       << QString::fromLatin1("Solver");
        QTest::newRow("signature") << QString::fromLatin1("signature") << QByteArray()
                                   << QString::fromLatin1("Compound");
        QTest::newRow("polymorphic") << QString::fromLatin1("polymorphic") << QByteArray("x")
                                     << QString::fromLatin1("PolymorphicSolver|x");
        QTest::newRow("constant") << QString::fromLatin1("constant") << QByteArray("x")
                                  << QString::fromLatin1("GlobalConstant|x");
        QTest::newRow("type") << QString::fromLatin1("type") << QByteArray("x") << QString::fromLatin1("Type|x");
        QTest::newRow("its own is its type")
            << QString::fromLatin1("type") << QByteArray("Type") << QString::fromLatin1("Type");
    }

    void anItemsTagsAreItsOwnAndItsType()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, tags);
        QFETCH(QString, expected);
        const ItemID item = m_library->Add(MakeItem(kind, "Item").Tags(tags.constData()));
        ProbedBrowser browser;
        browser.SetItemLibrary(m_library->GetAccessor());
        QCOMPARE(Joined(browser.GetSearchTags(item)), expected);
    }

    void tagsAreReadUnderTheApplicationsKeyAlone()
    {
        AddAll("a:compound b:type");
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        QCOMPARE(spy.Count("tags"), 2);
        QCOMPARE(spy.Lines("tags").filter(QString::fromLatin1(" 'ApplicationTags'")).size(), 2);
    }

    void tagsOfTheLibraryBeforeAreForgotten()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Add").Tags("sum"));
        ProbedBrowser browser;
        browser.SetItemLibrary(m_library->GetAccessor());
        QVERIFY(!browser.GetSearchTags(item).empty());
        browser.SetItemLibrary(m_layer->AddLibrary("B").GetAccessor());
        QVERIFY(browser.GetSearchTags(item).empty());
    }

    void namesAreReadAsPlainDisplayNames()
    {
        AddAll("a:compound b:type c:solver");
        SpyLayer spy;
        ProbedBrowser browser;
        ShowLibrary(browser, spy.Watch(m_library->GetAccessor()));
        QTest::keyClicks(&browser.SearchField(), QString::fromLatin1("a"));
        Settle();
        QVERIFY(spy.Count("name") > 0);
        QCOMPARE(spy.Count("odd name"), 0);
    }

    void sortingReadsEachNameOnce()
    {
        for (int i = 0; i < 200; ++i)
            m_library->Add(NewItem::Solver(QString::number(i * 7919 % 1000).toLatin1().constData()));
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        QCOMPARE(spy.Count("name"), 200);
    }

    void theFirstPaintRequestsTheStatesOfSourceControlledItems()
    {
        memorymodel::DataSource& local = m_library->AddDataSource("Local");
        memorymodel::DataSource& closed = m_library->AddDataSource("Closed", memorymodel::eReadOnlySource);
        const ItemID compound = m_library->Add(NewItem::Compound("Z compound").In(local));
        const ItemID signature = m_library->Add(NewItem::Signature("A signature").In(local));
        const ItemID loop = m_library->Add(NewItem::LoopCompound("B loop").In(local));
        m_library->Add(NewItem::Compound("Read only").In(closed));
        m_library->Add(NewItem::Compound("Nested").In(local).Parent("A signature"));
        m_library->Add(NewItem::Compound("No identity").In(local).WithoutUID());
        m_library->Add(NewItem::Compound("Built in").In(local).BuiltIn());
        AddAll("a:type b:solver c:polymorphic d:constant");
        ProbedBrowser browser;
        browser.SetItemLibrary(m_library->GetAccessor());
        QCOMPARE(m_layer->GetSourceControl().GetRequestCount(), std::size_t(0));
        ShowBrowser(browser);
        QCOMPARE(m_layer->GetSourceControl().GetRequestCount(), std::size_t(1));
        // In the order of the table of contents, not in that of the names.
        const std::vector<ItemID> expected = {compound, signature, loop};
        QVERIFY(m_layer->GetSourceControl().GetLastRequest() == expected);
    }

    void aRequestHoldsAHandleAlsoForAnItemWithoutObject()
    {
        m_library->Add(NewItem::Compound("Blend").WithoutObject());
        m_library->Add(NewItem::Compound("Fade"));
        SpyLayer spy;
        ProbedBrowser browser;
        ShowLibrary(browser, spy.Watch(m_library->GetAccessor()));
        QCOMPARE(spy.m_requests.size(), std::size_t(1));
        QCOMPARE(spy.m_requests[0].size(), std::size_t(2));
        QVERIFY(!spy.m_requests[0].front().IsValid());
        QVERIFY(spy.m_requests[0].back().IsValid());
    }

    void withoutTheHelperARequestIsMadeForNothing()
    {
        m_library->Add(NewItem::Compound("Blend"));
        m_layer->SetService("RevisionControlUIHelper", nullptr);
        SpyLayer spy;
        ProbedBrowser browser;
        ShowLibrary(browser, spy.Watch(m_library->GetAccessor()));
        QCOMPARE(spy.m_requests.size(), std::size_t(1));
        QCOMPARE(spy.m_requests[0].size(), std::size_t(0));
        // Once for the list built at once and once for that of the first paint.
        QCOMPARE(StatesOfIcons(spy), QString::fromLatin1("0 0"));
    }

    void anAttachedLibrarysRecordsStartWithoutState()
    {
        m_library->Add(NewItem::Compound("Blend"));
        m_library->Add(NewItem::Solver("Add"));
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        QCOMPARE(StatesOfIcons(spy), QString::fromLatin1("0 0"));
    }

    void requestedRecordsWaitWithTheStateRequested()
    {
        m_library->Add(NewItem::Compound("Blend"));
        m_library->Add(NewItem::Compound("Unknown").WithoutObject());
        m_library->Add(NewItem::Compound("No identity").WithoutUID());
        m_library->Add(NewItem::Solver("Add"));
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        spy.Forget();
        QImage picture(300, 400, QImage::Format_ARGB32);
        browser.render(&picture);
        // Each record takes an icon without a state first; two of them are asked for, and records that look alike share
        // one icon.
        QCOMPARE(StatesOfIcons(spy), QString::fromLatin1("0 4194304 0"));
    }

    void badgesAreComposedInactiveAndWithTheirOwnSpaceAtFirst()
    {
        m_library->Add(NewItem::Compound("Blend"));
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        QCOMPARE(spy.m_icons.size(), std::size_t(1));
        QVERIFY(!spy.m_icons[0].m_active);
        QVERIFY(spy.m_icons[0].m_ownSpace);
        QCOMPARE(spy.m_icons[0].m_size, QSize(20, 20));
    }

    void aRebuildAfterAnItemChangeRequestsNothing()
    {
        m_library->Add(NewItem::Compound("Blend"));
        SpyLayer spy;
        ProbedBrowser browser;
        ShowLibrary(browser, spy.Watch(m_library->GetAccessor()));
        spy.Forget();
        m_library->Add(NewItem::Compound("Fade"));
        Settle();
        QCOMPARE(spy.CountRebuilds(), 1);
        QCOMPARE(spy.m_requests.size(), std::size_t(0));
        QCOMPARE(StatesOfIcons(spy), QString::fromLatin1("0"));
    }

    void aReadOnlySourceIsReadAnewAtTheNextRebuild()
    {
        memorymodel::DataSource& local = m_library->AddDataSource("Local");
        m_library->Add(NewItem::Compound("Blend").In(local));
        ProbedBrowser browser;
        ShowLibrary(browser, m_library->GetAccessor());
        QCOMPARE(m_layer->GetSourceControl().GetLastRequest().size(), std::size_t(1));
        local.SetReadOnly(true);
        browser.SetItemLibrary(m_library->GetAccessor());
        Settle();
        QCOMPARE(m_layer->GetSourceControl().GetRequestCount(), std::size_t(2));
        QCOMPARE(m_layer->GetSourceControl().GetLastRequest().size(), std::size_t(0));
    }

    void buildingNeverEmitsASelection()
    {
        m_library->Add(NewItem::Compound("Blend"));
        ProbedBrowser browser;
        QSignalSpy selections(&browser, SIGNAL(SelectionChanged()));
        ShowLibrary(browser, m_library->GetAccessor());
        m_library->Remove(m_library->FindByName("Blend"));
        Settle();
        QCOMPARE(selections.count(), 0);
    }

private:
    /// Adds items that are given as "NAME:KIND", separated by blanks.
    void AddAll(const char* in_items)
    {
        const QStringList items = QString::fromLatin1(in_items).split(QLatin1Char(' '));
        for (int i = 0; i < items.size(); ++i)
        {
            const QStringList item = items.at(i).split(QLatin1Char(':'));
            m_library->Add(MakeItem(item.at(1), item.at(0).toLatin1().constData()));
        }
    }

    /// Shows a browser on the library with the tab that shows everything.
    void ShowAll(ProbedBrowser& in_browser)
    {
        in_browser.SetItemLibrary(m_library->GetAccessor());
        in_browser.TabBar()->setCurrentIndex(2);
        ShowBrowser(in_browser);
    }

    QString ListedNames()
    {
        ProbedBrowser browser;
        ShowAll(browser);
        return browser.RowNames(m_library->GetAccessor()).join(QLatin1String(","));
    }

    static QString StatesOfIcons(const SpyLayer& in_spy)
    {
        QStringList states;
        for (const SpyLayer::Icon& icon : in_spy.m_icons)
            states << QString::number(icon.m_state);
        return states.join(QLatin1String(" "));
    }

    std::unique_ptr<memorymodel::DataLayer> m_layer;
    memorymodel::Library* m_library = nullptr;
};

NODEBROWSER_TEST_MAIN(TestListedItems)
#include "test_listeditems.moc"
