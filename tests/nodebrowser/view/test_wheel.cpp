// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/nodebrowser/support/pictures.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

namespace
{

/// Turns the wheel over a point of a widget.
/// \return whether the turn was accepted in the end
bool Turn(QWidget& in_widget, const QPoint& in_position, int in_delta, Qt::Orientation in_orientation = Qt::Vertical)
{
    QWheelEvent wheel =
        testcompat::MakeWheelEvent(in_position, in_widget.mapToGlobal(in_position), in_delta, in_orientation);
    // Only turns that seem to come from a device go on to the parent.
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    qApp->notify(&in_widget, &wheel);
    return wheel.isAccepted();
}

const QPoint gOverList(100, 200);
const int gStep = 3 * gRowHeight;

} // namespace

/// Counts the turns of the wheel that reach a widget.
class WheelCounter : public QObject
{
    Q_OBJECT

public:
    explicit WheelCounter(QObject& in_watched) { in_watched.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* in_event) override
    {
        if (in_event->type() == QEvent::Wheel)
            ++m_count;
        return false;
    }

    int m_count = 0;
};

/// A browser of some nodes that fills another window.
struct Embedded
{
    explicit Embedded(int in_nodes)
    {
        m_library.AddNodes(in_nodes);
        m_browser.setParent(&m_window);
        m_browser.SetItemLibrary(m_library.GetAccessor());
        m_window.resize(300, 400);
        m_window.show();
        ShowBrowser(m_browser);
    }
    ~Embedded() { m_browser.setParent(nullptr); }

    FakeLayer m_library;
    QWidget m_window;
    ProbedBrowser m_browser;
};

