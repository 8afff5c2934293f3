// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/nodebrowser/support/plaindisplay.h"
#include "tests/support/otherservice.h"
#include "tests/support/testmain.h"

#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "qtcompat/latin1.h"

#include <QHelpEvent>
#include <QToolTip>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIDUnlock;
using vireo::datamodel::VireoType;

namespace
{

/// A tool tip that is told to hide does so 300 ms later, by a timer that may be one part in twenty late. One that is
/// still up after this time was not told to: a timer that is due goes off before the wait ends, however busy the
/// machine is.
const int gHidingTime = 350;

/// The text that source control has about an item.
QString DescribeItem(const ItemID& in_item)
{
    nexa4::IRevisionControlUIHelper* const helper =
        hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
    const nexa4::DbObjectId id(ItemIDUnlock::GetItemIDUID(in_item));
    return ScsUtils::GetToolTip(helper->FindObject(id), FromLatin1(":compound.png"));
}

bool IsTipUp(const char* in_text)
{
    return QToolTip::isVisible() && QToolTip::text() == FromLatin1(in_text);
}

/// The tool tip on the screen; null when there is none.
QWidget* FindTip()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (int i = 0; i < widgets.size(); ++i)
        if (widgets.at(i)->inherits("QTipLabel") && widgets.at(i)->isVisible())
            return widgets.at(i);
    return nullptr;
}

/// Puts a tool tip up that the browser knows nothing of.
bool PutTipUp()
{
    QToolTip::showText(QPoint(600, 500), FromLatin1("up before"));
    return WaitFor([] { return IsTipUp("up before"); });
}

bool TakeTipDown()
{
    QToolTip::hideText();
    return WaitFor([] { return !QToolTip::isVisible(); });
}

/// Hovers over a point of a widget, which leaves a tool tip that is up, or none, as it is, or hides it.
/// \return whether the request was accepted
bool Hover(QWidget& in_widget, const QPoint& in_position)
{
    QHelpEvent help(QEvent::ToolTip, in_position, in_widget.mapToGlobal(in_position));
    QCoreApplication::sendEvent(&in_widget, &help);
    return help.isAccepted();
}

/// Hovers over a point of a widget while no tool tip is up, which puts one up.
bool HoverForTip(QWidget& in_widget, const QPoint& in_position)
{
    return Hover(in_widget, in_position) && QToolTip::isVisible();
}

/// Tells what it is asked for a tool tip, and answers with a text of its own.
class SpokenTips : public PlainDisplay
{
public:
    SpokenTips() { m_active = false; }

    QString GetToolTip(const nexa4::NEXAHandle<nexa4::IDbObject>& in_object, const QString& in_icon) override
    {
        m_objects.push_back(in_object.GetDbObjectId().GetStr());
        m_icons << in_icon;
        return m_text;
    }

    QString m_text;
    std::vector<std::string> m_objects;
    QStringList m_icons;
};

} // namespace

