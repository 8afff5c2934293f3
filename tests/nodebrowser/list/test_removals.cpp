// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/support/testmain.h"
#include "tests/support/waiting.h"

#include <QEventLoop>
#include <QTimer>

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>

using vireo::datamodel::IItemTOCNotification;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::UnspecifiedAccessor;
using vireo::datamodel::VireoType;

namespace
{

/// How many blocks of memory the program holds.
long gBlocks = 0;

void* Allocate(std::size_t in_size)
{
    void* const block = std::malloc(in_size ? in_size : 1);
    if (!block)
        throw std::bad_alloc();
    ++gBlocks;
    return block;
}

void Free(void* in_block)
{
    if (!in_block)
        return;
    --gBlocks;
    std::free(in_block);
}

} // namespace

// This program counts its own memory. It runs on one thread.
void* operator new(std::size_t in_size)
{
    return Allocate(in_size);
}
void* operator new[](std::size_t in_size)
{
    return Allocate(in_size);
}
void* operator new(std::size_t in_size, const std::nothrow_t&) noexcept
{
    void* const block = std::malloc(in_size ? in_size : 1);
    gBlocks += block ? 1 : 0;
    return block;
}
void* operator new[](std::size_t in_size, const std::nothrow_t& in_tag) noexcept
{
    return operator new(in_size, in_tag);
}
void operator delete(void* in_block) noexcept
{
    Free(in_block);
}
void operator delete[](void* in_block) noexcept
{
    Free(in_block);
}
void operator delete(void* in_block, std::size_t) noexcept
{
    Free(in_block);
}
void operator delete[](void* in_block, std::size_t) noexcept
{
    Free(in_block);
}

namespace
{

/// Does something while it is notified that an item leaves. It comes after the browser.
class Bystander : public IItemTOCNotification
{
public:
    void ItemAdded(ItemAccessor&) override {}
    void ItemRemoved(ItemAccessor&) override { m_action(); }

    std::function<void()> m_action;
};

/// Calls a function for each observer of a table of contents, with an item that is in no library.
template <class Notification> void NotifyOfStranger(FakeLayer& io_layer, int in_number, Notification in_notify)
{
    const std::shared_ptr<FakeItem> item = std::make_shared<FakeItem>();
    item->m_recorder = &io_layer;
    item->m_id = vireo::datamodel::ItemID(VireoType::gSolver, 77, static_cast<std::uint64_t>(in_number));
    item->m_name = "stranger";
    ItemAccessor accessor((UnspecifiedAccessor(item)));
    const std::vector<IItemTOCNotification*> observers = io_layer.m_contents->m_observers;
    for (IItemTOCNotification* const observer : observers)
        in_notify(*observer, accessor);
    item->m_alive = false;
}

void NotifyRemoved(IItemTOCNotification& in_observer, ItemAccessor& in_item)
{
    in_observer.ItemRemoved(in_item);
}

void NotifyAdded(IItemTOCNotification& in_observer, ItemAccessor& in_item)
{
    in_observer.ItemAdded(in_item);
}

} // namespace

