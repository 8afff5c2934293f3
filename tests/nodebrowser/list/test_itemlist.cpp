// SPDX-License-Identifier: MIT
#include "nodebrowser/itemlist.h"
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/support/random.h"
#include "tests/support/testmain.h"

#include <algorithm>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

using namespace nodebrowser;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemTOCAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace
{

const char* const gTypes[] = {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                              VireoType::gSolver, LibType::gType};

/// A list of the items of a recording data layer.
struct Scene
{
    void Build(ItemList::ObjectHandles* out_handles = nullptr) { BuildAfter(ItemList::Legacy(), out_handles); }

    void BuildAfter(const ItemList::Legacy& in_legacy, ItemList::ObjectHandles* out_handles = nullptr)
    {
        m_list.reset(new ItemList);
        m_list->Build(vireo::datamodel::GetTOC(m_layer.GetAccessor()), m_layer.GetAccessor(), in_legacy, false,
                      out_handles);
    }

    std::vector<std::uint64_t> Find(const char* in_text, int in_mode = eFilterAll) const
    {
        std::vector<std::uint64_t> ranks(3, 99); // is to be replaced
        m_list->Find(SplitSearchWords(in_text), in_mode, ranks);
        return ranks;
    }

    std::vector<std::uint64_t> FindItemByItem(const char* in_text, int in_mode = eFilterAll) const
    {
        std::vector<std::uint64_t> ranks(3, 99);
        m_list->FindItemByItem(SplitSearchWords(in_text), in_mode, m_layer.GetAccessor(), ranks);
        return ranks;
    }

    /// The names of the items at some ranks.
    QString Names(const std::vector<std::uint64_t>& in_ranks) const
    {
        QStringList names;
        for (const std::uint64_t rank : in_ranks)
        {
            const BrowserItem* const record = m_list->FindRecord(rank);
            names << (record
                          ? FromLatin1(m_layer.GetAccessor().GetItemName(record->GetItem().GetItemID(), true, nullptr))
                          : FromLatin1("no record"));
        }
        return names.join(QLatin1String(","));
    }

    QString Tags(const FakeItem& in_item) const
    {
        QStringList tags;
        for (const std::string& tag : m_list->GetTags(in_item.m_id))
            tags << FromLatin1(tag);
        return tags.join(QLatin1String("|"));
    }

    FakeLayer m_layer;
    std::unique_ptr<ItemList> m_list;
};

/// Fails unless each index has one record, one identity, one name and one tag string: all that can be asked answers for
/// the same items.
void CheckInvariant(const Scene& in_scene)
{
    ItemList& list = *in_scene.m_list;
    const std::size_t size = list.GetSize();
    const std::vector<std::uint64_t> all = in_scene.Find("");
    QCOMPARE(all.size(), size);
    QVERIFY(std::set<std::uint64_t>(all.begin(), all.end()).size() == size);
    std::string before;
    for (std::uint64_t rank = 0; rank < size; ++rank)
    {
        const BrowserItem* const record = list.FindRecord(rank);
        QVERIFY(record);
        const FakeItem* const item = dynamic_cast<const FakeItem*>(record->GetItem().GetContext().get());
        QVERIFY(item);
        // The name that the search compares is that of this record: it stands in the sorted order.
        const std::string name = LowerName(item->m_name);
        QVERIFY(before <= name);
        before = name;
        const std::vector<std::uint64_t> byName = in_scene.Find(name.c_str());
        QVERIFY(std::find(byName.begin(), byName.end(), rank) != byName.end());
        // So is the tag string.
        std::set<std::string> tags;
        tags.insert(item->m_id.GetType());
        if (!item->m_tags.empty())
            tags.insert(item->m_tags);
        QVERIFY(list.GetTags(item->m_id) == tags);
        for (const std::string& tag : tags)
            QCOMPARE(list.GetTaggedItems(tag).count(item->m_id), std::size_t(1));
    }
    QVERIFY(!list.FindRecord(size));
    QVERIFY(!list.FindRecord(gNoMatch));
}

/// Adds one item of each type. Each has its own tag and its own place in the order.
void AddOneOfEach(FakeLayer& io_layer)
{
    const char* const names[] = {"Delta", "Alpha", "Echo", "Bravo", "Charlie"};
    for (int i = 0; i < 5; ++i)
    {
        FakeItem& item = i == 1 ? io_layer.AddCompound(names[i]) : io_layer.Add(gTypes[i], names[i]);
        item.m_tags = "tag" + std::to_string(i);
        io_layer.GiveObject(item);
    }
}

/// Renames, adds, removes or moves an item.
void Change(FakeLayer& io_layer, Random& io_random)
{
    const int count = static_cast<int>(io_layer.m_contents->m_items.size());
    const int kind = count == 0 ? 0 : io_random.Below(4);
    if (kind == 0)
        io_layer.Add(io_random.OneOf(gTypes), io_random.Text("abAB _", 0, 5));
    else if (kind == 1)
        io_layer.Remove(io_random.Below(count));
    else if (kind == 2)
        io_layer.GetItem(io_random.Below(count)).m_name = io_random.Text("abAB _", 0, 5);
    else
        std::swap(io_layer.m_contents->m_items[static_cast<std::size_t>(io_random.Below(count))],
                  io_layer.m_contents->m_items[static_cast<std::size_t>(io_random.Below(count))]);
}

} // namespace

