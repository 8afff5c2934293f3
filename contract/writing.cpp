// SPDX-License-Identifier: MIT
#include "contract/notificationspy.h"
#include "contract/support.h"

#include <list>

using namespace vireo::datamodel;

namespace contract
{
namespace
{

class ForeignManager : public hmx::fwk::ICommandManager
{
};

const char* const gTagsOfBlend = "begin, tags Blend ApplicationTags, end";

void WriteIsOneCommandThatUndoesAndRedoes(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    BoundaryFixture& fixture = io_trial.GetFixture();
    NotificationSpy spy(library);

    Expect("SetItemTags() as a command", true, SetTags(library, id, "a", io_trial.GetCommands()));
    Expect("SetItemTags() as a command, the commands", 1, fixture.GetCommandCount());
    Expect("SetItemTags() as a command, its notifications", gTagsOfBlend, spy.Take());
    if (io_trial.Has(eRenaming))
    {
        Rename(library, id, "Mix", io_trial.GetCommands());
        Expect("RenameCompound() as a command, the commands", 2, fixture.GetCommandCount());
        Expect("RenameCompound() as a command, its notifications", "begin, name Mix, end", spy.Take());
        fixture.Undo();
        Expect("GetItemName() after undoing RenameCompound()", "Blend", NameOf(library, id));
        Expect("undoing RenameCompound(), its notifications", "begin, name Blend, end", spy.Take());
    }
    fixture.Undo();
    Expect("GetItemTags() after undoing SetItemTags()", "", TagsOf(library, id));
    Expect("undoing SetItemTags(), its notifications", gTagsOfBlend, spy.Take());
    fixture.Redo();
    Expect("GetItemTags() after redoing SetItemTags()", "a", TagsOf(library, id));
    Expect("redoing SetItemTags(), its notifications", gTagsOfBlend, spy.Take());
    if (io_trial.Has(eRenaming))
    {
        fixture.Redo();
        Expect("GetItemName() after redoing RenameCompound()", "Mix", NameOf(library, id));
        Expect("redoing RenameCompound(), its notifications", "begin, name Mix, end", spy.Take());
        Expect("redoing RenameCompound(), the commands", 2, fixture.GetCommandCount());
    }
}

void RefusedWritesLeaveNoCommand(Trial& io_trial)
{
    const ItemID open = io_trial.Add(ItemWish(VireoType::gCompound, "Open"));
    ItemWish closed = WishInSource(VireoType::gCompound, "Closed", "Product");
    if (!io_trial.CanAdd(closed))
        closed = ReadOnlyWish(VireoType::gCompound, "Closed");
    const ItemID id = io_trial.CanAdd(closed) ? io_trial.Add(closed) : ItemID();
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const Commands commands = io_trial.Has(eUndoing) ? io_trial.GetCommands() : nullptr;
    NotificationSpy spy(library);
    if (io_trial.Has(eTagging))
    {
        Expect("SetItemTags() of an item that takes no changes", false, SetTags(library, id, "a", commands));
        Expect("SetItemTags() of no tags to an item without tags", true, SetTags(library, open, "", commands));
    }
    if (io_trial.Has(eRenaming))
    {
        Rename(library, id, "Other", commands);
        Rename(library, open, "Open", commands);
    }
    if (io_trial.Has(eCreating))
    {
        CompoundModifierAccessor created;
        Expect("CreateAndSetFromNewCompound() with a name in use", ItemID(),
               Create(created, library, "Open", false, "", "", commands));
    }
    Expect("writes that are refused or change nothing, their notifications", "", spy.Take());
    if (commands)
        Expect("writes that are refused or change nothing, the commands", 0, io_trial.GetFixture().GetCommandCount());
}

void WriteWithoutAManagerIsDoneForGood(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    Expect("SetItemTags() without a command manager", true, SetTags(library, id, "a", nullptr));
    Expect("GetItemTags() after SetItemTags() without a command manager", "a", TagsOf(library, id));
    if (io_trial.Has(eUndoing))
        Expect("SetItemTags() without a command manager, the commands", 0, io_trial.GetFixture().GetCommandCount());
}

void ForeignManagerIsTreatedLikeNone(Trial& io_trial)
{
    ForeignManager foreign;
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    NotificationSpy spy(library);
    Expect("SetItemTags() with a foreign command manager", true, SetTags(library, id, "a", &foreign));
    Expect("SetItemTags() with a foreign command manager, its notifications", gTagsOfBlend, spy.Take());
    Expect("GetItemTags() after SetItemTags() with a foreign command manager", "a", TagsOf(library, id));
    if (io_trial.Has(eUndoing))
        Expect("SetItemTags() with a foreign command manager, the commands", 0,
               io_trial.GetFixture().GetCommandCount());
}

void RemovalComesBackWithTheSameIdentity(Trial& io_trial)
{
    io_trial.Add(ItemWish(VireoType::gSolver, "first"));
    const ItemID id = io_trial.Add(ItemWish(VireoType::gSolver, "second"));
    io_trial.Add(ItemWish(VireoType::gSolver, "third"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    BoundaryFixture& fixture = io_trial.GetFixture();
    const ItemAccessor item = ItemOf(library, id);
    NotificationSpy spy(library);

    io_trial.Remove(id, io_trial.GetCommands());
    Expect("IterateItems() after a removal", "first third", Listed(library, VireoType::gSolver));
    Expect("IsValid() of an item that was removed by a command", eInvalid, ValidityOf(item));
    Expect("removing an item by a command, its notifications", "begin, removed second, end", spy.Take());
    fixture.Undo();
    Expect("IterateItems() after undoing a removal", "first second third", Listed(library, VireoType::gSolver));
    Expect("GetItemID() of an item that came back", id, item.GetItemID());
    Expect("undoing a removal, its notifications", "begin, added second, end", spy.Take());
    fixture.Redo();
    Expect("IterateItems() after redoing a removal", "first third", Listed(library, VireoType::gSolver));
    Expect("redoing a removal, its notifications", "begin, removed second, end", spy.Take());
    fixture.Undo();
    Expect("IterateItems() after undoing a removal again", "first second third", Listed(library, VireoType::gSolver));
}

/// Adds an item of each type that the implementation knows, named like its type.
void AddOneOfEachType(Trial& io_trial)
{
    for (const char* const type : AllTypes())
        if (io_trial.CanAdd(ItemWish(type, type)))
            io_trial.Add(ItemWish(type, type));
}

void RenameRefuses(Trial& io_trial)
{
    const ItemWish open(VireoType::gCompound, "Blend");
    struct
    {
        const char* m_what;
        const char* m_name;
        ItemWish m_wish;
    } const cases[] = {
        {"an empty name", "", open},
        {"null", nullptr, open},
        {"a compound's name", VireoType::gCompound, open},
        {"a constant's name", VireoType::gGlobalConstant, open},
        {"another name for a read-only item", "Free", ReadOnlyWish(VireoType::gCompound, "Blend")},
        {"another name in a read-only source", "Free", WishInSource(VireoType::gCompound, "Blend", "Product")},
    };
    for (const auto& refused : cases)
    {
        const bool isConstants = refused.m_name == VireoType::gGlobalConstant;
        if (!io_trial.CanAdd(refused.m_wish) ||
            (isConstants && !io_trial.CanAdd(ItemWish(refused.m_name, refused.m_name))))
            continue;
        io_trial.Restart();
        AddOneOfEachType(io_trial);
        const ItemID id = io_trial.Add(refused.m_wish);
        const ItemLibraryAccessor library = io_trial.GetLibrary();
        const Commands commands = io_trial.Has(eUndoing) ? io_trial.GetCommands() : nullptr;
        NotificationSpy spy(library);
        Rename(library, id, refused.m_name, commands);
        const std::string operation = std::string("RenameCompound() to ") + refused.m_what;
        Expect(operation + ", GetItemName() afterwards", "Blend", NameOf(library, id));
        Expect(operation + ", its notifications", "", spy.Take());
        if (commands)
            Expect(operation + ", the commands", 0, io_trial.GetFixture().GetCommandCount());
    }
}

void CompoundTakesChangesByItemAndSource(Trial& io_trial)
{
    const auto expectBoth = [&](const ItemWish& in_wish, const std::string& in_of, bool in_withSource, bool in_alone) {
        const CompoundModifierAccessor compound = ModifierOf(io_trial.GetLibrary(), io_trial.Add(in_wish));
        Expect("CanModifyCompound(true)" + in_of, in_withSource,
               Call("CanModifyCompound()", [&] { return compound.CanModifyCompound(true); }));
        Expect("CanModifyCompound(false)" + in_of, in_alone,
               Call("CanModifyCompound()", [&] { return compound.CanModifyCompound(false); }));
    };
    expectBoth(ItemWish(VireoType::gCompound, "open"), " of a compound that takes changes", true, true);
    const ItemWish closed = ReadOnlyWish(VireoType::gCompound, "closed");
    if (io_trial.CanAdd(closed))
        expectBoth(closed, " of a read-only item" + AsAgreed(closed), false, false);
    const ItemWish product = WishInSource(VireoType::gCompound, "product", "Product");
    if (io_trial.CanAdd(product))
        expectBoth(product, " in a read-only source" + AsAgreed(product), false, true);
}

void DirtinessFollowsTheCommittedState(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    BoundaryFixture& fixture = io_trial.GetFixture();
    const bool undoes = io_trial.Has(eUndoing);
    const Commands commands = undoes ? io_trial.GetCommands() : nullptr;
    Expect("ItemIsDirty() of an item without changes", false, IsDirty(library, id));
    SetTags(library, id, "a", commands);
    Expect("ItemIsDirty() after a change", true, IsDirty(library, id));
    if (undoes)
    {
        fixture.Undo();
        Expect("ItemIsDirty() after undoing the change", false, IsDirty(library, id));
        fixture.Redo();
        Expect("ItemIsDirty() after redoing the change", true, IsDirty(library, id));
    }
    Expect("CommitToDisk()", true, Commit(library));
    Expect("ItemIsDirty() after CommitToDisk()", false, IsDirty(library, id));
    if (!undoes)
        return;
    fixture.Undo();
    Expect("ItemIsDirty() after undoing what was committed", true, IsDirty(library, id));
    fixture.Redo();
    Expect("ItemIsDirty() after redoing what was committed", false, IsDirty(library, id));
    if (!io_trial.Has(eRenaming))
        return;

    // Undoing does not bring the committed state back when something came in between that cannot be undone.
    SetTags(library, id, "b", commands);
    Rename(library, id, "Mix", nullptr);
    fixture.Undo();
    Expect("ItemIsDirty() with a change in between that cannot be undone", true, IsDirty(library, id));
}

void CommitAsksAndNotifies(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    SetTags(library, id, "a", nullptr);
    NotificationSpy spy(library);
    bool dirtyBefore = false;
    bool dirtyAfter = true;
    spy.m_reaction = [&](const std::string& in_call) {
        (in_call == "precommit" ? dirtyBefore : dirtyAfter) = library.ItemIsDirty(id);
    };
    const LowLevelItemLibraryAccessor lowLevel(library);
    Expect("PreCommit()", true, Call("PreCommit()", [&] { return lowLevel.PreCommit(); }));
    Expect("PreCommit(), its notifications", "", spy.Take());

    bool written = false;
    std::list<std::string> messages;
    Expect("CommitToDisk() of a change", true, Commit(library, written, &messages, false, nexa4::UID_Null()));
    Expect("CommitToDisk() of a change, out_written", true, written);
    Expect("CommitToDisk() of a change, the messages", "", messages.empty() ? "" : messages.front());
    Expect("CommitToDisk(), its notifications", "precommit, postcommit", spy.Take());
    Expect("ItemIsDirty() inside OnPreCommit()", true, dirtyBefore);
    Expect("ItemIsDirty() inside OnPostCommit()", false, dirtyAfter);

    Expect("CommitToDisk() of nothing", true, Commit(library, written, nullptr, false, nexa4::UID_Null()));
    Expect("CommitToDisk() of nothing, out_written", false, written);
    Expect("CommitToDisk() of everything", true, Commit(library, written, nullptr, true, nexa4::UID_Null()));
    Expect("CommitToDisk() of everything, out_written", true, written);
    if (io_trial.Has(eUndoing))
        Expect("CommitToDisk(), the commands", 0, io_trial.GetFixture().GetCommandCount());
}

void VetoStopsTheCommit(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    SetTags(library, id, "a", nullptr);
    NotificationSpy first(library);
    NotificationSpy second(library);
    first.m_veto = true;
    bool written = true;
    Expect("CommitToDisk() against a veto", false, Commit(library, written, nullptr, false, nexa4::UID_Null()));
    Expect("CommitToDisk() against a veto, out_written", false, written);
    Expect("ItemIsDirty() after a veto", true, IsDirty(library, id));
    Expect("CommitToDisk() against a veto, the notifications of who has set it", "precommit", first.Take());
    const std::string others = second.Take();
    ExpectThat("CommitToDisk() against a veto, the notifications of another observer", "no OnPostCommit()",
               others.find("postcommit") == std::string::npos, Show(others));
    first.m_veto = false;
    Expect("CommitToDisk() after the veto is gone", true, Commit(library));
    Expect("ItemIsDirty() after CommitToDisk() without a veto", false, IsDirty(library, id));
}

void CreatedCompoundIsThereAndListed(Trial& io_trial)
{
    struct
    {
        eWishKind m_kind;
        const char* m_name;
    } const kinds[] = {{eCompoundKind, "compound"}, {eLoopKind, "loop compound"}, {eSignatureKind, "signature"}};
    for (const auto& kind : kinds)
    {
        if (!io_trial.CanAdd(WishOfKind(kind.m_kind, "New")))
            continue;
        io_trial.Restart();
        const bool isLoop = kind.m_kind == eLoopKind;
        const ItemLibraryAccessor library = io_trial.GetLibrary();
        NotificationSpy spy(library);
        CompoundModifierAccessor compound;
        LoopCompoundModifierAccessor loop;
        const std::string operation =
            std::string(isLoop ? "CreateAndSetFromNewLoopCompound() of a " : "CreateAndSetFromNewCompound() of a ") +
            kind.m_name;
        const ItemID id =
            isLoop ? CreateLoop(loop, library, "New", nullptr, nullptr, nullptr)
                   : Create(compound, library, "New", kind.m_kind == eSignatureKind, nullptr, nullptr, nullptr);
        Expect(operation + ", its notifications", "begin, added New, end", spy.Take());
        Expect(operation + ", the accessor", eValid, isLoop ? ValidityOf(loop) : ValidityOf(compound));
        if (!isLoop)
            Expect(operation + ", CanModifyCompound()", true, compound.CanModifyCompound(true));
        Expect(operation + ", the type", TypeName{VireoType::gCompound}, TypeName{id.GetType()});
        Expect(operation + ", IterateItems()", "New", Listed(library, VireoType::gCompound));
        Expect(operation + ", LoopCompoundAccessor", isLoop ? eValid : eInvalid,
               ValidityOf(LoopCompoundAccessor(ModelOf(library, id))));
        Expect(operation + ", IsAbstractFunction()", kind.m_kind == eSignatureKind, IsSignature(ItemOf(library, id)));
        Expect(operation + ", ItemIsReadOnly()", false, IsReadOnly(library, id));
        if (io_trial.Has(eCommitting))
            Expect(operation + ", ItemIsDirty()", true, IsDirty(library, id));
    }
}

void CreationIsOneCommandWithOneIdentity(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    BoundaryFixture& fixture = io_trial.GetFixture();
    NotificationSpy spy(library);
    CompoundModifierAccessor compound;
    const ItemID id = Create(compound, library, "New", false, "", "Colour", io_trial.GetCommands());
    Expect("CreateAndSetFromNewCompound() as a command, the commands", 1, fixture.GetCommandCount());
    Expect("CreateAndSetFromNewCompound() as a command, its notifications", "begin, added New, end", spy.Take());
    fixture.Undo();
    Expect("undoing CreateAndSetFromNewCompound(), its notifications", "begin, removed New, end", spy.Take());
    Expect("undoing CreateAndSetFromNewCompound(), the accessor", eInvalid, ValidityOf(compound));
    Expect("IterateItems() after undoing CreateAndSetFromNewCompound()", "", Listed(library, VireoType::gCompound));
    fixture.Redo();
    Expect("redoing CreateAndSetFromNewCompound(), its notifications", "begin, added New, end", spy.Take());
    Expect("redoing CreateAndSetFromNewCompound(), the accessor", eValid, ValidityOf(compound));
    Expect("GetItemName() after redoing CreateAndSetFromNewCompound()", "New", NameOf(library, id));
    if (io_trial.Has(eCommitting))
        Expect("ItemIsDirty() after redoing CreateAndSetFromNewCompound()", true, IsDirty(library, id));
}

void CreationRefuses(Trial& io_trial)
{
    struct
    {
        const char* m_what;
        const char* m_name;
        const char* m_baseClass;
    } const cases[] = {
        {"an empty name", "", ""},
        {"a compound's name", VireoType::gCompound, ""},
        {"a solver's name", VireoType::gSolver, ""},
        {"a polymorphic solver's name", VireoType::gPolymorphicSolver, ""},
        {"a constant's name", VireoType::gGlobalConstant, ""},
        {"an unknown base class", "Free", "0A0B0C0D-0000-4000-8000-0123456789AB"},
        {"a base class that is no identity text", "Free", "Signature"},
    };
    for (const auto& refused : cases)
    {
        bool isAType = false;
        for (const char* const type : AllTypes())
            isAType = isAType || refused.m_name == type;
        if (isAType && !io_trial.CanAdd(ItemWish(refused.m_name, refused.m_name)))
            continue;
        io_trial.Restart();
        AddOneOfEachType(io_trial);
        const ItemLibraryAccessor library = io_trial.GetLibrary();
        const Commands commands = io_trial.Has(eUndoing) ? io_trial.GetCommands() : nullptr;
        NotificationSpy spy(library);
        const std::string with = std::string(" with ") + refused.m_what;
        CompoundModifierAccessor compound;
        Expect("CreateAndSetFromNewCompound()" + with, ItemID(),
               Create(compound, library, refused.m_name, false, refused.m_baseClass, nullptr, commands));
        Expect("CreateAndSetFromNewCompound()" + with + ", the accessor", eInvalid, ValidityOf(compound));
        LoopCompoundModifierAccessor loop;
        Expect("CreateAndSetFromNewLoopCompound()" + with, ItemID(),
               CreateLoop(loop, library, refused.m_name, refused.m_baseClass, nullptr, commands));
        Expect("CreateAndSetFromNewLoopCompound()" + with + ", the accessor", eInvalid, ValidityOf(loop));
        Expect("CreateAndSetFromNewCompound()" + with + ", its notifications", "", spy.Take());
        if (commands)
            Expect("CreateAndSetFromNewCompound()" + with + ", the commands", 0,
                   io_trial.GetFixture().GetCommandCount());
    }
}

void BaseClassIsTheUIDOfASignature(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const std::string signature = UIDOf(io_trial.Add(WishOfKind(eSignatureKind, "Signature")));
    const std::string plain = UIDOf(io_trial.Add(WishOfKind(eCompoundKind, "Plain")));
    CompoundModifierAccessor compound;
    ExpectThat("CreateAndSetFromNewCompound() with a signature's identity text as base class", "a compound",
               Create(compound, library, "A", false, signature.c_str(), "", nullptr).IsValid(), "none");
    Expect("CreateAndSetFromNewCompound() with a compound's identity text as base class", ItemID(),
           Create(compound, library, "B", false, plain.c_str(), "", nullptr));
    Expect("CreateAndSetFromNewCompound() with a compound's identity text as base class, the accessor", eInvalid,
           ValidityOf(compound));
}

void CompoundTargetIsRemembered(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    BoundaryFixture& fixture = io_trial.GetFixture();
    Expect("BoundaryFixture::GetCompoundTarget() at first", ItemID(), fixture.GetCompoundTarget());
    const CompoundAccessor compound(ModelOf(io_trial.GetLibrary(), id));
    Helpers::SetGlobalVireoCompoundTarget(compound, CompoundAccessor());
    Expect("SetGlobalVireoCompoundTarget()", id, fixture.GetCompoundTarget());
    Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(), CompoundAccessor());
    Expect("SetGlobalVireoCompoundTarget() of no compound", ItemID(), fixture.GetCompoundTarget());
}

} // namespace

Promises WritingPromises()
{
    const char* const undo = "The browser passes the host's command manager to each write, and people undo each as one "
                             "step that the rows follow.";
    const char* const creation = "The browser makes the compound that it has just created the one that is edited.";
    const char* const commit = "The browser draws a \"*\" behind the name of what is not committed.";
    return {
        {"writeIsOneCommandThatUndoesAndRedoes", eTagging | eUndoing, undo, WriteIsOneCommandThatUndoesAndRedoes},
        {"refusedWritesLeaveNoCommand", 0, "People would undo nothing, and the browser would rebuild for nothing.",
         RefusedWritesLeaveNoCommand},
        {"writeWithoutAManagerIsDoneForGood", eTagging,
         "The browser passes no command manager when its host has set none.", WriteWithoutAManagerIsDoneForGood},
        {"foreignManagerIsTreatedLikeNone", eTagging,
         "The browser passes on the manager that its host has set, whoever made it.", ForeignManagerIsTreatedLikeNone},
        {"removalComesBackWithTheSameIdentity", eRemoving | eUndoing,
         "The browser finds the selected row again after undo, by its identity.", RemovalComesBackWithTheSameIdentity},
        {"renameRefuses", eRenaming, "The browser leaves it to the data layer to refuse a name.", RenameRefuses},
        {"compoundTakesChangesByItemAndSource", 0,
         "The browser enables \"Rename\" and \"Edit Tags\" of a compound by CanModifyCompound(true).",
         CompoundTakesChangesByItemAndSource},
        {"dirtinessFollowsTheCommittedState", eTagging | eCommitting, commit, DirtinessFollowsTheCommittedState},
        {"commitAsksAndNotifies", eTagging | eCommitting,
         "The browser saves by PreCommit() and CommitToDisk(), and the host's observers follow.",
         CommitAsksAndNotifies},
        {"vetoStopsTheCommit", eTagging | eCommitting, "A host's observer keeps the browser's \"Save\" from writing.",
         VetoStopsTheCommit},
        {"createdCompoundIsThereAndListed", eCreating, creation, CreatedCompoundIsThereAndListed},
        {"creationIsOneCommandWithOneIdentity", eCreating | eUndoing, creation, CreationIsOneCommandWithOneIdentity},
        {"creationRefuses", eCreating,
         "The browser's dialog leaves it to the data layer to refuse a name or a base class, and opens nothing then.",
         CreationRefuses},
        {"baseClassIsTheUIDOfASignature", eCreating | eDatabase,
         "The browser's dialog passes the identity text of the signature that was chosen.",
         BaseClassIsTheUIDOfASignature},
        {"compoundTargetIsRemembered", eCompoundTarget, "A double click makes a compound the one that is edited.",
         CompoundTargetIsRemembered},
    };
}

} // namespace contract
