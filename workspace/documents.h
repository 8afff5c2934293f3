// SPDX-License-Identifier: MIT
/// The documents of an opened folder or file, what the disk has of them, and what was changed since.
#pragma once

#include "materialx/edit.h"
#include "materialx/library.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
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

/// Each document has a number that says which of its states it is in. A change leads from one state to another, and its
/// inverse back to the first: only in exactly that state the positions of its bytes are good.
class Documents
{
public:
    using State = std::uint64_t;

    /// Lists and reads all documents of a folder, or one. Completes or takes back saves that were interrupted.
    /// \return why they cannot be opened
    std::optional<materialx::Error> Open(const QString& in_path);

    const materialx::Library& GetLibrary() const { return m_library; }
    /// For what adds documents without bytes. Bytes are changed here alone.
    materialx::Library& GetLibrary() { return m_library; }
    /// Where journals go: the opened folder, or the one that the opened file is in.
    QString GetFolder() const;

    State GetState(std::size_t in_document) const { return Of(in_document).m_state; }
    /// The states of the documents that a change touches.
    std::map<std::size_t, State> GetStates(const materialx::Change& in_change) const;
    /// Makes a change, or nothing of it. The documents that it touches come into states that they never had.
    bool Apply(const materialx::Change& in_change);
    /// The same, for a change that leads to states that the documents had before.
    bool Apply(const materialx::Change& in_change, const std::map<std::size_t, State>& in_states);

    /// Whether the bytes are not those that were read or saved. Compares bytes only if an edit was made since.
    bool IsChanged(std::size_t in_document) const;
    /// Whether the file, or one where there is none yet, can be written, and the document can be edited. That one came
    /// with the product is not asked here.
    bool CanWrite(std::size_t in_document) const;

    eDocumentState GetDocumentState(std::size_t in_document) const { return Of(in_document).m_documentState; }
    /// Why it is unreadable; else empty.
    const QString& GetProblem(std::size_t in_document) const { return Of(in_document).m_problem; }

    /// Reads the file again if it is not as it was last seen. A document with edits is left as it is, and in conflict.
    /// \return whether the document was replaced
    bool Refresh(std::size_t in_document);
    /// Reads the file again, whatever edits there are.
    /// \return why it cannot be read; empty on success
    QString TakeTheirs(std::size_t in_document);
    /// From now on the file as it is now may be replaced.
    QString KeepOurs(std::size_t in_document);

    /// Saves the documents, and those that one change ties to them.
    /// \return why documents were not saved, a sentence each
    std::vector<QString> Save(const std::vector<std::size_t>& in_documents, bool& out_isWritten);
    /// The changed documents among some, and those that a change across documents ties to them.
    std::vector<std::size_t> WithTies(std::vector<std::size_t> in_documents) const;

private:
    struct Record
    {
        State m_state = 0;
        State m_saved = 0;  ///< the state that the disk has
        QByteArray m_hash;  ///< of the file as it was read or saved; empty for none
        State m_hashed = 0; ///< the state that the next one is of
        QByteArray m_hashOfState;
        QByteArray m_tried; ///< of what a save could not put in place yet, but may have since
        eDocumentState m_documentState = eDocumentState::eInStep;
        QString m_problem;
    };

    /// A fingerprint of the bytes; empty for none. Made once for each state.
    const QByteArray& HashOfBytes(std::size_t in_document) const;
    Record& Of(std::size_t in_document) const;
    QString Read(std::size_t in_document);
    void Forget(const std::vector<std::size_t>& in_documents);

    materialx::Library m_library;
    mutable std::vector<Record> m_records;      ///< of the documents of the library, as far as they were asked for
    State m_states = 0;                         ///< the last one that was given out
    std::list<std::vector<std::size_t>> m_ties; ///< documents that one change has changed together
};

} // namespace workspace
