// SPDX-License-Identifier: MIT
/// Where an implementation of the data layer plugs in. Implementations and hosts include this header; the browser
/// library never does.
#pragma once

#include "datamodel/export.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/models.h"
#include "datamodel/objectdatabase.h"
#include "datamodel/system.h"

#include <QPixmap>
#include <QString>

#include <list>
#include <memory>
#include <string>

class ScsTask;

namespace vireo
{
namespace datamodel
{

/// Implements GetTOC(), IsNameInNodeLibraryHierarchy(), Helpers, ItemIDUnlock and GetApplicationCommandManager().
class DATAMODEL_EXPORT IItemModel
{
public:
    virtual ~IItemModel() = default;
    virtual ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library) = 0;
    virtual bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name) = 0;
    virtual bool IsAbstractFunction(ItemAccessor& in_item) = 0;
    virtual bool IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item) = 0;
    virtual void SetGlobalVireoCompoundTarget(const CompoundAccessor& in_target, const CompoundAccessor& in_root) = 0;
    /// Null counts as an empty text.
    virtual const char* GetItemIDUID(const ItemID& in_item) = 0;
    virtual hmx::fwk::ICommandManager* GetApplicationCommandManager() = 0;
};

} // namespace datamodel
} // namespace vireo

namespace nexa4
{

/// Implements the handles, the well-known identities and the free functions of the object database.
class DATAMODEL_EXPORT IObjectDatabase
{
public:
    virtual ~IObjectDatabase() = default;
    /// The object at a position of an instance's cache; null when there is none. Implementations that take turns in one
    /// process need different instance numbers: NewDatabaseInstance() hands them out.
    virtual std::shared_ptr<IDbObject> GetObjectAt(int in_instance, int in_cacheIndex) = 0;
    virtual DbObjectId GetResourceType() = 0;
    virtual NEXAPtr<IHelper> GetHelper(const NEXAPtr<IDatabase>& in_database) = 0;
    virtual NEXAPtr<IDataSource> GetDataSourceFromResource(const NEXAPtr<IValueAsset>& in_resource) = 0;
    virtual bool IsSameUri(const NEXAPtr<IDataSource>& in_source, const NEXAHandle<IValueAsset>& in_resource) = 0;
    virtual std::string GetResourceExpandedURI(const NEXAHandle<IDbObject>& in_resource) = 0;
};

/// A number for a database instance that no other instance of this process has.
DATAMODEL_EXPORT int NewDatabaseInstance();

} // namespace nexa4

/// Implements ScsTask and ScsUtils.
class DATAMODEL_EXPORT ISourceControlDisplay
{
public:
    virtual ~ISourceControlDisplay() = default;
    virtual void RequestObjectStates(const ScsTask& in_task,
                                     const std::list<nexa4::NEXAHandle<nexa4::IDbObject>>& in_objects) = 0;
    virtual void TaskEnded(const ScsTask& in_task) = 0;
    virtual bool IsFileVersionControlActive() = 0;
    /// The result must depend on the arguments alone: the browser asks once for all items that look alike.
    virtual QPixmap GetAssetStateIcon(const QPixmap& in_base, unsigned in_state, bool in_active, bool in_ownSpace) = 0;
    virtual QString GetToolTip(const nexa4::NEXAHandle<nexa4::IDbObject>& in_object, const QString& in_icon) = 0;
};

/// An implementation of the data layer, in four groups. A null group answers as if there were no data layer. The groups
/// belong to the implementation and must live until another one is installed.
struct DATAMODEL_EXPORT Provider
{
    hmx::ISystem* m_system = nullptr;
    vireo::datamodel::IItemModel* m_items = nullptr;
    nexa4::IObjectDatabase* m_objects = nullptr;
    ISourceControlDisplay* m_sourceControl = nullptr;
};

/// Installs an implementation: all free functions and statics of the boundary forward to it until the next call. An
/// empty Provider means no data layer: every service is absent and every accessor is invalid.
/// \return what was installed before, so that implementations can take turns
DATAMODEL_EXPORT Provider InstallProvider(const Provider& in_provider);
