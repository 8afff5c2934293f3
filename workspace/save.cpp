// SPDX-License-Identifier: MIT
#include "workspace/save.h"

#include "workspace/files.h"
#include "workspace/journal.h"

#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <future>
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
    FileStamp m_stamp;                    ///< of the same, if it is known
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
        const std::vector<std::size_t> written = ToBeWritten();
        std::vector<std::optional<std::string>> differences(written.size());
        std::future<void> check = std::async(std::launch::async, [&] {
            for (std::size_t i = 0; i < written.size(); ++i)
                differences[i] = m_check(written[i]);
        });
        ForEach([this](FileSave& io_file, Destination& io_destination) {
            io_file.m_problem = Prepare(io_file, io_destination);
        });
        SyncFolders();
        check.get();
        Compare(written, differences);
        DropTheFailed();
        const Journal journal = MakeJournal(true);
        if (IsAnythingLeft())
            Put(journal);
        if (!IsAnythingLeft())
        {
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
        out_destination.m_stamp = StampOf(out_destination.m_target);
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
            return MayWrite(FolderOf(out_destination.m_target))
                       ? QStringLiteral("Its folder lets only its owner replace it")
                       : QStringLiteral("Its folder is read-only");
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

    std::vector<std::size_t> ToBeWritten() const
    {
        std::vector<std::size_t> files;
        for (std::size_t i = 0; i < m_files.size(); ++i)
            if (m_files[i].m_problem.isEmpty() && !m_destinations[i].m_temporary.isEmpty())
                files.push_back(i);
        return files;
    }

    /// Reads what was written. A difference means that something is wrong that nobody thought of, so nothing is saved.
    /// \param in_differences of these files, between what their bytes say and what they are to say
    void Compare(const std::vector<std::size_t>& in_files,
                 const std::vector<std::optional<std::string>>& in_differences)
    {
        for (std::size_t i = 0; i < in_files.size(); ++i)
        {
            FileSave& file = m_files[in_files[i]];
            if (!file.m_problem.isEmpty())
                continue;
            std::optional<std::string> difference = in_differences[i];
            QString error;
            if (!difference && ReadBytes(m_destinations[in_files[i]].m_temporary, error) != file.m_bytes)
                difference = error.isEmpty() ? "The disk has other bytes" : error.toStdString();
            if (!difference)
                continue;
            file.m_problem = QStringLiteral("What would be saved is not what was meant: %1")
                                 .arg(QString::fromStdString(*difference));
            Fail(QStringLiteral("The save was stopped because of %1").arg(file.m_path));
        }
    }

    /// Removes what was written for files that are not saved after all. The complete journal will not name it.
    void DropTheFailed()
    {
        if (!IsAnythingLeft())
            return; // then all is taken back
        std::set<QByteArray> folders;
        for (std::size_t i = 0; i < m_files.size(); ++i)
        {
            if (m_files[i].m_problem.isEmpty())
                continue;
            const Destination& destination = m_destinations[i];
            if (!destination.m_temporary.isEmpty() && unlink(destination.m_temporary.constData()) == 0)
                folders.insert(FolderOf(destination.m_temporary));
            // Those that others use are not empty.
            for (auto folder = destination.m_newFolders.rbegin(); folder != destination.m_newFolders.rend(); ++folder)
                if (rmdir(folder->constData()) == 0)
                {
                    folders.erase(*folder);
                    folders.insert(FolderOf(*folder));
                }
        }
        m_foldersToSync = std::move(folders);
        SyncFolders();
    }

    /// Puts the complete journal in place of the first one. When that is said to have failed, it may be there all the
    /// same.
    void Put(const Journal& in_journal)
    {
        for (FileSave& file : m_files)
            file.m_isUnderWay = file.m_problem.isEmpty();
        if (const QString error = PutJournal(m_folder, in_journal); !error.isEmpty())
            Fail(error);
    }

    void Replace(const Journal& in_journal)
    {
        std::vector<std::size_t> files; // of the entries
        for (std::size_t i = 0; i < m_files.size(); ++i)
            if (m_files[i].m_problem.isEmpty())
                files.push_back(i);
        const std::vector<Outcome> outcomes = GoForward(
            m_folder, in_journal, [&](std::size_t in_entry) { return IsAsBefore(m_destinations[files[in_entry]]); });
        bool isComplete = true;
        for (std::size_t i = 0; i < files.size(); ++i)
        {
            FileSave& file = m_files[files[i]];
            file.m_problem = outcomes[i].m_text;
            file.m_isUnderWay = !outcomes[i].m_isDone;
            isComplete = isComplete && outcomes[i].m_isDone;
        }
        // A journal that stays is completed next time, so it does no harm.
        if (isComplete)
            RemoveJournal(m_folder);
    }

    /// What was written was read just now, and nobody else knows its name.
    static bool IsAsBefore(const Destination& in_destination)
    {
        return in_destination.m_stamp.m_size >= 0 && StampOf(in_destination.m_target) == in_destination.m_stamp;
    }

    const QByteArray m_folder;
    std::vector<FileSave>& m_files;
    const CheckBytes& m_check;
    std::vector<Destination> m_destinations;
    std::set<QByteArray> m_foldersToSync;
};

} // namespace

QStringList SaveFiles(const QString& in_folder, std::vector<FileSave>& io_files, const CheckBytes& in_check)
{
    const auto fail = [&io_files](const QString& in_problem) {
        for (FileSave& file : io_files)
            file.m_problem = in_problem;
        return QStringList();
    };
    const QByteArray folder = RealPath(QFile::encodeName(in_folder));
    if (folder.isEmpty())
        return fail(QStringLiteral("The opened folder is gone"));
    const FolderLock lock(folder);
    if (!lock.GetError().isEmpty())
        return fail(lock.GetError());
    const Recovery recovery = Recover(folder);
    if (recovery.m_problem.isEmpty())
        Save(folder, io_files, in_check).Run();
    else
        fail(recovery.m_problem);
    return recovery.m_remarks;
}

} // namespace workspace
