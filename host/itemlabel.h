// SPDX-License-Identifier: MIT
/// What the host shows for an item: its name, and a word and an icon for its kind.
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

/// What stands for a kind of item.
struct ItemLabel
{
    const char* m_word; ///< in the rows on the command line
    const char* m_text; ///< for people
    const char* m_icon; ///< a resource of the browser library
};

/// What stands for the kind of an item of the library. Loop compounds differ from compounds by their text only.
const ItemLabel& GetItemLabel(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item);

/// The name of an item as people see it; empty for one that the library does not have.
QString GetItemName(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item);

} // namespace host
