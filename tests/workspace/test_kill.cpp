// SPDX-License-Identifier: MIT
// A save that is killed at each of its calls of the system.
//
// The calls that change something on the disk are replaced in this program: a child process counts them, and dies in
// front of the one that it was told, or in the middle of it where that is possible. NODEBROWSER_KILL_DOCUMENTS is how
// many documents the save changes.

#include "contract/support.h"
#include "tests/support/testmain.h"
#include "tests/workspace/openedfolder.h"

#include <QFileInfo>

#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace vireo::datamodel;

namespace
{

int gCalls = 0;    ///< how many calls there were
int gLastCall = 0; ///< the one to die at; 0 to live on

/// Counts a call.
/// \return whether to die after the half of it
bool Count()
{
    ++gCalls;
    if (gLastCall == gCalls)
        kill(getpid(), SIGKILL);
    return gLastCall == -gCalls;
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
        Count();
        return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, in_from, AT_FDCWD, in_to, 0));
    }

    int unlink(const char* in_path) noexcept
    {
        Count();
        return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, in_path, 0));
    }

    int rmdir(const char* in_path) noexcept
    {
        Count();
        return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, in_path, AT_REMOVEDIR));
    }

    int mkdir(const char* in_path, mode_t in_mode) noexcept
    {
        Count();
        return static_cast<int>(syscall(SYS_mkdirat, AT_FDCWD, in_path, in_mode));
    }

    int fsync(int in_file)
    {
        Count();
        return static_cast<int>(syscall(SYS_fsync, in_file));
    }

    int fchmod(int in_file, mode_t in_mode) noexcept
    {
        Count();
        return static_cast<int>(syscall(SYS_fchmod, in_file, in_mode));
    }

    int fchown(int in_file, uid_t in_user, gid_t in_group) noexcept
    {
        Count();
        return static_cast<int>(syscall(SYS_fchown, in_file, in_user, in_group));
    }

    int open(const char* in_path, int in_flags, ...)
    {
        va_list arguments;
        va_start(arguments, in_flags);
        const auto mode = (in_flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0U;
        va_end(arguments);
        if ((in_flags & O_CREAT) != 0)
            Count();
        return static_cast<int>(syscall(SYS_openat, AT_FDCWD, in_path, in_flags, mode));
    }

    ssize_t write(int in_file, const void* in_bytes, size_t in_size)
    {
        const bool isHalf = in_file > 2 && Count();
        const auto written =
            static_cast<ssize_t>(syscall(SYS_write, in_file, in_bytes, isHalf ? in_size / 2 : in_size));
        if (isHalf)
            Die();
        return written;
    }
}

namespace
{

/// Where files are that need not survive the machine: there the disk costs no time.
QString FastFolder()
{
    const QString memory = QStringLiteral("/dev/shm");
    return QFileInfo(memory).isWritable() ? memory + QStringLiteral("/nodebrowser-XXXXXX")
                                          : QDir::tempPath() + QStringLiteral("/nodebrowser-XXXXXX");
}

int DocumentCount()
{
    const int wanted = qEnvironmentVariableIntValue("NODEBROWSER_KILL_DOCUMENTS");
    return wanted > 0 ? wanted : 6;
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

/// Runs something in a child process that dies at a call.
/// \return whether it has died there
template <class Function> bool RunAndKill(int in_call, const Function& in_function)
{
    std::fflush(nullptr);
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
        const int count = DocumentCount();
        for (int i = 0; i < count; ++i)
            m_before[QStringLiteral("s%1/doc%2.mtlx").arg(i % 5).arg(i, 3, 10, QLatin1Char('0'))] =
                QStringLiteral(
                    "<?xml version=\"1.0\"?>\n<materialx version=\"1.39\">\n"
                    "  <nodedef name=\"ND_n%1\" node=\"n%1\"/>\n  <nodegraph name=\"NG_n%1\" nodedef=\"ND_n%1\"/>\n"
                    "  <nodedef name=\"ND_m%1\" node=\"m%1\"/>\n</materialx>\n")
                    .arg(i)
                    .toUtf8();
        WriteFiles(Folder(), m_before);
        m_before = FilesBelow(Folder());
        m_itemsBefore = Items();
        ChangeAndSave();
        m_after = FilesBelow(Folder());
        m_itemsAfter = Items();
        m_callCount = gCalls;
        QVERIFY(Difference(m_before, m_after).count(QLatin1Char('\n')) >= count);
        QCOMPARE(m_itemsAfter.size(), m_itemsBefore.size() + NewCount());
    }

    void eachItemIsInOnePlaceWhereverTheSaveIsKilled()
    {
        int old = 0;
        int kills = 0;
        for (int call = 1;; ++call)
        {
            const bool isKilled = Kill(call);
            kills += isKilled ? 1 : 0;
            Check();
            if (QTest::currentTestFailed())
                return;
            old += m_isOld ? 1 : 0;
            if (!isKilled)
            {
                QVERIFY(!m_isOld);
                break;
            }
            // The same call again, half of it done; only writing has a half.
            if (Kill(-call))
            {
                ++kills;
                Check();
                QVERIFY(m_isOld);
            }
        }
        std::printf("%d documents: killed at %d places, found old after %d\n", DocumentCount(), kills, old);
        QVERIFY(kills > 6 * DocumentCount());
        QVERIFY(old > 3 * DocumentCount());
        QVERIFY(old < kills);
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

private:
    QString Folder() const { return m_folder.filePath(QStringLiteral("library")); }
    static int NewCount() { return std::min(5, DocumentCount()); }
    static int MoveCount() { return std::min(5, DocumentCount()); }

    /// Every document changes; some nodes move to documents of other folders, and some nodes are new, which makes a
    /// document in each of their folders.
    void ChangeAndSave()
    {
        Opened opened(Folder());
        gCalls = 0;
        for (int i = 0; i < DocumentCount(); ++i)
            opened.GetLibrary().SetTags(opened.Find(("n" + std::to_string(i)).c_str()), "changed");
        const std::vector<std::shared_ptr<memorymodel::DataSource>> sources = opened.GetLibrary().GetDataSources();
        for (int i = 0; i < MoveCount(); ++i)
            Require(opened.Move(opened.Find(("m" + std::to_string(i)).c_str()),
                                ("s" + std::to_string((i + 1) % std::min(5, DocumentCount()))).c_str()),
                    "No move");
        for (int i = 0; i < NewCount(); ++i)
        {
            CompoundModifierAccessor compound;
            const std::string name = "new" + std::to_string(i);
            Require(compound.CreateAndSetFromNewCompound(opened.Get(), name.c_str(), false, "", "", nullptr).IsValid(),
                    "No new node");
        }
        Require(opened.Commit(), opened.GetMessages().constData());
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
    Files m_before;
    Files m_after;
    QStringList m_itemsBefore;
    QStringList m_itemsAfter;
    int m_callCount = 0;
    bool m_isOld = false;
};

NODEBROWSER_TEST_MAIN(TestKill)
#include "test_kill.moc"
