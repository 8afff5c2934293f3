// SPDX-License-Identifier: MIT
#include "qtcompat/qtcompat.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/nodebrowser/support/pictures.h"
#include "tests/nodebrowser/support/plaindisplay.h"
#include "tests/support/testmain.h"

#include <cstring>
#include <memory>

using memorymodel::NewItem;
using vireo::datamodel::ItemID;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace
{

const int gWidth = 300;
const int gHeight = 400;
const int gTop = gBrowserTop;

QPixmap Icon(const char* in_name)
{
    return QPixmap(QString::fromLatin1(in_name));
}

/// A browser in plain colours, and its picture while it shows nothing.
class PlainBrowser : public ProbedBrowser
{
public:
    explicit PlainBrowser(eConfigType in_config = eConfigNodeBrowser) : ProbedBrowser(in_config)
    {
        UsePlainColours(*this);
        ShowBrowser(*this, gWidth, gHeight);
        m_empty = PictureWithoutChildren(*this);
    }

    void Show(const vireo::datamodel::ItemLibraryAccessor& in_library)
    {
        SetItemLibrary(in_library);
        Settle();
    }

    void Press(int in_row) { PressAt(RowCentre(in_row)); }

    void PressAt(const QPoint& in_position)
    {
        QTest::mousePress(this, Qt::LeftButton, Qt::NoModifier, in_position);
        QTest::mouseRelease(this, Qt::LeftButton, Qt::NoModifier, in_position);
    }

    /// What the empty list looks like with one name in it, drawn in a row that starts at a height.
    QImage Expect(const QString& in_name, int in_rowTop) const
    {
        QImage expected = m_empty;
        QPainter painter(&expected);
        painter.setFont(font());
        painter.setPen(Qt::black);
        painter.drawText(QRect(QPoint(35, in_rowTop), QPoint(gWidth, in_rowTop + gRowHeight)),
                         Qt::AlignLeft | Qt::AlignVCenter, in_name);
        return expected;
    }

    QImage m_empty;
};

/// Draws an icon on a picture, as seen on it.
QImage WithIcon(QImage in_picture, const QPixmap& in_icon, int in_x, int in_y)
{
    QPainter painter(&in_picture);
    painter.drawPixmap(in_x, in_y, in_icon);
    return in_picture;
}

/// A browser of items without an icon, so that a row shows its name alone.
struct IconlessRows
{
    explicit IconlessRows(const std::string& in_name, int in_count = 1)
    {
        for (int i = 0; i < in_count; ++i)
            m_library.AddAs(VireoType::gCompound, gOtherCompound, in_name);
        m_browser.TabBar()->setCurrentIndex(2);
        m_browser.Show(m_library.GetAccessor());
    }

    FakeLayer m_library;
    PlainBrowser m_browser;
};

} // namespace

class TestPainting : public QObject
{
    Q_OBJECT

public:
    // One data layer and one factory source for all tests: the browser looks the factory objects up once per process.
    TestPainting()
        : m_factory(m_layer.AddLibrary("Factory")),
          m_factorySource(m_factory.AddDataSource("Factory", memorymodel::eFactorySource))
    {
    }

private Q_SLOTS:
    void anEmptyBrowserDrawsNothing()
    {
        FakeLayer library;
        PlainBrowser browser;
        const QColor ground = browser.palette().color(QPalette::Window);
        QCOMPARE(CountPixels(browser.m_empty, browser.m_empty.rect(), ground.rgb()), gWidth * gHeight);
        browser.Show(library.GetAccessor());
        QVERIFY(PictureWithoutChildren(browser) == browser.m_empty);
    }

    void aRowIsItsIconAndItsName()
    {
        FakeLayer library;
        library.Add(VireoType::gSolver, "Mix");
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        const QImage expected =
            WithIcon(browser.Expect(QString::fromLatin1("Mix"), gTop), Icon(":solver.png"), 9, gTop + 2);
        QCOMPARE(Difference(PictureWithoutChildren(browser), expected), QRect());
    }

