// SPDX-License-Identifier: MIT
#include "memorymodel/typelist.h"

#include <algorithm>

namespace memorymodel
{

TypeList::Numbers TypeList::GetNumbers(const std::vector<std::shared_ptr<Item>>& in_items)
{
    if (!m_tidy)
    {
        // Walks that are under way keep the list as it was.
        const auto tidy = std::make_shared<std::vector<std::uint64_t>>();
        tidy->reserve(Writable().size());
        for (const std::uint64_t number : Writable())
            if (in_items[number])
                tidy->push_back(number);
        std::sort(tidy->begin(), tidy->end());
        tidy->erase(std::unique(tidy->begin(), tidy->end()), tidy->end());
        m_numbers = tidy;
        m_tidy = true;
    }
    Writable();
    return m_numbers;
}

} // namespace memorymodel
