// SPDX-License-Identifier: MIT
/// The data sources that a compound can be moved to.
#pragma once

#include "datamodel/nexahandle.h"
#include "datamodel/objectdatabase.h"

#include <QString>

#include <string>
#include <vector>

/// One data source as the context menu offers it.
struct DataSourceEntry
{
    QString m_label;
    QString m_toolTip;
    bool m_enabled;
    std::string m_resource; ///< identity text of the resource that stands for the source
};

/// All data sources of a compound's database in the database's order. The compound's own source and read-only ones are
/// marked in their labels and disabled; all are disabled when the compound's own source is read-only. Throws
/// nexa4::ExBase::NullPtr when the database answers with nothing where there must be something.
/// \param in_compound a valid handle
std::vector<DataSourceEntry> ListDataSources(const nexa4::NEXAHandle<nexa4::IDbObject>& in_compound);

/// Moves a compound to the data source of a resource. Throws like ListDataSources() when either is unknown; nothing is
/// moved then.
/// \param in_resource as DataSourceEntry::m_resource
void MoveToDataSource(const nexa4::NEXAHandle<nexa4::IDbObject>& in_compound, const nexa4::DbObjectId& in_resource);
