// SPDX-License-Identifier: MIT
#include "datamodel/provider.h"
#include "memorymodel/datalayer.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QWheelEvent>

#include <map>
#include <set>

using memorymodel::NewItem;
using vireo::datamodel::ContextPtr;
using vireo::datamodel::CSimpleValue;
using vireo::datamodel::IItem;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::ItemTOCAccessor;
using vireo::datamodel::UnspecifiedAccessor;

namespace
{

/// What was asked about which item; the invalid identity stands for the library itself.
using Reads = std::vector<std::pair<QString, ItemID>>;

/// An item that writes down what it is asked.
class WatchedItem : public vireo::datamodel::IContext, public IItem
{
public:
    WatchedItem(Reads& out_reads, const ItemAccessor& in_item) : m_reads(out_reads), m_item(in_item) {}

    const ItemAccessor& GetWatched() const { return m_item; }
    bool IsAlive() const override { return m_item.IsValid(); }
    ItemID GetItemID() const override
    {
        m_reads.emplace_back(QString::fromLatin1("identity"), m_item.GetItemID());
        return m_item.GetItemID();
    }
    CSimpleValue GetValue(const char* in_key) const override
    {
        m_reads.emplace_back(QString::fromLatin1("value"), m_item.GetItemID());
        return m_item.GetValue(in_key);
    }

private:
    Reads& m_reads;
    ItemAccessor m_item;
};

class WatchedIterator : public vireo::datamodel::IItemIterator
{
public:
    WatchedIterator(Reads& out_reads, vireo::datamodel::ItemIterator in_items)
        : m_reads(out_reads), m_items(std::move(in_items))
    {
    }
    bool IsAtEnd() const override { return m_items.IsAtEnd(); }
    void Next() override { m_items.Next(); }
    ItemAccessor GetItem() const override
    {
        return ItemAccessor(UnspecifiedAccessor(std::make_shared<WatchedItem>(m_reads, m_items.GetItem())));
    }

private:
    Reads& m_reads;
    vireo::datamodel::ItemIterator m_items;
};

class WatchedTOC : public vireo::datamodel::IContext, public vireo::datamodel::IItemTOC
{
public:
    WatchedTOC(Reads& out_reads, const ItemTOCAccessor& in_toc) : m_reads(out_reads), m_toc(in_toc) {}

    bool IsAlive() const override { return m_toc.IsValid(); }
    std::unique_ptr<vireo::datamodel::IItemIterator> IterateItems(const char* in_type) const override
    {
        m_reads.emplace_back(QString::fromLatin1("iterate %1").arg(QLatin1String(in_type)), ItemID());
        return std::unique_ptr<vireo::datamodel::IItemIterator>(
            new WatchedIterator(m_reads, m_toc.IterateItems(in_type)));
    }
    void AddObserver(vireo::datamodel::IItemTOCNotification* in_observer, int in_kind, const ContextPtr&) override
    {
        m_toc.AddObserver(in_observer, in_kind, m_toc.GetContext());
    }
    void RemoveObserver(vireo::datamodel::IItemTOCNotification* in_observer, int in_kind, const ContextPtr&) override
    {
        m_toc.RemoveObserver(in_observer, in_kind, m_toc.GetContext());
    }

private:
    Reads& m_reads;
    ItemTOCAccessor m_toc;
};

class WatchedLibrary : public vireo::datamodel::IContext, public vireo::datamodel::IItemLibrary
{
public:
    WatchedLibrary(Reads& out_reads, const ItemLibraryAccessor& in_library) : m_reads(out_reads), m_library(in_library)
    {
    }

