// SPDX-License-Identifier: MIT
/// The record of a save under way, by which the next opening completes it or takes it back.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

/// A save of several files is one change. It leaves a journal in the opened folder, twice: first one that names the
/// files and folders it is about to make, then a complete one that names what replaces what. From the second one on the
/// save goes forward, whatever happens; before it, back. The journal goes last.
namespace workspace
{

constexpr char gJournalName[] = ".nodebrowser-save";
constexpr char gNewJournalName[] = ".nodebrowser-save.new"; ///< while it is written

/// One file that is replaced. Paths are relative to the opened folder; hashes are those of HashOf(), empty for no file.
struct JournalEntry
{
    QByteArray m_target;
    QByteArray m_temporary; ///< beside the target; what replaces it. Empty when the file goes
    QByteArray m_before;
    QByteArray m_after;
};

struct Journal
{
    bool m_isComplete = false;
    std::vector<QByteArray> m_folders; ///< those that the save makes, from the outermost to the innermost
    std::vector<JournalEntry> m_entries;
};

QByteArray WriteJournal(const Journal& in_journal);
/// Nothing for a text that is no journal, was changed, or names a path that leads out of the folder.
std::optional<Journal> ReadJournal(const QByteArray& in_text);

/// Puts a journal into a folder, in place of one that is there.
/// \return why it could not be put there; empty on success
QString PutJournal(const QByteArray& in_folder, const Journal& in_journal);
QString RemoveJournal(const QByteArray& in_folder);

/// What became of an entry.
struct Outcome
{
    bool m_isDone = true; ///< nothing of it is left to be done: what there is, is safe on the disk
    QString m_text;       ///< why it is not done, or not as it was meant; else empty
};

/// Whether the target of an entry is as it was before, and its temporary as the save has left it. Whoever cannot tell
/// without reading them says no: then they are read.
using IsAsBefore = std::function<bool(std::size_t in_entry)>;

/// Replaces and removes the files of a complete journal, as far as that has not happened yet. What another program has
/// put in place of the file stays, and the new bytes come beside it, as "NAME.saved". Where the folder of a file is
/// gone, nothing waits.
std::vector<Outcome> GoForward(const QByteArray& in_folder, const Journal& in_journal,
                               const IsAsBefore& in_isAsBefore = nullptr);

/// What became of a save that was interrupted.
struct Recovery
{
    QStringList m_remarks; ///< what has become of files otherwise than it was meant, a sentence each
    QString m_problem;     ///< why it could be neither completed nor taken back; the journal stays then
};

/// Completes or takes back a save that was interrupted in a folder. Does nothing where there is neither journal.
/// \param in_folder without links, and locked
Recovery Recover(const QByteArray& in_folder);

/// The only one who saves or recovers in a folder, of all programs; others wait for a second. Ends with the object.
class FolderLock
{
public:
    explicit FolderLock(const QByteArray& in_folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// Why the folder could not be locked; empty when it is.
    const QString& GetError() const { return m_error; }

private:
    int m_descriptor;
    QString m_error;
};

} // namespace workspace
