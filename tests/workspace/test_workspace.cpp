// SPDX-License-Identifier: MIT
// Documents as a library: what is opened, changed, undone and saved.

#include "contract/databaseobject.h"
#include "contract/notificationspy.h"
#include "contract/support.h"
#include "datamodel/helpers.h"
#include "tests/support/testmain.h"
#include "tests/workspace/openedfolder.h"

#include <QFileInfo>

#include <sys/stat.h>

using namespace vireo::datamodel;
using contract::NotificationSpy;
using contract::Rename;
using contract::SetTags;

namespace
{

const char* const gHead = "<?xml version=\"1.0\"?>\n<materialx version=\"1.39\">\n";
const char* const gEnd = "</materialx>\n";

/// A document with these lines.
QByteArray Document(const QByteArray& in_lines)
{
    return gHead + in_lines + gEnd;
}

QByteArray Replaced(QByteArray in_text, const char* in_before, const char* in_after)
{
    if (in_text.count(in_before) != 1)
        throw std::runtime_error("The test does not know its document");
    return in_text.replace(in_before, in_after);
}

} // namespace

class TestWorkspace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.reset(new DocumentFolder);
        CopyDocuments(QStringLiteral(TEST_DATA_FOLDER "/observatory"), *m_folder);
        m_before = FilesBelow(m_folder->GetPath());
    }

    void sourcesAreTheTopFolders()
    {
        Opened opened(m_folder->GetPath());
        QByteArray sources;
        for (const auto& source : opened.GetLibrary().GetDataSources())
            sources +=
                QByteArray::fromStdString(source->GetName()) + ' ' + QByteArray::number(source->GetFlags()) + ' ';
        const QByteArray own = QFileInfo(m_folder->GetPath()).fileName().toLatin1();
        QCOMPARE(sources, "Local 0 glass 0 " + own + " 0 sky 0 stdlib 3 ");
        QCOMPARE(opened.SourceOf("lens"), QByteArray("glass"));
    }

    void itemsHaveTheSameIdentityNextTime()
    {
        QStringList first;
        {
            Opened opened(m_folder->GetPath());
            first = Describe(opened.GetLibrary());
        }
        QCOMPARE(Describe(Opened(m_folder->GetPath()).GetLibrary()), first);
    }

    void openingWritesNothing()
    {
        Opened opened(m_folder->GetPath());
        QVERIFY(opened.Commit());
        QVERIFY(!opened.m_isWritten);
        QCOMPARE(Difference(m_before, FilesBelow(m_folder->GetPath())), QString());
    }

    void whatCannotBeOpenedSaysWhereAndWhy()
    {
        m_folder->Write(QStringLiteral("sky/broken.mtlx"), "<materialx>\n<nodedef");
        memorymodel::DataLayer layer;
        QString error;
        QVERIFY(!workspace::Workspace::Open(layer, m_folder->GetPath(), &error));
        QVERIFY2(error.startsWith(m_folder->GetPath(QStringLiteral("sky/broken.mtlx:2: "))), qPrintable(error));
    }

    void aNewNameIsOneAttribute()
    {
        Opened opened(m_folder->GetPath());
        const ItemID lens = opened.Find("lens");
        Rename(opened.Get(), lens, "Objective \xE9", opened.GetCommands());
        QVERIFY(opened.Get().ItemIsDirty(lens));
        QCOMPARE(Difference(m_before, FilesBelow(m_folder->GetPath())), QString());
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QVERIFY(opened.m_isWritten);
        QVERIFY(!opened.Get().ItemIsDirty(lens));
        Files meant = m_before;
        meant[QStringLiteral("glass/glass.mtlx")] =
            Replaced(meant[QStringLiteral("glass/glass.mtlx")], "towards a point.\"",
                     "towards a point.\" uiname=\"Objective \xC3\xA9\"");
        QCOMPARE(Difference(meant, FilesBelow(m_folder->GetPath())), QString());
        QVERIFY(Opened(m_folder->GetPath()).Find("Objective \xE9").IsValid());
    }

    void eachChangeIsUndoneByteByByte_data()
    {
        QTest::addColumn<int>("change");
        for (int change = 0; change < 7; ++change)
            QTest::newRow(QByteArray::number(change).constData()) << change;
    }

    void eachChangeIsUndoneByteByByte()
    {
        QFETCH(int, change);
        Opened opened(m_folder->GetPath());
        const QStringList atStart = Describe(opened.GetLibrary());
        QVERIFY(Change(opened, change));
        const QStringList changed = Describe(opened.GetLibrary());
        QVERIFY(changed != atStart);
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        const Files after = FilesBelow(m_folder->GetPath());
        QVERIFY(Difference(m_before, after) != QString());
        QCOMPARE(Describe(Opened(m_folder->GetPath()).GetLibrary()), changed);

        opened.GetStack().undo();
        QCOMPARE(Describe(opened.GetLibrary()), atStart);
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        Files now = FilesBelow(m_folder->GetPath());
        now.remove(QStringLiteral("local/")); // an empty folder
        QCOMPARE(Difference(m_before, now), QString());

        opened.GetStack().redo();
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QCOMPARE(Difference(after, FilesBelow(m_folder->GetPath())), QString());
        QCOMPARE(Describe(opened.GetLibrary()), changed);
    }

    void aSecondChangeInBetweenIsNotUndone()
    {
        Opened opened(m_folder->GetPath());
        const ItemID lens = opened.Find("lens");
        SetTags(opened.Get(), lens, "far;near", opened.GetCommands());
        // In front of the tags, and for good: their bytes are somewhere else now.
        Rename(opened.Get(), opened.Find("kaleidoscope"), "A much longer name than before", nullptr);
        Rename(opened.Get(), lens, "Objective", nullptr);
        opened.GetStack().undo();
        QCOMPARE(opened.TagsOf("Objective"), QByteArray("optics;glass"));
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        const QStringList now = Describe(opened.GetLibrary());
        Opened again(m_folder->GetPath());
        QCOMPARE(Describe(again.GetLibrary()), now);
        QCOMPARE(again.TagsOf("Objective"), QByteArray("optics;glass"));
    }

    /// To undo a removal is to insert, which succeeds in a comment as well.
    void aRemovalIsUndoneAtTheItemAndNotAtTheOffset()
    {
        const QByteArray comment = "  <!--" + QByteArray(300, ' ') + "-->\n\n";
        m_folder->Write(QStringLiteral("sky/more.mtlx"),
                        Document("  <nodedef name=\"ND_one\" node=\"one\" tags=\"a\"/>\n" + comment +
                                 "  <nodedef name=\"ND_two\" node=\"two\" tags=\"far\"/>\n"));
        Opened opened(m_folder->GetPath());
        SetTags(opened.Get(), opened.Find("two"), "sky", opened.GetCommands()); // what it has without any
        SetTags(opened.Get(), opened.Find("one"), QByteArray(150, 'x').constData(), nullptr);
        opened.GetStack().undo();
        QCOMPARE(opened.TagsOf("two"), QByteArray("far"));
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        const QByteArray saved = BytesOfFile(m_folder->GetPath(QStringLiteral("sky/more.mtlx")));
        QVERIFY2(saved.contains("\n" + comment + "  <nodedef name=\"ND_two\" node=\"two\" tags=\"far\"/>\n"),
                 saved.constData());
        // The document is not taken for the one that it was, either.
        QVERIFY2(saved.contains(QByteArray(150, 'x')), saved.constData());
        CheckLikeFresh(opened);
    }

    void whatLatin1LacksStaysWhereItIsNotChanged()
    {
        // A tag of three characters that Latin-1 lacks, and one that it has.
        const QByteArray tags = "\xE9\x95\xB7\xE3\x81\x84\xE9\x95\xB7";
        m_folder->Write(QStringLiteral("sky/more.mtlx"),
                        Document("  <nodedef name=\"ND_far\" node=\"far\" uiname=\"\xE9\x95\xB7 far\" tags=\"" + tags +
                                 ";b\"/>\n"));
        Opened opened(m_folder->GetPath());
        const ItemID item = opened.Find("? far");
        QCOMPARE(opened.TagsOf("? far"), QByteArray("???;b"));
        QVERIFY(SetTags(opened.Get(), item, "a;???;\xE4", opened.GetCommands()));
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        const QByteArray saved = BytesOfFile(m_folder->GetPath(QStringLiteral("sky/more.mtlx")));
        QVERIFY2(saved.contains("tags=\"a;" + tags + ";\xC3\xA4\""), saved.constData());
        QVERIFY2(saved.contains("uiname=\"\xE9\x95\xB7 far\""), saved.constData());
        // Writing "?" makes it one.
        Rename(opened.Get(), item, "? near", opened.GetCommands());
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QVERIFY(BytesOfFile(m_folder->GetPath(QStringLiteral("sky/more.mtlx"))).contains("uiname=\"? near\""));
    }

    void aNewCompoundGoesToLocal()
    {
        Opened opened(m_folder->GetPath());
        CompoundModifierAccessor compound;
        const ItemID item = compound.CreateAndSetFromNewCompound(opened.Get(), "My node", false,
                                                                 ItemIDUnlock::GetItemIDUID(opened.Find("aurora")),
                                                                 "mine", opened.GetCommands());
        QVERIFY(item.IsValid());
        QCOMPARE(opened.TagsOf("My node"), QByteArray("mine;local"));
        QCOMPARE(opened.SourceOf("My node"), QByteArray("Local"));
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        const QByteArray saved = BytesOfFile(m_folder->GetPath(QStringLiteral("local/local.mtlx")));
        QVERIFY2(saved.contains("<nodedef name=\"ND_My_node\" node=\"My_node\" uiname=\"My node\" nodegroup=\"mine\" "
                                "inherit=\"ND_aurora\"/>"),
                 saved.constData());
        QVERIFY2(saved.contains("<output name=\"out\" type=\"color3\"/>"), saved.constData());
        const QStringList now = Describe(opened.GetLibrary());
        QCOMPARE(Describe(Opened(m_folder->GetPath()).GetLibrary()), now);
    }

    void aNewNodeOfAnOpenedFileGoesThere()
    {
        const QString path = m_folder->GetPath(QStringLiteral("glass/glass.mtlx"));
        Opened opened(path);
        QCOMPARE(opened.GetLibrary().GetDataSources().size(), std::size_t(1));
        CompoundModifierAccessor compound;
        QVERIFY(compound.CreateAndSetFromNewCompound(opened.Get(), "New", true, "", "", nullptr).IsValid());
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        QVERIFY(BytesOfFile(path).contains("<nodedef name=\"ND_New\""));
        QCOMPARE(FilesBelow(m_folder->GetPath()).keys(), m_before.keys());
    }

    void factoryItemsAndTypesTakeNoChanges()
    {
        Opened opened(m_folder->GetPath());
        QVERIFY(opened.Get().ItemIsReadOnly(opened.Find("noise2d")));
        QVERIFY(opened.Get().ItemIsReadOnly(opened.Find("photon")));
        QVERIFY(opened.Get().ItemIsReadOnly(opened.Find("parsec")));
        // It has definitions in "stdlib", too.
        QVERIFY(opened.Get().ItemIsReadOnly(opened.Find("mix")));
        QVERIFY(!opened.Get().ItemIsReadOnly(opened.Find("lens")));
        QVERIFY(!SetTags(opened.Get(), opened.Find("photon"), "a", nullptr));
        QVERIFY(!opened.Move(opened.Find("lens"), "stdlib"));
        QVERIFY(!opened.Move(opened.Find("noise2d"), "Local"));
    }

    void aDocumentWithoutPermissionMakesItsItemsReadOnly()
    {
        QVERIFY(QFile::setPermissions(m_folder->GetPath(QStringLiteral("sky/graphs.mtlx")), QFile::ReadOwner));
        Opened opened(m_folder->GetPath());
        QVERIFY(opened.Get().ItemIsReadOnly(opened.Find("night_sky"))); // its graph
        QVERIFY(!opened.Get().ItemIsReadOnly(opened.Find("aurora")));
        QVERIFY(!opened.Move(opened.Find("night_sky"), "Local"));
    }

    void aFolderWithoutPermissionIsAReadOnlySource()
    {
        const QString folder = m_folder->GetPath(QStringLiteral("glass"));
        const QFile::Permissions all = QFile::permissions(folder);
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        {
            Opened opened(m_folder->GetPath());
            QVERIFY(opened.GetLibrary().GetSourceOf(opened.Find("lens"))->IsReadOnly());
            QVERIFY(!opened.Move(opened.Find("aurora"), "glass"));
        }
        QVERIFY(QFile::setPermissions(folder, all));
    }

    void aNameThatNoDocumentCanHoldIsRefused()
    {
        Opened opened(m_folder->GetPath());
        NotificationSpy spy(opened.Get());
        Rename(opened.Get(), opened.Find("lens"), "a\x01", opened.GetCommands());
        QVERIFY(!SetTags(opened.Get(), opened.Find("lens"), "a\x01", opened.GetCommands()));
        QCOMPARE(QByteArray::fromStdString(spy.Take()), QByteArray());
        QCOMPARE(opened.GetStack().count(), 0);
    }

    void whatSharesTheElementFollows()
    {
        m_folder->Write(QStringLiteral("sky/more.mtlx"), Document("  <nodedef name=\"ND_one\" node=\"several\"/>\n"
                                                                  "  <nodedef name=\"ND_two\" node=\"several\"/>\n"));
        Opened opened(m_folder->GetPath());
        NotificationSpy spy(opened.Get());
        const ItemID several = opened.Find("several");
        opened.GetLibrary().Rename(several, "Many", opened.GetCommands());
        QCOMPARE(QByteArray::fromStdString(spy.Take()), QByteArray("begin, name Many, begin, name Many, end, end"));
        QVERIFY(!opened.GetLibrary().FindByName("ND_one").IsValid());
        opened.GetStack().undo();
        QVERIFY(opened.GetLibrary().FindByName("ND_one").IsValid());
        opened.GetStack().redo();
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        const QStringList now = Describe(opened.GetLibrary());
        QCOMPARE(Describe(Opened(m_folder->GetPath()).GetLibrary()), now);
    }

    void savingOneSourceSavesWhatMovedOutOfIt()
    {
        Opened opened(m_folder->GetPath());
        QVERIFY(opened.Move(opened.Find("lens"), "sky"));
        SetTags(opened.Get(), opened.Find("kaleidoscope"), "x", nullptr);
        CompoundModifierAccessor compound;
        compound.CreateAndSetFromNewCompound(opened.Get(), "New", false, "", "", nullptr);
        const auto resourceOf = [&](const char* in_source) {
            const auto object = contract::ObjectOf(opened.Find("lens"));
            const auto database = object.GetManager()->GetDatabase();
            for (const nexa4::DbObjectId& id : database->Query(
                     "select object where IS_OF_TYPE_VERSION( {" + nexa4::UID_Resource().GetStr() + " } )", true))
                if (nexa4::NEXAHandle<nexa4::IValueAsset>::AssignCast(database->FindObject(id).GetInstance(),
                                                                      database->FindObject(id).GetCacheIndex())
                        ->GetName() == in_source)
                    return id;
            throw std::runtime_error("There is no such source");
        };
        QVERIFY2(opened.Commit(false, resourceOf("sky")), opened.GetMessages().constData());
        QCOMPARE(opened.GetWorkspace().GetChangedDocuments(), QStringList(QStringLiteral("local/local.mtlx")));
        QVERIFY(opened.Get().ItemIsDirty(opened.Find("New")));
        QVERIFY(!opened.Get().ItemIsDirty(opened.Find("lens")));
        QCOMPARE(Opened(m_folder->GetPath()).SourceOf("lens"), QByteArray("sky"));
    }

    void aVetoLeavesTheFilesAlone()
    {
        Opened opened(m_folder->GetPath());
        Rename(opened.Get(), opened.Find("lens"), "Objective", nullptr);
        NotificationSpy spy(opened.Get());
        spy.m_veto = true;
        QVERIFY(!opened.Commit());
        spy.m_veto = false;
        QVERIFY(opened.Get().ItemIsDirty(opened.Find("Objective")));
        QCOMPARE(Difference(m_before, FilesBelow(m_folder->GetPath())), QString());
        QVERIFY(opened.Commit());
    }

    void whatSomebodyElseChangedIsNotOverwritten()
    {
        Opened opened(m_folder->GetPath());
        Rename(opened.Get(), opened.Find("lens"), "Objective", nullptr);
        Rename(opened.Get(), opened.Find("aurora"), "Polar light", nullptr);
        const QByteArray theirs = Document("");
        m_folder->Write(QStringLiteral("glass/glass.mtlx"), theirs);
        QVERIFY(!opened.Commit());
        QVERIFY(opened.m_isWritten);
        QCOMPARE(opened.GetMessages(), QByteArray("glass/glass.mtlx: Another program has changed it\n"));
        QVERIFY(opened.Get().ItemIsDirty(opened.Find("Objective")));
        QVERIFY(!opened.Get().ItemIsDirty(opened.Find("Polar light")));
        QCOMPARE(BytesOfFile(m_folder->GetPath(QStringLiteral("glass/glass.mtlx"))), theirs);
        QVERIFY(QFile::remove(m_folder->GetPath(QStringLiteral("glass/glass.mtlx"))));
        QVERIFY(!opened.Commit());
        QCOMPARE(opened.GetMessages(), QByteArray("glass/glass.mtlx: It is not there any more\n"));
    }

    void aMoveIsSavedAsAWholeOrNotAtAll()
    {
        Opened opened(m_folder->GetPath());
        QVERIFY(opened.Move(opened.Find("lens"), "sky"));
        m_folder->Write(QStringLiteral("glass/glass.mtlx"), m_before[QStringLiteral("glass/glass.mtlx")] + "\n");
        const Files before = FilesBelow(m_folder->GetPath());
        QVERIFY(!opened.Commit());
        QCOMPARE(opened.m_messages.size(), std::size_t(2));
        QCOMPARE(Difference(before, FilesBelow(m_folder->GetPath())), QString());
        QVERIFY(opened.Get().ItemIsDirty(opened.Find("lens")));
    }

    void oneSideOfAMoveIsTakenWithTheOther_data()
    {
        QTest::addColumn<QString>("touched");
        QTest::newRow("where it came from") << QStringLiteral("glass/glass.mtlx");
        QTest::newRow("where it went to") << QStringLiteral("sky/sky.mtlx");
    }

    /// Otherwise the item would be in both documents, or in none.
    void oneSideOfAMoveIsTakenWithTheOther()
    {
        QFETCH(QString, touched);
        Opened opened(m_folder->GetPath());
        const QStringList both = MoveAndTouch(opened, touched);
        QCOMPARE(opened.GetWorkspace().GetTiedDocuments(touched), QStringList(both[0] == touched ? both[1] : both[0]));
        QCOMPARE(opened.GetWorkspace().TakeTheirs(touched), QString());
        QCOMPARE(opened.GetWorkspace().GetChangedDocuments(), QStringList());
        QCOMPARE(opened.GetWorkspace().GetTiedDocuments(touched), QStringList());
        QCOMPARE(CountOf(opened, "lens"), 1);
        QCOMPARE(opened.SourceOf("lens"), QByteArray("glass"));
        // Nothing is left to be undone, and nothing is lost by trying.
        opened.GetStack().undo();
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        CheckLikeFresh(opened);
        QCOMPARE(CountOf(opened, "lens"), 1);
    }

    void bothSidesOfAMoveComeBeside()
    {
        Opened opened(m_folder->GetPath());
        const QStringList both = MoveAndTouch(opened, QStringLiteral("sky/sky.mtlx"));
        QStringList files;
        QCOMPARE(opened.GetWorkspace().SaveOursBeside(QStringLiteral("sky/sky.mtlx"), &files), QString());
        QCOMPARE(files, QStringList({m_folder->GetPath(both[0]) + QStringLiteral(".ours"),
                                     m_folder->GetPath(both[1]) + QStringLiteral(".ours")}));
        int lenses = 0;
        for (const QString& file : files)
            lenses += BytesOfFile(file).contains("\"ND_lens\"") ? 1 : 0;
        QCOMPARE(lenses, 1);
        QCOMPARE(opened.SourceOf("lens"), QByteArray("glass"));
        QCOMPARE(opened.GetWorkspace().GetChangedDocuments(), QStringList());
        CheckLikeFresh(opened);
    }

    /// All or none: what cannot be read takes nothing along.
    void aSideThatCannotBeReadIsNotTaken()
    {
        Opened opened(m_folder->GetPath());
        const QStringList both = MoveAndTouch(opened, QStringLiteral("sky/sky.mtlx"));
        m_folder->Write(QStringLiteral("glass/glass.mtlx"), "<<<<<<< ours");
        const Files before = FilesBelow(m_folder->GetPath());
        const QString error = opened.GetWorkspace().TakeTheirs(QStringLiteral("sky/sky.mtlx"));
        QVERIFY2(error.startsWith(m_folder->GetPath(QStringLiteral("glass/glass.mtlx:1: "))), qPrintable(error));
        QStringList files;
        QCOMPARE(opened.GetWorkspace().SaveOursBeside(QStringLiteral("sky/sky.mtlx"), &files), error);
        QCOMPARE(files, QStringList());
        QCOMPARE(Difference(before, FilesBelow(m_folder->GetPath())), QString());
        QCOMPARE(opened.GetWorkspace().GetChangedDocuments(), both);
        QCOMPARE(opened.SourceOf("lens"), QByteArray("sky"));
        QCOMPARE(CountOf(opened, "lens"), 1);
    }

    void oursAreKeptOnBothSidesOfAMove()
    {
        Opened opened(m_folder->GetPath());
        MoveAndTouch(opened, QStringLiteral("sky/sky.mtlx"));
        m_folder->Write(QStringLiteral("glass/glass.mtlx"), m_before[QStringLiteral("glass/glass.mtlx")] + "\n");
        opened.GetWorkspace().Refresh();
        QCOMPARE(opened.GetWorkspace().GetTroubledDocuments().size(), 2);
        QCOMPARE(opened.GetWorkspace().KeepOurs(QStringLiteral("sky/sky.mtlx")), QString());
        QCOMPARE(opened.GetWorkspace().GetTroubledDocuments(), QStringList());
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        CheckLikeFresh(opened);
        QCOMPARE(opened.SourceOf("lens"), QByteArray("sky"));
    }

    void whatIsBesideAlreadyStays()
    {
        Opened opened(m_folder->GetPath());
        Rename(opened.Get(), opened.Find("lens"), "Objective", nullptr);
        const QString path = m_folder->GetPath(QStringLiteral("glass/glass.mtlx"));
        QVERIFY(QFile::link(QStringLiteral("nowhere"), path + QStringLiteral(".ours")));
        QStringList files;
        QCOMPARE(opened.GetWorkspace().SaveOursBeside(QStringLiteral("glass/glass.mtlx"), &files), QString());
        QCOMPARE(files, QStringList(path + QStringLiteral(".ours2")));
        QVERIFY(QFileInfo(path + QStringLiteral(".ours")).isSymLink());
        QVERIFY(BytesOfFile(files[0]).contains("Objective"));
    }

    void filesWithoutChangesAreNotTouched()
    {
        Opened opened(m_folder->GetPath());
        Rename(opened.Get(), opened.Find("lens"), "Objective", nullptr);
        const QMap<QString, QString> before = Stamps();
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
        const QMap<QString, QString> after = Stamps();
        QCOMPARE(after.keys(), before.keys());
        QVERIFY(before.size() > 4);
        for (const QString& path : before.keys())
            QCOMPARE(after[path] == before[path], path != QLatin1String("glass/glass.mtlx"));
    }

    void whoeverThrowsLeavesTheLibraryUsable()
    {
        Opened opened(m_folder->GetPath());
        Rename(opened.Get(), opened.Find("lens"), "Objective", nullptr);
        opened.GetWorkspace().SetRunner([](const std::function<void()>&) { throw std::runtime_error("no thread"); });
        QVERIFY_EXCEPTION_THROWN(opened.GetWorkspace().Refresh(), std::runtime_error);
        QVERIFY(!opened.GetWorkspace().IsBusy());
        opened.GetWorkspace().SetRunner([](const std::function<void()>& in_function) { in_function(); });
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
    }

    /// There the record of a save goes.
    void aFolderThatTakesNoRecordsTakesNoChanges()
    {
        const QByteArray folder = QFile::encodeName(m_folder->GetPath());
        QCOMPARE(chmod(folder.constData(), 0555), 0);
        Opened opened(m_folder->GetPath());
        const ItemID lens = opened.Find("lens");
        const bool isReadOnly = opened.Get().ItemIsReadOnly(lens);
        const bool isMoved = opened.Move(opened.Find("aurora"), "glass");
        QCOMPARE(chmod(folder.constData(), 0755), 0);
        QVERIFY(isReadOnly);
        QVERIFY(!isMoved);
        opened.GetWorkspace().Refresh();
        QVERIFY(!opened.Get().ItemIsReadOnly(lens));
        Rename(opened.Get(), lens, "Objective", nullptr);
        QVERIFY2(opened.Commit(), opened.GetMessages().constData());
    }

    void everythingIsWrittenOnDemand()
    {
        Opened opened(m_folder->GetPath());
        QVERIFY2(opened.Commit(true), opened.GetMessages().constData());
        QVERIFY(opened.m_isWritten);
        QCOMPARE(Difference(m_before, FilesBelow(m_folder->GetPath())), QString());
    }

    void aWorkspaceWhoseLibraryIsClosedDoesNothing()
    {
        memorymodel::DataLayer layer;
        QString error;
        const auto workspace = workspace::Workspace::Open(layer, m_folder->GetPath(), &error);
        layer.RemoveLibrary(workspace->GetLibrary());
        m_folder->Write(QStringLiteral("glass/glass.mtlx"), Document(""));
        workspace->Refresh();
        QCOMPARE(workspace->GetChangedDocuments(), QStringList());
    }