/// What the browser does when it is notified that items come and go.
class TestRemovals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theItemThatComesOrGoesIsAskedForNothing_data()
    {
        QTest::addColumn<bool>("added");
        QTest::newRow("added") << true;
        QTest::newRow("removed") << false;
    }

    void theItemThatComesOrGoesIsAskedForNothing()
    {
        QFETCH(bool, added);
        FakeLayer layer;
        layer.AddNodes(3);
        ProbedBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        layer.Forget();
        layer.When("identity stranger", [] { throw std::runtime_error("the item is broken"); });
        layer.When("value stranger", [] { throw std::runtime_error("the item is broken"); });
        NotifyOfStranger(layer, 1, added ? NotifyAdded : NotifyRemoved);
        QVERIFY(layer.Log().isEmpty());
        Settle();
        QCOMPARE(layer.CountRebuilds(), 1);
        QCOMPARE(browser.GetRowCount(), std::size_t(3));
    }

    void anAccessorOfNothingLeadsToARebuildToo()
    {
        FakeLayer layer;
        layer.AddNodes(3);
        ProbedBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        layer.Forget();
        ItemAccessor nothing;
        layer.m_contents->m_observers.front()->ItemRemoved(nothing);
        Settle();
        QCOMPARE(layer.CountRebuilds(), 1);
    }

    void aHiddenBrowserHoldsNothingOfWhatLeaves_data()
    {
        QTest::addColumn<int>("period");
        QTest::newRow("without the event loop") << 0;
        QTest::newRow("with the event loop now and then") << 10000;
    }

    void aHiddenBrowserHoldsNothingOfWhatLeaves()
    {
        QFETCH(int, period);
        FakeLayer layer;
        layer.AddNodes(10);
        ProbedBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        browser.hide();
        Settle();
        layer.Forget();
        NotifyOfStranger(layer, 0, NotifyRemoved); // what is held once is held
        const long before = gBlocks;
        for (int i = 1; i <= 100000; ++i)
        {
            NotifyOfStranger(layer, i, NotifyRemoved);
            if (period && i % period == 0)
                Settle();
        }
        const long held = gBlocks - before;
        QVERIFY2(held < 100, QByteArray::number(static_cast<qlonglong>(held)).constData());
        QCOMPARE(layer.CountRebuilds(), 0);
        browser.show();
        Settle();
        QCOMPARE(layer.CountRebuilds(), 1);
        QCOMPARE(browser.GetRowCount(), std::size_t(10));
    }

    void aPaintInTheMiddleOfARemovalKeepsNoRow_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("search");
        QTest::addColumn<bool>("grab");
        for (int tab = 0; tab <= 2; tab += 2)
            for (const char* const search : {"", "n", "001", "solver"})
                for (const bool grab : {false, true})
                    QTest::newRow(
                        (std::string(tab ? "all" : "nodes") + ", '" + search + "', " + (grab ? "grabbed" : "repainted"))
                            .c_str())
                        << tab << QString::fromLatin1(search) << grab;
    }

    void aPaintInTheMiddleOfARemovalKeepsNoRow()
    {
        QFETCH(int, tab);
        QFETCH(QString, search);
        QFETCH(bool, grab);
        FakeLayer layer;
        layer.AddNodes(4);
        ProbedBrowser browser;
        browser.TabBar()->setCurrentIndex(tab);
        browser.SearchField().setText(search);
        ShowLibrary(browser, layer.GetAccessor());
        const std::size_t rows = browser.GetRowCount();
        Bystander bystander;
        bystander.m_action = [&browser, grab] {
            if (!grab)
                browser.repaint();
            QImage picture(300, 400, QImage::Format_ARGB32);
            if (grab)
                browser.render(&picture);
        };
        layer.m_contents->m_observers.push_back(&bystander);
        const int paints = browser.m_paints;
        layer.Remove(1);
        QVERIFY(browser.m_paints > paints);
        Settle();
        QCOMPARE(browser.GetRowCount(), rows - 1);
        QVERIFY(!browser.RowNames(layer.GetAccessor()).contains(QString::fromLatin1("Node 001")));
        QVERIFY(!browser.RowNames(layer.GetAccessor()).contains(QString()));
        // The picture is that of a browser that never saw the item.
        ProbedBrowser other;
        other.TabBar()->setCurrentIndex(tab);
        other.SearchField().setText(search);
        ShowLibrary(other, layer.GetAccessor());
        QImage picture(300, 400, QImage::Format_ARGB32);
        picture.fill(0);
        QImage expected = picture;
        browser.SearchField().clearFocus();
        other.SearchField().clearFocus();
        Settle();
        browser.render(&picture);
        other.render(&expected);
        const QRect list(0, browser.ListTop(), 300, 400 - browser.ListTop());
        QCOMPARE(picture.copy(list), expected.copy(list));
    }

    void aRemovalInTheMiddleOfAnotherKeepsNoRow()
    {
        FakeLayer layer;
        layer.AddNodes(5);
        ProbedBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        Bystander bystander;
        bool nested = false;
        bystander.m_action = [&] {
            browser.repaint();
            if (nested)
                return;
            nested = true;
            layer.Remove(3);
            browser.repaint();
        };
        layer.m_contents->m_observers.push_back(&bystander);
        layer.Remove(1);
        Settle();
        QCOMPARE(browser.RowNames(layer.GetAccessor()).join(QLatin1String(",")),
                 QString::fromLatin1("Node 000,Node 002,Node 004"));
    }

    /// A message box that says what was removed is such a loop.
    void anEventLoopInTheMiddleOfARemovalKeepsNoRow()
    {
        FakeLayer layer;
        layer.AddNodes(4);
        ProbedBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        Bystander bystander;
        int paintsInside = 0;
        bystander.m_action = [&] {
            const int before = browser.m_paints;
            QEventLoop inner;
            QTimer::singleShot(50, &inner, SLOT(quit()));
            inner.exec();
            paintsInside = browser.m_paints - before;
        };
        layer.m_contents->m_observers.push_back(&bystander);
        RunInEventLoop([&layer] { layer.Remove(1); });
        Settle();
        QVERIFY(paintsInside > 0);
        QCOMPARE(browser.RowNames(layer.GetAccessor()).join(QLatin1String(",")),
                 QString::fromLatin1("Node 000,Node 002,Node 003"));
    }

    void aBrowserThatGoesAfterARemovalLooksForNothing()
    {
        FakeLayer layer;
        layer.AddNodes(4);
        std::unique_ptr<ProbedBrowser> browser(new ProbedBrowser);
        ShowLibrary(*browser, layer.GetAccessor());
        layer.Remove(1);
        browser.reset();
        layer.Forget();
        Settle();
        QVERIFY(layer.Log().isEmpty());
    }

    /// A search after the removal and before the event loop runs is one over items that are gone.
    void aSearchBeforeTheEventLoopRunsFindsNoItemThatIsGone()
    {
        FakeLayer layer;
        layer.AddNodes(5);
        ProbedBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        Bystander bystander;
        bystander.m_action = [&browser] { browser.repaint(); };
        layer.m_contents->m_observers.push_back(&bystander);
        layer.Remove(1);
        layer.m_contents->m_observers.pop_back();
        browser.SearchField().setText(QString::fromLatin1("00"));
        browser.repaint();
        QCOMPARE(browser.GetRowCount(), std::size_t(4));
        browser.TabBar()->setCurrentIndex(2);
        browser.repaint();
        QCOMPARE(browser.GetRowCount(), std::size_t(4));
        Settle();
        QCOMPARE(browser.RowNames(layer.GetAccessor()).join(QLatin1String(",")),
                 QString::fromLatin1("Node 000,Node 002,Node 003,Node 004"));
    }

    /// The last look costs nothing where there is nothing to see.
    void aRemovalWithoutAPaintInBetweenIsOneRebuild()
    {
        FakeLayer layer;
        layer.AddNodes(5);
        ProbedBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        layer.Forget();
        layer.Remove(1);
        layer.Remove(1);
        Settle();
        QCOMPARE(layer.CountRebuilds(), 1);
        QCOMPARE(browser.GetRowCount(), std::size_t(3));
    }
};

NODEBROWSER_TEST_MAIN(TestRemovals)
#include "test_removals.moc"
