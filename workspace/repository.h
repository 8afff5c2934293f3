// SPDX-License-Identifier: MIT
/// Questions to git. Each opens what it needs and closes it again, so that nothing is held while others work there.
/// They read, and write nothing; they may take long, and are for the thread of GitWorker.
#pragma once

#include "workspace/gitstate.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <atomic>
#include <cstddef>
#include <vector>

namespace workspace
{

/// Keeps the library that reads repositories ready. Others may keep it, too.
class GitLibrary
{
public:
    GitLibrary();
    ~GitLibrary();
    GitLibrary(const GitLibrary&) = delete;
    GitLibrary& operator=(const GitLibrary&) = delete;
};

/// What is asked about: a folder, and documents below it.
struct DocumentPaths
{
    QByteArray m_folder;                 ///< in the encoding of the system
    std::vector<QByteArray> m_documents; ///< from that folder
};

/// What git has of documents.
struct GitStates
{
    bool m_isActive = false;         ///< whether there is a repository that can be read
    QString m_problem;               ///< why not, if one is there; empty if none is
    std::vector<eGitState> m_states; ///< of the documents, in their order
    std::size_t m_lookedAt = 0;      ///< how often git asked the disk about a file or folder
    /// Folders in which something changes when a commit, a checkout or a stash is made.
    QStringList m_watched;
};

/// Documents in repositories inside the folder, submodules say, have the states that these have of them. Only the
/// documents are looked at, however many other files there are.
/// \param in_isEnding stops it between repositories: nobody wants the answer
GitStates ReadGitStates(const DocumentPaths& in_paths, const std::atomic<bool>& in_isEnding);

/// One commit that changed a document.
struct GitCommit
{
    QString m_author;
    QDateTime m_date; ///< of the author, with his offset from UTC
    QString m_subject;
};

/// The last commits that changed a document, the newest first. Branches that brought nothing into the present state of
/// the document are left out. Time grows with the commits that are looked at: all of them, when there are too few.
/// \param in_isEnding stops the search
std::vector<GitCommit> ReadHistory(const QByteArray& in_file, std::size_t in_count,
                                   const std::atomic<bool>& in_isEnding);

/// Makes files writable if they are as the index has them; all of them or none.
/// \return why none was; empty on success
QString CheckOutFiles(const std::vector<QByteArray>& in_files);

/// Makes files writable; all that can be.
/// \return why some were not; empty on success
QString MakeFilesWritable(const std::vector<QByteArray>& in_files);

} // namespace workspace
