// SPDX-License-Identifier: MIT
#include "datamodel/helpers.h"
#include "memorymodel/datalayer.h"
#include "nodebrowser/datasourcelist.h"
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/support/testmain.h"

using memorymodel::DataLayer;
using memorymodel::DataSource;
using memorymodel::Library;
using memorymodel::NewItem;
using nexa4::DbObjectId;
using nexa4::ExBase;
using nexa4::IDbObject;
using nexa4::NEXAHandle;
using nodebrowser::DataSourceEntry;
using nodebrowser::ListDataSources;
using nodebrowser::MoveToDataSource;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIDUnlock;

namespace
{

/// The entries as the menu shows them: " (off)" behind what is disabled.
QStringList Labels(const std::vector<DataSourceEntry>& in_entries)
{
    QStringList labels;
    for (const DataSourceEntry& entry : in_entries)
        labels << (entry.m_enabled ? entry.m_label : entry.m_label + FromLatin1(" (off)"));
    return labels;
}

/// Whether something follows a null pointer of the database.
template <class Call> bool Throws(Call in_call)
{
    try
    {
        in_call();
    }
    catch (const ExBase::NullPtr&)
    {
        return true;
    }
    return false;
}

/// A compound with an object in a source of its own.
struct Compound
{
    explicit Compound(FakeLayer& out_layer, int in_state = 0)
        : m_item(out_layer.AddCompound("X")),
          m_object(out_layer.GiveObject(m_item)),
          m_handle(out_layer.m_database->FindObject(m_object->m_id))
    {
        m_object->m_source = out_layer.MakeSource("//here", in_state);
        out_layer.Forget();
    }

    FakeCompound& m_item;
    const std::shared_ptr<FakeObject> m_object;
    const NEXAHandle<IDbObject> m_handle;
};

} // namespace

