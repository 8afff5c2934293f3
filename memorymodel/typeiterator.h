// SPDX-License-Identifier: MIT
/// Iterates over the items of one type.
#pragma once

#include "memorymodel/librarycontents.h"

#include <cstddef>
#include <memory>

namespace memorymodel
{

/// Meets the items that the library has when the iterator is made. An item that leaves the library meanwhile is met as
/// an invalid accessor.
class TypeIterator : public vireo::datamodel::IItemIterator
{
public:
    TypeIterator(std::shared_ptr<const LibraryContents> in_library, TypeList::Numbers in_numbers);

    bool IsAtEnd() const override { return m_current == m_end; }
    void Next() override;
    vireo::datamodel::ItemAccessor GetItem() const override;

private:
    const std::shared_ptr<const LibraryContents> m_library;
    const TypeList::Numbers m_numbers;
    const std::size_t m_end; ///< kept, since the list grows by the items that are added meanwhile
    std::size_t m_current = 0;
};

} // namespace memorymodel
