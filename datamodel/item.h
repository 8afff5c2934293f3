// SPDX-License-Identifier: MIT
/// One item of a library: its identity and the values stored with it.
#pragma once

#include "datamodel/accessor.h"
#include "datamodel/itemid.h"

namespace vireo
{
namespace datamodel
{

/// A value stored with an item under a key. What the value holds belongs to the data layer; this side of the boundary
/// only asks whether there is one.
class DATAMODEL_EXPORT CSimpleValue
{
public:
    /// No value.
    CSimpleValue() = default;
    /// Made by implementations: the answer to IItem::GetValue().
    explicit CSimpleValue(bool in_present) : m_present(in_present) {}

    /// True when the item has a value under the key.
    bool IsValid() const { return m_present; }

private:
    bool m_present = false;
};

/// Keys of the values that make an item part of another one. Items that have either value are not listed.
extern DATAMODEL_EXPORT const char* const gParentKey;      ///< "Parent": the item lives inside another item
extern DATAMODEL_EXPORT const char* const gSpecializesKey; ///< "Specializes": the item is a variant of another item

/// What an item offers.
class DATAMODEL_EXPORT IItem
{
public:
    virtual ~IItem() = default;

    /// The item's identity, the same one for as long as the item exists. Called for each row in sight at each paint,
    /// and often besides: it returns what it has, in constant time.
    virtual ItemID GetItemID() const = 0;

    /// Whether the item has a value under a key. A build asks each item for gParentKey and gSpecializesKey, and does
    /// not list it if it has either. An unknown key has no value.
    virtual CSimpleValue GetValue(const char* in_key) const = 0;
};

/// Accessor of one item: what the iteration of a table of contents yields.
class DATAMODEL_EXPORT ItemAccessor : public InterfaceAccessor<IItem>
{
public:
    using InterfaceAccessor<IItem>::InterfaceAccessor;

    /// The item's identity; the invalid one when the accessor is invalid.
    ItemID GetItemID() const;

    /// The value under a key; an invalid value when the item has none, the key is null or the accessor is invalid.
    CSimpleValue GetValue(const char* in_key) const;
};

} // namespace datamodel
} // namespace vireo
