// SPDX-License-Identifier: MIT
// Several files replaced as one change, and what an interrupted save leaves.

#include "tests/support/testmain.h"
#include "tests/support/waiting.h"
#include "tests/workspace/openedfolder.h"
#include "workspace/files.h"
#include "workspace/journal.h"
#include "workspace/save.h"

#include <QFileInfo>

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <grp.h>
#include <unistd.h>

using workspace::FileSave;
using workspace::HashOf;
using workspace::Journal;

namespace
{

const unsigned gNobody = 65534; // as user and as group
const unsigned gTeam = 4242;    // a group

QByteArray Hash(const char* in_bytes)
{
    return in_bytes ? HashOf(in_bytes) : QByteArray();
}

} // namespace

class TestSave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.reset(new DocumentFolder);
        m_folder->Write(QStringLiteral("a/one"), "1");
        m_folder->Write(QStringLiteral("b/two"), "2");
        m_files.clear();
        m_check = [](std::size_t) { return std::nullopt; };
    }

    void filesAreReplacedMadeAndRemoved()
    {
        Add("a/one", "1", "I");
        Add("b/two", "2", nullptr);
        Add("c/d/three", nullptr, "III");
        Save();
        QCOMPARE(Problems(), QString());
        QCOMPARE(
            Now(),
            (Files{{QStringLiteral("a/one"), "I"}, {QStringLiteral("b/"), ""}, {QStringLiteral("c/d/three"), "III"}}));
    }

    void newBytesAreChecked()
    {
        Add("a/one", "1", "I");
        Add("b/two", "2", "II");
        Add("c/three", nullptr, "III");
        QStringList seen;
        m_check = [&seen](std::size_t in_file) {
            seen += QString::number(in_file);
            return in_file == 1 ? std::optional<std::string>("The end is missing.") : std::nullopt;
        };
        const Files before = Now();
        Save();
        QCOMPARE(seen, QStringList({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")}));
        QCOMPARE(Difference(before, Now()), QString());
        QVERIFY(m_files[1].m_problem.contains(QLatin1String("The end is missing.")));
        QVERIFY(!m_files[0].m_problem.isEmpty());
        QVERIFY(!m_files[2].m_problem.isEmpty());
    }

    void whatIsNotKnownIsNotReplaced()
    {
        Add("a/one", "other", "I");
        Add("b/two", nullptr, "II");
        Add("b/three", "3", "III");
        const Files before = Now();
        Save();
        QCOMPARE(Problems(), QStringLiteral("Another program has changed it|Another program has changed it|It is not "
                                            "there any more"));
        QCOMPARE(Difference(before, Now()), QString());
    }

    void oneFileKeepsItsGroupBack()
    {
        Add("a/one", "1", "I", 7);
        Add("b/two", "other", "II", 7);
        Add("c/three", nullptr, "III", 7);
        Add("d/four", nullptr, "IV", 8);
        Save();
        QVERIFY(m_files[0].m_problem.startsWith(QLatin1String("It belongs together with ")));
        QVERIFY(!m_files[2].m_problem.isEmpty());
        QCOMPARE(m_files[3].m_problem, QString());
        QCOMPARE(
            Now(),
            (Files{{QStringLiteral("a/one"), "1"}, {QStringLiteral("b/two"), "2"}, {QStringLiteral("d/four"), "IV"}}));
    }

    void permissionsStay()
    {
        const QByteArray path = QFile::encodeName(m_folder->GetPath(QStringLiteral("a/one")));
        QCOMPARE(chmod(path.constData(), 0750), 0);
        Add("a/one", "1", "I");
        Save();
        struct stat status = {};
        QCOMPARE(stat(path.constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777U, 0750U);
        QCOMPARE(Now().value(QStringLiteral("a/one")), QByteArray("I"));
    }

    void readOnlyFilesAndFoldersAreLeftAlone()
    {
        const QByteArray file = QFile::encodeName(m_folder->GetPath(QStringLiteral("a/one")));
        const QByteArray folder = QFile::encodeName(m_folder->GetPath(QStringLiteral("b")));
        QCOMPARE(chmod(file.constData(), 0444), 0);
        QCOMPARE(chmod(folder.constData(), 0555), 0);
        Add("a/one", "1", "I");
        Add("b/two", "2", "II");
        const Files before = Now();
        Save();
        QCOMPARE(chmod(folder.constData(), 0755), 0);
        QCOMPARE(Problems(), QStringLiteral("It is read-only|Its folder is read-only"));
        QCOMPARE(Difference(before, Now()), QString());
    }

    void linksAreFollowed()
    {
        QVERIFY(QFile::link(QStringLiteral("../b/two"), m_folder->GetPath(QStringLiteral("a/link"))));
        QVERIFY(QFile::link(QStringLiteral("nowhere"), m_folder->GetPath(QStringLiteral("a/dead"))));
        QTemporaryDir outside;
        QVERIFY(QFile::link(outside.path(), m_folder->GetPath(QStringLiteral("out"))));
        Add("a/link", "2", "II");
        Add("a/dead", nullptr, "x");
        Add("out/file", nullptr, "x");
        Save();
        QCOMPARE(Problems(), QStringLiteral("|The link leads nowhere|The file is not in the opened folder"));
        QVERIFY(QFileInfo(m_folder->GetPath(QStringLiteral("a/link"))).isSymLink());
        QCOMPARE(BytesOfFile(m_folder->GetPath(QStringLiteral("b/two"))), QByteArray("II"));
        QVERIFY(QDir(outside.path()).isEmpty());
    }

    void twoDoNotSaveAtOnce()
    {
        const int folder = open(QFile::encodeName(m_folder->GetPath()).constData(), O_RDONLY | O_DIRECTORY);
        QCOMPARE(flock(folder, LOCK_EX), 0);
        Add("a/one", "1", "I");
        Save();
        close(folder);
        QCOMPARE(Problems(), QStringLiteral("Another program is saving in this folder"));
        QCOMPARE(BytesOfFile(m_folder->GetPath(QStringLiteral("a/one"))), QByteArray("1"));
    }

    void aJournalIsReadAsItWasWritten()
    {
        const Journal journal = SomeJournal(true);
        const std::optional<Journal> read = workspace::ReadJournal(workspace::WriteJournal(journal));
        QVERIFY(read);
        QVERIFY(read->m_isComplete);
        QCOMPARE(read->m_folders, journal.m_folders);
        QCOMPARE(read->m_entries.size(), journal.m_entries.size());
        QCOMPARE(workspace::WriteJournal(*read), workspace::WriteJournal(journal));
        QVERIFY(!workspace::ReadJournal(workspace::WriteJournal(SomeJournal(false)))->m_isComplete);
    }

    void aJournalThatWasCutOrChangedIsNone()
    {
        const QByteArray text = workspace::WriteJournal(SomeJournal(true));
        for (int size = 0; size < text.size(); ++size)
            QVERIFY(!workspace::ReadJournal(text.left(size)));
        for (int i = 0; i < text.size(); ++i)
        {
            QByteArray changed = text;
            changed[i] = changed[i] == 'x' ? 'y' : 'x';
            QVERIFY(!workspace::ReadJournal(changed));
        }
    }

    void aJournalThatLeadsOutIsNone_data()
    {
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<QByteArray>("temporary");
        QTest::newRow("above") << QByteArray("../x") << QByteArray("../.nodebrowser-save-1");
        QTest::newRow("above, later") << QByteArray("a/../../x") << QByteArray("a/../../.nodebrowser-save-1");
        QTest::newRow("absolute") << QByteArray("/etc/x") << QByteArray("/etc/.nodebrowser-save-1");
        QTest::newRow("elsewhere") << QByteArray("a/x") << QByteArray("b/.nodebrowser-save-1");
        QTest::newRow("another file") << QByteArray("a/x") << QByteArray("a/y");
    }

    void aJournalThatLeadsOutIsNone()
    {
        QFETCH(QByteArray, target);
        QFETCH(QByteArray, temporary);
        Journal journal;
        journal.m_entries.push_back({target, temporary, "1", "2"});
        QVERIFY(!workspace::ReadJournal(workspace::WriteJournal(journal)));
        journal.m_entries = {{"a/x", "a/.nodebrowser-save-1", "1", "2"}};
        QVERIFY(workspace::ReadJournal(workspace::WriteJournal(journal)));
    }

    void whatWasBegunIsTakenBack()
    {
        m_folder->Write(QStringLiteral("a/.nodebrowser-save-1"), "half of");
        m_folder->Write(QStringLiteral("new/.nodebrowser-save-2"), "");
        m_folder->Write(QStringLiteral(".nodebrowser-save.new"), "half of a journal");
        Put(SomeJournal(false));
        QCOMPARE(workspace::Recover(Folder()).m_problem, QString());
        QCOMPARE(Now(), (Files{{QStringLiteral("a/one"), "1"}, {QStringLiteral("b/two"), "2"}}));
    }

    void whatIsCompleteGoesForward()
    {
        m_folder->Write(QStringLiteral("a/.nodebrowser-save-1"), "I");
        m_folder->Write(QStringLiteral("new/three"), "III"); // replaced already
        Put(SomeJournal(true));
        QCOMPARE(workspace::Recover(Folder()).m_problem, QString());
        QCOMPARE(
            Now(),
            (Files{{QStringLiteral("a/one"), "I"}, {QStringLiteral("b/"), ""}, {QStringLiteral("new/three"), "III"}}));
    }

    void whatSomebodyWroteMeanwhileStays()
    {
        m_folder->Write(QStringLiteral("a/.nodebrowser-save-1"), "I");
        m_folder->Write(QStringLiteral("a/one"), "theirs");
        m_folder->Write(QStringLiteral("b/two"), "theirs");
        m_folder->Write(QStringLiteral("new/.nodebrowser-save-2"), "III");
        Put(SomeJournal(true));
        const workspace::Recovery recovery = workspace::Recover(Folder());
        QCOMPARE(recovery.m_problem, QString());
        QCOMPARE(
            recovery.m_remarks,
            QStringList({Path("a/one") + QStringLiteral(": Another program has changed it; what was saved is in ") +
                             Path("a/one.saved"),
                         Path("b/two") + QStringLiteral(": Another program has changed it")}));
        QCOMPARE(Now(), (Files{{QStringLiteral("a/one"), "theirs"},
                               {QStringLiteral("a/one.saved"), "I"},
                               {QStringLiteral("b/two"), "theirs"},
                               {QStringLiteral("new/three"), "III"}}));
    }

    /// With a folder goes what waited in it.
    void aFolderThatIsGoneStopsNothing()
    {
        m_folder->Write(QStringLiteral("a/.nodebrowser-save-1"), "I");
        Put(SomeJournal(true)); // without the folder "new"
        const workspace::Recovery recovery = workspace::Recover(Folder());
        QCOMPARE(recovery.m_problem, QString());
        QCOMPARE(recovery.m_remarks, QStringList());
        QCOMPARE(Now(), (Files{{QStringLiteral("a/one"), "I"}, {QStringLiteral("b/"), ""}}));
    }

    void aFolderInPlaceOfTheFileStays()
    {
        m_folder->Write(QStringLiteral("a/.nodebrowser-save-1"), "I");
        for (const char* const path : {"a/one", "b/two"})
        {
            QVERIFY(QFile::remove(Path(path)));
            m_folder->Write(QString::fromLatin1(path) + QStringLiteral("/inside"), "theirs");
        }
        Put(SomeJournal(true));
        const workspace::Recovery recovery = workspace::Recover(Folder());
        QCOMPARE(recovery.m_problem, QString());
        QCOMPARE(recovery.m_remarks.size(), 2);
        QCOMPARE(Now(), (Files{{QStringLiteral("a/one/inside"), "theirs"},
                               {QStringLiteral("a/one.saved"), "I"},
                               {QStringLiteral("b/two/inside"), "theirs"}}));
    }

    void aFolderThatLeadsOutIsLeftAlone()
    {
        QTemporaryDir outside;
        QVERIFY(QFile::rename(Path("b/two"), outside.filePath(QStringLiteral("two"))));
        QVERIFY(QDir().rmdir(Path("b")));
        QVERIFY(QFile::link(outside.path(), Path("b")));
        Put(SomeJournal(true));
        const workspace::Recovery recovery = workspace::Recover(Folder());
        QCOMPARE(recovery.m_problem, QString());
        QVERIFY2(recovery.m_remarks.value(0).startsWith(Path("b/two: ")), qPrintable(recovery.m_remarks.value(0)));
        QCOMPARE(BytesOfFile(outside.filePath(QStringLiteral("two"))), QByteArray("2"));
        QVERIFY(!QFileInfo::exists(Path(workspace::gJournalName)));
    }

    /// The record stays, whoever tries says which file it is about, and what can be done is done.
    void whatCannotBeCompletedWaits()
    {
        m_folder->Write(QStringLiteral("a/.nodebrowser-save-1/in the way"), "");
        m_folder->Write(QStringLiteral("new/.nodebrowser-save-2"), "III");
        Put(SomeJournal(true));
        const QString meant = QStringLiteral("A save that was interrupted cannot be completed: ") + Path("a/one") +
                              QStringLiteral(": Not a file. Its record is ") + Path(workspace::gJournalName);
        QCOMPARE(workspace::Recover(Folder()).m_problem, meant);
        QCOMPARE(BytesOfFile(Path("new/three")), QByteArray("III"));
        Add("c/four", nullptr, "IV");
        Save();
        QCOMPARE(Problems(), meant);
        QVERIFY(!QFileInfo::exists(Path("c")));
        QVERIFY(QDir(Path("a/.nodebrowser-save-1")).removeRecursively());
        m_folder->Write(QStringLiteral("a/.nodebrowser-save-1"), "I");
        m_files[0].m_problem.clear();
        Save();
        QCOMPARE(m_files[0].m_problem, QString());
        QCOMPARE(BytesOfFile(Path("a/one")), QByteArray("I"));
    }

    /// The system lets only its owner rename over a file there.
    void aFileOfAnotherUserInASharedFolderIsNotReplaced()
    {
        if (geteuid() != 0)
            QSKIP("Only the administrator can make files of two users");
        ShareFolders(01777);
        QCOMPARE(chmod(Name("a/one").constData(), 0666), 0);
        Add("a/one", "1", "I");
        Add("a/three", nullptr, "III");
        QCOMPARE(SaveAsNobody(gNobody), QStringLiteral("Its folder lets only its owner replace it|"));
        QCOMPARE(BytesOfFile(Path("a/one")), QByteArray("1"));
        QCOMPARE(BytesOfFile(Path("a/three")), QByteArray("III"));
    }

    void theGroupStaysOrItsPermissionsGo_data()
    {
        QTest::addColumn<unsigned>("member"); ///< whoever saves is in this group, too
        QTest::addColumn<unsigned>("group");
        QTest::addColumn<unsigned>("mode");
        QTest::newRow("a member") << gTeam << gTeam << 0660U;
        QTest::newRow("somebody else") << gNobody << gNobody << 0606U;
    }

    /// Only the administrator keeps the owner.
    void theGroupStaysOrItsPermissionsGo()
    {
        QFETCH(unsigned, member);
        QFETCH(unsigned, group);
        QFETCH(unsigned, mode);
        if (geteuid() != 0)
            QSKIP("Only the administrator can make files of two users");
        ShareFolders(0777);
        QCOMPARE(chown(Name("a/one").constData(), 0, gTeam), 0);
        QCOMPARE(chmod(Name("a/one").constData(), member == gTeam ? 0660 : 0666), 0);
        Add("a/one", "1", "I");
        QCOMPARE(SaveAsNobody(member), QString());
        struct stat status = {};
        QCOMPARE(stat(Name("a/one").constData(), &status), 0);
        QCOMPARE(status.st_uid, gNobody);
        QCOMPARE(status.st_gid, group);
        QCOMPARE(status.st_mode & 07777U, mode);
        QCOMPARE(BytesOfFile(Path("a/one")), QByteArray("I"));
    }

    /// What is known of a file that was not changed for a while is not read again.
    void whatChangesWhileTheSaveGoesOnIsNotReplaced()
    {
        Add("a/one", "1", "I");
        QVERIFY(WaitFor([this] { return workspace::StampOf(Name("a/one")).m_size >= 0; }, 20000));
        m_check = [this](std::size_t) {
            QFile file(Path("a/one"));
            if (!file.open(QIODevice::ReadWrite) || file.write("2") != 1)
                return std::optional<std::string>("The test cannot write");
            return std::optional<std::string>();
        };
        Save();
        QCOMPARE(Problems(),
                 QStringLiteral("Another program has changed it; what was saved is in ") + Path("a/one.saved"));
        QCOMPARE(BytesOfFile(Path("a/one")), QByteArray("2"));
        QCOMPARE(BytesOfFile(Path("a/one.saved")), QByteArray("I"));
        QVERIFY(!QFileInfo::exists(Path(workspace::gJournalName)));
    }

    void aForeignJournalIsRemovedAndBelieved_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("none of ours") << QByteArray("remove everything");
        QTest::newRow("empty") << QByteArray();
    }

    void aForeignJournalIsRemovedAndBelieved()
    {
        QFETCH(QByteArray, text);
        const Files before = Now();
        m_folder->Write(QStringLiteral(".nodebrowser-save"), text);
        QCOMPARE(workspace::Recover(Folder()).m_problem, QString());
        QCOMPARE(Difference(before, Now()), QString());
    }

    void aSaveCompletesTheOneBefore()
    {
        m_folder->Write(QStringLiteral("a/.nodebrowser-save-1"), "I");
        m_folder->Write(QStringLiteral("new/.nodebrowser-save-2"), "III");
        Put(SomeJournal(true));
        Add("a/one", "I", "later");
        Save();
        QCOMPARE(Problems(), QString());
        QCOMPARE(Now(), (Files{{QStringLiteral("a/one"), "later"},
                               {QStringLiteral("b/"), ""},
                               {QStringLiteral("new/three"), "III"}}));
    }

    void nothingIsSavedWithoutAFolder()
    {
        Add("a/one", "1", "I");
        const QString path = m_folder->GetPath();
        QVERIFY(QDir().rename(path, path + QStringLiteral(".away")));
        Save();
        QVERIFY(QDir().rename(path + QStringLiteral(".away"), path));
        QCOMPARE(Problems(), QStringLiteral("The opened folder is gone"));
    }

private:
    void Add(const char* in_path, const char* in_before, const char* in_after, std::size_t in_group = 0)
    {
        FileSave file;
        file.m_path = m_folder->GetPath(QString::fromLatin1(in_path));
        file.m_bytes = in_after ? in_after : "";
        file.m_hash = Hash(in_after);
        file.m_known = {Hash(in_before)};
        file.m_group = in_group ? in_group : 100 + m_files.size();
        m_files.push_back(file);
    }

    QString Path(const char* in_path) const { return m_folder->GetPath(QString::fromLatin1(in_path)); }
    QByteArray Name(const char* in_path) const { return QFile::encodeName(Path(in_path)); }

    void ShareFolders(mode_t in_mode)
    {
        for (const char* const folder : {"", "a", "b"})
            QCOMPARE(chmod(Name(folder).constData(), in_mode), 0);
    }

    /// Saves in a process without rights.
    /// \param in_group one that it is a member of
    /// \return the problems
    QString SaveAsNobody(gid_t in_group)
    {
        int ends[2] = {};
        if (pipe(ends) != 0)
            return QStringLiteral("no pipe");
        const pid_t child = fork();
        if (child == 0)
        {
            QByteArray answer = "no such user";
            if (setgroups(1, &in_group) == 0 && setresgid(gNobody, gNobody, gNobody) == 0 &&
                setresuid(gNobody, gNobody, gNobody) == 0)
            {
                Save();
                answer = Problems().toUtf8();
            }
            _exit(write(ends[1], answer.constData(), static_cast<std::size_t>(answer.size())) == answer.size() ? 0 : 1);
        }
        close(ends[1]);
        QFile answer;
        if (!answer.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
            return QStringLiteral("no answer");
        const QByteArray said = answer.readAll();
        int status = 1;
        waitpid(child, &status, 0);
        return status == 0 ? QString::fromUtf8(said) : QStringLiteral("the process has failed");
    }

    void Save() { workspace::SaveFiles(m_folder->GetPath(), m_files, m_check); }

    QString Problems() const
    {
        QStringList problems;
        for (const FileSave& file : m_files)
            problems += file.m_problem;
        const QString all = problems.join(QLatin1Char('|'));
        return all.count(QLatin1Char('|')) == all.size() ? QString() : all;
    }

    Files Now() const { return FilesBelow(m_folder->GetPath()); }
    QByteArray Folder() const { return workspace::RealPath(QFile::encodeName(m_folder->GetPath())); }
    void Put(const Journal& in_journal)
    {
        m_folder->Write(QString::fromLatin1(workspace::gJournalName), workspace::WriteJournal(in_journal));
    }

    static Journal SomeJournal(bool in_isComplete)
    {
        Journal journal;
        journal.m_isComplete = in_isComplete;
        journal.m_folders = {"new"};
        journal.m_entries = {{"a/one", "a/.nodebrowser-save-1", Hash("1"), Hash("I")},
                             {"b/two", "", Hash("2"), ""},
                             {"new/three", "new/.nodebrowser-save-2", "", Hash("III")}};
        return journal;
    }

    std::unique_ptr<DocumentFolder> m_folder;
    std::vector<FileSave> m_files;
    workspace::CheckBytes m_check;
};

NODEBROWSER_TEST_MAIN(TestSave)
#include "test_save.moc"
