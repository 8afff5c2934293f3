// SPDX-License-Identifier: MIT
// What git has of documents reaches the items, and follows what other programs do.

#include "contract/notificationspy.h"
#include "contract/support.h"
#include "datamodel/sourcecontrol.h"
#include "memorymodel/accessstate.h"
#include "tests/support/testmain.h"
#include "tests/support/waiting.h"
#include "tests/workspace/gitfolder.h"
#include "tests/workspace/openedfolder.h"
#include "workspace/versions.h"

#include <QSignalSpy>
#include <QThread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <future>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

using contract::NotificationSpy;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIDUnlock;
using workspace::DocumentVersion;
using workspace::Versions;

namespace
{

using Handle = nexa4::NEXAHandle<nexa4::IDbObject>;

nexa4::IRevisionControlUIHelper& Helper()
{
    return *hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
}

Handle ObjectOf(const ItemID& in_item)
{
    return Helper().FindObject(nexa4::DbObjectId(ItemIDUnlock::GetItemIDUID(in_item)));
}

/// Signatures, one for each name: they have badges like all compounds.
QByteArray Document(const QByteArray& in_names)
{
    QByteArray lines;
    for (const QByteArray& name : in_names.split(' '))
        lines += "  <nodedef name=\"ND_" + name + "\" node=\"" + name + "\"/>\n";
    return "<materialx version=\"1.39\">\n" + lines + "</materialx>\n";
}

const int gPatience = 20000; // milliseconds; the machine may have other things to do

} // namespace

