// SPDX-License-Identifier: MIT
#include "workspace/journal.h"

#include "workspace/files.h"

#include <QFile>
#include <QList>
#include <QThread>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <map>
#include <set>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace workspace
{
namespace
{

constexpr char gFirstLine[] = "nodebrowser-save 1";
constexpr char gNoText[] = "-";

QByteArray Encode(const QByteArray& in_path)
{
    return in_path.isEmpty() ? QByteArray(gNoText) : in_path.toPercentEncoding("/", gNoText);
}

QByteArray Decode(const QByteArray& in_word)
{
    return in_word == gNoText ? QByteArray() : QByteArray::fromPercentEncoding(in_word);
}

/// Whether a path stays below the folder that it is relative to, as far as its text tells.
bool LeadsBelow(const QByteArray& in_path)
{
    if (in_path.isEmpty() || in_path.startsWith('/') || in_path.contains('\0'))
        return false;
    for (const QByteArray& part : in_path.split('/'))
        if (part.isEmpty() || part == "." || part == "..")
            return false;
    return true;
}

QByteArray FolderPart(const QByteArray& in_relativePath)
{
    return in_relativePath.left(in_relativePath.lastIndexOf('/') + 1);
}

bool IsValid(const Journal& in_journal)
{
    for (const QByteArray& folder : in_journal.m_folders)
        if (!LeadsBelow(folder))
            return false;
    for (const JournalEntry& entry : in_journal.m_entries)
    {
        const bool hasTemporary = !entry.m_temporary.isEmpty();
        if (!LeadsBelow(entry.m_target) || hasTemporary == entry.m_after.isEmpty())
            return false;
        const QByteArray folder = FolderPart(entry.m_temporary);
        if (hasTemporary && (!LeadsBelow(entry.m_temporary) || folder != FolderPart(entry.m_target) ||
                             !entry.m_temporary.mid(folder.size()).startsWith(gJournalName)))
            return false;
    }
    return true;
}

QByteArray In(const QByteArray& in_folder, const QByteArray& in_relativePath)
{
    return in_folder + '/' + in_relativePath;
}

bool IsThere(const QByteArray& in_path)
{
    struct stat status = {};
    return lstat(in_path.constData(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

/// The fingerprint of a file; empty without one.
QByteArray HashOfFile(const QByteArray& in_path, QString& out_error)
{
    const std::optional<std::string> bytes = ReadBytes(in_path, out_error);
    return bytes ? HashOf(*bytes) : QByteArray();
}

QString Rename(const QByteArray& in_from, const QByteArray& in_to)
{
    return std::rename(in_from.constData(), in_to.constData()) == 0 ? QString() : SystemError();
}

/// Removes a file. That there is none is fine.
QString Unlink(const QByteArray& in_path)
{
    return unlink(in_path.constData()) == 0 || errno == ENOENT || errno == ENOTDIR ? QString() : SystemError();
}

/// Keeps what was to be saved when another program has put something in the place of the file meanwhile.
Outcome PutBeside(const QByteArray& in_temporary, const QByteArray& in_target)
{
    QByteArray beside = in_target + ".saved";
    for (int number = 2; access(beside.constData(), F_OK) == 0; ++number)
        beside = in_target + ".saved" + QByteArray::number(number);
    const QString error = Rename(in_temporary, beside);
    return error.isEmpty() ? Outcome{true, QStringLiteral("Another program has changed it; what was saved is in %1")
                                               .arg(QFile::decodeName(beside))}
                           : Outcome{false, error};
}

/// A step that is done unless it has failed.
Outcome DoneUnless(const QString& in_error)
{
    return {in_error.isEmpty(), in_error};
}

/// \param in_isAsBefore see IsAsBefore
Outcome GoForward(const QByteArray& in_folder, const JournalEntry& in_entry, bool in_isAsBefore)
{
    const QByteArray target = In(in_folder, in_entry.m_target);
    const QByteArray temporary = In(in_folder, in_entry.m_temporary);
    if (!IsThere(FolderOf(target)))
        return Outcome(); // what waited went with it
    const QByteArray folder = RealPath(FolderOf(target));
    if (folder.isEmpty())
        return {false, SystemError()};
    if (!IsInside(folder, in_folder))
        return {true, QStringLiteral("Its folder leads elsewhere by now, so it is left alone")};
    struct stat status = {};
    const bool isNoFile = lstat(target.constData(), &status) == 0 && !S_ISREG(status.st_mode);
    QString error;
    const QByteArray now = in_isAsBefore ? in_entry.m_before : (isNoFile ? QByteArray() : HashOfFile(target, error));
    if (!error.isEmpty())
        return {false, error};
    const bool isBefore = !isNoFile && now == in_entry.m_before;
    if (in_entry.m_temporary.isEmpty())
    {
        if (isBefore)
            return DoneUnless(Unlink(target));
        return {true, IsThere(target) ? QStringLiteral("Another program has changed it") : QString()};
    }
    const QByteArray waiting = in_isAsBefore ? in_entry.m_after : HashOfFile(temporary, error);
    if (!error.isEmpty())
        return {false, error};
    if (waiting.isEmpty())
        return Outcome(); // it has replaced the target already
    if (waiting != in_entry.m_after)
        return {true, QStringLiteral("Another program has changed what was to be saved, which is left in %1")
                          .arg(QFile::decodeName(temporary))};
    if (now == in_entry.m_after)
        return DoneUnless(Unlink(temporary));
    return isBefore ? DoneUnless(Rename(temporary, target)) : PutBeside(temporary, target);
}

/// Syncs those of some folders that are there.
QString SyncFolders(const std::set<QByteArray>& in_folders)
{
    for (const QByteArray& folder : in_folders)
        if (const QString error = IsThere(folder) ? SyncFolder(folder) : QString(); !error.isEmpty())
            return QFile::decodeName(folder) + QStringLiteral(": ") + error;
    return QString();
}

QString GoBack(const QByteArray& in_folder, const Journal& in_journal)
{
    std::set<QByteArray> folders;
    for (const JournalEntry& entry : in_journal.m_entries)
    {
        const QByteArray temporary = In(in_folder, entry.m_temporary);
        if (entry.m_temporary.isEmpty() || !IsInside(RealPath(FolderOf(temporary)), in_folder) || !IsThere(temporary))
            continue;
        if (const QString error = Unlink(temporary); !error.isEmpty())
            return QFile::decodeName(temporary) + QStringLiteral(": ") + error;
        folders.insert(FolderOf(temporary));
    }
    // A folder that somebody else uses by now is not empty, and stays.
    for (auto folder = in_journal.m_folders.rbegin(); folder != in_journal.m_folders.rend(); ++folder)
        if (const QByteArray path = In(in_folder, *folder); rmdir(path.constData()) == 0)
            folders.insert(FolderOf(path));
    // Without the journal nobody would look for what comes back.
    return SyncFolders(folders);
}

} // namespace

QByteArray WriteJournal(const Journal& in_journal)
{
    QByteArray text = gFirstLine + QByteArray(in_journal.m_isComplete ? "\ncomplete\n" : "\nbegun\n");
    for (const QByteArray& folder : in_journal.m_folders)
        text += "folder " + Encode(folder) + '\n';
    for (const JournalEntry& entry : in_journal.m_entries)
        text += "file " + Encode(entry.m_target) + ' ' + Encode(entry.m_temporary) + ' ' + Encode(entry.m_before) +
                ' ' + Encode(entry.m_after) + '\n';
    return text + "end " + HashOf(text.toStdString()) + '\n';
}

std::optional<Journal> ReadJournal(const QByteArray& in_text)
{
    const auto end = in_text.lastIndexOf("end ");
    if (end < 0 || in_text.mid(end) != "end " + HashOf(in_text.left(end).toStdString()) + '\n')
        return std::nullopt;
    QList<QByteArray> lines = in_text.left(end).split('\n');
    lines.removeLast(); // behind the last line end
    if (lines.size() < 2 || lines[0] != gFirstLine)
        return std::nullopt;
    Journal journal;
    journal.m_isComplete = lines[1] == "complete";
    for (int i = 2; i < static_cast<int>(lines.size()); ++i)
    {
        const QList<QByteArray> words = lines[i].split(' ');
        if (words[0] == "folder" && words.size() == 2)
            journal.m_folders.push_back(Decode(words[1]));
        else if (words[0] == "file" && words.size() == 5)
            journal.m_entries.push_back({Decode(words[1]), Decode(words[2]), Decode(words[3]), Decode(words[4])});
        else
            return std::nullopt;
    }
    return IsValid(journal) ? std::optional<Journal>(journal) : std::nullopt;
}

QString PutJournal(const QByteArray& in_folder, const Journal& in_journal)
{
    const QByteArray path = In(in_folder, gJournalName);
    const QByteArray fresh = In(in_folder, gNewJournalName);
    QString error = Unlink(fresh);
    if (error.isEmpty())
        error = WriteNewFile(fresh, WriteJournal(in_journal).toStdString());
    if (error.isEmpty())
        error = Rename(fresh, path);
    if (error.isEmpty())
        return SyncFolder(in_folder);
    Unlink(fresh);
    return error;
}

QString RemoveJournal(const QByteArray& in_folder)
{
    const QString error = Unlink(In(in_folder, gJournalName));
    return error.isEmpty() ? SyncFolder(in_folder) : error;
}

std::vector<Outcome> GoForward(const QByteArray& in_folder, const Journal& in_journal, const IsAsBefore& in_isAsBefore)
{
    std::vector<Outcome> outcomes;
    std::map<QByteArray, std::vector<std::size_t>> folders;
    for (std::size_t i = 0; i < in_journal.m_entries.size(); ++i)
    {
        const JournalEntry& entry = in_journal.m_entries[i];
        outcomes.push_back(GoForward(in_folder, entry, in_isAsBefore && in_isAsBefore(i)));
        if (outcomes.back().m_isDone)
            folders[FolderOf(In(in_folder, entry.m_target))].push_back(i);
    }
    for (const auto& [folder, entries] : folders)
        if (const QString error = SyncFolders({folder}); !error.isEmpty())
            for (const std::size_t i : entries)
                outcomes[i] = {false, error};
    return outcomes;
}

Recovery Recover(const QByteArray& in_folder)
{
    Recovery recovery;
    const QByteArray path = In(in_folder, gJournalName);
    const QByteArray fresh = In(in_folder, gNewJournalName);
    const auto fail = [&](const QString& in_problem) {
        recovery.m_problem = QStringLiteral("A save that was interrupted cannot be completed: %1. Its record is %2")
                                 .arg(in_problem, QFile::decodeName(path));
        return recovery;
    };
    QString error = IsThere(fresh) ? Unlink(fresh) : QString();
    if (!error.isEmpty())
        return fail(QFile::decodeName(fresh) + QStringLiteral(": ") + error);
    const std::optional<std::string> text = ReadBytes(path, error);
    if (!error.isEmpty())
        return fail(error);
    if (!text)
        return recovery;
    // A journal comes as a whole or not at all. One that is neither is not ours, and names nothing to trust.
    const std::optional<Journal> journal = ReadJournal(QByteArray::fromStdString(*text));
    QString problem;
    if (journal && journal->m_isComplete)
    {
        const std::vector<Outcome> outcomes = GoForward(in_folder, *journal);
        for (std::size_t i = 0; i < outcomes.size(); ++i)
        {
            const QString file = QFile::decodeName(In(in_folder, journal->m_entries[i].m_target));
            const QString said = file + QStringLiteral(": ") + outcomes[i].m_text;
            if (!outcomes[i].m_isDone && problem.isEmpty())
                problem = said;
            else if (outcomes[i].m_isDone && !outcomes[i].m_text.isEmpty())
                recovery.m_remarks.append(said);
        }
    }
    else if (journal)
        problem = GoBack(in_folder, *journal);
    if (problem.isEmpty())
        problem = RemoveJournal(in_folder);
    return problem.isEmpty() ? recovery : fail(problem);
}

FolderLock::FolderLock(const QByteArray& in_folder)
    : m_descriptor(open(in_folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (m_descriptor < 0)
    {
        m_error = SystemError();
        return;
    }
    const int tries = 50;
    const unsigned long pause = 20; // milliseconds
    for (int i = 0; flock(m_descriptor, LOCK_EX | LOCK_NB) != 0; ++i)
    {
        if (errno != EWOULDBLOCK)
            return; // a file system without locks: then everybody is the only one
        if (i == tries)
        {
            m_error = QStringLiteral("Another program is saving in this folder");
            return;
        }
        QThread::msleep(pause);
    }
}

FolderLock::~FolderLock()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

} // namespace workspace