/// The item list without a browser around it.
class TestItemList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyListAnswersNothing()
    {
        Scene scene;
        scene.m_list.reset(new ItemList);
        CheckInvariant(scene);
        QCOMPARE(scene.m_list->GetSize(), std::size_t(0));
        QVERIFY(scene.FindItemByItem("").empty());
        QVERIFY(!scene.m_list->HasGoneItem());
        QVERIFY(scene.m_list->GetTags(ItemID()).empty());
        QVERIFY(scene.m_list->GetTaggedItems(std::string()).empty());
        scene.m_list->ResetStates(true);
        scene.m_layer.Forget();
        scene.m_list->RefreshTags(scene.m_layer.GetAccessor(), ItemID(VireoType::gSolver, 1, 1));
        QVERIFY(!scene.m_list->SetState(ItemID(VireoType::gSolver, 1, 1), 3, true));
        QVERIFY(scene.m_layer.Log().isEmpty());
    }

    void anInvalidTableOfContentsIsAskedForNothing()
    {
        Scene scene;
        AddOneOfEach(scene.m_layer);
        const ItemTOCAccessor toc = vireo::datamodel::GetTOC(scene.m_layer.GetAccessor());
        scene.m_layer.m_contents->m_alive = false;
        scene.m_layer.Forget();
        scene.m_list.reset(new ItemList);
        ItemList::ObjectHandles handles;
        scene.m_list->Build(toc, scene.m_layer.GetAccessor(), ItemList::Legacy(), true, &handles);
        scene.m_list->Build(ItemTOCAccessor(), scene.m_layer.GetAccessor(), ItemList::Legacy(), true, &handles);
        QVERIFY(scene.m_layer.Log().isEmpty());
        QCOMPARE(scene.m_list->GetSize(), std::size_t(0));
        QVERIFY(handles.empty());
        CheckInvariant(scene);
    }

    void aBuiltListHoldsItsInvariant()
    {
        Scene scene;
        AddOneOfEach(scene.m_layer);
        scene.Build();
        CheckInvariant(scene);
        QCOMPARE(scene.Names(scene.Find("")), FromLatin1("Alpha,Bravo,Charlie,Delta,Echo"));
        QCOMPARE(scene.Names(scene.Find("", eFilterNodes)), FromLatin1("Alpha,Bravo,Delta"));
        QCOMPARE(scene.Names(scene.Find("tag2")), FromLatin1("Echo"));
        QCOMPARE(scene.Names(scene.Find("bravo a")), FromLatin1("Alpha,Bravo,Charlie,Delta,Echo"));
        QVERIFY(scene.Find("nothing").empty());
    }

    void aBuildThatThrowsLeavesAConsistentList_data()
    {
        QTest::addColumn<QByteArray>("read");
        QTest::addColumn<int>("size");
        // What comes before the failed read in library order is listed.
        const char* const names[] = {"Delta", "Alpha", "Echo", "Bravo", "Charlie"};
        for (const char* const type : gTypes)
            QTest::newRow((std::string("iterate ") + type).c_str())
                << QByteArray("iterate ") + type << static_cast<int>(std::find(gTypes, gTypes + 5, type) - gTypes);
        for (int i = 0; i < 5; ++i)
        {
            for (const char* const read : {"value", "identity", "uid", "name", "tags"})
                QTest::newRow((std::string(read) + " " + names[i]).c_str()) << QByteArray(read) + " " + names[i] << i;
            QTest::newRow((std::string("valid ") + names[i]).c_str())
                << QByteArray("valid ") + gTypes[i] + " " + names[i] << i;
            QTest::newRow((std::string("find ") + names[i]).c_str())
                << QByteArray("find #") + QByteArray::number(i) << i;
        }
        QTest::newRow("signature Alpha") << QByteArray("signature Alpha") << 1;
        QTest::newRow("icon") << QByteArray("icon") << 0;
        QTest::newRow("service") << QByteArray("service") << 0;
    }

    void aBuildThatThrowsLeavesAConsistentList()
    {
        QFETCH(QByteArray, read);
        QFETCH(int, size);
        Scene scene;
        scene.m_layer.ShowSourceControl();
        AddOneOfEach(scene.m_layer);
        if (read.startsWith("find #"))
            read = QByteArray("find ") + scene.m_layer.GetItem(read.mid(6).toInt()).m_uid.c_str();
        bool threw = false;
        scene.m_layer.When(read.constData(), [] { throw std::runtime_error("the disk is gone"); });
        ItemList::ObjectHandles handles;
        try
        {
            scene.Build(&handles);
        }
        catch (const std::runtime_error&)
        {
            threw = true;
        }
        QVERIFY(threw);
        scene.m_layer.ForgetHooks();
        QCOMPARE(static_cast<int>(scene.m_list->GetSize()), size);
        CheckInvariant(scene);
        QVERIFY(scene.FindItemByItem("") == scene.Find(""));
        // Only a compound that is listed waits for its state.
        QCOMPARE(static_cast<int>(handles.size()), size > 1 ? 1 : 0);
        for (int i = 0; i < 5; ++i)
        {
            const FakeItem& item = scene.m_layer.GetItem(i);
            QCOMPARE(scene.m_list->GetTags(item.m_id).empty(), i >= size);
            QCOMPARE(scene.m_list->SetState(item.m_id, 77, true), i < size);
            scene.m_list->RefreshTags(scene.m_layer.GetAccessor(), item.m_id);
        }
        scene.m_list->ResetStates(false);
        CheckInvariant(scene);
    }

    void anItemThatIsThereTwiceHasTwoRecords()
    {
        Scene scene;
        FakeItem& item = scene.m_layer.Add(VireoType::gSolver, "Twice");
        item.m_tags = "old";
        scene.m_layer.Add(VireoType::gSolver, "Once");
        scene.m_layer.m_contents->m_items.push_back(scene.m_layer.m_contents->m_items.front());
        scene.Build();
        QCOMPARE(scene.m_list->GetSize(), std::size_t(3));
        CheckInvariant(scene);
        QCOMPARE(scene.Names(scene.Find("")), FromLatin1("Once,Twice,Twice"));
        item.m_tags = "new";
        scene.m_layer.Forget();
        scene.m_list->RefreshTags(scene.m_layer.GetAccessor(), item.m_id);
        QCOMPARE(scene.m_layer.Count("tags"), 1);
        // Both rows follow.
        QCOMPARE(scene.Names(scene.Find("new")), FromLatin1("Twice,Twice"));
        QVERIFY(scene.Find("old").empty());
        QCOMPARE(scene.m_list->GetTaggedItems("new").size(), std::size_t(1));
        QVERIFY(scene.m_list->SetState(item.m_id, 5, false));
        QVERIFY(!scene.m_list->SetState(item.m_id, 5, false));
    }

    void tagsAreReadAgainForOneItem()
    {
        Scene scene;
        AddOneOfEach(scene.m_layer);
        scene.Build();
        FakeItem& alpha = scene.m_layer.GetItem(1);
        QCOMPARE(scene.Tags(alpha), FromLatin1("Compound|tag1"));
        for (int i = 0; i < 5; ++i)
            scene.m_layer.GetItem(i).m_tags = "fresh";
        scene.m_list->RefreshTags(scene.m_layer.GetAccessor(), alpha.m_id);
        QCOMPARE(scene.Tags(alpha), FromLatin1("Compound|fresh"));
        QCOMPARE(scene.Names(scene.Find("fresh")), FromLatin1("Alpha"));
        QVERIFY(scene.Find("tag1").empty());
        QVERIFY(scene.m_list->GetTaggedItems("fresh") == (std::set<ItemID>{alpha.m_id}));
        QVERIFY(scene.m_list->GetTaggedItems("tag1").empty());
        QVERIFY(scene.m_list->GetTaggedItems(std::string()).empty());
    }

    void statesAreSetAndResetByItem()
    {
        Scene scene;
        scene.m_layer.ShowSourceControl();
        AddOneOfEach(scene.m_layer);
        ItemList::ObjectHandles handles;
        scene.Build(&handles);
        QCOMPARE(handles.size(), std::size_t(1));
        const BrowserItem& alpha = *scene.m_list->FindRecord(0);
        QCOMPARE(alpha.GetAccessState(), unsigned(vireo::datamodel::eAccessStateRequested));
        QVERIFY(scene.m_list->SetState(alpha.GetItem().GetItemID(), 42, true));
        QVERIFY(!scene.m_list->SetState(alpha.GetItem().GetItemID(), 42, true));
        QVERIFY(!scene.m_list->SetState(ItemID(), 42, true));
        QCOMPARE(alpha.GetAccessState(), 42u);
        QCOMPARE(scene.m_list->FindRecord(1)->GetAccessState(), unsigned(vireo::datamodel::eAccessStateUnknown));
        scene.m_list->ResetStates(true);
        for (std::uint64_t rank = 0; rank < 5; ++rank)
            QCOMPARE(scene.m_list->FindRecord(rank)->GetAccessState(), unsigned(vireo::datamodel::eAccessStateUnknown));
    }

    void itemsThatAreGoneAreSeenAndLeftOut()
    {
        Scene scene;
        AddOneOfEach(scene.m_layer);
        scene.Build();
        QVERIFY(!scene.m_list->HasGoneItem());
        const ItemID id = scene.m_layer.GetItem(3).m_id;
        scene.m_layer.Remove(3); // Bravo
        QVERIFY(scene.m_list->HasGoneItem());
        QCOMPARE(scene.Find("").size(), std::size_t(5));
        QCOMPARE(scene.Names(scene.FindItemByItem("")), FromLatin1("Alpha,Charlie,Delta,Echo"));
        // Its record stays until the next build and answers nothing.
        QVERIFY(!scene.m_list->FindRecord(1)->GetItem().IsValid());
        QVERIFY(!scene.m_list->SetState(id, 42, true));
    }

    void aListIsInOrderWhateverTheOneBeforeLeft()
    {
        Random random(TestSeed(20261123));
        for (int round = 0; round < 60; ++round)
        {
            Scene scene;
            for (int i = random.Below(30); i > 0; --i)
                scene.m_layer.Add(random.OneOf(gTypes), random.Text("abAB _", 0, 5));
            scene.Build();
            for (int change = 0; change < 20; ++change)
            {
                if (random.OneIn(2))
                    scene.Find(""); // a list that was never asked leaves no order
                Change(scene.m_layer, random);
                scene.BuildAfter(scene.m_list->TakeLegacy());
                CheckInvariant(scene);
                const QString names = scene.Names(scene.Find(""));
                const ItemList::Legacy legacy = scene.m_list->TakeLegacy();
                scene.Build();
                QCOMPARE(names, scene.Names(scene.Find("")));
                scene.BuildAfter(legacy);
            }
        }
    }

    void aListLeavesItsOrderAndItsSizes()
    {
        Scene scene;
        AddOneOfEach(scene.m_layer);
        scene.Build();
        QVERIFY(scene.m_list->TakeLegacy().m_order.empty());
        scene.Build();
        scene.Find("");
        const ItemList::Legacy legacy = scene.m_list->TakeLegacy();
        QCOMPARE(legacy.m_order.size(), std::size_t(5));
        QCOMPARE(legacy.m_identities.size(), std::size_t(5));
        // "Alpha" to "Echo", and one byte for the end of each.
        QCOMPARE(legacy.m_nameBytes, std::size_t(26 + 5));
        QVERIFY(legacy.m_tagBytes > 0);
    }

    void bothSearchesFindTheSame()
    {
        Random random(TestSeed(20261122));
        for (int round = 0; round < 60; ++round)
        {
            Scene scene;
            const int count = random.Below(60);
            for (int i = 0; i < count; ++i)
            {
                const char* const type = random.OneOf(gTypes);
                FakeItem& item = scene.m_layer.Add(type, random.Text("abAB _\xC4\xE4", 0, 5));
                item.m_tags = random.Text("abB;; ", 0, 6);
                item.m_signature = random.OneIn(3);
                // Now and then the same item once more.
                if (random.OneIn(20))
                    scene.m_layer.m_contents->m_items.push_back(scene.m_layer.m_contents->m_items.back());
            }
            scene.Build();
            for (int search = 0; search < 30; ++search)
            {
                const std::string text = random.Text("ab _", 0, 5);
                const int mode = random.Between(-1, 5);
                const std::vector<std::uint64_t> found = scene.Find(text.c_str(), mode);
                QCOMPARE(scene.Names(found), scene.Names(scene.FindItemByItem(text.c_str(), mode)));
                QVERIFY(found == scene.FindItemByItem(text.c_str(), mode));
            }
        }
    }
};

NODEBROWSER_TEST_MAIN(TestItemList)
#include "test_itemlist.moc"