class TestGit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.reset(new GitFolder);
        m_folder->Write("sky/sky.mtlx", Document("sun moon"));
        m_folder->Write("earth/earth.mtlx", Document("tree"));
    }

    void cleanup()
    {
        m_opened.reset();
        m_folder.reset();
    }

    void anUnchangedDocument()
    {
        m_folder->Commit();
        Open();
        QVERIFY(GetVersions().IsActive());
        QVERIFY(ScsUtils::IsFileVersionControlActive());
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        QCOMPARE(StateOf("tree"), unsigned(memorymodel::eCheckedIn));
    }

    void aChangedDocument()
    {
        m_folder->Commit();
        Open();
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedOut));
        QCOMPARE(StateOf("moon"), unsigned(memorymodel::eCheckedOut));
        QCOMPARE(StateOf("tree"), unsigned(memorymodel::eCheckedIn));
    }

    void aStagedDocumentAndOneThatIsChangedAgain()
    {
        m_folder->Commit();
        Open();
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        m_folder->Git("add --all");
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eStaged));
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- and more -->\n");
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedOut));
    }

    void anUntrackedDocument()
    {
        m_folder->Commit();
        m_folder->Write("sea/sea.mtlx", Document("wave"));
        Open();
        QCOMPARE(StateOf("wave"), unsigned(memorymodel::eAdded));
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
    }

    void anIgnoredDocument()
    {
        m_folder->Write(".gitignore", "sea/\n");
        m_folder->Commit();
        m_folder->Write("sea/deep/sea.mtlx", Document("wave"));
        Open();
        QCOMPARE(StateOf("wave"), unsigned(memorymodel::eIgnored));
    }

    void aReadOnlyDocument()
    {
        m_folder->Commit();
        chmod(PathOf("sky/sky.mtlx").constData(), 0444);
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eReadOnlyFile));
        QVERIFY(m_opened->Get().ItemIsReadOnly(m_opened->Find("sun")));
    }

    void aDocumentThatIsGone()
    {
        m_folder->Commit();
        Open();
        QVERIFY(QFile::remove(m_folder->GetPath(QStringLiteral("sky/sky.mtlx"))));
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedOut));
    }

    void aDocumentThatIsNotSavedYet()
    {
        m_folder->Commit();
        Open();
        vireo::datamodel::CompoundModifierAccessor compound;
        compound.CreateAndSetFromNewCompound(m_opened->Get(), "star", true, nullptr, nullptr, nullptr);
        QCOMPARE(StateOf("star"), unsigned(memorymodel::eWithoutState));
        QVERIFY(m_opened->Commit());
        QVERIFY2(Becomes("star", memorymodel::eAdded), "saving is noticed");
    }

    void aConflictKeepsTheItemsAndSaysSo()
    {
        m_folder->Commit();
        m_folder->Git("checkout --quiet -b other");
        m_folder->Write("sky/sky.mtlx", Document("sun moon star"));
        m_folder->Commit("Star");
        m_folder->Git("checkout --quiet main");
        m_folder->Write("sky/sky.mtlx", Document("sun moon comet"));
        m_folder->Commit("Comet");
        Open();
        QCOMPARE(StateOf("comet"), unsigned(memorymodel::eCheckedIn));
        m_folder->Git("merge --quiet other", "", true);
        QVERIFY(BytesOfFile(m_folder->GetPath(QStringLiteral("sky/sky.mtlx"))).contains("<<<<<<<"));
        QVERIFY2(Becomes("comet", memorymodel::eConflicted), "the merge is noticed");
        m_opened->GetWorkspace().Refresh();
        QCOMPARE(StateOf("comet"), unsigned(memorymodel::eConflicted));
        QVERIFY(m_opened->Find("sun").IsValid());
        const std::vector<DocumentVersion> documents = GetVersions().GetDocuments(m_opened->Find("sun"));
        QCOMPARE(documents.size(), std::size_t(1));
        QVERIFY(!documents[0].m_problem.isEmpty());
        QVERIFY(ToolTipOf("sun").contains(documents[0].m_problem));
    }

    void anItemHasTheGreatestStateOfItsDocuments()
    {
        m_folder->Write("sky/graph.mtlx",
                        "<materialx version=\"1.39\">\n  <nodegraph name=\"NG\" nodedef=\"ND_sun\"/>\n</materialx>\n");
        m_folder->Commit();
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        chmod(PathOf("sky/sky.mtlx").constData(), 0444);
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eReadOnlyFile));
        m_folder->Git("rm --quiet --cached sky/graph.mtlx");
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eStaged));
        QCOMPARE(StateOf("moon"), unsigned(memorymodel::eReadOnlyFile));
        const std::vector<DocumentVersion> documents = GetVersions().GetDocuments(m_opened->Find("sun"));
        QCOMPARE(documents.size(), std::size_t(2));
        QCOMPARE(documents[0].m_path, QStringLiteral("sky/graph.mtlx"));
        QCOMPARE(documents[1].m_path, QStringLiteral("sky/sky.mtlx"));
    }

    void aRequestIsAnsweredLaterAndInItsOrder()
    {
        m_folder->Commit();
        Open();
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        NotificationSpy spy(m_opened->Get());
        ScsTask* const task = new ScsTask("Test");
        task->RequestObjectStates({ObjectOf(m_opened->Find("tree")), Handle(), ObjectOf(m_opened->Find("moon"))});
        m_opened->GetLayer().GetSourceControl().DeliverRequestedStates();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
        QByteArray calls;
        QVERIFY(WaitFor([&] { return !(calls += QByteArray(spy.Take().c_str())).isEmpty(); }, gPatience));
        QCOMPARE(calls, QByteArray("begin, state tree 1, state moon 2, end"));
        // What is as it was is told to nobody who did not ask.
        GetVersions().Ask();
        GetVersions().Finish();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
        task->RequestObjectStates({ObjectOf(m_opened->Find("sun"))});
        task->DeleteMe();
        GetVersions().Finish();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, state sun 2, end"));
    }

    void whatOtherProgramsDoIsNoticed()
    {
        m_folder->Commit();
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        m_folder->Git("add --all");
        QVERIFY2(Becomes("sun", memorymodel::eStaged), "staging");
        m_folder->Git("commit --quiet --message=More");
        QVERIFY2(Becomes("sun", memorymodel::eCheckedIn), "a commit");
        m_folder->Git("reset --quiet --soft HEAD~1");
        QVERIFY2(Becomes("sun", memorymodel::eStaged), "a branch that goes back");
        m_folder->Git("stash --quiet");
        QVERIFY2(Becomes("sun", memorymodel::eCheckedIn), "a stash");
        m_folder->Git("stash pop --quiet");
        QVERIFY2(Becomes("sun", memorymodel::eCheckedOut), "a stash that comes back");
        m_folder->Git("checkout --quiet --force");
        QVERIFY2(Becomes("sun", memorymodel::eCheckedIn), "a checkout");
    }

    void aBranchInAFolderOfItsOwnIsFollowed()
    {
        m_folder->Commit();
        m_folder->Git("checkout --quiet -b topics/deep/sky");
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        m_folder->Git("add --all");
        QVERIFY(Becomes("sun", memorymodel::eStaged));
        m_folder->Git("commit --quiet --message=More");
        QVERIFY(Becomes("sun", memorymodel::eCheckedIn));
        m_folder->Git("update-ref refs/heads/topics/deep/sky main");
        QVERIFY(Becomes("sun", memorymodel::eStaged));
    }

    void aRepositoryThatIsMadeLaterIsNoticed()
    {
        Open();
        QVERIFY(!GetVersions().IsActive());
        m_folder->Commit();
        QVERIFY(WaitFor([&] { return GetVersions().IsActive(); }, gPatience));
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
    }

    void withoutARepositoryNothingIsClaimed()
    {
        Open();
        QVERIFY(!GetVersions().IsActive());
        QCOMPARE(GetVersions().GetProblem(), QString());
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
        NotificationSpy spy(m_opened->Get());
        ScsTask* const task = new ScsTask("Test");
        task->RequestObjectStates({ObjectOf(m_opened->Find("sun"))});
        m_opened->GetLayer().GetSourceControl().DeliverRequestedStates();
        task->DeleteMe();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, state sun 0, end"));
        QVERIFY(ToolTipOf("sun").contains(QStringLiteral("Not under version control")));
        QVERIFY(!ToolTipOf("sun").contains(QStringLiteral("Checked in")));
    }

    void aRepositoryWithoutCommits()
    {
        m_folder->Git("init --quiet");
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eAdded));
        m_folder->Git("add sky");
        QVERIFY(Becomes("sun", memorymodel::eStaged));
        QCOMPARE(StateOf("tree"), unsigned(memorymodel::eAdded));
        QVERIFY(!GetVersions().FindHistory(QStringLiteral("sky/sky.mtlx")));
        GetVersions().Finish();
        const auto* const commits = GetVersions().FindHistory(QStringLiteral("sky/sky.mtlx"));
        QVERIFY(commits && commits->empty());
    }

    void aDetachedHead()
    {
        m_folder->Commit();
        m_folder->Git("checkout --quiet --detach");
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        m_folder->Git("add --all");
        QVERIFY(Becomes("sun", memorymodel::eStaged));
        m_folder->Git("commit --quiet --message=More");
        QVERIFY(Becomes("sun", memorymodel::eCheckedIn));
    }

    void aLockThatWasLeft()
    {
        m_folder->Commit();
        m_folder->Write(".git/index.lock", "");
        chmod(PathOf("sky/sky.mtlx").constData(), 0444);
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eReadOnlyFile));
        Helper().CheckOut(ObjectOf(m_opened->Find("sun")), nullptr, true);
        GetVersions().Finish();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        QVERIFY(QFile::exists(m_folder->GetPath(QStringLiteral(".git/index.lock"))));
    }

    void aSubmodule()
    {
        const GitFolder inner;
        inner.Write("inner.mtlx", Document("pearl"));
        inner.Commit();
        m_folder->Commit();
        m_folder->Git(("submodule --quiet add " + inner.GetPath().toLatin1() + " sea").constData());
        m_folder->Commit("Sea");
        Open();
        QCOMPARE(StateOf("pearl"), unsigned(memorymodel::eCheckedIn));
        m_folder->Write("sea/inner.mtlx", Document("pearl") + "<!-- more -->\n");
        QCOMPARE(StateOf("pearl"), unsigned(memorymodel::eCheckedOut));
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        m_folder->Git("commit --quiet --all --message=More", "sea");
        QVERIFY2(Becomes("pearl", memorymodel::eCheckedIn), "a commit in the submodule");
    }

    void aWorkTree()
    {
        m_folder->Commit();
        const GitFolder elsewhere;
        m_folder->Git(
            ("worktree add --quiet -b other " + elsewhere.GetPath(QStringLiteral("tree")).toLatin1()).constData());
        Open(elsewhere.GetPath(QStringLiteral("tree")));
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        elsewhere.Write("tree/sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        elsewhere.Git("add --all", "tree");
        QVERIFY(Becomes("sun", memorymodel::eStaged));
        elsewhere.Git("commit --quiet --message=More", "tree");
        QVERIFY(Becomes("sun", memorymodel::eCheckedIn));
    }

    void aBareRepository()
    {
        m_folder->Git("init --quiet --bare");
        Open();
        QVERIFY(!GetVersions().IsActive());
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
        QVERIFY2(GetVersions().GetProblem().contains(QStringLiteral("bare")), qPrintable(GetVersions().GetProblem()));
    }

    void aRepositoryOfSomebodyElse()
    {
        m_folder->Commit();
        if (geteuid() != 0)
            QSKIP("Only the administrator can give files away");
        const uid_t nobody = 65534;
        for (const char* const path : {"", ".git"})
            QCOMPARE(chown(PathOf(path).constData(), nobody, nobody), 0);
        Open();
        QVERIFY(!GetVersions().IsActive());
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
        QVERIFY2(GetVersions().GetProblem().contains(QStringLiteral("another user")),
                 qPrintable(GetVersions().GetProblem()));
    }

    void theFolderGoes()
    {
        m_folder->Commit();
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        QVERIFY(QDir(m_folder->GetPath()).removeRecursively());
        QVERIFY(WaitFor([&] { return !GetVersions().IsActive(); }, gPatience));
        QVERIFY2(GetVersions().GetProblem().contains(QStringLiteral("gone")), qPrintable(GetVersions().GetProblem()));
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
        QVERIFY(m_opened->Find("sun").IsValid());
        QCOMPARE(m_opened->GetLayer().GetSourceControl().GetState(m_opened->Find("sun")), 0u);
    }

    void otherFilesAreNotLookedAt()
    {
        m_folder->Commit();
        const int count = 10000;
        for (int i = 0; i < count; ++i)
            m_folder->GetDocuments().Write(QStringLiteral("sky/junk/%1.txt").arg(i), "junk");
        Open();
        const std::size_t before = GetVersions().GetAskedCount();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        QCOMPARE(GetVersions().GetAskedCount() - before, std::size_t(2));
        const workspace::GitStates states = workspace::ReadGitStates(
            {PathOf(""), {QByteArray("sky/sky.mtlx"), QByteArray("earth/earth.mtlx")}}, std::atomic<bool>(false));
        QCOMPARE(states.m_states.size(), std::size_t(2));
        QVERIFY2(states.m_lookedAt > 0 && states.m_lookedAt < 20, qPrintable(QString::number(states.m_lookedAt)));
    }

    void theCallerGoesOnWhileGitReads()
    {
        m_folder->Commit();
        // Whoever opens a pipe waits for its other end. Git reads its settings first.
        const QByteArray settings = PathOf(".git/config");
        const QByteArray kept = PathOf(".git/kept");
        const QByteArray pipe = PathOf(".git/pipe");
        const QByteArray samePipe = PathOf(".git/same");
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        QCOMPARE(link(pipe.constData(), samePipe.constData()), 0);
        Open();
        QCOMPARE(rename(settings.constData(), kept.constData()), 0);
        QCOMPARE(rename(pipe.constData(), settings.constData()), 0);
        QSignalSpy read(&GetVersions(), &Versions::StatesRead);
        // If it is the caller who waits, somebody else has to end that.
        std::promise<void> hasEnded;
        std::thread other([&samePipe, end = hasEnded.get_future()] {
            int wait = gPatience;
            for (; end.wait_for(std::chrono::milliseconds(wait)) == std::future_status::timeout; wait = 1)
                close(open(samePipe.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
        });
        GetVersions().Ask();
        int end = -1;
        const bool isReading = WaitFor(
            [&] { return (end = open(settings.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) >= 0; }, gPatience);
        const int answers = static_cast<int>(read.count());
        const bool isRestored = rename(kept.constData(), settings.constData()) == 0;
        close(end);
        hasEnded.set_value();
        other.join();
        QVERIFY(isRestored);
        QCOMPARE(answers, 0);
        QVERIFY2(isReading, "git waits, and this loop goes on");
        GetVersions().Finish();
        QVERIFY(read.count() > 0);
    }

    void aJobThatFailsIsAnsweredToo_data()
    {
        QTest::addColumn<bool>("isMemory");
        QTest::addColumn<QString>("reason");
        QTest::newRow("memory") << true << QStringLiteral("There is not enough memory to ask git");
        QTest::newRow("something else") << false << QStringLiteral("it does not want");
    }

    void aJobThatFailsIsAnsweredToo()
    {
        QFETCH(bool, isMemory);
        QFETCH(QString, reason);
        workspace::GitWorker worker;
        QStringList reasons;
        const QThread* thread = nullptr;
        worker.Do(
            [&, isMemory](const std::atomic<bool>&) -> workspace::GitWorker::Answer {
                thread = QThread::currentThread();
                if (isMemory)
                    throw std::bad_alloc();
                throw std::runtime_error("it does not want");
            },
            [&](const QString& in_reason) { reasons += in_reason; }, false);
        worker.Finish();
        QCOMPARE(reasons, QStringList(reason));
        QVERIFY(thread && thread != QThread::currentThread());
    }

    void nobodyWaitsForStatesAtTheEnd()
    {
        m_folder->Commit();
        const workspace::GitLibrary library;
        const workspace::DocumentPaths paths = {PathOf(""), {QByteArray("sky/sky.mtlx")}};
        QVERIFY(workspace::ReadGitStates(paths, std::atomic<bool>(false)).m_lookedAt > 0);
        QCOMPARE(workspace::ReadGitStates(paths, std::atomic<bool>(true)).m_lookedAt, std::size_t(0));
    }

    void anEditOfANameFindsNoDocumentsAnew()
    {
        m_folder->Commit();
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        m_opened->GetLibrary().Rename(m_opened->Find("sun"), "Sun");
        QVERIFY(m_opened->Commit());
        GetVersions().Finish();
        QCOMPARE(m_opened->GetLayer().GetSourceControl().GetState(m_opened->Find("Sun")),
                 unsigned(memorymodel::eCheckedOut));
        QCOMPARE(StateOf("moon"), unsigned(memorymodel::eCheckedOut));
    }

    void anotherLibraryKeepsVersionControlActive()
    {
        m_folder->Commit();
        Open();
        QString error;
        const auto other =
            workspace::Workspace::Open(m_opened->GetLayer(), m_folder->GetPath(QStringLiteral("earth")), &error);
        QVERIFY2(other, qPrintable(error));
        other->GetVersions().Finish();
        m_opened->GetLayer().RemoveLibrary(other->GetLibrary());
        QVERIFY(ScsUtils::IsFileVersionControlActive());
        m_opened->GetLayer().RemoveLibrary(m_opened->GetLibrary());
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
    }

    void callsWhileGitIsBusyAreAnsweredTogether()
    {
        m_folder->Commit();
        Open();
        const std::size_t before = GetVersions().GetAskedCount();
        for (int i = 0; i < 100; ++i)
            GetVersions().Ask();
        GetVersions().Finish();
        GetVersions().Finish();
        QCOMPARE(GetVersions().GetAskedCount() - before, std::size_t(4));
    }

    void aWorkspaceEndsWhileGitIsBusy()
    {
        m_folder->Commit();
        for (int i = 0; i < 20; ++i)
        {
            m_opened.reset(new Opened(m_folder->GetPath()));
            GetVersions().Ask();
            GetVersions().MakeWritable(m_opened->Find("sun"), true);
            m_opened.reset();
        }
        m_opened.reset(new Opened(m_folder->GetPath()));
        m_opened->GetLayer().RemoveLibrary(m_opened->GetLibrary());
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
        GetVersions().Finish();
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
    }

    void checkingOutMakesWritableWhatIsAsTheIndexHasIt()
    {
        m_folder->Commit();
        chmod(PathOf("sky/sky.mtlx").constData(), 0444);
        Open();
        QSignalSpy refused(&GetVersions(), &Versions::Refused);
        bool hasBegun = false;
        Helper().CheckOut(ObjectOf(m_opened->Find("sun")), &hasBegun, true);
        QVERIFY(hasBegun);
        GetVersions().Finish();
        QCOMPARE(PermissionsOf("sky/sky.mtlx"), mode_t(0644));
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        QVERIFY(!m_opened->Get().ItemIsReadOnly(m_opened->Find("sun")));
        QVERIFY(!m_opened->Get().ItemIsReadOnly(m_opened->Find("moon")));
        QCOMPARE(refused.count(), 0);
    }

    void checkingOutLeavesAloneWhatIsNotAsTheIndexHasIt()
    {
        m_folder->Commit();
        const QByteArray text = Document("sun moon") + "<!-- more -->\n";
        m_folder->Write("sky/sky.mtlx", text);
        m_folder->Write("sea/sea.mtlx", Document("wave"));
        for (const char* const file : {"sky/sky.mtlx", "sea/sea.mtlx"})
            chmod(PathOf(file).constData(), 0444);
        Open();
        QSignalSpy refused(&GetVersions(), &Versions::Refused);
        for (const char* const name : {"sun", "wave"})
            Helper().CheckOut(ObjectOf(m_opened->Find(name)), nullptr, true);
        GetVersions().Finish();
        QCOMPARE(refused.count(), 2);
        QVERIFY(refused[0][0].toString().contains(QStringLiteral("sky.mtlx is not as git has it")));
        QVERIFY(refused[1][0].toString().contains(QStringLiteral("sea.mtlx is not under version control")));
        QCOMPARE(PermissionsOf("sky/sky.mtlx"), mode_t(0444));
        QCOMPARE(PermissionsOf("sea/sea.mtlx"), mode_t(0444));
        QCOMPARE(BytesOfFile(m_folder->GetPath(QStringLiteral("sky/sky.mtlx"))), text);
        QVERIFY(m_opened->Get().ItemIsReadOnly(m_opened->Find("sun")));

        // Whoever wants to write all the same says so.
        Helper().MakeWritable(ObjectOf(m_opened->Find("sun")), true);
        GetVersions().Finish();
        QCOMPARE(PermissionsOf("sky/sky.mtlx"), mode_t(0644));
        QCOMPARE(BytesOfFile(m_folder->GetPath(QStringLiteral("sky/sky.mtlx"))), text);
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedOut));
        QVERIFY(!m_opened->Get().ItemIsReadOnly(m_opened->Find("sun")));
        QCOMPARE(refused.count(), 2);
    }

    void checkingOutSaysThatThereIsAMergeConflict()
    {
        m_folder->Commit();
        m_folder->Git("checkout --quiet -b other");
        m_folder->Write("sky/sky.mtlx", Document("sun moon star"));
        m_folder->Commit("Star");
        m_folder->Git("checkout --quiet main");
        m_folder->Write("sky/sky.mtlx", Document("sun moon comet"));
        m_folder->Commit("Comet");
        Open();
        m_folder->Git("merge --quiet other", "", true);
        chmod(PathOf("sky/sky.mtlx").constData(), 0444);
        QSignalSpy refused(&GetVersions(), &Versions::Refused);
        Helper().CheckOut(ObjectOf(m_opened->Find("sun")), nullptr, true);
        GetVersions().Finish();
        QCOMPARE(refused.count(), 1);
        QVERIFY2(refused[0][0].toString().contains(QStringLiteral("sky.mtlx has a merge conflict")),
                 qPrintable(refused[0][0].toString()));
        QCOMPARE(PermissionsOf("sky/sky.mtlx"), mode_t(0444));
    }

    void filesOutsideAreLeftAlone()
    {
        m_folder->Commit();
        Open();
        const DocumentFolder elsewhere;
        const QString other = elsewhere.Write(QStringLiteral("sky.mtlx"), Document("sun moon"));
        chmod(QFile::encodeName(other).constData(), 0444);
        QVERIFY(QFile::remove(m_folder->GetPath(QStringLiteral("sky/sky.mtlx"))));
        QVERIFY(QFile::link(other, m_folder->GetPath(QStringLiteral("sky/sky.mtlx"))));
        Helper().MakeWritable(ObjectOf(m_opened->Find("sun")), true);
        Helper().CheckOut(ObjectOf(m_opened->Find("sun")), nullptr, true);
        GetVersions().Finish();
        QCOMPARE(PermissionsOf("sky/sky.mtlx"), mode_t(0444)); // of what the link leads to
    }

    void whatIsMadeWritableWhileFilesAreLookedAtIsAskedAfterwards()
    {
        m_folder->Commit();
        chmod(PathOf("sky/sky.mtlx").constData(), 0444);
        Open();
        const ItemID sun = m_opened->Find("sun");
        workspace::Workspace& workspace = m_opened->GetWorkspace();
        int calls = 0;
        bool isBusy = false;
        workspace.SetRunner([&](const std::function<void()>& in_function) {
            in_function();
            const int last = 3; // for new files, for changed ones, and for what may be written
            if (++calls != last)
                return;
            Helper().CheckOut(ObjectOf(sun), nullptr, true);
            GetVersions().Finish();
            isBusy = workspace.IsBusy();
        });
        workspace.Refresh();
        workspace.SetRunner([](const std::function<void()>& in_function) { in_function(); });
        QCOMPARE(calls, 3);
        QVERIFY(isBusy);
        QCOMPARE(PermissionsOf("sky/sky.mtlx"), mode_t(0644));
        QVERIFY(m_opened->Get().ItemIsReadOnly(sun));
        QVERIFY(WaitFor([&] { return !m_opened->Get().ItemIsReadOnly(sun); }, gPatience));
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
    }

    void aLookAtFilesAsksForTheStates()
    {
        m_folder->Commit();
        Open();
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedIn));
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        m_opened->GetWorkspace().Refresh();
        GetVersions().Finish();
        QCOMPARE(m_opened->GetLayer().GetSourceControl().GetState(m_opened->Find("sun")),
                 unsigned(memorymodel::eCheckedOut));
    }

    void nothingIsAskedBeforeALibraryIsShown()
    {
        m_folder->Commit();
        memorymodel::DataLayer layer;
        workspace::Reading reading(m_folder->GetPath());
        QVERIFY(reading.Run());
        const std::shared_ptr<workspace::Workspace> workspace = workspace::Workspace::Open(layer, reading);
        while (workspace->Fill(1))
        {
        }
        workspace->GetVersions().Finish();
        QCOMPARE(workspace->GetVersions().GetAskedCount(), std::size_t(0));
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
        workspace->GetVersions().Ask();
        workspace->GetVersions().Finish();
        QVERIFY(ScsUtils::IsFileVersionControlActive());
    }

    void theLastCommitsOfADocument()
    {
        for (int i = 1; i <= 7; ++i)
        {
            m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- " + QByteArray::number(i) + " -->\n");
            m_folder->Commit(("Sky-" + QByteArray::number(i)).constData());
            m_folder->Write("earth/earth.mtlx", Document("tree") + "<!-- " + QByteArray::number(i) + " -->\n");
            m_folder->Commit("Earth");
        }
        Open();
        QSignalSpy read(&GetVersions(), &Versions::HistoryRead);
        QVERIFY(!GetVersions().FindHistory(QStringLiteral("sky/sky.mtlx")));
        GetVersions().Finish();
        QCOMPARE(read.count(), 1);
        const std::vector<workspace::GitCommit>* const commits =
            GetVersions().FindHistory(QStringLiteral("sky/sky.mtlx"));
        QVERIFY(commits);
        QStringList subjects;
        for (const workspace::GitCommit& commit : *commits)
            subjects += commit.m_subject;
        QCOMPARE(subjects.join(QLatin1Char(' ')), QStringLiteral("Sky-7 Sky-6 Sky-5 Sky-4 Sky-3"));
        QCOMPARE(commits->front().m_author, QStringLiteral("Ann Author"));
        QCOMPARE(commits->front().m_date.time(), QTime(12, 0));
        QCOMPARE(commits->front().m_date.offsetFromUtc(), 7200);
        QVERIFY(commits->front().m_date > commits->back().m_date);
    }

    void aBranchThatBroughtNothingIsNotInTheHistory()
    {
        m_folder->Commit();
        m_folder->Git("checkout --quiet -b other");
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- other -->\n");
        m_folder->Commit("Other");
        m_folder->Git("checkout --quiet main");
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- main -->\n");
        m_folder->Commit("Main");
        m_folder->Git("merge --quiet --strategy=ours --message=Merge other");
        Open();
        GetVersions().FindHistory(QStringLiteral("sky/sky.mtlx"));
        GetVersions().Finish();
        QStringList subjects;
        for (const workspace::GitCommit& commit : *GetVersions().FindHistory(QStringLiteral("sky/sky.mtlx")))
            subjects += commit.m_subject;
        QCOMPARE(subjects.join(QLatin1Char(' ')), QStringLiteral("Main First"));
    }

    void theToolTipTellsStateDocumentAndLastCommit()
    {
        m_folder->Commit("Sun-and-moon");
        Open();
        QCOMPARE(ToolTipOf("sun"), QStringLiteral("sun\nUnchanged\nsky/sky.mtlx"));
        GetVersions().Finish();
        const QStringList lines = ToolTipOf("sun").split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 4);
        QVERIFY2(lines[3].endsWith(QStringLiteral("Ann Author: Sun-and-moon")), qPrintable(lines[3]));
        // A later commit is told, too.
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        m_folder->Commit("More");
        QVERIFY(WaitFor([&] { return ToolTipOf("sun").endsWith(QStringLiteral("Ann Author: More")); }, gPatience));
    }

    void anOpenedFile()
    {
        m_folder->Commit();
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        Open(m_folder->GetPath(QStringLiteral("sky/sky.mtlx")));
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedOut));
        QCOMPARE(ToolTipOf("sun"), QStringLiteral("sun\nChanged\nsky.mtlx"));
    }

    void anOpenedLinkHasTheStatesOfItsFile()
    {
        m_folder->Commit();
        m_folder->Write("sky/sky.mtlx", Document("sun moon") + "<!-- more -->\n");
        const DocumentFolder elsewhere;
        const QString link = elsewhere.GetPath(QStringLiteral("link.mtlx"));
        QVERIFY(QFile::link(m_folder->GetPath(QStringLiteral("sky/sky.mtlx")), link));
        chmod(PathOf("sky/sky.mtlx").constData(), 0444);
        Open(link);
        QCOMPARE(StateOf("sun"), unsigned(memorymodel::eCheckedOut));
        GetVersions().FindHistory(QStringLiteral("link.mtlx"));
        GetVersions().Finish();
        const auto* const commits = GetVersions().FindHistory(QStringLiteral("link.mtlx"));
        QVERIFY(commits);
        QCOMPARE(commits->size(), std::size_t(1));
        QSignalSpy refused(&GetVersions(), &Versions::Refused);
        Helper().CheckOut(ObjectOf(m_opened->Find("sun")), nullptr, true);
        GetVersions().Finish();
        QCOMPARE(refused.count(), 1);
        QVERIFY2(refused[0][0].toString().contains(QStringLiteral("sky.mtlx is not as git has it")),
                 qPrintable(refused[0][0].toString()));
    }