class TestToolTip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        QToolTip::hideText();
        // The tool tip is a widget: it must be gone before the program ends.
        QVERIFY(WaitFor([] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            const QWidgetList widgets = QApplication::topLevelWidgets();
            for (int i = 0; i < widgets.size(); ++i)
                if (widgets.at(i)->inherits("QTipLabel"))
                    return false;
            return true;
        }));
    }

    void aCompoundShowsWhatSourceControlSaysOfIt_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("compound") << 0;
        QTest::newRow("loop compound") << 1;
        QTest::newRow("signature") << 2;
    }

    void aCompoundShowsWhatSourceControlSaysOfIt()
    {
        QFETCH(int, row);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        std::vector<ItemID> items;
        items.push_back(library.Add(NewItem::Compound("1").Tags("unheard of")));
        items.push_back(library.Add(NewItem::LoopCompound("2")));
        items.push_back(library.Add(NewItem::Signature("3")));
        ProbedBrowser browser;
        ShowAll(browser, library.GetAccessor());
        const QString expected = DescribeItem(items[static_cast<std::size_t>(row)]);
        QVERIFY(!expected.isEmpty());
        QVERIFY(HoverForTip(browser, browser.RowCentre(row)));
        QCOMPARE(QToolTip::text(), expected);
    }

    void theTextComesWithTheCompoundIconAndIsShownUnchanged()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("Blend"));
        SpokenTips tips;
        tips.m_text = FromLatin1("  <b>bold</b> & plain  ");
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(HoverForTip(browser, browser.RowCentre(0)));
        QCOMPARE(tips.m_icons, QStringList(FromLatin1(":compound.png")));
        QCOMPARE(tips.m_objects.size(), std::size_t(1));
        QVERIFY(tips.m_objects[0] == nexa4::DbObjectId(ItemIDUnlock::GetItemIDUID(item)).GetStr());
        QCOMPARE(QToolTip::text(), tips.m_text);
    }

    void anEmptyTextHidesTheTipLikeAnyEmptyTip()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend"));
        const SpokenTips tips;
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(PutTipUp());
        QVERIFY(Hover(browser, browser.RowCentre(0)));
        QVERIFY(WaitFor([] { return !QToolTip::isVisible(); }));
    }

    void theTipStandsWhereThePointerIs()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend"));
        SpokenTips tips;
        tips.m_text = FromLatin1("a tip");
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QToolTip::showText(browser.mapToGlobal(browser.RowCentre(0)), tips.m_text);
        QVERIFY(FindTip());
        const QRect expected = FindTip()->geometry();
        QVERIFY(TakeTipDown());
        QVERIFY(HoverForTip(browser, browser.RowCentre(0)));
        QVERIFY(FindTip());
        QCOMPARE(FindTip()->geometry(), expected);
    }

    void theTipOfAnotherRowTakesThePlaceOfTheFirst()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID first = library.Add(NewItem::Compound("1"));
        const ItemID second = library.Add(NewItem::Compound("2"));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(DescribeItem(first) != DescribeItem(second));
        QVERIFY(HoverForTip(browser, browser.RowCentre(0)));
        QCOMPARE(QToolTip::text(), DescribeItem(first));
        QVERIFY(Hover(browser, browser.RowCentre(1)));
        QCOMPARE(QToolTip::text(), DescribeItem(second));
    }

    void theTipOfAScrolledRowIsItsOwn()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        std::vector<ItemID> items;
        items.reserve(40);
        for (int i = 0; i < 40; ++i)
            items.push_back(library.Add(NewItem::Compound("Blend " + std::to_string(10 + i))));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.ScrollBar().setValue(240);
        Settle();
        QVERIFY(HoverForTip(browser, browser.RowCentre(11)));
        QCOMPARE(QToolTip::text(), DescribeItem(items[11]));
    }

    void hoveringBesideCompoundsHidesTheTipAndIsIgnored_data()
    {
        QTest::addColumn<QPoint>("position");
        QTest::newRow("solver") << QPoint(100, gBrowserTop + gRowHeight + gRowHeight / 2);
        QTest::newRow("polymorphic solver") << QPoint(100, gBrowserTop + 2 * gRowHeight + gRowHeight / 2);
        QTest::newRow("global constant") << QPoint(100, gBrowserTop + 3 * gRowHeight + gRowHeight / 2);
        QTest::newRow("type") << QPoint(100, gBrowserTop + 4 * gRowHeight + gRowHeight / 2);
        QTest::newRow("below the last row") << QPoint(100, gBrowserTop + 5 * gRowHeight + gRowHeight / 2);
        QTest::newRow("just below the last row") << QPoint(100, gBrowserTop + 5 * gRowHeight);
        QTest::newRow("header") << QPoint(290, 30);
        QTest::newRow("line of the list top") << QPoint(100, gBrowserTop);
    }

    void hoveringBesideCompoundsHidesTheTipAndIsIgnored()
    {
        QFETCH(QPoint, position);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("1"));
        library.Add(NewItem::Solver("2"));
        library.Add(NewItem::PolymorphicSolver("3"));
        library.Add(NewItem::GlobalConstant("4"));
        library.Add(NewItem::Type("5"));
        ProbedBrowser browser;
        ShowAll(browser, library.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(5));
        QVERIFY(PutTipUp());
        QVERIFY(!Hover(browser, position));
        QVERIFY(WaitFor([] { return !QToolTip::isVisible(); }));
    }

    void aTypeNameThatOnlyReadsLikeCompoundHidesTheTip()
    {
        FakeLayer library;
        library.AddAs(VireoType::gCompound, gOtherCompound, "Blend");
        ProbedBrowser browser;
        ShowAll(browser, library.GetAccessor());
        QCOMPARE(browser.GetRowCount(), std::size_t(1));
        QVERIFY(PutTipUp());
        QVERIFY(!Hover(browser, browser.RowCentre(0)));
        QVERIFY(WaitFor([] { return !QToolTip::isVisible(); }));
    }

    void aCompoundWithoutAnObjectLeavesTheTipAsItIs_data()
    {
        QTest::addColumn<bool>("withUID");
        QTest::newRow("an identity that is no UID") << false;
        QTest::newRow("a UID that no object answers to") << true;
    }

    void aCompoundWithoutAnObjectLeavesTheTipAsItIs()
    {
        QFETCH(bool, withUID);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item =
            library.Add(withUID ? NewItem::Compound("Blend").WithoutObject() : NewItem::Compound("Blend").WithoutUID());
        QCOMPARE(nexa4::DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(item)), withUID);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(Hover(browser, browser.RowCentre(0)));
        QVERIFY(!QToolTip::isVisible());
        QVERIFY(PutTipUp());
        QVERIFY(Hover(browser, browser.RowCentre(0)));
        QVERIFY(!WaitFor([] { return !IsTipUp("up before"); }, gHidingTime));
    }

    void withoutTheServiceTheTipStaysAsItIs_data()
    {
        QTest::addColumn<int>("absence");
        QTest::newRow("no service") << 0;
        QTest::newRow("a service of another kind") << 1;
        QTest::newRow("no system") << 2;
    }

    void withoutTheServiceTheTipStaysAsItIs()
    {
        QFETCH(int, absence);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend"));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        OtherService other;
        if (absence == 2)
            layer.SetSystemPresent(false);
        else
            layer.SetService("RevisionControlUIHelper", absence == 0 ? nullptr : &other);
        QVERIFY(Hover(browser, browser.RowCentre(0)));
        QVERIFY(!QToolTip::isVisible());
        QVERIFY(PutTipUp());
        QVERIFY(Hover(browser, browser.RowCentre(0)));
        QVERIFY(!WaitFor([] { return !IsTipUp("up before"); }, gHidingTime));
    }

    void withoutTheServiceOtherRowsStillHideTheTip()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Solver("Mix"));
        layer.SetService("RevisionControlUIHelper", nullptr);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(PutTipUp());
        QVERIFY(!Hover(browser, browser.RowCentre(0)));
        QVERIFY(WaitFor([] { return !QToolTip::isVisible(); }));
    }

    void theServiceIsLookedUpAnewEachTime()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID item = library.Add(NewItem::Compound("Blend"));
        layer.SetService("RevisionControlUIHelper", nullptr);
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(Hover(browser, browser.RowCentre(0)));
        QVERIFY(!QToolTip::isVisible());
        layer.RestoreService("RevisionControlUIHelper");
        QVERIFY(HoverForTip(browser, browser.RowCentre(0)));
        QCOMPARE(QToolTip::text(), DescribeItem(item));
    }

    void theToolTipOfTheWidgetItselfIsNeverShown()
    {
        FakeLayer library;
        library.AddNodes(1);
        ProbedBrowser browser;
        browser.setToolTip(FromLatin1("of the widget"));
        ShowLibrary(browser, library.GetAccessor());
        QVERIFY(!Hover(browser, browser.RowCentre(0)));
        QVERIFY(!Hover(browser, QPoint(290, 30)));
        QVERIFY(!QToolTip::isVisible());
    }

    void hoveringNeitherSelectsNorPaints()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("Blend"));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        QHelpEvent help(QEvent::ToolTip, browser.RowCentre(0), QPoint(600, 500));
        QCOMPARE(CountPaints(browser, [&] { QCoreApplication::sendEvent(&browser, &help); }), 0);
        QVERIFY(!browser.GetSelection().IsValid());
    }
};

NODEBROWSER_TEST_MAIN(TestToolTip)
#include "test_tooltip.moc"
