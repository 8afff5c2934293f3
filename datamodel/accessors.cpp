// SPDX-License-Identifier: MIT
#include "datamodel/compoundmodifier.h"
#include "datamodel/item.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/itemlibrarymodifier.h"
#include "datamodel/itemtoc.h"
#include "datamodel/models.h"

#include <cinttypes>
#include <cstdio>

namespace vireo
{
namespace datamodel
{

const char* const VireoType::gPolymorphicSolver = "PolymorphicSolver";
const char* const VireoType::gCompound = "Compound";
const char* const VireoType::gGlobalConstant = "GlobalConstant";
const char* const VireoType::gSolver = "Solver";
const char* const LibType::gType = "Type";

const char* const gParentKey = "Parent";
const char* const gSpecializesKey = "Specializes";
const char* const gApplicationTagsKey = "ApplicationTags";

std::string ItemID::Serialize() const
{
    if (!IsValid())
        return std::string();
    char numbers[40];
    std::snprintf(numbers, sizeof numbers, ":%016" PRIX64 "-%016" PRIX64, m_space, m_number);
    return m_type + std::string(numbers);
}

ItemID ItemAccessor::GetItemID() const
{
    const IItem* const item = GetInterface();
    return item ? item->GetItemID() : ItemID();
}

CSimpleValue ItemAccessor::GetValue(const char* in_key) const
{
    const IItem* const item = GetInterface();
    return item ? item->GetValue(in_key) : CSimpleValue();
}

ItemIterator::ItemIterator(std::unique_ptr<IItemIterator> in_items) : m_items(std::move(in_items)) {}

void ItemIterator::Next()
{
    if (!IsAtEnd())
        m_items->Next();
}

ItemAccessor ItemIterator::GetItem() const
{
    return IsAtEnd() ? ItemAccessor() : m_items->GetItem();
}

ItemIterator ItemTOCAccessor::IterateItems(const char* in_type) const
{
    const IItemTOC* const toc = GetInterface();
    return toc ? ItemIterator(toc->IterateItems(in_type)) : ItemIterator();
}

void ItemTOCAccessor::AddObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) const
{
    if (IItemTOC* const toc = GetInterface())
        toc->AddObserver(in_observer, in_kind, in_context);
}

void ItemTOCAccessor::RemoveObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) const
{
    if (IItemTOC* const toc = GetInterface())
        toc->RemoveObserver(in_observer, in_kind, in_context);
}

std::string ItemLibraryAccessor::GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const
{
    const IItemLibrary* const library = GetInterface();
    return library ? library->GetItemName(in_item, in_displayName, in_scope) : std::string();
}

std::string ItemLibraryAccessor::GetItemTags(const ItemID& in_item, const char* in_key) const
{
    const IItemLibrary* const library = GetInterface();
    return library ? library->GetItemTags(in_item, in_key) : std::string();
}

bool ItemLibraryAccessor::ItemIsReadOnly(const ItemID& in_item) const
{
    const IItemLibrary* const library = GetInterface();
    return library && library->ItemIsReadOnly(in_item);
}

bool ItemLibraryAccessor::ItemIsDirty(const ItemID& in_item) const
{
    const IItemLibrary* const library = GetInterface();
    return library && library->ItemIsDirty(in_item);
}

UnspecifiedAccessor ItemLibraryAccessor::GetModel(const ItemID& in_item, std::string* out_error) const
{
    const IItemLibrary* const library = GetInterface();
    return library ? library->GetModel(in_item, out_error) : UnspecifiedAccessor();
}

void ItemLibraryAccessor::AddObserver(IItemLibraryNotification* in_observer, int in_kind,
                                      const ContextPtr& in_context) const
{
    if (IItemLibrary* const library = GetInterface())
        library->AddObserver(in_observer, in_kind, in_context);
}

void ItemLibraryAccessor::RemoveObserver(IItemLibraryNotification* in_observer, int in_kind,
                                         const ContextPtr& in_context) const
{
    if (IItemLibrary* const library = GetInterface())
        library->RemoveObserver(in_observer, in_kind, in_context);
}

bool ItemLibraryModifierAccessor::CommitToDisk(bool& out_written, std::list<std::string>* out_messages,
                                               bool in_everything, const nexa4::TezUID& in_source) const
{
    out_written = false;
    IItemLibraryModifier* const library = GetInterface();
    return library && library->CommitToDisk(out_written, out_messages, in_everything, in_source);
}

bool ItemLibraryModifierAccessor::SetItemTags(const ItemID& in_item, const char* in_key, const char* in_tags,
                                              hmx::fwk::ICommandManager* in_commands) const
{
    IItemLibraryModifier* const library = GetInterface();
    return library && library->SetItemTags(in_item, in_key, in_tags, in_commands);
}

bool LowLevelItemLibraryAccessor::PreCommit() const
{
    ILowLevelItemLibrary* const library = GetInterface();
    return library && library->PreCommit();
}

ItemID CompoundAccessor::GetItemID() const
{
    const ICompound* const compound = GetInterface();
    return compound ? compound->GetItemID() : ItemID();
}

void CompoundModifierAccessor::Initialize()
{
    m_initialized = m_context;
}

bool CompoundModifierAccessor::CanModifyCompound(bool in_withSource) const
{
    const ICompoundModifier* const compound = m_initialized == m_context ? GetInterface() : nullptr;
    return compound && compound->CanModifyCompound(in_withSource);
}

void CompoundModifierAccessor::RenameCompound(const char* in_newName, hmx::fwk::ICommandManager* in_commands) const
{
    if (ICompoundModifier* const compound = m_initialized == m_context ? GetInterface() : nullptr)
        compound->RenameCompound(in_newName, in_commands);
}

namespace
{

/// The writing side of a library; null when the library is invalid or takes no writes.
IItemLibraryModifier* WritingSide(const ItemLibraryAccessor& in_library)
{
    return in_library.IsValid() ? dynamic_cast<IItemLibraryModifier*>(in_library.GetContext().get()) : nullptr;
}

/// Points a modifier at what a library has just made, and returns the identity.
template <class Modifier> ItemID PointAtNewModel(Modifier& out_modifier, const ContextPtr& in_model)
{
    out_modifier.CopyFromOtherBaseAccessor(UnspecifiedAccessor(in_model));
    return out_modifier.IsValid() ? CompoundAccessor(out_modifier).GetItemID() : ItemID();
}

} // namespace

ItemID CompoundModifierAccessor::CreateAndSetFromNewCompound(const ItemLibraryAccessor& in_library, const char* in_name,
                                                             bool in_signature, const char* in_baseClass,
                                                             const char* in_category,
                                                             hmx::fwk::ICommandManager* in_commands)
{
    ContextPtr model;
    if (IItemLibraryModifier* const library = WritingSide(in_library))
        model = library->CreateCompound(in_name, in_signature, in_baseClass, in_category, in_commands);
    const ItemID created = PointAtNewModel(*this, model);
    Initialize();
    return created;
}

ItemID LoopCompoundModifierAccessor::CreateAndSetFromNewLoopCompound(const ItemLibraryAccessor& in_library,
                                                                     const char* in_name, const char* in_baseClass,
                                                                     const char* in_category,
                                                                     hmx::fwk::ICommandManager* in_commands)
{
    ContextPtr model;
    if (IItemLibraryModifier* const library = WritingSide(in_library))
        model = library->CreateLoopCompound(in_name, in_baseClass, in_category, in_commands);
    return PointAtNewModel(*this, model);
}

} // namespace datamodel
} // namespace vireo
