// SPDX-License-Identifier: MIT
#include "nodebrowser/stateicon.h"

#include "memorymodel/datalayer.h"
#include "qtcompat/qtcompat.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/testmain.h"

#include <QImage>

#include <memory>

using namespace nodebrowser;
using memorymodel::NewItem;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::UnspecifiedAccessor;
using vireo::datamodel::VireoType;

namespace
{

const char* const gMarkName = ":./res/projectbrowser/PB_Factory.png";

QImage Pixels(const QPixmap& in_picture)
{
    return in_picture.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QPixmap Resource(const char* in_name)
{
    return QPixmap(QString::fromLatin1(in_name));
}

/// A picture whose pixels are all different, so that nothing can be moved unnoticed.
QPixmap Pattern(int in_width, int in_height)
{
    QImage image(in_width, in_height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < in_height; ++y)
        for (int x = 0; x < in_width; ++x)
            image.setPixel(x, y, qRgb(4 * x + 1, 4 * y + 1, 100));
    return QPixmap::fromImage(image);
}

bool IsClear(const QImage& in_image)
{
    for (int y = 0; y < in_image.height(); ++y)
        for (int x = 0; x < in_image.width(); ++x)
            if (qAlpha(in_image.pixel(x, y)) != 0)
                return false;
    return true;
}

IconMarks Marks(bool in_factory, bool in_readOnly, unsigned in_state = 0, bool in_active = false)
{
    IconMarks marks;
    marks.m_factoryItem = in_factory;
    marks.m_readOnlySource = in_readOnly;
    marks.m_accessState = in_state;
    marks.m_versioningActive = in_active;
    return marks;
}

/// An item of a type that is none of the five.
class StrangeItem : public vireo::datamodel::IContext, public vireo::datamodel::IItem
{
public:
    explicit StrangeItem(const char* in_type) : m_type(in_type) {}
    bool IsAlive() const override { return true; }
    ItemID GetItemID() const override { return ItemID(m_type, 1, 1); }
    vireo::datamodel::CSimpleValue GetValue(const char*) const override { return vireo::datamodel::CSimpleValue(); }

private:
    const char* m_type;
};

} // namespace

class TestStateIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_layer.reset(new memorymodel::DataLayer); }

    void cleanup() { m_layer.reset(); }

    void theFiveIconsAre20PixelsLargeAndDiffer()
    {
        const char* const names[] = {":solver.png", ":signature.png", ":compound.png", ":constant.png", ":type.png"};
        QList<QImage> images;
        for (const char* const name : names)
        {
            const QImage image = Pixels(Resource(name));
            QVERIFY2(image.size() == QSize(20, 20), name);
            QVERIFY2(!IsClear(image), name);
            QVERIFY2(!images.contains(image), name);
            images << image;
        }
    }

    void theFactoryMarkIs7WideAndNotHigherThanAnIcon()
    {
        const QPixmap mark = Resource(gMarkName);
        QCOMPARE(mark.width(), gFactoryMarkWidth);
        QCOMPARE(gFactoryMarkWidth, 7);
        QVERIFY(mark.height() > 0 && mark.height() <= 20);
        QVERIFY(!IsClear(Pixels(mark)));
    }

    void eachKindHasItsIcon_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QByteArray>("icon");
        QTest::newRow("polymorphic solver") << 0 << QByteArray(":solver.png");
        QTest::newRow("solver") << 1 << QByteArray(":solver.png");
        QTest::newRow("compound") << 2 << QByteArray(":compound.png");
        QTest::newRow("loop compound") << 3 << QByteArray(":compound.png");
        QTest::newRow("signature") << 4 << QByteArray(":signature.png");
        QTest::newRow("constant") << 5 << QByteArray(":constant.png");
        QTest::newRow("type") << 6 << QByteArray(":type.png");
    }

    void eachKindHasItsIcon()
    {
        QFETCH(int, kind);
        QFETCH(QByteArray, icon);
        const NewItem items[] = {NewItem::PolymorphicSolver("A"),
                                 NewItem::Solver("A"),
                                 NewItem::Compound("A"),
                                 NewItem::LoopCompound("A"),
                                 NewItem::Signature("A"),
                                 NewItem::GlobalConstant("A"),
                                 NewItem::Type("A")};
        ItemAccessor item = Add(items[kind]);
        QCOMPARE(Pixels(TypeIcon(KindOf(item), 1.0)), Pixels(Resource(icon.constData())));
    }

    void anUnknownTypeHasNoIcon()
    {
        ItemAccessor strange(UnspecifiedAccessor(std::make_shared<StrangeItem>("Strange")));
        QVERIFY(strange.IsValid());
        QVERIFY(TypeIcon(KindOf(strange), 1.0).isNull());
        ItemAccessor invalid;
        QVERIFY(TypeIcon(KindOf(invalid), 1.0).isNull());
    }

    void typesAreToldApartByPointerAndNotByTheirText()
    {
        const std::string text = VireoType::gSolver;
        ItemAccessor copy(UnspecifiedAccessor(std::make_shared<StrangeItem>(text.c_str())));
        QCOMPARE(text, std::string(VireoType::gSolver));
        QVERIFY(TypeIcon(KindOf(copy), 1.0).isNull());
        ItemAccessor original(UnspecifiedAccessor(std::make_shared<StrangeItem>(VireoType::gSolver)));
        QVERIFY(!TypeIcon(KindOf(original), 1.0).isNull());
    }

    void aPlainIconStaysAsItIsWithoutAState()
    {
        const QPixmap icon = Pattern(20, 20);
        QCOMPARE(Pixels(ComposeStateIcon(icon, Marks(false, false))), Pixels(icon));
        QCOMPARE(Pixels(ComposeStateIcon(icon, Marks(false, true))), Pixels(icon));
    }

    void aFactoryIconIs7PixelsWiderWithTheIconAt7AndTheMarkAtTheBottomLeft_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("icon") << 20 << false;
        QTest::newRow("icon, read-only") << 20 << true;
        QTest::newRow("high icon") << 40 << true;
        QTest::newRow("as high as the mark") << Resource(gMarkName).height() << true;
    }

    void aFactoryIconIs7PixelsWiderWithTheIconAt7AndTheMarkAtTheBottomLeft()
    {
        QFETCH(int, height);
        QFETCH(bool, readOnly);
        const QPixmap icon = Pattern(20, height);
        const QImage mark = Pixels(Resource(gMarkName));
        const QImage marked = Pixels(ComposeStateIcon(icon, Marks(true, readOnly)));
        QCOMPARE(marked.size(), QSize(27, height));
        QCOMPARE(marked.copy(7, 0, 20, height), Pixels(icon));
        const int markTop = height - mark.height();
        QCOMPARE(marked.copy(0, markTop, 7, mark.height()), mark);
        QVERIFY(IsClear(marked.copy(0, 0, 7, markTop)) || markTop == 0);
    }

    void aMarkHigherThanItsIconLosesItsTop()
    {
        const QPixmap icon = Pattern(20, 5);
        const QImage mark = Pixels(Resource(gMarkName));
        const QImage marked = Pixels(ComposeStateIcon(icon, Marks(true, true)));
        QCOMPARE(marked.size(), QSize(27, 5));
        QCOMPARE(marked.copy(0, 0, 7, 5), mark.copy(0, mark.height() - 5, 7, 5));
    }

    void clearPixelsOfTheIconStayClear()
    {
        QPixmap icon(20, 20);
        icon.fill(Qt::transparent);
        QVERIFY(IsClear(Pixels(ComposeStateIcon(icon, Marks(true, true))).copy(7, 0, 20, 20)));
    }

    void theBadgeIsAskedForWithTheStateAndWhatTheIconIs_data()
    {
        QTest::addColumn<bool>("factory");
        QTest::addColumn<bool>("readOnly");
        QTest::addColumn<bool>("active");
        QTest::addColumn<uint>("state");
        QTest::addColumn<bool>("asked");
        for (int bits = 0; bits < 8; ++bits)
        {
            const bool factory = (bits & 1) != 0;
            const bool readOnly = (bits & 2) != 0;
            const bool active = (bits & 4) != 0;
            QTest::newRow(QByteArray::number(bits).constData())
                << factory << readOnly << active << 3u + uint(bits) << !(factory && readOnly);
        }
        QTest::newRow("largest state") << false << false << true << 4294967295u << true;
    }

    void theBadgeIsAskedForWithTheStateAndWhatTheIconIs()
    {
        QFETCH(bool, factory);
        QFETCH(bool, readOnly);
        QFETCH(bool, active);
        QFETCH(uint, state);
        QFETCH(bool, asked);
        SpyLayer spy;
        ComposeStateIcon(Pattern(20, 20), Marks(factory, readOnly, state, active));
        QCOMPARE(spy.m_icons.size(), std::size_t(asked ? 1 : 0));
        if (!asked)
            return;
        QCOMPARE(spy.m_icons[0].m_state, state);
        QCOMPARE(spy.m_icons[0].m_active, active);
        // Only an icon without a mark beside it has all the space for itself.
        QCOMPARE(spy.m_icons[0].m_ownSpace, !factory);
        QCOMPARE(spy.m_icons[0].m_size, QSize(factory ? 27 : 20, 20));
    }

    void theBadgedIconIsTheResult()
    {
        const QPixmap icon = Pattern(20, 20);
        QPixmap base = icon;
        const QImage expected = Pixels(ScsUtils::getAssetStateIcon(base, memorymodel::eCheckedOut, true, true));
        QVERIFY(expected != Pixels(icon));
        QCOMPARE(Pixels(ComposeStateIcon(icon, Marks(false, false, memorymodel::eCheckedOut, true))), expected);
    }

    void aWritableFactoryIconHasBothItsMarkAndItsBadge()
    {
        const QPixmap icon = Pattern(20, 20);
        const QImage marked = Pixels(ComposeStateIcon(icon, Marks(true, false)));
        const QImage badged = Pixels(ComposeStateIcon(icon, Marks(true, false, memorymodel::eCheckedOut, true)));
        QCOMPARE(badged.size(), QSize(27, 20));
        QVERIFY(badged != marked);
        QCOMPARE(badged.copy(0, 0, 7, 20), marked.copy(0, 0, 7, 20));
    }

    void aReadOnlyFactoryIconHasNoBadge()
    {
        const QPixmap icon = Pattern(20, 20);
        QCOMPARE(Pixels(ComposeStateIcon(icon, Marks(true, true, memorymodel::eCheckedOut, true))),
                 Pixels(ComposeStateIcon(icon, Marks(true, true))));
    }

    void theGivenIconIsNotChanged()
    {
        const QPixmap icon = Pattern(20, 20);
        const QImage before = Pixels(icon);
        ComposeStateIcon(icon, Marks(true, false, memorymodel::eCheckedOut, true));
        ComposeStateIcon(icon, Marks(false, false, memorymodel::eCheckedOut, true));
        QCOMPARE(Pixels(icon), before);
    }

    void denseIconsKeepTheirPixelRatio()
    {
        QPixmap icon = Pattern(40, 40);
        qtcompat::SetPixelRatio(icon, 2.0);
        const double ratio = qtcompat::PixelRatio(icon);
        const QPixmap marked = ComposeStateIcon(icon, Marks(true, true));
        QCOMPARE(qtcompat::PixelRatio(marked), ratio);
        const int markWidth = qRound(7 * ratio);
        QCOMPARE(marked.width(), 40 + markWidth);
        QCOMPARE(marked.height(), 40);
        QImage pixels = Pixels(marked);
        const int markHeight = qRound(Resource(gMarkName).height() * ratio);
        QVERIFY(IsClear(pixels.copy(0, 0, markWidth, 40 - markHeight)));
        QVERIFY(!IsClear(pixels.copy(0, 40 - markHeight, markWidth, markHeight)));
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 40; ++x)
                QCOMPARE(pixels.pixel(markWidth + x, y), Pixels(icon).pixel(x, y));
    }

    void iconsThatWereFoundFollowTheRatio()
    {
        StateIcons icons;
        const QPixmap& solver = icons.Find(eKindSolver, Marks(false, false));
        const QPixmap& marked = icons.Find(eKindCompound, Marks(true, true));
        for (const double ratio : {2.0, 1.0})
        {
            icons.SetPixelRatio(ratio);
            QCOMPARE(Pixels(solver), Pixels(TypeIcon(eKindSolver, ratio)));
            QCOMPARE(Pixels(marked), Pixels(ComposeStateIcon(TypeIcon(eKindCompound, ratio), Marks(true, true))));
            QCOMPARE(Pixels(icons.Find(eKindType, Marks(false, false))), Pixels(TypeIcon(eKindType, ratio)));
        }
    }

    void iconsAreComposedOnceForARatio()
    {
        SpyLayer spy;
        StateIcons icons;
        icons.Find(eKindSolver, Marks(false, false, 3));
        icons.Find(eKindCompound, Marks(false, false, 3));
        QCOMPARE(spy.m_icons.size(), std::size_t(2));
        icons.SetPixelRatio(1.0);
        QCOMPARE(spy.m_icons.size(), std::size_t(2));
        icons.SetPixelRatio(2.0);
        QCOMPARE(spy.m_icons.size(), std::size_t(4));
        icons.SetPixelRatio(2.0);
        QCOMPARE(spy.m_icons.size(), std::size_t(4));
    }

    void iconsAreComposedForEachRatioAfterAFailure_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::newRow("that of before") << 1.0;
        QTest::newRow("that which failed") << 2.0;
    }

    void iconsAreComposedForEachRatioAfterAFailure()
    {
        QFETCH(double, ratio);
        SpyLayer spy;
        StateIcons icons;
        icons.Find(eKindSolver, Marks(false, false, 3));
        icons.Find(eKindCompound, Marks(false, false, 3));
        int asked = 0;
        spy.When("icon 3", [&asked] {
            if (++asked == 2)
                throw asked;
        });
        bool thrown = false;
        try
        {
            icons.SetPixelRatio(2.0);
        }
        catch (int)
        {
            thrown = true;
        }
        QVERIFY(thrown);
        spy.m_icons.clear();
        icons.SetPixelRatio(ratio);
        QCOMPARE(spy.m_icons.size(), std::size_t(2));
    }

    void anItemWithoutIconStaysWithoutOne()
    {
        QVERIFY(ComposeStateIcon(QPixmap(), Marks(false, false)).isNull());
        QVERIFY(ComposeStateIcon(QPixmap(), Marks(true, true)).isNull());
        QVERIFY(ComposeStateIcon(QPixmap(), Marks(true, false)).isNull());
    }

    void withoutADataLayerTheIconIsOnlyMarked()
    {
        m_layer.reset();
        const QPixmap icon = Pattern(20, 20);
        QCOMPARE(Pixels(ComposeStateIcon(icon, Marks(false, false, 2, true))), Pixels(icon));
        QCOMPARE(ComposeStateIcon(icon, Marks(true, false, 2, true)).size(), QSize(27, 20));
    }

private:
    /// An item of a library of its own.
    ItemAccessor Add(const NewItem& in_item)
    {
        memorymodel::Library& library = m_layer->AddLibrary("A");
        const ItemID id = library.Add(in_item);
        return vireo::datamodel::GetTOC(library.GetAccessor()).IterateItems(id.GetType()).GetItem();
    }

    std::unique_ptr<memorymodel::DataLayer> m_layer;
};

NODEBROWSER_TEST_MAIN(TestStateIcon)
#include "test_stateicon.moc"
