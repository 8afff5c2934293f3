// What is particular to libraries in memory: setting up content, removing, closing, writers.

#include "contractsupport.h"
#include "memorymodel/datalayer.h"
#include "notificationspy.h"
#include "tests/support/testmain.h"

#include <list>
#include <string>
#include <vector>

using namespace memorymodel;
using namespace vireo::datamodel;

namespace
{

/// A library as a person would have it: thirty items of all kinds in three sources.
void FillWithThirtyItems(Library& in_library)
{
    DataSource& product = in_library.AddDataSource("Product", eReadOnlySource | eFactorySource);
    DataSource& team = in_library.AddDataSource("Team", ePlainSource, "//server/team");
    DataSource& local = in_library.AddDataSource("Local");
    for (const char* const name : {"Add", "Subtract", "Multiply", "Divide", "Power"})
        in_library.Add(NewItem::PolymorphicSolver(name).Tags("math").In(product));
    for (const char* const name : {"Add float", "Add colour", "Multiply float", "Multiply colour"})
        in_library.Add(NewItem::Solver(name).Tags("math").Specializes("Add").In(product));
    for (const char* const name : {"Sample", "Trace", "Integrate"})
        in_library.Add(NewItem::Solver(name).Tags("light;ray").BuiltIn().In(product));
    for (const char* const name : {"Pi", "E", "Golden ratio"})
        in_library.Add(NewItem::GlobalConstant(name).Tags("constant").In(product));
    for (const char* const name : {"float", "colour", "vector", "matrix", "string"})
        in_library.Add(NewItem::Type(name).In(product));
    for (const char* const name : {"Surface", "Displacement"})
        in_library.Add(NewItem::Signature(name).Tags("shading").In(team));
    for (const char* const name : {"Blend", "Layer", "Mask"})
        in_library.Add(NewItem::Compound(name).Tags("mix;colour").Category("Colour").In(team));
    in_library.Add(NewItem::LoopCompound("Accumulate").Tags("loop").In(local));
    in_library.Add(NewItem::Compound("Draft").ReadOnly().In(local));
    in_library.Add(NewItem::Compound("Inner").Parent("Layer").In(team));
    in_library.Add(NewItem::Compound("Anonymous").WithoutUID().In(local));
    in_library.Add(NewItem::Compound("Hidden").NotForGraphs().In(local));
}

} // namespace

