// SPDX-License-Identifier: MIT
#include "memorymodel/datasource.h"

#include <utility>

namespace memorymodel
{

DataSource::DataSource(std::string in_name, std::string in_location, unsigned in_flags)
    : m_name(std::move(in_name)), m_location(std::move(in_location)), m_flags(in_flags)
{
}

int DataSource::GetState() const
{
    return IsReadOnly() ? nexa4::eDataSourceReadOnly : 0;
}

void DataSource::SetReadOnly(bool in_readOnly)
{
    m_flags = in_readOnly ? m_flags | eReadOnlySource : m_flags & ~unsigned(eReadOnlySource);
}

} // namespace memorymodel
