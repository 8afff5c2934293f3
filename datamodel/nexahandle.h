// SPDX-License-Identifier: MIT
/// Handles on objects of the object database.
#pragma once

#include "datamodel/dbobjectid.h"
#include "datamodel/export.h"
#include "datamodel/nexaptr.h"

#include <memory>

namespace nexa4
{

/// What a handle finds its object with; null when the object or the whole database is gone.
DATAMODEL_EXPORT std::shared_ptr<IDbObject> ResolveHandle(int in_instance, int in_cacheIndex);

/// A handle on a database object: which database instance it is in, and at which place of that instance's cache. It
/// holds no object: it is resolved at each use by the data layer that is installed then, so a handle on an object that is
/// gone, or that another data layer made, is invalid and never dangles. Copying is free; each operation costs one look-up.
///
/// T is the interface that the object is viewed as: IDbObject, ITypeAsset or IValueAsset. A handle is valid when its
/// object exists and offers that interface.
template <class T> class NEXAHandle
{
public:
    /// The invalid handle.
    NEXAHandle() = default;

    /// A handle on the same place, viewed as T.
    static NEXAHandle AssignCast(int in_instance, int in_cacheIndex)
    {
        NEXAHandle handle;
        handle.m_instance = in_instance;
        handle.m_cacheIndex = in_cacheIndex;
        return handle;
    }

    int GetInstance() const { return m_instance; }
    int GetCacheIndex() const { return m_cacheIndex; }

    bool IsValid() const { return (*this).operator->().IsValid(); }

    /// The object; the null pointer when the handle is invalid, so that following it throws ExBase::NullPtr.
    NEXAPtr<T> operator->() const
    {
        return NEXAPtr<T>(std::dynamic_pointer_cast<T>(ResolveHandle(m_instance, m_cacheIndex)));
    }

    /// Whether the object's content is in memory (ITypeAsset). Throws ExBase::NullPtr on an invalid handle, and so do
    /// the three below.
    bool IsLoaded() const { return (*this)->IsLoaded(); }
    DbObjectId GetDbObjectId() const { return (*this)->GetDbObjectId(); }
    /// The data source that the object lives in.
    NEXAPtr<IDataSource> GetDataSource() const { return (*this)->GetDataSource(); }
    /// What manages the object.
    NEXAPtr<IDataModelMgr> GetManager() const { return (*this)->GetManager(); }

private:
    int m_instance = -1;
    int m_cacheIndex = -1;
};

} // namespace nexa4
