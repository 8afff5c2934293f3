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

/// What a library offers to readers.
class DATAMODEL_EXPORT IItemLibrary
{
public:
    virtual ~IItemLibrary() = default;
    virtual std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const = 0;
    virtual std::string GetItemTags(const ItemID& in_item, const char* in_key) const = 0;
    virtual bool ItemIsReadOnly(const ItemID& in_item) const = 0;
    virtual bool ItemIsDirty(const ItemID& in_item) const = 0;
    virtual UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const = 0;
    virtual void AddObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) = 0;
    virtual void RemoveObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) = 0;
};

/// Accessor of one item library. Texts are 8-bit Latin-1. Reading an item that the library does not have gives the
/// empty text, false, or an invalid accessor.
///
/// Reads are made from inside paint events. An implementation answers them at once: it neither runs the event loop nor
/// changes items while it answers. The same goes for every other read of the boundary.
class DATAMODEL_EXPORT ItemLibraryAccessor : public InterfaceAccessor<IItemLibrary>
{
public:
    using InterfaceAccessor<IItemLibrary>::InterfaceAccessor;

    /// The item's name.
    /// \param in_displayName true for the name as people see it, which is the only form the browser asks for
    /// \param in_scope what the name is to be told relative to; null for nothing
    std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const;

    /// The item's tags under a key, joined by ";"; empty when it has none.
    std::string GetItemTags(const ItemID& in_item, const char* in_key) const;

    /// True when the item refuses changes.
    bool ItemIsReadOnly(const ItemID& in_item) const;

    /// True when the item has changes that are not committed.
    bool ItemIsDirty(const ItemID& in_item) const;

    /// The item's model, to be viewed as a CompoundAccessor, a TypeDescriptorAccessor and so on.
    /// \param out_error told why when there is none; may be null
    UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const;

    /// Registers an observer, which must be removed before it dies unless the library went first. Adding one that is registered already, or adding to
    /// an invalid accessor, does nothing.
    /// \param in_kind eItemLibraryNotificationKind
    /// \param in_context this accessor's own context
    void AddObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) const;

    /// Takes the same three values as AddObserver(). Removing an observer that is not registered does nothing. From here
    /// on the observer is not called again, not even by a round of calls that is under way.
    void RemoveObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) const;
};

/// The table of contents of a library; invalid for an invalid library or without a data layer.
DATAMODEL_EXPORT ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library);

/// True when a node of the library, or of a library it builds on, has this name already, letter by letter.
DATAMODEL_EXPORT bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name);

} // namespace datamodel
} // namespace vireo