private:
    void Open(const QString& in_path = QString())
    {
        m_opened.reset(new Opened(in_path.isEmpty() ? m_folder->GetPath() : in_path));
        GetVersions().Finish();
    }

    Versions& GetVersions() { return m_opened->GetWorkspace().GetVersions(); }
    QByteArray PathOf(const char* in_path) { return m_folder->GetPath(QLatin1String(in_path)).toLocal8Bit(); }

    mode_t PermissionsOf(const char* in_path)
    {
        struct stat status = {};
        stat(PathOf(in_path).constData(), &status);
        return status.st_mode & 0777;
    }

    /// Asks for the state of an item, and waits for the answer.
    unsigned StateOf(const char* in_name)
    {
        GetVersions().Finish(); // what was asked before may have been answered already
        ScsTask* const task = new ScsTask("Test");
        task->RequestObjectStates({ObjectOf(m_opened->Find(in_name))});
        GetVersions().Finish();
        task->DeleteMe();
        return m_opened->GetLayer().GetSourceControl().GetState(m_opened->Find(in_name));
    }

    /// Waits until an item is told to have a state, without asking.
    bool Becomes(const char* in_name, unsigned in_state)
    {
        return WaitFor(
            [&] { return m_opened->GetLayer().GetSourceControl().GetState(m_opened->Find(in_name)) == in_state; },
            gPatience);
    }

    QString ToolTipOf(const char* in_name)
    {
        return ScsUtils::GetToolTip(ObjectOf(m_opened->Find(in_name)), QString());
    }

    std::unique_ptr<GitFolder> m_folder;
    std::unique_ptr<Opened> m_opened;
};

NODEBROWSER_TEST_MAIN(TestGit)
#include "test_git.moc"
