// SPDX-License-Identifier: MIT
/// What the host calls items and their kinds, and how it draws them.
#pragma once

#include <QString>

namespace memorymodel
{
class Library;
}

namespace vireo
{
namespace datamodel
{
class ItemID;
}
} // namespace vireo

namespace host
{

struct ItemKind
{
    const char* m_word;  ///< in the rows on the command line
    const char* m_label; ///< for people
    const char* m_icon;  ///< a resource of the browser library
};

/// The kind of an item of the library. Loop compounds differ from compounds by their label only.
const ItemKind& GetItemKind(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item);

/// The name of an item as people see it; empty for one that the library does not have.
QString GetItemName(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item);

} // namespace host
