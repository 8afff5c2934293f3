// SPDX-License-Identifier: MIT
#include "datamodel/provider.h"

#include "datamodel/helpers.h"
#include "datamodel/sourcecontrol.h"

#include <atomic>

namespace
{

Provider gProvider;

} // namespace

Provider InstallProvider(const Provider& in_provider)
{
    const Provider previous = gProvider;
    gProvider = in_provider;
    return previous;
}

hmx::ISystem* hmxGetSystem()
{
    return gProvider.m_system;
}

namespace vireo
{
namespace datamodel
{

ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library)
{
    return gProvider.m_items && in_library.IsValid() ? gProvider.m_items->GetTOC(in_library) : ItemTOCAccessor();
}

bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name)
{
    return gProvider.m_items && in_library.IsValid() &&
           gProvider.m_items->IsNameInNodeLibraryHierarchy(in_library, in_name);
}

bool Helpers::IsAbstractFunction(ItemAccessor& in_item)
{
    return gProvider.m_items && gProvider.m_items->IsAbstractFunction(in_item);
}

bool Helpers::IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item)
{
    return gProvider.m_items && gProvider.m_items->IsValidGraphItemType(in_typeName, in_item);
}

void Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor in_target, CompoundAccessor in_root)
{
    if (gProvider.m_items)
        gProvider.m_items->SetGlobalVireoCompoundTarget(in_target, in_root);
}

const char* ItemIDUnlock::GetItemIDUID(const ItemID& in_item)
{
    const char* const text = gProvider.m_items ? gProvider.m_items->GetItemIDUID(in_item) : nullptr;
    return text ? text : "";
}

hmx::fwk::ICommandManager* GetApplicationCommandManager()
{
    return gProvider.m_items ? gProvider.m_items->GetApplicationCommandManager() : nullptr;
}

} // namespace datamodel
} // namespace vireo

namespace nexa4
{

std::shared_ptr<IDbObject> ResolveHandle(int in_instance, int in_cacheIndex)
{
    return gProvider.m_objects ? gProvider.m_objects->GetObjectAt(in_instance, in_cacheIndex) : nullptr;
}

int NewDatabaseInstance()
{
    static std::atomic<int> next{0};
    return next++;
}

DbObjectId UID_Resource()
{
    return gProvider.m_objects ? gProvider.m_objects->GetResourceType() : UID_Null();
}

NEXAPtr<IHelper> IHelper::GetHelper(const NEXAPtr<IDatabase>& in_database)
{
    return gProvider.m_objects && in_database.IsValid() ? gProvider.m_objects->GetHelper(in_database)
                                                        : NEXAPtr<IHelper>();
}

NEXAPtr<IDataSource> GetDataSourceFromResource(const NEXAPtr<IValueAsset>& in_resource)
{
    return gProvider.m_objects && in_resource.IsValid() ? gProvider.m_objects->GetDataSourceFromResource(in_resource)
                                                        : NEXAPtr<IDataSource>();
}

bool IsSameUri(const NEXAPtr<IDataSource>& in_source, const NEXAHandle<IValueAsset>& in_resource)
{
    return gProvider.m_objects && in_source.IsValid() && in_resource.IsValid() &&
           gProvider.m_objects->IsSameUri(in_source, in_resource);
}

std::string GetResourceExpandedURI(const NEXAHandle<IDbObject>& in_resource)
{
    return gProvider.m_objects && in_resource.IsValid() ? gProvider.m_objects->GetResourceExpandedURI(in_resource)
                                                        : std::string();
}

} // namespace nexa4

ScsTask::ScsTask(const char* in_name) : m_name(in_name) {}

void ScsTask::RequestObjectStates(const std::list<nexa4::NEXAHandle<nexa4::IDbObject>>& in_objects)
{
    if (gProvider.m_sourceControl)
        gProvider.m_sourceControl->RequestObjectStates(*this, in_objects);
}

void ScsTask::DeleteMe()
{
    if (gProvider.m_sourceControl)
        gProvider.m_sourceControl->TaskEnded(*this);
    delete this;
}

bool ScsUtils::IsFileVersionControlActive()
{
    return gProvider.m_sourceControl && gProvider.m_sourceControl->IsFileVersionControlActive();
}

QPixmap ScsUtils::getAssetStateIcon(QPixmap& in_base, unsigned in_state, bool in_active, bool in_ownSpace)
{
    return gProvider.m_sourceControl
               ? gProvider.m_sourceControl->GetAssetStateIcon(in_base, in_state, in_active, in_ownSpace)
               : in_base;
}

QString ScsUtils::GetToolTip(nexa4::NEXAHandle<nexa4::IDbObject> in_object, const QString& in_icon)
{
    return gProvider.m_sourceControl && in_object.IsValid() ? gProvider.m_sourceControl->GetToolTip(in_object, in_icon)
                                                            : QString();
}
