// SPDX-License-Identifier: MIT
/// The data sources that a compound can be moved to.
#pragma once

#include "datamodel/nexahandle.h"
#include "datamodel/objectdatabase.h"

#include <QString>

#include <string>
#include <vector>

namespace nodebrowser
{

/// One data source as the context menu offers it.
struct DataSourceEntry
{
    QString m_label;
    QString m_toolTip;
    bool m_enabled;
    std::string m_resource; ///< the identity, as text, of the resource that stands for the source
};

/// All data sources of a compound's database, in the database's order. Labels mark the compound's own source and the
/// read-only ones, and these are disabled. All are disabled when the compound's own source is read-only. Throws
/// nexa4::ExBase::NullPtr when the compound has no database or no source, and when the database lacks an object that
/// its own query names.
/// \param in_compound a valid handle
std::vector<DataSourceEntry> ListDataSources(const nexa4::NEXAHandle<nexa4::IDbObject>& in_compound);

/// Moves a compound to the data source of a resource. When the compound or the resource is unknown, it moves nothing
/// and throws nexa4::ExBase::NullPtr.
/// \param in_resource as DataSourceEntry::m_resource
void MoveToDataSource(const nexa4::NEXAHandle<nexa4::IDbObject>& in_compound, const nexa4::DbObjectId& in_resource);

} // namespace nodebrowser
