// SPDX-License-Identifier: MIT
#include "contract/databaseobject.h"
#include "contract/notificationspy.h"
#include "contract/support.h"

#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QImage>

#include <list>
#include <memory>

using namespace nexa4;
using namespace vireo::datamodel;

namespace contract
{
namespace
{

typedef std::list<NEXAHandle<IDbObject>> Handles;

const int gPatience = 5000; ///< milliseconds

hmx::fwk::INEXADBProxy& CurrentLibrary()
{
    hmx::fwk::INEXADBProxy* const proxy = hmxGetService<hmx::fwk::INEXADBProxy>("NEXADBProxy");
    ExpectThat("hmxGetService(\"NEXADBProxy\")", "an INEXADBProxy", proxy != nullptr, "null");
    return *proxy;
}

IRevisionControlPropertiesMgr& Properties()
{
    IRevisionControlPropertiesMgr* const manager =
        hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr");
    ExpectThat("hmxGetService(\"RevisionControlPropertiesMgr\")", "an IRevisionControlPropertiesMgr",
               manager != nullptr, "null");
    return *manager;
}

/// Processes events until a condition holds, or for a while when it does not.
template <class Condition> void WaitFor(const Condition& in_holds)
{
    QElapsedTimer time;
    time.start();
    do
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    } while (!in_holds() && time.elapsed() < gPatience);
}

/// How often a text is in another.
int CountOf(const std::string& in_part, const std::string& in_text)
{
    int count = 0;
    for (std::size_t at = in_text.find(in_part); at != std::string::npos; at = in_text.find(in_part, at + 1))
        ++count;
    return count;
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

    std::string Take()
    {
        const std::string calls = m_calls;
        m_calls.clear();
        return calls;
    }

    bool m_dropsItself = false;
    RevisionControlConnection m_connection;

private:
    std::string m_calls;
};

class OtherService : public hmx::IBase
{
};

/// Ends a task at the end of a check.
class Task
{
public:
    Task() : m_task(new ScsTask("Contract")) {}
    ~Task() { End(); }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    void Request(const Handles& in_objects)
    {
        Call("RequestObjectStates()", [&] { m_task->RequestObjectStates(in_objects); });
    }
    void End()
    {
        if (m_task)
            m_task->DeleteMe();
        m_task = nullptr;
    }

private:
    ScsTask* m_task;
};

void ServicesAreFoundByNameAndInterface(Trial& io_trial)
{
    const auto isThere = [](const char* in_name) { return hmxGetSystem()->GetService(in_name) != nullptr; };
    Expect("hmxGetSystem() is there", true, hmxGetSystem() != nullptr);
    RevisionControl();
    Properties();
    hmx::fwk::INEXADBProxy& proxy = CurrentLibrary();
    Expect("INEXADBProxy::GetItemLibrary() without a current library", eInvalid, ValidityOf(proxy.GetItemLibrary()));
    io_trial.GetFixture().MakeCurrent();
    Expect("INEXADBProxy::GetItemLibrary() is the current library", true,
           proxy.GetItemLibrary().GetContext() == io_trial.GetLibrary().GetContext());
    Expect("\"RevisionControlUIHelper\" is an IRevisionControlPropertiesMgr", false,
           hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlUIHelper") != nullptr);
    Expect("GetService() finds a name in other letters", false, isThere("revisioncontroluihelper"));
    Expect("GetService() finds the empty name", false, isThere(""));
    Expect("GetService() finds null", false, isThere(nullptr));
    if (io_trial.Has(eUndoing))
        Expect("GetApplicationCommandManager() is the application's", true,
               GetApplicationCommandManager() == io_trial.GetCommands());
    if (!io_trial.Has(eClosing))
        return;
    io_trial.GetFixture().Close();
    Expect("INEXADBProxy::GetItemLibrary() after the library is closed", eInvalid, ValidityOf(proxy.GetItemLibrary()));
}

void ServicesComeAndGo(Trial& io_trial)
{
    const char* const name = "RevisionControlUIHelper";
    BoundaryFixture& fixture = io_trial.GetFixture();
    OtherService other;
    fixture.SetService(name, &other);
    Expect("GetService() finds what replaces a service", true, hmxGetSystem()->GetService(name) == &other);
    Expect("hmxGetService() finds a service without the interface", false,
           hmxGetService<IRevisionControlUIHelper>(name) != nullptr);
    fixture.SetService(name, nullptr);
    Expect("GetService() finds a service that was taken away", false, hmxGetSystem()->GetService(name) != nullptr);
    fixture.SetSystemPresent(false);
    Expect("hmxGetSystem() is there although it was taken away", false, hmxGetSystem() != nullptr);
    Expect("hmxGetService() finds a service without a system", false,
           hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr") != nullptr);
    fixture.SetSystemPresent(true);
    Properties();
}

void PropertiesNotifyConnectedSlots(Trial& io_trial)
{
    IRevisionControlPropertiesMgr& manager = Properties();
    BoundaryFixture& fixture = io_trial.GetFixture();
    Expect("HasProperties()", true, manager.HasProperties());
    Slot lasting;
    Slot once;
    once.m_dropsItself = true;
    manager.Connect(&once, once.m_connection);
    manager.Connect(&lasting, lasting.m_connection);
    Expect("Connect(), the calls of the slot", "", lasting.Take());
    fixture.SetEnabled(true);
    fixture.SetEnabled(true);
    Expect("switching source control on twice, the calls of a slot", "on ", lasting.Take());
    fixture.SetEnabled(false);
    Expect("switching source control off, the calls of a slot", "off ", lasting.Take());
    fixture.SetHasProperties(false);
    Expect("taking the properties away, the calls of a slot", "off ", lasting.Take());
    Expect("HasProperties() after they were taken away", false, manager.HasProperties());
    Expect("the calls of a slot that ends its connection inside the first", "on ", once.Take());
    lasting.m_connection = RevisionControlConnection();
    fixture.SetHasProperties(true);
    Expect("the calls of a slot that is not connected any more", "", lasting.Take());
}

void EndOfTheManagerNotifiesWithNull(Trial& io_trial)
{
    Slot slot;
    Slot gone;
    Properties().Connect(&slot, slot.m_connection);
    Properties().Connect(&gone, gone.m_connection);
    gone.m_connection = RevisionControlConnection();
    io_trial.EndFixture();
    Expect("the end of the properties manager, the calls of a slot", "null ", slot.Take());
    Expect("the end of the properties manager, the calls of a slot that is not connected any more", "", gone.Take());
}

void RequestedStatesArriveLater(Trial& io_trial)
{
    const ItemID first = io_trial.Add(ItemWish(VireoType::gCompound, "A"));
    const ItemID second = io_trial.Add(ItemWish(VireoType::gCompound, "B"));
    BoundaryFixture& fixture = io_trial.GetFixture();
    const std::string one = std::to_string(fixture.GetOneState());
    const std::string other = std::to_string(fixture.GetOtherState());
    fixture.SetState(first, fixture.GetOneState());
    fixture.SetState(second, fixture.GetOtherState());
    NotificationSpy spy(io_trial.GetLibrary());
    Task task;
    const Handles wanted = {ObjectOf(second), NEXAHandle<IDbObject>(), ObjectOf(first)};
    bool asking = false;
    bool answeredInside = false;
    int answers = 0;
    int ends = 0;
    spy.m_reaction = [&](const std::string& in_call) {
        ends += in_call == "end";
        if (in_call.compare(0, 5, "state") != 0)
            return;
        answeredInside = answeredInside || asking;
        asking = true;
        if (++answers == 1)
            task.Request(wanted);
        asking = false;
    };
    asking = true;
    task.Request(wanted);
    asking = false;
    Expect("RequestObjectStates(), its notifications before it returns", "", spy.Take());
    WaitFor([&] { return ends >= 2 && answers >= 4; });
    Expect("RequestObjectStates() answers inside the call", false, answeredInside);
    const std::string round = "begin, state B " + other + ", state A " + one + ", end";
    Expect("RequestObjectStates() twice, the notifications", round + ", " + round, spy.Take());
}

void RequestsOfAnEndedTaskAreDropped(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "A"));
    NotificationSpy spy(io_trial.GetLibrary());
    Task dropped;
    Task kept;
    int ends = 0;
    spy.m_reaction = [&](const std::string& in_call) { ends += in_call == "end"; };
    dropped.Request(Handles(3, ObjectOf(id)));
    kept.Request(Handles(2, ObjectOf(id)));
    dropped.End();
    WaitFor([&] { return ends > 0; });
    Expect("RequestObjectStates() of two tasks, one of them ended: the states", 2, CountOf("state A", spy.Take()));

    // Also when it ends in the middle of its answers.
    kept.Request(Handles(5, ObjectOf(id)));
    ends = 0;
    spy.m_reaction = [&](const std::string& in_call) {
        ends += in_call == "end";
        if (in_call.compare(0, 5, "state") == 0)
            kept.End();
    };
    WaitFor([&] { return ends > 0; });
    Expect("DeleteMe() inside the first answer of five: the states", 1, CountOf("state A", spy.Take()));
}

void RequestsOutliveItemsAndLibraries(Trial& io_trial)
{
    const ItemID gone = io_trial.Add(ItemWish(VireoType::gCompound, "Gone"));
    const ItemID stays = io_trial.Add(ItemWish(VireoType::gCompound, "Stays"));
    NotificationSpy spy(io_trial.GetLibrary());
    Task task;
    task.Request(Handles{ObjectOf(gone), ObjectOf(stays)});
    io_trial.Remove(gone, nullptr);
    spy.Take();
    bool hasEnded = false;
    spy.m_reaction = [&](const std::string& in_call) { hasEnded = hasEnded || in_call == "end"; };
    WaitFor([&] { return hasEnded; });
    const std::string calls = spy.Take();
    Expect("RequestObjectStates() of two items, one of them removed: the states of the other", 1,
           CountOf("state Stays", calls));
    Expect("RequestObjectStates() of two items, one of them removed: its states", 0, CountOf("Gone", calls));
    if (!io_trial.Has(eClosing))
        return;

    task.Request(Handles(4, ObjectOf(stays)));
    hasEnded = false;
    spy.m_reaction = [&](const std::string& in_call) {
        hasEnded = hasEnded || in_call == "end";
        if (in_call.compare(0, 5, "state") == 0)
            io_trial.GetFixture().Close();
    };
    WaitFor([&] { return hasEnded; });
    Expect("closing the library inside the first answer of four: the states", 1, CountOf("state Stays", spy.Take()));
}

void CheckingOutAndMakingWritableSetStates(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "A"));
    const ItemID product = io_trial.Add(WishInSource(VireoType::gCompound, "P", "Product"));
    IRevisionControlUIHelper& helper = RevisionControl();
    NotificationSpy spy(io_trial.GetLibrary());
    const auto expectState = [](const std::string& in_operation, const std::string& in_calls) {
        ExpectThat(in_operation + ", its notifications", "a text that begins with \"begin, state A\"",
                   in_calls.compare(0, 15, "begin, state A ") == 0, Show(in_calls));
    };

    bool done = false;
    helper.CheckOut(ObjectOf(id), &done, true);
    Expect("CheckOut(), out_result", true, done);
    const std::string checkedOut = spy.Take();
    expectState("CheckOut()", checkedOut);
    helper.CheckOut(ObjectOf(id), nullptr, true);
    Expect("CheckOut() of what is checked out, its notifications", "", spy.Take());
    helper.MakeWritable(ObjectOf(id), true);
    const std::string writable = spy.Take();
    expectState("MakeWritable()", writable);
    ExpectThat("MakeWritable(), its notifications", "another state than after CheckOut()", writable != checkedOut,
               Show(writable));

    helper.CheckOut(ObjectOf(product), &done, true);
    Expect("CheckOut() in a read-only source, out_result", false, done);
    done = true;
    helper.CheckOut(NEXAHandle<IDbObject>(), &done, true);
    Expect("CheckOut() of the invalid handle, out_result", false, done);
    helper.MakeWritable(NEXAHandle<IDbObject>(), true);
    helper.ShowFiles(NEXAHandle<IDbObject>(), nullptr);
    helper.ShowFiles(ObjectOf(id), nullptr);
    Expect("CheckOut() that is refused, and ShowFiles(), their notifications", "", spy.Take());
}

