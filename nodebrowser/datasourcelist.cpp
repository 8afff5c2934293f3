// SPDX-License-Identifier: MIT
#include "nodebrowser/datasourcelist.h"

#include "qtcompat/latin1.h"

using nexa4::DbObjectId;
using nexa4::eDataSourceReadOnly;
using nexa4::IDatabase;
using nexa4::IDataSource;
using nexa4::IDbObject;
using nexa4::IHelper;
using nexa4::IValueAsset;
using nexa4::NEXAHandle;
using nexa4::NEXAPtr;
using qtcompat::FromLatin1;

namespace nodebrowser
{

namespace
{

NEXAHandle<IValueAsset> FindResource(const NEXAPtr<IDatabase>& in_database, const DbObjectId& in_id)
{
    const NEXAHandle<IDbObject> object = in_database->FindObject(in_id);
    return NEXAHandle<IValueAsset>::AssignCast(object.GetInstance(), object.GetCacheIndex());
}

NEXAPtr<IDataSource> SourceOf(const NEXAHandle<IValueAsset>& in_resource)
{
    return nexa4::GetDataSourceFromResource(in_resource->GetDesignatedAsset());
}

} // namespace

std::vector<DataSourceEntry> ListDataSources(const NEXAHandle<IDbObject>& in_compound)
{
    const std::string query = "select object where IS_OF_TYPE_VERSION( {" + nexa4::UID_Resource().GetStr() + " } )";
    const NEXAPtr<IDatabase> database = in_compound.GetManager()->GetDatabase();
    const NEXAPtr<IDataSource> current = in_compound.GetDataSource();
    std::vector<DataSourceEntry> entries;
    for (const DbObjectId& id : database->Query(query, true))
    {
        const NEXAHandle<IValueAsset> resource = FindResource(database, id);
        const NEXAPtr<IDataSource> source = SourceOf(resource);
        if (!source.IsValid())
            continue;
        DataSourceEntry entry;
        entry.m_enabled = current->GetState() != eDataSourceReadOnly;
        entry.m_label = FromLatin1(resource->GetName());
        if (nexa4::IsSameUri(current, resource))
        {
            // No blank comes before this mark, on purpose.
            entry.m_label += QString::fromLatin1("[Current]");
            entry.m_enabled = false;
        }
        if (source->GetState() == eDataSourceReadOnly)
        {
            entry.m_label += QString::fromLatin1(" [Read-Only]");
            entry.m_enabled = false;
        }
        const NEXAHandle<IDbObject> object =
            NEXAHandle<IDbObject>::AssignCast(resource.GetInstance(), resource.GetCacheIndex());
        entry.m_toolTip = QString::fromLatin1("Move compound to this data source\n") +
                          FromLatin1(nexa4::GetResourceExpandedURI(object));
        entry.m_resource = resource.GetDbObjectId().GetStr();
        entries.push_back(entry);
    }
    return entries;
}

void MoveToDataSource(const NEXAHandle<IDbObject>& in_compound, const DbObjectId& in_resource)
{
    const NEXAPtr<IDatabase> database = in_compound.GetManager()->GetDatabase();
    const NEXAPtr<IHelper> helper = IHelper::GetHelper(database);
    const NEXAPtr<IDataSource> source = SourceOf(FindResource(database, in_resource));
    helper->MoveToDataSource(in_compound, source, true);
}

} // namespace nodebrowser
