// SPDX-License-Identifier: MIT
/// Replaces several files as one change: killed at any moment, the next opening finds all of them old or all new.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workspace
{

/// One file to be replaced, made or removed. A link to a file is followed, and stays. Permissions stay.
struct FileSave
{
    QString m_path;                  ///< absolute
    std::string_view m_bytes;        ///< none: the file goes
    QByteArray m_hash;               ///< of these; empty for none
    std::vector<QByteArray> m_known; ///< hashes of what may be replaced; an empty one stands for no file
    std::size_t m_group = 0;         ///< files of one group are saved together or not at all
    QString m_problem;               ///< set by SaveFiles(): why it is not safe on the disk; empty when it is
    bool m_isUnderWay = false;       ///< set with a problem: it has replaced the file nevertheless, or may do so later
};

/// Compares the bytes of a file with what it is to say, before it replaces another.
/// \param in_file an index into the files
/// \return a difference as a sentence; nothing when there is none
using CheckBytes = std::function<std::optional<std::string>(std::size_t in_file)>;

/// Saves files below a folder. A file that cannot be saved keeps its group from being saved; the other groups are saved
/// as one change. A file that is not what is known of it is not replaced. A difference that the check finds stops the
/// whole save.
///
/// What fails late, when some files are replaced already, is completed by the next save or opening of the folder.
///
/// Each byte is written, synced, read, and checked once; beside that there are a few files and folders to sync. A file
/// that is replaced is read once, twice if it was changed just before.
/// \param in_folder where the journal goes
/// \param in_check is called on another thread, while the bytes are written
/// \return what became of a save that was interrupted before this one, otherwise than it was meant
QStringList SaveFiles(const QString& in_folder, std::vector<FileSave>& io_files, const CheckBytes& in_check);

} // namespace workspace
