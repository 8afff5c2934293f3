// SPDX-License-Identifier: MIT
/// Elements of items, and their way into other documents or out of all.
#pragma once

#include "materialx/export.h"
#include "materialx/items.h"
#include "materialx/operations.h"

#include <cstddef>
#include <vector>

namespace materialx
{

/// The declarations that make up an item: its definitions, what implements them, and the graphs that those name. In the
/// order of the documents.
MATERIALX_EXPORT std::vector<DeclarationIndex> ElementsOf(const Library& in_library, const Item& in_item);

/// The documents of each of some items, sorted. They are in one piece of memory, since most items have one.
class ItemDocuments
{
public:
    /// The documents of one item.
    struct List
    {
        const std::size_t* m_begin;
        const std::size_t* m_end;

        const std::size_t* begin() const { return m_begin; }
        const std::size_t* end() const { return m_end; }
    };

    void Append(const std::vector<std::size_t>& in_documents)
    {
        m_documents.insert(m_documents.end(), in_documents.begin(), in_documents.end());
        m_ends.push_back(m_documents.size());
    }

    /// How many items there are.
    std::size_t GetSize() const { return m_ends.size(); }
    List operator[](std::size_t in_item) const
    {
        return {m_documents.data() + (in_item == 0 ? 0 : m_ends[in_item - 1]), m_documents.data() + m_ends[in_item]};
    }

private:
    std::vector<std::size_t> m_documents;
    std::vector<std::size_t> m_ends; ///< where the documents of each item end
};

/// The documents that hold elements of each of some items. Linear in the size of the library and of the answer, for all
/// of them together, however many elements have one name.
MATERIALX_EXPORT ItemDocuments DocumentsOf(const Library& in_library, const std::vector<Item>& in_items);

/// Removes the elements of an item, each with the comment right above it. A document whose last element goes stays.
MATERIALX_EXPORT Plan Remove(const Library& in_library, const Item& in_item);

/// Moves the elements of an item that are not in a source yet, each with the comment right above it. They go into the
/// document of the same file name in the folder of the source, else into one called like the source there. A document
/// that is missing is added to the library without bytes.
MATERIALX_EXPORT Plan Move(Library& io_library, const Item& in_item, std::size_t in_source);

} // namespace materialx
