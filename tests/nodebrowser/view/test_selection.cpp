// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/nodebrowser/support/pictures.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QHelpEvent>
#include <QSignalSpy>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace
{

/// A point of the browser's header that no child covers.
const QPoint gHeaderPoint(290, 42);

/// A browser whose context menu closes at once, and that remembers what was so when the menu opened.
class MenuBrowser : public ProbedBrowser
{
public:
    explicit MenuBrowser(eConfigType in_config = eConfigNodeBrowser)
        : ProbedBrowser(in_config), m_signals(this, SIGNAL(SelectionChanged()))
    {
    }

    int SignalCount() const { return static_cast<int>(m_signals.count()); }

    std::vector<QPoint> m_menuPositions;
    std::vector<ItemID> m_selectionsInMenu;
    std::vector<int> m_signalsBeforeMenu;

protected:
    void PopContexMenu(const QPoint& in_position, std::size_t in_row) override
    {
        m_menuRows.push_back(in_row);
        m_menuPositions.push_back(in_position);
        m_selectionsInMenu.push_back(GetSelection());
        m_signalsBeforeMenu.push_back(SignalCount());
    }

private:
    QSignalSpy m_signals;
};

/// Lets go of the left button again and again: a platform that carries drags out waits for that.
class LettingGo : public QObject
{
public:
    explicit LettingGo(QWidget& in_window) : m_window(in_window) { startTimer(10); }

protected:
    void timerEvent(QTimerEvent*) override
    {
        const QPoint position = m_window.rect().center();
        QMouseEvent release(QEvent::MouseButtonRelease, position, m_window.mapToGlobal(position), Qt::LeftButton,
                            Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(testcompat::DragEventReceiver(m_window), &release);
    }

private:
    QWidget& m_window;
};

void Press(QWidget& in_browser, const QPoint& in_position, Qt::MouseButton in_button = Qt::LeftButton)
{
    QTest::mousePress(&in_browser, in_button, Qt::NoModifier, in_position);
    QTest::mouseRelease(&in_browser, in_button, Qt::NoModifier, in_position);
}

void PressRow(ProbedBrowser& in_browser, int in_row, Qt::MouseButton in_button = Qt::LeftButton)
{
    Press(in_browser, in_browser.RowCentre(in_row), in_button);
}

/// All that a browser gets when a person clicks twice.
void DoubleClick(QWidget& in_browser, const QPoint& in_position, Qt::MouseButton in_button = Qt::LeftButton)
{
    Press(in_browser, in_position, in_button);
    QTest::mouseDClick(&in_browser, in_button, Qt::NoModifier, in_position);
    QTest::mouseRelease(&in_browser, in_button, Qt::NoModifier, in_position);
}

QRgb ScreenPixel(const QWidget& in_browser, const QPoint& in_position)
{
    return testcompat::ScreenPicture(in_browser).toImage().pixel(in_position);
}

} // namespace

/// Looks at a browser from inside of its signal.
class SelectionListener : public QObject
{
    Q_OBJECT

public:
    explicit SelectionListener(MenuBrowser& in_browser) : m_browser(in_browser)
    {
        connect(&in_browser, SIGNAL(SelectionChanged()), this, SLOT(Look()));
    }

    int m_count = 0;
    int m_paints = -1;
    QImage m_screen;
    ItemID m_selection;

public Q_SLOTS:
    void Look()
    {
        ++m_count;
        m_paints = m_browser.m_paints;
        m_screen = testcompat::ScreenPicture(m_browser).toImage();
        m_selection = m_browser.GetSelection();
    }

private:
    MenuBrowser& m_browser;
};

/// A browser of some nodes.
struct Scene
{
    explicit Scene(int in_nodes = 5)
    {
        m_library.AddNodes(in_nodes);
        ShowLibrary(m_browser, m_library.GetAccessor());
    }

    /// Whether the row of an item, numbered as they were added, is the selected one.
    bool IsSelected(int in_item) { return m_browser.GetSelection() == m_library.GetItem(in_item).m_id; }

    /// Whether a row has the band on the screen at this moment.
    bool IsBandOnScreen(int in_row)
    {
        return ScreenPixel(m_browser, PointOnBand(in_row)) == BandColour(m_browser).rgb();
    }

    /// A point of a row that neither its icon nor its name reaches.
    QPoint PointOnBand(int in_row) { return QPoint(250, m_browser.RowCentre(in_row).y()); }

    FakeLayer m_library;
    MenuBrowser m_browser;
};

class TestSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsSelectedAtFirst()
    {
        Scene scene(3);
        QVERIFY(!scene.m_browser.GetSelection().IsValid());
        QVERIFY(!scene.m_browser.IsSelectionType());
    }

    void aLeftPressSelectsTheRowAndSaysSoOnce()
    {
        Scene scene;
        QTest::mousePress(&scene.m_browser, Qt::LeftButton, Qt::NoModifier, scene.m_browser.RowCentre(2));
        QVERIFY(scene.IsSelected(2));
        QCOMPARE(scene.m_browser.SignalCount(), 1);
        QTest::mouseRelease(&scene.m_browser, Qt::LeftButton, Qt::NoModifier, scene.m_browser.RowCentre(2));
        QCOMPARE(scene.m_browser.SignalCount(), 1);
        QVERIFY(scene.m_browser.m_menuRows.empty());
    }

    void pressingTheSelectedRowAgainSaysSoAgain()
    {
        Scene scene;
        PressRow(scene.m_browser, 2);
        PressRow(scene.m_browser, 2);
        QCOMPARE(scene.m_browser.SignalCount(), 2);
        QVERIFY(scene.IsSelected(2));
    }

    void aLeftPressSelectsAtOnceInATypeSelectorToo()
    {
        FakeLayer library;
        library.Add(LibType::gType, "Colour");
        MenuBrowser browser(eConfigTypeSelector);
        ShowLibrary(browser, library.GetAccessor());
        PressRow(browser, 0);
        QVERIFY(browser.GetSelection() == library.GetItem(0).m_id);
        QCOMPARE(browser.SignalCount(), 1);
    }

    void theBandIsOnTheScreenBeforeTheSignal()
    {
        Scene scene;
        const SelectionListener listener(scene.m_browser);
        QVERIFY(!scene.IsBandOnScreen(3));
        const int before = scene.m_browser.m_paints;
        QTest::mousePress(&scene.m_browser, Qt::LeftButton, Qt::NoModifier, scene.m_browser.RowCentre(3));
        QCOMPARE(listener.m_count, 1);
        QCOMPARE(listener.m_paints, before + 1);
        QCOMPARE(listener.m_screen.pixel(scene.PointOnBand(3)), BandColour(scene.m_browser).rgb());
        QVERIFY(listener.m_selection == scene.m_library.GetItem(3).m_id);
        // Nothing is left to be painted later.
        QCOMPARE(CountPaints(scene.m_browser, [] {}), 0);
        QTest::mouseRelease(&scene.m_browser, Qt::LeftButton, Qt::NoModifier, scene.m_browser.RowCentre(3));
    }

    void aRightPressSelectsThenOpensTheMenuThenSaysSo()
    {
        Scene scene;
        const SelectionListener listener(scene.m_browser);
        QTest::mousePress(&scene.m_browser, Qt::RightButton, Qt::NoModifier, scene.m_browser.RowCentre(4));
        QCOMPARE(scene.m_browser.m_menuRows.size(), std::size_t(1));
        QCOMPARE(scene.m_browser.m_menuRows[0], std::size_t(4));
        QCOMPARE(scene.m_browser.m_menuPositions[0], scene.m_browser.mapToGlobal(scene.m_browser.RowCentre(4)));
        QVERIFY(scene.m_browser.m_selectionsInMenu[0] == scene.m_library.GetItem(4).m_id);
        QCOMPARE(scene.m_browser.m_signalsBeforeMenu[0], 0);
        QCOMPARE(scene.m_browser.SignalCount(), 1);
        QVERIFY(listener.m_selection == scene.m_library.GetItem(4).m_id);
        QTest::mouseRelease(&scene.m_browser, Qt::RightButton, Qt::NoModifier, scene.m_browser.RowCentre(4));
        QCOMPARE(scene.m_browser.SignalCount(), 1);
    }

    void aRightPressAsksForNoRepaint()
    {
        Scene scene;
        QCOMPARE(CountPaints(scene.m_browser, [&] { PressRow(scene.m_browser, 4, Qt::RightButton); }), 0);
        QVERIFY(!scene.IsBandOnScreen(4));
        scene.m_browser.update();
        Settle();
        QVERIFY(scene.IsBandOnScreen(4));
    }

    void aRightPressInATypeSelectorClearsTheSelectionAndOpensNothing_data()
    {
        QTest::addColumn<int>("config");
        QTest::newRow("type selector") << 1;
        QTest::newRow("a configuration without a name") << 2;
    }

    void aRightPressInATypeSelectorClearsTheSelectionAndOpensNothing()
    {
        QFETCH(int, config);
        FakeLayer library;
        library.Add(LibType::gType, "Colour");
        library.Add(LibType::gType, "Number");
        MenuBrowser browser(static_cast<eConfigType>(config));
        ShowLibrary(browser, library.GetAccessor());
        PressRow(browser, 0);
        QVERIFY(browser.GetSelection().IsValid());
        const int paints = CountPaints(browser, [&] { PressRow(browser, 1, Qt::RightButton); });
        QCOMPARE(paints, 0);
        QVERIFY(!browser.GetSelection().IsValid());
        QVERIFY(browser.m_menuRows.empty());
        QCOMPARE(browser.SignalCount(), 1);
    }

    void pressesThatPickNothingClearSilentlyAndWithoutARepaint_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<QPoint>("position");
        const QPoint onRow(100, gBrowserTop + gRowHeight + gRowHeight / 2);
        const QPoint belowRows(100, gBrowserTop + 5 * gRowHeight + 5);
        QTest::newRow("middle button on a row") << int(Qt::MiddleButton) << onRow;
        QTest::newRow("another button on a row") << int(Qt::XButton1) << onRow;
        QTest::newRow("left below the last row") << int(Qt::LeftButton) << belowRows;
        QTest::newRow("left just below the last row")
            << int(Qt::LeftButton) << QPoint(100, gBrowserTop + 5 * gRowHeight);
        QTest::newRow("right below the last row") << int(Qt::RightButton) << belowRows;
        QTest::newRow("middle below the last row") << int(Qt::MiddleButton) << belowRows;
        QTest::newRow("left in the header") << int(Qt::LeftButton) << gHeaderPoint;
        QTest::newRow("right in the header") << int(Qt::RightButton) << gHeaderPoint;
        QTest::newRow("left on the line of the list top") << int(Qt::LeftButton) << QPoint(100, gBrowserTop);
    }

    void pressesThatPickNothingClearSilentlyAndWithoutARepaint()
    {
        QFETCH(int, button);
        QFETCH(QPoint, position);
        Scene scene;
        PressRow(scene.m_browser, 3);
        QVERIFY(scene.IsBandOnScreen(3));

        const int paints = CountPaints(scene.m_browser,
                                       [&] { Press(scene.m_browser, position, static_cast<Qt::MouseButton>(button)); });
        QCOMPARE(paints, 0);
        QCOMPARE(scene.m_browser.SignalCount(), 1);
        QVERIFY(!scene.m_browser.GetSelection().IsValid());
        QVERIFY(scene.m_browser.m_menuRows.empty());
        // The band stays on the screen until something else repaints the list.
        QVERIFY(scene.IsBandOnScreen(3));
        scene.m_browser.update();
        Settle();
        QVERIFY(!scene.IsBandOnScreen(3));
    }

    void aPressOnRowsThatTheHeaderHidesClears()
    {
        Scene scene(40);
        scene.m_browser.ScrollBar().setValue(240);
        Settle();
        PressRow(scene.m_browser, 12);
        QVERIFY(scene.IsSelected(12));
        Press(scene.m_browser, QPoint(270, 30));
        QVERIFY(!scene.m_browser.GetSelection().IsValid());
    }

    void aPressInAnEmptyBrowserIsHarmless()
    {
        MenuBrowser browser;
        ShowBrowser(browser);
        Press(browser, QPoint(100, 100));
        Press(browser, QPoint(100, 100), Qt::RightButton);
        DoubleClick(browser, QPoint(100, 100));
        QCOMPARE(browser.SignalCount(), 0);
        QVERIFY(!browser.GetSelection().IsValid());
        QVERIFY(!browser.IsSelectionType());
    }

    void theSelectionStaysARowWhenTheRowsAreFiltered()
    {
        Scene scene(20);
        PressRow(scene.m_browser, 2);
        scene.m_browser.SearchField().setText(QString::fromLatin1("01"));
        QVERIFY(scene.IsSelected(2));
        Settle();
        // 001, 010, 011 and so on.
        QCOMPARE(scene.m_browser.GetRowCount(), std::size_t(11));
        QVERIFY(scene.IsSelected(11));
        scene.m_browser.SearchField().setText(QString::fromLatin1("013"));
        Settle();
        QVERIFY(!scene.m_browser.GetSelection().IsValid());
        scene.m_browser.SearchField().clear();
        Settle();
        QVERIFY(scene.IsSelected(2));
        QCOMPARE(scene.m_browser.SignalCount(), 1);
    }

    void theSelectionStaysARowWhenItemsComeAndGo()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID b = library.Add(NewItem::Solver("b"));
        const ItemID d = library.Add(NewItem::Solver("d"));
        MenuBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        PressRow(browser, 1);
        QVERIFY(browser.GetSelection() == d);
        const ItemID a = library.Add(NewItem::Solver("a"));
        Settle();
        QVERIFY(browser.GetSelection() == b);
        library.Remove(a);
        library.Remove(b);
        Settle();
        QVERIFY(!browser.GetSelection().IsValid());
        library.Add(NewItem::Solver("a"));
        Settle();
        QVERIFY(browser.GetSelection() == d);
        QCOMPARE(browser.SignalCount(), 1);
    }

    void theSelectionOutlivesAChangeOfTheLibraryAsARow()
    {
        DataLayer layer;
        Library& first = layer.AddLibrary("First");
        Library& second = layer.AddLibrary("Second");
        first.Add(NewItem::Solver("a"));
        first.Add(NewItem::Solver("b"));
        second.Add(NewItem::Solver("c"));
        const ItemID d = second.Add(NewItem::Solver("d"));
        MenuBrowser browser;
        ShowLibrary(browser, first.GetAccessor());
        PressRow(browser, 1);
        browser.SetItemLibrary(second.GetAccessor());
        Settle();
        QVERIFY(browser.GetSelection() == d);
    }

    void enterSelectsTheFirstRowWhenNoneIsSelected()
    {
        Scene scene;
        QTest::keyClick(&scene.m_browser.SearchField(), Qt::Key_Return);
        QCOMPARE(scene.m_browser.SignalCount(), 1);
        QVERIFY(scene.IsSelected(0));
    }

    void enterAsksForNoRepaint()
    {
        Scene scene;
        // A key stroke makes the search field repaint itself and what is below it, hence the signal alone.
        const int paints = CountPaints(scene.m_browser, [&] {
            QVERIFY(QMetaObject::invokeMethod(&scene.m_browser.SearchField(), "returnPressed"));
        });
        QCOMPARE(paints, 0);
        QCOMPARE(scene.m_browser.SignalCount(), 1);
        QVERIFY(!scene.IsBandOnScreen(0));
        scene.m_browser.update();
        Settle();
        QVERIFY(scene.IsBandOnScreen(0));
    }

    void enterKeepsTheSelectedRow()
    {
        Scene scene;
        PressRow(scene.m_browser, 3);
        QTest::keyClick(&scene.m_browser.SearchField(), Qt::Key_Return);
        QCOMPARE(scene.m_browser.SignalCount(), 2);
        QVERIFY(scene.IsSelected(3));
    }

    void enterInAnEmptyListSaysSoAndSelectsWhateverComesFirstLater()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        MenuBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QTest::keyClick(&browser.SearchField(), Qt::Key_Return);
        QCOMPARE(browser.SignalCount(), 1);
        QVERIFY(!browser.GetSelection().IsValid());
        QVERIFY(!browser.IsSelectionType());
        const ItemID item = library.Add(NewItem::Solver("a"));
        Settle();
        QVERIFY(browser.GetSelection() == item);
        QCOMPARE(browser.SignalCount(), 1);
    }

    void onlyTypesAreTypes()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        AddEveryKind(library);
        MenuBrowser browser;
        ShowAll(browser, library.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(7));
        for (int row = 0; row < 7; ++row)
        {
            PressRow(browser, row);
            QVERIFY(browser.GetSelection().IsValid());
            QCOMPARE(browser.IsSelectionType(), row == 6);
        }
        PressRow(browser, 7);
        QVERIFY(!browser.IsSelectionType());
        PressRow(browser, 6);
        QVERIFY(browser.IsSelectionType());
        layer.RemoveLibrary(library);
        QVERIFY(!browser.IsSelectionType());
        QVERIFY(!browser.GetSelection().IsValid());
    }

    void doubleClickingACompoundMakesItTheTarget_data()
    {
        QTest::addColumn<int>("button");
        QTest::newRow("left") << int(Qt::LeftButton);
        QTest::newRow("right") << int(Qt::RightButton);
        QTest::newRow("middle") << int(Qt::MiddleButton);
        QTest::newRow("another") << int(Qt::XButton1);
    }

    void doubleClickingACompoundMakesItTheTarget()
    {
        QFETCH(int, button);
        FakeLayer library;
        library.AddCompound("Blend");
        library.AddCompound("Mix");
        MenuBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QTest::mouseDClick(&browser, static_cast<Qt::MouseButton>(button), Qt::NoModifier, browser.RowCentre(1));
        QCOMPARE(library.Commands(), QStringList(QString::fromLatin1("target Mix, root none")));
        QCOMPARE(library.Count("target", library.GetItem(1).m_id), 1);
    }

    void doubleClickingTheCompoundsOfALibrary_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("isTarget");
        QTest::newRow("compound") << 0 << true;
        QTest::newRow("signature") << 1 << true;
        QTest::newRow("loop compound") << 2 << true;
        QTest::newRow("solver") << 3 << false;
        QTest::newRow("polymorphic solver") << 4 << false;
        QTest::newRow("global constant") << 5 << false;
        QTest::newRow("type") << 6 << false;
    }

    void doubleClickingTheCompoundsOfALibrary()
    {
        QFETCH(int, row);
        QFETCH(bool, isTarget);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        AddEveryKind(library);
        int calls = 0;
        layer.SetCompoundTargetHandler([&calls] { ++calls; });
        MenuBrowser browser;
        ShowAll(browser, library.GetAccessor());
        QTest::mouseDClick(&browser, Qt::LeftButton, Qt::NoModifier, browser.RowCentre(row));
        QCOMPARE(calls, isTarget ? 1 : 0);
        QCOMPARE(layer.GetCompoundTarget().IsValid(), isTarget);
        if (isTarget)
            QVERIFY(layer.GetCompoundTarget() == browser.GetRowItem(static_cast<std::size_t>(row)).GetItemID());
        QVERIFY(!layer.GetCompoundTargetRoot().IsValid());
    }

    void doubleClickingComparesTypeNamesByAddress()
    {
        FakeLayer library;
        library.AddAs(VireoType::gCompound, gOtherCompound, "Blend");
        MenuBrowser browser;
        ShowAll(browser, library.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
        QVERIFY(std::string(gOtherCompound) == VireoType::gCompound);
        QTest::mouseDClick(&browser, Qt::LeftButton, Qt::NoModifier, browser.RowCentre(0));
        QCOMPARE(library.Commands(), QStringList());
    }

    void doubleClickingBesideTheRowsDoesNothing_data()
    {
        QTest::addColumn<QPoint>("position");
        QTest::newRow("header") << gHeaderPoint;
        QTest::newRow("line of the list top") << QPoint(100, gBrowserTop);
        QTest::newRow("below the last row") << QPoint(100, gBrowserTop + gRowHeight);
    }

    void doubleClickingBesideTheRowsDoesNothing()
    {
        QFETCH(QPoint, position);
        FakeLayer library;
        library.AddCompound("Blend");
        MenuBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QTest::mouseDClick(&browser, Qt::LeftButton, Qt::NoModifier, position);
        QCOMPARE(library.Commands(), QStringList());
    }

    void doubleClickingLeavesTheSelectionToItsPresses()
    {
        FakeLayer library;
        for (int i = 0; i < 5; ++i)
            library.AddCompound("Blend");
        MenuBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        PressRow(browser, 1);
        const int paints = CountPaints(
            browser, [&] { QTest::mouseDClick(&browser, Qt::LeftButton, Qt::NoModifier, browser.RowCentre(3)); });
        QCOMPARE(paints, 0);
        QVERIFY(browser.GetSelection() == library.GetItem(1).m_id);
        QCOMPARE(browser.SignalCount(), 1);
        QCOMPARE(library.Count("target"), 1);
    }

    void aWholeDoubleClickSelectsOnce()
    {
        FakeLayer library;
        for (int i = 0; i < 5; ++i)
            library.AddCompound("Blend");
        MenuBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        DoubleClick(browser, browser.RowCentre(2));
        QCOMPARE(browser.SignalCount(), 1);
        QVERIFY(browser.GetSelection() == library.GetItem(2).m_id);
        QCOMPARE(library.Count("target"), 1);
        QCOMPARE(library.Count("target", library.GetItem(2).m_id), 1);
    }

    void doubleClickingInATypeSelectorDoesNothing()
    {
        FakeLayer library;
        library.Add(LibType::gType, "Colour");
        MenuBrowser browser(eConfigTypeSelector);
        ShowLibrary(browser, library.GetAccessor());
        DoubleClick(browser, browser.RowCentre(0));
        QCOMPARE(library.Commands(), QStringList());
        QCOMPARE(browser.SignalCount(), 1);
    }

    void rowsThatAreGoneSinceTheLastPaintAreNoTrouble_data()
    {
        QTest::addColumn<int>("change");
        QTest::addColumn<int>("action");
        const char* const changes[] = {"a smaller library", "an empty library", "no library", "the library was removed",
                                       "the items were removed"};
        const char* const actions[] = {"asking", "left press", "right press", "double click", "move", "tool tip"};
        for (int change = 0; change < 5; ++change)
            for (int action = 0; action < 6; ++action)
                QTest::newRow((std::string(changes[change]) + ", " + actions[action]).c_str()) << change << action;
    }

    void rowsThatAreGoneSinceTheLastPaintAreNoTrouble()
    {
        QFETCH(int, change);
        QFETCH(int, action);
        DataLayer layer;
        Library& library = layer.AddLibrary("Large");
        for (int i = 0; i < 12; ++i)
            library.Add(NewItem::Compound("Blend"));
        Library& smaller = layer.AddLibrary("Small");
        smaller.Add(NewItem::Compound("Only"));
        MenuBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        const QPoint position = browser.RowCentre(9);
        Press(browser, position);
        QVERIFY(browser.GetSelection().IsValid());

        ChangeLibrary(change, layer, library, smaller, browser);
        // The rows are still those of the last paint.
        QCOMPARE(browser.GetRowCount(), std::size_t(12));
        Touch(browser, action, position);
        QVERIFY(!browser.GetSelection().IsValid());
        QVERIFY(!browser.IsSelectionType());
        QVERIFY(!layer.GetCompoundTarget().IsValid());
        QCOMPARE(browser.SignalCount(), action == eLeftPress || action == eRightPress ? 2 : 1);
        QCOMPARE(browser.m_menuRows.size(), std::size_t(action == eRightPress ? 1 : 0));
        browser.repaint();
        QCOMPARE(browser.GetRowCount(), std::size_t(change == eSmallerLibrary ? 1 : 0));
        QVERIFY(!browser.GetSelection().IsValid());
    }

private:
    enum
    {
        eSmallerLibrary,
        eEmptyLibrary,
        eNoLibrary,
        eLibraryRemoved,
        eItemsRemoved
    };

    enum
    {
        eAsk,
        eLeftPress,
        eRightPress,
        eDoubleClick,
        eMove,
        eToolTip
    };

    static void ChangeLibrary(int in_change, DataLayer& in_layer, Library& in_library, Library& in_smaller,
                              ProbedBrowser& in_browser)
    {
        if (in_change == eSmallerLibrary)
            in_browser.SetItemLibrary(in_smaller.GetAccessor());
        else if (in_change == eEmptyLibrary)
            in_browser.SetItemLibrary(in_layer.AddLibrary("Empty").GetAccessor());
        else if (in_change == eNoLibrary)
            in_browser.SetItemLibrary(ItemLibraryAccessor());
        else if (in_change == eLibraryRemoved)
            in_layer.RemoveLibrary(in_library);
        else
            while (in_library.GetItemCount() > 0)
                in_library.Remove(in_library.GetItems().back());
    }

    static void Touch(ProbedBrowser& in_browser, int in_action, const QPoint& in_position)
    {
        if (in_action == eLeftPress)
            Press(in_browser, in_position);
        else if (in_action == eRightPress)
            Press(in_browser, in_position, Qt::RightButton);
        else if (in_action == eDoubleClick)
            QTest::mouseDClick(&in_browser, Qt::LeftButton, Qt::NoModifier, in_position);
        else if (in_action == eMove)
        {
            const QPoint away = in_position - QPoint(50, 50);
            const LettingGo person(in_browser);
            QMouseEvent move(QEvent::MouseMove, away, in_browser.mapToGlobal(away), Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QCoreApplication::sendEvent(&in_browser, &move);
        }
        else if (in_action == eToolTip)
        {
            QHelpEvent help(QEvent::ToolTip, in_position, in_browser.mapToGlobal(in_position));
            QCoreApplication::sendEvent(&in_browser, &help);
            QVERIFY(!help.isAccepted());
        }
    }
};

NODEBROWSER_TEST_MAIN(TestSelection)
#include "test_selection.moc"