private:
    /// Moves an item, and lets somebody else change one of the two documents.
    /// \return both
    QStringList MoveAndTouch(Opened& io_opened, const QString& in_touched)
    {
        if (!io_opened.Move(io_opened.Find("lens"), "sky"))
            throw std::runtime_error("No move");
        const QStringList both = io_opened.GetWorkspace().GetChangedDocuments();
        m_folder->Write(in_touched, m_before.value(in_touched, Document("")) + "<!-- theirs -->\n");
        io_opened.GetWorkspace().Refresh();
        if (both.size() != 2 || io_opened.GetWorkspace().GetTroubledDocuments() != QStringList(in_touched))
            throw std::runtime_error("No conflict");
        return both;
    }

    static int CountOf(Opened& io_opened, const char* in_name)
    {
        int count = 0;
        for (const ItemID& item : io_opened.GetLibrary().GetItems())
            count += io_opened.Get().GetItemName(item, true, nullptr) == in_name ? 1 : 0;
        return count;
    }

    void CheckLikeFresh(Opened& io_opened)
    {
        const QStringList now = Describe(io_opened.GetLibrary());
        QCOMPARE(Describe(Opened(m_folder->GetPath()).GetLibrary()), now);
        io_opened.GetLayer().Install();
    }

    /// What the system tells of each file, by its path.
    QMap<QString, QString> Stamps() const
    {
        QMap<QString, QString> stamps;
        for (const QString& path : FilesBelow(m_folder->GetPath()).keys())
        {
            struct stat status = {};
            if (stat(QFile::encodeName(m_folder->GetPath(path)).constData(), &status) == 0)
                stamps[path] = QStringLiteral("%1 %2.%3 %4.%5")
                                   .arg(status.st_ino)
                                   .arg(status.st_mtim.tv_sec)
                                   .arg(status.st_mtim.tv_nsec)
                                   .arg(status.st_ctim.tv_sec)
                                   .arg(status.st_ctim.tv_nsec);
        }
        return stamps;
    }

    static bool Change(Opened& io_opened, int in_change)
    {
        memorymodel::CommandManager* const commands = io_opened.GetCommands();
        CompoundModifierAccessor compound;
        LoopCompoundModifierAccessor loop;
        switch (in_change)
        {
        case 0:
            return io_opened.GetLibrary().Rename(io_opened.Find("twinkle"), "Glitter", commands);
        case 1:
            return SetTags(io_opened.Get(), io_opened.Find("kaleidoscope"), "a;b", commands);
        case 2:
            return compound.CreateAndSetFromNewCompound(io_opened.Get(), "New", false, "", "x", commands).IsValid();
        case 3:
            return compound.CreateAndSetFromNewCompound(io_opened.Get(), "New", true, "", "", commands).IsValid();
        case 4:
            return loop.CreateAndSetFromNewLoopCompound(io_opened.Get(), "New", "", "", commands).IsValid();
        case 5:
            return io_opened.Move(io_opened.Find("night_sky"), "glass");
        default:
            return io_opened.GetLibrary().Remove(io_opened.Find("night_sky"), commands);
        }
    }

    std::unique_ptr<DocumentFolder> m_folder;
    Files m_before;
};

NODEBROWSER_TEST_MAIN(TestWorkspace)
#include "test_workspace.moc"
