// SPDX-License-Identifier: MIT
/// An item library that is kept in MaterialX documents on disk.
#pragma once

#include "materialx/description.h"
#include "memorymodel/library.h"
#include "memorymodel/store.h"
#include "workspace/documents.h"
#include "workspace/export.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace memorymodel
{
class DataLayer;
class SourceControl;
} // namespace memorymodel

namespace workspace
{

class Content;
class Versions;
struct OpenedDocuments;

/// What is read of a folder or a file before a library shows it.
class WORKSPACE_EXPORT Reading
{
public:
    explicit Reading(const QString& in_path);
    ~Reading();
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    /// Reads all documents and makes their items. Saves that were interrupted here are completed or taken back first.
    /// On any thread. Time grows with the size of the files.
    /// \return whether the path can be opened
    bool Run();
    /// Why it cannot be opened, as "FILE:LINE: reason".
    const QString& GetError() const { return m_error; }

    /// For other threads while it runs.
    Progress m_progress;

private:
    friend class Workspace;

    const QString m_path;
    const std::unique_ptr<OpenedDocuments> m_opened;
    QString m_error;
};

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
class WORKSPACE_EXPORT Workspace : public memorymodel::Store, public std::enable_shared_from_this<Workspace>
{
public:
    using ItemID = vireo::datamodel::ItemID;

    /// Opens a file or a folder as a new library. Everything is read before the data layer is changed. Saves that were
    /// interrupted here are completed or taken back first; GetRemarks() has what is to be said of that. Time grows with
    /// the size of the files.
    /// \param out_error why it cannot be opened, as "FILE:LINE: reason"
    /// \return null on an error
    static std::shared_ptr<Workspace> Open(memorymodel::DataLayer& io_layer, const QString& in_path,
                                           QString* out_error);
    /// Makes a library of what was read. It is empty until Fill() has added all items; nobody is to observe or change
    /// it before that.
    /// \param io_reading has run with success; what it read goes to the workspace
    static std::shared_ptr<Workspace> Open(memorymodel::DataLayer& io_layer, Reading& io_reading);
    /// Adds so many of the items that are missing yet. Constant time an item.
    /// \return whether there are more
    bool Fill(std::size_t in_count);
    ~Workspace() override;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    memorymodel::Library& GetLibrary() const;

    /// The opened path.
    const QString& GetPath() const;

    /// What the documents say about an item; nothing for one that no document has. Reads the declarations of the item
    /// each time.
    std::optional<materialx::Description> Describe(const ItemID& in_item) const;

    /// The documents that are not as they are on the disk: paths from the opened folder.
    QStringList GetChangedDocuments() const;
    /// Those that the last commit has written.
    const QStringList& GetSavedDocuments() const { return m_savedDocuments; }
    /// What the last commit could not save, and why: "DOCUMENT: reason" for each document, in its own characters.
    const QStringList& GetSaveMessages() const { return m_saveMessages; }

    /// Who runs what takes long, at first the caller. A host may run it on another thread and keep its windows alive
    /// meanwhile. Until it is done, all writes of the library are refused, and so are commits and looks at files.
    void SetRunner(Runner in_runner) { m_runner = std::move(in_runner); }
    bool IsBusy() const;

    /// What git has of the documents. It is there as long as this object. Whoever makes a library of what was read
    /// lets it ask when the library is shown; from then on looks at files and commits do.
    Versions& GetVersions() const { return *m_versions; }

    /// \name Files that others change
    /// A document is named by its path from the opened folder, an opened file by its name. What became of its items is
    /// told to the library item by item. That cannot be undone, and leaves no item dirty.
    /// \{

    /// Looks at all files, for new ones, and what may be written now. Files are read only if the system tells something
    /// new of them. Does nothing if the opened path is gone.
    void Refresh();
    /// Looks at one file, which may be new or gone. A document with edits is left as it is when somebody else has
    /// changed the file, and is in conflict from then on. One that cannot be read any more keeps its items.
    void Refresh(const QString& in_document);
    eDocumentState GetDocumentState(const QString& in_document) const;
    /// The documents that are in conflict or cannot be read any more, in the order of their paths.
    QStringList GetTroubledDocuments() const;
    /// Whether there is something at the opened path.
    bool IsThere() const;
    /// The files of all documents, those that are not there excepted.
    QStringList GetFiles() const;
    /// Why a document cannot be read any more, as "FILE:LINE: reason"; empty when it can.
    QString GetProblem(const QString& in_document) const;
    /// The other documents with edits that belong together with those of one, since one step has changed several: they
    /// take the same side.
    QStringList GetTiedDocuments(const QString& in_document) const;
    /// Ends a conflict: our edits go. Commands that made them are planned afresh when they are undone.
    /// \return why a file cannot be read, and nothing has changed; empty on success
    QString TakeTheirs(const QString& in_document);
    /// Ends a conflict: the next commit replaces the file as it is now.
    /// \return why a file cannot be read, and nothing has changed; empty on success
    QString KeepOurs(const QString& in_document);
    /// Ends a conflict: writes our bytes beside the file, to a name that is no document's, and takes theirs.
    /// \param out_files where ours are then
    /// \return why that cannot be done, and nothing has changed; empty on success
    QString SaveOursBeside(const QString& in_document, QStringList* out_files);
    /// \}

    /// What became of saves that were interrupted, by whomever, as far as somebody should know: a sentence each.
    const QStringList& GetRemarks() const;
    void ClearRemarks();

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
    /// Looks at files, and tells the library.
    void Look(const std::vector<std::size_t>& in_documents);
    void LookAtPermissions();
    /// Waits until nobody reads the documents.
    void OnPermissionsChanged();
    std::vector<std::size_t> DocumentsToSave(const memorymodel::CommitRequest& in_request) const;

    const std::shared_ptr<Content> m_content;
    const std::unique_ptr<Versions> m_versions;
    Runner m_runner;
    QStringList m_savedDocuments;
    QStringList m_saveMessages;
};

} // namespace workspace