    void rowsFollowEachOtherEvery24Pixels()
    {
        FakeLayer library;
        library.Add(VireoType::gSolver, "Same");
        library.Add(VireoType::gSolver, "Same");
        library.Add(VireoType::gSolver, "Same");
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        const QImage picture = PictureWithoutChildren(browser);
        const QImage first = picture.copy(0, gTop, gWidth, gRowHeight);
        QVERIFY(first != browser.m_empty.copy(0, gTop, gWidth, gRowHeight));
        QVERIFY(picture.copy(0, gTop + gRowHeight, gWidth, gRowHeight) == first);
        QVERIFY(picture.copy(0, gTop + 2 * gRowHeight, gWidth, gRowHeight) == first);
        QVERIFY(picture.copy(0, gTop + 3 * gRowHeight, gWidth, gRowHeight) ==
                browser.m_empty.copy(0, gTop + 3 * gRowHeight, gWidth, gRowHeight));
    }

    void theFirstRowOfATypeSelectorStartsAt23()
    {
        FakeLayer library;
        library.Add(LibType::gType, "Colour");
        PlainBrowser browser(eConfigTypeSelector);
        browser.Show(library.GetAccessor());
        const QImage expected =
            WithIcon(browser.Expect(QString::fromLatin1("Colour"), gListTop), Icon(":type.png"), 9, gListTop + 2);
        QCOMPARE(Difference(PictureWithoutChildren(browser), expected), QRect());
    }

