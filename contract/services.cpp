// SPDX-License-Identifier: MIT
#include "contract/boundarycontract.h"
#include "contract/notificationspy.h"
#include "contract/support.h"

#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"

#include <QCoreApplication>
#include <QImage>
#include <QtTest>

#include <list>
#include <memory>

using namespace nexa4;
using namespace vireo::datamodel;

namespace contract
{
namespace
{

typedef std::list<NEXAHandle<IDbObject>> Handles;

IRevisionControlUIHelper* Helper()
{
    return hmxGetService<IRevisionControlUIHelper>("RevisionControlUIHelper");
}

NEXAHandle<IDbObject> ObjectOf(const ItemID& in_item)
{
    return Helper()->FindObject(DbObjectId(ItemIDUnlock::GetItemIDUID(in_item)));
}

/// A picture in a form that can be compared with one of another form.
QImage Comparable(const QImage& in_picture)
{
    return in_picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

/// The last columns of a picture.
QImage RightEnd(const QImage& in_picture, int in_width)
{
    return Comparable(in_picture.copy(in_picture.width() - in_width, 0, in_width, in_picture.height()));
}

/// Writes down the notifications of the properties manager: the property at that moment, or "null".
class Slot : public IRevisionControlPropertiesMgr_Slot
{
public:
    void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* in_manager) override
    {
        bool enabled = false;
        if (in_manager && in_manager->HasProperties())
            in_manager->GetSourceControlEnabled(&enabled);
        m_calls += in_manager ? (enabled ? "on " : "off ") : "null ";
        if (m_dropsItself)
            m_connection = RevisionControlConnection();
    }

    QByteArray Take()
    {
        const QByteArray calls = m_calls;
        m_calls.clear();
        return calls;
    }

    bool m_dropsItself = false;
    RevisionControlConnection m_connection;

private:
    QByteArray m_calls;
};

class OtherService : public hmx::IBase
{
};

/// Ends a task at the end of a test.
class Task
{
public:
    Task() : m_task(new ScsTask("Contract")) {}
    ~Task() { End(); }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    ScsTask* operator->() const { return m_task; }
    void End()
    {
        if (m_task)
            m_task->DeleteMe();
        m_task = nullptr;
    }

private:
    ScsTask* m_task;
};

} // namespace

void BoundaryContract::servicesAreFoundByNameAndInterface()
{
    QVERIFY(hmxGetSystem() != nullptr);
    QVERIFY(Helper() != nullptr);
    QVERIFY(hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr") != nullptr);
    hmx::fwk::INEXADBProxy* const proxy = hmxGetService<hmx::fwk::INEXADBProxy>("NEXADBProxy");
    QVERIFY(proxy && !proxy->GetItemLibrary().IsValid());
    m_fixture->MakeCurrent();
    QVERIFY(proxy->GetItemLibrary().GetContext() == m_fixture->GetLibrary().GetContext());
    m_fixture->Close();
    QVERIFY(!proxy->GetItemLibrary().IsValid());

    QVERIFY(!hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlUIHelper"));
    QVERIFY(!hmxGetSystem()->GetService("revisioncontroluihelper"));
    QVERIFY(!hmxGetSystem()->GetService(""));
    QVERIFY(!hmxGetSystem()->GetService(nullptr));
    QVERIFY(GetApplicationCommandManager() == m_fixture->GetCommands());
}

void BoundaryContract::servicesComeAndGo()
{
    OtherService other;
    m_fixture->SetService("RevisionControlUIHelper", &other);
    QVERIFY(hmxGetSystem()->GetService("RevisionControlUIHelper") == &other);
    QVERIFY(!Helper());
    m_fixture->SetService("RevisionControlUIHelper", nullptr);
    QVERIFY(!hmxGetSystem()->GetService("RevisionControlUIHelper"));
    m_fixture->SetSystemPresent(false);
    QVERIFY(!hmxGetSystem());
    QVERIFY(!hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr"));
    m_fixture->SetSystemPresent(true);
    QVERIFY(hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr") != nullptr);
}

void BoundaryContract::propertiesNotifyConnectedSlots()
{
    IRevisionControlPropertiesMgr* const manager =
        hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr");
    QVERIFY(manager->HasProperties());
    Slot lasting;
    Slot once;
    once.m_dropsItself = true;
    manager->Connect(&once, once.m_connection);
    manager->Connect(&lasting, lasting.m_connection);
    QCOMPARE(lasting.Take(), QByteArray());
    m_fixture->SetEnabled(true);
    m_fixture->SetEnabled(true);
    QCOMPARE(lasting.Take(), QByteArray("on "));
    m_fixture->SetEnabled(false);
    QCOMPARE(lasting.Take(), QByteArray("off "));
    m_fixture->SetHasProperties(false);
    QCOMPARE(lasting.Take(), QByteArray("off "));
    QVERIFY(!manager->HasProperties());
    QCOMPARE(once.Take(), QByteArray("on "));
    lasting.m_connection = RevisionControlConnection();
    m_fixture->SetHasProperties(true);
    QCOMPARE(lasting.Take(), QByteArray());
}

void BoundaryContract::endOfTheManagerNotifiesWithNull()
{
    Slot slot;
    Slot gone;
    hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr")->Connect(&slot, slot.m_connection);
    hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr")->Connect(&gone, gone.m_connection);
    gone.m_connection = RevisionControlConnection();
    m_fixture.reset();
    QCOMPARE(slot.Take(), QByteArray("null "));
    QCOMPARE(gone.Take(), QByteArray());
}

void BoundaryContract::requestedStatesArriveLater()
{
    const ItemID first = m_fixture->Add(ItemWish(VireoType::gCompound, "A"));
    const ItemID second = m_fixture->Add(ItemWish(VireoType::gCompound, "B"));
    m_fixture->SetState(first, m_fixture->GetOneState());
    m_fixture->SetState(second, m_fixture->GetOtherState());
    NotificationSpy spy(m_fixture->GetLibrary());
    Task task;
    const Handles wanted = {ObjectOf(second), NEXAHandle<IDbObject>(), ObjectOf(first)};
    bool asking = false;
    bool answeredInside = false;
    int answers = 0;
    spy.m_reaction = [&](const QByteArray& in_call) {
        if (!in_call.startsWith("state"))
            return;
        answeredInside = answeredInside || asking;
        asking = true;
        if (++answers == 1)
            task->RequestObjectStates(wanted);
        asking = false;
    };
    asking = true;
    task->RequestObjectStates(wanted);
    asking = false;
    QCOMPARE(spy.Take(), QByteArray());
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QVERIFY(!answeredInside);
    QCOMPARE(answers, 4);
    const QByteArray round = "begin, state B " + QByteArray::number(m_fixture->GetOtherState()) + ", state A " +
                             QByteArray::number(m_fixture->GetOneState()) + ", end";
    QCOMPARE(spy.Take(), QByteArray(round + ", " + round));
}

void BoundaryContract::requestsOfAnEndedTaskAreDropped()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "A"));
    NotificationSpy spy(m_fixture->GetLibrary());
    Task dropped;
    Task kept;
    dropped->RequestObjectStates(Handles(3, ObjectOf(id)));
    kept->RequestObjectStates(Handles(2, ObjectOf(id)));
    dropped.End();
    QCoreApplication::processEvents();
    QCOMPARE(int(spy.Take().count("state A")), 2);

    // Also when it ends in the middle of its answers.
    kept->RequestObjectStates(Handles(5, ObjectOf(id)));
    spy.m_reaction = [&](const QByteArray& in_call) {
        if (in_call.startsWith("state"))
            kept.End();
    };
    QCoreApplication::processEvents();
    QCOMPARE(int(spy.Take().count("state A")), 1);
}

void BoundaryContract::requestsOutliveItemsAndLibraries()
{
    const ItemID gone = m_fixture->Add(ItemWish(VireoType::gCompound, "Gone"));
    const ItemID stays = m_fixture->Add(ItemWish(VireoType::gCompound, "Stays"));
    NotificationSpy spy(m_fixture->GetLibrary());
    Task task;
    task->RequestObjectStates(Handles{ObjectOf(gone), ObjectOf(stays)});
    m_fixture->Remove(gone, nullptr);
    spy.Take();
    QCoreApplication::processEvents();
    const QByteArray notified = spy.Take();
    QVERIFY(notified.contains("state Stays"));
    QVERIFY(!notified.contains("Gone"));

    task->RequestObjectStates(Handles(4, ObjectOf(stays)));
    spy.m_reaction = [&](const QByteArray& in_call) {
        if (in_call.startsWith("state"))
            m_fixture->Close();
    };
    QCoreApplication::processEvents();
    QCOMPARE(int(spy.Take().count("state Stays")), 1);
}

void BoundaryContract::checkingOutAndMakingWritableSetStates()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "A"));
    ItemWish product(VireoType::gCompound, "P");
    product.m_source = "Product";
    const ItemID productItem = m_fixture->Add(product);
    NotificationSpy spy(m_fixture->GetLibrary());

    bool done = false;
    Helper()->CheckOut(ObjectOf(id), &done, true);
    QVERIFY(done);
    const QByteArray checkedOut = spy.Take();
    QVERIFY(checkedOut.startsWith("begin, state A "));
    Helper()->CheckOut(ObjectOf(id), nullptr, true);
    QCOMPARE(spy.Take(), QByteArray());
    Helper()->MakeWritable(ObjectOf(id), true);
    const QByteArray writable = spy.Take();
    QVERIFY(writable.startsWith("begin, state A "));
    QVERIFY(writable != checkedOut);

    Helper()->CheckOut(ObjectOf(productItem), &done, true);
    QVERIFY(!done);
    done = true;
    Helper()->CheckOut(NEXAHandle<IDbObject>(), &done, true);
    QVERIFY(!done);
    Helper()->MakeWritable(NEXAHandle<IDbObject>(), true);
    Helper()->ShowFiles(NEXAHandle<IDbObject>(), nullptr);
    Helper()->ShowFiles(ObjectOf(id), nullptr);
    QCOMPARE(spy.Take(), QByteArray());
}

