// SPDX-License-Identifier: MIT
// What the system or other programs do to documents that are open: full disks, lost permissions, folders that go, and
// documents that nobody sane would write. Nothing is lost, and the messages say what happened.

#include "contract/support.h"
#include "datamodel/helpers.h"
#include "tests/support/testmain.h"
#include "tests/workspace/openedfolder.h"
#include "workspace/files.h"
#include "workspace/journal.h"

#include <QFileInfo>

#include <csignal>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

using namespace vireo::datamodel;
using contract::Rename;

namespace
{

/// A document of that many bytes, or a few more, with one definition.
QByteArray LargeDocument(int in_size)
{
    return "<materialx version=\"1.39\">\n  <nodedef name=\"ND_lens\" node=\"lens\"/>\n  <!--" +
           QByteArray(in_size, 'x') + "-->\n</materialx>\n";
}

/// Lets no file of this process grow beyond a size.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t in_bytes)
    {
        // Otherwise the system ends a program that writes more.
        m_action = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {in_bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_action);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_before = {};
    void (*m_action)(int) = nullptr;
};

/// A small disk of its own on a folder, which only this process sees.
class SmallDisk
{
public:
    explicit SmallDisk(const QString& in_folder) : m_folder(QFile::encodeName(in_folder))
    {
        m_isMounted = unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                      mount("tmpfs", m_folder.constData(), "tmpfs", 0, "size=256k") == 0;
    }
    ~SmallDisk()
    {
        if (m_isMounted)
            umount(m_folder.constData());
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool IsMounted() const { return m_isMounted; }
    bool SetReadOnly(bool in_isReadOnly) const
    {
        const int flags = MS_REMOUNT | (in_isReadOnly ? MS_RDONLY : 0);
        return mount("tmpfs", m_folder.constData(), "tmpfs", static_cast<unsigned long>(flags), "size=256k") == 0;
    }

private:
    const QByteArray m_folder;
    bool m_isMounted;
};

} // namespace

class TestFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder.reset(new DocumentFolder); }

    void aFullDiskKeepsTheDocuments()
    {
        const SmallDisk disk(m_folder->GetPath());
        if (!disk.IsMounted())
            QSKIP("This machine lets the test mount no disk of its own");
        WriteDocuments();
        Opened opened(m_folder->GetPath());
        RenameBoth(opened);
        QFile ballast(m_folder->GetPath(QStringLiteral("ballast")));
        QVERIFY(ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (ballast.write(QByteArray(4096, 'x')) == 4096)
        {
        }
        const Files before = FilesBelow(m_folder->GetPath());
        CheckNothingIsSaved(opened, before, "No space left on device");
        QVERIFY(ballast.remove());
        CheckBothAreSaved(opened);
    }

    /// What waits there keeps nobody from reading, and says why nothing can be saved.
    void aDiskThatCameBackReadOnlyIsOpened()
    {
        const SmallDisk disk(m_folder->GetPath());
        if (!disk.IsMounted())
            QSKIP("This machine lets the test mount no disk of its own");
        WriteDocuments();
        LeaveSave("a/.nodebrowser-save-1");
        QVERIFY(disk.SetReadOnly(true));
        Opened opened(m_folder->GetPath());
        const QString why = QStringLiteral("A save that was interrupted cannot be completed: ") +
                            m_folder->GetPath(QStringLiteral("a/small.mtlx")) +
                            QStringLiteral(": Read-only file system. Its record is ") +
                            m_folder->GetPath(QStringLiteral(".nodebrowser-save"));
        QCOMPARE(opened.GetWorkspace().GetRemarks(), QStringList(why));
        QVERIFY(opened.Get().ItemIsReadOnly(opened.Find("lens")));
        opened.GetLibrary().SetTags(opened.Find("lens"), "glass");
        QVERIFY(!opened.Commit());
        QCOMPARE(QString::fromUtf8(opened.GetMessages()), QStringLiteral("b/large.mtlx: ") + why + QLatin1Char('\n'));
        QVERIFY(disk.SetReadOnly(false));
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QCOMPARE(BytesOfFile(m_folder->GetPath(QStringLiteral("a/small.mtlx"))), SavedBytes());
        QVERIFY(!QFileInfo::exists(m_folder->GetPath(QStringLiteral(".nodebrowser-save"))));
    }

    /// The same wherever nothing can be mounted, and on the way on.
    void aSaveThatCannotBeCompletedKeepsNobodyFromOpening()
    {
        WriteDocuments();
        LeaveSave("a/.nodebrowser-save-1");
        const QString waiting = m_folder->GetPath(QStringLiteral("a/.nodebrowser-save-1"));
        QVERIFY(QFile::remove(waiting));
        m_folder->Write(QStringLiteral("a/.nodebrowser-save-1/in the way"), "");
        Opened opened(m_folder->GetPath());
        const QString path = m_folder->GetPath(QStringLiteral("a/small.mtlx"));
        QCOMPARE(opened.GetWorkspace().GetRemarks().size(), 1);
        QVERIFY(opened.GetWorkspace().GetRemarks().constFirst().contains(path));
        opened.GetWorkspace().ClearRemarks();
        opened.GetLibrary().SetTags(opened.Find("lens"), "glass");
        QVERIFY(!opened.Commit());
        QVERIFY2(opened.GetMessages().contains(path.toUtf8()), opened.GetMessages().constData());
        QVERIFY2(opened.GetMessages().contains(".nodebrowser-save"), opened.GetMessages().constData());
        QVERIFY(QDir(waiting).removeRecursively());
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
    }

    /// Who opens the folder is told where the bytes are that somebody meant to save.
    void whatASaveCouldNotPutInPlaceIsTold()
    {
        WriteDocuments();
        LeaveSave("a/.nodebrowser-save-1");
        m_folder->Write(QStringLiteral("a/small.mtlx"), "<materialx><nodedef name=\"ND_theirs\" node=\"theirs\"/>"
                                                        "</materialx>");
        Opened opened(m_folder->GetPath());
        const QString path = m_folder->GetPath(QStringLiteral("a/small.mtlx"));
        QCOMPARE(opened.GetWorkspace().GetRemarks(),
                 QStringList(path + QStringLiteral(": Another program has changed it; what was saved is in ") + path +
                             QStringLiteral(".saved")));
        QVERIFY(opened.Find("theirs").IsValid());
        QCOMPARE(BytesOfFile(path + QStringLiteral(".saved")), SavedBytes());
        opened.GetWorkspace().ClearRemarks();
        QCOMPARE(opened.GetWorkspace().GetRemarks(), QStringList());
    }

    /// The same on machines that mount nothing, and for the second document only.
    void aDocumentThatMayNotGrowIsKept()
    {
        WriteDocuments();
        Opened opened(m_folder->GetPath());
        RenameBoth(opened);
        const Files before = FilesBelow(m_folder->GetPath());
        {
            const FileSizeLimit limit(30000);
            QVERIFY(!opened.Commit());
        }
        QVERIFY(opened.m_isWritten);
        QCOMPARE(opened.GetMessages(), QByteArray("b/large.mtlx: File too large\n"));
        QVERIFY(opened.Get().ItemIsDirty(opened.Find("Objective")));
        QVERIFY(!opened.Get().ItemIsDirty(opened.Find("Polar light")));
        QCOMPARE(Difference(before, FilesBelow(m_folder->GetPath())), QStringLiteral("differs: a/small.mtlx"));
        CheckBothAreSaved(opened);
    }

    void aJournalThatMayNotGrowKeepsAll()
    {
        WriteDocuments();
        Opened opened(m_folder->GetPath());
        RenameBoth(opened);
        const Files before = FilesBelow(m_folder->GetPath());
        {
            const FileSizeLimit limit(10);
            CheckNothingIsSaved(opened, before, "File too large");
        }
        CheckBothAreSaved(opened);
    }

    void aPermissionThatIsLostInTheMiddleIsTold()
    {
        WriteDocuments();
        Opened opened(m_folder->GetPath());
        RenameBoth(opened);
        const QString path = m_folder->GetPath(QStringLiteral("b/large.mtlx"));
        const QFile::Permissions all = QFile::permissions(path);
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
        QVERIFY(!opened.Commit());
        QCOMPARE(opened.GetMessages(), QByteArray("b/large.mtlx: It is read-only\n"));
        QVERIFY(opened.Get().ItemIsDirty(opened.Find("Objective")));
        QVERIFY(QFile::setPermissions(path, all));
        CheckBothAreSaved(opened);
    }

    /// Whoever has it open can go on, and save it once the folder is there again.
    void theOpenedFolderMayGo()
    {
        WriteDocuments();
        Opened opened(m_folder->GetPath());
        RenameBoth(opened);
        const Files files = FilesBelow(m_folder->GetPath());
        QVERIFY(QDir(m_folder->GetPath()).removeRecursively());
        QVERIFY(!opened.Commit());
        QVERIFY(!opened.GetMessages().isEmpty());
        QVERIFY(opened.Get().ItemIsDirty(opened.Find("Objective")));
        QVERIFY(!QFileInfo::exists(m_folder->GetPath()));
        Rename(opened.Get(), opened.Find("Objective"), "Ocular", opened.GetCommands());
        opened.GetStack().undo();
        QVERIFY(opened.Find("Objective").IsValid());
        for (auto file = files.begin(); file != files.end(); ++file)
            m_folder->Write(file.key(), file.value());
        CheckBothAreSaved(opened);
    }

    void aFolderWithEditsMayGo()
    {
        WriteDocuments();
        Opened opened(m_folder->GetPath());
        RenameBoth(opened);
        QVERIFY(QDir(m_folder->GetPath(QStringLiteral("b"))).removeRecursively());
        QVERIFY(!opened.Commit());
        QCOMPARE(opened.GetMessages(), QByteArray("b/large.mtlx: It is not there any more\n"));
        QCOMPARE(opened.GetWorkspace().GetSavedDocuments(), QStringList(QStringLiteral("a/small.mtlx")));
        opened.GetWorkspace().Refresh();
        QCOMPARE(opened.GetWorkspace().GetTroubledDocuments(), QStringList(QStringLiteral("b/large.mtlx")));
        QVERIFY(opened.Get().ItemIsDirty(opened.Find("Objective")));
        QCOMPARE(opened.GetWorkspace().KeepOurs(QStringLiteral("b/large.mtlx")), QString());
        CheckBothAreSaved(opened);
    }

    /// Nobody could say which of them a new name is for.
    void definitionsOfOneNameTakeNoNewName()
    {
        m_folder->Write(QStringLiteral("a/two.mtlx"), "<materialx><nodedef name=\"ND_y\" node=\"y\"/>"
                                                      "<nodedef name=\"ND_y\" node=\"y\"/></materialx>");
        m_folder->Write(QStringLiteral("b/one.mtlx"), "<materialx><nodedef name=\"ND_x\" node=\"x\"/></materialx>");
        const Files before = FilesBelow(m_folder->GetPath());
        Opened opened(m_folder->GetPath());
        Rename(opened.Get(), opened.Find("y"), "z", opened.GetCommands());
        QCOMPARE(opened.GetStack().count(), 0);
        QVERIFY(opened.Find("y").IsValid());
        Rename(opened.Get(), opened.Find("x"), "z", opened.GetCommands());
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QCOMPARE(Difference(before, FilesBelow(m_folder->GetPath())), QStringLiteral("differs: b/one.mtlx"));
    }

    void namesLeadOutOfNoFolder_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("up") << QByteArray("../../evil");
        QTest::newRow("absolute") << QByteArray("/tmp/evil");
        QTest::newRow("dots") << QByteArray("..");
        QTest::newRow("a device of another system") << QByteArray("C:\\evil");
        QTest::newRow("markup") << QByteArray("\"/><evil a=\"");
        QTest::newRow("an entity") << QByteArray("&evil;");
    }

    void namesLeadOutOfNoFolder()
    {
        QFETCH(QByteArray, name);
        const QByteArray escaped = QString::fromLatin1(name).toHtmlEscaped().toUtf8();
        m_folder->Write(QStringLiteral("in/a/one.mtlx"),
                        "<materialx><nodedef name=\"" + escaped + "\" node=\"" + escaped + "\"/></materialx>");
        m_folder->Write(QStringLiteral("in/b/two.mtlx"), "<materialx/>");
        Opened opened(m_folder->GetPath(QStringLiteral("in")));
        QVERIFY(opened.Move(opened.Find(name.constData()), "b"));
        CompoundModifierAccessor compound;
        const QByteArray other = name + " too";
        QVERIFY(compound
                    .CreateAndSetFromNewCompound(opened.Get(), other.constData(), false, "", name.constData(),
                                                 opened.GetCommands())
                    .IsValid());
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QCOMPARE(QStringList(FilesBelow(m_folder->GetPath()).keys()),
                 QStringList({QStringLiteral("in/a/one.mtlx"), QStringLiteral("in/b/b.mtlx"),
                              QStringLiteral("in/b/two.mtlx"), QStringLiteral("in/local/local.mtlx")}));
        const QStringList now = Describe(opened.GetLibrary());
        QCOMPARE(Describe(Opened(m_folder->GetPath(QStringLiteral("in"))).GetLibrary()), now);
    }

    void whatNobodyKnowsStays()
    {
        const QByteArray strange = "<?pi x?>\n<!DOCTYPE materialx [<!ENTITY e \"x\">]>\n"
                                   "<materialx xmlns:xi=\"x\">\n  <xi:include href=\"loop.mtlx\"/>\n"
                                   "  <strange a='&e;'><![CDATA[<nodedef/>]]></strange>\n"
                                   "  <nodedef name=\"ND_x\" node=\"x\" strange='1'/>\n</materialx>\n<!-- end -->";
        const QString path = m_folder->Write(QStringLiteral("loop.mtlx"), strange);
        Opened opened(m_folder->GetPath());
        Rename(opened.Get(), opened.Find("x"), "y", opened.GetCommands());
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QCOMPARE(BytesOfFile(path), QByteArray(strange).replace("strange='1'", "strange='1' uiname='y'"));
        opened.GetStack().undo();
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QCOMPARE(BytesOfFile(path), strange);
    }

