// SPDX-License-Identifier: MIT
/// The documents of an opened folder or file, what the disk has of them, and what was changed since.
#pragma once

#include "materialx/edit.h"
#include "materialx/items.h"
#include "workspace/files.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace workspace
{

/// The folder below the opened one that new nodes go to.
constexpr char gLocalFolder[] = "local";

/// How a document stands to its file.
enum class eDocumentState
{
    eInStep,     ///< the file was last seen as the document was read or saved
    eConflict,   ///< it has edits, and the file was changed by somebody else
    eUnreadable, ///< the file was changed by somebody else, and cannot be read: these are the last good items
};

/// How far opening has come, for other threads.
struct Progress
{
    std::atomic<int> m_documents{0}; ///< how many there are; 0 until that is known
    std::atomic<int> m_read{0};
    std::atomic<bool> m_isCancelled{false}; ///< set from outside: nothing more is read
};

/// Calls a function that reads and writes files, and comes back when it is done. It may call it on another thread.
using Runner = std::function<void(const std::function<void()>&)>;

/// Each document has a number that says which of its states it is in. A change leads from one state to another, and its
/// inverse back to the first: only in exactly that state the positions of its bytes are good.
///
/// While a Runner runs, the documents are read on its thread: they are busy then, and refuse all that changes them.
class Documents
{
public:
    using State = std::uint64_t;

    /// Lists and reads all documents of a folder, or one. Completes or takes back saves that were interrupted. One that
    /// can be neither keeps no document from being read, but all of its folder from being saved; a remark says so.
    /// \return why they cannot be opened, or that it was cancelled
    std::optional<materialx::Error> Open(const QString& in_path, Progress* io_progress = nullptr);

    const materialx::Library& GetLibrary() const { return m_library; }
    /// For what adds documents without bytes. Bytes are changed here alone.
    materialx::Library& GetLibrary() { return m_library; }
    /// Where journals go: the opened folder, or the one that the opened file is in.
    QString GetFolder() const;
    /// From that folder, the path of a document that has this one from the opened folder. An opened file may be a link.
    QString GetPathInFolder(const QString& in_relativePath) const;

    State GetState(std::size_t in_document) const { return Of(in_document).m_state; }
    /// The states of the documents that a change touches.
    std::map<std::size_t, State> GetStates(const materialx::Change& in_change) const;
    /// Makes a change, or nothing of it. The documents that it touches come into states that they never had.
    bool Apply(const materialx::Change& in_change);
    /// The same, for a change that leads to states that the documents had before.
    bool Apply(const materialx::Change& in_change, const std::map<std::size_t, State>& in_states);

    /// The declarations that are shown otherwise since the last call; nothing when more has changed than that.
    std::optional<std::vector<materialx::DeclarationIndex>> TakeTouched();

    bool IsBusy() const { return m_isBusy; }
    /// Runs what reads the documents. What it throws passes through.
    void RunBusy(const Runner& in_run, const std::function<void()>& in_function);

    /// Whether the bytes are not those that were read or saved. Compares bytes only if an edit was made since that left
    /// their count as it was.
    bool IsChanged(std::size_t in_document) const;
    /// Whether there is a file at a path of a document that is not in the folder: links lead to it.
    bool LeadsOutside(const QByteArray& in_path) const;
    /// Whether the record of a save can be put into the opened folder.
    bool CanSave() const;
    /// Whether the file, or one where there is none yet, can be written, and the document can be edited and saved. That
    /// one came with the product is not asked here.
    bool CanWrite(std::size_t in_document) const;

    eDocumentState GetDocumentState(std::size_t in_document) const { return Of(in_document).m_documentState; }
    /// Why it is unreadable; else empty.
    const QString& GetProblem(std::size_t in_document) const { return Of(in_document).m_problem; }

    /// Looks for new files, if the opened path is there.
    void FindNew(const Runner& in_run);
    /// Reads files again that are not as they were last seen. A document with edits is left as it is, and in conflict.
    /// \return whether a document was replaced
    bool Refresh(const std::vector<std::size_t>& in_documents, const Runner& in_run);
    /// A document, and those with edits that changes across documents tie to it: they take the same side.
    std::vector<std::size_t> WithTiedEdits(std::size_t in_document) const;
    /// Reads the files again, whatever edits there are: all of WithTiedEdits(), or none.
    /// \return why one cannot be read; empty on success
    QString TakeTheirs(std::size_t in_document);
    /// From now on the file as it is now may be replaced, and so may those of WithTiedEdits() that are in conflict.
    QString KeepOurs(std::size_t in_document);
    /// Takes theirs, and writes the bytes that go into new files beside. All of it, or nothing.
    /// \param out_files where ours are then
    QString SaveOursBeside(std::size_t in_document, QStringList& out_files);

    /// Saves the documents, and those that one change ties to them.
    /// \return why documents were not saved, a sentence each
    std::vector<QString> Save(const std::vector<std::size_t>& in_documents, const Runner& in_run,
                              std::vector<std::size_t>& out_saved);
    /// Some documents, and those that a change across documents ties to them.
    std::vector<std::size_t> WithTies(std::vector<std::size_t> in_documents) const;

    /// What became of saves that were interrupted, in opening and saving, as far as somebody should know: a sentence
    /// each.
    const QStringList& GetRemarks() const { return m_remarks; }
    void ClearRemarks() { m_remarks.clear(); }

private:
    struct Record
    {
        State m_state = 0;
        State m_saved = 0;      ///< the state that the disk has
        QByteArray m_hash;      ///< of the file as it was read or saved; empty for none
        std::size_t m_size = 0; ///< of the same
        FileStamp m_stamp;      ///< of the same, if it is known
        State m_hashed = 0;     ///< the state that the next one is of
        QByteArray m_hashOfState;
        std::vector<QByteArray> m_tried; ///< of what saves could not put in place yet, but may have since
        eDocumentState m_documentState = eDocumentState::eInStep;
        QString m_problem;
    };

    /// A fingerprint of the bytes; empty for none. Made once for each state.
    const QByteArray& HashOfBytes(std::size_t in_document) const;
    Record& Of(std::size_t in_document) const;
    struct Look;
    /// Reads a file if it is not as it was last seen. On any thread. One that leads out of the folder is none.
    void Read(Look& io_look) const;
    void ReadFile(Look& io_look) const;
    /// Puts what was read in place of a document.
    void Take(Look& io_look);
    /// Reads the files of WithTiedEdits().
    /// \return why one cannot be read; empty on success
    QString ReadTheirs(std::size_t in_document, std::vector<Look>& out_looks) const;
    void TakeAll(std::vector<Look>& io_looks);
    void MarkInStep(Record& io_record, const QByteArray& in_hash, std::size_t in_size, const FileStamp& in_stamp);
    void Forget(const std::vector<std::size_t>& in_documents);

    materialx::Library m_library;
    mutable std::vector<Record> m_records; ///< of the documents of the library, as far as they were asked for
    State m_states = 0;                    ///< the last one that was given out
    bool m_isBusy = false;
    QStringList m_remarks;
    std::optional<std::vector<materialx::DeclarationIndex>> m_touched; ///< see TakeTouched()
    std::list<std::vector<std::size_t>> m_ties; ///< documents that one change has changed together
};

} // namespace workspace