    const ItemLibraryAccessor& GetWatched() const { return m_library; }
    bool IsAlive() const override { return m_library.IsValid(); }
    std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const override
    {
        m_reads.emplace_back(QString::fromLatin1("name"), in_item);
        return m_library.GetItemName(in_item, in_displayName, in_scope);
    }
    std::string GetItemTags(const ItemID& in_item, const char* in_key) const override
    {
        m_reads.emplace_back(QString::fromLatin1("tags"), in_item);
        return m_library.GetItemTags(in_item, in_key);
    }
    bool ItemIsReadOnly(const ItemID& in_item) const override
    {
        m_reads.emplace_back(QString::fromLatin1("read-only"), in_item);
        return m_library.ItemIsReadOnly(in_item);
    }
    bool ItemIsDirty(const ItemID& in_item) const override
    {
        m_reads.emplace_back(QString::fromLatin1("dirty"), in_item);
        return m_library.ItemIsDirty(in_item);
    }
    UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const override
    {
        m_reads.emplace_back(QString::fromLatin1("model"), in_item);
        return m_library.GetModel(in_item, out_error);
    }
    void AddObserver(vireo::datamodel::IItemLibraryNotification* in_observer, int in_kind, const ContextPtr&) override
    {
        m_library.AddObserver(in_observer, in_kind, m_library.GetContext());
    }
    void RemoveObserver(vireo::datamodel::IItemLibraryNotification* in_observer, int in_kind,
                        const ContextPtr&) override
    {
        m_library.RemoveObserver(in_observer, in_kind, m_library.GetContext());
    }

private:
    Reads& m_reads;
    ItemLibraryAccessor m_library;
};

/// Stands between the browser and the data layer, and writes down every question about items.
class WatchedLayer : private vireo::datamodel::IItemModel
{
public:
    WatchedLayer()
    {
        m_watched = InstallProvider(Provider());
        Provider provider = m_watched;
        provider.m_items = this;
        InstallProvider(provider);
    }
    ~WatchedLayer() override { InstallProvider(m_watched); }
    WatchedLayer(const WatchedLayer&) = delete;
    WatchedLayer& operator=(const WatchedLayer&) = delete;

    ItemLibraryAccessor Watch(const ItemLibraryAccessor& in_library)
    {
        return ItemLibraryAccessor(UnspecifiedAccessor(std::make_shared<WatchedLibrary>(m_reads, in_library)));
    }

    /// How often the items of one type were gone through: once per rebuild.
    int CountRebuilds() const
    {
        int count = 0;
        for (const auto& read : m_reads)
            count += read.first == QString::fromLatin1("iterate Solver") ? 1 : 0;
        return count;
    }

    Reads m_reads;

private:
    static ItemAccessor Unwrap(const ItemAccessor& in_item)
    {
        const WatchedItem* const item = dynamic_cast<const WatchedItem*>(in_item.GetContext().get());
        return item ? item->GetWatched() : in_item;
    }

    ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library) override
    {
        const WatchedLibrary* const library = dynamic_cast<const WatchedLibrary*>(in_library.GetContext().get());
        return library ? ItemTOCAccessor(UnspecifiedAccessor(
                             std::make_shared<WatchedTOC>(m_reads, m_watched.m_items->GetTOC(library->GetWatched()))))
                       : m_watched.m_items->GetTOC(in_library);
    }
    bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name) override
    {
        return m_watched.m_items->IsNameInNodeLibraryHierarchy(in_library, in_name);
    }
    bool IsAbstractFunction(ItemAccessor& in_item) override
    {
        ItemAccessor item = Unwrap(in_item);
        m_reads.emplace_back(QString::fromLatin1("signature"), item.GetItemID());
        return m_watched.m_items->IsAbstractFunction(item);
    }
    bool IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item) override
    {
        ItemAccessor item = Unwrap(in_item);
        m_reads.emplace_back(QString::fromLatin1("graph item"), item.GetItemID());
        return m_watched.m_items->IsValidGraphItemType(in_typeName, item);
    }
    void SetGlobalVireoCompoundTarget(const vireo::datamodel::CompoundAccessor& in_target,
                                      const vireo::datamodel::CompoundAccessor& in_root) override
    {
        m_watched.m_items->SetGlobalVireoCompoundTarget(in_target, in_root);
    }
    const char* GetItemIDUID(const ItemID& in_item) override
    {
        m_reads.emplace_back(QString::fromLatin1("object"), in_item);
        return m_watched.m_items->GetItemIDUID(in_item);
    }
    hmx::fwk::ICommandManager* GetApplicationCommandManager() override
    {
        return m_watched.m_items->GetApplicationCommandManager();
    }

    Provider m_watched;
};

} // namespace