class TestDataSourceList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDatabaseIsAskedOnceWithThePlainQuery()
    {
        FakeLayer layer;
        const Compound compound(layer);
        QVERIFY(ListDataSources(compound.m_handle).empty());
        QCOMPARE(layer.Commands(), QStringList(FromLatin1("query 'select object where IS_OF_TYPE_VERSION( "
                                                          "{0FACE000-1111-2222-3333-444455556666 } )', loaded: yes")));
    }

    void sourcesAreListedInTheDatabasesOrder()
    {
        FakeLayer layer;
        const Compound compound(layer);
        layer.AddResource("b", "//b", layer.MakeSource("//b"));
        layer.AddResource("c", "//c", layer.MakeSource("//c"));
        layer.AddResource("a", "//a", layer.MakeSource("//a"));
        QCOMPARE(Labels(ListDataSources(compound.m_handle)),
                 QStringList() << FromLatin1("b") << FromLatin1("c") << FromLatin1("a"));
    }

    void anEntrySaysWhatItIsAbout()
    {
        FakeLayer layer;
        const Compound compound(layer);
        const auto resource = layer.AddResource("Gr\xF6\xDF"
                                                "e",
                                                "//%1/\xE4", layer.MakeSource("//there"));
        const std::vector<DataSourceEntry> entries = ListDataSources(compound.m_handle);
        QCOMPARE(entries.size(), std::size_t(1));
        QCOMPARE(entries[0].m_label, FromLatin1("Gr\xF6\xDF"
                                                "e"));
        QCOMPARE(entries[0].m_toolTip, FromLatin1("Move compound to this data source\n//%1/\xE4"));
        QVERIFY(entries[0].m_enabled);
        QVERIFY(entries[0].m_resource == resource->m_id.GetStr());
    }

    void marksAndAccess_data()
    {
        QTest::addColumn<int>("own");
        QTest::addColumn<QString>("uri");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("label");
        const QString here = FromLatin1("//here"), there = FromLatin1("//there");
        QTest::newRow("another one") << 0 << there << 0 << FromLatin1("R");
        QTest::newRow("the own one") << 0 << here << 0 << FromLatin1("R[Current] (off)");
        QTest::newRow("a read-only one") << 0 << there << 1 << FromLatin1("R [Read-Only] (off)");
        QTest::newRow("own and read-only") << 0 << here << 1 << FromLatin1("R[Current] [Read-Only] (off)");
        QTest::newRow("from a read-only one") << 1 << there << 0 << FromLatin1("R (off)");
        QTest::newRow("from a read-only one to another") << 1 << there << 1 << FromLatin1("R [Read-Only] (off)");
        QTest::newRow("the own one, which is read-only")
            << 1 << here << 1 << FromLatin1("R[Current] [Read-Only] (off)");
        QTest::newRow("another code than read-only") << 0 << there << 2 << FromLatin1("R");
        QTest::newRow("a negative code") << 0 << there << -1 << FromLatin1("R");
        QTest::newRow("from one with another code") << 3 << there << 0 << FromLatin1("R");
    }

    void marksAndAccess()
    {
        QFETCH(int, own);
        QFETCH(QString, uri);
        QFETCH(int, state);
        QFETCH(QString, label);
        FakeLayer layer;
        const Compound compound(layer, own);
        const std::string location = uri.toLatin1().constData();
        layer.AddResource("R", location, layer.MakeSource(location, state));
        QCOMPARE(Labels(ListDataSources(compound.m_handle)), QStringList(label));
    }

    void theOwnSourceIsToldByItsLocationNotByItsName()
    {
        FakeLayer layer;
        const Compound compound(layer);
        layer.AddResource("Twin", "//there", layer.MakeSource("//there"));
        layer.AddResource("Twin", "//here", layer.MakeSource("//here"));
        QCOMPARE(Labels(ListDataSources(compound.m_handle)),
                 QStringList() << FromLatin1("Twin") << FromLatin1("Twin[Current] (off)"));
    }

    void resourcesThatLeadToNoSourceAreSkipped()
    {
        FakeLayer layer;
        const Compound compound(layer);
        layer.AddResource("Nowhere", "//here", nullptr);
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        layer.AddResource("Undesignated", "//x", layer.MakeSource("//x"))->m_designated.reset();
        QCOMPARE(Labels(ListDataSources(compound.m_handle)), QStringList(FromLatin1("There")));
    }

    void theSourceIsThatOfTheDesignatedValue()
    {
        FakeLayer layer;
        const Compound compound(layer);
        const auto resource = layer.AddResource("R", "//there", nullptr);
        resource->m_source = layer.MakeSource("//of the resource itself");
        QVERIFY(ListDataSources(compound.m_handle).empty());
        resource->m_designated->m_source = layer.MakeSource("//there");
        QCOMPARE(Labels(ListDataSources(compound.m_handle)), QStringList(FromLatin1("R")));
    }

    void aCompoundsMissingSourceMattersOnlyWhenThereIsAnotherOne()
    {
        FakeLayer layer;
        const Compound compound(layer);
        compound.m_object->m_source.reset();
        layer.AddResource("Nowhere", "//nowhere", nullptr);
        QVERIFY(ListDataSources(compound.m_handle).empty());
        layer.AddResource("There", "//there", layer.MakeSource("//there"));
        const nexa4::DisableErrorReportingGuard quiet;
        QVERIFY(Throws([&] { ListDataSources(compound.m_handle); }));
    }

    void listingThrowsWhereTheDatabaseHasNothing()
    {
        FakeLayer layer;
        const Compound compound(layer);
        const nexa4::DisableErrorReportingGuard quiet;
        QVERIFY(Throws([&] { ListDataSources(NEXAHandle<IDbObject>()); }));
        // A match that is no value.
        layer.m_database->m_matches.push_back(compound.m_object->m_id);
        QVERIFY(Throws([&] { ListDataSources(compound.m_handle); }));
        // A match that is gone.
        layer.m_database->m_matches.assign(1, layer.m_database->MakeId(0xDEADu));
        QVERIFY(Throws([&] { ListDataSources(compound.m_handle); }));
        layer.m_database->m_matches.clear();
        QVERIFY(ListDataSources(compound.m_handle).empty());
        layer.m_database->m_reachable = false;
        QVERIFY(Throws([&] { ListDataSources(compound.m_handle); }));
        compound.m_object->m_manager.reset();
        QVERIFY(Throws([&] { ListDataSources(compound.m_handle); }));
    }

    void aMoveGoesThroughTheHelperOfTheCompoundsDatabase()
    {
        FakeLayer layer;
        const Compound compound(layer);
        const auto resource = layer.AddResource("There", "//there", layer.MakeSource("//there"));
        MoveToDataSource(compound.m_handle, resource->m_id);
        QCOMPARE(layer.Commands(), QStringList() << FromLatin1("database helper")
                                                 << FromLatin1("move %1 to '//there', with content: yes")
                                                        .arg(FromLatin1(compound.m_item.m_uid.c_str())));
    }

    void aMoveChecksNoAccess()
    {
        FakeLayer layer;
        const Compound compound(layer, 1);
        const auto here = layer.AddResource("Here", "//here", layer.MakeSource("//here", 1));
        MoveToDataSource(compound.m_handle, here->m_id);
        QCOMPARE(layer.Lines("move").size(), 1);
    }

    void aMoveToAResourceWithoutASourceIsTheHelpersBusiness()
    {
        FakeLayer layer;
        const Compound compound(layer);
        const auto nowhere = layer.AddResource("Nowhere", "//nowhere", nullptr);
        MoveToDataSource(compound.m_handle, nowhere->m_id);
        QCOMPARE(
            layer.Lines("move"),
            QStringList(
                FromLatin1("move %1 to no source, with content: yes").arg(FromLatin1(compound.m_item.m_uid.c_str()))));
    }

    void aMoveThrowsAndMovesNothingWhereTheDatabaseHasNothing()
    {
        FakeLayer layer;
        const Compound compound(layer);
        const auto there = layer.AddResource("There", "//there", layer.MakeSource("//there"));
        const nexa4::DisableErrorReportingGuard quiet;
        QVERIFY(Throws([&] { MoveToDataSource(NEXAHandle<IDbObject>(), there->m_id); }));
        QCOMPARE(layer.Commands(), QStringList());
        QVERIFY(Throws([&] { MoveToDataSource(compound.m_handle, nexa4::UID_Null()); }));
        QVERIFY(Throws([&] { MoveToDataSource(compound.m_handle, compound.m_object->m_id); }));
        // The helper comes first, then the resource.
        QCOMPARE(layer.Commands(), QStringList() << FromLatin1("database helper") << FromLatin1("database helper"));
        layer.m_database->m_helped = false;
        QVERIFY(Throws([&] { MoveToDataSource(compound.m_handle, there->m_id); }));
        QCOMPARE(layer.Lines("move"), QStringList());
    }

    void aMoveThereAndBackAgain()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& here = library.AddDataSource("Here");
        DataSource& there = library.AddDataSource("There");
        library.AddDataSource("Fixed", memorymodel::eReadOnlySource);
        const ItemID item = library.Add(NewItem::Compound("X").In(here));
        nexa4::IRevisionControlUIHelper* const helper =
            hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
        QVERIFY(helper);
        const NEXAHandle<IDbObject> handle = helper->FindObject(DbObjectId(ItemIDUnlock::GetItemIDUID(item)));
        std::vector<DataSourceEntry> entries = ListDataSources(handle);
        QCOMPARE(Labels(entries), QStringList() << FromLatin1("Here[Current] (off)") << FromLatin1("There")
                                                << FromLatin1("Fixed [Read-Only] (off)"));
        QCOMPARE(entries[1].m_toolTip, FromLatin1("Move compound to this data source\nNodes/There"));

        MoveToDataSource(handle, DbObjectId(entries[1].m_resource.c_str()));
        QVERIFY(library.GetSourceOf(item) == &there);
        QCOMPARE(layer.GetCommandManager().GetStack().count(), 1);
        QCOMPARE(Labels(ListDataSources(handle)), QStringList()
                                                      << FromLatin1("Here") << FromLatin1("There[Current] (off)")
                                                      << FromLatin1("Fixed [Read-Only] (off)"));
        layer.GetCommandManager().GetStack().undo();
        QVERIFY(library.GetSourceOf(item) == &here);
    }
};

NODEBROWSER_TEST_MAIN(TestDataSourceList)
#include "test_datasourcelist.moc"
