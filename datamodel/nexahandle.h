// SPDX-License-Identifier: MIT
/// Handles on objects of the object database.
#pragma once

#include "datamodel/dbobjectid.h"
#include "datamodel/export.h"
#include "datamodel/nexaptr.h"

#include <memory>

namespace nexa4
{

/// The object of a handle; null when the object or the whole database is gone.
DATAMODEL_EXPORT std::shared_ptr<IDbObject> ResolveHandle(int in_instance, int in_cacheIndex);

/// A handle on a database object: a database instance, and a position in its cache. It holds no object. The
/// installed data layer resolves it at each use. So a handle never dangles: it is invalid when its object is gone, or
/// when another data layer made it. Copying is free; each operation costs one look-up.
///
/// T is the interface that the object is viewed as: IDbObject, ITypeAsset or IValueAsset. A handle is valid when its
/// object exists and offers that interface.
template <class T> class NEXAHandle
{
public:
    /// The invalid handle.
    NEXAHandle() = default;

    /// A handle on this position, viewed as T.
    static NEXAHandle AssignCast(int in_instance, int in_cacheIndex)
    {
        NEXAHandle handle;
        handle.m_instance = in_instance;
        handle.m_cacheIndex = in_cacheIndex;
        return handle;
    }

    /// The database instance, a number of NewDatabaseInstance(); -1 for the invalid handle.
    int GetInstance() const { return m_instance; }
    /// The position in the cache of that instance; -1 for the invalid handle.
    int GetCacheIndex() const { return m_cacheIndex; }

    /// Whether the object exists now and offers T. Costs one look-up, like each use.
    bool IsValid() const { return (*this).operator->().IsValid(); }

    /// The object. When the handle is invalid: the null pointer, which throws ExBase::NullPtr when it is dereferenced.
    NEXAPtr<T> operator->() const
    {
        return NEXAPtr<T>(std::dynamic_pointer_cast<T>(ResolveHandle(m_instance, m_cacheIndex)));
    }

    /// Whether the object's content is in memory (ITypeAsset). This and the three below throw ExBase::NullPtr when the
    /// handle is invalid.
    bool IsLoaded() const { return (*this)->IsLoaded(); }
    /// The object's identity.
    DbObjectId GetDbObjectId() const { return (*this)->GetDbObjectId(); }
    /// The data source that the object is stored in.
    NEXAPtr<IDataSource> GetDataSource() const { return (*this)->GetDataSource(); }
    /// What manages the object.
    NEXAPtr<IDataModelMgr> GetManager() const { return (*this)->GetManager(); }

private:
    int m_instance = -1;
    int m_cacheIndex = -1;
};

} // namespace nexa4