void BadgeIsPaintedOnlyWhenActiveAndKnown(Trial& io_trial)
{
    Expect("IsFileVersionControlActive() at first", false, ScsUtils::IsFileVersionControlActive());
    io_trial.GetFixture().SetVersionControlActive(true);
    Expect("IsFileVersionControlActive()", true, ScsUtils::IsFileVersionControlActive());

    QPixmap base(27, 20);
    base.fill(Qt::white);
    const QImage plain = base.toImage();
    const auto icon = [&](unsigned in_state, bool in_active, bool in_ownSpace) {
        return ScsUtils::getAssetStateIcon(base, in_state, in_active, in_ownSpace).toImage();
    };
    const std::string operation = "getAssetStateIcon()";
    const unsigned state = io_trial.GetFixture().GetOneState();
    Expect(operation + " without versioning is the icon", true, icon(state, false, true) == plain);
    Expect(operation + " of an unknown state is the icon", true, icon(eAccessStateUnknown, true, true) == plain);
    // Room for a badge may come with the request, so that the icon does not move when the answer comes.
    const QImage requested = icon(eAccessStateRequested, true, true);
    const QImage badge = icon(state, true, true);
    Expect(operation + " of a requested state has the size of one without or with a badge", true,
           requested.size() == plain.size() || requested.size() == badge.size());
    Expect(operation + " of a requested state ends with the icon", true, RightEnd(requested, 27) == Comparable(plain));
    Expect(operation + " of a state is at most 7 pixels wider", true,
           badge.size() == plain.size() || badge.size() == QSize(34, 20));
    Expect(operation + " of a state has no badge", false, badge == requested);
    Expect(operation + " of two states is the same", false,
           badge == icon(io_trial.GetFixture().GetOtherState(), true, true));
    const QImage besideAMark = icon(state, true, false);
    Expect(operation + " beside a mark has the icon's size", true, besideAMark.size() == plain.size());
    Expect(operation + " beside a mark has no badge", false, besideAMark == plain);
    Expect(operation + " beside a mark leaves the mark free", true,
           besideAMark.copy(0, 0, 7, 20) == plain.copy(0, 0, 7, 20));
    Expect(operation + " leaves the icon that it is given", true, base.toImage() == plain);
    QPixmap none;
    Expect(operation + " of the null icon is null", true,
           ScsUtils::getAssetStateIcon(none, state, true, true).isNull());
}

