// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/nodebrowser/support/pictures.h"
#include "tests/support/testmain.h"

#include <QPicture>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;
using vireo::datamodel::VireoType;

namespace
{

/// A type name without an icon, so that a row shows its name alone.
const char gNoIcon[] = "Nothing";

std::string Repeat(const std::string& in_text, std::size_t in_length)
{
    std::string text;
    text.reserve(in_length + in_text.size());
    while (text.size() < in_length)
        text += in_text;
    return text;
}

} // namespace

/// Names that no sane data layer gives out. Nothing may crash, hang, or be drawn beside the row.
class TestLongNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anyNameIsDrawnWithinItsRow_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("visible");
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("blank") << QByteArray("   ") << false;
        QTest::newRow("newlines") << QByteArray("first\nsecond\nthird\nfourth") << true;
        QTest::newRow("carriage returns") << QByteArray("first\r\nsecond\r\nthird") << true;
        QTest::newRow("hundreds of lines") << QByteArray("line\n").repeated(500) << true;
        QTest::newRow("form feeds and vertical tabs") << QByteArray("first\fsecond\vthird") << true;
        QTest::newRow("tabs") << QByteArray("a\tb\tc\td\te\tf\tg") << true;
        QTest::newRow("bytes of 0") << QByteArray("be\0fore", 7) << true;
        QTest::newRow("bell, escape, delete") << QByteArray("\x07\x1B[31m\x7F name") << true;
        QTest::newRow("bytes above 127") << QByteArray("\xC3\xA9\xFF\xA0\xAD\x80\x9F name") << true;
        QTest::newRow("markup") << QByteArray("<b>bold</b> &amp; <img src=x>") << true;
        QTest::newRow("mnemonic") << QByteArray("&File && more") << true;
        QTest::newRow("percent signs") << QByteArray("%1 %s %n %2") << true;
        QTest::newRow("a thousand characters") << QByteArray(1000, 'W') << true;
    }

    void anyNameIsDrawnWithinItsRow()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, visible);
        FakeLayer library;
        for (int i = 0; i < 3; ++i)
            library.AddAs(VireoType::gCompound, gNoIcon, "");
        library.GetItem(1).m_name = std::string(name.constData(), static_cast<std::size_t>(name.size()));
        ProbedBrowser browser;
        browser.TabBar()->setCurrentIndex(2);
        UsePlainColours(browser);
        ShowBrowser(browser);
        const QImage empty = PictureWithoutChildren(browser);
        browser.SetItemLibrary(library.GetAccessor());
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(3));
        int row = 0;
        while (browser.GetRowItem(static_cast<std::size_t>(row)).GetItemID() != library.GetItem(1).m_id)
            ++row;
        // The rectangle that names are drawn in reaches one line into the next row.
        const QRect place(35, gBrowserTop + gRowHeight * row, 300 - 35, gRowHeight + 1);
        const QRect ink = Difference(PictureWithoutChildren(browser), empty);
        QCOMPARE(ink.isValid(), visible);
        QVERIFY2(!ink.isValid() || place.contains(ink), qPrintable(QString::number(ink.bottom())));
    }

    void whatAPaintDrawsDoesNotGrowWithTheLengthOfNames_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("letters") << QByteArray("W");
        QTest::newRow("words") << QByteArray("word ");
        QTest::newRow("lines") << QByteArray("line\n");
        QTest::newRow("tabs") << QByteArray("\t");
        QTest::newRow("control characters") << QByteArray("\x01\x02\x1F\x7F");
        QTest::newRow("bytes above 127") << QByteArray("\xE9\xFF\xAD");
        QTest::newRow("bytes of 0") << QByteArray(1, '\0');
    }

    void whatAPaintDrawsDoesNotGrowWithTheLengthOfNames()
    {
        QFETCH(QByteArray, text);
        const std::string part(text.constData(), static_cast<std::size_t>(text.size()));
        const uint tenThousand = MeasurePaint(Repeat(part, 10000));
        QVERIFY(tenThousand > 0);
        QCOMPARE(MeasurePaint(Repeat(part, 1000000)), tenThousand);
    }

    void aMillionCharactersAreSortedSearchedAndSelectedLikeAnyOthers()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID last = library.Add(NewItem::Solver(Repeat("b", 1000000) + "needle"));
        const ItemID first = library.Add(NewItem::Solver(Repeat("a", 1000000)));
        const ItemID middle = library.Add(NewItem::Solver(Repeat("B", 1000000) + "NEEDLD"));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(3));
        QVERIFY(browser.GetRowItem(0).GetItemID() == first);
        QVERIFY(browser.GetRowItem(1).GetItemID() == middle);
        QVERIFY(browser.GetRowItem(2).GetItemID() == last);
        browser.SearchField().setText(QString::fromLatin1("NEEDLE"));
        Settle();
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
        QTest::mouseClick(&browser, Qt::LeftButton, Qt::NoModifier, browser.RowCentre(0));
        QVERIFY(browser.GetSelection() == last);
    }

    void emptyNamesAreRowsLikeAnyOthers()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Solver("a"));
        const ItemID unnamed = library.Add(NewItem::Solver(""));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(2));
        QTest::mouseClick(&browser, Qt::LeftButton, Qt::NoModifier, browser.RowCentre(0));
        QVERIFY(browser.GetSelection() == unnamed);
    }

private:
    /// How much a list that is full of one name draws: the bytes of a recording of its paint.
    static uint MeasurePaint(const std::string& in_name)
    {
        FakeLayer library;
        for (int i = 0; i < 20; ++i)
            library.Add(VireoType::gSolver, in_name);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QPicture recording;
        browser.render(&recording, QPoint(), QRegion(), QWidget::RenderFlags());
        return recording.size();
    }
};

NODEBROWSER_TEST_MAIN(TestLongNames)
#include "test_longnames.moc"
