// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QWheelEvent>

#include <set>

using memorymodel::NewItem;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;

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
        m_spy.reset(new SpyLayer);
        m_browser.reset(new ProbedBrowser);
        m_browser->SetItemLibrary(m_spy->Watch(m_library->GetAccessor()));
        ShowBrowser(*m_browser, 300, gBrowserTop + 10 * gRowHeight + 5);
        m_spy->Forget();
    }

    void cleanup()
    {
        m_browser.reset();
        m_spy.reset();
        m_layer.reset();
    }

    void aPaintAsksForTheRowsInTheListAreaAndForNoOthers_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("rows");
        QTest::newRow("at the top") << 0 << 11;
        QTest::newRow("in the middle, rows cut at both ends") << 50 * gRowHeight + 10 << 11;
        QTest::newRow("one pixel of the first row") << gRowHeight - 1 << 12;
        QTest::newRow("at the end") << 300 * gRowHeight - 245 << 11;
    }

    void aPaintAsksForTheRowsInTheListAreaAndForNoOthers()
    {
        QFETCH(int, offset);
        QFETCH(int, rows);
        m_browser->ScrollBar().setValue(offset);
        Settle();
        QCOMPARE(m_browser->ScrollBar().value(), offset);
        m_spy->Forget();
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
            m_spy->Forget();
            QWheelEvent wheel = testcompat::MakeWheelEvent(point, m_browser->mapToGlobal(point), -120, Qt::Vertical);
            QApplication::sendEvent(m_browser.get(), &wheel);
            Settle();
            QCOMPARE(m_browser->ScrollBar().value(), 3 * gRowHeight * (step + 1));
            QVERIFY(NamedItems() == VisibleItems());
            CheckReads();
        }
    }

    void aKeyStrokeAsksForNothingButTheRowsInSight()
    {
        const char* const texts[] = {"n", "no", "node", "node 1", "node 17", "mix", "2d", "zzz", "zzz ", ""};
        for (const char* const text : texts)
        {
            m_spy->Forget();
            m_browser->SearchField().setText(QString::fromLatin1(text));
            QVERIFY2(m_spy->m_calls.empty(), text);
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
            m_spy->Forget();
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
            QCOMPARE(m_spy->CountRebuilds(), 0);
        });
        QCOMPARE(m_spy->CountRebuilds(), 1);
    }

    void aRebuildReadsEachItemOnce()
    {
        m_library->Add(NewItem::Solver("Z"));
        Settle();
        QCOMPARE(m_spy->CountRebuilds(), 1);
        const std::set<ItemID> visible = VisibleItems();
        for (const ItemID& item : m_library->GetItems())
        {
            QCOMPARE(m_spy->Count("tags", item), 1);
            QCOMPARE(m_spy->Count("uid", item), 1);
            // The rows in sight ask for their names again, once per frame.
            if (visible.count(item) == 0)
                QCOMPARE(m_spy->Count("name", item), 1);
        }
    }

private:
    void SearchAndCheck(const char* in_text)
    {
        m_spy->Forget();
        m_browser->SearchField().setText(QString::fromLatin1(in_text));
        Settle();
        QVERIFY2(NamedItems() == VisibleItems(), in_text);
        CheckReads();
    }

    std::set<ItemID> NamedItems() const
    {
        std::set<ItemID> items;
        for (const RecordedCall& call : m_spy->m_calls)
            if (call.m_line.startsWith(QLatin1String("name ")))
                items.insert(call.m_item);
        return items;
    }

    /// The items of the rows of which at least a line of pixels lies in the list area.
    std::set<ItemID> VisibleItems() const
    {
        const std::vector<RecordedCall> before = m_spy->m_calls;
        std::set<ItemID> items;
        for (std::size_t row = 0; row < m_browser->GetRowCount(); ++row)
        {
            const int top = m_browser->ListTop() - m_browser->ScrollBar().value() + gRowHeight * static_cast<int>(row);
            if (top + gRowHeight > m_browser->ListTop() && top < m_browser->height())
                items.insert(m_browser->GetRowItem(row).GetItemID());
        }
        m_spy->m_calls = before;
        return items;
    }

    /// Only what a row shows was asked for, and only of rows in sight.
    void CheckReads()
    {
        const std::set<ItemID> visible = VisibleItems();
        for (const RecordedCall& call : m_spy->m_calls)
        {
            const QByteArray line = call.m_line.toLatin1();
            QVERIFY2(line.startsWith("name ") || line.startsWith("dirty ") || line.startsWith("identity "),
                     line.constData());
            QVERIFY2(visible.count(call.m_item) == 1, line.constData());
        }
    }

    std::unique_ptr<memorymodel::DataLayer> m_layer;
    memorymodel::Library* m_library = nullptr;
    std::unique_ptr<SpyLayer> m_spy;
    std::unique_ptr<ProbedBrowser> m_browser;
};

NODEBROWSER_TEST_MAIN(TestReads)
#include "test_reads.moc"
