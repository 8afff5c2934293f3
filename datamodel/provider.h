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
/// Everything but SetGlobalVireoCompoundTarget() is a read: it neither runs the event loop nor notifies.
class DATAMODEL_EXPORT IItemModel
{
public:
    virtual ~IItemModel() = default;

    /// The table of contents of a library. The library is valid, but may be another implementation's: the result is
    /// then invalid. Called when a library is attached, and by the dialog for new compounds.
    virtual ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library) = 0;

    /// Whether a node of a valid library, or of one that it builds on, has exactly this name. Called at each change of
    /// the text in the rename dialog.
    virtual bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name) = 0;

    /// Whether an item is a signature; false for an invalid accessor and for what is no compound. A build asks once for
    /// each compound.
    virtual bool IsAbstractFunction(ItemAccessor& in_item) = 0;

    /// Whether a graph can contain the item. A build asks once for each item, and does not list it after false.
    /// \param in_typeName the constant that the item was iterated by
    virtual bool IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item) = 0;

    /// Makes a compound the one that the application edits. Called for a double click on a compound, and for a new
    /// compound. Either accessor may be invalid: there is no target, or the target is shown by itself. It may run
    /// dialogs.
    virtual void SetGlobalVireoCompoundTarget(const CompoundAccessor& in_target, const CompoundAccessor& in_root) = 0;

    /// The identity text of the item's database object. Null, or a text that is no UID, for an item without one. It
    /// stays valid until the next call. A build asks once for each item.
    ///
    /// The dialog for new compounds asks for each signature, and passes the text of the chosen one as the base class.
    /// This is all that signatures need: there may be no IObjectDatabase, and no object behind the text.
    virtual const char* GetItemIDUID(const ItemID& in_item) = 0;

    /// The command manager of the application; null for none. It stays the implementation's. The type selector gives it
    /// to its browser.
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

    /// The object at a position of an instance's cache; null when there is none, and for another implementation's
    /// instance. Implementations that take turns in one process need different instance numbers: NewDatabaseInstance()
    /// hands them out. Constant time: every use of a handle asks.
    virtual std::shared_ptr<IDbObject> GetObjectAt(int in_instance, int in_cacheIndex) = 0;

    /// The identity of the resource type. It goes into the query for the data sources, so that
    /// IDatabase::Query() recognises it.
    virtual DbObjectId GetResourceType() = 0;

    /// The helper of a database, which is never null; null for a database of another implementation.
    virtual NEXAPtr<IHelper> GetHelper(const NEXAPtr<IDatabase>& in_database) = 0;

    /// The data source that a resource stands for; null when it stands for none. The resource is never null. The source
    /// is the same pointer that the objects in it return.
    virtual NEXAPtr<IDataSource> GetDataSourceFromResource(const NEXAPtr<IValueAsset>& in_resource) = 0;

    /// Whether a source and a resource have the same location. Neither is null or invalid. The answer marks the source
    /// that a compound is in now.
    virtual bool IsSameUri(const NEXAPtr<IDataSource>& in_source, const NEXAHandle<IValueAsset>& in_resource) = 0;

    /// The location of a valid resource as people read it, 8-bit Latin-1. Shown as the tool tip of a source.
    virtual std::string GetResourceExpandedURI(const NEXAHandle<IDbObject>& in_resource) = 0;
};

/// A number for a database instance that no other instance of this process has.
DATAMODEL_EXPORT int NewDatabaseInstance();

} // namespace nexa4

/// Implements ScsTask and ScsUtils. May be left out: then nothing is under version control.
class DATAMODEL_EXPORT ISourceControlDisplay
{
public:
    virtual ~ISourceControlDisplay() = default;

    /// Begins to find out the states of objects, and returns at once. Called inside a paint: each state is sent later,
    /// from the event loop, as ItemAccessStateChanged() of the library that the object is in. Skips invalid handles.
    /// The list may be empty.
    /// \param in_task stays valid until TaskEnded()
    virtual void RequestObjectStates(const ScsTask& in_task,
                                     const std::list<nexa4::NEXAHandle<nexa4::IDbObject>>& in_objects) = 0;

    /// Drops what this task still waits for. The task dies after the call. Called for every task, also for one that
    /// never requested anything.
    virtual void TaskEnded(const ScsTask& in_task) = 0;

    /// Whether files are under version control at all. Badges are shown while they are and the property "source control
    /// enabled" is set. Asked when the properties change, and while that one is set at each build and for each state
    /// that arrives.
    virtual bool IsFileVersionControlActive() = 0;

    /// The icon of a state, see ScsUtils::getAssetStateIcon(). The result must depend on the arguments alone: the
    /// browser asks once for all items that look alike, and again when it comes to a screen of another density. The
    /// base has the device pixel ratio of that screen. A result with the same ratio is as sharp as the base.
    virtual QPixmap GetAssetStateIcon(const QPixmap& in_base, unsigned in_state, bool in_active, bool in_ownSpace) = 0;

    /// The text of a compound's tool tip. The object is valid. Asked each time the tool tip opens.
    /// \param in_icon resource name of an icon that the text may show
    virtual QString GetToolTip(const nexa4::NEXAHandle<nexa4::IDbObject>& in_object, const QString& in_icon) = 0;
};

/// An implementation of the data layer, in four groups. A null group answers as if there were no data layer. The groups
/// belong to the implementation and must live until another one is installed.
struct DATAMODEL_EXPORT Provider
{
    hmx::ISystem* m_system = nullptr;                 ///< the services; null: all are absent
    vireo::datamodel::IItemModel* m_items = nullptr;  ///< the items; null: no library has a table of contents
    nexa4::IObjectDatabase* m_objects = nullptr;      ///< the objects behind the items; null: all handles are invalid
    ISourceControlDisplay* m_sourceControl = nullptr; ///< badges and tool tips; null: there are none
};

/// Installs an implementation: all free functions and statics of the boundary forward to it until the next call. An
/// empty Provider means no data layer: every service is absent and every accessor is invalid.
/// \return what was installed before, so that implementations can take turns
DATAMODEL_EXPORT Provider InstallProvider(const Provider& in_provider);
