// SPDX-License-Identifier: MIT
// What is particular to source control in memory: states on record, badges, tool tips, handlers.

#include "contractsupport.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "memorymodel/datalayer.h"
#include "notificationspy.h"
#include "tests/support/testmain.h"

#include <QImage>
#include <QPainter>

#include <memory>
#include <set>
#include <vector>

using namespace memorymodel;
using namespace vireo::datamodel;

namespace
{

typedef nexa4::NEXAHandle<nexa4::IDbObject> Handle;

Handle ObjectOf(const ItemID& in_item)
{
    return hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper")
        ->FindObject(nexa4::DbObjectId(ItemIDUnlock::GetItemIDUID(in_item)));
}

QPixmap WhiteIcon(int in_width, int in_height)
{
    QPixmap icon(in_width, in_height);
    icon.fill(Qt::white);
    return icon;
}

/// The smallest rectangle around the pixels that are not white.
QRect PaintedPart(const QPixmap& in_icon)
{
    const QImage image = in_icon.toImage();
    QRect part;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != qRgb(255, 255, 255))
                part = part.united(QRect(x, y, 1, 1));
    return part;
}

/// Makes a pixmap one of a screen with several pixels to a unit, where the toolkit knows of such.
/// \return the ratio that it has now
template <class Pixmap> auto SetRatio(Pixmap& io_pixmap, int in_ratio) -> decltype(int(io_pixmap.devicePixelRatio()))
{
    io_pixmap.setDevicePixelRatio(in_ratio);
    return in_ratio;
}
template <class Pixmap> int SetRatio(Pixmap& /*io_pixmap*/, long /*in_ratio*/)
{
    return 1;
}

/// Sets properties when it is told that they are gone.
class PropertySetter : public IRevisionControlPropertiesMgr_Slot
{
public:
    explicit PropertySetter(SourceControl& in_control) : m_control(in_control) {}

    void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* in_manager) override
    {
        if (in_manager)
            return;
        ++m_ends;
        m_control.SetEnabled(true);
        m_control.SetHasProperties(false);
    }

    SourceControl& m_control;
    int m_ends = 0;
};

const unsigned gStates[] = {eCheckedIn, eCheckedOut, eCheckedOutByOther, eOutOfDate, eWritable, eAdded};

} // namespace

class TestMemorySourceControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemsStartAsCheckedIn()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        QCOMPARE(layer.GetSourceControl().GetState(id), unsigned(eCheckedIn));
        const ItemID loose = library.Add(NewItem::Compound("B").WithoutUID());
        QCOMPARE(layer.GetSourceControl().GetState(loose), unsigned(eAccessStateUnknown));
        QCOMPARE(layer.GetSourceControl().GetState(ItemID()), unsigned(eAccessStateUnknown));
    }

    void settingAStateTellsOnceWithoutARequest()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        const ItemID loose = library.Add(NewItem::Compound("B").WithoutUID());
        NotificationSpy spy(library.GetAccessor());
        layer.GetSourceControl().SetState(id, eOutOfDate);
        QCOMPARE(spy.Take(), QByteArray("begin, state A 4, end"));
        layer.GetSourceControl().SetState(id, eOutOfDate);
        layer.GetSourceControl().SetState(loose, eOutOfDate);
        layer.GetSourceControl().SetState(ItemID(), eOutOfDate);
        QCOMPARE(spy.Take(), QByteArray());
        QCOMPARE(layer.GetSourceControl().GetState(id), unsigned(eOutOfDate));
    }

    void requestsAreCountedAndRemembered()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID first = library.Add(NewItem::Compound("A"));
        const ItemID second = library.Add(NewItem::Compound("B"));
        SourceControl& control = layer.GetSourceControl();
        QCOMPARE(control.GetRequestCount(), std::size_t(0));
        ScsTask* const task = new ScsTask("Test");
        const Handle objects[] = {ObjectOf(second), Handle(), ObjectOf(first)};
        task->RequestObjectStates(std::list<Handle>(objects, objects + 3));
        QCOMPARE(control.GetRequestCount(), std::size_t(1));
        QVERIFY((control.GetLastRequest() == std::vector<ItemID>{second, first}));
        task->RequestObjectStates(std::list<Handle>());
        QCOMPARE(control.GetRequestCount(), std::size_t(2));
        QVERIFY(control.GetLastRequest().empty());
        task->DeleteMe();
    }

    void requestsAreAnsweredAtOnceWhenTold()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        Library& other = layer.AddLibrary("Others");
        const Handle first = ObjectOf(library.Add(NewItem::Compound("A")));
        const Handle second = ObjectOf(other.Add(NewItem::Compound("B")));
        NotificationSpy spy(library.GetAccessor());
        NotificationSpy otherSpy(other.GetAccessor());
        ScsTask* const task = new ScsTask("Test");
        task->RequestObjectStates(std::list<Handle>{first, second, first});
        layer.GetSourceControl().DeliverRequestedStates();
        QCOMPARE(spy.Take(), QByteArray("begin, state A 1, end, begin, state A 1, end"));
        QCOMPARE(otherSpy.Take(), QByteArray("begin, state B 1, end"));
        layer.GetSourceControl().DeliverRequestedStates();
        QCoreApplication::processEvents();
        QCOMPARE(spy.Take(), QByteArray());
        task->DeleteMe();
    }

    void badgeIsInTheBottomRightCorner()
    {
        DataLayer layer;
        for (const unsigned state : gStates)
        {
            QPixmap base = WhiteIcon(20, 20);
            const QRect part = PaintedPart(ScsUtils::getAssetStateIcon(base, state, true, true));
            QVERIFY(QRect(12, 12, 8, 8).contains(part));
            QVERIFY(part.width() >= 5 && part.height() >= 5);
            QVERIFY(part.right() >= 18 && part.bottom() >= 18);
        }
    }

    void badgeIsAsLargeAsTheScreenAsksFor()
    {
        DataLayer layer;
        QPixmap base = WhiteIcon(40, 40);
        const int ratio = SetRatio(base, 2);
        for (const unsigned state : gStates)
        {
            QPixmap icon = ScsUtils::getAssetStateIcon(base, state, true, true);
            QCOMPARE(icon.width(), 40);
            const QRect part = PaintedPart(icon);
            QVERIFY(QRect(40 - 8 * ratio, 40 - 8 * ratio, 8 * ratio, 8 * ratio).contains(part));
            QVERIFY(part.width() >= 5 * ratio && part.height() >= 5 * ratio);
        }
    }

    void badgesDiffer()
    {
        DataLayer layer;
        QPixmap base = WhiteIcon(20, 20);
        std::vector<QImage> images(1, base.toImage());
        for (const unsigned state : gStates)
        {
            const QImage image = ScsUtils::getAssetStateIcon(base, state, true, true).toImage();
            for (const QImage& other : images)
                QVERIFY(image != other);
            images.push_back(image);
        }
    }

    void otherStatesHaveNoBadge()
    {
        DataLayer layer;
        QPixmap base = WhiteIcon(20, 20);
        for (const unsigned state : {0u, 7u, 1000u, unsigned(eAccessStateRequested), 0xFFFFFFFFu})
            QCOMPARE(ScsUtils::getAssetStateIcon(base, state, true, true).cacheKey(), base.cacheKey());
        QCOMPARE(ScsUtils::getAssetStateIcon(base, eCheckedOut, false, true).cacheKey(), base.cacheKey());
    }

    void badgeLeavesTheMarkFree_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::newRow("icon with a mark") << 27 << 20;
        QTest::newRow("as wide as mark and badge") << 15 << 20;
        QTest::newRow("narrow") << 11 << 20;
        QTest::newRow("low") << 27 << 5;
        QTest::newRow("nothing but the mark") << 7 << 20;
        QTest::newRow("less than the mark") << 3 << 3;
    }

    void badgeLeavesTheMarkFree()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        DataLayer layer;
        QPixmap base = WhiteIcon(width, height);
        for (const unsigned state : gStates)
        {
            const QPixmap icon = ScsUtils::getAssetStateIcon(base, state, true, false);
            QCOMPARE(icon.size(), base.size());
            const QRect part = PaintedPart(icon);
            QCOMPARE(part.isEmpty(), width <= 7);
            QVERIFY(part.isEmpty() || part.left() >= 7);
        }
    }

    void sameIconAndStateShareAPixmap()
    {
        DataLayer layer;
        QPixmap base = WhiteIcon(20, 20);
        QPixmap copy = base;
        const qint64 key = ScsUtils::getAssetStateIcon(base, eCheckedOut, true, true).cacheKey();
        QCOMPARE(ScsUtils::getAssetStateIcon(copy, eCheckedOut, true, true).cacheKey(), key);
        QVERIFY(ScsUtils::getAssetStateIcon(base, eWritable, true, true).cacheKey() != key);
        for (int i = 0; i < 2000; ++i)
        {
            QPixmap other = WhiteIcon(10, 10);
            QVERIFY(!ScsUtils::getAssetStateIcon(other, eCheckedOut, true, true).isNull());
        }
        const QPixmap again = ScsUtils::getAssetStateIcon(base, eCheckedOut, true, true);
        QVERIFY(PaintedPart(again).left() >= 12);
    }

    void toolTipTellsNameStateAndSource()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& team = library.AddDataSource("Team", ePlainSource, "//server/team");
        const ItemID id = library.Add(NewItem::Compound("\xC4rger").In(team));
        const QString icon = QString::fromLatin1(":compound.png");
        QCOMPARE(ScsUtils::GetToolTip(ObjectOf(id), icon),
                 QString::fromLatin1("\xC4rger\nChecked in\nTeam (//server/team)"));
        std::set<QString> texts;
        for (const unsigned state : gStates)
        {
            layer.GetSourceControl().SetState(id, state);
            texts.insert(ScsUtils::GetToolTip(ObjectOf(id), icon));
        }
        QCOMPARE(texts.size(), std::size_t(6));
        layer.GetSourceControl().SetState(id, 99);
        QVERIFY(ScsUtils::GetToolTip(ObjectOf(id), icon).contains(QString::fromLatin1("Unknown state")));
        QVERIFY(ScsUtils::GetToolTip(Handle(), icon).isEmpty());
        const Handle object = ObjectOf(id);
        library.Remove(id);
        QVERIFY(ScsUtils::GetToolTip(object, icon).isEmpty());
    }

    void showingFilesCallsTheHandler()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        std::vector<ItemID> shown;
        layer.GetSourceControl().SetShowFilesHandler([&](const ItemID& in_item) { shown.push_back(in_item); });
        nexa4::IRevisionControlUIHelper* const helper =
            hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
        helper->ShowFiles(ObjectOf(id), nullptr);
        helper->ShowFiles(Handle(), nullptr);
        QVERIFY(shown == std::vector<ItemID>(1, id));
    }

    void checkingOutPutsTheStateOnRecord()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        nexa4::IRevisionControlUIHelper* const helper =
            hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
        helper->CheckOut(ObjectOf(id), nullptr, true);
        QCOMPARE(layer.GetSourceControl().GetState(id), unsigned(eCheckedOut));
        helper->MakeWritable(ObjectOf(id), true);
        QCOMPARE(layer.GetSourceControl().GetState(id), unsigned(eWritable));
    }

    void propertiesMayBeSetWhileTheLayerEnds()
    {
        std::unique_ptr<DataLayer> layer(new DataLayer);
        PropertySetter slot(layer->GetSourceControl());
        RevisionControlConnection connection;
        hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr")->Connect(&slot, connection);
        layer.reset();
        QCOMPARE(slot.m_ends, 1);
    }
};

NODEBROWSER_TEST_MAIN(TestMemorySourceControl)
#include "test_memorysourcecontrol.moc"