class TestMemoryLibrary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thirtyMixedItemsAreQuicklyDescribed()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        FillWithThirtyItems(library);
        QCOMPARE(library.GetItemCount(), std::size_t(30));
        QCOMPARE(library.GetItems().size(), std::size_t(30));
        QCOMPARE(Listed(library.GetAccessor(), VireoType::gCompound),
                 QByteArray("Surface Displacement Blend Layer Mask Accumulate Draft Inner Anonymous Hidden"));
        QCOMPARE(Listed(library.GetAccessor(), LibType::gType), QByteArray("float colour vector matrix string"));
        const ItemID blend = library.FindByName("Blend");
        QCOMPARE(library.GetCategory(blend), std::string("Colour"));
        QVERIFY(!library.IsSignature(blend));
        QVERIFY(library.IsSignature(library.FindByName("Surface")));
        QVERIFY(library.IsLoopCompound(library.FindByName("Accumulate")));
        QCOMPARE(library.GetSourceOf(blend)->GetLocation(), std::string("//server/team"));
        QVERIFY(library.GetAccessor().ItemIsReadOnly(library.FindByName("Pi")));
    }

    void firstItemMakesASourceCalledLocal()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        QVERIFY(library.GetDataSources().empty());
        const ItemID id = library.Add(NewItem::Compound("Blend"));
        QCOMPARE(library.GetDataSources().size(), std::size_t(1));
        QCOMPARE(library.GetSourceOf(id)->GetName(), std::string("Local"));
        QCOMPARE(library.GetSourceOf(id)->GetLocation(), std::string("Nodes/Local"));
        QVERIFY(!library.GetSourceOf(id)->IsReadOnly());
    }

    void creationNeedsAWritableSource()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& product = library.AddDataSource("Product", eReadOnlySource);
        CompoundModifierAccessor compound;
        QVERIFY(!compound.CreateAndSetFromNewCompound(library.GetAccessor(), "A", false, "", "", nullptr).IsValid());
        DataSource& team = library.AddDataSource("Team");
        library.AddDataSource("Local");
        const ItemID id = compound.CreateAndSetFromNewCompound(library.GetAccessor(), "A", false, "", "Cat", nullptr);
        QVERIFY(library.GetSourceOf(id) == &team);
        QCOMPARE(library.GetCategory(id), std::string("Cat"));
        product.SetReadOnly(false);
        const ItemID next = compound.CreateAndSetFromNewCompound(library.GetAccessor(), "B", false, "", "", nullptr);
        QVERIFY(library.GetSourceOf(next) == &product);
    }

    void readOnlySourceTakesItemsThatAreSetUp()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& product = library.AddDataSource("Product", eReadOnlySource);
        const ItemID id = library.Add(NewItem::Solver("Solve"));
        QVERIFY(library.GetSourceOf(id) == &product);
        QVERIFY(library.Rename(id, "Resolve"));
        QVERIFY(!library.Rename(id, "Resolve"));
        QVERIFY(library.SetTags(id, "a"));
        QVERIFY(!library.SetTags(id, "a"));
        QCOMPARE(library.GetAccessor().GetItemName(id, true, nullptr), std::string("Resolve"));
        QVERIFY(library.GetAccessor().ItemIsDirty(id));
        QVERIFY(library.Remove(id));
        QVERIFY(!library.Remove(id));
        QVERIFY(!library.Rename(id, "A"));
        QVERIFY(!library.SetTags(id, "b"));
    }

    void sourceOfAnotherLibraryIsRefused()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        Library& other = layer.AddLibrary("Others");
        DataSource& foreign = other.AddDataSource("Foreign");
        NotificationSpy spy(library.GetAccessor());
        QVERIFY(!library.Add(NewItem::Compound("A").In(foreign)).IsValid());
        QCOMPARE(library.GetItemCount(), std::size_t(0));
        QCOMPARE(spy.Take(), QByteArray());
    }

    void itemsAreFoundByTheirText()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        Library& other = layer.AddLibrary("Others");
        const ItemID id = library.Add(NewItem::Compound("Blend"));
        const ItemID foreign = other.Add(NewItem::Compound("Blend"));
        QVERIFY(library.FindBySerialized(id.Serialize()) == id);
        QVERIFY(!library.FindBySerialized(foreign.Serialize()).IsValid());
        const char* const others[] = {"", "Compound", "0000000000000000", "Solver:0000000000000001-0000000000000000",
                                      "Compound:0000000000000001-000000000000000x"};
        for (const char* const text : others)
            QVERIFY2(!library.FindBySerialized(text).IsValid(), text);
        library.Remove(id);
        QVERIFY(!library.FindBySerialized(id.Serialize()).IsValid());
        QVERIFY(!library.FindByName("Blend").IsValid());
        QVERIFY(!library.GetSourceOf(id));
        QVERIFY(library.GetBaseClass(id).empty());
    }

    void uidIsTheOneThatWasGiven()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const std::string uid = "0A0B0C0D-0000-4000-8000-0123456789AB";
        const ItemID id = library.Add(NewItem::Compound("Blend").UID("0a0b0c0d-0000-4000-8000-0123456789ab"));
        QCOMPARE(std::string(ItemIDUnlock::GetItemIDUID(id)), uid);
        const ItemID unknown = library.Add(NewItem::Compound("Lost").WithoutObject());
        QVERIFY(nexa4::DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(unknown)));
        const ItemID malformed = library.Add(NewItem::Compound("Odd").UID("not a UID"));
        QVERIFY(nexa4::DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(malformed)));

        // The same document may be opened again: its identities lead to the new items then.
        library.Remove(id);
        const ItemID again = library.Add(NewItem::Compound("Blend").UID(uid));
        QCOMPARE(std::string(ItemIDUnlock::GetItemIDUID(again)), uid);
    }

    void writerGetsTheDirtyItemsAndItsErrorsAreTold()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID good = library.Add(NewItem::Compound("Good"));
        const ItemID bad = library.Add(NewItem::Compound("Bad"));
        library.Add(NewItem::Compound("Clean"));
        library.SetTags(good, "a");
        library.SetTags(bad, "a");
        std::vector<ItemID> saved;
        library.SetWriter([&](const ItemID& in_item) {
            saved.push_back(in_item);
            return in_item == bad ? std::string("No room for Bad.") : std::string();
        });
        bool written = false;
        std::list<std::string> messages;
        const ItemLibraryModifierAccessor writer(library.GetAccessor());
        QVERIFY(!writer.CommitToDisk(written, &messages, false, nexa4::UID_Null()));
        QVERIFY(written);
        QVERIFY((saved == std::vector<ItemID>{good, bad}));
        QVERIFY(messages == std::list<std::string>{"No room for Bad."});
        QVERIFY(!library.GetAccessor().ItemIsDirty(good));
        QVERIFY(library.GetAccessor().ItemIsDirty(bad));

        messages.clear();
        QVERIFY(!writer.CommitToDisk(written, &messages, false, nexa4::TezUID(ItemIDUnlock::GetItemIDUID(good))));
        QVERIFY(!written);
        QCOMPARE(messages.size(), std::size_t(1));
    }

    void writerMayCloseTheLibrary()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.SetTags(library.Add(NewItem::Compound("A")), "a");
        library.SetTags(library.Add(NewItem::Compound("B")), "b");
        int calls = 0;
        library.SetWriter([&](const ItemID&) {
            ++calls;
            layer.RemoveLibrary(library);
            return std::string();
        });
        bool written = false;
        const ItemLibraryModifierAccessor writer(library.GetAccessor());
        QVERIFY(writer.CommitToDisk(written, nullptr, false, nexa4::UID_Null()));
        QCOMPARE(calls, 1);
        QVERIFY(!writer.IsValid());
    }

    void itemThatMissedACommitComesBackDirty()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        QUndoStack& stack = layer.GetCommandManager().GetStack();
        library.Remove(id, &layer.GetCommandManager());
        stack.undo();
        QVERIFY(!library.GetAccessor().ItemIsDirty(id));
        stack.redo();
        QVERIFY(Commit(library.GetAccessor()));
        stack.undo();
        QVERIFY(library.GetAccessor().ItemIsDirty(id));
    }

    void commandsAreNamedForAMenu()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        CommandManager& commands = layer.GetCommandManager();
        const ItemID id = library.Add(NewItem::LoopCompound("Blend"));
        library.Rename(id, "Mix", &commands);
        QCOMPARE(commands.GetStack().undoText(), QString::fromLatin1("Rename loop compound Blend"));
        library.SetTags(id, "a", &commands);
        QCOMPARE(commands.GetStack().undoText(), QString::fromLatin1("Edit tags of loop compound Mix"));
        library.Remove(id, &commands);
        QCOMPARE(commands.GetStack().undoText(), QString::fromLatin1("Remove loop compound Mix"));
        CompoundModifierAccessor created;
        created.CreateAndSetFromNewCompound(library.GetAccessor(), "S", true, "", "", &commands);
        QCOMPARE(commands.GetStack().undoText(), QString::fromLatin1("Create signature S"));
    }

    void droppedCommandsLetGoOfTheirItems()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        const std::weak_ptr<IContext> context = library.GetAccessor().GetModel(id, nullptr).GetContext();
        library.Remove(id, &layer.GetCommandManager());
        QVERIFY(!context.expired());
        layer.GetCommandManager().GetStack().clear();
        QVERIFY(context.expired());
    }

    void directRemovalEndsWhatTheStackKnowsOfTheItem()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        QUndoStack& stack = layer.GetCommandManager().GetStack();
        const ItemID id = library.Add(NewItem::Compound("A"));
        library.Rename(id, "B", &layer.GetCommandManager());
        library.Remove(id);
        NotificationSpy spy(library.GetAccessor());
        stack.undo();
        stack.redo();
        QCOMPARE(spy.Take(), QByteArray());
        QCOMPARE(library.GetItemCount(), std::size_t(0));
    }

    void undoingRestoresOnlyWhatTheCommandChanged()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A").Tags("old"));
        library.SetTags(id, "new", &layer.GetCommandManager());
        library.Rename(id, "B");
        layer.GetCommandManager().GetStack().undo();
        QCOMPARE(library.GetAccessor().GetItemTags(id, gApplicationTagsKey), std::string("old"));
        QCOMPARE(library.GetAccessor().GetItemName(id, true, nullptr), std::string("B"));
    }

    void invalidatingTellsAndChangesNothing()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        NotificationSpy spy(library.GetAccessor());
        library.Invalidate();
        QCOMPARE(spy.Take(), QByteArray("begin, invalidated, end"));
        QVERIFY(library.GetAccessor().GetModel(id, nullptr).IsValid());
    }

    void closedLibraryTakesNothing()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        NotificationSpy spy(library.GetAccessor());
        library.Close();
        spy.Take();
        library.Close();
        library.Invalidate();
        QVERIFY(!library.Add(NewItem::Compound("B")).IsValid());
        QVERIFY(!library.Remove(id));
        QVERIFY(!library.Rename(id, "B"));
        QCOMPARE(library.AddDataSource("Late").GetName(), std::string("Late"));
        QCOMPARE(library.GetItemCount(), std::size_t(0));
        QVERIFY(library.GetItems().empty());
        QVERIFY(!library.FindByName("A").IsValid());
        QCOMPARE(spy.Take(), QByteArray());
    }

    void listsStayInOrderHoweverItemsComeAndGo()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        QUndoStack& stack = layer.GetCommandManager().GetStack();
        std::vector<ItemID> ids;
        for (const char* const name : {"0", "1", "2", "3", "4", "5"})
            ids.push_back(library.Add(NewItem::Type(name)));
        const ItemLibraryAccessor accessor = library.GetAccessor();
        library.Remove(ids[5], &layer.GetCommandManager());
        library.Remove(ids[0], &layer.GetCommandManager());
        library.Remove(ids[3], &layer.GetCommandManager());
        QCOMPARE(Listed(accessor, LibType::gType), QByteArray("1 2 4"));
        stack.undo();
        library.Add(NewItem::Type("6"));
        QCOMPARE(Listed(accessor, LibType::gType), QByteArray("1 2 3 4 6"));
        stack.undo();
        stack.undo();
        QCOMPARE(Listed(accessor, LibType::gType), QByteArray("0 1 2 3 4 5 6"));
        ItemIterator walk = GetTOC(accessor).IterateItems(LibType::gType);
        stack.redo();
        QVERIFY(walk.GetItem().GetItemID() == ids[0]);
        stack.undo();
        int count = 0;
        for (; !walk.IsAtEnd(); walk.Next())
            ++count;
        QCOMPARE(count, 7);
    }

    void manyItemsAreAddedReadAndRemovedInTime()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const int count = 100000;
        std::vector<ItemID> ids;
        for (int i = 0; i < count; ++i)
            ids.push_back(library.Add(NewItem::Compound("Item").Tags("a")));
        const ItemLibraryAccessor accessor = library.GetAccessor();
        for (const ItemID& id : ids)
            QVERIFY(!accessor.GetItemName(id, true, nullptr).empty());
        for (const ItemID& id : ids)
            QVERIFY(library.Remove(id));
        QVERIFY(GetTOC(accessor).IterateItems(VireoType::gCompound).IsAtEnd());
    }
};

NODEBROWSER_TEST_MAIN(TestMemoryLibrary)
#include "test_memorylibrary.moc"