void LayersTakeTurns(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "A"));
    const NEXAHandle<IDbObject> object = ObjectOf(id);
    hmx::ISystem* const system = hmxGetSystem();
    Expect("hmxGetSystem() is there", true, system != nullptr);

    std::unique_ptr<BoundaryFixture> other = io_trial.MakeFixture();
    Expect("hmxGetSystem() is that of the layer before", false, hmxGetSystem() == system);
    Expect("IsValid() of another layer's handle", false, object.IsValid());
    ExpectThat("GetItemIDUID() of another layer's item", "no identity text", !DbObjectId::IsUID(UIDOf(id).c_str()),
               Show(UIDOf(id)));
    const NEXAHandle<IDbObject> otherObject = ObjectOf(other->Add(ItemWish(VireoType::gCompound, "A")));
    Expect("GetInstance() of two layers is the same", false, otherObject.GetInstance() == object.GetInstance());

    io_trial.GetFixture().Install();
    Expect("hmxGetSystem() is that of the layer that was installed again", true, hmxGetSystem() == system);
    Expect("IsValid() of a handle whose layer was installed again", true, object.IsValid());
    Expect("IsValid() of a handle whose layer was replaced", false, otherObject.IsValid());
    other->Install();
    Expect("IsValid() of the other handle whose layer was installed again", true, otherObject.IsValid());
    other.reset();
    Expect("hmxGetSystem() after the end of the other layer", true, hmxGetSystem() == system);
    Expect("IsValid() of a handle after the end of the other layer", true, object.IsValid());
}

