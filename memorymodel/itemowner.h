// SPDX-License-Identifier: MIT
/// What an item and its database object ask of the library that the item is in.
#pragma once

#include "datamodel/objectdatabase.h"
#include "datamodel/system.h"

namespace memorymodel
{

class Item;

/// Implemented by libraries. Items and the database know this much of them and no more.
class ItemOwner
{
public:
    /// The manager of the database that the item's object is in.
    virtual nexa4::NEXAPtr<nexa4::IDataModelMgr> GetManager() const = 0;

    /// Renames a compound when it may be changed and no other node has the name.
    virtual void RenameCompound(const Item& in_item, const char* in_newName,
                                hmx::fwk::ICommandManager* in_commands) = 0;

    /// Moves an item to another source of its library.
    /// \return false when it was not moved
    virtual bool MoveItem(const Item& in_item, const nexa4::IDataSource& in_target,
                          hmx::fwk::ICommandManager* in_commands) = 0;

protected:
    ~ItemOwner() = default;
};

} // namespace memorymodel
