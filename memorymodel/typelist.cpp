// SPDX-License-Identifier: MIT
#include "memorymodel/typelist.h"

#include <algorithm>

namespace memorymodel
{

TypeList::Numbers TypeList::GetNumbers(const std::vector<std::shared_ptr<Item>>& in_items)
{
    if (!m_sorted)
    {
        // Iterators keep the list as it was.
        const auto sorted = std::make_shared<std::vector<std::uint64_t>>();
        sorted->reserve(Writable().size());
        for (const std::uint64_t number : Writable())
            if (in_items[number])
                sorted->push_back(number);
        std::sort(sorted->begin(), sorted->end());
        sorted->erase(std::unique(sorted->begin(), sorted->end()), sorted->end());
        m_numbers = sorted;
        m_sorted = true;
    }
    Writable();
    return m_numbers;
}

} // namespace memorymodel
