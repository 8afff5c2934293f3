// SPDX-License-Identifier: MIT
#include "nodebrowser/itemkind.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/support/testmain.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QSignalSpy>

#include <memory>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;

namespace
{

QAccessibleInterface* ListOf(ProbedBrowser& in_browser)
{
    QAccessibleInterface* const browser = QAccessible::queryAccessibleInterface(&in_browser);
    return browser ? browser->child(browser->childCount() - 1) : nullptr;
}

QString NameOf(const QAccessibleInterface* in_interface)
{
    return in_interface ? in_interface->text(QAccessible::Name) : QString::fromLatin1("none");
}

QString DescriptionOf(const QAccessibleInterface* in_interface)
{
    return in_interface ? in_interface->text(QAccessible::Description) : QString::fromLatin1("none");
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_layer.reset(new DataLayer);
        m_library = &m_layer->AddLibrary("A");
        Library& library = *m_library;
        library.Add(NewItem::Compound("Blend"));
        library.Add(NewItem::Signature("Grade"));
        library.Add(NewItem::Solver("Noise"));
        library.Add(NewItem::Type("Colour"));
        library.Add(NewItem::GlobalConstant("Pi"));
        m_browser.reset(new ProbedBrowser);
        m_browser->SetItemLibrary(library.GetAccessor());
        m_browser->resize(300, 400);
        ShowBrowser(*m_browser);
        m_browser->TabBar()->setCurrentIndex(2);
        Settle();
    }

    void cleanup()
    {
        m_browser.reset();
        m_layer.reset();
    }

    void theRowsAreAListBehindTheWidgets()
    {
        QAccessibleInterface* const browser = QAccessible::queryAccessibleInterface(m_browser.get());
        QVERIFY(browser);
        QCOMPARE(browser->role(), QAccessible::Grouping);
        QAccessibleInterface* const list = ListOf(*m_browser);
        QVERIFY(list);
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(NameOf(list), QString::fromLatin1("Items"));
        QCOMPARE(list->childCount(), 5);
        QVERIFY(list->parent() == browser);
        QCOMPARE(browser->indexOfChild(list), browser->childCount() - 1);
        QVERIFY(list->isValid());
        for (int child = 0; child < browser->childCount() - 1; ++child)
            QVERIFY(browser->child(child)->object());
        QCOMPARE(list->rect().topLeft(), m_browser->mapToGlobal(QPoint(0, gBrowserTop)));
    }

