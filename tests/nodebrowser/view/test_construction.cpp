// SPDX-License-Identifier: MIT
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/nodebrowser/support/propertiesmanager.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/otherservice.h"
#include "tests/support/testmain.h"

#include <QIcon>
#include <QImage>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QStyle>

#include <memory>
#include <stdexcept>
#include <type_traits>

using memorymodel::NewItem;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::VireoType;

namespace
{

const char* const gMethods[] = {
    "SelectionChanged()", "SliderValueChanged(int)", "SearchTextChange(QString)",
    "EnterPressed()",     "TabChanged(int)",         "OnNewSignature()",
    "OnNewCompound()",    "OnNewLoopCompound()",     "OnSaveGraphLibrary()",
    "ClearButton(bool)",  "OnRenameItem()",          "OnDeleteItem()",
    "OnCheckOutItem()",   "OnMakeItemWritable()",    "OnShowItemFiles()",
    "OnEditItemTags()",   "OnDatasourceChange()",
};
const int gMethodCount = static_cast<int>(sizeof gMethods / sizeof *gMethods);

/// Notes which of some objects die, in order.
class DeathLog : public QObject
{
    Q_OBJECT

public:
    explicit DeathLog(Recorder& out_recorder) : m_recorder(out_recorder) {}

    void Watch(QObject* in_object, const char* in_name)
    {
        m_objects << in_object;
        m_names << QString::fromLatin1(in_name);
        connect(in_object, SIGNAL(destroyed(QObject*)), this, SLOT(Note(QObject*)));
    }

public Q_SLOTS:
    void Note(QObject* in_object) { m_recorder.Command(m_names.at(m_objects.indexOf(in_object))); }

private:
    Recorder& m_recorder;
    QList<QObject*> m_objects;
    QStringList m_names;
};

/// The kinds of the child widgets, in the order in which they were made.
QStringList ChildKinds(const QWidget& in_widget)
{
    QStringList kinds;
    const QObjectList& children = in_widget.children();
    for (int i = 0; i < children.size(); ++i)
    {
        const QObject* const child = children.at(i);
        kinds << QString::fromLatin1(qobject_cast<const QScrollBar*>(child)    ? "scroll bar"
                                     : qobject_cast<const QLineEdit*>(child)   ? "search field"
                                     : qobject_cast<const QPushButton*>(child) ? "clear button"
                                     : qobject_cast<const QTabBar*>(child)     ? "tab bar"
                                                                               : child->metaObject()->className());
    }
    return kinds;
}

/// Whether a connection exists exactly once; it is gone afterwards.
bool TakeConnection(QObject& in_sender, const char* in_signal, QObject& in_receiver, const char* in_slot)
{
    return QObject::disconnect(&in_sender, in_signal, &in_receiver, in_slot) &&
           !QObject::disconnect(&in_sender, in_signal, &in_receiver, in_slot);
}

/// The lines of a log that tell who observes what, which lists are read, and what becomes of states.
const char gBrowsing[] = "library|contents|iterate|dirty|request|task ended";

} // namespace

