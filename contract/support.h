// SPDX-License-Identifier: MIT
/// The operations of the boundary as the promises call them: an exception is reported with the operation's name.
#pragma once

#include "contract/trial.h"

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/itemlibrarymodifier.h"

#include <list>
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

std::vector<const char*> AllTypes();
ItemWish WishOfKind(int in_kind, const std::string& in_name);
ItemWish WishInSource(const char* in_type, const std::string& in_name, const std::string& in_source);
ItemWish ReadOnlyWish(const char* in_type, const std::string& in_name);

using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using Commands = hmx::fwk::ICommandManager*;

// Reading
std::string NameOf(const ItemLibraryAccessor& in_library, const ItemID& in_item);
std::string TagsOf(const ItemLibraryAccessor& in_library, const ItemID& in_item,
                   const char* in_key = vireo::datamodel::gApplicationTagsKey);
bool IsReadOnly(const ItemLibraryAccessor& in_library, const ItemID& in_item);
bool IsDirty(const ItemLibraryAccessor& in_library, const ItemID& in_item);
vireo::datamodel::UnspecifiedAccessor ModelOf(const ItemLibraryAccessor& in_library, const ItemID& in_item,
                                              std::string* out_error = nullptr);
/// The items of a type. An iteration that does not end breaks the promise.
std::vector<vireo::datamodel::ItemAccessor> ItemsOf(const ItemLibraryAccessor& in_library, const char* in_type);
/// The item of an identity, from the table of contents.
vireo::datamodel::ItemAccessor ItemOf(const ItemLibraryAccessor& in_library, const ItemID& in_item);
/// The names of a type's items in the order of the table of contents, with blanks between them.
std::string Listed(const ItemLibraryAccessor& in_library, const char* in_type);
bool HasValue(const vireo::datamodel::ItemAccessor& in_item, const char* in_key);
bool IsSignature(const vireo::datamodel::ItemAccessor& in_item);
bool IsForGraphs(const char* in_type, const vireo::datamodel::ItemAccessor& in_item);
bool IsNameUsed(const ItemLibraryAccessor& in_library, const char* in_name);
std::string UIDOf(const ItemID& in_item);

// Writing
bool SetTags(const ItemLibraryAccessor& in_library, const ItemID& in_item, const char* in_tags, Commands in_commands,
             const char* in_key = vireo::datamodel::gApplicationTagsKey);
/// Write access to a compound, initialised.
vireo::datamodel::CompoundModifierAccessor ModifierOf(const ItemLibraryAccessor& in_library, const ItemID& in_item);
void Rename(const ItemLibraryAccessor& in_library, const ItemID& in_item, const char* in_name, Commands in_commands);
ItemID Create(vireo::datamodel::CompoundModifierAccessor& out_compound, const ItemLibraryAccessor& in_library,
              const char* in_name, bool in_signature, const char* in_baseClass, const char* in_category,
              Commands in_commands);
ItemID CreateLoop(vireo::datamodel::LoopCompoundModifierAccessor& out_loop, const ItemLibraryAccessor& in_library,
                  const char* in_name, const char* in_baseClass, const char* in_category, Commands in_commands);
bool Commit(const ItemLibraryAccessor& in_library);
bool Commit(const ItemLibraryAccessor& in_library, bool& out_written, std::list<std::string>* out_messages,
            bool in_everything, const nexa4::DbObjectId& in_source);

} // namespace contract
