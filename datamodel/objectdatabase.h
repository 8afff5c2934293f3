// SPDX-License-Identifier: MIT
/// The object database behind the items: objects, data sources, resources, queries.
#pragma once

#include "datamodel/dbobjectid.h"
#include "datamodel/export.h"
#include "datamodel/nexahandle.h"
#include "datamodel/nexaptr.h"

#include <string>
#include <vector>

namespace nexa4
{

/// Data-source state codes that this side of the boundary knows; every other code is the data layer's.
enum
{
    eDataSourceReadOnly = 1, ///< nothing in the source can be changed
};

/// Where objects are stored: one library file, one folder, one repository. Compared by pointer.
class DATAMODEL_EXPORT IDataSource
{
public:
    virtual ~IDataSource() = default;
    /// eDataSourceReadOnly or a code of the data layer's own. A change of it is not notified.
    virtual int GetState() const = 0;
};

/// What every database object offers.
class DATAMODEL_EXPORT IDbObject
{
public:
    virtual ~IDbObject() = default;
    /// The object's identity, the same one after a restart.
    virtual DbObjectId GetDbObjectId() const = 0;
    /// The data source that the object is stored in, never null: a build asks the source of each item's object for its
    /// state, and a null pointer throws there. The same pointer for all objects of one source.
    virtual NEXAPtr<IDataSource> GetDataSource() const = 0;
    /// The manager of the object, never null. Its database lists the sources that the object can be moved to.
    virtual NEXAPtr<IDataModelMgr> GetManager() const = 0;
};

/// An object that is an asset with a type.
class DATAMODEL_EXPORT ITypeAsset : public virtual IDbObject
{
public:
    /// Whether the asset's content is in memory. It must not load the content: a build asks for each item.
    virtual bool IsLoaded() const = 0;
    /// Whether the asset came with the product and cannot be changed. Meaningful only for a loaded asset.
    virtual bool IsBuiltIn() const = 0;
};

/// An object that is a value. A resource is one: a value that stands for a data source.
class DATAMODEL_EXPORT IValueAsset : public virtual IDbObject
{
public:
    /// The value's name, 8-bit Latin-1.
    virtual std::string GetName() const = 0;
    /// The value that this one designates: for a resource, the one to ask GetDataSourceFromResource() about.
    virtual NEXAPtr<IValueAsset> GetDesignatedAsset() const = 0;
};

/// A database instance.
class DATAMODEL_EXPORT IDatabase
{
public:
    virtual ~IDatabase() = default;
    /// The object with an identity; an invalid handle when there is none.
    virtual NEXAHandle<IDbObject> FindObject(const DbObjectId& in_id) const = 0;
    /// The identities of the objects that a query matches, in the database's order; none when it cannot read the query.
    /// \param in_query "select object where IS_OF_TYPE_VERSION( {TYPE } )" with the identity text of a type
    /// \param in_loaded also objects whose content has to be loaded first
    virtual std::vector<DbObjectId> Query(const std::string& in_query, bool in_loaded) const = 0;
};

/// The manager of objects of a database.
class DATAMODEL_EXPORT IDataModelMgr
{
public:
    virtual ~IDataModelMgr() = default;
    /// The database instance that the objects are in.
    virtual NEXAPtr<IDatabase> GetDatabase() const = 0;
};

/// Operations on a database as a whole.
class DATAMODEL_EXPORT IHelper
{
public:
    virtual ~IHelper() = default;

    /// The helper of a database instance; null for a null database or without a data layer.
    static NEXAPtr<IHelper> GetHelper(const NEXAPtr<IDatabase>& in_database);

    /// Moves an object to another data source. Notifies the observers of the libraries concerned.
    /// \param in_withContent also move what belongs to the object
    /// \return false when nothing was moved: an unknown object or source, a read-only source on either side, the same
    /// source
    virtual bool MoveToDataSource(const NEXAHandle<IDbObject>& in_object, const NEXAPtr<IDataSource>& in_target,
                                  bool in_withContent) = 0;
};

/// The data source that a resource stands for; null when it stands for none, for a null resource, or without a data
/// layer.
DATAMODEL_EXPORT NEXAPtr<IDataSource> GetDataSourceFromResource(const NEXAPtr<IValueAsset>& in_resource);

/// Whether a data source and a resource have the same location; false for null or invalid ones.
DATAMODEL_EXPORT bool IsSameUri(const NEXAPtr<IDataSource>& in_source, const NEXAHandle<IValueAsset>& in_resource);

/// The location of a resource with everything in it resolved, as people read it; empty for an invalid one.
DATAMODEL_EXPORT std::string GetResourceExpandedURI(const NEXAHandle<IDbObject>& in_resource);

} // namespace nexa4