class TestConstruction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_layer.reset(new memorymodel::DataLayer);
        m_library = &m_layer->AddLibrary("A");
        m_library->Add(NewItem::Compound("Blend"));
        m_library->Add(NewItem::Solver("Add"));
    }

    void cleanup() { m_layer.reset(); }

    void theMetaObjectListsOneSignalAndSixteenSlotsInTheirOrder()
    {
        const QMetaObject& meta = CNodeBrowser::staticMetaObject;
        QCOMPARE(QString::fromLatin1(meta.className()), FromLatin1("CNodeBrowser"));
        QCOMPARE(QString::fromLatin1(meta.superClass()->className()), FromLatin1("QWidget"));
        QCOMPARE(meta.methodCount() - meta.methodOffset(), gMethodCount);
        for (int i = 0; i < gMethodCount; ++i)
        {
            QVERIFY2(meta.indexOfMethod(gMethods[i]) == meta.methodOffset() + i, gMethods[i]);
            QCOMPARE(int(meta.method(meta.methodOffset() + i).methodType()),
                     i == 0 ? int(QMetaMethod::Signal) : int(QMetaMethod::Slot));
        }
        QCOMPARE(meta.propertyCount(), QWidget::staticMetaObject.propertyCount());
        QCOMPARE(meta.enumeratorCount(), QWidget::staticMetaObject.enumeratorCount());
    }

    void theSlotsOfTheHeaderNameTheirParameters()
    {
        const QMetaObject& meta = CNodeBrowser::staticMetaObject;
        for (int i = 0; i < gMethodCount; ++i)
        {
            const QByteArray signature(gMethods[i]);
            QList<QByteArray> expected;
            if (signature == "SliderValueChanged(int)")
                expected << "value";
            if (signature == "SearchTextChange(QString)")
                expected << "text";
            if (signature == "TabChanged(int)")
                expected << "index";
            if (signature == "ClearButton(bool)")
                expected << "in_bChecked";
            QCOMPARE(meta.method(meta.methodOffset() + i).parameterNames(), expected);
        }
    }

    void theSlotsAreProtected()
    {
        const QMetaObject& meta = CNodeBrowser::staticMetaObject;
        for (int i = 1; i < gMethodCount; ++i)
            QVERIFY2(meta.method(meta.methodOffset() + i).access() == QMetaMethod::Protected, gMethods[i]);
    }

    void theBasesStandInTheirOrder()
    {
        ProbedBrowser browser;
        CNodeBrowser* const whole = &browser;
        const char* const widget = reinterpret_cast<const char*>(static_cast<QWidget*>(whole));
        const char* const toc =
            reinterpret_cast<const char*>(static_cast<vireo::datamodel::IItemTOCNotification*>(whole));
        const char* const library =
            reinterpret_cast<const char*>(static_cast<vireo::datamodel::IItemLibraryNotification*>(whole));
        QVERIFY(widget < toc);
        QVERIFY(toc < library);
        QVERIFY((std::is_base_of<IRevisionControlPropertiesMgr_Slot, CNodeBrowser>::value));
        QVERIFY((!std::is_convertible<CNodeBrowser*, IRevisionControlPropertiesMgr_Slot*>::value));
    }

    void theConfigurationIsTheOnlyArgument()
    {
        QVERIFY((std::is_constructible<CNodeBrowser, eConfigType>::value));
        QVERIFY((!std::is_constructible<CNodeBrowser, eConfigType, QWidget*>::value));
        QVERIFY((!std::is_default_constructible<CNodeBrowser>::value));
        QVERIFY((std::has_virtual_destructor<CNodeBrowser>::value));
        QCOMPARE(int(eConfigNodeBrowser), 0);
        QCOMPARE(int(eConfigTypeSelector), 1);
    }

    void aBrowserHasNoParentAndNoLayoutAndIsNotShown()
    {
        ProbedBrowser browser;
        QVERIFY(!browser.parent());
        QVERIFY(!browser.layout());
        QVERIFY(browser.isHidden());
    }

    void theFullBrowserMakesItsFourChildrenInOrder()
    {
        ProbedBrowser browser(eConfigNodeBrowser);
        QCOMPARE(ChildKinds(browser).join(QLatin1String(", ")),
                 FromLatin1("scroll bar, search field, clear button, tab bar"));
    }

    void theTypeSelectorHasNoTabBar()
    {
        ProbedBrowser browser(eConfigTypeSelector);
        QCOMPARE(ChildKinds(browser).join(QLatin1String(", ")), FromLatin1("scroll bar, search field, clear button"));
        QVERIFY(!browser.TabBar());
    }

    void everyConfigurationAbove1IsATypeSelector()
    {
        m_library->Add(NewItem::Type("Colour"));
        ProbedBrowser browser(static_cast<eConfigType>(2));
        ShowLibrary(browser, m_library->GetAccessor());
        QVERIFY(!browser.TabBar());
        QCOMPARE(browser.RowNames(m_library->GetAccessor()).join(QLatin1String(",")), FromLatin1("Colour"));
    }

    void theScrollBarIsVerticalHiddenAndAsTheToolkitMakesIt()
    {
        ProbedBrowser browser;
        QCOMPARE(browser.ScrollBar().orientation(), Qt::Vertical);
        QVERIFY(browser.ScrollBar().isHidden());
        QCOMPARE(browser.ScrollBar().value(), 0);
        QCOMPARE(browser.ScrollBar().minimum(), 0);
        QCOMPARE(browser.ScrollBar().maximum(), 99);
        QCOMPARE(browser.ScrollBar().singleStep(), 1);
    }

    void theScrollBarStaysHiddenWhenTheBrowserIsShown()
    {
        ProbedBrowser browser;
        ShowBrowser(browser);
        QVERIFY(!browser.ScrollBar().isVisible());
    }

    void theSearchFieldIsEmpty()
    {
        ProbedBrowser browser;
        QCOMPARE(browser.SearchField().text(), QString());
        QVERIFY(!browser.SearchField().isReadOnly());
        QVERIFY(!browser.SearchField().isHidden());
    }

    void theClearButtonShowsTheStylesCloseIconAndNoText()
    {
        ProbedBrowser browser;
        QCOMPARE(browser.ClearingButton().text(), QString());
        QVERIFY(!browser.ClearingButton().isCheckable());
        const QImage shown = browser.ClearingButton().icon().pixmap(16).toImage();
        QVERIFY(!shown.isNull());
        QCOMPARE(shown, browser.style()->standardIcon(QStyle::SP_TitleBarCloseButton).pixmap(16).toImage());
    }

    void theTabsAreNodesTypesAndAllWithNodesInFront()
    {
        ProbedBrowser browser;
        QTabBar& tabs = *browser.TabBar();
        QCOMPARE(tabs.count(), 3);
        QCOMPARE(tabs.tabText(0), FromLatin1("Nodes"));
        QCOMPARE(tabs.tabText(1), FromLatin1("Types"));
        QCOMPARE(tabs.tabText(2), FromLatin1("All"));
        QCOMPARE(tabs.currentIndex(), 0);
    }

    void makingTheTabsAsksForNothing()
    {
        ProbedBrowser browser;
        ShowLibrary(browser, m_library->GetAccessor());
        // A tab bar that was connected before it had tabs would have told of its first one.
        QCOMPARE(browser.GetRowCount(), std::size_t(2));
    }

    void everyChildIsConnectedOnceToItsSlot_data()
    {
        QTest::addColumn<int>("config");
        QTest::newRow("full browser") << int(eConfigNodeBrowser);
        QTest::newRow("type selector") << int(eConfigTypeSelector);
    }

    void everyChildIsConnectedOnceToItsSlot()
    {
        QFETCH(int, config);
        ProbedBrowser browser(static_cast<eConfigType>(config));
        QVERIFY(TakeConnection(browser.ScrollBar(), SIGNAL(valueChanged(int)), browser, SLOT(SliderValueChanged(int))));
        QVERIFY(TakeConnection(browser.SearchField(), SIGNAL(textChanged(const QString&)), browser,
                               SLOT(SearchTextChange(const QString&))));
        QVERIFY(TakeConnection(browser.SearchField(), SIGNAL(returnPressed()), browser, SLOT(EnterPressed())));
        if (config == eConfigNodeBrowser)
            QVERIFY(TakeConnection(*browser.TabBar(), SIGNAL(currentChanged(int)), browser, SLOT(TabChanged(int))));
        QVERIFY(TakeConnection(browser.ClearingButton(), SIGNAL(clicked(bool)), browser, SLOT(ClearButton(bool))));
    }

    void nothingElseOfTheHeaderIsConnectedToTheBrowser()
    {
        ProbedBrowser browser;
        QObject* const children[] = {&browser.ScrollBar(), &browser.SearchField(), &browser.ClearingButton(),
                                     browser.TabBar()};
        const char* const slotNames[] = {SLOT(SliderValueChanged(int)), SLOT(SearchTextChange(QString)),
                                         SLOT(EnterPressed()), SLOT(TabChanged(int)), SLOT(ClearButton(bool))};
        int connected = 0;
        for (QObject* const child : children)
            for (const char* const slot : slotNames)
                connected += QObject::disconnect(child, nullptr, &browser, slot) ? 1 : 0;
        QCOMPARE(connected, 5);
    }

    void theTypeSelectorShowsTypesFromPixel23On()
    {
        m_library->Add(NewItem::Type("Colour"));
        m_library->Add(NewItem::Type("Vector"));
        ProbedBrowser browser(eConfigTypeSelector);
        ShowLibrary(browser, m_library->GetAccessor());
        QCOMPARE(browser.RowNames(m_library->GetAccessor()).join(QLatin1String(",")), FromLatin1("Colour,Vector"));
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(50, gListTop));
        QVERIFY(!browser.GetSelection().IsValid());
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(50, gListTop + 1));
        QVERIFY(browser.GetSelection() == m_library->FindByName("Colour"));
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(50, gListTop + gRowHeight));
        QVERIFY(browser.GetSelection() == m_library->FindByName("Vector"));
    }

    void theFullBrowsersListBeginsAtPixel43()
    {
        ProbedBrowser browser;
        ShowLibrary(browser, m_library->GetAccessor());
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(200, gBrowserTop));
        QVERIFY(!browser.GetSelection().IsValid());
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(200, gBrowserTop + 1));
        QVERIFY(browser.GetSelection() == m_library->FindByName("Add"));
    }

    void theTaskIsNamedNodeBrowser()
    {
        SpyLayer spy;
        ProbedBrowser browser;
        ShowLibrary(browser, spy.Watch(m_library->GetAccessor()));
        QCOMPARE(spy.Lines("request").join(QLatin1String("|")), FromLatin1("request 1 for NodeBrowser"));
    }

    void thePropertiesManagerIsConnectedAndThenAskedOnce()
    {
        Recorder record;
        FakePropertiesManager manager(record);
        m_layer->SetService("RevisionControlPropertiesMgr", &manager);
        {
            ProbedBrowser browser;
            QCOMPARE(record.Log().join(QLatin1String(",")), FromLatin1("connect,has,read"));
        }
        QCOMPARE(record.Log().join(QLatin1String(",")), FromLatin1("connect,has,read,disconnect"));
    }

    void aConstructionThatFailsLeavesNothingBehind_data()
    {
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<int>("disconnects");
        QTest::newRow("the manager is looked up") << QByteArray("service 'RevisionControlPropertiesMgr'") << 0;
        QTest::newRow("it is connected") << QByteArray("connect") << 0;
        QTest::newRow("it is asked for properties") << QByteArray("has") << 1;
        QTest::newRow("it is asked for its value") << QByteArray("read") << 1;
        QTest::newRow("source control is asked") << QByteArray("active") << 1;
    }

    void aConstructionThatFailsLeavesNothingBehind()
    {
        QFETCH(QByteArray, call);
        QFETCH(int, disconnects);
        FakeLayer layer;
        layer.ShowSourceControl();
        FakePropertiesManager manager(layer);
        manager.m_enabled = true;
        layer.SetService("RevisionControlPropertiesMgr", &manager);
        layer.When(call.constData(), [] { throw std::runtime_error("the disk is gone"); });
        const int widgets = static_cast<int>(QApplication::allWidgets().size());
        QString reason;
        try
        {
            const CNodeBrowser browser(eConfigNodeBrowser);
        }
        catch (const std::runtime_error& error)
        {
            reason = FromLatin1(error.what());
        }
        QCOMPARE(reason, FromLatin1("the disk is gone"));
        QCOMPARE(layer.Lines("task ended"), QStringList(FromLatin1("task ended NodeBrowser")));
        QCOMPARE(layer.Count("disconnect"), disconnects);
        QCOMPARE(static_cast<int>(QApplication::allWidgets().size()), widgets);
        // What failed once does not stand in the way of the next one.
        layer.ForgetHooks();
        ProbedBrowser browser;
        layer.Add(VireoType::gSolver, "Add");
        ShowLibrary(browser, layer.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
    }

    void aBrowserWithoutPropertiesManagerWorks_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::newRow("no service") << FromLatin1("service");
        QTest::newRow("a service of another kind") << FromLatin1("kind");
        QTest::newRow("no system") << FromLatin1("system");
        QTest::newRow("no data layer at all") << FromLatin1("layer");
    }

    void aBrowserWithoutPropertiesManagerWorks()
    {
        QFETCH(QString, missing);
        OtherService other;
        if (missing == QLatin1String("service"))
            m_layer->SetService("RevisionControlPropertiesMgr", nullptr);
        if (missing == QLatin1String("kind"))
            m_layer->SetService("RevisionControlPropertiesMgr", &other);
        if (missing == QLatin1String("system"))
            m_layer->SetSystemPresent(false);
        const ItemLibraryAccessor library = m_library->GetAccessor();
        const bool withoutLayer = missing == QLatin1String("layer");
        if (withoutLayer)
            m_layer.reset();
        {
            ProbedBrowser browser;
            ShowLibrary(browser, library);
            QCOMPARE(browser.GetRowCount(), std::size_t(withoutLayer ? 0 : 2));
        }
    }

    void aNewBrowserHasNoSelectionNoRowsAndNoCommandManager()
    {
        ProbedBrowser browser;
        ShowBrowser(browser);
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
        QVERIFY(!browser.GetSelection().IsValid());
        QVERIFY(!browser.IsSelectionType());
        QVERIFY(!browser.GetCommandManager());
    }

    void theCommandManagerIsStoredAndNothingElseHappens()
    {
        SpyLayer spy;
        ProbedBrowser browser;
        ShowLibrary(browser, spy.Watch(m_library->GetAccessor()));
        spy.Forget();
        QSignalSpy selections(&browser, SIGNAL(SelectionChanged()));
        hmx::fwk::ICommandManager* const commands = &m_layer->GetCommandManager();
        QCOMPARE(CountPaints(browser, [&] { browser.SetCommandManager(commands); }), 0);
        QVERIFY(browser.GetCommandManager() == commands);
        QCOMPARE(CountPaints(browser, [&] { browser.SetCommandManager(nullptr); }), 0);
        QVERIFY(!browser.GetCommandManager());
        QVERIFY(spy.Log().isEmpty());
        QCOMPARE(selections.count(), 0);
    }

    void attachingRegistersWithTheLibraryBeforeItsContentsAndBuildsAtOnce()
    {
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        QCOMPARE(spy.Lines(gBrowsing).join(QLatin1String("|")),
                 FromLatin1("library+40 A|contents of A|contents+39 A|iterate PolymorphicSolver|iterate Compound|"
                            "iterate GlobalConstant|iterate Solver|iterate Type"));
        QCOMPARE(spy.m_requests.size(), std::size_t(0));
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
    }

    void attachingAnotherLibraryLeavesTheOldContentsBeforeTheOldLibrary()
    {
        memorymodel::Library& other = m_layer->AddLibrary("B");
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor(), "A"));
        spy.Forget();
        browser.SetItemLibrary(spy.Watch(other.GetAccessor(), "B"));
        QCOMPARE(QStringList(spy.Lines(gBrowsing).mid(0, 5)).join(QLatin1String("|")),
                 FromLatin1("contents-39 A|library-40 A|library+40 B|contents of B|contents+39 B"));
        QCOMPARE(spy.CountRebuilds(), 1);
    }

    void attachingTheSameLibraryTwiceLeavesAndRegistersAgainAndRebuilds()
    {
        SpyLayer spy;
        const ItemLibraryAccessor library = spy.Watch(m_library->GetAccessor());
        ProbedBrowser browser;
        ShowLibrary(browser, library);
        spy.Forget();
        browser.SetItemLibrary(library);
        QCOMPARE(QStringList(spy.Lines(gBrowsing).mid(0, 5)).join(QLatin1String("|")),
                 FromLatin1("contents-39 A|library-40 A|library+40 A|contents of A|contents+39 A"));
        QCOMPARE(spy.CountRebuilds(), 1);
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(2));
        spy.Forget();
        m_library->Add(NewItem::Solver("Clamp"));
        Settle();
        QCOMPARE(spy.CountRebuilds(), 1);
        QCOMPARE(browser.GetRowCount(), std::size_t(3));
    }

    void theContentsAndTheLibraryAreLeftIndependently_data()
    {
        QTest::addColumn<bool>("dies");
        QTest::addColumn<bool>("contents");
        QTest::addColumn<bool>("library");
        QTest::newRow("dies, both valid") << true << true << true;
        QTest::newRow("dies, no library") << true << true << false;
        QTest::newRow("dies, no contents") << true << false << true;
        QTest::newRow("dies, neither") << true << false << false;
        QTest::newRow("another library, both valid") << false << true << true;
        QTest::newRow("another library, no library") << false << true << false;
        QTest::newRow("another library, no contents") << false << false << true;
        QTest::newRow("another library, neither") << false << false << false;
    }

    void theContentsAndTheLibraryAreLeftIndependently()
    {
        QFETCH(bool, dies);
        QFETCH(bool, contents);
        QFETCH(bool, library);
        FakeLayer layer;
        std::unique_ptr<ProbedBrowser> browser(new ProbedBrowser);
        browser->SetItemLibrary(layer.GetAccessor());
        layer.Forget();
        layer.m_contents->m_alive = contents;
        layer.m_library->m_alive = library;
        if (dies)
            browser.reset();
        else
            browser->SetItemLibrary(ItemLibraryAccessor());
        QCOMPARE(layer.Log(), QStringList() << (contents ? QStringList(FromLatin1("contents-39 A")) : QStringList())
                                            << (library ? QStringList(FromLatin1("library-40 A")) : QStringList()));
    }

    void aLibraryThatWasClosedIsNotLeft()
    {
        SpyLayer spy;
        ProbedBrowser browser;
        browser.SetItemLibrary(spy.Watch(m_library->GetAccessor(), "A"));
        m_library->Close();
        spy.Forget();
        browser.SetItemLibrary(spy.Watch(m_layer->AddLibrary("B").GetAccessor(), "B"));
        QCOMPARE(QStringList(spy.Lines(gBrowsing).mid(0, 3)).join(QLatin1String("|")),
                 FromLatin1("library+40 B|contents of B|contents+39 B"));
    }

    void attachingAnInvalidLibraryLeavesTheOldOneAndShowsNothingAtTheNextPaint()
    {
        SpyLayer spy;
        ProbedBrowser browser;
        ShowLibrary(browser, spy.Watch(m_library->GetAccessor()));
        spy.Forget();
        QCOMPARE(CountPaints(browser, [&] { browser.SetItemLibrary(ItemLibraryAccessor()); }), 0);
        QCOMPARE(spy.Log().join(QLatin1String("|")), FromLatin1("contents-39 A|library-40 A"));
        QCOMPARE(browser.GetRowCount(), std::size_t(2));
        QVERIFY(!browser.GetRowItem(0).IsValid());
        browser.update();
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
        spy.Forget();
        m_library->Add(NewItem::Solver("Clamp"));
        Settle();
        QCOMPARE(spy.CountRebuilds(), 0);
    }

    void anInvalidLibraryLeavesAShownScrollBarAsItWas()
    {
        for (int i = 0; i < 50; ++i)
            m_library->Add(NewItem::Solver("Solver"));
        ProbedBrowser browser;
        ShowLibrary(browser, m_library->GetAccessor());
        QVERIFY(browser.ScrollBar().isVisible());
        const int maximum = browser.ScrollBar().maximum();
        browser.SetItemLibrary(ItemLibraryAccessor());
        browser.update();
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
        QVERIFY(browser.ScrollBar().isVisible());
        QCOMPARE(browser.ScrollBar().maximum(), maximum);
    }

    void attachingAValidLibraryAsksForARepaintAndEmitsNothing()
    {
        ProbedBrowser browser;
        ShowBrowser(browser);
        QSignalSpy selections(&browser, SIGNAL(SelectionChanged()));
        QVERIFY(CountPaints(browser, [&] { browser.SetItemLibrary(m_library->GetAccessor()); }) > 0);
        QCOMPARE(CountPaints(browser, [] {}), 0);
        QCOMPARE(browser.GetRowCount(), std::size_t(2));
        QCOMPARE(selections.count(), 0);
    }

    void theSameRowIsSelectedInAnotherLibrary()
    {
        memorymodel::Library& other = m_layer->AddLibrary("B");
        other.Add(NewItem::Solver("First"));
        other.Add(NewItem::Solver("Second"));
        ProbedBrowser browser;
        ShowLibrary(browser, m_library->GetAccessor());
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, browser.RowCentre(1));
        QVERIFY(browser.GetSelection() == m_library->FindByName("Blend"));
        browser.SetItemLibrary(other.GetAccessor());
        Settle();
        QVERIFY(browser.GetSelection() == other.FindByName("Second"));
    }

    void theSearchTextSurvivesAnotherLibrary()
    {
        memorymodel::Library& other = m_layer->AddLibrary("B");
        other.Add(NewItem::Solver("Addition"));
        other.Add(NewItem::Solver("Second"));
        ProbedBrowser browser;
        ShowLibrary(browser, m_library->GetAccessor());
        QTest::keyClicks(&browser.SearchField(), FromLatin1("add"));
        browser.SetItemLibrary(other.GetAccessor());
        Settle();
        QCOMPARE(browser.RowNames(other.GetAccessor()).join(QLatin1String(",")), FromLatin1("Addition"));
    }

    void theScrollSlotReadsTheBarAndNotItsArgument()
    {
        for (int i = 0; i < 50; ++i)
            m_library->Add(NewItem::Solver(FromLatin1("S%1").arg(i + 10).toLatin1().constData()));
        ProbedBrowser browser;
        ShowLibrary(browser, m_library->GetAccessor());
        QMetaObject::invokeMethod(&browser, "SliderValueChanged", Q_ARG(int, 10 * gRowHeight));
        Settle();
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(50, gBrowserTop + 17));
        QVERIFY(browser.GetSelection() == m_library->FindByName("Add"));
        int paints =
            CountPaints(browser, [&] { QMetaObject::invokeMethod(&browser, "SliderValueChanged", Q_ARG(int, 0)); });
        QCOMPARE(paints, 1);
        browser.ScrollBar().setValue(2 * gRowHeight);
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(50, gBrowserTop + 17));
        QVERIFY(browser.GetSelection() == m_library->FindByName("S10"));
    }

    void aBrowserDiesInOrder()
    {
        SpyLayer spy;
        FakePropertiesManager manager(spy);
        m_layer->SetService("RevisionControlPropertiesMgr", &manager);
        DeathLog deaths(spy);
        std::unique_ptr<ProbedBrowser> browser(new ProbedBrowser);
        deaths.Watch(&browser->SearchField(), "search field");
        deaths.Watch(&browser->ClearingButton(), "clear button");
        deaths.Watch(&browser->ScrollBar(), "scroll bar");
        deaths.Watch(browser->TabBar(), "tab bar");
        deaths.Watch(browser.get(), "browser");
        browser->SetItemLibrary(spy.Watch(m_library->GetAccessor()));
        spy.Forget();
        browser.reset();
        QCOMPARE(spy.Log().join(QLatin1String("|")),
                 FromLatin1("contents-39 A|library-40 A|scroll bar|tab bar|search field|clear button|"
                            "task ended NodeBrowser|disconnect|browser"));
    }

    void aTypeSelectorDiesInOrder()
    {
        SpyLayer spy;
        DeathLog deaths(spy);
        std::unique_ptr<ProbedBrowser> browser(new ProbedBrowser(eConfigTypeSelector));
        deaths.Watch(&browser->SearchField(), "search field");
        deaths.Watch(&browser->ClearingButton(), "clear button");
        deaths.Watch(&browser->ScrollBar(), "scroll bar");
        spy.Forget();
        browser.reset();
        QCOMPARE(spy.Log().join(QLatin1String("|")),
                 FromLatin1("scroll bar|search field|clear button|task ended NodeBrowser"));
    }

    void aBrowserWithoutLibraryLeavesNothing()
    {
        SpyLayer spy;
        {
            ProbedBrowser browser;
            ShowBrowser(browser);
            spy.Forget();
        }
        QCOMPARE(spy.Log().join(QLatin1String("|")), FromLatin1("task ended NodeBrowser"));
    }

    void aLibraryThatWasClosedIsNotLeftByADyingBrowser()
    {
        SpyLayer spy;
        {
            ProbedBrowser browser;
            ShowLibrary(browser, spy.Watch(m_library->GetAccessor()));
            m_library->Close();
            Settle();
            spy.Forget();
        }
        QCOMPARE(spy.Log().join(QLatin1String("|")), FromLatin1("task ended NodeBrowser"));
    }

    void nobodyCallsABrowserThatIsGone()
    {
        {
            ProbedBrowser browser;
            ShowLibrary(browser, m_library->GetAccessor());
        }
        m_layer->GetSourceControl().SetEnabled(true);
        m_layer->GetSourceControl().SetState(m_library->FindByName("Blend"), memorymodel::eCheckedOut);
        m_layer->GetSourceControl().DeliverRequestedStates();
        m_library->SetTags(m_library->FindByName("Blend"), "mix");
        m_library->Invalidate();
        QVERIFY(m_library->Add(NewItem::Solver("Clamp")).IsValid());
    }

    void anUnansweredRequestDiesWithItsBrowser()
    {
        m_layer->GetSourceControl().SetVersionControlActive(true);
        {
            ProbedBrowser browser;
            browser.SetItemLibrary(m_library->GetAccessor());
            browser.resize(300, 400);
            QImage picture(300, 400, QImage::Format_ARGB32);
            browser.render(&picture);
        }
        QCOMPARE(m_layer->GetSourceControl().GetRequestCount(), std::size_t(1));
        m_layer->GetSourceControl().DeliverRequestedStates();
        Settle();
        QCOMPARE(m_layer->GetSourceControl().GetState(m_library->FindByName("Blend")),
                 unsigned(memorymodel::eCheckedIn));
    }

    void browsersOnOneLibraryDoNotMindEachOther()
    {
        ProbedBrowser first;
        ShowLibrary(first, m_library->GetAccessor());
        {
            ProbedBrowser second;
            ShowLibrary(second, m_library->GetAccessor());
            m_library->Add(NewItem::Solver("Clamp"));
            Settle();
            QCOMPARE(second.GetRowCount(), std::size_t(3));
        }
        m_library->Add(NewItem::Solver("Divide"));
        Settle();
        QCOMPARE(first.GetRowCount(), std::size_t(4));
    }

private:
    std::unique_ptr<memorymodel::DataLayer> m_layer;
    memorymodel::Library* m_library = nullptr;
};

NODEBROWSER_TEST_MAIN(TestConstruction)
#include "test_construction.moc"
