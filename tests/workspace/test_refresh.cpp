// SPDX-License-Identifier: MIT
// Files that others change while the library is open.

#include "contract/notificationspy.h"
#include "contract/support.h"
#include "tests/support/testmain.h"
#include "tests/workspace/openedfolder.h"

#include <cstdio>

using contract::NotificationSpy;
using contract::Rename;
using contract::SetTags;
using workspace::eDocumentState;

namespace
{

const char* const gFile = "sky/sky.mtlx";

QByteArray Document(const QByteArray& in_lines)
{
    return "<materialx version=\"1.39\">\n" + in_lines + "</materialx>\n";
}

const QByteArray gNodes = "  <nodedef name=\"ND_sun\" node=\"sun\"/>\n  <nodedef name=\"ND_moon\" node=\"moon\"/>\n";

} // namespace

class TestRefresh : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.reset(new DocumentFolder);
        Write(gNodes);
        m_folder->Write(QStringLiteral("earth/earth.mtlx"), Document("  <nodedef name=\"ND_tree\" node=\"tree\"/>\n"));
        m_opened.reset(new Opened(m_folder->GetPath()));
    }

    void cleanup() { m_opened.reset(); }

    void whatBecameDifferentIsToldItemByItem()
    {
        const auto sun = m_opened->Find("sun");
        NotificationSpy spy(m_opened->Get());
        Refresh();
        QCOMPARE(Taken(spy), QByteArray());
        Write("  <nodedef name=\"ND_star\" node=\"star\"/>\n  <nodedef name=\"ND_sun\" node=\"sun\" uiname=\"Sun\" "
              "tags=\"hot\"/>\n");
        Refresh();
        QCOMPARE(Taken(spy), QByteArray("begin, removed moon, end, begin, added star, end, "
                                        "begin, name Sun, tags Sun ApplicationTags, end"));
        QCOMPARE(m_opened->Find("Sun"), sun);
        QCOMPARE(m_opened->GetStack().count(), 0);
        for (const auto& item : m_opened->GetLibrary().GetItems())
            QVERIFY(!m_opened->Get().ItemIsDirty(item));
        CheckLikeFresh();
    }

    void filesAndFoldersComeAndGo()
    {
        NotificationSpy spy(m_opened->Get());
        m_folder->Write(QStringLiteral("sea/sea.mtlx"), Document("  <nodedef name=\"ND_fish\" node=\"fish\"/>\n"));
        QVERIFY(QFile::remove(m_folder->GetPath(QStringLiteral("earth/earth.mtlx"))));
        m_opened->GetWorkspace().Refresh();
        QCOMPARE(Taken(spy), QByteArray("begin, removed tree, end, begin, added fish, end"));
        QCOMPARE(m_opened->SourceOf("fish"), QByteArray("sea"));
        CheckLikeFresh();
        QVERIFY(m_opened->Move(m_opened->Find("sun"), "sea"));
    }

    void aKindThatChangesIsAnotherItem()
    {
        NotificationSpy spy(m_opened->Get());
        Write(gNodes + "  <nodegraph name=\"NG\" nodedef=\"ND_sun\"/>\n");
        Refresh();
        QCOMPARE(Taken(spy), QByteArray("begin, removed sun, end, begin, added sun, end"));
        CheckLikeFresh();
    }

    void editsOfOtherDocumentsStay()
    {
        SetTags(m_opened->Get(), m_opened->Find("tree"), "green", m_opened->GetCommands());
        Write(gNodes + "  <nodedef name=\"ND_star\" node=\"star\"/>\n");
        Refresh();
        QVERIFY(m_opened->Get().ItemIsDirty(m_opened->Find("tree")));
        m_opened->GetStack().undo();
        QCOMPARE(m_opened->TagsOf("tree"), QByteArray("earth"));
        QVERIFY(!m_opened->Get().ItemIsDirty(m_opened->Find("tree")));
    }

    void whatWasSavedIsUndoneInADocumentThatWasReadAnew()
    {
        Rename(m_opened->Get(), m_opened->Find("moon"), "m", m_opened->GetCommands());
        m_opened->GetLibrary().Rename(m_opened->Find("sun"), "Sun", m_opened->GetCommands());
        SetTags(m_opened->Get(), m_opened->Find("Sun"), "hot", m_opened->GetCommands());
        QVERIFY(m_opened->Commit());
        // All places are others now.
        QByteArray now = BytesOfFile(Path());
        now.replace("  <nodedef name=\"ND_sun\"", "  <!-- It shines. -->\n  <nodedef name=\"ND_sun\"");
        m_folder->Write(QString::fromLatin1(gFile), now);
        Refresh();
        m_opened->GetStack().undo();
        QCOMPARE(m_opened->TagsOf("Sun"), QByteArray("sky"));
        m_opened->GetStack().undo();
        QVERIFY(m_opened->Find("sun").IsValid());
        QVERIFY(m_opened->Get().ItemIsDirty(m_opened->Find("sun")));
        m_opened->GetStack().redo();
        m_opened->GetStack().undo();
        QVERIFY(m_opened->Commit());
        const QByteArray saved = BytesOfFile(Path());
        QVERIFY2(saved.contains("  <!-- It shines. -->\n  <nodedef name=\"ND_sun\" node=\"sun\"/>\n"),
                 saved.constData());
        CheckLikeFresh();
    }

    void aCommandOnAnItemThatIsGoneDoesNothing()
    {
        SetTags(m_opened->Get(), m_opened->Find("sun"), "hot", m_opened->GetCommands());
        QVERIFY(m_opened->Commit());
        Write("");
        Refresh();
        NotificationSpy spy(m_opened->Get());
        m_opened->GetStack().undo();
        QCOMPARE(Taken(spy), QByteArray());
        QCOMPARE(m_opened->GetWorkspace().GetChangedDocuments(), QStringList());
    }

    void bothSidesMakeAConflict()
    {
        MakeConflict();
        QCOMPARE(State(), int(eDocumentState::eConflict));
        QVERIFY(m_opened->Find("Sun").IsValid());
    }

    void aConflictIsNotSaved()
    {
        MakeConflict();
        QVERIFY(!m_opened->Commit());
        QCOMPARE(m_opened->GetMessages(), QByteArray("sky/sky.mtlx: Another program has changed it\n"));
        QCOMPARE(BytesOfFile(Path()), Document(m_theirs));
        QVERIFY(m_opened->Get().ItemIsDirty(m_opened->Find("Sun")));
    }

    void takingTheirsDropsOurs()
    {
        MakeConflict();
        QCOMPARE(m_opened->GetWorkspace().TakeTheirs(QString::fromLatin1(gFile)), QString());
        QCOMPARE(State(), int(eDocumentState::eInStep));
        QCOMPARE(m_opened->TagsOf("sun"), QByteArray("theirs"));
        QCOMPARE(m_opened->GetWorkspace().GetChangedDocuments(), QStringList());
        CheckLikeFresh();
        QVERIFY(m_opened->Commit());
        for (const auto& item : m_opened->GetLibrary().GetItems())
            QVERIFY(!m_opened->Get().ItemIsDirty(item));
    }

    void keepingOursReplacesTheirs()
    {
        MakeConflict();
        QCOMPARE(m_opened->GetWorkspace().KeepOurs(QString::fromLatin1(gFile)), QString());
        QCOMPARE(State(), int(eDocumentState::eInStep));
        QVERIFY2(m_opened->Commit(), m_opened->GetMessages().constData());
        QVERIFY(m_opened->m_isWritten);
        QVERIFY(BytesOfFile(Path()).contains("uiname=\"Sun\""));
        CheckLikeFresh();
    }

    void oursAreKeptAlsoWhenAllOfThemWasUndone()
    {
        MakeConflict();
        QCOMPARE(m_opened->GetWorkspace().KeepOurs(QString::fromLatin1(gFile)), QString());
        m_opened->GetStack().undo();
        QVERIFY2(m_opened->Commit(), m_opened->GetMessages().constData());
        QCOMPARE(BytesOfFile(Path()), Document(gNodes));
    }

    void savingOursBesideKeepsBoth()
    {
        MakeConflict();
        QStringList beside;
        QCOMPARE(m_opened->GetWorkspace().SaveOursBeside(QString::fromLatin1(gFile), &beside), QString());
        QCOMPARE(beside, QStringList(Path() + QStringLiteral(".ours")));
        QVERIFY(BytesOfFile(beside[0]).contains("uiname=\"Sun\""));
        QCOMPARE(BytesOfFile(Path()), Document(m_theirs));
        QCOMPARE(m_opened->TagsOf("sun"), QByteArray("theirs"));
        CheckLikeFresh();
    }

    void aConflictEndsWhenBothSidesAreTheSame()
    {
        MakeConflict();
        m_folder->Write(QString::fromLatin1(gFile), Document(gNodes));
        Refresh();
        QCOMPARE(State(), int(eDocumentState::eInStep));
        QVERIFY(m_opened->Commit());
        QVERIFY(BytesOfFile(Path()).contains("uiname=\"Sun\""));
    }

    void anUnreadableDocumentKeepsItsItems()
    {
        NotificationSpy spy(m_opened->Get());
        m_folder->Write(QString::fromLatin1(gFile), "<materialx>\n<<<<<<< ours");
        Refresh();
        QCOMPARE(Taken(spy), QByteArray());
        QCOMPARE(State(), int(eDocumentState::eUnreadable));
        const QString problem = m_opened->GetWorkspace().GetProblem(QString::fromLatin1(gFile));
        QVERIFY2(problem.startsWith(Path() + QStringLiteral(":2: ")), qPrintable(problem));
        QVERIFY(m_opened->Find("sun").IsValid());
        // It can be edited, but not saved over what it has become.
        m_opened->GetLibrary().SetTags(m_opened->Find("sun"), "a");
        QVERIFY(!m_opened->Commit());
        QCOMPARE(BytesOfFile(Path()), QByteArray("<materialx>\n<<<<<<< ours"));
        QVERIFY(!m_opened->GetWorkspace().TakeTheirs(QString::fromLatin1(gFile)).isEmpty());

        Write(m_theirs = "  <nodedef name=\"ND_sun\" node=\"sun\" tags=\"theirs\"/>\n");
        QCOMPARE(m_opened->GetWorkspace().TakeTheirs(QString::fromLatin1(gFile)), QString());
        QCOMPARE(m_opened->GetWorkspace().GetProblem(QString::fromLatin1(gFile)), QString());
        CheckLikeFresh();
    }

    void aDocumentThatCanBeReadAgainIsTaken()
    {
        m_folder->Write(QString::fromLatin1(gFile), "");
        Refresh();
        QCOMPARE(State(), int(eDocumentState::eUnreadable));
        Write(gNodes);
        Refresh();
        QCOMPARE(State(), int(eDocumentState::eInStep));
        QVERIFY(m_opened->Find("sun").IsValid());
    }

    void aRemovedFileWithEditsIsAConflict()
    {
        m_opened->GetLibrary().Rename(m_opened->Find("sun"), "Sun");
        QVERIFY(QFile::remove(Path()));
        m_opened->GetWorkspace().Refresh();
        QCOMPARE(State(), int(eDocumentState::eConflict));
        QCOMPARE(m_opened->GetWorkspace().KeepOurs(QString::fromLatin1(gFile)), QString());
        QVERIFY2(m_opened->Commit(), m_opened->GetMessages().constData());
        QVERIFY(BytesOfFile(Path()).contains("uiname=\"Sun\""));
    }

    void aDocumentThatBecomesALinkToTheOutsideIsGone_data()
    {
        QTest::addColumn<bool>("isFolder");
        QTest::newRow("the file") << false;
        QTest::newRow("its folder") << true;
    }

    void aDocumentThatBecomesALinkToTheOutsideIsGone()
    {
        QFETCH(bool, isFolder);
        const DocumentFolder elsewhere;
        const QString secret =
            elsewhere.Write(QStringLiteral("sky.mtlx"), Document("  <nodedef name=\"ND_secret\" node=\"secret\"/>\n"));
        QVERIFY(QFile::remove(Path()));
        if (isFolder)
        {
            QVERIFY(QDir().rmdir(QFileInfo(Path()).path()));
            QVERIFY(QFile::link(elsewhere.GetPath(), QFileInfo(Path()).path()));
        }
        else
            QVERIFY(QFile::link(secret, Path()));
        m_opened->GetWorkspace().Refresh();
        QVERIFY(!m_opened->GetLibrary().FindByName("secret").IsValid());
        QVERIFY(!m_opened->GetLibrary().FindByName("sun").IsValid());
        Refresh();
        QVERIFY(!m_opened->GetLibrary().FindByName("secret").IsValid());
    }

    void aLinkInsideOfTheFolderIsFollowed()
    {
        m_folder->Write(QStringLiteral("sky/other"), Document("  <nodedef name=\"ND_star\" node=\"star\"/>\n"));
        QVERIFY(QFile::remove(Path()));
        QVERIFY(QFile::link(m_folder->GetPath(QStringLiteral("sky/other")), Path()));
        m_opened->GetWorkspace().Refresh();
        QVERIFY(m_opened->Find("star").IsValid());
    }

    void aDocumentLargerThanTheMemoryKeepsItsItems()
    {
#ifdef __SANITIZE_ADDRESS__
        QSKIP("The sanitizer ends a program that asks for so much");
#endif
        if (!MakeLargerThanTheMemory(Path()))
            QSKIP("The file system takes no such file");
        Refresh();
        QCOMPARE(State(), int(eDocumentState::eUnreadable));
        QCOMPARE(m_opened->GetWorkspace().GetProblem(QString::fromLatin1(gFile)),
                 Path() + QStringLiteral(":1: There is not enough memory for it"));
        QVERIFY(m_opened->Find("sun").IsValid());
        Write(gNodes);
        Refresh();
        QCOMPARE(State(), int(eDocumentState::eInStep));
    }

    void aFileWhoseNameIsNoTextHidesNoOther()
    {
        const QByteArray name = QFile::encodeName(m_folder->GetPath()) + "/sky/\xE4.mtlx";
        std::FILE* const file = std::fopen(name.constData(), "w");
        if (!file)
            QSKIP("Here each name is a text");
        std::fclose(file);
        m_folder->Write(QStringLiteral("sea/sea.mtlx"), Document("  <nodedef name=\"ND_fish\" node=\"fish\"/>\n"));
        m_opened->GetWorkspace().Refresh();
        std::remove(name.constData());
        QVERIFY(m_opened->Find("fish").IsValid());
    }

    void observersMayWriteMeanwhile()
    {
        NotificationSpy spy(m_opened->Get());
        spy.m_reaction = [this](const std::string& in_call) {
            if (in_call == "added star")
                m_opened->GetLibrary().SetTags(m_opened->Find("star"), "seen");
            if (in_call == "added comet")
                m_opened->GetLibrary().Remove(m_opened->Find("star"));
        };
        Write(gNodes + "  <nodedef name=\"ND_star\" node=\"star\"/>\n  <nodedef name=\"ND_comet\" node=\"comet\"/>\n");
        Refresh();
        spy.m_reaction = nullptr;
        QVERIFY(m_opened->Commit());
        CheckLikeFresh();
    }

