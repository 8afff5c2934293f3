// SPDX-License-Identifier: MIT
// A save that is killed at each of its calls of the system.
//
// The calls that change something on the disk are replaced in this program: a child process counts them, and dies in
// front of the one that it was told, or in the middle of it where that is possible. A save of six documents is killed
// at each call, one of fifty at some of them, which takes seconds instead of minutes. NODEBROWSER_KILL_DOCUMENTS is a
// count of documents for which each call has its turn.

#include "contract/support.h"
#include "tests/support/testmain.h"
#include "tests/support/waiting.h"
#include "tests/workspace/openedfolder.h"

#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <map>
#include <set>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace vireo::datamodel;

namespace
{

int gCalls = 0;    ///< how many calls there were
int gLastCall = 0; ///< the one to die at; 0 to live on

/// What a call does to the disk.
enum class eCall
{
    eTakesSpace,
    eReplaces, ///< or removes
    eSyncs,
    eElse
};

int gFirstFailure = 0; ///< the first call that may fail; 0 for none
eCall gFailing = eCall::eElse;
std::string gFailingPath; ///< a part of the paths that fail; empty for all
int gFailures = 0;
bool gIsDamaging = false; ///< what is written is not what was given
bool gIsLogging = false;
std::vector<std::string> gLog;

std::string PathOf(int in_file)
{
    char path[4096];
    const std::string name = "/proc/self/fd/" + std::to_string(in_file);
    const ssize_t size = readlink(name.c_str(), path, sizeof(path));
    return size < 0 ? std::string() : std::string(path, static_cast<std::size_t>(size));
}

/// Counts a call.
/// \return whether to die after the half of it
bool Count(const char* in_name, const std::string& in_path)
{
    ++gCalls;
    if (gIsLogging)
        gLog.push_back(in_name + (' ' + in_path));
    if (gLastCall == gCalls)
        kill(getpid(), SIGKILL);
    return gLastCall == -gCalls;
}

/// Whether the call that was counted last is to fail.
bool Fails(eCall in_call, const std::string& in_path)
{
    if (gFirstFailure == 0 || gCalls < gFirstFailure || in_call != gFailing ||
        in_path.find(gFailingPath) == std::string::npos)
        return false;
    ++gFailures;
    errno = in_call == eCall::eTakesSpace ? ENOSPC : (in_call == eCall::eReplaces ? EACCES : EIO);
    return true;
}

[[noreturn]] void Die()
{
    kill(getpid(), SIGKILL);
    std::abort();
}

} // namespace

extern "C"
{
    int rename(const char* in_from, const char* in_to) noexcept
    {
        Count("rename", std::string(in_from) + ' ' + in_to);
        if (Fails(eCall::eReplaces, in_to))
            return -1;
        return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, in_from, AT_FDCWD, in_to, 0));
    }

    int unlink(const char* in_path) noexcept
    {
        Count("unlink", in_path);
        if (Fails(eCall::eReplaces, in_path))
            return -1;
        return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, in_path, 0));
    }

    int rmdir(const char* in_path) noexcept
    {
        Count("rmdir", in_path);
        if (Fails(eCall::eReplaces, in_path))
            return -1;
        return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, in_path, AT_REMOVEDIR));
    }

    int mkdir(const char* in_path, mode_t in_mode) noexcept
    {
        Count("mkdir", in_path);
        if (Fails(eCall::eTakesSpace, in_path))
            return -1;
        return static_cast<int>(syscall(SYS_mkdirat, AT_FDCWD, in_path, in_mode));
    }

    int fsync(int in_file)
    {
        const std::string path = PathOf(in_file);
        Count("sync", path);
        if (Fails(eCall::eSyncs, path))
            return -1;
        return static_cast<int>(syscall(SYS_fsync, in_file));
    }

    int fchmod(int in_file, mode_t in_mode) noexcept
    {
        Count("fchmod", PathOf(in_file));
        return static_cast<int>(syscall(SYS_fchmod, in_file, in_mode));
    }

    int fchown(int in_file, uid_t in_user, gid_t in_group) noexcept
    {
        Count("fchown", PathOf(in_file));
        return static_cast<int>(syscall(SYS_fchown, in_file, in_user, in_group));
    }

    int open(const char* in_path, int in_flags, ...)
    {
        va_list arguments;
        va_start(arguments, in_flags);
        const auto mode = (in_flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0U;
        va_end(arguments);
        if ((in_flags & O_CREAT) != 0)
        {
            Count("create", in_path);
            if (Fails(eCall::eTakesSpace, in_path))
                return -1;
        }
        return static_cast<int>(syscall(SYS_openat, AT_FDCWD, in_path, in_flags, mode));
    }

    ssize_t write(int in_file, const void* in_bytes, size_t in_size)
    {
        const std::string path = in_file > 2 ? PathOf(in_file) : std::string();
        const bool isHalf = in_file > 2 && Count("write", path);
        if (in_file > 2 && Fails(eCall::eTakesSpace, path))
            return -1;
        std::string damaged;
        if (gIsDamaging && path.find("/.nodebrowser-save-") != std::string::npos)
        {
            damaged.assign(static_cast<const char*>(in_bytes), in_size);
            damaged[in_size / 2] ^= 1;
            in_bytes = damaged.data();
        }
        const auto written =
            static_cast<ssize_t>(syscall(SYS_write, in_file, in_bytes, isHalf ? in_size / 2 : in_size));
        if (isHalf)
            Die();
        return written;
    }
}

