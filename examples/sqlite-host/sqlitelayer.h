// SPDX-License-Identifier: MIT
/// A data layer of a host's own: solvers and compounds in an SQLite file.
#pragma once

#include <datamodel/itemlibrary.h>
#include <datamodel/provider.h>

#include <QString>

#include <memory>
#include <string>

class SqliteLibrary;

/// The data layer, installed while it lives, with one library. What there is besides the boundary, only the host calls.
///
/// Texts are UTF-8 in the file and 8-bit Latin-1 here, with "?" for what that lacks. Each write goes to the file at
/// once: there is no undo, and nothing is ever dirty.
class SqliteLayer
{
public:
    /// Opens a file, and makes it when there is none. Throws std::runtime_error with the reason.
    explicit SqliteLayer(const QString& in_path);
    ~SqliteLayer();
    SqliteLayer(const SqliteLayer&) = delete;
    SqliteLayer& operator=(const SqliteLayer&) = delete;

    vireo::datamodel::ItemLibraryAccessor GetLibrary() const;

    /// \param in_type VireoType::gSolver or VireoType::gCompound
    /// \return the invalid identity when the file takes no changes
    vireo::datamodel::ItemID Add(const char* in_type, const std::string& in_name, const std::string& in_tags);
    bool Remove(const vireo::datamodel::ItemID& in_item);

private:
    const std::shared_ptr<SqliteLibrary> m_library;
    const std::unique_ptr<vireo::datamodel::IItemModel> m_model;
    const Provider m_before;
};
