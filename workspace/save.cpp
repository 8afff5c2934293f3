// SPDX-License-Identifier: MIT
#include "workspace/save.h"

#include "workspace/files.h"
#include "workspace/journal.h"

#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace workspace
{
namespace
{

/// Where a file is to be written.
struct Destination
{
    QByteArray m_target;                  ///< without links
    QByteArray m_temporary;               ///< beside it; empty when the file goes
    std::vector<QByteArray> m_newFolders; ///< those that are not there yet, from the outermost to the innermost
    QByteArray m_hash;                    ///< of the file that is there; empty for none
};

/// One run of SaveFiles().
class Save
{
public:
    Save(QByteArray in_folder, std::vector<FileSave>& io_files, const CheckBytes& in_check)
        : m_folder(std::move(in_folder)), m_files(io_files), m_check(in_check), m_destinations(io_files.size())
    {
    }

    void Run()
    {
        ForEach([this](FileSave& io_file, Destination& io_destination) {
            io_file.m_problem = Find(io_file, io_destination);
        });
        if (!IsAnythingLeft())
            return;
        if (const QString error = PutJournal(m_folder, MakeJournal(false)); !error.isEmpty())
        {
            Fail(error);
            return;
        }
        ForEach([this](FileSave& io_file, Destination& io_destination) {
            io_file.m_problem = Prepare(io_file, io_destination);
        });
        SyncFolders();
        Check();
        if (!IsAnythingLeft())
        {
            Recover(m_folder);
            return;
        }
        DropTheFailed();
        const Journal journal = MakeJournal(true);
        if (const QString error = PutJournal(m_folder, journal); !error.isEmpty())
        {
            Fail(error);
            Recover(m_folder);
            return;
        }
        Replace(journal);
    }

private:
    /// Calls a function with each file that has no problem yet. Then gives the files of its group the problem of one.
    template <class Function> void ForEach(const Function& in_function)
    {
        for (std::size_t i = 0; i < m_files.size(); ++i)
            if (m_files[i].m_problem.isEmpty())
                in_function(m_files[i], m_destinations[i]);
        SpreadProblems();
    }

    void SpreadProblems()
    {
        for (const FileSave& failed : m_files)
            if (!failed.m_problem.isEmpty())
                for (FileSave& file : m_files)
                    if (file.m_group == failed.m_group && file.m_problem.isEmpty())
                        file.m_problem =
                            QStringLiteral("It belongs together with %1, which cannot be saved").arg(failed.m_path);
    }

    void Fail(const QString& in_problem)
    {
        for (FileSave& file : m_files)
            if (file.m_problem.isEmpty())
                file.m_problem = in_problem;
    }

    bool IsAnythingLeft() const
    {
        return std::any_of(m_files.begin(), m_files.end(),
                           [](const FileSave& in_file) { return in_file.m_problem.isEmpty(); });
    }

    QByteArray Relative(const QByteArray& in_path) const
    {
        return in_path.mid(m_folder.endsWith('/') ? m_folder.size() : m_folder.size() + 1);
    }

    /// Finds out where a file goes, and whether it may.
    QString Find(const FileSave& in_file, Destination& out_destination) const
    {
        const QByteArray path = QFile::encodeName(in_file.m_path);
        struct stat status = {};
        if (lstat(path.constData(), &status) == 0)
        {
            out_destination.m_target = RealPath(path);
            if (out_destination.m_target.isEmpty())
                return QStringLiteral("The link leads nowhere");
        }
        else
        {
            QByteArray folder = FolderOf(path);
            while (RealPath(folder).isEmpty() && folder != "/")
            {
                out_destination.m_newFolders.insert(out_destination.m_newFolders.begin(), folder);
                folder = FolderOf(folder);
            }
            const QByteArray real = RealPath(folder);
            for (QByteArray& missing : out_destination.m_newFolders)
                missing = real + missing.mid(folder.size());
            out_destination.m_target = real + path.mid(folder.size());
        }
        if (!IsInside(out_destination.m_target, m_folder))
            return QStringLiteral("The file is not in the opened folder");
        QString error;
        const std::optional<std::string> bytes = ReadBytes(out_destination.m_target, error);
        if (!error.isEmpty())
            return error;
        out_destination.m_hash = bytes ? HashOf(*bytes) : QByteArray();
        if (std::find(in_file.m_known.begin(), in_file.m_known.end(), out_destination.m_hash) == in_file.m_known.end())
            return bytes ? QStringLiteral("Another program has changed it")
                         : QStringLiteral("It is not there any more");
        if (bytes && !MayWrite(out_destination.m_target))
            return QStringLiteral("It is read-only");
        if (!MayReplace(out_destination.m_target))
            return QStringLiteral("Its folder is read-only");
        if (in_file.m_bytes.empty())
            return QString();
        const QByteArray folder = FolderOf(out_destination.m_target);
        out_destination.m_temporary = (folder == "/" ? QByteArray() : folder) + '/' + gJournalName + '-' +
                                      QByteArray::number(QRandomGenerator::global()->generate64(), 16);
        return QString();
    }

    Journal MakeJournal(bool in_isComplete) const
    {
        Journal journal;
        journal.m_isComplete = in_isComplete;
        for (std::size_t i = 0; i < m_files.size(); ++i)
        {
            if (!m_files[i].m_problem.isEmpty())
                continue;
            const Destination& destination = m_destinations[i];
            journal.m_entries.push_back({Relative(destination.m_target), Relative(destination.m_temporary),
                                         destination.m_hash, m_files[i].m_hash});
            for (const QByteArray& folder : destination.m_newFolders)
                if (std::find(journal.m_folders.begin(), journal.m_folders.end(), Relative(folder)) ==
                    journal.m_folders.end())
                    journal.m_folders.push_back(Relative(folder));
        }
        return journal;
    }

    /// Writes the new bytes beside the file that they are to replace.
    QString Prepare(const FileSave& in_file, const Destination& in_destination)
    {
        if (in_destination.m_temporary.isEmpty())
            return QString();
        for (const QByteArray& folder : in_destination.m_newFolders)
        {
            if (mkdir(folder.constData(), 0777) != 0 && errno != EEXIST)
                return SystemError();
            m_foldersToSync.insert(FolderOf(folder));
        }
        m_foldersToSync.insert(FolderOf(in_destination.m_temporary));
        return WriteNewFile(in_destination.m_temporary, in_file.m_bytes, in_destination.m_target);
    }

    void SyncFolders()
    {
        for (const QByteArray& folder : m_foldersToSync)
            if (const QString error = SyncFolder(folder); !error.isEmpty())
                Fail(error);
    }

    /// Reads what was written. A difference means that something is wrong that nobody thought of, so nothing is saved.
    void Check()
    {
        for (std::size_t i = 0; i < m_files.size(); ++i)
        {
            if (!m_files[i].m_problem.isEmpty() || m_destinations[i].m_temporary.isEmpty())
                continue;
            QString error;
            const std::optional<std::string> bytes = ReadBytes(m_destinations[i].m_temporary, error);
            std::optional<std::string> difference;
            if (!bytes)
                difference = error.isEmpty() ? "It is gone" : error.toStdString();
            else
                difference = m_check(i, *bytes);
            if (!difference)
                continue;
            m_files[i].m_problem = QStringLiteral("What would be saved is not what was meant: %1")
                                       .arg(QString::fromStdString(*difference));
            Fail(QStringLiteral("The save was stopped because of %1").arg(m_files[i].m_path));
        }
    }

    /// Removes what was written for files that are not saved after all.
    void DropTheFailed()
    {
        for (std::size_t i = 0; i < m_files.size(); ++i)
        {
            if (m_files[i].m_problem.isEmpty())
                continue;
            if (!m_destinations[i].m_temporary.isEmpty())
                unlink(m_destinations[i].m_temporary.constData());
            // Those that others use are not empty.
            const std::vector<QByteArray>& folders = m_destinations[i].m_newFolders;
            for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder)
                rmdir(folder->constData());
        }
    }

    void Replace(const Journal& in_journal)
    {
        const std::vector<QString> errors = GoForward(m_folder, in_journal);
        auto error = errors.begin();
        for (FileSave& file : m_files)
            if (file.m_problem.isEmpty())
                file.m_problem = *error++;
        const bool isComplete =
            std::all_of(errors.begin(), errors.end(), [](const QString& in_error) { return in_error.isEmpty(); });
        // A journal that stays is completed next time, so it does no harm.
        if (isComplete)
            RemoveJournal(m_folder);
    }

    const QByteArray m_folder;
    std::vector<FileSave>& m_files;
    const CheckBytes& m_check;
    std::vector<Destination> m_destinations;
    std::set<QByteArray> m_foldersToSync;
};

} // namespace

void SaveFiles(const QString& in_folder, std::vector<FileSave>& io_files, const CheckBytes& in_check)
{
    const auto fail = [&io_files](const QString& in_problem) {
        for (FileSave& file : io_files)
            file.m_problem = in_problem;
    };
    const QByteArray folder = RealPath(QFile::encodeName(in_folder));
    if (folder.isEmpty())
        return fail(QStringLiteral("The opened folder is gone"));
    const FolderLock lock(folder);
    if (!lock.GetError().isEmpty())
        return fail(lock.GetError());
    if (const QString error = Recover(folder); !error.isEmpty())
        return fail(error);
    Save(folder, io_files, in_check).Run();
}

} // namespace workspace
