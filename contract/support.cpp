// SPDX-License-Identifier: MIT
#include "contract/support.h"

using namespace vireo::datamodel;

namespace contract
{
namespace
{

/// More steps than any library of a promise has items.
const std::size_t gMostSteps = 1000;

} // namespace

std::vector<const char*> AllTypes()
{
    return {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant, VireoType::gSolver,
            LibType::gType};
}

ItemWish WishOfKind(int in_kind, const std::string& in_name)
{
    const char* const types[] = {VireoType::gCompound, VireoType::gCompound,          VireoType::gCompound,
                                 VireoType::gSolver,   VireoType::gPolymorphicSolver, VireoType::gGlobalConstant,
                                 LibType::gType};
    ItemWish wish(types[in_kind], in_name);
    wish.m_signature = in_kind == eSignatureKind;
    wish.m_loop = in_kind == eLoopKind;
    return wish;
}

ItemWish WishInSource(const char* in_type, const std::string& in_name, const std::string& in_source)
{
    ItemWish wish(in_type, in_name);
    wish.m_source = in_source;
    return wish;
}

ItemWish ReadOnlyWish(const char* in_type, const std::string& in_name)
{
    ItemWish wish(in_type, in_name);
    wish.m_readOnly = true;
    return wish;
}

std::string NameOf(const ItemLibraryAccessor& in_library, const ItemID& in_item)
{
    return Call("GetItemName()", [&] { return in_library.GetItemName(in_item, true, nullptr); });
}

std::string TagsOf(const ItemLibraryAccessor& in_library, const ItemID& in_item, const char* in_key)
{
    return Call("GetItemTags()", [&] { return in_library.GetItemTags(in_item, in_key); });
}

bool IsReadOnly(const ItemLibraryAccessor& in_library, const ItemID& in_item)
{
    return Call("ItemIsReadOnly()", [&] { return in_library.ItemIsReadOnly(in_item); });
}

bool IsDirty(const ItemLibraryAccessor& in_library, const ItemID& in_item)
{
    return Call("ItemIsDirty()", [&] { return in_library.ItemIsDirty(in_item); });
}

UnspecifiedAccessor ModelOf(const ItemLibraryAccessor& in_library, const ItemID& in_item, std::string* out_error)
{
    return Call("GetModel()", [&] { return in_library.GetModel(in_item, out_error); });
}

std::vector<ItemAccessor> ItemsOf(const ItemLibraryAccessor& in_library, const char* in_type)
{
    return Call("IterateItems()", [&] {
        std::vector<ItemAccessor> items;
        for (ItemIterator item = GetTOC(in_library).IterateItems(in_type); !item.IsAtEnd(); item.Next())
        {
            items.push_back(item.GetItem());
            ExpectThat("IterateItems()", "an end", items.size() < gMostSteps, "more items than were added");
        }
        return items;
    });
}

ItemAccessor ItemOf(const ItemLibraryAccessor& in_library, const ItemID& in_item)
{
    for (const char* const type : AllTypes())
        for (const ItemAccessor& item : ItemsOf(in_library, type))
            if (item.GetItemID() == in_item)
                return item;
    ExpectThat("IterateItems()", "to find the item " + Show(in_item), false, "others only");
    return ItemAccessor();
}

std::string Listed(const ItemLibraryAccessor& in_library, const char* in_type)
{
    std::string names;
    for (const ItemAccessor& item : ItemsOf(in_library, in_type))
        names += (names.empty() ? "" : " ") + NameOf(in_library, item.GetItemID());
    return names;
}

bool HasValue(const ItemAccessor& in_item, const char* in_key)
{
    return Call("GetValue()", [&] { return in_item.GetValue(in_key).IsValid(); });
}

bool IsSignature(const ItemAccessor& in_item)
{
    ItemAccessor item = in_item;
    return Call("IsAbstractFunction()", [&] { return Helpers::IsAbstractFunction(item); });
}

bool IsForGraphs(const char* in_type, const ItemAccessor& in_item)
{
    ItemAccessor item = in_item;
    return Call("IsValidGraphItemType()", [&] { return Helpers::IsValidGraphItemType(in_type, item); });
}

bool IsNameUsed(const ItemLibraryAccessor& in_library, const char* in_name)
{
    return Call("IsNameInNodeLibraryHierarchy()", [&] { return IsNameInNodeLibraryHierarchy(in_library, in_name); });
}

std::string UIDOf(const ItemID& in_item)
{
    return Call("GetItemIDUID()", [&] { return std::string(ItemIDUnlock::GetItemIDUID(in_item)); });
}

bool SetTags(const ItemLibraryAccessor& in_library, const ItemID& in_item, const char* in_tags, Commands in_commands,
             const char* in_key)
{
    const ItemLibraryModifierAccessor writer(in_library);
    return Call("SetItemTags()", [&] { return writer.SetItemTags(in_item, in_key, in_tags, in_commands); });
}

CompoundModifierAccessor ModifierOf(const ItemLibraryAccessor& in_library, const ItemID& in_item)
{
    CompoundModifierAccessor compound(ModelOf(in_library, in_item));
    compound.Initialize();
    return compound;
}

void Rename(const ItemLibraryAccessor& in_library, const ItemID& in_item, const char* in_name, Commands in_commands)
{
    const CompoundModifierAccessor compound = ModifierOf(in_library, in_item);
    Call("RenameCompound()", [&] { compound.RenameCompound(in_name, in_commands); });
}

ItemID Create(CompoundModifierAccessor& out_compound, const ItemLibraryAccessor& in_library, const char* in_name,
              bool in_signature, const char* in_baseClass, const char* in_category, Commands in_commands)
{
    return Call("CreateAndSetFromNewCompound()", [&] {
        return out_compound.CreateAndSetFromNewCompound(in_library, in_name, in_signature, in_baseClass, in_category,
                                                        in_commands);
    });
}

ItemID CreateLoop(LoopCompoundModifierAccessor& out_loop, const ItemLibraryAccessor& in_library, const char* in_name,
                  const char* in_baseClass, const char* in_category, Commands in_commands)
{
    return Call("CreateAndSetFromNewLoopCompound()", [&] {
        return out_loop.CreateAndSetFromNewLoopCompound(in_library, in_name, in_baseClass, in_category, in_commands);
    });
}

bool Commit(const ItemLibraryAccessor& in_library)
{
    bool written = false;
    return Commit(in_library, written, nullptr, false, nexa4::UID_Null());
}

bool Commit(const ItemLibraryAccessor& in_library, bool& out_written, std::list<std::string>* out_messages,
            bool in_everything, const nexa4::DbObjectId& in_source)
{
    const ItemLibraryModifierAccessor writer(in_library);
    return Call("CommitToDisk()",
                [&] { return writer.CommitToDisk(out_written, out_messages, in_everything, in_source); });
}

} // namespace contract