    void aRowHasItsNameItsKindAndItsPlace_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("description");
        QTest::addColumn<QStringList>("actions");
        const QStringList both = QStringList(QString::fromLatin1("Select")) << QString::fromLatin1("Open");
        const QStringList one = both.mid(0, 1);
        QTest::newRow("compound") << 0 << QString::fromLatin1("Blend") << QString::fromLatin1("compound") << both;
        QTest::newRow("type") << 1 << QString::fromLatin1("Colour") << QString::fromLatin1("type") << one;
        QTest::newRow("signature") << 2 << QString::fromLatin1("Grade") << QString::fromLatin1("signature") << both;
        QTest::newRow("solver") << 3 << QString::fromLatin1("Noise") << QString::fromLatin1("solver") << one;
        QTest::newRow("constant") << 4 << QString::fromLatin1("Pi") << QString::fromLatin1("global constant") << one;
    }

    void aRowHasItsNameItsKindAndItsPlace()
    {
        QFETCH(int, row);
        QFETCH(QString, name);
        QFETCH(QString, description);
        QFETCH(QStringList, actions);
        QAccessibleInterface* const list = ListOf(*m_browser);
        QAccessibleInterface* const child = list->child(row);
        QVERIFY(child);
        QCOMPARE(child->role(), QAccessible::ListItem);
        QCOMPARE(NameOf(child), name);
        QCOMPARE(DescriptionOf(child), description);
        QVERIFY(child->parent() == list);
        QCOMPARE(list->indexOfChild(child), row);
        QCOMPARE(child->childCount(), 0);
        const QPoint top = m_browser->mapToGlobal(QPoint(0, gBrowserTop + row * gRowHeight));
        QCOMPARE(child->rect(), QRect(top, QSize(300, gRowHeight)));
        const QPoint centre = child->rect().center();
        QVERIFY(list->childAt(centre.x(), centre.y()) == child);
        QVERIFY(QAccessible::queryAccessibleInterface(m_browser.get())->childAt(centre.x(), centre.y()) == list);
        QCOMPARE(child->actionInterface()->actionNames(), actions);
    }

    void aChangedItemIsModified()
    {
        QAccessibleInterface* const row = ListOf(*m_browser)->child(0);
        QCOMPARE(DescriptionOf(row), QString::fromLatin1("compound"));
        QVERIFY(m_library->Rename(m_browser->GetRowItem(0).GetItemID(), "Blend two"));
        Settle();
        QCOMPARE(NameOf(row), QString::fromLatin1("Blend two"));
        QCOMPARE(DescriptionOf(row), QString::fromLatin1("compound, modified"));
    }

    void noRowIsThereBeyondTheLast()
    {
        QAccessibleInterface* const list = ListOf(*m_browser);
        QVERIFY(!list->child(5));
        QVERIFY(!list->child(-1));
        const QPoint below = m_browser->mapToGlobal(QPoint(10, gBrowserTop + 5 * gRowHeight + 5));
        QVERIFY(!list->childAt(below.x(), below.y()));
        QAccessibleInterface* const last = list->child(4);
        m_browser->SearchField().setText(QString::fromLatin1("blend"));
        Settle();
        QVERIFY(!last->isValid());
        QVERIFY(last->state().invalid);
        QCOMPARE(NameOf(last), QString());
        QVERIFY(last->actionInterface()->actionNames().size() == 1);
        last->actionInterface()->doAction(QString::fromLatin1("Select"));
        last->actionInterface()->doAction(QString::fromLatin1("Open"));
        QVERIFY(!m_browser->GetSelection().IsValid());
    }

    void selectingARowIsAClick()
    {
        QSignalSpy spy(m_browser.get(), SIGNAL(SelectionChanged()));
        QAccessibleInterface* const row = ListOf(*m_browser)->child(3);
        QVERIFY(row->state().selectable);
        QVERIFY(!row->state().selected);
        row->actionInterface()->doAction(QString::fromLatin1("Select"));
        QCOMPARE(static_cast<int>(spy.count()), 1);
        QVERIFY(row->state().selected);
        QVERIFY(m_browser->GetSelection() == m_browser->GetRowItem(3).GetItemID());
    }

    void aRowOutOfSightIsScrolledToWhenItIsSelected()
    {
        m_browser->resize(300, gBrowserTop + 2 * gRowHeight);
        Settle();
        QAccessibleInterface* const list = ListOf(*m_browser);
        QVERIFY(list->child(4)->state().offscreen);
        QVERIFY(!list->child(0)->state().offscreen);
        list->child(4)->actionInterface()->doAction(QString::fromLatin1("Select"));
        QVERIFY(!list->child(4)->state().offscreen);
        QCOMPARE(m_browser->ScrollBar().value(), 3 * gRowHeight);
        list->child(1)->actionInterface()->doAction(QString::fromLatin1("Select"));
        QCOMPARE(m_browser->ScrollBar().value(), gRowHeight);
    }

    void openingACompoundIsADoubleClick()
    {
        QAccessibleInterface* const list = ListOf(*m_browser);
        list->child(3)->actionInterface()->doAction(QString::fromLatin1("Open"));
        QVERIFY(!m_layer->GetCompoundTarget().IsValid());
        list->child(0)->actionInterface()->doAction(QString::fromLatin1("Open"));
        QVERIFY(m_layer->GetCompoundTarget().IsValid());
    }

    void theListSaysHowManyWereFound()
    {
        QAccessibleInterface* const list = ListOf(*m_browser);
        QCOMPARE(DescriptionOf(list), QString::fromLatin1("5 found"));
        m_browser->SearchField().setText(QString::fromLatin1("e"));
        Settle();
        QCOMPARE(DescriptionOf(list), QString::fromLatin1("4 found"));
        QCOMPARE(list->childCount(), 4);
    }

    void theWidgetsAroundTheListHaveNames()
    {
        QCOMPARE(NameOf(QAccessible::queryAccessibleInterface(&m_browser->SearchField())),
                 QString::fromLatin1("Search"));
        QCOMPARE(NameOf(QAccessible::queryAccessibleInterface(&m_browser->ClearingButton())),
                 QString::fromLatin1("Clear search"));
        QAccessibleInterface* const tabs = QAccessible::queryAccessibleInterface(m_browser->TabBar());
        QCOMPARE(NameOf(tabs->child(0)), QString::fromLatin1("Nodes"));
        QCOMPARE(NameOf(tabs->child(1)), QString::fromLatin1("Types"));
        QCOMPARE(NameOf(tabs->child(2)), QString::fromLatin1("All"));
    }

    void whatWasMadeGoesWithTheBrowser()
    {
        QAccessibleInterface* const list = ListOf(*m_browser);
        const QAccessible::Id listId = QAccessible::uniqueId(list);
        const QAccessible::Id rowId = QAccessible::uniqueId(list->child(2));
        QVERIFY(QAccessible::accessibleInterface(rowId));
        m_browser.reset();
        QVERIFY(!QAccessible::accessibleInterface(listId));
        QVERIFY(!QAccessible::accessibleInterface(rowId));
    }

private:
    std::unique_ptr<DataLayer> m_layer;
    Library* m_library = nullptr;
    std::unique_ptr<ProbedBrowser> m_browser;
};

NODEBROWSER_TEST_MAIN(TestAccessibility)
#include "test_accessibility.moc"
