// SPDX-License-Identifier: MIT
/// What git has of the documents and items of a workspace.
#pragma once

#include "materialx/moving.h"
#include "memorymodel/versioning.h"
#include "workspace/export.h"
#include "workspace/gitstate.h"
#include "workspace/gitworker.h"
#include "workspace/repository.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace memorymodel
{
class SourceControl;
}

namespace workspace
{

class Content;

/// A document of an item, as git has it.
struct DocumentVersion
{
    QString m_path; ///< from the opened folder
    QString m_file; ///< as the system opens it
    eGitState m_state = eGitState::eNone;
    QString m_problem; ///< why the document cannot be read any more; empty when it can
};

/// Follows git and answers for a library. The first answer says whether there is a repository: then version control
/// becomes active, and is switched on. From then on the states of the items that anybody requested are told whenever
/// they are others, also after a commit, a checkout or a stash of another program.
///
/// Git is asked on a thread of its own, one question at a time; nothing here waits for it but Finish() and the end.
/// Everything is called, and notifies, on the thread of the library.
class WORKSPACE_EXPORT Versions : public QObject, public memorymodel::Versioning
{
    Q_OBJECT

public:
    using ItemID = vireo::datamodel::ItemID;

    /// \param in_control must be there until Close()
    Versions(std::shared_ptr<Content> in_content, memorymodel::SourceControl& in_control);
    ~Versions() override;

    /// Asks for the states of all documents anew, because files may have changed. Calls that come while git is busy are
    /// answered together.
    void Ask();

    /// Whether there is a repository that can be read. False until the first answer.
    bool IsActive() const { return m_isActive; }
    /// Why a repository that is there cannot be read; else empty.
    const QString& GetProblem() const { return m_problem; }

    /// The documents of an item, in the order of their paths.
    std::vector<DocumentVersion> GetDocuments(const ItemID& in_item);
    /// The last five commits that changed a document. Null as long as they are not known: then git is asked, and
    /// HistoryRead() follows. Forgotten when something happens in the repository.
    const std::vector<GitCommit>* FindHistory(const QString& in_path);

    /// Waits for git to answer all that it was asked.
    void Finish();
    /// How many documents git was asked about so far.
    std::size_t GetAskedCount() const { return m_askedCount; }

    /// The library ends: no more questions, and no more notifications.
    void Close();

    // Versioning. An item has the greatest of its documents' states.
    void RequestStates(const std::vector<ItemID>& in_items) override;
    /// Name, state, each document, and its last commit as far as it is known.
    QString GetToolTip(const ItemID& in_item) override;
    /// Makes the documents that are read-only writable if they are as the index has them. Else Refused() says why.
    bool CheckOut(const ItemID& in_item, bool in_interactive) override;
    void MakeWritable(const ItemID& in_item, bool in_interactive) override;

Q_SIGNALS:
    /// The states of all documents were read, or could not be.
    void StatesRead();
    void HistoryRead(const QString& in_path);
    /// Files were made writable: what may be changed, and the states, are to be asked anew.
    void PermissionsChanged();
    /// Nothing, or not all, of what a person wanted was done.
    void Refused(const QString& in_reason);

private:
    void Take(const GitStates& in_answer, const std::vector<std::size_t>& in_documents);
    void SetActive(bool in_isActive);
    void Watch(const QStringList& in_folders);
    /// Tells the states that were requested, if they can be others than the last time.
    void Tell();
    /// Indices of documents.
    materialx::ItemDocuments::List DocumentsOf(const ItemID& in_item);
    eGitState StateOfDocument(std::size_t in_document) const;
    eGitState StateOf(const ItemID& in_item);
    void ChangeFiles(const ItemID& in_item, QString (*in_change)(const std::vector<QByteArray>&), bool in_interactive);

    const std::shared_ptr<Content> m_content;
    memorymodel::SourceControl* m_control; ///< null after Close()
    bool m_isActive = false;
    QString m_problem;
    std::vector<eGitState> m_states; ///< of documents; those beyond the end have none
    std::set<ItemID> m_requested;
    bool m_isRequested = false;          ///< since they were told
    bool m_wasActive = false;            ///< when they were told
    std::uint64_t m_toldRevision = 0;    ///< of the catalogue, then
    std::vector<eGitState> m_toldStates; ///< then
    std::map<QString, std::vector<GitCommit>> m_histories;
    std::set<QString> m_askedHistories;
    std::size_t m_happenings = 0; ///< in repositories; what was read before the last one may be out of date
    std::size_t m_askedCount = 0;
    bool m_isAsking = false;
    bool m_isAskedAgain = false;
    QFileSystemWatcher m_watcher;
    QTimer m_pause;     ///< what happens in a repository comes in bursts
    GitWorker m_worker; ///< ends first
};

} // namespace workspace