void DeadLayerIsNotPutBack(Trial& io_trial)
{
    std::unique_ptr<BoundaryFixture> second = io_trial.MakeFixture();
    hmx::ISystem* const secondSystem = hmxGetSystem();
    std::unique_ptr<BoundaryFixture> third = io_trial.MakeFixture();
    io_trial.EndFixture();
    third.reset();
    Expect("the end of the last layer puts the second back", true, hmxGetSystem() == secondSystem);
    third = io_trial.MakeFixture();
    second->Install();
    second.reset();
    Expect("the end of the second layer leaves none", false, hmxGetSystem() == nullptr);
    Expect("the end of the second layer leaves it installed", false, hmxGetSystem() == secondSystem);
    third.reset();
    Expect("the end of all layers leaves one", false, hmxGetSystem() != nullptr);
}

} // namespace

Promises ServicePromises()
{
    const char* const services = "The browser looks each service up again whenever it uses it.";
    const char* const properties = "The browser shows or hides badges when its slot is called, and is destroyed before "
                                   "or after the manager.";
    const char* const states = "The browser draws a badge when ItemAccessStateChanged() comes, and ends its task when "
                               "it is destroyed.";
    const char* const layers = "A host or a test may have several data layers in turn; the browser asks the one that "
                               "is installed.";
    return {
        {"servicesAreFoundByNameAndInterface", eServices, services, ServicesAreFoundByNameAndInterface},
        {"servicesComeAndGo", eServices, services, ServicesComeAndGo},
        {"propertiesNotifyConnectedSlots", eSourceControl, properties, PropertiesNotifyConnectedSlots},
        {"endOfTheManagerNotifiesWithNull", eSourceControl, properties, EndOfTheManagerNotifiesWithNull},
        {"requestedStatesArriveLater", eSourceControl | eDatabase, states, RequestedStatesArriveLater},
        {"requestsOfAnEndedTaskAreDropped", eSourceControl | eDatabase, states, RequestsOfAnEndedTaskAreDropped},
        {"requestsOutliveItemsAndLibraries", eSourceControl | eDatabase | eRemoving, states,
         RequestsOutliveItemsAndLibraries},
        {"checkingOutAndMakingWritableSetStates", eSourceControl | eDatabase,
         "The browser's commands \"Check out\" and \"Make writable\" leave it to the data layer to notify.",
         CheckingOutAndMakingWritableSetStates},
        {"badgeIsPaintedOnlyWhenActiveAndKnown", eSourceControl,
         "The browser draws the icon as it comes, the factory mark over its left 7 pixels.",
         BadgeIsPaintedOnlyWhenActiveAndKnown},
        {"layersTakeTurns", eSeveralLayers | eDatabase | eServices, layers, LayersTakeTurns},
        {"deadLayerIsNotPutBack", eSeveralLayers | eServices, layers, DeadLayerIsNotPutBack},
    };
}

} // namespace contract