/// What the browser asks the library for: nothing that it does not need.
class TestReads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_layer.reset(new memorymodel::DataLayer);
        m_library = &m_layer->AddLibrary("Many");
        for (int i = 0; i < 300; ++i)
        {
            const std::string name =
                QString::fromLatin1("Node %1").arg(i, 3, 10, QLatin1Char('0')).toLatin1().constData();
            m_library->Add((i % 2 ? NewItem::Compound(name) : NewItem::Solver(name)).Tags(i % 3 ? "mix" : "noise;2d"));
        }
        m_watch.reset(new WatchedLayer);
        m_browser.reset(new ProbedBrowser);
        m_browser->SetItemLibrary(m_watch->Watch(m_library->GetAccessor()));
        ShowBrowser(*m_browser, 300, 43 + 10 * 24 + 5);
        m_watch->m_reads.clear();
    }

    void cleanup()
    {
        m_browser.reset();
        m_watch.reset();
        m_layer.reset();
    }

    void aPaintAsksForTheRowsInTheListAreaAndForNoOthers_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("rows");
        QTest::newRow("at the top") << 0 << 11;
        QTest::newRow("in the middle, rows cut at both ends") << 1210 << 11;
        QTest::newRow("one pixel of the first row") << 23 << 12;
        QTest::newRow("at the end") << 300 * 24 - 245 << 11;
    }

    void aPaintAsksForTheRowsInTheListAreaAndForNoOthers()
    {
        QFETCH(int, offset);
        QFETCH(int, rows);
        m_browser->ScrollBar().setValue(offset);
        Settle();
        QCOMPARE(m_browser->ScrollBar().value(), offset);
        m_watch->m_reads.clear();
        m_browser->repaint();
        QCOMPARE(int(NamedItems().size()), rows);
        QVERIFY(NamedItems() == VisibleItems());
        CheckReads();
    }

    void aWheelStepAsksForTheRowsInSight()
    {
        const QPoint point(100, 100);
        for (int step = 0; step < 5; ++step)
        {
            m_watch->m_reads.clear();
            QWheelEvent wheel = testcompat::MakeWheelEvent(point, m_browser->mapToGlobal(point), -120, Qt::Vertical);
            QApplication::sendEvent(m_browser.get(), &wheel);
            Settle();
            QCOMPARE(m_browser->ScrollBar().value(), 72 * (step + 1));
            QVERIFY(NamedItems() == VisibleItems());
            CheckReads();
        }
    }

    void aKeyStrokeAsksForNothingButTheRowsInSight()
    {
        const char* const texts[] = {"n", "no", "node", "node 1", "node 17", "mix", "2d", "zzz", "zzz ", ""};
        for (const char* const text : texts)
        {
            m_watch->m_reads.clear();
            m_browser->SearchField().setText(QString::fromLatin1(text));
            QVERIFY2(m_watch->m_reads.empty(), text);
            Settle();
            QVERIFY2(NamedItems() == VisibleItems(), text);
            CheckReads();
        }
    }

    void aKeyStrokeAsksForNoMoreOnceAnItemHasLeftOrComeBack()
    {
        const ItemID item = m_library->GetItems().front();
        m_library->Remove(item, &m_layer->GetCommandManager());
        Settle();
        SearchAndCheck("no");
        m_layer->GetCommandManager().GetStack().undo();
        Settle();
        SearchAndCheck("nod");
        m_library->Remove(item, &m_layer->GetCommandManager());
        m_layer->GetCommandManager().GetStack().undo();
        Settle();
        SearchAndCheck("node");
    }

    void aTabAsksForNothingButTheRowsInSight()
    {
        for (const int tab : {2, 1, 0})
        {
            m_watch->m_reads.clear();
            m_browser->TabBar()->setCurrentIndex(tab);
            Settle();
            QVERIFY(NamedItems() == VisibleItems());
            CheckReads();
        }
    }

    void aBurstRebuildsOnce()
    {
        vireo::datamodel::IItemTOCNotification& toc = *m_browser;
        vireo::datamodel::IItemLibraryNotification& notifications = *m_browser;
        const std::vector<ItemID> items = m_library->GetItems();
        ItemLibraryAccessor library = m_library->GetAccessor();
        ItemAccessor item = m_browser->GetRowItem(0);
        CountPaints(*m_browser, [&] {
            for (int i = 0; i < 10000; ++i)
            {
                toc.ItemAdded(item);
                notifications.ItemTagsChanged(library, items[static_cast<std::size_t>(i) % items.size()],
                                              vireo::datamodel::gApplicationTagsKey);
            }
            QCOMPARE(m_watch->CountRebuilds(), 0);
        });
        QCOMPARE(m_watch->CountRebuilds(), 1);
    }

    void aRebuildReadsEachItemOnce()
    {
        m_library->Add(NewItem::Solver("Z"));
        Settle();
        QCOMPARE(m_watch->CountRebuilds(), 1);
        const std::set<ItemID> visible = VisibleItems();
        std::map<std::pair<QString, ItemID>, int> counts;
        for (const auto& read : m_watch->m_reads)
            ++counts[read];
        for (const ItemID& item : m_library->GetItems())
        {
            QCOMPARE(counts[std::make_pair(QString::fromLatin1("tags"), item)], 1);
            QCOMPARE(counts[std::make_pair(QString::fromLatin1("object"), item)], 1);
            // The rows in sight ask for their names again, once per frame.
            if (visible.count(item) == 0)
                QCOMPARE(counts[std::make_pair(QString::fromLatin1("name"), item)], 1);
        }
    }

