// SPDX-License-Identifier: MIT
// A library that is kept in a store: who is asked, when, and what a refusal comes to.

#include "contract/databaseobject.h"
#include "contract/notificationspy.h"
#include "contract/support.h"
#include "memorymodel/datalayer.h"
#include "memorymodel/store.h"
#include "tests/support/testmain.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

using namespace contract;
using namespace memorymodel;
using namespace vireo::datamodel;

namespace
{

/// What a store was asked and told, and how it is to answer.
struct Record
{
    std::vector<std::string> m_calls;
    bool m_isRefusing = false;
    bool m_isFailing = false;
    std::function<void()> m_settle;
    std::vector<ItemID> m_unsafe;

    std::string Take()
    {
        std::string text;
        for (const std::string& call : m_calls)
            text += (text.empty() ? "" : ", ") + call;
        m_calls.clear();
        return text;
    }
};

class RecordedStep : public Step
{
public:
    explicit RecordedStep(Record& io_record) : m_record(io_record) {}

    bool Run(bool in_forward) override
    {
        m_record.m_calls.push_back(in_forward ? "do" : "undo");
        return !m_record.m_isFailing;
    }

    void Settle() override
    {
        m_record.m_calls.push_back("settle");
        if (m_record.m_settle)
            m_record.m_settle();
    }

private:
    Record& m_record;
};

class RecordedStore : public Store
{
public:
    explicit RecordedStore(Record& io_record) : m_record(io_record) {}

    std::unique_ptr<Step> Rename(const ItemID&, const std::string& in_name) override
    {
        return Answer("rename " + in_name);
    }
    std::unique_ptr<Step> SetTags(const ItemID&, const std::string& in_key, const std::string& in_tags) override
    {
        return Answer("tags " + in_key + " " + in_tags);
    }
    std::unique_ptr<Step> Move(const ItemID&, const DataSource& in_target) override
    {
        return Answer("move " + in_target.GetName());
    }
    std::unique_ptr<Step> Create(Creation& io_creation) override
    {
        io_creation.m_uid = "0A0B0C0D-0000-4000-8000-0123456789AB";
        io_creation.m_tags = io_creation.m_category + ";" + io_creation.m_source->GetName();
        return Answer("create " + io_creation.m_name + (io_creation.m_isSignature ? " signature" : "") +
                      (io_creation.m_isLoop ? " loop" : ""));
    }
    std::unique_ptr<Step> Remove(const ItemID&) override { return Answer("remove"); }

    void Close() override { m_record.m_calls.push_back("close"); }

    CommitAnswer Commit(const CommitRequest& in_request) override
    {
        CommitAnswer answer;
        m_record.m_calls.push_back(std::string("commit") + (in_request.m_isEverything ? " everything" : "") +
                                   (in_request.m_only ? " " + in_request.m_only->GetName() : "") + " of " +
                                   std::to_string(in_request.m_items.size()));
        for (const ItemID& item : in_request.m_items)
            if (std::find(m_record.m_unsafe.begin(), m_record.m_unsafe.end(), item) == m_record.m_unsafe.end())
                answer.m_saved.push_back(item);
            else
                answer.m_messages.push_back("No room.");
        answer.m_isWritten = !answer.m_saved.empty();
        return answer;
    }

private:
    std::unique_ptr<Step> Answer(const std::string& in_call)
    {
        m_record.m_calls.push_back(in_call);
        return m_record.m_isRefusing ? nullptr : std::unique_ptr<Step>(new RecordedStep(m_record));
    }

    Record& m_record;
};

QByteArray Text(const std::string& in_text)
{
    return QByteArray(in_text.c_str());
}

} // namespace

class TestStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_record = Record();
        m_layer.reset(new DataLayer);
        m_library = &m_layer->AddLibrary("Nodes");
        m_library->AddDataSource("Local");
        m_other = &m_library->AddDataSource("Other");
        m_item = m_library->Add(NewItem::Compound("Blend"));
        m_library->SetStore(std::make_shared<RecordedStore>(m_record));
    }

    void cleanup() { m_layer.reset(); }

    void addingAsksNobody()
    {
        m_library->Add(NewItem::Solver("New"));
        QCOMPARE(Text(m_record.Take()), QByteArray());
    }

    void eachChangeIsAskedForAndRunsTogetherWithItsUndo_data()
    {
        QTest::addColumn<int>("change");
        QTest::addColumn<QByteArray>("asked");
        QTest::addColumn<QByteArray>("done");
        QTest::addColumn<QByteArray>("undone");
        QTest::newRow("rename") << 0 << QByteArray("rename Mix") << QByteArray("name Mix") << QByteArray("name Blend");
        QTest::newRow("tags") << 1 << QByteArray("tags ApplicationTags a;b") << QByteArray("tags Blend ApplicationTags")
                              << QByteArray("tags Blend ApplicationTags");
        QTest::newRow("other tags") << 2 << QByteArray("tags Words a") << QByteArray("tags Blend Words")
                                    << QByteArray("tags Blend Words");
        QTest::newRow("move") << 3 << QByteArray("move Other") << QByteArray("invalidated")
                              << QByteArray("invalidated");
        QTest::newRow("create") << 4 << QByteArray("create New") << QByteArray("added New")
                                << QByteArray("removed New");
        QTest::newRow("signature") << 5 << QByteArray("create New signature") << QByteArray("added New")
                                   << QByteArray("removed New");
        QTest::newRow("loop compound") << 6 << QByteArray("create New loop") << QByteArray("added New")
                                       << QByteArray("removed New");
        QTest::newRow("remove") << 7 << QByteArray("remove") << QByteArray("removed Blend")
                                << QByteArray("added Blend");
    }

    void eachChangeIsAskedForAndRunsTogetherWithItsUndo()
    {
        QFETCH(int, change);
        QFETCH(QByteArray, asked);
        QFETCH(QByteArray, done);
        QFETCH(QByteArray, undone);
        NotificationSpy spy(m_library->GetAccessor());
        MakeChange(change);
        QCOMPARE(Text(m_record.Take()), asked + ", do, settle");
        QCOMPARE(Text(spy.Take()), "begin, " + done + ", end");
        QUndoStack& stack = m_layer->GetCommandManager().GetStack();
        QCOMPARE(stack.count(), 1);
        stack.undo();
        QCOMPARE(Text(m_record.Take()), QByteArray("undo, settle"));
        QCOMPARE(Text(spy.Take()), "begin, " + undone + ", end");
        stack.redo();
        QCOMPARE(Text(m_record.Take()), QByteArray("do, settle"));
        QCOMPARE(Text(spy.Take()), "begin, " + done + ", end");

        stack.undo();
        m_record.Take();
        spy.Take();
        m_record.m_isRefusing = true;
        MakeChange(change);
        QCOMPARE(Text(m_record.Take()), asked);
        QCOMPARE(Text(spy.Take()), QByteArray());
        QCOMPARE(stack.count(), 1);
        QCOMPARE(stack.index(), 0);
    }

    void eachChangeIsAskedForAndRunsAlsoWithoutUndo()
    {
        m_library->Rename(m_item, "Mix");
        QCOMPARE(Text(m_record.Take()), QByteArray("rename Mix, do, settle"));
    }

    void theStepRunsBeforeTheLibraryChanges()
    {
        class LookingStep : public Step
        {
        public:
            LookingStep(Library& io_library, const ItemID& in_item, std::string& out_seen)
                : m_library(io_library), m_item(in_item), m_seen(out_seen)
            {
            }
            bool Run(bool) override
            {
                m_seen += m_library.GetAccessor().GetItemName(m_item, true, nullptr) + " ";
                return true;
            }

        private:
            Library& m_library;
            const ItemID m_item;
            std::string& m_seen;
        };
        class LookingStore : public Store
        {
        public:
            explicit LookingStore(Library& io_library) : m_library(io_library) {}
            std::unique_ptr<Step> Rename(const ItemID& in_item, const std::string&) override
            {
                return std::unique_ptr<Step>(new LookingStep(m_library, in_item, m_seen));
            }
            CommitAnswer Commit(const CommitRequest&) override { return CommitAnswer(); }
            std::string m_seen;

        private:
            Library& m_library;
        };
        const auto store = std::make_shared<LookingStore>(*m_library);
        m_library->SetStore(store);
        m_library->Rename(m_item, "Mix", &m_layer->GetCommandManager());
        m_layer->GetCommandManager().GetStack().undo();
        QCOMPARE(Text(store->m_seen), QByteArray("Blend Mix "));
    }

    void aStepThatFailsLeavesTheLibraryAsItIs_data()
    {
        QTest::addColumn<int>("change");
        for (int change = 0; change < 8; ++change)
            QTest::newRow(QByteArray::number(change).constData()) << change;
    }

    void aStepThatFailsLeavesTheLibraryAsItIs()
    {
        QFETCH(int, change);
        m_record.m_isFailing = true;
        NotificationSpy spy(m_library->GetAccessor());
        MakeChange(change);
        QVERIFY(m_record.Take().find("settle") == std::string::npos);
        // Who was told that the item goes is told to look again.
        QCOMPARE(Text(spy.Take()), change == 7 ? QByteArray("begin, removed Blend, invalidated, end")
                                               : QByteArray("begin, invalidated, end"));
        QCOMPARE(m_layer->GetCommandManager().GetStack().count(), 0);
        QCOMPARE(m_library->GetItemCount(), std::size_t(1));
        QCOMPARE(m_library->FindByName("Blend"), m_item);
        QCOMPARE(m_library->GetSourceOf(m_item)->GetName(), std::string("Local"));
        QVERIFY(!m_library->GetAccessor().ItemIsDirty(m_item));
    }

    void anUndoThatFailsLeavesTheLibraryAsItIs()
    {
        m_library->Rename(m_item, "Mix", &m_layer->GetCommandManager());
        m_record.m_isFailing = true;
        m_layer->GetCommandManager().GetStack().undo();
        QCOMPARE(m_library->FindByName("Mix"), m_item);
    }

    void aNewNodeHasTheTagsAndTheUidThatTheStoreGivesIt()
    {
        CompoundModifierAccessor modifier;
        const ItemID item = modifier.CreateAndSetFromNewCompound(m_library->GetAccessor(), "New", false, "", "Colour",
                                                                 &m_layer->GetCommandManager());
        QCOMPARE(Text(TagsOf(m_library->GetAccessor(), item)), QByteArray("Colour;Local"));
        QCOMPARE(Text(ItemIDUnlock::GetItemIDUID(item)), QByteArray("0A0B0C0D-0000-4000-8000-0123456789AB"));
    }

    void aCommitGoesToTheStoreAsAWhole()
    {
        const ItemID other = m_library->Add(NewItem::Compound("Mix").In(*m_other));
        const ItemLibraryAccessor library = m_library->GetAccessor();
        m_library->SetTags(m_item, "a");
        m_library->SetTags(other, "a");
        m_record.Take();
        m_record.m_unsafe = {other};
        bool written = false;
        std::list<std::string> messages;
        QVERIFY(!Commit(library, written, &messages, false, nexa4::UID_Null()));
        QVERIFY(written);
        QCOMPARE(messages.size(), std::size_t(1));
        QCOMPARE(Text(m_record.Take()), QByteArray("commit of 2"));
        QVERIFY(!library.ItemIsDirty(m_item));
        QVERIFY(library.ItemIsDirty(other));

        m_record.m_unsafe.clear();
        QVERIFY(Commit(library, written, nullptr, true, nexa4::UID_Null()));
        QCOMPARE(Text(m_record.Take()), QByteArray("commit everything of 2"));
        QVERIFY(!library.ItemIsDirty(other));
        // Also with nothing to save, as far as the library knows.
        QVERIFY(Commit(library, written, nullptr, false, nexa4::UID_Null()));
        QVERIFY(!written);
        QCOMPARE(Text(m_record.Take()), QByteArray("commit of 0"));
    }

    void theStoreLearnsOfTheEnd()
    {
        m_library->SetStore(std::make_shared<RecordedStore>(m_record));
        QCOMPARE(Text(m_record.Take()), QByteArray("close"));
        m_layer->RemoveLibrary(*m_library);
        QCOMPARE(Text(m_record.Take()), QByteArray("close"));
    }

    void followingTellsWhatDiffers()
    {
        NotificationSpy spy(m_library->GetAccessor());
        m_library->Follow(m_item, {"Blend", "", m_library->GetDataSources()[0].get(), false}, eFollowing::eNews);
        QCOMPARE(Text(spy.Take()), QByteArray());
        m_library->Follow(m_item, {"Mix", "a", m_library->GetDataSources()[0].get(), false}, eFollowing::eNews);
        QCOMPARE(Text(spy.Take()), QByteArray("begin, name Mix, tags Mix ApplicationTags, end"));
        m_library->Follow(m_item, {"Mix", "a", m_other, true}, eFollowing::eNews);
        QCOMPARE(Text(spy.Take()), QByteArray("begin, invalidated, end"));
        QVERIFY(m_library->GetAccessor().ItemIsReadOnly(m_item));
        QCOMPARE(m_library->GetSourceOf(m_item), static_cast<const DataSource*>(m_other));
        QCOMPARE(Text(m_record.Take()), QByteArray());
        QVERIFY(!m_library->GetAccessor().ItemIsDirty(m_item));
        QCOMPARE(m_layer->GetCommandManager().GetStack().count(), 0);
    }

    void anEarlierStateIsNotTakenForTheCommittedOneAfterNews()
    {
        QUndoStack& stack = m_layer->GetCommandManager().GetStack();
        m_library->SetTags(m_item, "a", &m_layer->GetCommandManager());
        QVERIFY(Commit(m_library->GetAccessor()));
        m_library->Follow(m_item, {"Blend", "b", m_library->GetDataSources()[0].get(), false}, eFollowing::eNews);
        QVERIFY(!m_library->GetAccessor().ItemIsDirty(m_item));
        stack.undo();
        QVERIFY(m_library->GetAccessor().ItemIsDirty(m_item));
        stack.redo();
        QVERIFY(m_library->GetAccessor().ItemIsDirty(m_item));
    }

    void whatFollowsAChangeGoesBackWithIt()
    {
        const ItemID other = m_library->Add(NewItem::Compound("Mix"));
        m_record.m_settle = [&] {
            const std::string tags = TagsOf(m_library->GetAccessor(), m_item);
            m_library->Follow(other, {"Mix", tags, m_library->GetDataSources()[0].get(), false}, eFollowing::eChange);
        };
        m_library->SetTags(other, "old", &m_layer->GetCommandManager());
        m_library->SetTags(other, "", &m_layer->GetCommandManager());
        QVERIFY(Commit(m_library->GetAccessor()));
        NotificationSpy spy(m_library->GetAccessor());
        m_library->SetTags(m_item, "a", &m_layer->GetCommandManager());
        QCOMPARE(Text(spy.Take()), QByteArray("begin, tags Blend ApplicationTags, begin, tags Mix ApplicationTags, "
                                              "end, end"));
        m_layer->GetCommandManager().GetStack().undo();
        QCOMPARE(Text(TagsOf(m_library->GetAccessor(), other)), QByteArray());
        QVERIFY(!m_library->GetAccessor().ItemIsDirty(other));
    }

    void aDroppedItemIsGoneForGood()
    {
        NotificationSpy spy(m_library->GetAccessor());
        m_library->Drop(m_item);
        QCOMPARE(Text(spy.Take()), QByteArray("begin, removed Blend, end"));
        QCOMPARE(Text(m_record.Take()), QByteArray());
        QCOMPARE(m_library->GetItemCount(), std::size_t(0));
        m_library->Drop(m_item);
        QCOMPARE(Text(spy.Take()), QByteArray());
    }

