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

    /// Whether there is no current item any more. True at once for a type without items.
    virtual bool IsAtEnd() const = 0;

    /// Goes to the next item. Never called at the end. It skips no item and returns none twice, even if items come and
    /// go meanwhile. Constant time: a build takes this step once for each item.
    virtual void Next() = 0;

    /// The current item, valid or meanwhile gone. Never called at the end. Makes no copy of the item's data: the
    /// browser keeps the accessor for as long as it lists the item.
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
    /// Steps through what an implementation made. Null gives an iterator at its end.
    explicit ItemIterator(std::unique_ptr<IItemIterator> in_items);

    /// Whether there is no current item any more.
    bool IsAtEnd() const { return !m_items || m_items->IsAtEnd(); }
    /// Does nothing at the end.
    void Next();
    /// The current item; an invalid accessor at the end.
    ItemAccessor GetItem() const;

private:
    std::unique_ptr<IItemIterator> m_items;
};

/// What a table of contents offers: what an implementation derives the context of GetTOC() from.
class DATAMODEL_EXPORT IItemTOC
{
public:
    virtual ~IItemTOC() = default;

    /// An iterator over the items of a type, in an order that stays the same from call to call. A build asks for the
    /// five types in turn: polymorphic solvers, compounds, global constants, solvers, types. Rows of the same name
    /// appear in this order.
    /// \param in_type a constant of VireoType or LibType, to be compared by pointer; any other pointer has no items
    /// \return null is allowed and means no items
    virtual std::unique_ptr<IItemIterator> IterateItems(const char* in_type) const = 0;

    /// Registers an observer of arrivals and departures. Like IItemLibrary::AddObserver(), for the kind
    /// eItemTOCNotificationKind.
    virtual void AddObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) = 0;

    /// Like IItemLibrary::RemoveObserver().
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