private:
    void WriteDocuments()
    {
        m_folder->Write(QStringLiteral("a/small.mtlx"),
                        "<materialx><nodedef name=\"ND_aurora\" node=\"aurora\"/></materialx>");
        m_folder->Write(QStringLiteral("b/large.mtlx"), LargeDocument(60000));
    }

    static QByteArray SavedBytes()
    {
        return "<materialx><nodedef name=\"ND_aurora\" node=\"aurora\" tags=\"saved\"/></materialx>";
    }

    /// A save of a document that was interrupted right before it could replace the file.
    void LeaveSave(const char* in_temporary)
    {
        using workspace::HashOf;
        const QByteArray before = BytesOfFile(m_folder->GetPath(QStringLiteral("a/small.mtlx")));
        workspace::Journal journal;
        journal.m_isComplete = true;
        journal.m_entries = {
            {"a/small.mtlx", in_temporary, HashOf(before.toStdString()), HashOf(SavedBytes().toStdString())}};
        m_folder->Write(QString::fromLatin1(in_temporary), SavedBytes());
        m_folder->Write(QString::fromLatin1(workspace::gJournalName), workspace::WriteJournal(journal));
    }

    static void RenameBoth(Opened& io_opened)
    {
        Rename(io_opened.Get(), io_opened.Find("lens"), "Objective", io_opened.GetCommands());
        Rename(io_opened.Get(), io_opened.Find("aurora"), "Polar light", io_opened.GetCommands());
    }

    void CheckNothingIsSaved(Opened& io_opened, const Files& in_before, const char* in_reason)
    {
        QVERIFY(!io_opened.Commit());
        QVERIFY(!io_opened.m_isWritten);
        for (const char* const document : {"a/small.mtlx", "b/large.mtlx"})
            QVERIFY2(io_opened.GetMessages().contains(QByteArray(document) + ": " + in_reason),
                     io_opened.GetMessages().constData());
        QVERIFY(io_opened.Get().ItemIsDirty(io_opened.Find("Objective")));
        QVERIFY(io_opened.Get().ItemIsDirty(io_opened.Find("Polar light")));
        QCOMPARE(Difference(in_before, FilesBelow(m_folder->GetPath())), QString());
    }

    void CheckBothAreSaved(Opened& io_opened)
    {
        QVERIFY2(io_opened.Commit(), io_opened.GetMessages().constData());
        QCOMPARE(io_opened.GetWorkspace().GetChangedDocuments(), QStringList());
        Opened again(m_folder->GetPath());
        QVERIFY(again.Find("Objective").IsValid());
        QVERIFY(again.Find("Polar light").IsValid());
        for (const QString& path : FilesBelow(m_folder->GetPath()).keys())
            QVERIFY2(path.endsWith(QLatin1String(".mtlx")), qPrintable(path));
    }

    std::unique_ptr<DocumentFolder> m_folder;
};

NODEBROWSER_TEST_MAIN(TestFailures)
#include "test_failures.moc"
