// SPDX-License-Identifier: MIT
/// Documents, the items that they make, and the library in memory that shows them.
#pragma once

#include "materialx/moving.h"
#include "memorymodel/library.h"
#include "memorymodel/store.h"
#include "workspace/catalogue.h"
#include "workspace/documents.h"

#include <QUuid>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace workspace
{

/// What opening reads, before any library has it.
struct OpenedDocuments
{
    Documents m_documents;
    Catalogue m_catalogue;
    std::vector<QUuid> m_identities;        ///< of the items of the catalogue
    materialx::ItemDocuments m_documentsOf; ///< of the same
    std::vector<bool> m_areReadOnly;        ///< of the same

    /// Reads all documents of a folder, or one, and makes the items. On any thread.
    /// \return why they cannot be opened, or that it was cancelled
    std::optional<materialx::Error> Open(const QString& in_path, Progress* io_progress = nullptr);
};

/// Makes the library follow the documents. Documents change first; what became of the items is told to the library in a
/// second step, since observers are notified then, who may change documents themselves.
class Content
{
public:
    using ItemID = vireo::datamodel::ItemID;

    /// \param in_library is empty, and stays longer than this object is used
    Content(OpenedDocuments in_opened, memorymodel::Library& in_library);

    /// Adds the sources. The first one takes new items: "Local" of a folder, or the opened file.
    void AddSources();
    /// Adds so many of the items that are missing yet. Nothing else is to be done before there are none.
    /// \return whether there are more
    bool Fill(std::size_t in_count);

    /// Found once for each set of items; then linear in the size of the library.
    const materialx::ItemDocuments& GetDocumentsOfItems();

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
    /// to tell. Linear in the size of the library, but fast when only names and tags have changed.
    void Update(memorymodel::eFollowing in_following);
    /// The same after documents were read anew, by way of a runner.
    void UpdateRead(const Runner& in_run);
    /// Whether the items are those of the documents. While documents were read anew and their items are being made,
    /// nothing can be told of an item's elements.
    bool IsInStep() const { return m_isInStep; }
    /// Asks anew what may be written, and keeps in mind what Settle() is to tell. Linear in the size of the library.
    void UpdateReadOnly(const Runner& in_run);
    /// Tells the library.
    void Settle();

private:
    struct News
    {
        memorymodel::eFollowing m_following;
        bool m_isGone = false;
        ItemID m_id;       ///< invalid for a new item
        std::string m_key; ///< of a new item
    };

    memorymodel::DataSource& SourceFor(std::size_t in_source);
    void Keep(const CatalogueNews& in_news, memorymodel::eFollowing in_following);
    memorymodel::NewItem Describe(const materialx::Item& in_item, bool in_isReadOnly);
    void Tell(const News& in_news);

    bool m_isOpen = true;
    bool m_isInStep = true;
    Documents m_documents;
    Catalogue m_catalogue;
    memorymodel::Library& m_library;
    std::map<std::size_t, memorymodel::DataSource*> m_sources; ///< by sources of documents
    std::deque<News> m_news;
    bool m_isInvalidated = false;           ///< Settle() is to say that rows look otherwise
    materialx::ItemDocuments m_documentsOf; ///< of the items of the catalogue
    std::uint64_t m_revisionOfDocumentsOf;  ///< of the catalogue, when those were found
    std::vector<bool> m_areReadOnly;        ///< of the items of the catalogue; empty until it is asked for
    std::vector<QUuid> m_identities;        ///< of the same; only until the library is filled
    std::size_t m_filled = 0;
};

} // namespace workspace
