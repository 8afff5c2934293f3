// SPDX-License-Identifier: MIT
/// What the parts of one data layer share: its libraries and its database.
#pragma once

#include "memorymodel/database.h"
#include "memorymodel/librarycontext.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>

namespace memorymodel
{

/// All libraries of a data layer, and the database that they share. Owned by the data layer.
class LayerContents
{
public:
    explicit LayerContents(CommandManager& in_commands) : m_database(std::make_shared<Database>(in_commands)) {}

    Database& GetDatabase() const { return *m_database; }

    std::shared_ptr<LibraryContext> AddLibrary(std::string in_name)
    {
        const auto library = std::make_shared<LibraryContext>(std::move(in_name), m_database);
        m_libraries[library->GetSpace()] = library;
        return library;
    }

    void RemoveLibrary(const LibraryContext& in_library) { m_libraries.erase(in_library.GetSpace()); }

    /// Null when no library has the item. Costs the logarithm of the number of libraries.
    std::shared_ptr<Item> FindItem(const vireo::datamodel::ItemID& in_item) const
    {
        const std::shared_ptr<LibraryContext> library = FindLibrary(in_item);
        return library ? library->FindItem(in_item) : nullptr;
    }

    /// The library that made an identity; null when it is gone. Costs the same.
    std::shared_ptr<LibraryContext> FindLibrary(const vireo::datamodel::ItemID& in_item) const
    {
        const auto found = m_libraries.find(in_item.GetSpace());
        return found == m_libraries.end() ? nullptr : found->second;
    }

    /// Whether a library has somebody else to ask for its states.
    bool HasVersioning() const
    {
        return std::any_of(m_libraries.begin(), m_libraries.end(),
                           [](const auto& in_library) { return in_library.second->GetVersioning() != nullptr; });
    }

private:
    const std::shared_ptr<Database> m_database;
    std::map<std::uint64_t, std::shared_ptr<LibraryContext>> m_libraries;
};

} // namespace memorymodel
