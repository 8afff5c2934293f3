// SPDX-License-Identifier: MIT
#include "contract/notificationspy.h"
#include "contract/support.h"

#include <memory>

using namespace vireo::datamodel;

namespace contract
{
namespace
{

bool BeginsWith(const std::string& in_text, const std::string& in_start)
{
    return in_text.compare(0, in_start.size(), in_start) == 0;
}

void AddingNotifiesInsideABracket(Trial& io_trial)
{
    NotificationSpy spy(io_trial.GetLibrary());
    io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    Expect("adding an item, its notifications", "begin, added Blend, end", spy.Take());
}

void RemovingNotifiesWhileTheItemStillAnswers(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy spy(library);
    eValidity atRemoval = eInvalid;
    eValidity atEnd = eValid;
    spy.m_reaction = [&](const std::string& in_call) {
        if (BeginsWith(in_call, "removed"))
            atRemoval = ValidityOf(library.GetModel(id, nullptr));
        if (in_call == "end")
            atEnd = ValidityOf(library.GetModel(id, nullptr));
    };
    io_trial.Remove(id, nullptr);
    Expect("removing an item, its notifications", "begin, removed Blend, end", spy.Take());
    Expect("GetModel() inside ItemRemoved()", eValid, atRemoval);
    Expect("GetModel() inside OnEndChanges() after a removal", eInvalid, atEnd);
    io_trial.Remove(id, nullptr);
    Expect("removing an item again, its notifications", "", spy.Take());
}

void ChangesAreThereWhenTheyAreNotified(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy spy(library);
    std::string seen = "no call";
    spy.m_reaction = [&](const std::string& in_call) {
        if (BeginsWith(in_call, "added"))
            seen = Listed(library, VireoType::gCompound);
    };
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    Expect("IterateItems() inside ItemAdded()", "Blend", seen);
    if (io_trial.Has(eTagging))
    {
        spy.m_reaction = [&](const std::string& in_call) {
            if (BeginsWith(in_call, "tags"))
                seen = library.GetItemTags(id, gApplicationTagsKey);
        };
        seen = "no call";
        SetTags(library, id, "mix", nullptr);
        Expect("GetItemTags() inside ItemTagsChanged()", "mix", seen);
    }
    if (io_trial.Has(eRenaming))
    {
        spy.m_reaction = [&](const std::string& in_call) {
            if (BeginsWith(in_call, "name"))
                seen = library.GetItemName(id, true, nullptr);
        };
        seen = "no call";
        Rename(library, id, "Mix", nullptr);
        Expect("GetItemName() inside ItemNameChanged()", "Mix", seen);
    }
}

void TagsNotifyOnceAndOnlyWhenTheyChange(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gSolver, "Solve"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemWish closed = ReadOnlyWish(VireoType::gSolver, "Closed");
    const ItemID closedItem = io_trial.CanAdd(closed) ? io_trial.Add(closed) : ItemID();
    NotificationSpy spy(library);

    Expect("SetItemTags()", true, SetTags(library, id, "a;b", nullptr));
    Expect("SetItemTags(), its notifications", "begin, tags Solve ApplicationTags, end", spy.Take());
    Expect("SetItemTags() of the tags that the item has", true, SetTags(library, id, "a;b", nullptr));
    Expect("SetItemTags() of the tags that the item has, its notifications", "", spy.Take());
    if (closedItem.IsValid())
        Expect("SetItemTags() of a read-only item" + AsAgreed(closed), false,
               SetTags(library, closedItem, "a", nullptr));
    Expect("SetItemTags() of the invalid identity", false, SetTags(library, ItemID(), "a", nullptr));
    Expect("SetItemTags() under the key null", false, SetTags(library, id, "a", nullptr, nullptr));
    Expect("SetItemTags() that is refused, its notifications", "", spy.Take());
}

void TagsAreStoredAsTheyAre(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gSolver, "Solve"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const std::string odd = " odd;; text \xE4;a;a";
    SetTags(library, id, odd.c_str(), nullptr);
    Expect("GetItemTags() after SetItemTags()", odd, TagsOf(library, id));

    NotificationSpy spy(library);
    Expect("SetItemTags() under another key", true, SetTags(library, id, odd.c_str(), nullptr, "Keywords"));
    Expect("SetItemTags() under another key, its notifications", "begin, tags Solve Keywords, end", spy.Take());
    Expect("GetItemTags() under another key", odd, TagsOf(library, id, "Keywords"));
    SetTags(library, id, "a;b", nullptr);
    Expect("GetItemTags() under a key that was left alone", odd, TagsOf(library, id, "Keywords"));
    Expect("SetItemTags() of null", true, SetTags(library, id, nullptr, nullptr, "Keywords"));
    Expect("GetItemTags() after SetItemTags() of null", "", TagsOf(library, id, "Keywords"));
    Expect("GetItemTags() under the other key that was left alone", "a;b", TagsOf(library, id));
}

void RenamingNotifiesOnceAndOnlyWhenItHappens(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy spy(library);
    Rename(library, id, "blend", nullptr);
    Expect("RenameCompound(), its notifications", "begin, name blend, end", spy.Take());
    Rename(library, id, "blend", nullptr);
    Expect("RenameCompound() to the name that it has, its notifications", "", spy.Take());
    Expect("GetItemName() after RenameCompound()", "blend", NameOf(library, id));
}

void OtherKindsAndContextsAreNotRegistered(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemTOCAccessor toc = GetTOC(library);
    NotificationSpy spy(library);
    spy.Stop();
    library.AddObserver(&spy, eItemTOCNotificationKind, library.GetContext());
    library.AddObserver(&spy, eItemLibraryNotificationKind, ContextPtr());
    library.AddObserver(nullptr, eItemLibraryNotificationKind, library.GetContext());
    toc.AddObserver(&spy, eItemLibraryNotificationKind, toc.GetContext());
    toc.AddObserver(&spy, eItemTOCNotificationKind, ContextPtr());
    toc.AddObserver(nullptr, eItemTOCNotificationKind, toc.GetContext());
    io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    Expect("AddObserver() with another kind or context, the notifications", "", spy.Take());

    library.AddObserver(&spy, eItemLibraryNotificationKind, library.GetContext());
    library.RemoveObserver(&spy, eItemTOCNotificationKind, library.GetContext());
    io_trial.Add(ItemWish(VireoType::gCompound, "Mix"));
    Expect("RemoveObserver() with another kind, the notifications", "begin, end", spy.Take());
}

void ObserverIsRegisteredOnce(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy spy(library);
    spy.Start();
    io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    Expect("AddObserver() twice, the notifications", "begin, added Blend, end", spy.Take());
    spy.Stop();
    spy.Stop();
    io_trial.Add(ItemWish(VireoType::gCompound, "Mix"));
    Expect("RemoveObserver() after AddObserver() twice, the notifications", "", spy.Take());
}

void ObserversAreNotifiedInOrderOfRegistration(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy first(library);
    NotificationSpy second(library);
    std::string order;
    first.m_reaction = [&](const std::string& in_call) { order += "1 " + in_call + " "; };
    second.m_reaction = [&](const std::string& in_call) { order += "2 " + in_call + " "; };
    io_trial.Add(ItemWish(VireoType::gCompound, "A"));
    Expect("the notifications of two observers", "1 begin 2 begin 1 added A 2 added A 1 end 2 end ", order);
}

void ObserverMayRemoveItselfAndOthersInACall(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy first(library);
    NotificationSpy second(library);
    NotificationSpy third(library);
    first.m_reaction = [&](const std::string& in_call) {
        if (in_call != "added A")
            return;
        first.Stop();
        second.Stop();
    };
    io_trial.Add(ItemWish(VireoType::gCompound, "A"));
    Expect("the notifications of an observer that removes itself", "begin, added A", first.Take());
    Expect("the notifications of an observer that another one removes", "begin", second.Take());
    Expect("the notifications of an observer beside them", "begin, added A, end", third.Take());
}

void ObserverAddedInACallIsNotifiedLater(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy first(library);
    std::vector<std::unique_ptr<NotificationSpy>> later;
    first.m_reaction = [&](const std::string& in_call) {
        if (in_call == "added A")
            for (int i = 0; i < 50; ++i)
                later.emplace_back(new NotificationSpy(library));
    };
    io_trial.Add(ItemWish(VireoType::gCompound, "A"));
    Expect("the observers that are added inside a call", std::size_t(50), later.size());
    for (const std::unique_ptr<NotificationSpy>& spy : later)
    {
        const std::string calls = spy->Take();
        ExpectThat("AddObserver() inside ItemAdded()", "no notification of that item",
                   calls.find("added A") == std::string::npos, Show(calls));
    }
    io_trial.Add(ItemWish(VireoType::gCompound, "B"));
    for (const std::unique_ptr<NotificationSpy>& spy : later)
        Expect("AddObserver() inside ItemAdded(), the next notifications", "begin, added B, end", spy->Take());
}

void ObserverMayWriteInACall(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy spy(library);
    Commands commands = nullptr;
    const auto replaceTags = [&](const std::string& in_call) {
        if (in_call == "tags Blend ApplicationTags" && library.GetItemTags(id, gApplicationTagsKey) == "a")
            SetTags(library, id, "b", commands);
    };
    spy.m_reaction = replaceTags;
    Expect("SetItemTags() that an observer answers by another", true, SetTags(library, id, "a", nullptr));
    Expect("GetItemTags() after SetItemTags() inside ItemTagsChanged()", "b", TagsOf(library, id));
    Expect("SetItemTags() inside ItemTagsChanged(), the notifications",
           "begin, tags Blend ApplicationTags, begin, tags Blend ApplicationTags, end, end", spy.Take());
    spy.m_reaction = nullptr;
    if (!io_trial.Has(eUndoing))
        return;

    commands = io_trial.GetCommands();
    SetTags(library, id, "", nullptr);
    spy.m_reaction = replaceTags;
    Expect("SetItemTags() that an observer answers by another command", true, SetTags(library, id, "a", commands));
    Expect("GetItemTags() after a command inside ItemTagsChanged()", "b", TagsOf(library, id));
    Expect("the commands after one inside ItemTagsChanged()", 2, io_trial.GetFixture().GetCommandCount());
    spy.m_reaction = nullptr;
    io_trial.GetFixture().Undo();
    Expect("GetItemTags() after undoing the inner command", "a", TagsOf(library, id));
    io_trial.GetFixture().Undo();
    Expect("GetItemTags() after undoing both commands", "", TagsOf(library, id));
    io_trial.GetFixture().Redo();
    io_trial.GetFixture().Redo();
    Expect("GetItemTags() after redoing both commands", "b", TagsOf(library, id));
    if (!io_trial.Has(eRenaming))
        return;

    // While the stack itself is at work a write takes effect as well, whatever becomes of it on the stack.
    spy.m_reaction = [&](const std::string& in_call) {
        if (BeginsWith(in_call, "tags"))
            Rename(library, id, "Renamed", commands);
    };
    io_trial.GetFixture().Undo();
    spy.m_reaction = nullptr;
    Expect("GetItemTags() after an undo that an observer answers by a write", "a", TagsOf(library, id));
    Expect("GetItemName() after RenameCompound() inside an undo", "Renamed", NameOf(library, id));
}

void ClosingNotifiesAndEmptiesEverything(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemTOCAccessor toc = GetTOC(library);
    const UnspecifiedAccessor model = ModelOf(library, id);
    ItemIterator iterator = toc.IterateItems(VireoType::gCompound);
    const bool undoes = io_trial.Has(eTagging | eUndoing);
    if (undoes)
        SetTags(library, id, "a", io_trial.GetCommands());
    NotificationSpy spy(library);
    bool hasItem = true;
    spy.m_reaction = [&](const std::string& in_call) {
        if (in_call == "invalidated")
            hasItem = model.IsValid() || !toc.IterateItems(VireoType::gCompound).IsAtEnd();
    };

    io_trial.GetFixture().Close();
    Expect("closing the library, its notifications", "begin, invalidated, end", spy.Take());
    ExpectThat("IterateItems() inside LibraryInvalidated() of the end", "no items", !hasItem, "items");
    Expect("IsValid() of a closed library", eInvalid, ValidityOf(library));
    Expect("IsValid() of a closed library's table of contents", eInvalid, ValidityOf(toc));
    Expect("IsValid() of a model in a closed library", eInvalid, ValidityOf(model));
    Expect("ItemIterator::GetItem() in a closed library", eInvalid, ValidityOf(iterator.GetItem()));
    Expect("GetTOC() of a closed library", eInvalid, ValidityOf(GetTOC(library)));
    Expect("GetItemName() in a closed library", "", NameOf(library, id));
    Expect("BoundaryFixture::Add() to a closed library", ItemID(),
           io_trial.GetFixture().Add(ItemWish(VireoType::gCompound, "Other")));
    if (undoes)
    {
        io_trial.GetFixture().Undo();
        io_trial.GetFixture().Redo();
    }
    spy.Stop();
    Expect("undo in a closed library, its notifications", "", spy.Take());
}

void ClosingInsideACallIsHarmless(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy first(library);
    NotificationSpy second(library);
    first.m_reaction = [&](const std::string& in_call) {
        if (in_call == "added A")
            io_trial.GetFixture().Close();
        if (in_call == "invalidated")
        {
            second.Stop();
            second.Take();
        }
    };
    io_trial.GetFixture().Add(ItemWish(VireoType::gCompound, "A"));
    Expect("closing the library inside ItemAdded()", eInvalid, ValidityOf(library));
    Expect("closing the library inside ItemAdded(), the notifications", "begin, added A, begin, invalidated, end, end",
           first.Take());
    Expect("RemoveObserver() inside LibraryInvalidated() of the end, the notifications", "", second.Take());
    Expect("BoundaryFixture::Add() to a library that was closed inside ItemAdded()", ItemID(),
           io_trial.GetFixture().Add(ItemWish(VireoType::gCompound, "B")));
}

} // namespace

Promises NotificationPromises()
{
    const char* const rebuild = "The browser rebuilds its rows after the call. The host's observers beside it wait for "
                                "the end of the bracket.";
    const char* const observers = "The browser registers when a library is attached, and is removed or destroyed "
                                  "inside notifications too.";
    return {
        {"addingNotifiesInsideABracket", 0, rebuild, AddingNotifiesInsideABracket},
        {"removingNotifiesWhileTheItemStillAnswers", eRemoving,
         "The browser may paint inside ItemRemoved() and lists the item then; afterwards it looks for items that are "
         "gone.",
         RemovingNotifiesWhileTheItemStillAnswers},
        {"changesAreThereWhenTheyAreNotified", 0,
         "The browser reads the tags inside ItemTagsChanged(), and names and items at its next paint, which may come "
         "inside the notification.",
         ChangesAreThereWhenTheyAreNotified},
        {"tagsNotifyOnceAndOnlyWhenTheyChange", eTagging,
         "The browser searches the tags that it read last: when the library was built and inside ItemTagsChanged().",
         TagsNotifyOnceAndOnlyWhenTheyChange},
        {"tagsAreStoredAsTheyAre", eTagging,
         "The browser shows in its dialog what it gets, and writes that back with what people changed.",
         TagsAreStoredAsTheyAre},
        {"renamingNotifiesOnceAndOnlyWhenItHappens", eRenaming,
         "The browser searches the names of the last rebuild, and rebuilds after ItemNameChanged().",
         RenamingNotifiesOnceAndOnlyWhenItHappens},
        {"otherKindsAndContextsAreNotRegistered", 0, observers, OtherKindsAndContextsAreNotRegistered},
        {"observerIsRegisteredOnce", 0, observers, ObserverIsRegisteredOnce},
        {"observersAreNotifiedInOrderOfRegistration", 0,
         "The browser is one observer of several: a host that registered before it has its own answer ready.",
         ObserversAreNotifiedInOrderOfRegistration},
        {"observerMayRemoveItselfAndOthersInACall", 0, observers, ObserverMayRemoveItselfAndOthersInACall},
        {"observerAddedInACallIsNotifiedLater", 0, observers, ObserverAddedInACallIsNotifiedLater},
        {"observerMayWriteInACall", eTagging,
         "The browser does not write inside a notification, but the host's observers beside it may.",
         ObserverMayWriteInACall},
        {"closingNotifiesAndEmptiesEverything", eClosing,
         "The browser keeps its accessors when a library ends, and shows no rows because they are invalid.",
         ClosingNotifiesAndEmptiesEverything},
        {"closingInsideACallIsHarmless", eClosing,
         "A host may close the library that the browser shows in answer to any notification.",
         ClosingInsideACallIsHarmless},
    };
}

} // namespace contract
