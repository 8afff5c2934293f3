// SPDX-License-Identifier: MIT
/// A data source of the in-memory data layer: what a group of items is stored in.
#pragma once

#include "datamodel/dbobjectid.h"
#include "datamodel/objectdatabase.h"
#include "memorymodel/export.h"

#include <memory>
#include <string>

namespace memorymodel
{

/// How a data source behaves; values are combined with "|".
enum
{
    ePlainSource = 0,    ///< takes changes and new items
    eReadOnlySource = 1, ///< refuses every change
    eFactorySource = 2,  ///< holds the first of the two well-known factory objects: its items came with the product
    eSecondFactorySource = 4, ///< the same for the second factory object
};

/// Made by Library::AddDataSource() and owned by the data layer.
class MEMORYMODEL_EXPORT DataSource : public nexa4::IDataSource
{
public:
    /// Made by Library::AddDataSource(). A source that is made directly belongs to no library, and takes no items.
    DataSource(std::string in_name, std::string in_location, unsigned in_flags);
    ~DataSource() override;
    DataSource(const DataSource&) = delete;
    DataSource& operator=(const DataSource&) = delete;

    /// nexa4::eDataSourceReadOnly, or 0.
    int GetState() const override;

    /// The name of its resource, as the menu of sources shows it.
    const std::string& GetName() const;
    /// Where it is stored, as people read it: a path or an address.
    const std::string& GetLocation() const;
    /// How it behaves now: SetReadOnly() changes eReadOnlySource.
    unsigned GetFlags() const;
    /// Whether it refuses changes.
    bool IsReadOnly() const;

    /// Closes the source to changes or opens it. Notifies nobody: the browser learns of it at its next rebuild.
    void SetReadOnly(bool in_readOnly);

private:
    struct Content;
    std::unique_ptr<Content> m_private;
};

} // namespace memorymodel
