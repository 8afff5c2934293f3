// SPDX-License-Identifier: MIT
// Documents as a library: what is opened, changed, undone and saved.

#include "contract/databaseobject.h"
#include "contract/notificationspy.h"
#include "contract/support.h"
#include "datamodel/helpers.h"
#include "tests/support/testmain.h"
#include "tests/workspace/openedfolder.h"

#include <QFileInfo>

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