private:
    void SearchAndCheck(const char* in_text)
    {
        m_watch->m_reads.clear();
        m_browser->SearchField().setText(QString::fromLatin1(in_text));
        Settle();
        QVERIFY2(NamedItems() == VisibleItems(), in_text);
        CheckReads();
    }

    std::set<ItemID> NamedItems() const
    {
        std::set<ItemID> items;
        for (const auto& read : m_watch->m_reads)
            if (read.first == QString::fromLatin1("name"))
                items.insert(read.second);
        return items;
    }

    /// The items of the rows of which at least a line of pixels lies in the list area.
    std::set<ItemID> VisibleItems() const
    {
        const Reads before = m_watch->m_reads;
        std::set<ItemID> items;
        for (std::size_t row = 0; row < m_browser->GetRowCount(); ++row)
        {
            const int top = m_browser->ListTop() - m_browser->ScrollBar().value() + 24 * static_cast<int>(row);
            if (top + 24 > m_browser->ListTop() && top < m_browser->height())
                items.insert(m_browser->GetRowItem(row).GetItemID());
        }
        m_watch->m_reads = before;
        return items;
    }

    /// Only what a row shows was asked for, and only of rows in sight.
    void CheckReads()
    {
        const std::set<ItemID> visible = VisibleItems();
        for (const auto& read : m_watch->m_reads)
        {
            const QByteArray what = read.first.toLatin1();
            QVERIFY2(what == "name" || what == "dirty" || what == "identity", what.constData());
            QVERIFY2(visible.count(read.second) == 1, what.constData());
        }
    }

    std::unique_ptr<memorymodel::DataLayer> m_layer;
    memorymodel::Library* m_library = nullptr;
    std::unique_ptr<WatchedLayer> m_watch;
    std::unique_ptr<ProbedBrowser> m_browser;
};

NODEBROWSER_TEST_MAIN(TestReads)
#include "test_reads.moc"