void BoundaryContract::badgeIsPaintedOnlyWhenActiveAndKnown()
{
    QVERIFY(!ScsUtils::IsFileVersionControlActive());
    m_fixture->SetVersionControlActive(true);
    QVERIFY(ScsUtils::IsFileVersionControlActive());

    QPixmap base(27, 20);
    base.fill(Qt::white);
    const QImage plain = base.toImage();
    const unsigned state = m_fixture->GetOneState();
    QVERIFY(ScsUtils::getAssetStateIcon(base, state, false, true).toImage() == plain);
    QVERIFY(ScsUtils::getAssetStateIcon(base, eAccessStateUnknown, true, true).toImage() == plain);
    // Room for a badge may come with the request, so that the icon does not move when the answer comes.
    const QImage requested = ScsUtils::getAssetStateIcon(base, eAccessStateRequested, true, true).toImage();
    const QImage badge = ScsUtils::getAssetStateIcon(base, state, true, true).toImage();
    QVERIFY(requested.size() == plain.size() || requested.size() == badge.size());
    QVERIFY(RightEnd(requested, 27) == Comparable(plain));
    QVERIFY(badge.size() == plain.size() || badge.size() == QSize(34, 20));
    QVERIFY(badge != requested);
    QVERIFY(badge != ScsUtils::getAssetStateIcon(base, m_fixture->GetOtherState(), true, true).toImage());
    const QImage besideAMark = ScsUtils::getAssetStateIcon(base, state, true, false).toImage();
    QCOMPARE(besideAMark.size(), plain.size());
    QVERIFY(besideAMark != plain);
    QVERIFY(besideAMark.copy(0, 0, 7, 20) == plain.copy(0, 0, 7, 20));
    QVERIFY(base.toImage() == plain);
    QPixmap none;
    QVERIFY(ScsUtils::getAssetStateIcon(none, state, true, true).isNull());
}

