// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/support/testmain.h"

#include <functional>

using memorymodel::NewItem;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;

namespace
{

/// Does something while it is told of an item that leaves.
class Bystander : public vireo::datamodel::IItemTOCNotification
{
public:
    void ItemAdded(ItemAccessor&) override {}
    void ItemRemoved(ItemAccessor&) override { m_action(); }

    std::function<void()> m_action;
};

} // namespace

/// What the browser is like between a change and the paint that takes it in, or when a paint comes in the middle of
/// one.
class TestBetweenPaints : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void untilThePaintRowsAreRanksInTheNewList()
    {
        memorymodel::DataLayer layer;
        memorymodel::Library& before = layer.AddLibrary("Before");
        memorymodel::Library& after = layer.AddLibrary("After");
        for (const char* const name : {"a", "b", "c", "d"})
            before.Add(NewItem::Solver(name));
        for (const char* const name : {"z", "y", "x", "w"})
            after.Add(NewItem::Solver(name));
        ProbedBrowser browser;
        browser.SetItemLibrary(before.GetAccessor());
        ShowBrowser(browser);
        QTest::mouseClick(&browser, Qt::LeftButton, Qt::NoModifier, browser.RowCentre(0));
        QCOMPARE(NameOf(before, browser.GetSelection()), QString::fromLatin1("a"));
        browser.SetItemLibrary(after.GetAccessor());
        QCOMPARE(NameOf(after, browser.GetSelection()), QString::fromLatin1("w"));
        Settle();
        QCOMPARE(NameOf(after, browser.GetSelection()), QString::fromLatin1("w"));
    }

    /// The item is still listed while its removal is notified, and nothing notifies the browser when it has gone.
    void aPaintWhileAnItemLeavesDoesNotKeepIt()
    {
        memorymodel::DataLayer layer;
        memorymodel::Library& library = layer.AddLibrary("A");
        const ItemID blend = library.Add(NewItem::Solver("blend"));
        library.Add(NewItem::Solver("mix"));
        ProbedBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        ShowBrowser(browser);
        const vireo::datamodel::ItemTOCAccessor toc = GetTOC(library.GetAccessor());
        Bystander bystander;
        bystander.m_action = [&browser] { browser.repaint(); };
        toc.AddObserver(&bystander, vireo::datamodel::eItemTOCNotificationKind, toc.GetContext());
        library.Remove(blend);
        toc.RemoveObserver(&bystander, vireo::datamodel::eItemTOCNotificationKind, toc.GetContext());
        for (const char* const text : {"ble", "m", ""})
        {
            browser.SearchField().setText(QString::fromLatin1(text));
            Settle();
            QCOMPARE(browser.RowNames(library.GetAccessor()).join(QLatin1String(",")),
                     QString::fromLatin1(*text == 'b' ? "" : "mix"));
        }
    }

    void changesAreTakenInWhenNothingOfTheListIsInSight_data()
    {
        QTest::addColumn<int>("visible");
        QTest::newRow("the search field") << gHeaderHeight;
        QTest::newRow("the whole header") << gBrowserTop;
        QTest::newRow("a line of the list") << gBrowserTop + 1;
    }

    void changesAreTakenInWhenNothingOfTheListIsInSight()
    {
        QFETCH(int, visible);
        memorymodel::DataLayer layer;
        memorymodel::Library& library = layer.AddLibrary("A");
        library.Add(NewItem::Solver("a"));
        QWidget frame;
        frame.resize(300, visible);
        ProbedBrowser* const browser = new ProbedBrowser;
        browser->setParent(&frame);
        browser->resize(300, 400);
        browser->SetItemLibrary(library.GetAccessor());
        QApplication::setCursorFlashTime(0);
        frame.show();
        QVERIFY(WaitFor([browser] { return browser->m_paints > 0; }));
        Settle();
        QCOMPARE(browser->GetRowCount(), std::size_t(1));
        library.Add(NewItem::Solver("b"));
        Settle();
        QCOMPARE(browser->GetRowCount(), std::size_t(2));
    }

private:
    static QString NameOf(const memorymodel::Library& in_library, const ItemID& in_item)
    {
        return QString::fromLatin1(in_library.GetAccessor().GetItemName(in_item, true, nullptr).c_str());
    }
};

NODEBROWSER_TEST_MAIN(TestBetweenPaints)
#include "test_betweenpaints.moc"
