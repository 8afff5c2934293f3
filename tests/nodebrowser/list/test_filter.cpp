// SPDX-License-Identifier: MIT
#include "nodebrowser/searchscore.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>

#include <memory>

using memorymodel::NewItem;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::UnspecifiedAccessor;
using vireo::datamodel::VireoType;

namespace
{

const std::size_t gUntouched = 77;

/// An item whose type name is given as it is, with a pointer of its own.
class TypedItem : public vireo::datamodel::IContext, public vireo::datamodel::IItem
{
public:
    explicit TypedItem(const char* in_type) : m_type(in_type) {}
    bool IsAlive() const override { return true; }
    ItemID GetItemID() const override { return ItemID(m_type, 0, 1); }
    vireo::datamodel::CSimpleValue GetValue(const char*) const override { return vireo::datamodel::CSimpleValue(); }

private:
    const char* m_type;
};

} // namespace

/// A shown browser on a library with one item of each kind.
class TestFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_layer.reset(new memorymodel::DataLayer);
        m_library = &m_layer->AddLibrary("A");
        m_library->Add(NewItem::PolymorphicSolver("Poly"));
        m_library->Add(NewItem::Solver("Solve"));
        m_library->Add(NewItem::Compound("Graph"));
        m_library->Add(NewItem::LoopCompound("Loop"));
        m_library->Add(NewItem::Signature("Sign"));
        m_library->Add(NewItem::GlobalConstant("Pi"));
        m_library->Add(NewItem::Type("Float"));
        m_browser.reset(new ProbedBrowser);
        ShowLibrary(*m_browser, m_library->GetAccessor());
    }

    void cleanup()
    {
        m_browser.reset();
        m_layer.reset();
    }

    void aTabShowsItsKinds_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("rows");
        QTest::newRow("Nodes") << 0 << QString::fromLatin1("Graph,Loop,Poly,Solve");
        QTest::newRow("Types") << 1 << QString::fromLatin1("Float");
        QTest::newRow("All") << 2 << QString::fromLatin1("Float,Graph,Loop,Pi,Poly,Sign,Solve");
    }

    void aTabShowsItsKinds()
    {
        QFETCH(int, tab);
        QFETCH(QString, rows);
        QTabBar& tabs = *m_browser->TabBar();
        QTest::mouseClick(&tabs, Qt::LeftButton, Qt::NoModifier, tabs.tabRect(tab == 0 ? 1 : 0).center());
        Settle();
        QTest::mouseClick(&tabs, Qt::LeftButton, Qt::NoModifier, tabs.tabRect(tab).center());
        Settle();
        QCOMPARE(tabs.currentIndex(), tab);
        QCOMPARE(Rows(), rows);
    }

    void theNodesTabIsShownAtFirst() { QCOMPARE(Rows(), QString::fromLatin1("Graph,Loop,Poly,Solve")); }

    void modesWithoutATabAreAcceptedAndOthersShowNothing_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("rows");
        QTest::newRow("signatures") << 3 << QString::fromLatin1("Sign");
        QTest::newRow("constants") << 4 << QString::fromLatin1("Pi");
        QTest::newRow("5") << 5 << QString();
        QTest::newRow("-1") << -1 << QString();
        QTest::newRow("all again") << 2 << QString::fromLatin1("Float,Graph,Loop,Pi,Poly,Sign,Solve");
    }

    void modesWithoutATabAreAcceptedAndOthersShowNothing()
    {
        QFETCH(int, mode);
        QFETCH(QString, rows);
        QVERIFY(QMetaObject::invokeMethod(m_browser.get(), "TabChanged", Q_ARG(int, mode)));
        Settle();
        QCOMPARE(Rows(), rows);
        QCOMPARE(m_browser->TabBar()->currentIndex(), 0);
    }

    void aTabChangeWaitsForTheNextPaint()
    {
        QSignalSpy selections(m_browser.get(), SIGNAL(SelectionChanged()));
        m_browser->TabBar()->setCurrentIndex(2);
        QCOMPARE(Rows(), QString::fromLatin1("Graph,Loop,Poly,Solve"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Float,Graph,Loop,Pi,Poly,Sign,Solve"));
        QCOMPARE(selections.count(), 0);
    }

    void theSlotsAskForOneRepaint()
    {
        QObject* const browser = m_browser.get();
        QCOMPARE(CountPaints(*m_browser, [&] { QMetaObject::invokeMethod(browser, "TabChanged", Q_ARG(int, 1)); }), 1);
        const QString text = QString::fromLatin1("f");
        QCOMPARE(CountPaints(*m_browser,
                             [&] { QMetaObject::invokeMethod(browser, "SearchTextChange", Q_ARG(QString, text)); }),
                 1);
        // The field plays no part in it: what the slot is told counts.
        QCOMPARE(m_browser->SearchField().text(), QString());
        QCOMPARE(Rows(), QString::fromLatin1("Float"));
    }

    void aChangeOfTheFilterRebuildsNoList()
    {
        SpyLayer spy;
        m_browser->SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        Settle();
        spy.Forget();
        QTest::keyClicks(&m_browser->SearchField(), QString::fromLatin1("o"));
        m_browser->TabBar()->setCurrentIndex(2);
        Settle();
        QCOMPARE(spy.CountRebuilds(), 0);
        QCOMPARE(spy.Count("request"), 0);
        QCOMPARE(spy.Count("odd name"), 0);
        m_browser.reset();
    }

    void typedWordsNarrowTheRows()
    {
        QTest::keyClicks(&m_browser->SearchField(), QString::fromLatin1("lo"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Loop"));
        QTest::keyClick(&m_browser->SearchField(), Qt::Key_Backspace);
        Settle();
        // "l" starts Loop, is inside Poly and Solve; Graph has it nowhere.
        QCOMPARE(Rows(), QString::fromLatin1("Loop,Poly,Solve"));
    }

    void upperCaseIsTypedAndLowerCaseSearched()
    {
        QTest::keyClicks(&m_browser->SearchField(), QString::fromLatin1("LO"));
        Settle();
        QCOMPARE(m_browser->SearchField().text(), QString::fromLatin1("LO"));
        QCOMPARE(Rows(), QString::fromLatin1("Loop"));
    }

    void manyKeyStrokesBetweenPaintsLayOutOnce()
    {
        SpyLayer spy;
        m_browser->SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        Settle();
        spy.Forget();
        m_browser->SearchField().setText(QString::fromLatin1("l"));
        m_browser->SearchField().setText(QString::fromLatin1("lo"));
        m_browser->SearchField().setText(QString::fromLatin1("loo"));
        QCOMPARE(spy.Count("name"), 0);
        QCOMPARE(CountPaints(*m_browser, [] {}), 0);
        // Nothing is asked of the library but the names of the rows that are drawn.
        QCOMPARE(spy.Count("name"), spy.Count("dirty"));
        QCOMPARE(Rows(), QString::fromLatin1("Loop"));
        m_browser.reset();
    }

    void rowsAreOrderedByScoreThenByName()
    {
        m_library->Add(NewItem::Solver("Xa"));
        m_library->Add(NewItem::Solver("Abc"));
        m_library->Add(NewItem::Solver("Aaa"));
        m_library->Add(NewItem::Solver("Tagged").Tags("XAB"));
        m_library->Add(NewItem::Solver("Untagged"));
        m_library->Add(NewItem::Solver("Cab"));
        m_browser->SearchField().setText(QString::fromLatin1("ab"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Abc,Cab,Tagged"));
        m_browser->SearchField().setText(QString::fromLatin1("a"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Aaa,Abc,Cab,Graph,Tagged,Untagged,Xa"));
    }

    void theTypesNameIsATagOfItsItems()
    {
        m_browser->TabBar()->setCurrentIndex(2);
        m_browser->SearchField().setText(QString::fromLatin1("globalconst"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Pi"));
        m_browser->SearchField().setText(QString::fromLatin1("polymorphic"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Poly"));
    }

    void anyWordSuffices()
    {
        m_browser->SearchField().setText(QString::fromLatin1("zzz loop"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Loop"));
    }

    void whiteSpaceAtEitherEndLetsEverythingPass_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("a blank") << QString::fromLatin1(" ");
        QTest::newRow("blanks") << QString::fromLatin1("   ");
        QTest::newRow("behind a word") << QString::fromLatin1("zzz ");
        QTest::newRow("before a word") << QString::fromLatin1(" zzz");
    }

    void whiteSpaceAtEitherEndLetsEverythingPass()
    {
        QFETCH(QString, text);
        QTest::keyClicks(&m_browser->SearchField(), text);
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Graph,Loop,Poly,Solve"));
    }

    void twoBlanksBetweenWordsAreOneSeparator()
    {
        QTest::keyClicks(&m_browser->SearchField(), QString::fromLatin1("zzz  loop"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Loop"));
    }

    void theEmptyWordStaysWithinTheTab()
    {
        m_browser->TabBar()->setCurrentIndex(1);
        m_browser->SearchField().setText(QString::fromLatin1("zzz "));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Float"));
    }

    void latin1LettersAreFoundInEitherCase()
    {
        m_library->Add(NewItem::Solver("\xDC"
                                       "berlagern"));
        m_browser->SearchField().setText(QString(QChar(0xFC)));
        Settle();
        QCOMPARE(m_browser->GetRowCount(), std::size_t(1));
        m_browser->SearchField().setText(QString(QChar(0xDC)));
        Settle();
        QCOMPARE(m_browser->GetRowCount(), std::size_t(1));
    }

    void namesAreLoweredAsTheToolkitLowersThem()
    {
        for (int code = 0; code < 256; ++code)
        {
            const char character = static_cast<char>(code);
            const QByteArray lowered = QString::fromLatin1(&character, 1).toLower().toLatin1();
            QCOMPARE(QByteArray(1, nodebrowser::LowerCharacter(character)), lowered);
        }
    }

    void whatLatin1LacksIsSearchedAsAQuestionMark()
    {
        m_library->Add(NewItem::Solver("What?"));
        m_browser->SearchField().setText(QString(QChar(0x20AC)));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("What?"));
    }

    void aNoBreakSpaceSeparatesNothing()
    {
        m_library->Add(NewItem::Solver("Two\xA0Words"));
        m_browser->SearchField().setText(QString::fromLatin1("zzz\xA0"));
        Settle();
        QCOMPARE(Rows(), QString());
        m_browser->SearchField().setText(QString::fromLatin1("two\xA0w"));
        Settle();
        QCOMPARE(m_browser->GetRowCount(), std::size_t(1));
    }

    void comparingTellsThePassingItemsScore_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("passes");
        QTest::addColumn<qulonglong>("score");
        QTest::newRow("no text") << QString() << QByteArray("Abc") << true << qulonglong(0);
        QTest::newRow("start") << QString::fromLatin1("Ab") << QByteArray("Abc") << true << qulonglong(0);
        QTest::newRow("inside") << QString::fromLatin1("Ab") << QByteArray("Cab") << true << qulonglong(1);
        QTest::newRow("set order") << QString::fromLatin1("b a") << QByteArray("ab") << true << qulonglong(0);
        QTest::newRow("one of two") << QString::fromLatin1("x y") << QByteArray("ax") << true << qulonglong(2);
        QTest::newRow("a later word replaces")
            << QString::fromLatin1("x y") << QByteArray("axy") << true << qulonglong(3);
        QTest::newRow("tag") << QString::fromLatin1("mix") << QByteArray("Abc") << true << qulonglong(1000);
        QTest::newRow("nowhere") << QString::fromLatin1("zzz") << QByteArray("Abc") << false << qulonglong(gUntouched);
    }

    void comparingTellsThePassingItemsScore()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, name);
        QFETCH(bool, passes);
        QFETCH(qulonglong, score);
        ItemAccessor item = AddListed(NewItem::Compound(name.constData()).Tags("Remix"));
        m_browser->SearchField().setText(text);
        std::size_t told = gUntouched;
        QCOMPARE(m_browser->CompareToFilter(item, &told), passes);
        QCOMPARE(qulonglong(told), score);
    }

    void theScoreIsNotTouchedWhenTheTabRefuses()
    {
        ItemAccessor item = AddListed(NewItem::Signature("Abc"));
        std::size_t told = gUntouched;
        QVERIFY(!m_browser->CompareToFilter(item, &told));
        QCOMPARE(told, gUntouched);
        m_browser->SearchField().setText(QString::fromLatin1("abc"));
        QVERIFY(!m_browser->CompareToFilter(item, &told));
        m_browser->SearchField().setText(QString::fromLatin1(" "));
        QVERIFY(!m_browser->CompareToFilter(item, &told));
        QCOMPARE(told, gUntouched);
    }

    void typesAreComparedByPointer()
    {
        const std::string text = VireoType::gSolver;
        ItemAccessor copy(UnspecifiedAccessor(std::make_shared<TypedItem>(text.c_str())));
        ItemAccessor original(UnspecifiedAccessor(std::make_shared<TypedItem>(VireoType::gSolver)));
        std::size_t told = gUntouched;
        QVERIFY(!m_browser->CompareToFilter(copy, &told));
        QVERIFY(m_browser->CompareToFilter(original, &told));
        m_browser->TabBar()->setCurrentIndex(2);
        QVERIFY(m_browser->CompareToFilter(copy, &told));
    }

    void theTypeSelectorShowsTypesWhateverIsTyped()
    {
        ProbedBrowser selector(eConfigTypeSelector);
        ShowLibrary(selector, m_library->GetAccessor());
        QCOMPARE(selector.RowNames(m_library->GetAccessor()).join(QLatin1String(",")), QString::fromLatin1("Float"));
        QTest::keyClicks(&selector.SearchField(), QString::fromLatin1("loop "));
        Settle();
        QCOMPARE(selector.RowNames(m_library->GetAccessor()).join(QLatin1String(",")), QString::fromLatin1("Float"));
        QTest::mouseClick(&selector.ClearingButton(), Qt::LeftButton);
        QTest::keyClicks(&selector.SearchField(), QString::fromLatin1("loop"));
        Settle();
        QCOMPARE(selector.GetRowCount(), std::size_t(0));
    }

    void theClearButtonEmptiesTheFieldAndShowsAllRows()
    {
        QTest::keyClicks(&m_browser->SearchField(), QString::fromLatin1("loop"));
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Loop"));
        QSignalSpy selections(m_browser.get(), SIGNAL(SelectionChanged()));
        QTest::mouseClick(&m_browser->ClearingButton(), Qt::LeftButton);
        QCOMPARE(m_browser->SearchField().text(), QString());
        Settle();
        QCOMPARE(Rows(), QString::fromLatin1("Graph,Loop,Poly,Solve"));
        QCOMPARE(selections.count(), 0);
    }

    void theClearSlotIgnoresItsArgument()
    {
        for (int checked = 0; checked < 2; ++checked)
        {
            m_browser->SearchField().setText(QString::fromLatin1("loop"));
            QVERIFY(QMetaObject::invokeMethod(m_browser.get(), "ClearButton", Q_ARG(bool, checked != 0)));
            QCOMPARE(m_browser->SearchField().text(), QString());
        }
    }

    void clearingAnEmptyFieldChangesNothing()
    {
        QSignalSpy changes(&m_browser->SearchField(), SIGNAL(textChanged(const QString&)));
        QVERIFY(QMetaObject::invokeMethod(m_browser.get(), "ClearButton", Q_ARG(bool, false)));
        QCOMPARE(changes.count(), 0);
        m_browser->SearchField().setText(QString::fromLatin1("x"));
        QVERIFY(QMetaObject::invokeMethod(m_browser.get(), "ClearButton", Q_ARG(bool, false)));
        QCOMPARE(changes.count(), 2);
    }

    void enterSelectsTheFirstRowWhenNoneIs_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Enter") << int(Qt::Key_Enter);
    }

    void enterSelectsTheFirstRowWhenNoneIs()
    {
        QFETCH(int, key);
        QSignalSpy selections(m_browser.get(), SIGNAL(SelectionChanged()));
        QTest::keyClick(&m_browser->SearchField(), static_cast<Qt::Key>(key));
        QCOMPARE(selections.count(), 1);
        QVERIFY(m_browser->GetSelection() == m_library->FindByName("Graph"));
    }

    void enterKeepsASelectedRowAndTellsOfItAgain()
    {
        QTest::mousePress(m_browser.get(), Qt::LeftButton, Qt::NoModifier, m_browser->RowCentre(2));
        QSignalSpy selections(m_browser.get(), SIGNAL(SelectionChanged()));
        QTest::keyClick(&m_browser->SearchField(), Qt::Key_Return);
        QTest::keyClick(&m_browser->SearchField(), Qt::Key_Return);
        QCOMPARE(selections.count(), 2);
        QVERIFY(m_browser->GetSelection() == m_library->FindByName("Poly"));
    }

    void enterTakesTheFirstRowWhenTheSelectedOneIsGone()
    {
        QTest::mousePress(m_browser.get(), Qt::LeftButton, Qt::NoModifier, m_browser->RowCentre(3));
        QTest::keyClicks(&m_browser->SearchField(), QString::fromLatin1("loop"));
        Settle();
        QVERIFY(!m_browser->GetSelection().IsValid());
        QTest::keyClick(&m_browser->SearchField(), Qt::Key_Return);
        QVERIFY(m_browser->GetSelection() == m_library->FindByName("Loop"));
    }

    void enterWithoutRowsSelectsTheFirstRowToCome()
    {
        QTest::keyClicks(&m_browser->SearchField(), QString::fromLatin1("zzz"));
        Settle();
        QCOMPARE(m_browser->GetRowCount(), std::size_t(0));
        QSignalSpy selections(m_browser.get(), SIGNAL(SelectionChanged()));
        QTest::keyClick(&m_browser->SearchField(), Qt::Key_Return);
        QCOMPARE(selections.count(), 1);
        QVERIFY(!m_browser->GetSelection().IsValid());
        m_browser->SearchField().clear();
        Settle();
        QVERIFY(m_browser->GetSelection() == m_library->FindByName("Graph"));
    }

    void enterReadsTheRowsOfTheLastPaint()
    {
        QTest::mousePress(m_browser.get(), Qt::LeftButton, Qt::NoModifier, m_browser->RowCentre(3));
        m_browser->SearchField().setText(QString::fromLatin1("loop"));
        QVERIFY(QMetaObject::invokeMethod(m_browser.get(), "EnterPressed"));
        // The fourth row is still there, so it stays selected, and is none after the paint.
        QVERIFY(m_browser->GetSelection() == m_library->FindByName("Solve"));
        Settle();
        QVERIFY(!m_browser->GetSelection().IsValid());
    }

    void enterAsksForNoRepaint()
    {
        QCOMPARE(CountPaints(*m_browser, [&] { QMetaObject::invokeMethod(m_browser.get(), "EnterPressed"); }), 0);
        QVERIFY(m_browser->GetSelection() == m_library->FindByName("Graph"));
    }

    void enterWithoutALibraryTellsToo()
    {
        ProbedBrowser empty;
        ShowBrowser(empty);
        QSignalSpy selections(&empty, SIGNAL(SelectionChanged()));
        QTest::keyClick(&empty.SearchField(), Qt::Key_Return);
        QCOMPARE(selections.count(), 1);
        QVERIFY(!empty.GetSelection().IsValid());
    }

    void theSelectionIsARowAndMovesNoWhereWhenTheRowsChange()
    {
        QTest::mousePress(m_browser.get(), Qt::LeftButton, Qt::NoModifier, m_browser->RowCentre(0));
        QSignalSpy selections(m_browser.get(), SIGNAL(SelectionChanged()));
        QTest::keyClicks(&m_browser->SearchField(), QString::fromLatin1("solve"));
        Settle();
        QVERIFY(m_browser->GetSelection() == m_library->FindByName("Solve"));
        QCOMPARE(selections.count(), 0);
    }

private:
    QString Rows() const { return m_browser->RowNames(m_library->GetAccessor()).join(QLatin1String(",")); }

    /// Adds an item and lets the browser list it.
    ItemAccessor AddListed(const NewItem& in_item)
    {
        const ItemID id = m_library->Add(in_item);
        Settle();
        vireo::datamodel::ItemIterator item =
            vireo::datamodel::GetTOC(m_library->GetAccessor()).IterateItems(id.GetType());
        while (!item.IsAtEnd() && item.GetItem().GetItemID() != id)
            item.Next();
        return item.GetItem();
    }

    std::unique_ptr<memorymodel::DataLayer> m_layer;
    std::unique_ptr<ProbedBrowser> m_browser;
    memorymodel::Library* m_library = nullptr;
};

NODEBROWSER_TEST_MAIN(TestFilter)
#include "test_filter.moc"
