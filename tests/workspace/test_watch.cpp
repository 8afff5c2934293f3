// SPDX-License-Identifier: MIT
// Files that another process writes while they are watched.

#include "contract/support.h"
#include "tests/support/testmain.h"
#include "tests/support/waiting.h"
#include "tests/workspace/openedfolder.h"
#include "workspace/watch.h"

#include <QProcess>
#include <QSignalSpy>

#include <sys/stat.h>

using workspace::eDocumentState;
using workspace::Watch;

namespace
{

const int gPatience = 20000; // milliseconds

QByteArray Document(const QByteArray& in_lines)
{
    return "<materialx version=\"1.39\">\n" + in_lines + "</materialx>\n";
}

} // namespace

class TestWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.reset(new DocumentFolder);
        m_folder->Write(QStringLiteral("sky/sky.mtlx"), Document("  <nodedef name=\"ND_sun\" node=\"sun\"/>\n"));
        QString error;
        m_workspace = workspace::Workspace::Open(m_layer, m_folder->GetPath(), &error);
        QVERIFY2(m_workspace, qPrintable(error));
        m_watch.reset(new Watch(m_workspace));
        m_watch->Start();
    }

    void cleanup()
    {
        m_watch.reset();
        if (m_workspace)
            m_layer.RemoveLibrary(m_workspace->GetLibrary());
        m_workspace.reset();
    }

    void aFileThatIsWrittenInPlaceIsNoticed()
    {
        Do("sed -i.bak s/ND_sun/ND_sun2/ sky/sky.mtlx && printf '%s' \"$(sed 's/node=\"sun\"/node=\"moon\"/' "
           "sky/sky.mtlx)\" > sky/sky.mtlx");
        QVERIFY(WaitForItem("moon"));
        QVERIFY(!Has("sun"));
    }

    void aFileThatIsReplacedIsNoticedAgainAndAgain()
    {
        for (const char* const name : {"moon", "star", "comet"})
        {
            Do(QByteArray("sed 's/node=\"[a-z]*\"/node=\"") + name +
               "\"/' sky/sky.mtlx > sky/new && mv sky/new sky/sky.mtlx");
            QVERIFY2(WaitForItem(name), name);
        }
    }

    void filesAndFoldersThatComeAndGoAreNoticed()
    {
        Do("mkdir -p sea/deep && sed 's/sun/fish/g' sky/sky.mtlx > sea/deep/sea.mtlx");
        QVERIFY(WaitForItem("fish"));
        Do("rm -r sea");
        QVERIFY(WaitFor([this] { return !Has("fish"); }, gPatience));
        // A folder that came while it was watched is watched itself.
        Do("mkdir -p sea/deep");
        QSignalSpy looked(m_watch.get(), SIGNAL(Looked()));
        QVERIFY(WaitFor([&] { return looked.count() > 0; }, gPatience));
        Do("sed 's/sun/whale/g' sky/sky.mtlx > sea/deep/sea.mtlx");
        QVERIFY(WaitForItem("whale"));
    }

    void whatHappenedBeforeItBeganIsNoticed()
    {
        m_watch.reset();
        Do("sed 's/sun/fish/g' sky/sky.mtlx > sky/sea.mtlx && sed -i s/sun/moon/g sky/sky.mtlx");
        m_watch.reset(new Watch(m_workspace));
        m_watch->Start();
        QVERIFY(WaitForItem("moon"));
        QVERIFY(Has("fish"));
    }

    void aNewFileThatChangesWhileItIsReadIsNoticed()
    {
        const QString path = m_folder->GetPath(QStringLiteral("sky/sea.mtlx"));
        int calls = 0;
        m_workspace->SetRunner([&](const std::function<void()>& in_function) {
            in_function();
            const int last = 3; // for new files, for changed ones, and for what may be written
            QFile file(path);   // in place, so that its folder does not change
            if (++calls == last && file.open(QIODevice::WriteOnly))
                file.write(Document("  <nodedef name=\"ND_whale\" node=\"whale\"/>\n"));
        });
        m_folder->Write(QStringLiteral("sky/sea.mtlx"), Document("  <nodedef name=\"ND_fish\" node=\"fish\"/>\n"));
        QVERIFY(WaitForItem("whale"));
        QVERIFY(!Has("fish"));
    }

    void foldersInsideOfNewOnesAreWatched()
    {
        QSignalSpy looked(m_watch.get(), SIGNAL(Looked()));
        QVERIFY(WaitFor([&] { return looked.count() > 0; }, gPatience)); // the one at the start
        Do("mkdir -p sea/deep/deeper sea/.hidden");
        QVERIFY(WaitFor([&] { return looked.count() > 1; }, gPatience));
        Do("sed 's/sun/fish/g' sky/sky.mtlx > sea/deep/deeper/sea.mtlx");
        QVERIFY(WaitForItem("fish"));
        Do("mv sea/deep sea/shallow && sed -i 's/fish/crab/g' sea/shallow/deeper/sea.mtlx");
        QVERIFY(WaitForItem("crab"));
    }

    void ourOwnSavesAreNoNews()
    {
        m_workspace->GetLibrary().Rename(m_workspace->GetLibrary().FindByName("sun"), "Sun",
                                         &m_layer.GetCommandManager());
        const QStringList before = Describe(m_workspace->GetLibrary());
        QSignalSpy looked(m_watch.get(), SIGNAL(Looked()));
        QVERIFY(Commit());
        QVERIFY(WaitFor([&] { return looked.count() > 0; }, gPatience));
        QCOMPARE(Describe(m_workspace->GetLibrary()), before);
        QCOMPARE(m_workspace->GetTroubledDocuments(), QStringList());
        m_layer.GetCommandManager().GetStack().undo();
        QVERIFY(Has("sun"));
    }

    void aDocumentWithEditsBecomesAConflict()
    {
        m_workspace->GetLibrary().Rename(m_workspace->GetLibrary().FindByName("sun"), "Sun");
        Do("sed -i 's/ND_sun/ND_star/' sky/sky.mtlx");
        QVERIFY(WaitFor([this] { return m_workspace->GetTroubledDocuments() == QStringList(Sky()); }, gPatience));
        QCOMPARE(m_workspace->GetDocumentState(Sky()), eDocumentState::eConflict);
        QVERIFY(Has("Sun"));
    }

    void aDocumentThatCannotBeReadSaysWhere()
    {
        Do("printf '<materialx>\\n<<<<<<< ours\\n' > sky/sky.mtlx");
        QVERIFY(WaitFor([this] { return !m_workspace->GetProblem(Sky()).isEmpty(); }, gPatience));
        const QString problem = m_workspace->GetProblem(Sky());
        QVERIFY2(problem.startsWith(m_folder->GetPath(Sky()) + QStringLiteral(":2: ")), qPrintable(problem));
        QVERIFY(Has("sun"));
    }

    void whatMayBeWrittenIsAskedAnew()
    {
        const auto sun = m_workspace->GetLibrary().FindByName("sun");
        const auto library = m_workspace->GetLibrary().GetAccessor();
        QVERIFY(!library.ItemIsReadOnly(sun));
        Do("chmod 444 sky/sky.mtlx");
        QVERIFY(WaitFor([&] { return library.ItemIsReadOnly(sun); }, gPatience));
        Do("chmod 644 sky/sky.mtlx");
        QVERIFY(WaitFor([&] { return !library.ItemIsReadOnly(sun); }, gPatience));
        Do("chmod 555 sky");
        QVERIFY(WaitFor([&] { return m_workspace->GetLibrary().GetSourceOf(sun)->IsReadOnly(); }, gPatience));
        Do("chmod 755 sky");
        QVERIFY(WaitFor([&] { return !library.ItemIsReadOnly(sun); }, gPatience));
    }

    void itemsStayWhenTheOpenedFolderIsGone()
    {
        QSignalSpy looked(m_watch.get(), SIGNAL(Looked()));
        const QString away = m_folder->GetPath() + QStringLiteral("-away");
        Do("mv \"$PWD\" \"$PWD-away\"");
        m_watch->LookSoon(); // the system does not tell of this
        QVERIFY(WaitFor([&] { return looked.count() > 0; }, gPatience));
        QVERIFY(!m_workspace->IsThere());
        QVERIFY(Has("sun"));
        QVERIFY(QFile::rename(away, m_folder->GetPath()));
    }

    void allFilesAreLookedAtOnDemand()
    {
        m_watch.reset(new Watch(m_workspace)); // without watching
        Do("sed 's/sun/fish/g' sky/sky.mtlx > sky/sea.mtlx");
        QVERIFY(!Has("fish"));
        m_watch->LookSoon();
        QVERIFY(WaitForItem("fish"));
    }

