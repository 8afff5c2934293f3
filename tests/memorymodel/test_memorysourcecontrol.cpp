// SPDX-License-Identifier: MIT
// What is particular to source control in memory: states on record, badges, tool tips, handlers.

#include "contract/notificationspy.h"
#include "contract/support.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "memorymodel/datalayer.h"
#include "memorymodel/versioning.h"
#include "qtcompat/qtcompat.h"
#include "tests/support/testmain.h"

#include <QImage>

#include <memory>
#include <set>
#include <vector>

using namespace contract;
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

QImage Pixels(const QPixmap& in_picture)
{
    return in_picture.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

/// An icon whose pixels all differ, so that nothing can be moved unnoticed.
QPixmap Pattern(int in_width, int in_height)
{
    QImage image(in_width, in_height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < in_height; ++y)
        for (int x = 0; x < in_width; ++x)
            image.setPixel(x, y, qRgb(4 * x + 1, 4 * y + 1, 100));
    return QPixmap::fromImage(image);
}

/// The smallest rectangle around the pixels in which two pictures of one size differ.
QRect Difference(const QImage& in_left, const QImage& in_right)
{
    QRect difference;
    for (int y = 0; y < in_left.height(); ++y)
        for (int x = 0; x < in_left.width(); ++x)
            if (in_left.pixel(x, y) != in_right.pixel(x, y))
                difference |= QRect(x, y, 1, 1);
    return difference;
}

/// The smallest rectangle around the pixels of a picture that are not clear.
QRect PaintedPart(const QImage& in_picture)
{
    QImage clear(in_picture.size(), QImage::Format_ARGB32_Premultiplied);
    clear.fill(0);
    return Difference(in_picture, clear);
}

/// Sets properties when it is notified that they are gone.
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

/// Remembers what it is asked.
class RecordingVersioning : public Versioning
{
public:
    void RequestStates(const std::vector<ItemID>& in_items) override
    {
        m_requests.insert(m_requests.end(), in_items.begin(), in_items.end());
    }
    QString GetToolTip(const ItemID&) override { return QString::fromLatin1("asked"); }
    bool CheckOut(const ItemID& in_item, bool) override
    {
        m_checkedOut = in_item;
        return false;
    }
    void MakeWritable(const ItemID& in_item, bool) override { m_madeWritable = in_item; }

    std::vector<ItemID> m_requests;
    ItemID m_checkedOut;
    ItemID m_madeWritable;
};

const unsigned gStates[] = {eCheckedIn, eCheckedOut, eCheckedOutByOther, eOutOfDate, eWritable,
                            eAdded,     eStaged,     eReadOnlyFile,      eIgnored,   eConflicted};

} // namespace

class TestMemorySourceControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemsStartAsCheckedInUnderVersionControlOnly()
    {
        DataLayer layer;
        const ItemID free = layer.AddLibrary("Free").Add(NewItem::Compound("A"));
        QCOMPARE(layer.GetSourceControl().GetState(free), unsigned(eAccessStateUnknown));
        QCOMPARE(ScsUtils::GetToolTip(ObjectOf(free), QString()).section(QChar::fromLatin1('\n'), 1, 1),
                 QString::fromLatin1("In memory only"));
        layer.GetSourceControl().SetVersionControlActive(true);
        QCOMPARE(layer.GetSourceControl().GetState(free), unsigned(eCheckedIn));
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        QCOMPARE(layer.GetSourceControl().GetState(id), unsigned(eCheckedIn));
        const ItemID loose = library.Add(NewItem::Compound("B").WithoutUID());
        QCOMPARE(layer.GetSourceControl().GetState(loose), unsigned(eAccessStateUnknown));
        QCOMPARE(layer.GetSourceControl().GetState(ItemID()), unsigned(eAccessStateUnknown));
    }

    void settingAStateNotifiesOnceWithoutARequest()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        const ItemID loose = library.Add(NewItem::Compound("B").WithoutUID());
        NotificationSpy spy(library.GetAccessor());
        layer.GetSourceControl().SetState(id, eOutOfDate);
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, state A 4, end"));
        layer.GetSourceControl().SetState(id, eOutOfDate);
        layer.GetSourceControl().SetState(loose, eOutOfDate);
        layer.GetSourceControl().SetState(ItemID(), eOutOfDate);
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
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
        layer.GetSourceControl().SetVersionControlActive(true);
        NotificationSpy spy(library.GetAccessor());
        NotificationSpy otherSpy(other.GetAccessor());
        ScsTask* const task = new ScsTask("Test");
        task->RequestObjectStates(std::list<Handle>{first, second, first});
        layer.GetSourceControl().DeliverRequestedStates();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, state A 1, end, begin, state A 1, end"));
        QCOMPARE(QByteArray(otherSpy.Take().c_str()), QByteArray("begin, state B 1, end"));
        layer.GetSourceControl().DeliverRequestedStates();
        QCoreApplication::processEvents();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
        task->DeleteMe();
    }

    void stateWidensTheIconByTheColumnOfTheMark_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("side");
        QTest::addColumn<int>("column");
        QTest::newRow("1") << 1.0 << 20 << 7;
        QTest::newRow("1.5") << 1.5 << 30 << 11;
        QTest::newRow("2") << 2.0 << 40 << 14;
    }

    void stateWidensTheIconByTheColumnOfTheMark()
    {
        QFETCH(double, ratio);
        QFETCH(int, side);
        QFETCH(int, column);
        DataLayer layer;
        QPixmap base = Pattern(side, side);
        qtcompat::SetPixelRatio(base, ratio);
        if (qtcompat::PixelRatio(base) != ratio)
            column = 7; // the toolkit knows of no other ratio than 1
        for (const unsigned state : gStates)
        {
            const QPixmap icon = ScsUtils::getAssetStateIcon(base, state, true, true);
            QCOMPARE(qtcompat::PixelRatio(icon), qtcompat::PixelRatio(base));
            QCOMPARE(icon.size(), QSize(column + side, side));
            const QImage pixels = Pixels(icon);
            QCOMPARE(pixels.copy(column, 0, side, side), Pixels(base));
            // The badge is as wide as the column and no higher, and stands on the lower edge like the mark.
            const QRect badge = PaintedPart(pixels.copy(0, 0, column, side));
            QVERIFY(QRect(0, side - column, column, column).contains(badge));
            QVERIFY(badge.width() >= column - qRound(2 * ratio) && badge.height() >= column - qRound(2 * ratio));
            QVERIFY(badge.bottom() >= side - 1 - qRound(ratio));
        }
    }

    void badgeIsNoHigherThanTheIcon()
    {
        DataLayer layer;
        QPixmap base = Pattern(20, 4);
        for (const unsigned state : gStates)
        {
            const QImage pixels = Pixels(ScsUtils::getAssetStateIcon(base, state, true, true));
            QCOMPARE(pixels.size(), QSize(27, 4));
            QCOMPARE(pixels.copy(7, 0, 20, 4), Pixels(base));
            const QRect badge = PaintedPart(pixels.copy(0, 0, 7, 4));
            QVERIFY(badge.width() >= 2 && badge.width() <= 4);
        }
    }

    void badgesDiffer()
    {
        DataLayer layer;
        QPixmap base = WhiteIcon(20, 20);
        std::vector<QImage> images;
        for (const unsigned state : gStates)
        {
            const QImage image = ScsUtils::getAssetStateIcon(base, state, true, true).toImage();
            for (const QImage& other : images)
                QVERIFY(image != other);
            images.push_back(image);
        }
    }

    void unknownStatesWidenTheIconWithoutABadge()
    {
        DataLayer layer;
        QPixmap base = Pattern(20, 20);
        for (const unsigned state : {unsigned(eWithoutState), 1000u, unsigned(eAccessStateRequested), 0xFFFFFFFFu})
        {
            const QImage pixels = Pixels(ScsUtils::getAssetStateIcon(base, state, true, true));
            QCOMPARE(pixels.size(), QSize(27, 20));
            QCOMPARE(pixels.copy(7, 0, 20, 20), Pixels(base));
            QVERIFY(PaintedPart(pixels.copy(0, 0, 7, 20)).isEmpty());
            QCOMPARE(ScsUtils::getAssetStateIcon(base, state, true, false).cacheKey(), base.cacheKey());
        }
    }

    void iconWithoutAStateStaysAsItIs()
    {
        DataLayer layer;
        QPixmap base = WhiteIcon(20, 20);
        QCOMPARE(ScsUtils::getAssetStateIcon(base, eAccessStateUnknown, true, true).cacheKey(), base.cacheKey());
        QCOMPARE(ScsUtils::getAssetStateIcon(base, eAccessStateUnknown, true, false).cacheKey(), base.cacheKey());
        for (const unsigned state : {unsigned(eCheckedOut), unsigned(eAccessStateRequested)})
        {
            QCOMPARE(ScsUtils::getAssetStateIcon(base, state, false, true).cacheKey(), base.cacheKey());
            QCOMPARE(ScsUtils::getAssetStateIcon(base, state, false, false).cacheKey(), base.cacheKey());
        }
        QPixmap none;
        QVERIFY(ScsUtils::getAssetStateIcon(none, eCheckedOut, true, true).isNull());
        QVERIFY(ScsUtils::getAssetStateIcon(none, eAccessStateRequested, true, true).isNull());
    }

    void badgeLeavesTheMarkFree_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::newRow("icon with a mark") << 27 << 20;
        QTest::newRow("as wide as mark and badge") << 14 << 20;
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
            const QRect part = Difference(Pixels(icon), Pixels(base));
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
        QVERIFY(!PaintedPart(Pixels(again).copy(0, 0, 7, 20)).isEmpty());
    }

    void toolTipTellsNameStateAndSource()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& team = library.AddDataSource("Team", ePlainSource, "//server/team");
        layer.GetSourceControl().SetVersionControlActive(true);
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
        QCOMPARE(texts.size(), std::size_t(10));
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

    void aVersioningIsAskedInsteadOfTheRecord()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        Library& other = layer.AddLibrary("Others");
        const ItemID first = library.Add(NewItem::Compound("A"));
        const ItemID second = library.Add(NewItem::Compound("B"));
        const ItemID third = library.Add(NewItem::Compound("C"));
        const ItemID recorded = other.Add(NewItem::Compound("D"));
        RecordingVersioning versioning;
        library.SetVersioning(&versioning);
        NotificationSpy spy(library.GetAccessor());
        ScsTask* const task = new ScsTask("Test");
        ScsTask* const ended = new ScsTask("Ended");
        task->RequestObjectStates(std::list<Handle>{ObjectOf(second), ObjectOf(recorded), ObjectOf(first)});
        ended->RequestObjectStates(std::list<Handle>{ObjectOf(first)});
        ended->DeleteMe();
        QVERIFY((versioning.m_requests == std::vector<ItemID>{second, first, first}));
        layer.GetSourceControl().DeliverRequestedStates();
        QCoreApplication::processEvents();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());

        // One call answers the requests, each in its place, and tells what is new to nobody in particular.
        layer.GetSourceControl().SetStates({{first, 0}, {second, 7}, {third, 9}});
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, state B 7, state A 0, state C 9, end"));
        layer.GetSourceControl().SetStates({{first, 0}, {second, 7}, {third, 9}});
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
        QCOMPARE(layer.GetSourceControl().GetState(third), 9u);

        QCOMPARE(ScsUtils::GetToolTip(ObjectOf(first), QString()), QString::fromLatin1("asked"));
        nexa4::IRevisionControlUIHelper* const helper =
            hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
        bool done = true;
        helper->CheckOut(ObjectOf(first), &done, true);
        QVERIFY(!done);
        helper->MakeWritable(ObjectOf(second), true);
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
        QVERIFY(versioning.m_checkedOut == first);
        QVERIFY(versioning.m_madeWritable == second);
        task->DeleteMe();

        library.SetVersioning(nullptr);
        helper->CheckOut(ObjectOf(first), &done, true);
        QVERIFY(done);
        QCOMPARE(layer.GetSourceControl().GetState(first), unsigned(eCheckedOut));
    }

    void requestsInsideAnAnswerWaitForTheNextOne()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("A"));
        RecordingVersioning versioning;
        library.SetVersioning(&versioning);
        NotificationSpy spy(library.GetAccessor());
        ScsTask* const task = new ScsTask("Test");
        int asked = 0;
        spy.m_reaction = [&](const std::string& in_call) {
            if (in_call.compare(0, 5, "state") == 0 && ++asked <= 2)
                task->RequestObjectStates(std::list<Handle>(1, ObjectOf(item)));
        };
        task->RequestObjectStates(std::list<Handle>(1, ObjectOf(item)));
        layer.GetSourceControl().SetStates({{item, 7}});
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, state A 7, end"));
        layer.GetSourceControl().SetStates({{item, 7}});
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, state A 7, end"));
        // An observer may end the task, and close the library.
        spy.m_reaction = [&](const std::string& in_call) {
            if (in_call.compare(0, 5, "state") != 0)
                return;
            task->DeleteMe();
            library.Close();
        };
        layer.GetSourceControl().SetStates({{item, 8}});
        QCOMPARE(asked, 2);
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
