// SPDX-License-Identifier: MIT
/// Documents, the items that they make, and the library in memory that shows them.
#pragma once

#include "memorymodel/library.h"
#include "memorymodel/store.h"
#include "workspace/catalogue.h"
#include "workspace/documents.h"

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace workspace
{

/// Makes the library follow the documents. Documents change first; what became of the items is told to the library in a
/// second step, since observers are notified then, who may change documents themselves.
class Content
{
public:
    using ItemID = vireo::datamodel::ItemID;

    /// \param in_documents are opened
    /// \param in_library is empty, and stays longer than this object is used
    Content(Documents in_documents, memorymodel::Library& in_library);

    /// Adds the sources and the items. The first source takes new items: "Local" of a folder, or the opened file.
    void Fill();

    /// From here on the library is left alone.
    void Close() { m_isOpen = false; }
    bool IsOpen() const { return m_isOpen; }

    memorymodel::Library& GetLibrary() { return m_library; }
    Documents& GetDocuments() { return m_documents; }
    Catalogue& GetCatalogue() { return m_catalogue; }
    const materialx::Library& GetMaterial() const { return m_documents.GetLibrary(); }

    /// The source of documents that a source of the library shows; nothing when there is none.
    std::optional<std::size_t> FindSource(const memorymodel::DataSource& in_source) const;
    /// Whether a document can be changed and saved: those that came with the product cannot.
    bool MayChange(std::size_t in_document) const;

    /// Makes the items anew after documents have changed, adds sources that are new, and keeps in mind what Settle() is
    /// to tell.
    void Update(memorymodel::eFollowing in_following);
    /// Tells the library.
    void Settle();

    /// Looks anew at which items can be changed, after the permissions of files have changed, and tells the library.
    void UpdateAccess();

private:
    struct News
    {
        memorymodel::eFollowing m_following;
        bool m_isGone = false;
        ItemID m_id;       ///< invalid for a new item
        std::string m_key; ///< of a new item
    };

    memorymodel::DataSource& SourceFor(std::size_t in_source);
    void AddSources();
    bool IsFactory(std::size_t in_source) const;
    /// Whether each item cannot be changed, whatever its source says. Linear in the size of the library.
    std::vector<bool> AreReadOnly();
    memorymodel::NewItem Describe(const materialx::Item& in_item, bool in_isReadOnly);
    void Tell(const News& in_news);

    bool m_isOpen = true;
    Documents m_documents;
    Catalogue m_catalogue;
    memorymodel::Library& m_library;
    std::map<std::size_t, memorymodel::DataSource*> m_sources; ///< by sources of documents
    std::deque<News> m_news;
    std::vector<bool> m_areReadOnly; ///< of the items of the catalogue; empty until it is asked for
};

} // namespace workspace
