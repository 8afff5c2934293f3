// SPDX-License-Identifier: MIT
// What is particular to libraries in memory: setting up content, removing, closing, writers.

#include "contract/notificationspy.h"
#include "contract/support.h"
#include "datamodel/revisioncontrol.h"
#include "memorymodel/datalayer.h"
#include "tests/support/itemwriter.h"
#include "tests/support/testmain.h"

#include <list>
#include <stdexcept>
#include <string>
#include <vector>

using namespace contract;
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
    void descriptionsAreCopiedAsValues()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        NewItem first = NewItem::Compound("First").Tags("a");
        NewItem second = first;
        second.Tags("b");
        NewItem third = NewItem::Type("Third");
        third = second;
        third.Tags("c");
        second = *&second;
        QByteArray tags;
        for (const NewItem& item : {first, second, third})
        {
            const ItemID id = library.Add(item);
            QVERIFY(id.GetType() == VireoType::gCompound);
            tags += library.GetAccessor().GetItemTags(id, gApplicationTagsKey).c_str();
        }
        QCOMPARE(tags, QByteArray("abc"));
    }

    void thirtyMixedItemsAreQuicklyDescribed()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        FillWithThirtyItems(library);
        QCOMPARE(library.GetItemCount(), std::size_t(30));
        QCOMPARE(library.GetItems().size(), std::size_t(30));
        QCOMPARE(QByteArray(Listed(library.GetAccessor(), VireoType::gCompound).c_str()),
                 QByteArray("Surface Displacement Blend Layer Mask Accumulate Draft Inner Anonymous Hidden"));
        QCOMPARE(QByteArray(Listed(library.GetAccessor(), LibType::gType).c_str()),
                 QByteArray("float colour vector matrix string"));
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
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
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
        QVERIFY(id.GetSpace() != foreign.GetSpace());
        const std::string text = id.Serialize();
        const std::string numbers = text.substr(text.find(':'));
        QVERIFY(library.FindBySerialized(VireoType::gCompound + numbers) == id);
        const std::string others[] = {"",
                                      VireoType::gCompound,
                                      "0000000000000000",
                                      numbers,
                                      VireoType::gSolver + numbers,
                                      ' ' + text,
                                      text + ' ',
                                      text + '0',
                                      text.substr(0, text.size() - 1),
                                      text.substr(0, text.size() - 1) + 'x',
                                      text.substr(0, text.size() - 1) + '1',
                                      VireoType::gCompound + std::string(":0000000000000001-0000000000000000")};
        for (const std::string& wrong : others)
            QVERIFY2(!library.FindBySerialized(wrong).IsValid(), wrong.c_str());
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
        SetWriter(library, [&](const ItemID& in_item) {
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
        int calls = 0;
        SetWriter(library, [&](const ItemID&) {
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
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
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
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, invalidated, end"));
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
        const std::size_t sources = library.GetDataSources().size();
        QCOMPARE(library.AddDataSource("Late").GetName(), std::string("Late"));
        QCOMPARE(library.GetDataSources().size(), sources);
        QCOMPARE(library.GetItemCount(), std::size_t(0));
        QVERIFY(library.GetItems().empty());
        QVERIFY(!library.FindByName("A").IsValid());
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
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
        QCOMPARE(QByteArray(Listed(accessor, LibType::gType).c_str()), QByteArray("1 2 4"));
        stack.undo();
        library.Add(NewItem::Type("6"));
        QCOMPARE(QByteArray(Listed(accessor, LibType::gType).c_str()), QByteArray("1 2 3 4 6"));
        stack.undo();
        stack.undo();
        QCOMPARE(QByteArray(Listed(accessor, LibType::gType).c_str()), QByteArray("0 1 2 3 4 5 6"));
        ItemIterator iterator = GetTOC(accessor).IterateItems(LibType::gType);
        stack.redo();
        QVERIFY(iterator.GetItem().GetItemID() == ids[0]);
        stack.undo();
        int count = 0;
        for (; !iterator.IsAtEnd(); iterator.Next())
            ++count;
        QCOMPARE(count, 7);
    }

    void manyItemsAreAddedReadAndRemovedInTime()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const int count = 100000;
        std::vector<ItemID> ids;
        ids.reserve(count);
        for (int i = 0; i < count; ++i)
            ids.push_back(library.Add(NewItem::Compound("Item").Tags("a")));
        const ItemLibraryAccessor accessor = library.GetAccessor();
        for (const ItemID& id : ids)
            QVERIFY(!accessor.GetItemName(id, true, nullptr).empty());
        for (const ItemID& id : ids)
            QVERIFY(library.Remove(id));
        QVERIFY(GetTOC(accessor).IterateItems(VireoType::gCompound).IsAtEnd());
    }

    void undoGoesBackToWhatTheWriteFound()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        QUndoStack& stack = layer.GetCommandManager().GetStack();
        const ItemLibraryAccessor accessor = library.GetAccessor();
        const ItemID id = library.Add(NewItem::Compound("A").Tags("a"));
        NotificationSpy spy(accessor);
        spy.m_reaction = [&](const std::string& in_call) {
            if (in_call != "begin")
                return;
            spy.m_reaction = nullptr;
            library.Rename(id, "B", &layer.GetCommandManager());
            library.SetTags(id, "b", &layer.GetCommandManager());
        };
        QVERIFY(library.Rename(id, "C", &layer.GetCommandManager()));
        QCOMPARE(stack.undoText(), QString::fromLatin1("Rename compound B"));
        stack.undo();
        QCOMPARE(accessor.GetItemName(id, true, nullptr), std::string("B"));
        stack.undo();
        stack.undo();
        QCOMPARE(accessor.GetItemName(id, true, nullptr), std::string("A"));
        QVERIFY(!accessor.ItemIsDirty(id));

        stack.clear();
        spy.m_reaction = [&](const std::string& in_call) {
            if (in_call != "begin")
                return;
            spy.m_reaction = nullptr;
            library.SetTags(id, "b", &layer.GetCommandManager());
        };
        QVERIFY(library.SetTags(id, "c", &layer.GetCommandManager()));
        stack.undo();
        QCOMPARE(accessor.GetItemTags(id, gApplicationTagsKey), std::string("b"));
        stack.undo();
        QCOMPARE(accessor.GetItemTags(id, gApplicationTagsKey), std::string("a"));
        QVERIFY(!accessor.ItemIsDirty(id));
    }

    void libraryThatClosesInACallTellsNothingButEnds()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        NotificationSpy first(library.GetAccessor());
        NotificationSpy second(library.GetAccessor());
        first.m_reaction = [&](const std::string& in_call) {
            if (in_call == "added A")
                library.Close();
        };
        library.Add(NewItem::Compound("A"));
        QCOMPARE(QByteArray(first.Take().c_str()), QByteArray("begin, added A, begin, invalidated, end, end"));
        QCOMPARE(QByteArray(second.Take().c_str()), QByteArray("begin, begin, invalidated, end, end"));
        QVERIFY(!library.GetAccessor().IsValid());
    }

    void itemOfALibraryThatClosesIsNotAdded()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        NotificationSpy first(library.GetAccessor());
        NotificationSpy second(library.GetAccessor());
        first.m_reaction = [&](const std::string& in_call) {
            if (in_call == "begin")
                library.Close();
        };
        QVERIFY(!library.Add(NewItem::Compound("A")).IsValid());
        QCOMPARE(QByteArray(first.Take().c_str()), QByteArray("begin, begin, invalidated, end, end"));
        QCOMPARE(QByteArray(second.Take().c_str()), QByteArray("begin, invalidated, end"));
    }

    void changesEndWhenAnObserverThrows_data()
    {
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<QByteArray>("notifications");
        QTest::addColumn<QByteArray>("toldOthers");
        QTest::newRow("added") << QByteArray("added A") << QByteArray("begin, added A, end")
                               << QByteArray("begin, end");
        QTest::newRow("begin") << QByteArray("begin") << QByteArray("begin, end") << QByteArray();
    }

    void changesEndWhenAnObserverThrows()
    {
        QFETCH(QByteArray, call);
        QFETCH(QByteArray, notifications);
        QFETCH(QByteArray, toldOthers);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        NotificationSpy spy(library.GetAccessor());
        NotificationSpy others(library.GetAccessor());
        spy.m_reaction = [&](const std::string& in_call) {
            if (call == in_call.c_str())
                throw std::runtime_error("refused");
        };
        bool thrown = false;
        try
        {
            library.Add(NewItem::Compound("A"));
        }
        catch (const std::runtime_error&)
        {
            thrown = true;
        }
        QVERIFY(thrown);
        QCOMPARE(QByteArray(spy.Take().c_str()), notifications);
        QCOMPARE(QByteArray(others.Take().c_str()), toldOthers);
        spy.m_reaction = nullptr;
        library.Close();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, invalidated, end"));
        QVERIFY(!library.GetAccessor().IsValid());
    }

    void leavingItemLeavesOnce()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        NotificationSpy spy(library.GetAccessor());
        int rounds = 0;
        bool removedAgain = false;
        spy.m_reaction = [&](const std::string& in_call) {
            if (in_call.compare(0, 7, "removed") == 0 && ++rounds < 10)
                removedAgain = library.Remove(id);
        };
        QVERIFY(library.Remove(id));
        QVERIFY(!removedAgain);
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, removed A, end"));
    }

    void commandIsUndoneOnceFromInsideItsCalls()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        QUndoStack& stack = layer.GetCommandManager().GetStack();
        CompoundModifierAccessor compound;
        compound.CreateAndSetFromNewCompound(library.GetAccessor(), "A", false, "", "", &layer.GetCommandManager());
        NotificationSpy spy(library.GetAccessor());
        int rounds = 0;
        spy.m_reaction = [&](const std::string& in_call) {
            if (in_call.compare(0, 7, "removed") == 0 && ++rounds < 10)
                stack.undo();
        };
        stack.undo();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, removed A, end"));
        QCOMPARE(library.GetItemCount(), std::size_t(0));
        stack.redo();
        QCOMPARE(library.GetItemCount(), std::size_t(1));
    }

    void commitOfALibraryThatClosesFails()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.SetTags(library.Add(NewItem::Compound("A")), "a");
        NotificationSpy spy(library.GetAccessor());
        spy.m_reaction = [&](const std::string& in_call) {
            if (in_call == "precommit")
                library.Close();
        };
        bool written = true;
        const ItemLibraryModifierAccessor writer(library.GetAccessor());
        QVERIFY(!writer.CommitToDisk(written, nullptr, false, nexa4::UID_Null()));
        QVERIFY(!written);
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("precommit, begin, invalidated, end"));
    }

    void readOnlySourceIsNotWritten()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& product = library.AddDataSource("Product", eReadOnlySource);
        DataSource& local = library.AddDataSource("Local");
        const ItemID closed = library.Add(NewItem::Compound("Closed").In(product));
        const ItemID open = library.Add(NewItem::Compound("Open").In(local));
        library.SetTags(closed, "a");
        std::vector<ItemID> saved;
        SetWriter(library, [&](const ItemID& in_item) {
            saved.push_back(in_item);
            return std::string();
        });
        bool written = true;
        const ItemLibraryModifierAccessor writer(library.GetAccessor());
        QVERIFY(writer.CommitToDisk(written, nullptr, false, nexa4::UID_Null()));
        QVERIFY(!written);
        QVERIFY(writer.CommitToDisk(written, nullptr, true, nexa4::UID_Null()));
        QVERIFY(saved == std::vector<ItemID>(1, open));
        QVERIFY(library.GetAccessor().ItemIsDirty(closed));
    }

    void commandsLeaveSourcesAloneThatClosedMeanwhile()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& local = library.AddDataSource("Local");
        QUndoStack& stack = layer.GetCommandManager().GetStack();
        const ItemLibraryAccessor accessor = library.GetAccessor();
        const ItemID id = library.Add(NewItem::Compound("A"));
        const ItemID gone = library.Add(NewItem::Compound("Gone"));
        library.Remove(gone, &layer.GetCommandManager());
        library.Rename(id, "B", &layer.GetCommandManager());
        local.SetReadOnly(true);
        NotificationSpy spy(accessor);
        stack.undo();
        stack.undo();
        QCOMPARE(accessor.GetItemName(id, true, nullptr), std::string("B"));
        QCOMPARE(library.GetItemCount(), std::size_t(1));
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
        local.SetReadOnly(false);
        stack.redo();
        stack.redo();
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray());
        stack.undo();
        QCOMPARE(accessor.GetItemName(id, true, nullptr), std::string("A"));

        // What was set up on a read-only source to begin with can be taken back there.
        local.SetReadOnly(true);
        library.Rename(id, "C", &layer.GetCommandManager());
        stack.undo();
        QCOMPARE(accessor.GetItemName(id, true, nullptr), std::string("A"));
    }

    void movesLeaveSourcesAloneThatClosedMeanwhile()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        DataSource& local = library.AddDataSource("Local");
        DataSource& team = library.AddDataSource("Team");
        QUndoStack& stack = layer.GetCommandManager().GetStack();
        const ItemID id = library.Add(NewItem::Compound("A"));
        const nexa4::NEXAHandle<nexa4::IDbObject> object =
            hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper")
                ->FindObject(nexa4::DbObjectId(ItemIDUnlock::GetItemIDUID(id)));
        const nexa4::NEXAPtr<nexa4::IHelper> helper = nexa4::IHelper::GetHelper(object.GetManager()->GetDatabase());
        QVERIFY(
            helper->MoveToDataSource(object, nexa4::NEXAPtr<nexa4::IDataSource>(library.GetDataSources()[1]), true));
        local.SetReadOnly(true);
        stack.undo();
        QVERIFY(library.GetSourceOf(id) == &team);
        local.SetReadOnly(false);
        stack.redo();
        stack.undo();
        QVERIFY(library.GetSourceOf(id) == &local);
    }
};

NODEBROWSER_TEST_MAIN(TestMemoryLibrary)
#include "test_memorylibrary.moc"
