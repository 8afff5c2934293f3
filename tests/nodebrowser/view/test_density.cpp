// SPDX-License-Identifier: MIT
#include "datamodel/sourcecontrol.h"
#include "nodebrowser/stateicon.h"
#include "qtcompat/qtcompat.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/pictures.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/testmain.h"

#include <QDir>

#include <algorithm>
#include <cmath>
#include <vector>

using memorymodel::NewItem;
using nodebrowser::ComposeStateIcon;
using nodebrowser::eItemKind;
using nodebrowser::gFactoryMarkWidth;
using nodebrowser::IconMarks;
using nodebrowser::TypeIcon;
using vireo::datamodel::ItemID;

namespace
{

const int gWidth = 300;
const int gHeight = 290; // ten rows, and a part of the eleventh
const int gIconSide = 20;
const int gIconLeft = 9;
const int gIconInset = 2;
const int gIconRoom = 32; // what is left of it has no part of a name

/// The least contrast of a line that one has to see, as the accessibility guidelines for web content have it.
const double gLeastContrast = 3.0;

struct KindOfIcon
{
    eItemKind m_kind;
    const char* m_name;
};

const KindOfIcon gKinds[] = {{nodebrowser::eKindSolver, "solver"},
                             {nodebrowser::eKindCompound, "compound"},
                             {nodebrowser::eKindSignature, "signature"},
                             {nodebrowser::eKindConstant, "constant"},
                             {nodebrowser::eKindType, "type"}};

std::vector<double> Ratios()
{
    if (testcompat::HasPixelRatios())
        return {1.0, 1.5, 2.0, 3.0};
    return {1.0};
}

/// More ratios of screens, where rounding matters most.
const double gOddRatios[] = {1.25, 1.75, 2.25};

/// The colours of a desktop. The toolkit's own light ones, and dark ones as usual elsewhere.
QPalette MakePalette(bool in_dark)
{
    QPalette palette(QColor(239, 239, 239));
    if (in_dark)
    {
        palette = QPalette(QColor(69, 69, 69), QColor(53, 53, 53));
        palette.setColor(QPalette::Base, QColor(42, 42, 42));
    }
    return palette;
}

double Linear(int in_channel)
{
    const double value = in_channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Luminance(QRgb in_colour)
{
    return 0.2126 * Linear(qRed(in_colour)) + 0.7152 * Linear(qGreen(in_colour)) + 0.0722 * Linear(qBlue(in_colour));
}

/// From 1 for equal colours to 21 for black on white.
double Contrast(QRgb in_one, QRgb in_other)
{
    const double one = Luminance(in_one) + 0.05;
    const double other = Luminance(in_other) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

QImage Pixels(const QPixmap& in_picture)
{
    QImage image = in_picture.toImage().convertToFormat(QImage::Format_ARGB32);
    testcompat::SetPixelRatio(image, 1.0);
    return image;
}

bool IsOpaque(const QImage& in_icon, int in_x, int in_y)
{
    return in_icon.rect().contains(in_x, in_y) && qAlpha(in_icon.pixel(in_x, in_y)) == 255;
}

/// The colours of the opaque pixels that have a side at the ground, which is what one sees as the outline.
std::vector<QRgb> OutlineOf(const QImage& in_icon)
{
    std::vector<QRgb> outline;
    for (int y = 0; y < in_icon.height(); ++y)
        for (int x = 0; x < in_icon.width(); ++x)
            if (IsOpaque(in_icon, x, y) && !(IsOpaque(in_icon, x - 1, y) && IsOpaque(in_icon, x + 1, y) &&
                                             IsOpaque(in_icon, x, y - 1) && IsOpaque(in_icon, x, y + 1)))
                outline.push_back(in_icon.pixel(x, y));
    return outline;
}

/// The contrast that three quarters of an outline have on a ground, at least. The others are corners and slopes, where
/// the outline shares a pixel with what it surrounds.
double OutlineContrast(const QImage& in_icon, QRgb in_ground)
{
    std::vector<double> contrasts;
    for (const QRgb colour : OutlineOf(in_icon))
        contrasts.push_back(Contrast(colour, in_ground));
    std::sort(contrasts.begin(), contrasts.end());
    return contrasts.size() > 8 ? contrasts[contrasts.size() / 4] : 0.0;
}

/// How much neighbours differ: the squares of the differences, so that one step counts more than many small ones.
double Sharpness(const QImage& in_icon)
{
    QImage image(in_icon.size(), QImage::Format_RGB32);
    image.fill(qRgb(255, 255, 255));
    QPainter(&image).drawImage(0, 0, in_icon);
    double sum = 0;
    for (int y = 1; y < image.height(); ++y)
        for (int x = 1; x < image.width(); ++x)
            for (const QRgb neighbour : {image.pixel(x - 1, y), image.pixel(x, y - 1)})
                sum += std::pow(qGray(image.pixel(x, y)) - qGray(neighbour), 2);
    return sum;
}

/// What a row shows in front of its name.
struct RowIcon
{
    eItemKind m_kind = nodebrowser::eKindOther;
    IconMarks m_marks;
    bool m_marked = false; ///< the pixmap begins with a column for a mark or a badge
};

QPixmap Compose(const RowIcon& in_icon, double in_ratio)
{
    return ComposeStateIcon(TypeIcon(in_icon.m_kind, in_ratio), in_icon.m_marks);
}

} // namespace

class TestDensity : public QObject
{
    Q_OBJECT

public:
    // One data layer for all tests: the browser looks the factory objects up once per process.
    TestDensity() : m_library(m_layer.AddLibrary("Density"))
    {
        memorymodel::DataSource& local = m_library.AddDataSource("Local");
        memorymodel::DataSource& factory =
            m_library.AddDataSource("Factory", memorymodel::eFactorySource | memorymodel::eReadOnlySource);
        memorymodel::SourceControl& control = m_layer.GetSourceControl();
        control.SetVersionControlActive(true);
        control.SetEnabled(true);
        AddRow(NewItem::Solver("A solver").In(local), nodebrowser::eKindSolver);
        AddRow(NewItem::Solver("B solver of the factory").In(factory), nodebrowser::eKindSolver);
        AddRow(NewItem::GlobalConstant("C constant").In(local), nodebrowser::eKindConstant);
        AddRow(NewItem::Type("D type").In(local), nodebrowser::eKindType);
        AddRow(NewItem::Signature("E signature of the factory").In(factory), nodebrowser::eKindSignature);
        const char* name[] = {"F checked in",  "G checked out", "H somebody else's",
                              "I out of date", "J writable",    "K new"};
        for (int i = 0; i < 6; ++i)
        {
            const ItemID item = AddRow((i % 2 ? NewItem::Compound(name[i]) : NewItem::Signature(name[i])).In(local),
                                       i % 2 ? nodebrowser::eKindCompound : nodebrowser::eKindSignature);
            const unsigned states[] = {memorymodel::eCheckedIn,         memorymodel::eCheckedOut,
                                       memorymodel::eCheckedOutByOther, memorymodel::eOutOfDate,
                                       memorymodel::eWritable,          memorymodel::eAdded};
            control.SetState(item, states[i]);
            m_rows.back().m_marks.m_accessState = states[i];
            m_rows.back().m_marked = true;
        }
        for (const int row : {1, 4})
        {
            m_rows[std::size_t(row)].m_marks.m_factoryItem = true;
            m_rows[std::size_t(row)].m_marks.m_readOnlySource = true;
            m_rows[std::size_t(row)].m_marked = true;
        }
    }

private Q_SLOTS:
    void iconsHaveThePixelsOfTheirRatio_data() { AddIcons(); }

    void iconsHaveThePixelsOfTheirRatio()
    {
        QFETCH(int, kind);
        QFETCH(double, ratio);
        const int side = qRound(gIconSide * ratio);
        const int column = qRound(gFactoryMarkWidth * ratio);
        const QPixmap icon = TypeIcon(eItemKind(kind), ratio);
        QCOMPARE(icon.size(), QSize(side, side));
        QCOMPARE(qtcompat::PixelRatio(icon), ratio);
        IconMarks marks;
        marks.m_factoryItem = true;
        marks.m_readOnlySource = true;
        const QPixmap marked = ComposeStateIcon(icon, marks);
        QCOMPARE(marked.size(), QSize(column + side, side));
        QCOMPARE(qtcompat::PixelRatio(marked), ratio);
        QCOMPARE(Difference(Pixels(marked).copy(column, 0, side, side), Pixels(icon)), QRect());
    }

    void denseIconsAreNoPlainOnesMadeLarger_data() { AddIcons(); }

    void denseIconsAreNoPlainOnesMadeLarger()
    {
        QFETCH(int, kind);
        QFETCH(double, ratio);
        const QImage plain = Pixels(TypeIcon(eItemKind(kind), 1.0));
        const QImage icon = Pixels(TypeIcon(eItemKind(kind), ratio));
        if (ratio > 1.0)
        {
            QVERIFY(icon != plain.scaled(icon.size()));
            const QImage larger = plain.scaled(icon.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            const double gain = Sharpness(icon) / Sharpness(larger);
            QVERIFY2(gain > 1.15, QByteArray::number(gain).constData());
        }
    }

    void denseIconsHaveTheFormOfPlainOnes_data() { AddIcons(); }

    void denseIconsHaveTheFormOfPlainOnes()
    {
        QFETCH(int, kind);
        QFETCH(double, ratio);
        const QImage plain = Pixels(TypeIcon(eItemKind(kind), 1.0));
        const QImage smaller = Pixels(TypeIcon(eItemKind(kind), ratio))
                                   .scaled(plain.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        int different = 0;
        for (int y = 0; y < plain.height(); ++y)
            for (int x = 0; x < plain.width(); ++x)
                different += std::abs(qAlpha(plain.pixel(x, y)) - qAlpha(smaller.pixel(x, y))) > 128 ? 1 : 0;
        QVERIFY2(different <= 20, QByteArray::number(different).constData());
    }

    void outlinesStandOutOnLightAndOnDark_data() { AddIcons(); }

    void outlinesStandOutOnLightAndOnDark()
    {
        QFETCH(int, kind);
        QFETCH(double, ratio);
        const QPixmap icon = TypeIcon(eItemKind(kind), ratio);
        IconMarks marks;
        marks.m_factoryItem = true;
        marks.m_readOnlySource = true;
        const int column = qRound(gFactoryMarkWidth * ratio);
        const QImage mark = Pixels(ComposeStateIcon(icon, marks)).copy(0, 0, column, icon.height());
        for (const QImage& image : {Pixels(icon), mark})
            for (const bool dark : {false, true})
                for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Window})
                {
                    const double contrast = OutlineContrast(image, MakePalette(dark).color(role).rgb());
                    QVERIFY2(contrast >= gLeastContrast, QByteArray::number(contrast).constData());
                }
    }

    void badgesStandOutOnLightAndOnDark()
    {
        for (const RowIcon& row : m_rows)
        {
            if (row.m_marks.m_accessState == 0)
                continue;
            const QImage badge = Pixels(Compose(row, 1.0)).copy(0, 0, gFactoryMarkWidth, gIconSide);
            QRgb colour = 0; // of most of it
            int most = 0;
            for (const QRgb candidate : OutlineOf(badge))
            {
                const int count = CountPixels(badge, badge.rect(), candidate);
                colour = count > most ? candidate : colour;
                most = std::max(most, count);
            }
            QVERIFY(most > 4);
            for (const bool dark : {false, true})
            {
                const QRgb ground = MakePalette(dark).color(QPalette::Window).rgb();
                QVERIFY2(Contrast(colour, ground) >= gLeastContrast, qPrintable(QColor(colour).name()));
            }
        }
    }

    void theRowsShowTheirIconsPixelByPixel_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<double>("ratio");
        std::vector<double> ratios = Ratios();
        if (ratios.size() > 1)
            ratios.insert(ratios.end(), std::begin(gOddRatios), std::end(gOddRatios));
        for (const bool dark : {false, true})
            for (const double ratio : ratios)
                QTest::newRow(qPrintable(PictureName(dark, ratio))) << dark << ratio;
    }

    void theRowsShowTheirIconsPixelByPixel()
    {
        QFETCH(bool, dark);
        QFETCH(double, ratio);
        ProbedBrowser browser;
        Show(browser, dark);
        const QImage picture = Paint(browser, ratio);
        Keep(picture, PictureName(dark, ratio));
        CheckRows(picture, browser, ratio);
    }

    void theScreenShowsTheIconsPixelByPixel()
    {
        ProbedBrowser browser;
        Show(browser, false);
        const QPixmap picture = testcompat::ScreenPicture(browser);
        const double ratio = qtcompat::PixelRatio(picture);
        const QByteArray wanted = qgetenv("QT_SCALE_FACTOR");
        QCOMPARE(ratio, wanted.isEmpty() ? 1.0 : wanted.toDouble());
        Keep(Pixels(picture), QString::fromLatin1("screen-%1").arg(ratio));
        CheckRows(Pixels(picture), browser, ratio);
    }

    void iconsFollowTheRatioAndAreComposedOnceForEach()
    {
        if (!testcompat::HasPixelRatios())
            return;
        ProbedBrowser browser;
        Show(browser, false);
        const QImage before = Paint(browser, 1.0);
        SpyLayer spy;
        const QImage dense = Paint(browser, 2.0);
        const std::size_t badges = spy.m_icons.size();
        QVERIFY(badges > 0);
        for (const SpyLayer::Icon& icon : spy.m_icons)
            QCOMPARE(icon.m_size.height(), 2 * gIconSide);
        QCOMPARE(Difference(Paint(browser, 2.0), dense), QRect());
        QCOMPARE(spy.m_icons.size(), badges);
        QCOMPARE(Difference(Paint(browser, 1.0), before), QRect());
        QCOMPARE(spy.m_icons.size(), 2 * badges);
        CheckRows(dense, browser, 2.0);
    }

private:
    static QString PictureName(bool in_dark, double in_ratio)
    {
        return QString::fromLatin1("density-%1-%2").arg(QLatin1String(in_dark ? "dark" : "light")).arg(in_ratio);
    }

    static void AddIcons()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<double>("ratio");
        for (const KindOfIcon& kind : gKinds)
            for (const double ratio : Ratios())
                QTest::newRow(qPrintable(QString::fromLatin1("%1 %2").arg(QLatin1String(kind.m_name)).arg(ratio)))
                    << int(kind.m_kind) << ratio;
    }