private:
    static QString Sky() { return QStringLiteral("sky/sky.mtlx"); }

    /// Lets a shell do something in the folder.
    void Do(const QByteArray& in_commands)
    {
        QProcess shell;
        shell.setWorkingDirectory(m_folder->GetPath());
        shell.start(QStringLiteral("sh"), {QStringLiteral("-ec"), QString::fromLatin1(in_commands)});
        QVERIFY(shell.waitForFinished(gPatience));
        QVERIFY2(shell.exitCode() == 0, shell.readAllStandardError().constData());
    }

    bool Has(const char* in_name) { return m_workspace->GetLibrary().FindByName(in_name).IsValid(); }
    bool WaitForItem(const char* in_name)
    {
        return WaitFor([&] { return Has(in_name); }, gPatience);
    }

    bool Commit()
    {
        bool isWritten = false;
        return vireo::datamodel::ItemLibraryModifierAccessor(m_workspace->GetLibrary().GetAccessor())
                   .CommitToDisk(isWritten, nullptr, false, nexa4::UID_Null()) &&
               isWritten;
    }

    std::unique_ptr<DocumentFolder> m_folder;
    memorymodel::DataLayer m_layer;
    std::shared_ptr<workspace::Workspace> m_workspace;
    std::unique_ptr<Watch> m_watch;
};

NODEBROWSER_TEST_MAIN(TestWatch)
#include "test_watch.moc"