void BoundaryContract::layersTakeTurns()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "A"));
    const NEXAHandle<IDbObject> object = ObjectOf(id);
    hmx::ISystem* const system = hmxGetSystem();
    QVERIFY(object.IsValid());

    std::unique_ptr<BoundaryFixture> other = MakeFixture();
    QVERIFY(hmxGetSystem() != system);
    QVERIFY(!object.IsValid());
    QVERIFY(!DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(id)));
    const NEXAHandle<IDbObject> otherObject = ObjectOf(other->Add(ItemWish(VireoType::gCompound, "A")));
    QVERIFY(otherObject.IsValid());
    QVERIFY(otherObject.GetInstance() != object.GetInstance());

    m_fixture->Install();
    QVERIFY(hmxGetSystem() == system);
    QVERIFY(object.IsValid());
    QVERIFY(!otherObject.IsValid());
    other->Install();
    QVERIFY(otherObject.IsValid());
    other.reset();
    QVERIFY(hmxGetSystem() == system);
    QVERIFY(object.IsValid());
}

void BoundaryContract::deadLayerIsNotPutBack()
{
    std::unique_ptr<BoundaryFixture> second = MakeFixture();
    hmx::ISystem* const secondSystem = hmxGetSystem();
    std::unique_ptr<BoundaryFixture> third = MakeFixture();
    m_fixture.reset();
    third.reset();
    QVERIFY(hmxGetSystem() == secondSystem);
    third = MakeFixture();
    second->Install();
    second.reset();
    QVERIFY(hmxGetSystem() != nullptr);
    QVERIFY(hmxGetSystem() != secondSystem);
    third.reset();
    QVERIFY(!hmxGetSystem());
}

} // namespace contract
