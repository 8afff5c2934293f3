// SPDX-License-Identifier: MIT
#include "memorymodel/typeiterator.h"

#include <utility>

using namespace vireo::datamodel;

namespace memorymodel
{

TypeIterator::TypeIterator(std::shared_ptr<const LibraryContents> in_library, TypeList::Numbers in_numbers)
    : m_library(std::move(in_library)), m_numbers(std::move(in_numbers)), m_end(m_numbers->size())
{
}

void TypeIterator::Next()
{
    if (!IsAtEnd())
        ++m_current;
}

ItemAccessor TypeIterator::GetItem() const
{
    if (IsAtEnd() || !m_library->IsOpen())
        return ItemAccessor();
    return ItemAccessor(UnspecifiedAccessor(m_library->GetItems()[(*m_numbers)[m_current]]));
}

} // namespace memorymodel