class TestWheel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTurnMovesThreeRowsHoweverFarItWas_data()
    {
        QTest::addColumn<int>("delta");
        QTest::addColumn<int>("orientation");
        QTest::addColumn<int>("scroll");
        QTest::newRow("one notch towards the user") << -120 << int(Qt::Vertical) << 300 + gStep;
        QTest::newRow("one notch away") << 120 << int(Qt::Vertical) << 300 - gStep;
        QTest::newRow("a little towards the user") << -1 << int(Qt::Vertical) << 300 + gStep;
        QTest::newRow("a little away") << 1 << int(Qt::Vertical) << 300 - gStep;
        QTest::newRow("far towards the user") << -12000 << int(Qt::Vertical) << 300 + gStep;
        QTest::newRow("far away") << 12000 << int(Qt::Vertical) << 300 - gStep;
        QTest::newRow("not at all scrolls down") << 0 << int(Qt::Vertical) << 300 + gStep;
        QTest::newRow("sideways, above 0") << 120 << int(Qt::Horizontal) << 300 - gStep;
        QTest::newRow("sideways, below 0") << -120 << int(Qt::Horizontal) << 300 + gStep;
    }

    void aTurnMovesThreeRowsHoweverFarItWas()
    {
        QFETCH(int, delta);
        QFETCH(int, orientation);
        QFETCH(int, scroll);
        FakeLayer library;
        library.AddNodes(100);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.ScrollBar().setValue(300);
        Settle();
        QVERIFY(Turn(browser, gOverList, delta, static_cast<Qt::Orientation>(orientation)));
        QCOMPARE(browser.ScrollBar().value(), scroll);
    }

    void theRowsOnTheScreenMoveBy72Pixels()
    {
        FakeLayer library;
        library.AddNodes(100);
        ProbedBrowser browser;
        UsePlainColours(browser);
        ShowLibrary(browser, library.GetAccessor());
        const QImage before = PictureWithoutChildren(browser);
        QCOMPARE(CountPaints(browser, [&browser] { Turn(browser, gOverList, -120); }), 1);
        const QImage after = PictureWithoutChildren(browser);
        QVERIFY(before.copy(0, gBrowserTop + gStep, 300, 280) == after.copy(0, gBrowserTop, 300, 280));
        QVERIFY(before != after);
    }

    void theEndsOfTheListStopTheWheel()
    {
        FakeLayer library;
        library.AddNodes(20);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        const int maximum = 20 * gRowHeight - (400 - gBrowserTop);
        QVERIFY(Turn(browser, gOverList, 120));
        QCOMPARE(browser.ScrollBar().value(), 0);
        QVERIFY(Turn(browser, gOverList, -120));
        QVERIFY(Turn(browser, gOverList, -120));
        QCOMPARE(browser.ScrollBar().value(), maximum);
        QVERIFY(Turn(browser, gOverList, -120));
        QCOMPARE(browser.ScrollBar().value(), maximum);
    }

    void theListEndsAtItsEdges_data()
    {
        QTest::addColumn<QPoint>("position");
        QTest::addColumn<bool>("inside");
        QTest::newRow("the line of the list top") << QPoint(100, gBrowserTop) << true;
        QTest::newRow("one line above") << QPoint(100, 42) << false;
        QTest::newRow("the last line") << QPoint(100, 399) << true;
        QTest::newRow("one line below") << QPoint(100, 400) << false;
        QTest::newRow("the first column") << QPoint(0, 200) << true;
        QTest::newRow("one column to the left") << QPoint(-1, 200) << false;
        QTest::newRow("the last column") << QPoint(299, 200) << true;
        QTest::newRow("one column to the right") << QPoint(300, 200) << false;
        QTest::newRow("the header") << QPoint(290, 30) << false;
    }

    void theListEndsAtItsEdges()
    {
        QFETCH(QPoint, position);
        QFETCH(bool, inside);
        FakeLayer library;
        library.AddNodes(100);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QCOMPARE(Turn(browser, position, -120), inside);
        QCOMPARE(browser.ScrollBar().value(), inside ? gStep : 0);
    }

    void theListOfATypeSelectorStartsAt23()
    {
        FakeLayer library;
        for (int i = 0; i < 40; ++i)
            library.Add(vireo::datamodel::LibType::gType, "Type");
        ProbedBrowser browser(eConfigTypeSelector);
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(!Turn(browser, QPoint(100, gListTop - 1), -120));
        QCOMPARE(browser.ScrollBar().value(), 0);
        QVERIFY(Turn(browser, QPoint(100, gListTop), -120));
        QCOMPARE(browser.ScrollBar().value(), gStep);
    }

    void aTurnOverTheHeaderGoesOnToTheParent()
    {
        Embedded embedded(100);
        QVERIFY(embedded.m_browser.m_paints > 0);
        const WheelCounter counter(embedded.m_window);
        QVERIFY(!Turn(embedded.m_browser, QPoint(290, 30), -120));
        QCOMPARE(counter.m_count, 1);
        QCOMPARE(embedded.m_browser.ScrollBar().value(), 0);
        QVERIFY(Turn(embedded.m_browser, gOverList, -120));
        QCOMPARE(counter.m_count, 1);
        QCOMPARE(embedded.m_browser.ScrollBar().value(), gStep);
    }

    void aTurnAtTheEndOfTheListStillStaysHere()
    {
        Embedded embedded(3);
        const WheelCounter counter(embedded.m_window);
        QVERIFY(Turn(embedded.m_browser, gOverList, 120));
        QCOMPARE(counter.m_count, 0);
    }

    void aScrollBarThatWasNeverShownMovesTheRowsUpTo99()
    {
        FakeLayer library;
        library.AddNodes(3);
        ProbedBrowser browser;
        UsePlainColours(browser);
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(!browser.ScrollBar().isVisible());
        const QImage before = PictureWithoutChildren(browser);
        const int expected[] = {gStep, 99, 99};
        for (int value : expected)
        {
            QVERIFY(Turn(browser, gOverList, -120));
            QCOMPARE(browser.ScrollBar().value(), value);
        }
        QVERIFY(!browser.ScrollBar().isVisible());
        QVERIFY(Turn(browser, gOverList, 120));
        QCOMPARE(browser.ScrollBar().value(), 99 - gStep);
        const QImage after = PictureWithoutChildren(browser);
        QVERIFY(before.copy(0, gBrowserTop + 99 - gStep, 300, 300) == after.copy(0, gBrowserTop, 300, 300));
        QVERIFY(before != after);
        QVERIFY(Turn(browser, gOverList, 120));
        QCOMPARE(browser.ScrollBar().value(), 0);
        QVERIFY(PictureWithoutChildren(browser) == before);
    }

    void aHiddenScrollBarMovesTheRowsWithinTheRangeItHad()
    {
        FakeLayer library;
        library.AddNodes(20);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QCOMPARE(browser.ScrollBar().maximum(), 123);
        browser.SearchField().setText(QString::fromLatin1("001"));
        Settle();
        QVERIFY(!browser.ScrollBar().isVisible());
        QVERIFY(Turn(browser, gOverList, -120));
        QCOMPARE(browser.ScrollBar().value(), gStep);
        QVERIFY(Turn(browser, gOverList, -120));
        QCOMPARE(browser.ScrollBar().value(), 123);
        QVERIFY(!browser.ScrollBar().isVisible());
        // The next layout of the rows puts it back.
        browser.SearchField().setText(QString::fromLatin1("002"));
        Settle();
        QCOMPARE(browser.ScrollBar().value(), 0);
    }

    void aBrowserWithoutALibraryTakesTheWheelToo()
    {
        ProbedBrowser browser;
        ShowBrowser(browser);
        QVERIFY(Turn(browser, gOverList, -120));
        QCOMPARE(browser.ScrollBar().value(), gStep);
    }

    void theMouseFollowsTheRowsThatTheWheelMoved()
    {
        FakeLayer library;
        library.AddNodes(100);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(Turn(browser, gOverList, -120));
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(100, gBrowserTop + gRowHeight / 2));
        QTest::mouseRelease(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(100, gBrowserTop + gRowHeight / 2));
        QVERIFY(browser.GetSelection() == library.GetItem(3).m_id);
    }
};

NODEBROWSER_TEST_MAIN(TestWheel)
#include "test_wheel.moc"
