// SPDX-License-Identifier: MIT
/// Identity of one item of an item library, and the names of the item types.
#pragma once

#include "datamodel/export.h"

#include <cstdint>
#include <string>

namespace vireo
{
namespace datamodel
{

/// Type names of node items. ItemID::GetType() returns one of these pointers itself: compare pointers, never
/// characters.
struct DATAMODEL_EXPORT VireoType
{
    static const char* const gPolymorphicSolver; ///< one node with several solver variants behind it
    static const char* const gCompound;          ///< a node built from a graph; abstract ones are signatures
    static const char* const gGlobalConstant;    ///< a named constant
    static const char* const gSolver;            ///< a node computed by the host itself
};

/// Type names of items that are no nodes. Compared by pointer, like those of VireoType.
struct DATAMODEL_EXPORT LibType
{
    static const char* const gType; ///< a type definition
};

/// The identity of an item: a small value that stays the same while the item exists, and that no other item ever gets.
/// It keeps nothing alive and may outlive its item. Every operation of the boundary accepts the identity of an item
/// that is gone, and answers nothing for it.
///
/// Copying, comparing and ordering cost a few machine words: a value keeps its fields in the header. Equal identities
/// always have the same type.
class DATAMODEL_EXPORT ItemID
{
public:
    /// The invalid identity: no item has it.
    ItemID() = default;

    /// Made by implementations of the data layer only.
    /// \param in_type one of the type-name constants above; null makes the invalid identity
    /// \param in_space the set of items that in_number counts, for example a library; each set of a process has its own
    /// \param in_number the item's number in that set; numbers are never reused
    ItemID(const char* in_type, std::uint64_t in_space, std::uint64_t in_number)
        : m_type(in_type), m_space(in_type ? in_space : 0), m_number(in_type ? in_number : 0)
    {
    }

    /// False for the invalid identity alone. It does not say whether the item still exists: ask its accessor.
    bool IsValid() const { return m_type != nullptr; }

    /// The type-name constant of the item, to be compared by pointer; null for the invalid identity.
    const char* GetType() const { return m_type; }

    /// The set of items that the number counts, for implementations to find the item; 0 for the invalid identity.
    std::uint64_t GetSpace() const { return m_space; }
    /// The item's number in that set; 0 for the invalid identity.
    std::uint64_t GetNumber() const { return m_number; }

    /// The identity as printable ASCII text without blanks: the type name, a colon, the set, a hyphen, the number. Set
    /// and number have 16 hexadecimal digits each. Equal identities give equal texts, different ones different texts.
    /// Empty for the invalid identity.
    std::string Serialize() const;

    /// Equal when they name the same item, or are both invalid.
    friend bool operator==(const ItemID& in_left, const ItemID& in_right)
    {
        return in_left.m_number == in_right.m_number && in_left.m_space == in_right.m_space &&
               in_left.IsValid() == in_right.IsValid();
    }
    /// The opposite of operator==().
    friend bool operator!=(const ItemID& in_left, const ItemID& in_right) { return !(in_left == in_right); }

    /// A strict weak order that depends on the identities alone, never on an address: the invalid identity first, then
    /// by space and number.
    friend bool operator<(const ItemID& in_left, const ItemID& in_right)
    {
        if (in_left.IsValid() != in_right.IsValid())
            return in_right.IsValid();
        return in_left.m_space != in_right.m_space ? in_left.m_space < in_right.m_space
                                                   : in_left.m_number < in_right.m_number;
    }

private:
    const char* m_type = nullptr;
    std::uint64_t m_space = 0;
    std::uint64_t m_number = 0;
};

} // namespace datamodel
} // namespace vireo
