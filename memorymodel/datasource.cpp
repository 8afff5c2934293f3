// SPDX-License-Identifier: MIT
#include "memorymodel/datasource.h"

#include <utility>

namespace memorymodel
{

struct DataSource::Content
{
    std::string m_name;
    std::string m_location;
    unsigned m_flags;
};

DataSource::DataSource(std::string in_name, std::string in_location, unsigned in_flags)
    : m_private(new Content{std::move(in_name), std::move(in_location), in_flags})
{
}

DataSource::~DataSource() = default;

int DataSource::GetState() const
{
    return IsReadOnly() ? nexa4::eDataSourceReadOnly : 0;
}

const std::string& DataSource::GetName() const
{
    return m_private->m_name;
}

const std::string& DataSource::GetLocation() const
{
    return m_private->m_location;
}

unsigned DataSource::GetFlags() const
{
    return m_private->m_flags;
}

bool DataSource::IsReadOnly() const
{
    return (m_private->m_flags & eReadOnlySource) != 0;
}

void DataSource::SetReadOnly(bool in_readOnly)
{
    unsigned& flags = m_private->m_flags;
    flags = in_readOnly ? flags | eReadOnlySource : flags & ~unsigned(eReadOnlySource);
}

} // namespace memorymodel
