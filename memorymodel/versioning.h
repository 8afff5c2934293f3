// SPDX-License-Identifier: MIT
/// What knows the source-control states of a library's items, when it is not the host that sets them.
#pragma once

#include "datamodel/itemid.h"
#include "memorymodel/export.h"

#include <QString>

#include <vector>

namespace memorymodel
{

/// The source-control state of one item.
struct ItemState
{
    vireo::datamodel::ItemID m_item; ///< the item
    unsigned m_state;                ///< an eAccessState, or another number that the host draws a badge for
};

/// Asked instead of the record while Library::SetVersioning() names it, on the thread of the user interface. Items are
/// of that library and have database objects.
class MEMORYMODEL_EXPORT Versioning
{
public:
    virtual ~Versioning();

    /// Begins to find out the states of items, and returns at once. The answer is a call of SourceControl::SetStates()
    /// with all of them, later and never inside this call.
    virtual void RequestStates(const std::vector<vireo::datamodel::ItemID>& in_items) = 0;

    /// The text of an item's tool tip. A read: it waits for nothing, and notifies nobody.
    virtual QString GetToolTip(const vireo::datamodel::ItemID& in_item) = 0;

    /// Checks an item out. What comes of it may come later.
    /// \return false when it is refused at once
    virtual bool CheckOut(const vireo::datamodel::ItemID& in_item, bool in_interactive) = 0;

    /// Makes an item writable, whatever its state.
    virtual void MakeWritable(const vireo::datamodel::ItemID& in_item, bool in_interactive) = 0;
};

} // namespace memorymodel
