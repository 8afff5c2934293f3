// SPDX-License-Identifier: MIT
#include "contract/notificationspy.h"
#include "contract/support.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <set>

using namespace vireo::datamodel;

namespace contract
{
namespace
{

/// The interfaces that a model offers, each with a blank before it.
std::string OffersOf(const UnspecifiedAccessor& in_model)
{
    std::string offers;
    offers += CompoundAccessor(in_model).IsValid() ? " ICompound" : "";
    offers += CompoundModifierAccessor(in_model).IsValid() ? " ICompoundModifier" : "";
    offers += LoopCompoundAccessor(in_model).IsValid() ? " ILoopCompound" : "";
    offers += LoopCompoundModifierAccessor(in_model).IsValid() ? " ILoopCompoundModifier" : "";
    offers += FunctionAccessor(in_model).IsValid() ? " IFunction" : "";
    offers += TypeDescriptorAccessor(in_model).IsValid() ? " ITypeDescriptor" : "";
    return offers;
}

/// Notes whether the event loop has run.
class EventLoopSpy : public QObject
{
public:
    EventLoopSpy() { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }

    bool event(QEvent* in_event) override
    {
        m_hasRun = m_hasRun || in_event->type() == QEvent::User;
        return QObject::event(in_event);
    }

    bool m_hasRun = false;
};

void TypesAreTheConstantsThemselves(Trial& io_trial)
{
    for (const char* const type : AllTypes())
    {
        const ItemWish wish(type, type);
        if (!io_trial.CanAdd(wish))
            continue;
        const ItemID added = io_trial.Add(wish);
        Expect("GetType() of a new item", TypeName{type}, TypeName{added.GetType()});
        for (const ItemAccessor& item : ItemsOf(io_trial.GetLibrary(), type))
            Expect("IterateItems(), GetType() of its item", TypeName{type}, TypeName{item.GetItemID().GetType()});
    }
}

void ItemsAreListedUnderTheirTypeInOrderOfAddition(Trial& io_trial)
{
    for (const char* const name : {"c", "a", "b"})
        for (const char* const type : AllTypes())
            if (io_trial.CanAdd(ItemWish(type, std::string(type) + name)))
                io_trial.Add(ItemWish(type, std::string(type) + name));
    for (const char* const type : AllTypes())
    {
        const std::string word = type;
        if (io_trial.CanAdd(ItemWish(type, word)))
            Expect("IterateItems() of type " + word, (word + "c ").append(word + "a ").append(word + "b"),
                   Listed(io_trial.GetLibrary(), type));
    }
}

void OtherPointersListNothing(Trial& io_trial)
{
    io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const std::string copy = VireoType::gCompound;
    Expect("IterateItems() of a copy of the type name", std::size_t(0), ItemsOf(library, copy.c_str()).size());
    Expect("IterateItems() of null", std::size_t(0), ItemsOf(library, nullptr).size());
    Expect("IterateItems() of a type without items", std::size_t(0), ItemsOf(library, VireoType::gSolver).size());
    Expect("IterateItems() of a type with one item", std::size_t(1), ItemsOf(library, VireoType::gCompound).size());
}

void IteratorKeepsToTheItemsItBeganWith(Trial& io_trial)
{
    const ItemID first = io_trial.Add(ItemWish(VireoType::gSolver, "first"));
    const ItemID second = io_trial.Add(ItemWish(VireoType::gSolver, "second"));
    const ItemID third = io_trial.Add(ItemWish(VireoType::gSolver, "third"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    ItemIterator iterator = Call("IterateItems()", [&] { return GetTOC(library).IterateItems(VireoType::gSolver); });
    const auto next = [&] { Call("ItemIterator::Next()", [&] { iterator.Next(); }); };
    const auto item = [&] { return Call("ItemIterator::GetItem()", [&] { return iterator.GetItem(); }); };
    Expect("GetItem() at the first item", first, item().GetItemID());

    io_trial.Remove(second, nullptr);
    io_trial.Add(ItemWish(VireoType::gSolver, "fourth"));
    Expect("IterateItems() after a removal and an addition", "first third fourth", Listed(library, VireoType::gSolver));

    next();
    Expect("IsAtEnd() at an item that was removed meanwhile", false, iterator.IsAtEnd());
    Expect("GetItem() at an item that was removed meanwhile", eInvalid, ValidityOf(item()));
    next();
    Expect("GetItem() after an item that was removed meanwhile", third, item().GetItemID());
    next();
    Expect("IsAtEnd() before an item that was added meanwhile", true, iterator.IsAtEnd());
    next();
    Expect("IsAtEnd() after a step at the end", true, iterator.IsAtEnd());
    Expect("GetItem() at the end", eInvalid, ValidityOf(item()));
}

void IdentityStaysTheSame(Trial& io_trial)
{
    const ItemID added = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const auto expectIt = [&](const std::string& in_when) {
        for (const ItemAccessor& item : ItemsOf(library, VireoType::gCompound))
        {
            Expect("GetItemID() of an iterated item" + in_when, added, item.GetItemID());
            Expect("GetItemID() asked again" + in_when, added, item.GetItemID());
        }
        Expect("GetItemID() of a compound's model" + in_when, added,
               CompoundAccessor(ModelOf(library, added)).GetItemID());
    };
    expectIt("");
    if (io_trial.Has(eTagging))
    {
        SetTags(library, added, "mix", nullptr);
        expectIt(" with other tags");
    }
    if (io_trial.Has(eRenaming))
    {
        Rename(library, added, "Mix", nullptr);
        expectIt(" with another name");
    }
}

void IdentitiesAreNeverReused(Trial& io_trial)
{
    std::set<ItemID> ids;
    std::set<std::string> texts;
    const auto remember = [&](const ItemID& in_item) {
        ExpectThat("BoundaryFixture::Add() after a removal", "a new identity", ids.insert(in_item).second,
                   Show(in_item) + " again");
        ExpectThat("Serialize() of a new identity", "a new text", texts.insert(in_item.Serialize()).second,
                   Show(in_item) + " again");
    };
    for (int i = 0; i < 20; ++i)
    {
        const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
        remember(id);
        io_trial.Remove(id, nullptr);
    }
    if (!io_trial.Has(eSeveralLayers))
        return;
    const std::unique_ptr<BoundaryFixture> other = io_trial.MakeFixture();
    remember(other->Add(ItemWish(VireoType::gCompound, "Blend")));
}

void ItemThatIsGoneAnswersNothing(Trial& io_trial)
{
    ItemWish wish = ReadOnlyWish(VireoType::gCompound, "Blend");
    wish.m_readOnly = io_trial.CanAdd(wish);
    wish.m_tags = "mix";
    if (!io_trial.CanAdd(wish))
        wish.m_tags.clear();
    const ItemID id = io_trial.Add(wish);
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemAccessor item = ItemOf(library, id);
    const UnspecifiedAccessor model = ModelOf(library, id);
    Expect("GetModel() of an item", eValid, ValidityOf(model));
    // What is asked before may be remembered, and must not come back.
    Expect("GetItemName() of an item", "Blend", NameOf(library, id));
    Expect("GetItemTags() of an item", wish.m_tags, TagsOf(library, id));
    Expect("ItemIsReadOnly() of an item", wish.m_readOnly, IsReadOnly(library, id));
    io_trial.Remove(id, nullptr);

    struct
    {
        const char* m_what;
        ItemID m_id;
    } const cases[] = {{"a removed item", id},
                       {"the invalid identity", ItemID()},
                       {"an item of another library", ItemID(VireoType::gCompound, 123456789, 0)}};
    for (const auto& gone : cases)
    {
        const std::string of = std::string(" of ") + gone.m_what;
        Expect("GetItemName()" + of, "", NameOf(library, gone.m_id));
        Expect("GetItemTags()" + of, "", TagsOf(library, gone.m_id));
        Expect("ItemIsReadOnly()" + of, false, IsReadOnly(library, gone.m_id));
        Expect("ItemIsDirty()" + of, false, IsDirty(library, gone.m_id));
        Expect("GetModel()" + of, eInvalid, ValidityOf(ModelOf(library, gone.m_id)));
        ExpectThat("GetItemIDUID()" + of, "no identity text", !nexa4::DbObjectId::IsUID(UIDOf(gone.m_id).c_str()),
                   Show(UIDOf(gone.m_id)));
        Expect("SetItemTags()" + of, false, SetTags(library, gone.m_id, "a", nullptr));
    }
    Expect("IsValid() of a removed item's model", eInvalid, ValidityOf(model));
    Expect("IsValid() of a removed item", eInvalid, ValidityOf(item));
}

void NamesAndTagsAreLatin1(Trial& io_trial)
{
    // Two names with umlauts; "\xC4" is one of them as one byte.
    ItemWish wish(VireoType::gSolver, "\xC4hnlich \xFC");
    const ItemID plain = io_trial.Add(wish);
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    Expect("GetItemName() of a name in Latin-1", wish.m_name, NameOf(library, plain));
    Expect("GetItemTags() of an item without tags", "", TagsOf(library, plain));

    wish.m_tags = "farb\xF6l;mix";
    if (!io_trial.CanAdd(wish))
        return;
    const ItemID tagged = io_trial.Add(wish);
    Expect("GetItemTags() of tags in Latin-1", wish.m_tags, TagsOf(library, tagged));
    Expect("GetItemTags() under another text \"ApplicationTags\"", wish.m_tags,
           TagsOf(library, tagged, std::string("ApplicationTags").c_str()));
    Expect("GetItemTags() under an unknown key", "", TagsOf(library, tagged, "OtherTags"));
    Expect("GetItemTags() under the key null", "", TagsOf(library, tagged, nullptr));
}

void PartsOfOtherItemsHaveValues(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemAccessor plain = ItemOf(library, io_trial.Add(ItemWish(VireoType::gSolver, "Plain")));
    Expect("GetValue(\"Parent\") of an item of its own", false, HasValue(plain, gParentKey));
    Expect("GetValue(\"Specializes\") of an item of its own", false, HasValue(plain, gSpecializesKey));
    Expect("GetValue() under an unknown key", false, HasValue(plain, "Other"));
    Expect("GetValue() under the key null", false, HasValue(plain, nullptr));

    ItemWish nested(VireoType::gCompound, "Nested");
    nested.m_parent = true;
    if (io_trial.CanAdd(nested))
    {
        const ItemAccessor item = ItemOf(library, io_trial.Add(nested));
        Expect("GetValue(\"Parent\") of an item inside another" + AsAgreed(nested), true, HasValue(item, "Parent"));
        Expect("GetValue(\"Specializes\") of an item inside another", false, HasValue(item, "Specializes"));
        Expect("GetValue() of an item inside another under an unknown key", false, HasValue(item, "Other"));
        Expect("GetValue() of an item inside another under the key null", false, HasValue(item, nullptr));
    }
    ItemWish special(VireoType::gGlobalConstant, "Special");
    special.m_specializes = true;
    if (io_trial.CanAdd(special))
    {
        const ItemAccessor item = ItemOf(library, io_trial.Add(special));
        Expect("GetValue(\"Parent\") of a variant of an item", false, HasValue(item, "Parent"));
        Expect("GetValue(\"Specializes\") of a variant of an item" + AsAgreed(special), true,
               HasValue(item, "Specializes"));
    }
}

void ReadOnlyComesFromItemOrSource(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemID open = io_trial.Add(ItemWish(VireoType::gSolver, "open"));
    Expect("ItemIsReadOnly() of an item that takes changes", false, IsReadOnly(library, open));
    const ItemWish closed = ReadOnlyWish(VireoType::gSolver, "closed");
    if (io_trial.CanAdd(closed))
        Expect("ItemIsReadOnly() of an item that is read-only" + AsAgreed(closed), true,
               IsReadOnly(library, io_trial.Add(closed)));
    const ItemWish product = WishInSource(VireoType::gSolver, "product", "Product");
    if (io_trial.CanAdd(product))
        Expect("ItemIsReadOnly() in a read-only source" + AsAgreed(product), true,
               IsReadOnly(library, io_trial.Add(product)));
}

void ModelsOfferWhatTheirKindOffers(Trial& io_trial)
{
    struct
    {
        eWishKind m_kind;
        const char* m_name;
        const char* m_offers;
    } const kinds[] = {
        {eCompoundKind, "compound", " ICompound ICompoundModifier IFunction"},
        {eLoopKind, "loop compound", " ICompound ICompoundModifier ILoopCompound ILoopCompoundModifier IFunction"},
        {eSignatureKind, "signature", " ICompound ICompoundModifier IFunction"},
        {eSolverKind, "solver", " IFunction"},
        {ePolymorphicKind, "polymorphic solver", " IFunction"},
        {eConstantKind, "constant", ""},
        {eTypeKind, "type", " ITypeDescriptor"},
    };
    for (const auto& kind : kinds)
    {
        const ItemWish wish = WishOfKind(kind.m_kind, kind.m_name);
        if (!io_trial.CanAdd(wish))
            continue;
        const ItemID id = io_trial.Add(wish);
        const UnspecifiedAccessor model = ModelOf(io_trial.GetLibrary(), id);
        const std::string of = std::string(" of a ") + kind.m_name;
        Expect("GetModel()" + of, eValid, ValidityOf(model));
        Expect("GetModel(), the interfaces" + of, "IContext" + std::string(kind.m_offers),
               "IContext" + OffersOf(model));
        const bool isCompound = id.GetType() == VireoType::gCompound;
        Expect("CompoundAccessor::GetItemID()" + of, isCompound ? id : ItemID(), CompoundAccessor(model).GetItemID());
    }
}

void MissingModelIsExplained(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    std::string error;
    Expect("GetModel() of the invalid identity", eInvalid, ValidityOf(ModelOf(library, ItemID(), &error)));
    ExpectThat("GetModel() of the invalid identity, its error", "a reason", !error.empty(), "an empty text");
    error.clear();
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    Expect("GetModel() of a compound", eValid, ValidityOf(ModelOf(library, id, &error)));
    Expect("GetModel() of a compound, its error", "", error);
}

void HelpersTellSignatures(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemAccessor plain = ItemOf(library, io_trial.Add(ItemWish(VireoType::gCompound, "Plain")));
    Expect("IsAbstractFunction() of a compound with a graph", false, IsSignature(plain));
    const ItemWish wish = WishOfKind(eSignatureKind, "Signature");
    const ItemID id = io_trial.Add(wish);
    const ItemAccessor signature = ItemOf(library, id);
    Expect("IsAbstractFunction() of a signature" + AsAgreed(wish), true, IsSignature(signature));
    if (!io_trial.Has(eRemoving))
        return;
    io_trial.Remove(id, nullptr);
    Expect("IsAbstractFunction() of a removed signature", false, IsSignature(signature));
}

void HelpersTellGraphItems(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Plain"));
    const ItemAccessor plain = ItemOf(library, id);
    Expect("IsValidGraphItemType() of an item under its type", true, IsForGraphs(VireoType::gCompound, plain));
    Expect("IsValidGraphItemType() of an item under another type", false, IsForGraphs(VireoType::gSolver, plain));
    ItemWish outside(VireoType::gCompound, "Outside");
    outside.m_forGraphs = false;
    if (io_trial.CanAdd(outside))
        Expect("IsValidGraphItemType() of an item that no graph takes" + AsAgreed(outside), false,
               IsForGraphs(VireoType::gCompound, ItemOf(library, io_trial.Add(outside))));
    if (!io_trial.Has(eRemoving))
        return;
    io_trial.Remove(id, nullptr);
    Expect("IsValidGraphItemType() of a removed item", false, IsForGraphs(VireoType::gCompound, plain));
}

void NodeNamesAreFoundLetterByLetter(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemID compound = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    Expect("IsNameInNodeLibraryHierarchy() of a Compound's name", true, IsNameUsed(library, "Blend"));
    for (const char* const type : {VireoType::gGlobalConstant, VireoType::gSolver, VireoType::gPolymorphicSolver})
    {
        const ItemWish wish(type, std::string(type) + " 1");
        if (!io_trial.CanAdd(wish))
            continue;
        io_trial.Add(wish);
        Expect(std::string("IsNameInNodeLibraryHierarchy() of a ") + type + "'s name", true,
               IsNameUsed(library, wish.m_name.c_str()));
    }
    if (io_trial.CanAdd(ItemWish(LibType::gType, "Colour")))
        io_trial.Add(ItemWish(LibType::gType, "Colour"));
    for (const char* const free : {"blend", "Blend ", "Blen", "", "Colour"})
        Expect("IsNameInNodeLibraryHierarchy() of " + Show(free), false, IsNameUsed(library, free));
    Expect("IsNameInNodeLibraryHierarchy() of null", false, IsNameUsed(library, nullptr));
    Expect("IsNameInNodeLibraryHierarchy() of no library", false, IsNameUsed(ItemLibraryAccessor(), "Blend"));
    if (!io_trial.Has(eRemoving))
        return;
    io_trial.Remove(compound, nullptr);
    Expect("IsNameInNodeLibraryHierarchy() of a removed item's name", false, IsNameUsed(library, "Blend"));
}

void ReadsNeitherNotifyNorRunTheEventLoop(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    NotificationSpy spy(library);
    const EventLoopSpy loop;
    const auto expectNothing = [&](const std::string& in_operation) {
        Expect(in_operation + ", its notifications", "", spy.Take());
        ExpectThat(in_operation, "an answer at once", !loop.m_hasRun, "a run of the event loop");
    };
    const ItemAccessor item = ItemOf(library, id);
    expectNothing("IterateItems()");
    NameOf(library, id);
    expectNothing("GetItemName()");
    TagsOf(library, id);
    expectNothing("GetItemTags()");
    IsReadOnly(library, id);
    expectNothing("ItemIsReadOnly()");
    IsDirty(library, id);
    expectNothing("ItemIsDirty()");
    ModelOf(library, id);
    expectNothing("GetModel()");
    HasValue(item, gParentKey);
    expectNothing("GetValue()");
    IsSignature(item);
    expectNothing("IsAbstractFunction()");
    IsForGraphs(VireoType::gCompound, item);
    expectNothing("IsValidGraphItemType()");
    UIDOf(id);
    expectNothing("GetItemIDUID()");
    IsNameUsed(library, "Blend");
    expectNothing("IsNameInNodeLibraryHierarchy()");
}

} // namespace

Promises ReadingPromises()
{
    return {
        {"typesAreTheConstantsThemselves", 0, "The browser compares type names by address.",
         TypesAreTheConstantsThemselves},
        {"itemsAreListedUnderTheirTypeInOrderOfAddition", 0,
         "The browser shows items of equal names in the order of the table of contents.",
         ItemsAreListedUnderTheirTypeInOrderOfAddition},
        {"otherPointersListNothing", 0,
         "The browser asks for each type by its constant and shows all that it gets, as items of that type.",
         OtherPointersListNothing},
        {"iteratorKeepsToTheItemsItBeganWith", eRemoving,
         "The browser steps through a type until the end, whatever changes meanwhile.",
         IteratorKeepsToTheItemsItBeganWith},
        {"identityStaysTheSame", 0,
         "The browser finds rows, the selection and the item of a notification by the identity that it read in a "
         "rebuild.",
         IdentityStaysTheSame},
        {"identitiesAreNeverReused", eRemoving,
         "The browser keeps the identities of items that are gone until its next rebuild; graphs keep those that were "
         "dropped on them.",
         IdentitiesAreNeverReused},
        {"itemThatIsGoneAnswersNothing", eRemoving,
         "The browser asks about items that may be gone: in rows until the next rebuild, and after a menu or a dialog. "
         "What is thrown then reaches the host's event loop.",
         ItemThatIsGoneAnswersNothing},
        {"namesAndTagsAreLatin1", 0, "The browser draws and searches names and tags as 8-bit Latin-1.",
         NamesAndTagsAreLatin1},
        {"partsOfOtherItemsHaveValues", 0, "The browser leaves out items with either value.",
         PartsOfOtherItemsHaveValues},
        {"readOnlyComesFromItemOrSource", 0, "The browser offers to edit the tags of an item that takes changes only.",
         ReadOnlyComesFromItemOrSource},
        {"modelsOfferWhatTheirKindOffers", 0,
         "The browser tells by the interfaces of a model what a double click opens, what can be renamed, and what the "
         "type selector accepts.",
         ModelsOfferWhatTheirKindOffers},
        {"missingModelIsExplained", 0,
         "Callers show the reason. The browser itself only asks whether there is a model.", MissingModelIsExplained},
        {"helpersTellSignatures", 0, "The browser shows signatures with an icon and in a tab of their own.",
         HelpersTellSignatures},
        {"helpersTellGraphItems", 0, "The browser lists what a graph can contain under the type that it asked for.",
         HelpersTellGraphItems},
        {"nodeNamesAreFoundLetterByLetter", 0, "The browser's dialogs refuse names that are in use.",
         NodeNamesAreFoundLetterByLetter},
        {"readsNeitherNotifyNorRunTheEventLoop", 0,
         "The browser reads inside its paint event; otherwise its rows are stale or repeated until the next rebuild.",
         ReadsNeitherNotifyNorRunTheEventLoop},
    };
}

} // namespace contract