    void theIconOfEachTypeStandsAt9_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("icon");
        QTest::newRow("polymorphic solver") << 0 << QByteArray(":solver.png");
        QTest::newRow("compound") << 1 << QByteArray(":compound.png");
        QTest::newRow("global constant") << 2 << QByteArray(":constant.png");
        QTest::newRow("solver") << 3 << QByteArray(":solver.png");
        QTest::newRow("type") << 4 << QByteArray(":type.png");
    }

    void theIconOfEachTypeStandsAt9()
    {
        QFETCH(int, type);
        QFETCH(QByteArray, icon);
        const char* const types[] = {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                                     VireoType::gSolver, LibType::gType};
        FakeLayer library;
        library.Add(types[type], "");
        PlainBrowser browser;
        browser.TabBar()->setCurrentIndex(2);
        browser.Show(library.GetAccessor());
        QVERIFY(!Icon(icon.constData()).isNull());
        const QImage expected = WithIcon(browser.m_empty, Icon(icon.constData()), 9, gTop + 2);
        QVERIFY(expected != browser.m_empty);
        QCOMPARE(Difference(PictureWithoutChildren(browser), expected), QRect());
    }

    void anItemWithoutAnIconStillHasItsNameAt35()
    {
        IconlessRows rows("Mix");
        QCOMPARE(rows.m_browser.GetRowCount(), std::size_t(1));
        const QImage picture = PictureWithoutChildren(rows.m_browser);
        QCOMPARE(Difference(picture, rows.m_browser.Expect(QString::fromLatin1("Mix"), gTop)), QRect());
        QCOMPARE(Difference(picture, rows.m_browser.m_empty, QRect(0, 0, 35, gHeight)), QRect());
    }

    void theNameBeginsAt35AndStandsInTheMiddleOfTheRow()
    {
        IconlessRows rows("HHH");
        const QRect ink = Difference(PictureWithoutChildren(rows.m_browser), rows.m_browser.m_empty);
        QVERIFY2(ink.left() >= 35 && ink.left() <= 38, qPrintable(QString::number(ink.left())));
        // Capitals stand a little above the middle of a line of text.
        QVERIFY2(ink.top() > gTop && ink.bottom() < gTop + gRowHeight, qPrintable(QString::number(ink.top())));
        QVERIFY2(qAbs(ink.center().y() - (gTop + gRowHeight / 2)) <= 3, qPrintable(QString::number(ink.center().y())));
    }

    void aDirtyItemHasAStarAfterItsName()
    {
        IconlessRows rows("Mix");
        rows.m_library.GetItem(0).m_dirty = true;
        const QImage dirty = PictureWithoutChildren(rows.m_browser);
        QCOMPARE(Difference(dirty, rows.m_browser.Expect(QString::fromLatin1("Mix*"), gTop)), QRect());
        rows.m_library.GetItem(0).m_dirty = false;
        const QImage clean = PictureWithoutChildren(rows.m_browser);
        QCOMPARE(Difference(clean, rows.m_browser.Expect(QString::fromLatin1("Mix"), gTop)), QRect());
        QVERIFY(dirty != clean);
    }

    void aChangedItemOfALibraryIsMarkedAndACommittedOneIsNot()
    {
        memorymodel::Library& library = m_layer.AddLibrary("Dirty");
        const ItemID item = library.Add(NewItem::Solver("Mix"));
        {
            PlainBrowser browser;
            browser.Show(library.GetAccessor());
            const QImage clean = PictureWithoutChildren(browser);
            QVERIFY(library.SetTags(item, "changed"));
            QVERIFY(library.GetAccessor().ItemIsDirty(item));
            const QImage dirty = PictureWithoutChildren(browser);
            const QImage expected =
                WithIcon(browser.Expect(QString::fromLatin1("Mix*"), gTop), Icon(":solver.png"), 9, gTop + 2);
            QCOMPARE(Difference(dirty, expected), QRect());
            QVERIFY(clean != dirty);
        }
        m_layer.RemoveLibrary(library);
    }

    void theBandIsOnePixelTallerThanTheRowAndAsWideAsTheWidget_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("first") << 0;
        QTest::newRow("in between") << 3;
        QTest::newRow("last") << 9;
    }

    void theBandIsOnePixelTallerThanTheRowAndAsWideAsTheWidget()
    {
        QFETCH(int, row);
        IconlessRows rows("", 10);
        rows.m_browser.Press(row);
        const QImage picture = PictureWithoutChildren(rows.m_browser);
        const QRect band(0, gTop + gRowHeight * row, gWidth, gRowHeight + 1);
        QCOMPARE(Difference(picture, rows.m_browser.m_empty), band);
        QCOMPARE(CountPixels(picture, picture.rect(), BandColour(rows.m_browser).rgb()), gWidth * 25);
    }

    void theBandHasTheColourOfTheStyleAndNotOfTheWidget()
    {
        FakeLayer library;
        library.AddNodes(3);
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        browser.Press(1);
        QVERIFY(BandColour(browser) != browser.palette().color(QPalette::Active, QPalette::Highlight));
        const QImage picture = PictureWithoutChildren(browser);
        QVERIFY(CountPixels(picture, picture.rect(), BandColour(browser).rgb()) > gWidth * 10);
        QCOMPARE(CountPixels(picture, picture.rect(), browser.palette().color(QPalette::Highlight).rgb()), 0);
    }

    void theBandKeepsItsActiveColourInADisabledBrowser()
    {
        IconlessRows rows("");
        rows.m_browser.Press(0);
        rows.m_browser.setEnabled(false);
        const QImage picture = PictureWithoutChildren(rows.m_browser);
        QCOMPARE(CountPixels(picture, QRect(0, gTop, gWidth, 25), BandColour(rows.m_browser).rgb()), gWidth * 25);
    }

    void iconAndNameLieOnTheBand()
    {
        FakeLayer library;
        library.Add(VireoType::gSolver, "Mix");
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        browser.Press(0);
        QImage expected = browser.m_empty;
        {
            QPainter painter(&expected);
            painter.setFont(browser.font());
            painter.fillRect(QRect(0, gTop, gWidth, 25), BandColour(browser));
            painter.drawPixmap(9, gTop + 2, Icon(":solver.png"));
            painter.setPen(Qt::black);
            painter.drawText(QRect(QPoint(35, gTop), QPoint(gWidth, gTop + gRowHeight)),
                             Qt::AlignLeft | Qt::AlignVCenter, QString::fromLatin1("Mix"));
        }
        QCOMPARE(Difference(PictureWithoutChildren(browser), expected), QRect());
    }

    void theNextRowIsDrawnOverTheLastLineOfTheBand()
    {
        FakeLayer library;
        library.Add(VireoType::gSolver, "Mix");
        library.Add(VireoType::gSolver, "Mix");
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        browser.Press(0);
        const QImage picture = PictureWithoutChildren(browser);
        QCOMPARE(CountPixels(picture, QRect(0, gTop + gRowHeight, gWidth, 1), BandColour(browser).rgb()), gWidth);
        QCOMPARE(
            CountPixels(picture, QRect(0, gTop + gRowHeight + 1, gWidth, gRowHeight - 1), BandColour(browser).rgb()),
            0);
        const QRect area(9, gTop + gRowHeight + 2, 20, 20);
        QCOMPARE(Difference(picture, WithIcon(browser.m_empty, Icon(":solver.png"), 9, gTop + 26), area), QRect());
    }

    void theNameOfTheSelectedRowKeepsTheDefaultPen()
    {
        IconlessRows rows("HHH");
        QFont font = rows.m_browser.font();
        font.setPixelSize(18);
        font.setBold(true);
        rows.m_browser.setFont(font);
        rows.m_browser.Press(0);
        const QImage picture = PictureWithoutChildren(rows.m_browser);
        QVERIFY(CountPixels(picture, picture.rect(), BandColour(rows.m_browser).rgb()) > gWidth * 10);
        QVERIFY(CountPixels(picture, picture.rect(), QColor(Qt::black).rgb()) > 20);
        const QColor highlighted = rows.m_browser.palette().color(QPalette::HighlightedText);
        QCOMPARE(CountPixels(picture, picture.rect(), highlighted.rgb()), 0);
        const QColor standard =
            rows.m_browser.style()->standardPalette().color(QPalette::Active, QPalette::HighlightedText);
        QCOMPARE(CountPixels(picture, picture.rect(), standard.rgb()), 0);
    }

    void nothingIsDrawnOverTheHeader()
    {
        FakeLayer library;
        library.AddNodes(40);
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        browser.ScrollBar().setValue(gRowHeight / 2);
        Settle();
        browser.PressAt(QPoint(100, gTop + 6));
        QVERIFY(browser.GetSelection() == library.GetItem(0).m_id);
        const QImage picture = PictureWithoutChildren(browser);
        const QRgb band = BandColour(browser).rgb();
        QCOMPARE(Difference(picture, browser.m_empty, QRect(0, 0, gWidth, gTop)), QRect());
        // The lower half of the first row, and the line that its band has more than the row.
        QCOMPARE(picture.pixel(2, gTop), band);
        QCOMPARE(picture.pixel(2, gTop + gRowHeight / 2), band);
        QVERIFY(picture.pixel(2, gTop + 13) != band);
        const QRect icon(9, gTop, 20, 10);
        QImage expected = browser.m_empty;
        QPainter(&expected).fillRect(QRect(0, gTop - gRowHeight / 2, gWidth, gRowHeight + 1), BandColour(browser));
        QCOMPARE(Difference(picture, WithIcon(expected, Icon(":solver.png"), 9, gTop - gRowHeight / 2 + 2), icon),
                 QRect());
    }

    void theScreenShowsTheHeaderUntouchedByScrolledRows()
    {
        FakeLayer library;
        library.AddNodes(40);
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        const QRect header(0, 0, gWidth, gTop);
        const QImage before = Picture(browser).copy(header);
        browser.ScrollBar().setValue(gRowHeight / 2);
        Settle();
        browser.PressAt(QPoint(100, gTop + 6));
        QVERIFY(browser.GetSelection() == library.GetItem(0).m_id);
        QVERIFY(Picture(browser).copy(header) == before);
    }

    void theRowThatStartsOnePixelAboveTheBottomEdgeIsDrawn()
    {
        IconlessRows rows("", 40);
        rows.m_browser.resize(gWidth, gTop + 5 * gRowHeight + 1);
        Settle();
        const QPoint lastLine(100, gTop + 5 * gRowHeight);
        rows.m_browser.PressAt(lastLine);
        QVERIFY(rows.m_browser.GetSelection() == rows.m_library.GetItem(5).m_id);
        const QImage picture = PictureWithoutChildren(rows.m_browser);
        QCOMPARE(CountPixels(picture, picture.rect(), BandColour(rows.m_browser).rgb()), gWidth);
        QCOMPARE(picture.pixel(lastLine), BandColour(rows.m_browser).rgb());
    }

    void onlyRowsInSightAskTheLibrary_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("scroll");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::newRow("unscrolled, whole rows") << gTop + 5 * gRowHeight << 0 << 0 << 4;
        QTest::newRow("a row starts one pixel above the bottom edge") << gTop + 5 * gRowHeight + 1 << 0 << 0 << 5;
        QTest::newRow("a row ends one pixel below the list top") << gTop + 5 * gRowHeight << gRowHeight - 1 << 0 << 5;
        QTest::newRow("a row ends at the list top") << gTop + 5 * gRowHeight << gRowHeight << 1 << 5;
        QTest::newRow("a row ends one pixel above the list top") << gTop + 5 * gRowHeight << gRowHeight + 1 << 1 << 6;
        QTest::newRow("at the end") << gTop + 5 * gRowHeight << 35 * gRowHeight << 35 << 39;
    }

    void onlyRowsInSightAskTheLibrary()
    {
        QFETCH(int, height);
        QFETCH(int, scroll);
        QFETCH(int, first);
        QFETCH(int, last);
        FakeLayer library;
        library.AddNodes(40);
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        browser.resize(gWidth, height);
        browser.ScrollBar().setValue(scroll);
        Settle();
        QCOMPARE(browser.ScrollBar().value(), scroll);
        library.Forget();
        browser.repaint();
        QCOMPARE(library.Count("iterate"), 0);
        for (int i = 0; i < 40; ++i)
        {
            const int asked = i >= first && i <= last ? 1 : 0;
            QCOMPARE(library.Count("name", library.GetItem(i).m_id), asked);
            QCOMPARE(library.Count("dirty", library.GetItem(i).m_id), asked);
        }
    }

    void aLongNameIsCutAtTheRightEdgeAndNotElided()
    {
        const QString longName(200, QLatin1Char('W'));
        IconlessRows rows(std::string(200, 'W'), 40);
        QVERIFY(rows.m_browser.ScrollBar().isVisible());
        const QImage picture = PictureWithoutChildren(rows.m_browser);
        const QRect row(0, gTop, gWidth, gRowHeight);
        QCOMPARE(Difference(picture, rows.m_browser.Expect(longName, gTop), row), QRect());
        // Below the scroll bar too, up to the last letter that begins left of the edge.
        QVERIFY(
            Difference(picture, rows.m_browser.m_empty, QRect(gWidth - gHeaderHeight, gTop, gHeaderHeight, gRowHeight))
                .isValid());
    }

    void theScrollBarCoversTheRightEndOfTheRows()
    {
        FakeLayer library;
        library.AddNodes(40);
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        const QRect bar(gWidth - gHeaderHeight, gTop, gHeaderHeight, gHeight - gTop);
        const QImage before = Picture(browser);
        browser.Press(2);
        const QImage after = Picture(browser);
        QCOMPARE(Difference(before, after, bar), QRect());
        QVERIFY(Difference(before, after).isValid());
        const QImage below = PictureWithoutChildren(browser);
        QCOMPARE(below.pixel(gWidth - 1, gTop + 60), BandColour(browser).rgb());
    }

    void everyRowInSightIsPaintedWhateverPartWasAskedFor()
    {
        FakeLayer library;
        library.AddNodes(40);
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        library.Forget();
        browser.repaint(QRect(0, gTop, 10, 10));
        QCOMPARE(library.Count("name", library.GetItem(0).m_id), 1);
        QCOMPARE(library.Count("name", library.GetItem(14).m_id), 1);
        QCOMPARE(library.Count("name", library.GetItem(15).m_id), 0);
    }

    void bytesAbove127AreLatin1Letters()
    {
        IconlessRows rows("Gr\xF6\xDF"
                          "e \xE9");
        QString name = QString::fromLatin1("Gr");
        name += QChar(0xF6);
        name += QChar(0xDF);
        name += QString::fromLatin1("e ");
        name += QChar(0xE9);
        QCOMPARE(Difference(PictureWithoutChildren(rows.m_browser), rows.m_browser.Expect(name, gTop)), QRect());
    }

    void anAmpersandIsALetterLikeAnyOther()
    {
        FakeLayer library;
        library.AddAs(VireoType::gCompound, gOtherCompound, "A&B");
        library.AddAs(VireoType::gCompound, gOtherCompound, "AB");
        PlainBrowser browser;
        browser.TabBar()->setCurrentIndex(2);
        browser.Show(library.GetAccessor());
        const QImage picture = PictureWithoutChildren(browser);
        const int withIt = Difference(picture, browser.m_empty, QRect(0, gTop, gWidth, gRowHeight)).right();
        const int withoutIt =
            Difference(picture, browser.m_empty, QRect(0, gTop + gRowHeight, gWidth, gRowHeight)).right();
        QVERIFY(withIt > withoutIt + 4);
    }

    void aFactoryItemStandsAt2WhetherOrNotSourceControlIsOn()
    {
        const PlainDisplay display;
        const ItemID item = m_factory.Add(NewItem::Compound("").In(m_factorySource));
        {
            PlainBrowser browser;
            browser.Show(m_factory.GetAccessor());
            QCOMPARE(browser.GetRowCount(), std::size_t(1));
            const QPixmap mark = Icon(":./res/projectbrowser/PB_Factory.png");
            QCOMPARE(mark.width(), 7);
            QImage expected = WithIcon(browser.m_empty, Icon(":compound.png"), 9, gTop + 2);
            expected = WithIcon(expected, mark, 2, gTop + 2 + 20 - mark.height());
            QCOMPARE(Difference(PictureWithoutChildren(browser), expected), QRect());
            m_layer.GetSourceControl().SetEnabled(true);
            Settle();
            QCOMPARE(Difference(PictureWithoutChildren(browser), expected), QRect());
        }
        m_layer.GetSourceControl().SetEnabled(false);
        m_factory.Remove(item);
    }

    void aBuiltInItemStandsAt2()
    {
        memorymodel::Library& library = m_layer.AddLibrary("Built in");
        library.Add(NewItem::Solver("").BuiltIn());
        {
            PlainBrowser browser;
            browser.Show(library.GetAccessor());
            const QPixmap mark = Icon(":./res/projectbrowser/PB_Factory.png");
            QImage expected = WithIcon(browser.m_empty, Icon(":solver.png"), 9, gTop + 2);
            expected = WithIcon(expected, mark, 2, gTop + 2 + 20 - mark.height());
            QCOMPARE(Difference(PictureWithoutChildren(browser), expected), QRect());
        }
        m_layer.RemoveLibrary(library);
    }

    void aSourceControlledItemMovesFrom9To2WhenSourceControlIsSwitchedOn()
    {
        const PlainDisplay display;
        memorymodel::Library& library = m_layer.AddLibrary("Controlled");
        library.Add(NewItem::Compound(""));
        library.Add(NewItem::Solver(""));
        {
            PlainBrowser browser;
            browser.Show(library.GetAccessor());
            // Without names the compound, which is listed first, stays first.
            const QImage off = WithIcon(WithIcon(browser.m_empty, Icon(":compound.png"), 9, gTop + 2),
                                        Icon(":solver.png"), 9, gTop + 26);
            QCOMPARE(Difference(PictureWithoutChildren(browser), off), QRect());
            m_layer.GetSourceControl().SetEnabled(true);
            Settle();
            const QImage on = WithIcon(WithIcon(browser.m_empty, Icon(":compound.png"), 2, gTop + 2),
                                       Icon(":solver.png"), 9, gTop + 26);
            QCOMPARE(Difference(PictureWithoutChildren(browser), on), QRect());
        }
        m_layer.GetSourceControl().SetEnabled(false);
        m_layer.RemoveLibrary(library);
    }

    void aCompoundOfAReadOnlySourceStaysAt9()
    {
        const PlainDisplay display;
        memorymodel::Library& library = m_layer.AddLibrary("Closed");
        library.AddDataSource("Closed", memorymodel::eReadOnlySource);
        library.Add(NewItem::Compound(""));
        m_layer.GetSourceControl().SetEnabled(true);
        {
            PlainBrowser browser;
            browser.Show(library.GetAccessor());
            const QImage expected = WithIcon(browser.m_empty, Icon(":compound.png"), 9, gTop + 2);
            QCOMPARE(Difference(PictureWithoutChildren(browser), expected), QRect());
        }
        m_layer.GetSourceControl().SetEnabled(false);
        m_layer.RemoveLibrary(library);
    }

    void attachingBuildsTheListAtOnceAndOnceMoreWithTheNextPaint()
    {
        FakeLayer library;
        library.AddNodes(5);
        PlainBrowser browser;
        browser.Show(library.GetAccessor());
        library.Forget();
        browser.SetItemLibrary(library.GetAccessor());
        QCOMPARE(library.Count("iterate"), 5);
        Settle();
        QCOMPARE(library.Count("iterate"), 10);
        browser.update();
        Settle();
        QCOMPARE(library.Count("iterate"), 10);
    }

private:
    memorymodel::DataLayer m_layer;
    memorymodel::Library& m_factory;
    memorymodel::DataSource& m_factorySource;
};

NODEBROWSER_TEST_MAIN(TestPainting)
#include "test_painting.moc"
