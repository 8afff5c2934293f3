// SPDX-License-Identifier: MIT
/// An item library that is kept in MaterialX documents on disk.
#pragma once

#include "memorymodel/library.h"
#include "memorymodel/store.h"
#include "workspace/documents.h"
#include "workspace/export.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <string>

namespace memorymodel
{
class DataLayer;
class SourceControl;
} // namespace memorymodel

namespace workspace
{

class Content;
class Versions;

/// A folder of documents, or one document, opened as a library of a data layer: the store of that library. What is
/// renamed, tagged, created, moved and removed in the library is changed in the documents at once, by the smallest
/// edit, and undo brings their bytes back. A commit replaces the files, as one change, and durably.
///
/// Folders right below the opened one are data sources; new nodes go to "local". "stdlib" is the factory source and
/// takes no changes; neither does a source into whose folder nothing can be written. An item can be changed when all
/// documents that hold its elements can be written. Tags under keys other than that of the application's tags are in no
/// document: they stay in memory, and end with the library.
///
/// The library holds its workspace until it is closed. After that this object does nothing any more.
class WORKSPACE_EXPORT Workspace : public memorymodel::Store
{
public:
    using ItemID = vireo::datamodel::ItemID;

    /// Opens a file or a folder as a new library. Everything is read before the data layer is changed. Saves that were
    /// interrupted here are completed or taken back first. Time grows with the size of the files.
    /// \param out_error why it cannot be opened, as "FILE:LINE: reason"
    /// \return null on an error
    static std::shared_ptr<Workspace> Open(memorymodel::DataLayer& io_layer, const QString& in_path,
                                           QString* out_error);
    ~Workspace() override;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    memorymodel::Library& GetLibrary() const;

    /// The documents that are not as they are on the disk: paths from the opened folder.
    QStringList GetChangedDocuments() const;

    /// What git has of the documents. It is there as long as this object.
    Versions& GetVersions() const { return *m_versions; }

    /// \name Files that others change
    /// A document is named by its path from the opened folder, an opened file by its name. What became of its items is
    /// told to the library item by item. That cannot be undone, and leaves no item dirty.
    /// \{

    /// Looks at all files, and for new ones.
    void Refresh();
    /// Looks at one file, which may be new or gone. A document with edits is left as it is when somebody else has
    /// changed the file, and is in conflict from then on. One that cannot be read any more keeps its items.
    void Refresh(const QString& in_document);
    eDocumentState GetDocumentState(const QString& in_document) const;
    /// Why a document cannot be read any more; empty when it can.
    QString GetProblem(const QString& in_document) const;
    /// Ends a conflict: our edits go. Commands that made them are planned afresh when they are undone.
    /// \return why the file cannot be read; empty on success
    QString TakeTheirs(const QString& in_document);
    /// Ends a conflict: the next commit replaces the file as it is now.
    /// \return why the file cannot be read; empty on success
    QString KeepOurs(const QString& in_document);
    /// Ends a conflict: writes our bytes beside the file, to a name that is no document's, and takes theirs.
    /// \param out_file where ours are then
    /// \return why that cannot be done; empty on success
    QString SaveOursBeside(const QString& in_document, QString* out_file);
    /// \}

    // Store
    std::unique_ptr<memorymodel::Step> Rename(const ItemID& in_item, const std::string& in_name) override;
    std::unique_ptr<memorymodel::Step> SetTags(const ItemID& in_item, const std::string& in_key,
                                               const std::string& in_tags) override;
    std::unique_ptr<memorymodel::Step> Move(const ItemID& in_item, const memorymodel::DataSource& in_target) override;
    std::unique_ptr<memorymodel::Step> Create(memorymodel::Creation& io_creation) override;
    std::unique_ptr<memorymodel::Step> Remove(const ItemID& in_item) override;
    memorymodel::CommitAnswer Commit(const memorymodel::CommitRequest& in_request) override;
    void Close() override;

private:
    Workspace(std::shared_ptr<Content> in_content, memorymodel::SourceControl& in_control);

    /// Nothing when there is no such document.
    std::optional<std::size_t> Find(const QString& in_document) const;
    /// Makes items of what was read, and tells the library.
    void TakeNews();
    std::vector<std::size_t> DocumentsToSave(const memorymodel::CommitRequest& in_request) const;

    const std::shared_ptr<Content> m_content;
    const std::unique_ptr<Versions> m_versions;
};

} // namespace workspace
