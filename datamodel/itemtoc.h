// SPDX-License-Identifier: MIT
/// A library's table of contents: the items of each type, and the notifications of items that come and go.
#pragma once

#include "datamodel/item.h"
#include "datamodel/notifications.h"

#include <memory>

namespace vireo
{
namespace datamodel
{

/// Iterates over the items of one type. Implementations derive from it; callers use ItemIterator.
class DATAMODEL_EXPORT IItemIterator
{
public:
    virtual ~IItemIterator() = default;
    virtual bool IsAtEnd() const = 0;
    virtual void Next() = 0;
    virtual ItemAccessor GetItem() const = 0;
};

/// The items of one type in the order in which they were added; one that comes back by undo has its old place again:
///
///     for (ItemIterator item = toc.IterateItems(LibType::gType); !item.IsAtEnd(); item.Next())
///         use(item.GetItem());
///
/// Each step is constant time. It covers the items that existed when it was made: items added later do not appear,
/// items removed meanwhile appear as invalid accessors.
class DATAMODEL_EXPORT ItemIterator
{
public:
    /// An iterator at its end.
    ItemIterator() = default;
    explicit ItemIterator(std::unique_ptr<IItemIterator> in_items);

    bool IsAtEnd() const { return !m_items || m_items->IsAtEnd(); }
    /// Does nothing at the end.
    void Next();
    /// The current item; an invalid accessor at the end.
    ItemAccessor GetItem() const;

private:
    std::unique_ptr<IItemIterator> m_items;
};

/// What a table of contents offers.
class DATAMODEL_EXPORT IItemTOC
{
public:
    virtual ~IItemTOC() = default;
    /// Null is allowed and means no items.
    virtual std::unique_ptr<IItemIterator> IterateItems(const char* in_type) const = 0;
    virtual void AddObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) = 0;
    virtual void RemoveObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) = 0;
};

/// Accessor of a table of contents, made by GetTOC().
class DATAMODEL_EXPORT ItemTOCAccessor : public InterfaceAccessor<IItemTOC>
{
public:
    using InterfaceAccessor<IItemTOC>::InterfaceAccessor;

    /// The items whose type is this constant, compared by pointer. None for any other pointer, and none when invalid.
    ItemIterator IterateItems(const char* in_type) const;

    /// Registers an observer. Remove it before it dies, unless the library is gone by then. Does nothing for an
    /// observer that is registered already, and on an invalid accessor.
    /// \param in_kind eItemTOCNotificationKind
    /// \param in_context this accessor's own context
    void AddObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) const;

    /// Takes the same three values as AddObserver(). Does nothing for an observer that is not registered. The observer
    /// is not called again, not even for a change that is being notified right now.
    void RemoveObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) const;
};

} // namespace datamodel
} // namespace vireo
