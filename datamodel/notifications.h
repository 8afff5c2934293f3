// SPDX-License-Identifier: MIT
/// The notifications of a data layer, and the codes that observers register with.
#pragma once

#include "datamodel/export.h"
#include "datamodel/itemid.h"

namespace vireo
{
namespace datamodel
{

class ItemAccessor;
class ItemLibraryAccessor;

/// Notification-kind codes: passed when an observer is added to or removed from an accessor, with the accessor's own
/// context. A registration under any other code is ignored.
enum
{
    eItemTOCNotificationKind = 39,     ///< an IItemTOCNotification on a table of contents
    eItemLibraryNotificationKind = 40, ///< an IItemLibraryNotification on a library
};

/// Access-state codes that this side of the boundary gives out itself; every other code is the data layer's.
enum : unsigned
{
    eAccessStateUnknown = 0,           ///< nothing known about the item
    eAccessStateRequested = 0x400000u, ///< asked for, not answered yet (4194304)
};

/// Notified when items come to or leave a library. All calls arrive on the thread of the user interface, in the order
/// in which the observers were registered. An observer may add and remove observers inside a call, itself included. One
/// that is added inside a call is notified of the next changes, not of this one.
class DATAMODEL_EXPORT IItemTOCNotification
{
public:
    virtual ~IItemTOCNotification() = default;
    /// The item is in the library now, with its name and tags.
    virtual void ItemAdded(ItemAccessor& in_item) = 0;
    /// The item is about to leave: it still answers during the call, and not afterwards.
    virtual void ItemRemoved(ItemAccessor& in_item) = 0;
};

/// Notified when a library or an item in it changes. Every change of items arrives between OnBeginChanges() and
/// OnEndChanges(), undone and redone changes included. What changes nothing sends nothing. The pairs nest when an
/// observer changes something itself. Commits have calls of their own outside the pairs. Thread and re-entrancy are as
/// above. An observer that is added in OnBeginChanges(), or later inside a pair, got no beginning of it: do not rely on
/// its end. The data layer in memory sends it the changes that follow, and no OnEndChanges() of that pair.
class DATAMODEL_EXPORT IItemLibraryNotification
{
public:
    virtual ~IItemLibraryNotification() = default;
    /// Changes are coming.
    virtual void OnBeginChanges(ItemLibraryAccessor& in_library) = 0;
    /// All changes since OnBeginChanges() have been notified.
    virtual void OnEndChanges(ItemLibraryAccessor& in_library) = 0;
    /// Everything known about the library is out of date; it may even be gone. A library that is closed has no items
    /// any more when it sends this, and is invalid once the outermost OnEndChanges() has returned. Send it also when a
    /// compound becomes a signature or ceases to be one: observers read that once, like the name.
    virtual void LibraryInvalidated(ItemLibraryAccessor& in_library) = 0;
    /// The item has another name. Send it for each such change: the browser searches the names as it read them last.
    virtual void ItemNameChanged(ItemLibraryAccessor& in_library, const ItemID& in_item) = 0;
    /// The item has other tags under a key. The browser reads them at once, inside this call.
    /// \param in_key the key, for example gApplicationTagsKey
    virtual void ItemTagsChanged(ItemLibraryAccessor& in_library, const ItemID& in_item, const char* in_key) = 0;
    /// The source-control state of the item's object is known now, or changed. It also answers a request of a ScsTask,
    /// and then comes even if the state is the old one.
    /// \param in_state as ScsUtils::getAssetStateIcon() takes it
    virtual void ItemAccessStateChanged(ItemLibraryAccessor& in_library, const ItemID& in_item, long in_state) = 0;
    /// Before a commit. Setting *out_veto to true stops it; leaving it alone agrees.
    virtual void OnPreCommit(ItemLibraryAccessor& in_library, bool* out_veto) = 0;
    /// After a commit that was not vetoed.
    virtual void OnPostCommit(ItemLibraryAccessor& in_library) = 0;
};

} // namespace datamodel
} // namespace vireo
