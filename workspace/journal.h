// SPDX-License-Identifier: MIT
/// The record of a save under way, by which the next opening completes it or takes it back.
#pragma once

#include <QByteArray>
#include <QString>

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

/// Replaces and removes the files of a complete journal, as far as that has not happened yet. What another program has
/// written in place of the file stays, and the new bytes come beside it, as "NAME.saved".
/// \return why an entry could not be completed; empty for each that is. All empty: the files are safe on the disk
std::vector<QString> GoForward(const QByteArray& in_folder, const Journal& in_journal);

/// Completes or takes back a save that was interrupted in a folder. Does nothing where there is neither journal.
/// \param in_folder without links, and locked
/// \return why neither could be done; empty on success
QString Recover(const QByteArray& in_folder);

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