    /// Adds an item, which has the next row.
    ItemID AddRow(const NewItem& in_item, eItemKind in_kind)
    {
        RowIcon row;
        row.m_kind = in_kind;
        row.m_marks.m_versioningActive = true;
        m_rows.push_back(row);
        return m_library.Add(in_item);
    }

    void Show(ProbedBrowser& io_browser, bool in_dark)
    {
        io_browser.setPalette(MakePalette(in_dark));
        io_browser.TabBar()->setCurrentIndex(2);
        io_browser.SetItemLibrary(m_library.GetAccessor());
        ShowBrowser(io_browser, gWidth, gHeight);
        m_layer.GetSourceControl().DeliverRequestedStates();
        Settle();
    }

    static QImage Paint(QWidget& in_browser, double in_ratio)
    {
        QImage picture(qRound(in_browser.width() * in_ratio), qRound(in_browser.height() * in_ratio),
                       QImage::Format_RGB32);
        testcompat::SetPixelRatio(picture, in_ratio);
        in_browser.render(&picture);
        testcompat::SetPixelRatio(picture, 1.0);
        return picture;
    }

    /// Compares the icons' part of a picture with the icons as they are composed.
    void CheckRows(const QImage& in_picture, ProbedBrowser& in_browser, double in_ratio)
    {
        QCOMPARE(in_browser.GetRowCount(), m_rows.size());
        const int top = qRound(in_browser.ListTop() * in_ratio);
        const int room = qRound(gIconRoom * in_ratio);
        QImage expected(room, in_picture.height(), QImage::Format_RGB32);
        expected.fill(in_browser.palette().color(QPalette::Window).rgb());
        {
            QPainter painter(&expected);
            for (std::size_t row = 0; row < m_rows.size(); ++row)
            {
                const QImage icon = Pixels(Compose(m_rows[row], in_ratio));
                const int column = m_rows[row].m_marked ? qRound(gFactoryMarkWidth * in_ratio) : 0;
                const int rowTop = in_browser.ListTop() + int(row) * gRowHeight;
                QCOMPARE(icon.width(), column + qRound(gIconSide * in_ratio));
                painter.drawImage(qRound(gIconLeft * in_ratio) - column, qRound((rowTop + gIconInset) * in_ratio),
                                  icon);
            }
        }
        QCOMPARE(Difference(in_picture, expected, QRect(0, top, room, in_picture.height() - top)), QRect());
    }

    static void Keep(const QImage& in_picture, const QString& in_name)
    {
        const QDir folder(QString::fromLocal8Bit(PICTURES_FOLDER));
        QVERIFY(folder.mkpath(QString::fromLatin1(".")));
        QVERIFY(in_picture.save(folder.filePath(in_name + QLatin1String(".png"))));
    }

    memorymodel::DataLayer m_layer;
    memorymodel::Library& m_library;
    std::vector<RowIcon> m_rows; // in display order
};

NODEBROWSER_TEST_MAIN(TestDensity)
#include "test_density.moc"