private:
    void MakeChange(int in_change)
    {
        CommandManager* const commands = &m_layer->GetCommandManager();
        const ItemLibraryAccessor library = m_library->GetAccessor();
        CompoundModifierAccessor modifier;
        LoopCompoundModifierAccessor loopModifier;
        switch (in_change)
        {
        case 0:
            Rename(library, m_item, "Mix", commands);
            return;
        case 1:
            SetTags(library, m_item, "a;b", commands);
            return;
        case 2:
            SetTags(library, m_item, "a", commands, "Words");
            return;
        case 3:
            nexa4::IHelper::GetHelper(ObjectOf(m_item).GetManager()->GetDatabase())
                ->MoveToDataSource(ObjectOf(m_item), nexa4::NEXAPtr<nexa4::IDataSource>(m_library->GetDataSources()[1]),
                                   true);
            return;
        case 4:
        case 5:
            modifier.CreateAndSetFromNewCompound(library, "New", in_change == 5, "", "", commands);
            return;
        case 6:
            loopModifier.CreateAndSetFromNewLoopCompound(library, "New", "", "", commands);
            return;
        default:
            m_library->Remove(m_item, commands);
        }
    }

    Record m_record;
    std::unique_ptr<DataLayer> m_layer;
    Library* m_library = nullptr;
    DataSource* m_other = nullptr;
    ItemID m_item;
};

NODEBROWSER_TEST_MAIN(TestStore)
#include "test_store.moc"
