// SPDX-License-Identifier: MIT
/// Reading an item library: names, tags, access, models.
#pragma once

#include "datamodel/accessor.h"
#include "datamodel/itemid.h"
#include "datamodel/itemtoc.h"
#include "datamodel/notifications.h"

#include <string>

namespace vireo
{
namespace datamodel
{

/// The key of the tags that people give to items.
extern DATAMODEL_EXPORT const char* const gApplicationTagsKey; ///< "ApplicationTags"

/// What a library offers to readers: what an implementation derives its library's context from. ItemLibraryAccessor
/// passes each call on while the context is alive.
///
/// For an identity that the library does not have (the invalid one, one of another library, or one of an item that is
/// gone), each read returns the empty text, false, or an invalid accessor.
class DATAMODEL_EXPORT IItemLibrary
{
public:
    virtual ~IItemLibrary() = default;

    /// The item's name, 8-bit Latin-1. A build asks once for each item, a paint once for each row in sight. So it takes
    /// the time of a look-up and a copy.
    /// \param in_displayName true for the name as people see it, which is all that the browser asks for
    /// \param in_scope the scope that the name is relative to; null, as the browser passes it, for none
    virtual std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const = 0;

    /// The item's tags under a key, as they were written: joined by ";", empty when there are none or the key is
    /// unknown. A build asks once for each item, with gApplicationTagsKey. So does every ItemTagsChanged() for its
    /// item.
    virtual std::string GetItemTags(const ItemID& in_item, const char* in_key) const = 0;

    /// Whether the item refuses changes. Asked when the context menu of the item opens; SetItemTags() follows the same
    /// answer.
    virtual bool ItemIsReadOnly(const ItemID& in_item) const = 0;

    /// Whether the item has changes that are not committed. Undo that comes back to what was committed makes it clean,
    /// and undo of a change that was committed makes it dirty. Asked for each row in sight at each paint. No
    /// notification goes with it: after a commit the browser shows it at the next paint.
    virtual bool ItemIsDirty(const ItemID& in_item) const = 0;

    /// The item's model: a context that offers the interfaces of models.h and compoundmodifier.h which fit the item.
    /// Asked when a type is picked, and when a compound is double-clicked, renamed or has its context menu opened.
    /// Never asked by a build or a paint.
    /// \param out_error gets the reason when there is no model; may be null
    virtual UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const = 0;

    /// Registers an observer for the notifications of this library, behind those that are registered already. Ignores
    /// an observer that is registered, another kind than eItemLibraryNotificationKind, and the context of another
    /// thing. The observer stays its owner's.
    virtual void AddObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) = 0;

    /// Ends a registration. From then on the observer is not called, not even for the notification that is running. The
    /// observer may die right after this. Ignores an observer that is not registered.
    virtual void RemoveObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) = 0;
};

/// Accessor of one item library. Texts are 8-bit Latin-1. For an item that the library does not have, reads return the
/// empty text, false, or an invalid accessor.
///
/// Reads happen inside paint events. An implementation answers at once. While it answers it neither runs the event loop
/// nor changes the library; a progress dialog is enough to break this. An implementation that breaks it gets stale or
/// repeated rows until the next rebuild. What a read throws passes through the browser, into the host's event loop. The
/// same goes for every other read of the boundary.
class DATAMODEL_EXPORT ItemLibraryAccessor : public InterfaceAccessor<IItemLibrary>
{
public:
    using InterfaceAccessor<IItemLibrary>::InterfaceAccessor;

    /// The item's name. The browser draws its first 4,000 characters, and searches the name as the last rebuild read
    /// it: announce each change by ItemNameChanged().
    /// \param in_displayName true for the name as people see it, which is the only form the browser asks for
    /// \param in_scope the scope that the name is relative to; null for none
    std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const;

    /// The item's tags under a key, joined by ";"; empty when it has none, and for null.
    std::string GetItemTags(const ItemID& in_item, const char* in_key) const;

    /// True when the item cannot be changed.
    bool ItemIsReadOnly(const ItemID& in_item) const;

    /// True when the item has changes that are not committed.
    bool ItemIsDirty(const ItemID& in_item) const;

    /// The item's model, to be viewed as a CompoundAccessor, a TypeDescriptorAccessor and so on.
    /// \param out_error gets the reason when there is none; may be null
    UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const;

    /// Registers an observer. Remove it before it dies, unless the library is gone by then. Does nothing for an
    /// observer that is registered already, and on an invalid accessor.
    /// \param in_kind eItemLibraryNotificationKind
    /// \param in_context this accessor's own context
    void AddObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) const;

    /// Takes the same three values as AddObserver(). Does nothing for an observer that is not registered. The observer
    /// is not called again, not even for a change that is being notified right now.
    void RemoveObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) const;
};

/// The table of contents of a library; invalid for an invalid library or without a data layer.
DATAMODEL_EXPORT ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library);

/// True when a node of the library, or of a library that it builds on, has exactly this name, letter by letter. Types
/// are no nodes. False for null.
DATAMODEL_EXPORT bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name);

} // namespace datamodel
} // namespace vireo
