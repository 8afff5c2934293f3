// SPDX-License-Identifier: MIT
/// What the parts of the contract share.
#pragma once

#include "contract/boundaryfixture.h"

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/itemlibrarymodifier.h"

#include <QByteArray>

#include <string>
#include <vector>

namespace contract
{

enum eWishKind
{
    eCompoundKind,
    eLoopKind,
    eSignatureKind,
    eSolverKind,
    ePolymorphicKind,
    eConstantKind,
    eTypeKind,
};

inline std::vector<const char*> AllTypes()
{
    using namespace vireo::datamodel;
    return {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant, VireoType::gSolver,
            LibType::gType};
}

inline ItemWish WishOfKind(int in_kind, const std::string& in_name)
{
    using namespace vireo::datamodel;
    const char* const types[] = {VireoType::gCompound, VireoType::gCompound,          VireoType::gCompound,
                                 VireoType::gSolver,   VireoType::gPolymorphicSolver, VireoType::gGlobalConstant,
                                 LibType::gType};
    ItemWish wish(types[in_kind], in_name);
    wish.m_signature = in_kind == eSignatureKind;
    wish.m_loop = in_kind == eLoopKind;
    return wish;
}

/// The names of a type's items in the order of the table of contents, with blanks between them.
inline QByteArray Listed(const vireo::datamodel::ItemLibraryAccessor& in_library, const char* in_type)
{
    QByteArray names;
    vireo::datamodel::ItemIterator item = vireo::datamodel::GetTOC(in_library).IterateItems(in_type);
    for (; !item.IsAtEnd(); item.Next())
    {
        if (!names.isEmpty())
            names += ' ';
        names += in_library.GetItemName(item.GetItem().GetItemID(), true, nullptr).c_str();
    }
    return names;
}

/// Write access to a compound, initialised.
inline vireo::datamodel::CompoundModifierAccessor ModifierOf(const vireo::datamodel::ItemLibraryAccessor& in_library,
                                                             const vireo::datamodel::ItemID& in_item)
{
    vireo::datamodel::CompoundModifierAccessor compound(in_library.GetModel(in_item, nullptr));
    compound.Initialize();
    return compound;
}

inline bool SetTags(const vireo::datamodel::ItemLibraryAccessor& in_library, const vireo::datamodel::ItemID& in_item,
                    const char* in_tags, hmx::fwk::ICommandManager* in_commands)
{
    return vireo::datamodel::ItemLibraryModifierAccessor(in_library)
        .SetItemTags(in_item, vireo::datamodel::gApplicationTagsKey, in_tags, in_commands);
}

inline bool Commit(const vireo::datamodel::ItemLibraryAccessor& in_library)
{
    bool written = false;
    return vireo::datamodel::ItemLibraryModifierAccessor(in_library)
        .CommitToDisk(written, nullptr, false, nexa4::UID_Null());
}

} // namespace contract