namespace
{

const int gPatience = 20000; // milliseconds
const int gFewDocuments = 6;
const int gFolders = 5; ///< in which they are; so many nodes move, and so many are new
int gThreads = 1;       ///< of the test library

/// Where files are that need not survive the machine: there the disk costs no time.
QString FastFolder()
{
    const QString memory = QStringLiteral("/dev/shm");
    return QFileInfo(memory).isWritable() ? memory + QStringLiteral("/nodebrowser-XXXXXX")
                                          : QDir::tempPath() + QStringLiteral("/nodebrowser-XXXXXX");
}

void Require(bool in_condition, const char* in_what)
{
    if (!in_condition)
        throw std::runtime_error(in_what);
}

void WriteFiles(const QString& in_folder, const Files& in_files)
{
    Require(QDir(in_folder).removeRecursively(), "The folder cannot be emptied");
    for (auto file = in_files.begin(); file != in_files.end(); ++file)
    {
        const QString path = in_folder + QLatin1Char('/') + file.key();
        Require(QDir().mkpath(file.key().endsWith(QLatin1Char('/')) ? path : QFileInfo(path).path()), "No folder");
        if (file.key().endsWith(QLatin1Char('/')))
            continue;
        QFile written(path);
        Require(written.open(QIODevice::WriteOnly) && written.write(file.value()) == file.value().size(), "No file");
    }
}

int CountThreads()
{
    return static_cast<int>(
        QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

/// Runs something in a child process that dies at a call.
/// \return whether it has died there
template <class Function> bool RunAndKill(int in_call, const Function& in_function)
{
    std::fflush(nullptr);
    // A thread that has not quite ended may hold a lock, which the child process would wait for in vain.
    Require(WaitFor([] { return CountThreads() <= gThreads; }, gPatience), "A thread does not end");
    const pid_t child = fork();
    if (child == 0)
    {
        gLastCall = in_call;
        gCalls = 0;
        in_function();
        _exit(0);
    }
    int status = 0;
    Require(child > 0 && waitpid(child, &status, 0) == child, "No child process");
    Require(!WIFEXITED(status) || WEXITSTATUS(status) == 0, "The child process failed");
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

} // namespace

class TestKill : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        gThreads = CountThreads();
        Prepare(gFewDocuments);
    }

    void eachItemIsInOnePlaceWhereverTheSaveIsKilled_data()
    {
        QTest::addColumn<int>("documents");
        QTest::addColumn<bool>("isEachCall");
        const int wanted = qEnvironmentVariableIntValue("NODEBROWSER_KILL_DOCUMENTS");
        if (wanted > 0)
            QTest::newRow("as many documents as wanted") << wanted << true;
        else
            QTest::newRow("many documents") << 50 << false;
        QTest::newRow("few documents") << gFewDocuments << true;
    }

    void eachItemIsInOnePlaceWhereverTheSaveIsKilled()
    {
        QFETCH(int, documents);
        QFETCH(bool, isEachCall);
        Prepare(documents);
        int old = 0;
        int kills = 0;
        for (const int call : isEachCall ? AllCalls() : SomeCalls())
        {
            QVERIFY(Kill(call));
            ++kills;
            Check();
            if (QTest::currentTestFailed())
                return;
            old += m_isOld ? 1 : 0;
            // The same call again, half of it done; only writing has a half.
            if (Kill(-call))
            {
                ++kills;
                Check();
                QVERIFY(m_isOld);
            }
        }
        QVERIFY(!Kill(m_callCount + 1));
        Check();
        QVERIFY(!m_isOld);
        std::printf("%d documents: killed at %d places of %d calls, found old after %d\n", documents, kills,
                    m_callCount, old);
        QVERIFY(m_callCount > 6 * documents);
        QVERIFY(old > kills / 3);
        QVERIFY(old < kills);
        Prepare(gFewDocuments);
    }

    /// The next opening is killed, too, at each of its calls.
    void theNextOpeningMayBeKilledAsWell()
    {
        int kills = 0;
        const int step = std::max(1, m_callCount / 12);
        for (int call = 1; Kill(call); call += step)
        {
            const Files interrupted = FilesBelow(Folder());
            for (int second = 1;; ++second)
            {
                WriteFiles(Folder(), interrupted);
                if (!RunAndKill(second, [this] { Opened opened(Folder()); }))
                    break;
                ++kills;
                Check();
                if (QTest::currentTestFailed())
                    return;
            }
        }
        std::printf("killed at %d places of the next opening\n", kills);
        QVERIFY(kills > 0);
    }

    /// Names and bytes are on the disk before anything relies on them.
    void eachStepIsSyncedBeforeTheNext()
    {
        WriteFiles(Folder(), m_before);
        Log([this] { ChangeAndSave(); });
        const std::string folder = RealFolder();
        const std::string journal = folder + "/.nodebrowser-save";
        const std::string putJournal = "rename " + journal + ".new " + journal;
        const int begun = Next(putJournal, 0);
        const int complete = Next(putJournal, begun + 1);
        const int removed = Next("unlink " + journal, complete);
        QVERIFY(begun > 0 && complete < int(gLog.size()) && removed < int(gLog.size()));
        int replaced = 0;
        int made = 0;
        for (int i = 0; i < int(gLog.size()); ++i)
        {
            const QStringList words = QString::fromStdString(gLog[std::size_t(i)]).split(QLatin1Char(' '));
            const std::string path = words[1].toStdString();
            const std::string parent = QFileInfo(words[1]).path().toStdString();
            if (words[0] == QLatin1String("create"))
            {
                // All bytes, and then the sync, before it gets its name.
                const int named = NextThatStarts("rename " + path + ' ', i);
                const int synced = Next("sync " + path, i);
                QVERIFY2(synced < named, gLog[std::size_t(i)].c_str());
                for (int other = Next("write " + path, i); other < named; other = Next("write " + path, other + 1))
                    QVERIFY2(other < synced, gLog[std::size_t(i)].c_str());
            }
            if (words[0] == QLatin1String("mkdir") || (words[0] == QLatin1String("create") && parent != folder))
            {
                QVERIFY2(i > begun && Next("sync " + parent, i) < complete, gLog[std::size_t(i)].c_str());
                ++made;
            }
            if (words[0] == QLatin1String("rename") && path != journal + ".new")
            {
                QVERIFY2(i > Next("sync " + folder, complete), gLog[std::size_t(i)].c_str());
                QVERIFY2(Next("sync " + parent, i) < removed, gLog[std::size_t(i)].c_str());
                ++replaced;
            }
        }
        QVERIFY(Next("sync " + folder, begun) < NextThatStarts("create " + folder + "/s", 0));
        QVERIFY(Next("sync " + folder, removed) < int(gLog.size()));
        QVERIFY(replaced >= m_documents + gFolders);
        QVERIFY(made >= replaced);
    }

    /// Nobody would look for a file that comes back after the journal that names it has gone.
    void whatIsTakenBackIsSyncedAsWell()
    {
        WriteFiles(Folder(), m_before);
        Log([this] { ChangeAndSave(); });
        const std::string journal = RealFolder() + "/.nodebrowser-save";
        const int complete = Next("create " + journal + ".new", Next("rename " + journal + ".new " + journal, 0));
        QVERIFY(Kill(complete + 1));
        Log([this] { Opened opened(Folder()); });
        QVERIFY(CheckRemovalsAreSynced("unlink " + journal) >= m_documents);
    }

    void whatIsDroppedIsSyncedAsWell()
    {
        WriteFiles(Folder(), m_before);
        gFailing = eCall::eSyncs;
        gFirstFailure = 1;
        gFailingPath = "/s1/"; // keeps back what belongs together with it
        Log([this] {
            Opened opened(Folder());
            Change(opened);
            QVERIFY(!opened.Commit());
        });
        LiftFailures();
        const std::string journal = RealFolder() + "/.nodebrowser-save";
        QVERIFY(CheckRemovalsAreSynced("rename " + journal + ".new " + journal) > 0);
    }

    /// The bytes that the disk has are compared, too.
    void aDiskThatGivesOtherBytesBackKeepsTheOldFiles()
    {
        WriteFiles(Folder(), m_before);
        Opened opened(Folder());
        Change(opened);
        gIsDamaging = true;
        const bool isSaved = opened.Commit();
        gIsDamaging = false;
        QVERIFY(!isSaved);
        QVERIFY(!opened.m_isWritten);
        QVERIFY2(opened.GetMessages().contains(": What would be saved is not what was meant: "),
                 opened.GetMessages().constData());
        QCOMPARE(Difference(m_before, FilesBelow(Folder())), QString());
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QCOMPARE(Difference(m_after, FilesBelow(Folder())), QString());
    }

    void anyCallMayFail_data()
    {
        QTest::addColumn<int>("failing");
        QTest::addColumn<bool>("isOpenedInBetween");
        QTest::newRow("a full disk") << int(eCall::eTakesSpace) << false;
        QTest::newRow("a full disk, and another program") << int(eCall::eTakesSpace) << true;
        QTest::newRow("lost permissions") << int(eCall::eReplaces) << false;
        QTest::newRow("lost permissions, and another program") << int(eCall::eReplaces) << true;
        QTest::newRow("a broken disk") << int(eCall::eSyncs) << false;
        QTest::newRow("a broken disk, and another program") << int(eCall::eSyncs) << true;
    }

    /// From one call on all of a kind fail, wherever that is: in front of the first journal, between the two, or when
    /// files are being replaced. What was not saved says why, and is saved once they do no longer.
    void anyCallMayFail()
    {
        QFETCH(int, failing);
        QFETCH(bool, isOpenedInBetween);
        int failed = 0;
        int late = 0;
        const int step = isOpenedInBetween ? 2 : 1;
        for (int call = 1; call <= m_callCount; call += step)
        {
            WriteFiles(Folder(), m_before);
            Opened opened(Folder());
            Change(opened);
            gCalls = 0;
            gFailing = static_cast<eCall>(failing);
            gFirstFailure = call;
            const bool isSaved = opened.Commit();
            LiftFailures();
            QCOMPARE(isSaved, opened.GetMessages().isEmpty());
            QCOMPARE(isSaved, opened.GetWorkspace().GetChangedDocuments().isEmpty());
            failed += isSaved ? 0 : 1;
            const Files now = FilesBelow(Folder());
            for (const QString& document : opened.GetWorkspace().GetSavedDocuments())
                QCOMPARE(now.value(document), m_after.value(document));
            late += !isSaved && now.contains(QLatin1String(".nodebrowser-save")) ? 1 : 0;
            if (isOpenedInBetween)
            {
                Check();
                opened.GetLayer().Install();
            }
            QVERIFY2(opened.Commit(), (QByteArray::number(call) + ": " + opened.GetMessages()).constData());
            // A journal of what is complete stays until the next save that has something to do.
            Files meant = m_after;
            if (isSaved && FilesBelow(Folder()).contains(QLatin1String(".nodebrowser-save")))
                meant[QStringLiteral(".nodebrowser-save")] = now.value(QStringLiteral(".nodebrowser-save"));
            QCOMPARE(Difference(meant, FilesBelow(Folder())), QString());
            if (QTest::currentTestFailed())
                return;
        }
        std::printf("failed %d times, %d of them with a journal that stayed\n", failed, late);
        QVERIFY(failed > 2 * m_documents / step);
        QCOMPARE(late > 0, static_cast<eCall>(failing) != eCall::eTakesSpace);
    }

    /// A save that is still to be completed stays in mind, also when others could not even begin meanwhile.
    void whatWasTriedBeforeIsKnown()
    {
        WriteFiles(Folder(), m_before);
        Opened opened(Folder());
        const ItemID item = opened.Find("n0");
        opened.GetLibrary().SetTags(item, "first");
        FailRenaming(opened, "s0/doc000.mtlx");
        opened.GetLibrary().SetTags(item, "second");
        FailRenaming(opened, "s0/doc000.mtlx");
        opened.GetLibrary().SetTags(item, "third");
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QVERIFY(BytesOfFile(Folder() + QStringLiteral("/s0/doc000.mtlx")).contains("tags=\"third\""));
    }

    void aFileThatCouldNotBeRemovedIsRemovedLater()
    {
        WriteFiles(Folder(), m_before);
        Opened opened(Folder());
        CompoundModifierAccessor compound;
        QVERIFY(
            compound.CreateAndSetFromNewCompound(opened.Get(), "new", false, "", "", opened.GetCommands()).IsValid());
        QVERIFY(opened.Commit());
        opened.GetStack().undo();
        FailRenaming(opened, "/local/local.mtlx");
        QVERIFY(QFileInfo::exists(Folder() + QStringLiteral("/local/local.mtlx")));
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QVERIFY(!QFileInfo::exists(Folder() + QStringLiteral("/local/local.mtlx")));
    }

private:
    static void LiftFailures()
    {
        gFirstFailure = 0;
        gFailingPath.clear();
    }

    /// Commits, while nothing can come in the place of some files.
    static void FailRenaming(Opened& io_opened, const char* in_path)
    {
        gFailing = eCall::eReplaces;
        gFirstFailure = 1;
        gCalls = 0;
        gFailingPath = in_path;
        const bool isSaved = io_opened.Commit();
        LiftFailures();
        QVERIFY(!isSaved);
    }

    template <class Function> static void Log(const Function& in_function)
    {
        gLog.clear();
        gCalls = 0;
        gIsLogging = true;
        in_function();
        gIsLogging = false;
    }

    /// The first call from a place on; the count of all calls when there is none.
    static int Next(const std::string& in_call, int in_from)
    {
        return static_cast<int>(std::find(gLog.begin() + in_from, gLog.end(), in_call) - gLog.begin());
    }
    static int NextThatStarts(const std::string& in_start, int in_from)
    {
        return static_cast<int>(std::find_if(gLog.begin() + in_from, gLog.end(),
                                             [&](const std::string& in_call) {
                                                 return in_call.compare(0, in_start.size(), in_start) == 0;
                                             }) -
                                gLog.begin());
    }

    /// Whether files that were to come in the place of others, and were removed, were synced before the last call of
    /// some kind.
    /// \return how many there were
    static int CheckRemovalsAreSynced(const std::string& in_before)
    {
        int last = static_cast<int>(gLog.size());
        while (last > 0 && gLog[std::size_t(last) - 1] != in_before)
            --last;
        int removed = 0;
        for (int i = 0; i < last; ++i)
        {
            const std::string path = gLog[std::size_t(i)].substr(gLog[std::size_t(i)].find(' ') + 1);
            if (gLog[std::size_t(i)] != "unlink " + path || path.find("/.nodebrowser-save-") == std::string::npos ||
                Next(gLog[std::size_t(i)], 0) < i)
                continue;
            const std::string folder = path.substr(0, path.rfind('/'));
            const std::string above = folder.substr(0, folder.rfind('/'));
            // With the folder goes its file.
            const bool isSynced =
                Next("sync " + folder, i) < last ||
                (Next("rmdir " + folder, i) < last && Next("sync " + above, Next("rmdir " + folder, i)) < last);
            if (!isSynced)
                QTest::qFail(path.c_str(), __FILE__, __LINE__);
            ++removed;
        }
        return removed;
    }

    std::string RealFolder() const { return QFileInfo(Folder()).canonicalFilePath().toStdString(); }
    QString Folder() const { return m_folder.filePath(QStringLiteral("library")); }

    /// What there is, what it becomes, and how many calls that takes.
    void Prepare(int in_documents)
    {
        if (m_documents == in_documents)
            return;
        m_documents = in_documents;
        m_before.clear();
        for (int i = 0; i < in_documents; ++i)
            m_before[QStringLiteral("s%1/doc%2.mtlx").arg(i % gFolders).arg(i / gFolders, 3, 10, QLatin1Char('0'))] =
                QStringLiteral(
                    "<?xml version=\"1.0\"?>\n<materialx version=\"1.39\">\n"
                    "  <nodedef name=\"ND_n%1\" node=\"n%1\"/>\n  <nodegraph name=\"NG_n%1\" nodedef=\"ND_n%1\"/>\n"
                    "  <nodedef name=\"ND_m%1\" node=\"m%1\"/>\n</materialx>\n")
                    .arg(i)
                    .toUtf8();
        WriteFiles(Folder(), m_before);
        m_itemsBefore = Items();
        gIsLogging = true;
        ChangeAndSave();
        gIsLogging = false;
        m_callCount = gCalls;
        m_calls = gLog;
        m_after = FilesBelow(Folder());
        m_itemsAfter = Items();
        const QString difference = Difference(m_before, m_after);
        QCOMPARE(difference.count(QStringLiteral("differs: ")), in_documents);
        QCOMPARE(difference.count(QStringLiteral("only after: s")), gFolders);
        QCOMPARE(m_itemsAfter.size(), m_itemsBefore.size() + gFolders);
    }

    std::vector<int> AllCalls() const
    {
        std::vector<int> calls;
        for (int call = 1; call <= m_callCount; ++call)
            calls.push_back(call);
        return calls;
    }

    /// Some calls all over the save, and of each kind the first, the last and one in the middle.
    std::vector<int> SomeCalls() const
    {
        std::map<std::string, std::vector<int>> kinds;
        std::set<int> chosen;
        for (int call = 1; call <= m_callCount; ++call)
        {
            const std::string& made = m_calls[std::size_t(call) - 1];
            kinds[made.substr(0, made.find(' '))].push_back(call);
            if (call % (m_callCount / 15) == 1)
                chosen.insert(call);
        }
        for (const auto& [kind, calls] : kinds)
            chosen.insert({calls.front(), calls[calls.size() / 2], calls.back()});
        return std::vector<int>(chosen.begin(), chosen.end());
    }

    /// Every document changes; some nodes move to documents of other folders, and some nodes are new, each in a
    /// document that is new.
    void ChangeAndSave()
    {
        Opened opened(Folder());
        Change(opened);
        gCalls = 0;
        gLog.clear();
        Require(opened.Commit(), opened.GetMessages().constData());
    }

    void Change(Opened& io_opened) const
    {
        for (int i = 0; i < m_documents; ++i)
            io_opened.GetLibrary().SetTags(io_opened.Find(("n" + std::to_string(i)).c_str()), "changed");
        for (int i = 0; i < gFolders; ++i)
        {
            const std::string source = "s" + std::to_string(i);
            const std::string moved = "m" + std::to_string((i + 1) % gFolders);
            Require(io_opened.Move(io_opened.Find(moved.c_str()), source.c_str()), "No move");
            CompoundModifierAccessor compound;
            const std::string name = "new" + std::to_string(i);
            const ItemID made =
                compound.CreateAndSetFromNewCompound(io_opened.Get(), name.c_str(), false, "", "", nullptr);
            Require(made.IsValid() && io_opened.Move(made, source.c_str()), "No new node");
        }
    }

    bool Kill(int in_call)
    {
        WriteFiles(Folder(), m_before);
        return RunAndKill(in_call, [this] { ChangeAndSave(); });
    }

    QStringList Items() const
    {
        Opened opened(Folder());
        return Describe(opened.GetLibrary());
    }

    /// Opens what is left, and looks at each item and each file.
    void Check()
    {
        const QStringList items = Items();
        m_isOld = items == m_itemsBefore;
        if (!m_isOld)
            QCOMPARE(items, m_itemsAfter);
        QCOMPARE(Difference(m_isOld ? m_before : m_after, FilesBelow(Folder())), QString());
    }

    QTemporaryDir m_folder{FastFolder()};
    int m_documents = 0;
    std::vector<std::string> m_calls; ///< of one save
    Files m_before;
    Files m_after;
    QStringList m_itemsBefore;
    QStringList m_itemsAfter;
    int m_callCount = 0;
    bool m_isOld = false;
};

NODEBROWSER_TEST_MAIN(TestKill)
#include "test_kill.moc"
