// SPDX-License-Identifier: MIT
#include "qtcompat/qtcompat.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/nodebrowser/support/pictures.h"
#include "tests/support/testmain.h"

#include <QStyleFactory>

using memorymodel::NewItem;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace
{

/// Room for exactly this many rows in a browser with tabs.
int HeightFor(int in_rows)
{
    return gBrowserTop + gRowHeight * in_rows;
}

} // namespace

class TestLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_style = QApplication::style()->objectName();
        m_font = QApplication::font();
    }

    void cleanup()
    {
        if (QApplication::style()->objectName() != m_style)
            QApplication::setStyle(m_style);
        QApplication::setFont(m_font);
    }

    void childrenFollowTheSize_data()
    {
        QTest::addColumn<int>("config");
        QTest::addColumn<int>("listTop");
        QTest::addColumn<QSize>("size");
        QTest::newRow("browser") << 0 << gBrowserTop << QSize(300, 400);
        QTest::newRow("browser, wide") << 0 << gBrowserTop << QSize(900, 200);
        QTest::newRow("browser, as high as its header") << 0 << gBrowserTop << QSize(200, gBrowserTop);
        QTest::newRow("type selector") << 1 << gListTop << QSize(300, 400);
        QTest::newRow("type selector, tall") << 1 << gListTop << QSize(120, 800);
        QTest::newRow("a configuration without a name") << 7 << gListTop << QSize(300, 400);
    }

    void childrenFollowTheSize()
    {
        QFETCH(int, config);
        QFETCH(int, listTop);
        QFETCH(QSize, size);
        ProbedBrowser browser(static_cast<eConfigType>(config));
        ShowBrowser(browser, 500, 500);
        browser.resize(size);
        Settle();
        const int width = size.width();
        QCOMPARE(browser.size(), size);
        QCOMPARE(browser.SearchField().geometry(), QRect(0, 0, width - gHeaderHeight, gHeaderHeight));
        QCOMPARE(browser.ClearingButton().geometry(), QRect(width - gHeaderHeight, 0, gHeaderHeight, gHeaderHeight));
        QCOMPARE(browser.ScrollBar().geometry(),
                 QRect(width - gHeaderHeight, listTop, gHeaderHeight, size.height() - listTop));
        QCOMPARE(browser.TabBar() != nullptr, config == 0);
        if (browser.TabBar())
            QCOMPARE(browser.TabBar()->pos(), QPoint(0, gHeaderHeight));
    }

    void sizesBelowTheHeaderAreHarmless()
    {
        FakeLayer library;
        library.AddNodes(30);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        for (int size = 45; size >= 1; --size)
        {
            browser.resize(size, size);
            browser.repaint();
            Picture(browser);
        }
        QCOMPARE(browser.SearchField().pos(), QPoint(0, 0));
        QCOMPARE(browser.ClearingButton().pos(), QPoint(browser.width() - gHeaderHeight, 0));
        browser.resize(300, 400);
        Settle();
        QCOMPARE(browser.ScrollBar().maximum(), 30 * gRowHeight - (400 - gBrowserTop));
        QCOMPARE(browser.ScrollBar().value(), 0);
    }

    void tabBarKeepsItsOwnWidth()
    {
        ProbedBrowser browser;
        ShowBrowser(browser);
        const int width = browser.TabBar()->width();
        QCOMPARE(width, browser.TabBar()->sizeHint().width());
        browser.resize(600, 300);
        Settle();
        QCOMPARE(browser.TabBar()->width(), width);
    }

    void tabBarEndsWhereTheListBegins_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<int>("fontSize");
        const QStringList styles = QStyleFactory::keys();
        QVERIFY(!styles.isEmpty());
        for (int i = 0; i < styles.size(); ++i)
            for (int fontSize = 0; fontSize <= 36; fontSize += 18)
            {
                const QByteArray row = styles.at(i).toLatin1() + ", font size " + QByteArray::number(fontSize);
                QTest::newRow(row.constData()) << styles.at(i) << fontSize;
            }
    }

    void tabBarEndsWhereTheListBegins()
    {
        QFETCH(QString, style);
        QFETCH(int, fontSize);
        QVERIFY(QApplication::setStyle(style));
        if (fontSize > 0)
        {
            QFont font = QApplication::font();
            font.setPointSize(fontSize);
            QApplication::setFont(font);
        }
        ProbedBrowser browser;
        ShowBrowser(browser, 600, 300);
        QCOMPARE(browser.TabBar()->y(), gHeaderHeight);
        QCOMPARE(browser.TabBar()->height(), gBrowserTop - gHeaderHeight);
        QVERIFY(browser.TabBar()->isVisible());
        QCOMPARE(browser.childAt(5, 42), static_cast<QWidget*>(browser.TabBar()));
        QVERIFY(!browser.childAt(5, gBrowserTop));
    }

    void tabBarStillEndsThereWhenStyleAndFontChangeLater()
    {
        ProbedBrowser browser;
        ShowBrowser(browser, 600, 300);
        const QStringList styles = QStyleFactory::keys();
        QVERIFY(!styles.isEmpty());
        for (int i = 0; i < styles.size(); ++i)
        {
            QVERIFY(QApplication::setStyle(styles.at(i)));
            QFont font = QApplication::font();
            font.setPointSize(20 + i);
            QApplication::setFont(font);
            browser.resize(browser.width() - 1, browser.height());
            Settle();
            QCOMPARE(browser.TabBar()->geometry().bottom() + 1, gBrowserTop);
        }
    }

    void scrollBarHidesWhenAllRowsFit()
    {
        FakeLayer library;
        library.AddNodes(10);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor(), 300, HeightFor(10));
        QCOMPARE(browser.GetRowCount(), std::size_t(10));
        QVERIFY(!browser.ScrollBar().isVisible());
        QCOMPARE(browser.ScrollBar().value(), 0);
    }

    void scrollBarShowsForOneRowMoreThanFits()
    {
        FakeLayer library;
        library.AddNodes(11);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor(), 300, HeightFor(10));
        QVERIFY(browser.ScrollBar().isVisible());
        QCOMPARE(browser.ScrollBar().minimum(), 0);
        QCOMPARE(browser.ScrollBar().maximum(), gRowHeight);
        QCOMPARE(browser.ScrollBar().pageStep(), 240);
        QCOMPARE(browser.ScrollBar().singleStep(), 1);
    }

    void scrollBarShowsForOnePixelTooLittle()
    {
        FakeLayer library;
        library.AddNodes(10);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor(), 300, HeightFor(10));
        browser.resize(300, HeightFor(10) - 1);
        QVERIFY(browser.ScrollBar().isVisible());
        QCOMPARE(browser.ScrollBar().maximum(), 1);
        QCOMPARE(browser.ScrollBar().pageStep(), 239);
        browser.resize(300, HeightFor(10));
        QVERIFY(!browser.ScrollBar().isVisible());
    }

    void scrollBarCountsFromTheListTopOfATypeSelector()
    {
        FakeLayer library;
        for (int i = 0; i < 10; ++i)
            library.Add(LibType::gType, "Type");
        ProbedBrowser browser(eConfigTypeSelector);
        ShowLibrary(browser, library.GetAccessor(), 300, gListTop + 200);
        QCOMPARE(browser.ScrollBar().maximum(), 40);
        QCOMPARE(browser.ScrollBar().pageStep(), 200);
    }

    void withoutRowsTheScrollBarIsHiddenAtZero()
    {
        FakeLayer library;
        library.AddNodes(40);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.ScrollBar().setValue(500);
        browser.SearchField().setText(QString::fromLatin1("nothing is called this"));
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
        QVERIFY(!browser.ScrollBar().isVisible());
        QCOMPARE(browser.ScrollBar().value(), 0);
    }

    void hidingLeavesTheRangeAsItWas()
    {
        FakeLayer library;
        library.AddNodes(40);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        const int maximum = browser.ScrollBar().maximum();
        const int pageStep = browser.ScrollBar().pageStep();
        QCOMPARE(maximum, 40 * gRowHeight - (400 - gBrowserTop));
        browser.SearchField().setText(QString::fromLatin1("001"));
        Settle();
        QVERIFY(!browser.ScrollBar().isVisible());
        QCOMPARE(browser.ScrollBar().maximum(), maximum);
        QCOMPARE(browser.ScrollBar().pageStep(), pageStep);
    }

    void aScrollBarThatWasNeverShownKeepsItsFirstRange()
    {
        ProbedBrowser browser;
        ShowBrowser(browser);
        QVERIFY(!browser.ScrollBar().isVisible());
        QCOMPARE(browser.ScrollBar().minimum(), 0);
        QCOMPARE(browser.ScrollBar().maximum(), 99);
        QCOMPARE(browser.ScrollBar().singleStep(), 1);
        QCOMPARE(browser.ScrollBar().pageStep(), 10);
    }

    void fewerRowsClampTheScrollPosition()
    {
        FakeLayer library;
        library.AddNodes(40);
        for (int i = 0; i < 20; ++i)
            library.Add(VireoType::gSolver, "Other");
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.ScrollBar().setValue(browser.ScrollBar().maximum());
        Settle();
        QCOMPARE(browser.ScrollBar().value(), 60 * gRowHeight - (400 - gBrowserTop));
        browser.SearchField().setText(QString::fromLatin1("other"));
        Settle();
        QCOMPARE(browser.ScrollBar().maximum(), 20 * gRowHeight - (400 - gBrowserTop));
        QCOMPARE(browser.ScrollBar().value(), 20 * gRowHeight - (400 - gBrowserTop));
    }

    void aScrollPositionThatStillFitsIsKept()
    {
        FakeLayer library;
        library.AddNodes(60);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.ScrollBar().setValue(100);
        browser.SearchField().setText(QString::fromLatin1("node"));
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(60));
        QCOMPARE(browser.ScrollBar().value(), 100);
    }

    void growingClampsTheScrollPositionAndMovesTheRows()
    {
        FakeLayer library;
        library.AddNodes(20);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor(), 300, HeightFor(10));
        browser.ScrollBar().setValue(240);
        Settle();
        browser.resize(300, HeightFor(15));
        Settle();
        QCOMPARE(browser.ScrollBar().value(), 5 * gRowHeight);
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(100, gBrowserTop + 1));
        QTest::mouseRelease(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(100, gBrowserTop + 1));
        QVERIFY(browser.GetSelection() == library.GetItem(5).m_id);
    }

    void theScrollBarMovesByOnePixelPerStep()
    {
        FakeLayer library;
        library.AddNodes(60);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        UsePlainColours(browser);
        const QImage before = PictureWithoutChildren(browser);
        browser.ScrollBar().triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(browser.ScrollBar().value(), 1);
        const QImage after = PictureWithoutChildren(browser);
        const QRect list(0, gBrowserTop, 300, 399 - gBrowserTop);
        QVERIFY(before != after);
        QVERIFY(before.copy(list.translated(0, 1)) == after.copy(list));
    }

    void rowsMapToTheMouseInPixels_data()
    {
        QTest::addColumn<int>("config");
        QTest::addColumn<int>("scroll");
        QTest::addColumn<int>("y");
        QTest::addColumn<int>("row");
        QTest::newRow("list top") << 0 << 0 << gBrowserTop << -1;
        QTest::newRow("list top + 1") << 0 << 0 << gBrowserTop + 1 << 0;
        QTest::newRow("last line of a row") << 0 << 0 << gBrowserTop + gRowHeight - 1 << 0;
        QTest::newRow("second row") << 0 << 0 << gBrowserTop + gRowHeight << 1;
        QTest::newRow("last line of the second row") << 0 << 0 << gBrowserTop + 2 * gRowHeight - 1 << 1;
        QTest::newRow("third row") << 0 << 0 << gBrowserTop + 2 * gRowHeight << 2;
        QTest::newRow("scrolled by a row less a pixel, list top") << 0 << gRowHeight - 1 << gBrowserTop << -1;
        QTest::newRow("scrolled by a row less a pixel, list top + 1") << 0 << gRowHeight - 1 << gBrowserTop + 1 << 1;
        QTest::newRow("scrolled by 10, list top + 13") << 0 << 10 << 56 << 0;
        QTest::newRow("scrolled by 10, list top + 14") << 0 << 10 << 57 << 1;
        QTest::newRow("type selector, list top") << 1 << 0 << gListTop << -1;
        QTest::newRow("type selector, list top + 1") << 1 << 0 << gListTop + 1 << 0;
        QTest::newRow("type selector, second row") << 1 << 0 << gListTop + gRowHeight << 1;
    }

    void rowsMapToTheMouseInPixels()
    {
        QFETCH(int, config);
        QFETCH(int, scroll);
        QFETCH(int, y);
        QFETCH(int, row);
        FakeLayer library;
        for (int i = 0; i < 40; ++i)
            library.Add(config == 0 ? VireoType::gSolver : LibType::gType,
                        std::string(static_cast<std::size_t>(i), 'a'));
        ProbedBrowser browser(static_cast<eConfigType>(config));
        ShowLibrary(browser, library.GetAccessor());
        browser.ScrollBar().setValue(scroll);
        Settle();
        QTest::mousePress(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(290, y));
        QTest::mouseRelease(&browser, Qt::LeftButton, Qt::NoModifier, QPoint(290, y));
        QCOMPARE(browser.GetSelection().IsValid(), row >= 0);
        if (row >= 0)
            QVERIFY(browser.GetSelection() == library.GetItem(row).m_id);
    }

    void aPointAtTheRightEdgeIsOutsideAndLeftOfTheWidgetIsNot()
    {
        FakeLayer library;
        library.AddNodes(40);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(browser.ScrollBar().isVisible());
        const int xs[] = {300, 299, 281, 0, -5};
        for (int x : xs)
        {
            const QPoint position(x, gBrowserTop + gRowHeight + 6);
            QMouseEvent press(QEvent::MouseButtonPress, position, browser.mapToGlobal(position), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&browser, &press);
            QCOMPARE(browser.GetSelection().IsValid(), x < 300);
            if (x < 300)
                QVERIFY(browser.GetSelection() == library.GetItem(1).m_id);
        }
    }

    void rowsAreOrderedByScoreAndThenByTheList()
    {
        memorymodel::DataLayer layer;
        memorymodel::Library& library = layer.AddLibrary("Nodes");
        const char* const names[] = {"Zoo on", "Onyx", "Aeon", "on", "Unrelated"};
        for (const char* name : names)
            library.Add(NewItem::Solver(name));
        library.Add(NewItem::Solver("Tagged").Tags("decoration"));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        const ItemLibraryAccessor accessor = library.GetAccessor();
        QCOMPARE(browser.RowNames(accessor).join(QString::fromLatin1("|")),
                 QString::fromLatin1("Aeon|on|Onyx|Tagged|Unrelated|Zoo on"));
        browser.SearchField().setText(QString::fromLatin1("on"));
        Settle();
        QCOMPARE(browser.RowNames(accessor).join(QString::fromLatin1("|")),
                 QString::fromLatin1("on|Onyx|Aeon|Zoo on|Tagged"));
    }

    void manyRowsOfOneNameKeepTheOrderOfTheList()
    {
        FakeLayer library;
        for (int i = 0; i < 100; ++i)
            library.Add(VireoType::gSolver, "Same");
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.SearchField().setText(QString::fromLatin1("same"));
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(100));
        for (int i = 0; i < 100; ++i)
            QVERIFY(browser.GetRowItem(static_cast<std::size_t>(i)).GetItemID() == library.GetItem(i).m_id);
    }

    void aResizeNeverRebuilds()
    {
        FakeLayer library;
        library.AddNodes(100);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.SearchField().setText(QString::fromLatin1("node"));
        Settle();
        library.Forget();
        for (int step = 1; step <= 10; ++step)
        {
            browser.resize(300 + step, 400 - step);
            Settle();
        }
        QCOMPARE(library.Count("iterate"), 0);
        // Filtering again would ask for the names of all rows.
        QVERIFY(library.Count("name", library.GetItem(0).m_id) > 0);
        QCOMPARE(library.Count("name", library.GetItem(50).m_id), 0);
        QCOMPARE(library.Count("name", library.GetItem(99).m_id), 0);
    }

    void aResizeUsesTheRowsOfTheLastPaint()
    {
        memorymodel::DataLayer layer;
        memorymodel::Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Solver("First"));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        for (int i = 0; i < 40; ++i)
            library.Add(NewItem::Solver("More"));
        QResizeEvent resize(browser.size(), browser.size());
        QCoreApplication::sendEvent(&browser, &resize);
        QVERIFY(!browser.ScrollBar().isVisible());
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
        Settle();
        QVERIFY(browser.ScrollBar().isVisible());
        QCOMPARE(browser.GetRowCount(), std::size_t(41));
    }

    void anInvalidLibraryLeavesAShownScrollBarAsItWas()
    {
        FakeLayer library;
        library.AddNodes(40);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.ScrollBar().setValue(100);
        Settle();
        const int maximum = browser.ScrollBar().maximum();
        const int paints = CountPaints(browser, [&browser] { browser.SetItemLibrary(ItemLibraryAccessor()); });
        QCOMPARE(paints, 0);
        QCOMPARE(browser.GetRowCount(), std::size_t(40));
        browser.update();
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(0));
        QVERIFY(browser.ScrollBar().isVisible());
        QCOMPARE(browser.ScrollBar().maximum(), maximum);
        QCOMPARE(browser.ScrollBar().value(), 100);
    }

    void theNewRowsWaitForThePaint()
    {
        FakeLayer library;
        library.AddNodes(40);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.SearchField().setText(QString::fromLatin1("003"));
        QCOMPARE(browser.GetRowCount(), std::size_t(40));
        browser.repaint();
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
    }

private:
    QString m_style;
    QFont m_font;
};

NODEBROWSER_TEST_MAIN(TestLayout)
#include "test_layout.moc"