private:
    QString Path() const { return m_folder->GetPath(QString::fromLatin1(gFile)); }
    void Write(const QByteArray& in_lines) { m_folder->Write(QString::fromLatin1(gFile), Document(in_lines)); }
    void Refresh() { m_opened->GetWorkspace().Refresh(QString::fromLatin1(gFile)); }
    int State() const { return int(m_opened->GetWorkspace().GetDocumentState(QString::fromLatin1(gFile))); }
    static QByteArray Taken(NotificationSpy& io_spy) { return QByteArray::fromStdString(io_spy.Take()); }

    void MakeConflict()
    {
        m_opened->GetLibrary().Rename(m_opened->Find("sun"), "Sun", m_opened->GetCommands());
        m_theirs = "  <nodedef name=\"ND_sun\" node=\"sun\" tags=\"theirs\"/>\n";
        Write(m_theirs);
        Refresh();
    }

    /// Compares the library with one that is opened now.
    void CheckLikeFresh()
    {
        const QStringList lines = Describe(m_opened->GetLibrary());
        QCOMPARE(lines, Describe(Opened(m_folder->GetPath()).GetLibrary()));
        m_opened->GetLayer().Install();
    }

    std::unique_ptr<DocumentFolder> m_folder;
    std::unique_ptr<Opened> m_opened;
    QByteArray m_theirs;
};

NODEBROWSER_TEST_MAIN(TestRefresh)
#include "test_refresh.moc"
