// SPDX-License-Identifier: MIT
#include "nodebrowser/rowlayout.h"
#include "tests/support/testmain.h"

using namespace nodebrowser;

namespace
{

RowLayout MakeLayout(int in_scrollOffset = 0, int in_listTop = 43, int in_height = 400)
{
    RowLayout layout;
    layout.m_width = 300;
    layout.m_height = in_height;
    layout.m_listTop = in_listTop;
    layout.m_scrollOffset = in_scrollOffset;
    return layout;
}

} // namespace

class TestRowLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Here alone the measures are numbers: the other tests take them by name.
    void measures()
    {
        QCOMPARE(gRowHeight, 24);
        QCOMPARE(gListTop, 23);
        QCOMPARE(gListTop + gTabBarRoom, 43);
        QCOMPARE(gTabBarRoom, 20);
        QCOMPARE(gHeaderHeight, 20);
    }

    void pointsMapToRows_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<int>("scroll");
        QTest::addColumn<int>("listTop");
        QTest::addColumn<qulonglong>("row");
        const qulonglong none = 4294967295u;
        QTest::newRow("the list top itself is header") << 10 << 43 << 0 << 43 << none;
        QTest::newRow("first row begins one pixel below") << 10 << 44 << 0 << 43 << qulonglong(0);
        QTest::newRow("first row ends 23 below") << 10 << 43 + 23 << 0 << 43 << qulonglong(0);
        QTest::newRow("second row begins 24 below") << 10 << 43 + 24 << 0 << 43 << qulonglong(1);
        QTest::newRow("second row ends 47 below") << 10 << 43 + 47 << 0 << 43 << qulonglong(1);
        QTest::newRow("header") << 10 << 5 << 0 << 43 << none;
        QTest::newRow("header stays header when scrolled") << 10 << 43 << 100 << 43 << none;
        QTest::newRow("last column") << 299 << 50 << 0 << 43 << qulonglong(0);
        QTest::newRow("right of the widget") << 300 << 50 << 0 << 43 << none;
        QTest::newRow("left of the widget still maps") << -5 << 50 << 0 << 43 << qulonglong(0);
        QTest::newRow("scrolled by one pixel") << 10 << 43 + 23 << 1 << 43 << qulonglong(1);
        QTest::newRow("scrolled far") << 10 << 44 << 24000 << 43 << qulonglong(1000);
        QTest::newRow("below the widget") << 10 << 1000 << 0 << 43 << qulonglong(39);
        QTest::newRow("without a tab bar") << 10 << 24 << 0 << 23 << qulonglong(0);
        QTest::newRow("without a tab bar, list top") << 10 << 23 << 0 << 23 << none;
    }

    void pointsMapToRows()
    {
        QFETCH(int, x);
        QFETCH(int, y);
        QFETCH(int, scroll);
        QFETCH(int, listTop);
        QFETCH(qulonglong, row);
        QCOMPARE(qulonglong(MakeLayout(scroll, listTop).RowAt(QPoint(x, y))), row);
    }

    void noRowIsTheLargest32BitNumberAndNotAllBitsSet()
    {
        QCOMPARE(qulonglong(gNoRow), qulonglong(4294967295u));
        if (sizeof(std::size_t) > 4)
            QVERIFY(gNoRow != static_cast<std::size_t>(-1));
    }

    void bandIsOnePixelWiderAndTallerThanTheRow()
    {
        const QRect band = MakeLayout(10).BandRect(2);
        QCOMPARE(band, QRect(0, 43 - 10 + 48, 301, 25));
    }

    void nameStandsAt35AndReachesTheRightEdge()
    {
        const QRect name = MakeLayout(10).NameRect(2);
        QCOMPARE(name.left(), 35);
        QCOMPARE(name.right(), 300);
        QCOMPARE(name.top(), 43 - 10 + 48);
        QCOMPARE(name.bottom(), 43 - 10 + 72);
    }

    void listRectIsBelowTheHeader() { QCOMPARE(MakeLayout().ListRect(), QRect(0, 43, 300, 357)); }

    void edgesBelongToTheList()
    {
        const RowLayout layout = MakeLayout();
        QVERIFY(layout.IsInList(QPoint(0, 43)) && layout.IsInList(QPoint(299, 399)));
        QVERIFY(!layout.IsInList(QPoint(0, 42)) && !layout.IsInList(QPoint(0, 400)));
        QVERIFY(!layout.IsInList(QPoint(-1, 100)) && !layout.IsInList(QPoint(300, 100)));
    }

    void nothingIsInTheListOfAWidgetLowerThanTheHeader()
    {
        for (int y = 0; y < 60; ++y)
            QVERIFY(!MakeLayout(0, 43, 30).IsInList(QPoint(10, y)));
    }

    void offsetToShow_data()
    {
        QTest::addColumn<int>("scroll");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("offset");
        QTest::newRow("in sight") << 24 << 2 << 24;
        QTest::newRow("the first one in sight") << 24 << 1 << 24;
        QTest::newRow("the last one in sight") << 24 << 4 << 24;
        QTest::newRow("one above") << 24 << 0 << 0;
        QTest::newRow("one pixel line above") << 25 << 1 << 24;
        QTest::newRow("one below") << 24 << 5 << 48;
        QTest::newRow("one pixel line below") << 23 << 4 << 24;
        QTest::newRow("far below") << 0 << 100 << 97 * 24;
    }

    void offsetToShow()
    {
        QFETCH(int, scroll);
        QFETCH(int, row);
        QFETCH(int, offset);
        // Four rows are in sight.
        const RowLayout layout = MakeLayout(scroll, 43, 43 + 4 * 24);
        QCOMPARE(layout.OffsetToShow(static_cast<std::size_t>(row)), offset);
    }

    void visibleRows_data()
    {
        QTest::addColumn<int>("scroll");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("end");
        QTest::newRow("nothing") << 0 << 400 << 0 << 0 << 0;
        QTest::newRow("all fit") << 0 << 400 << 5 << 0 << 5;
        QTest::newRow("exactly full") << 0 << 43 + 48 << 10 << 0 << 2;
        QTest::newRow("a row one pixel above the bottom edge") << 0 << 43 + 49 << 10 << 0 << 3;
        QTest::newRow("bottom edge exactly at the list top") << 24 << 43 + 48 << 10 << 1 << 3;
        QTest::newRow("one pixel line left at the top") << 23 << 43 + 48 << 10 << 0 << 3;
        QTest::newRow("scrolled past the end") << 2400 << 400 << 10 << 10 << 10;
        QTest::newRow("no room for the list") << 0 << 43 << 10 << 0 << 0;
        QTest::newRow("lower than the header") << 0 << 20 << 10 << 0 << 0;
        QTest::newRow("lower than the header and scrolled") << 72 << 20 << 10 << 3 << 3;
    }

    void visibleRows()
    {
        QFETCH(int, scroll);
        QFETCH(int, height);
        QFETCH(int, count);
        QFETCH(int, first);
        QFETCH(int, end);
        const RowRange rows = MakeLayout(scroll, 43, height).VisibleRows(static_cast<std::size_t>(count));
        QCOMPARE(static_cast<int>(rows.m_end), end);
        QCOMPARE(static_cast<int>(rows.m_first), first);
    }

    void visibleRowsAreThoseThatAWalkOverAllRowsFinds()
    {
        for (int height = 0; height < 200; height += 7)
            for (int scroll = 0; scroll < 300; ++scroll)
            {
                const RowLayout layout = MakeLayout(scroll, 43, height);
                const RowRange rows = layout.VisibleRows(9);
                for (std::size_t row = 0; row < 9; ++row)
                {
                    const int top = layout.RowTop(row);
                    const bool inSight = top + gRowHeight > layout.m_listTop && top < height;
                    QCOMPARE(row >= rows.m_first && row < rows.m_end, inSight);
                }
            }
    }
};

NODEBROWSER_TEST_MAIN(TestRowLayout)
#include "test_rowlayout.moc"
