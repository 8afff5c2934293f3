// SPDX-License-Identifier: MIT
/// Questions about items that no single accessor answers.
#pragma once

#include "datamodel/item.h"
#include "datamodel/models.h"

namespace hmx
{
namespace fwk
{
class ICommandManager;
}
} // namespace hmx

namespace vireo
{
namespace datamodel
{

/// Without a data layer the questions are answered with false, and nothing is done.
struct DATAMODEL_EXPORT Helpers
{
    /// True when a compound is a signature: an interface without a graph behind it.
    static bool IsAbstractFunction(ItemAccessor& in_item);

    /// True when a graph can contain the item as an item of this type.
    /// \param in_typeName the type-name constant that IterateItems() was asked for
    static bool IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item);

    /// Makes a compound the one that the application edits. No observer of the boundary is notified; a host asks its
    /// data layer.
    /// \param in_target the compound; an invalid accessor leaves no target
    /// \param in_root the compound that the target is shown inside of; the empty accessor shows it by itself
    static void SetGlobalVireoCompoundTarget(CompoundAccessor in_target, CompoundAccessor in_root);
};

/// The database identity behind an item's identity.
struct DATAMODEL_EXPORT ItemIDUnlock
{
    /// The identity text of the item's database object, or a text that nexa4::DbObjectId::IsUID() refuses when it has
    /// none. Never null. The text belongs to the data layer and is valid until the layer is called again.
    static const char* GetItemIDUID(const ItemID& in_item);
};

/// The command manager of the whole application; null without a data layer.
DATAMODEL_EXPORT hmx::fwk::ICommandManager* GetApplicationCommandManager();

} // namespace datamodel
} // namespace vireo
