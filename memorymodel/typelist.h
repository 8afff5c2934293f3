// SPDX-License-Identifier: MIT
/// The items of one type, in the order in which they were added.
#pragma once

#include "memorymodel/items.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace memorymodel
{

/// The numbers of items. The list is sorted when somebody asks for it, so adding and removing take constant time.
///
/// Iterators share the list and note its length. Adding only appends, and sorting makes a new list: neither disturbs an
/// iterator.
class TypeList
{
public:
    using Numbers = std::shared_ptr<const std::vector<std::uint64_t>>;

    /// An item is in the library from here on. One that was there before is listed where it was.
    void Add(std::uint64_t in_number)
    {
        std::vector<std::uint64_t>& numbers = Writable();
        if (!numbers.empty() && in_number <= numbers.back())
            m_sorted = false;
        numbers.push_back(in_number);
    }

    /// An item is not in the library any more.
    void Drop() { m_sorted = false; }

    void Clear() { m_numbers.reset(); }

    /// The numbers of the items that are in the library, ascending. Costs something only after items left or came back.
    /// \param in_items all items by number; null where one is not in the library
    Numbers GetNumbers(const std::vector<std::shared_ptr<Item>>& in_items);

private:
    std::vector<std::uint64_t>& Writable()
    {
        if (!m_numbers)
            m_numbers = std::make_shared<std::vector<std::uint64_t>>();
        return *m_numbers;
    }

    std::shared_ptr<std::vector<std::uint64_t>> m_numbers;
    bool m_sorted = true; ///< and without the numbers of items that left
};

} // namespace memorymodel
