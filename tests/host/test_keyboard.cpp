// SPDX-License-Identifier: MIT
// What the keys do in the window: in the search field, on the canvas, in quick add.

#include "host/graphbox.h"
#include "host/graphcanvas.h"
#include "host/quickadd.h"
#include "tests/host/windowfixture.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QCursor>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QStatusBar>
#include <QToolTip>

using host::GraphCanvas;
using host::MainWindow;
using host::QuickAdd;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;

namespace
{

const int gItems = 100;

QByteArray NameOfItem(int in_number)
{
    return QByteArray("Node ") + QByteArray::number(in_number).rightJustified(3, '0');
}

/// Notes that a widget was painted.
class PaintWatcher : public QObject
{
public:
    bool m_painted = false;

protected:
    bool eventFilter(QObject*, QEvent* in_event) override
    {
        m_painted = m_painted || in_event->type() == QEvent::Paint;
        return false;
    }
};

} // namespace

class TestKeyboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_library = &m_layer.AddLibrary("Nodes");
        for (int i = 0; i < gItems; ++i)
            m_library->Add(NewItem::Solver(NameOfItem(i).toStdString()));
        m_library->Add(NewItem::Compound("Blend"));
        m_library->Add(NewItem::Type("Float"));
        m_window.reset(new MainWindow(m_layer, *m_library));
        ShowMainWindow(*m_window);
        testcompat::DeclareActive(*m_window);
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        Field().setFocus();
    }

    void cleanup() { RemoveMainWindow(m_window, m_layer); }

    void upAndDownMoveTheSelectedRow()
    {
        QTest::keyClicks(&Field(), QStringLiteral("node"));
        Press(Qt::Key_Down);
        QCOMPARE(Selected(), NameOfItem(0));
        QCOMPARE(Status(), QStringLiteral("Node 000 \u2013 solver, Local"));
        Press(Qt::Key_Down);
        Press(Qt::Key_Down);
        QCOMPARE(Selected(), NameOfItem(2));
        Press(Qt::Key_Up);
        QCOMPARE(Selected(), NameOfItem(1));
        Press(Qt::Key_Up);
        Press(Qt::Key_Up);
        QCOMPARE(Selected(), NameOfItem(0));
        QCOMPARE(Field().text(), QStringLiteral("node"));
        QVERIFY(Field().hasFocus());
    }

    void theSelectedRowStaysInSight()
    {
        QTest::keyClicks(&Field(), QStringLiteral("node"));
        QScrollBar& bar = *m_window->GetBrowser().findChild<QScrollBar*>();
        const int inSight = (m_window->GetBrowser().height() - gListTop) / gRowHeight;
        for (int i = 0; i < inSight + 5; ++i)
            Press(Qt::Key_Down);
        QCOMPARE(Selected(), NameOfItem(inSight + 4));
        QVERIFY(bar.value() > 0);
        Press(Qt::Key_PageDown);
        QCOMPARE(Selected(), NameOfItem(2 * inSight + 4));
        for (int i = 0; i < 20; ++i)
            Press(Qt::Key_PageDown);
        QCOMPARE(Selected(), NameOfItem(gItems - 1));
        QCOMPARE(bar.value(), bar.maximum());
        for (int i = 0; i < 20; ++i)
            Press(Qt::Key_PageUp);
        QCOMPARE(Selected(), NameOfItem(0));
        QCOMPARE(bar.value(), 0);
    }

    void keysFollowWhatWasTypedBeforeAnyPaint()
    {
        QTest::keyClicks(&Field(), QStringLiteral("041"));
        Press(Qt::Key_Down);
        QCOMPARE(Selected(), NameOfItem(41));
    }

    void enterAddsTheFirstRow()
    {
        QTest::keyClicks(&Field(), QStringLiteral("07")); // Node 007, Node 070, Node 071
        Press(Qt::Key_Return);
        QCOMPARE(Selected(), NameOfItem(7));
        QCOMPARE(Boxes(), QStringList(QStringLiteral("Node 007")));
        Press(Qt::Key_Down);
        Press(Qt::Key_Down);
        Press(Qt::Key_Enter);
        QCOMPARE(Boxes(), QStringList() << QStringLiteral("Node 007") << QStringLiteral("Node 071"));
        QVERIFY(Field().hasFocus());
    }

    void enterShowsTheBand()
    {
        QTest::keyClicks(&Field(), QStringLiteral("node 07"));
        m_window->grab();
        QCoreApplication::processEvents();
        const QColor before = PixelOfRow(0);
        PaintWatcher paints;
        m_window->GetBrowser().installEventFilter(&paints);
        Q_EMIT Field().returnPressed(); // without the key, which finds rows first
        QVERIFY(!paints.m_painted);
        QCoreApplication::processEvents();
        QVERIFY(paints.m_painted);
        QVERIFY(PixelOfRow(0) != before);
    }

    void enterBringsTheRowIntoSight()
    {
        QScrollBar& bar = *m_window->GetBrowser().findChild<QScrollBar*>();
        Press(Qt::Key_Down);
        bar.setValue(bar.maximum());
        Press(Qt::Key_Return);
        QCOMPARE(bar.value(), 0);
    }

    void enterAddsNoTypeAndNothingWithoutRows()
    {
        m_window->GetBrowser().SelectTab(1);
        QTest::keyClicks(&Field(), QStringLiteral("float"));
        Press(Qt::Key_Return);
        QCOMPARE(Selected(), QByteArray("Float"));
        QVERIFY(Boxes().isEmpty());
        QTest::keyClicks(&Field(), QStringLiteral("qqq"));
        Press(Qt::Key_Return);
        QVERIFY(Boxes().isEmpty());
    }

    void enterAddsTheFirstRowOfANewSearch()
    {
        m_window->grab();
        QTest::mouseClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(4));
        QVERIFY(m_window->GetBrowser().GetSelection().IsValid());
        QTest::keyClick(m_window.get(), Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(&Field(), QStringLiteral("node"));
        Press(Qt::Key_Return);
        QCOMPARE(Boxes(), QStringList(QStringLiteral("Node 000")));
        // Also when the search is cleared, and on another tab.
        Press(Qt::Key_Down);
        Press(Qt::Key_Down);
        Press(Qt::Key_Escape);
        Press(Qt::Key_Return);
        QCOMPARE(Boxes().last(), QStringLiteral("Blend"));
        Press(Qt::Key_Down);
        m_window->GetBrowser().SelectTab(2);
        QVERIFY(!m_window->GetBrowser().GetSelection().IsValid());
    }

    void escapeClearsTheSearch()
    {
        QTest::keyClicks(&Field(), QStringLiteral("node"));
        Press(Qt::Key_Escape);
        QCOMPARE(Field().text(), QString());
        QVERIFY(Field().hasFocus());
    }

    void ctrlFGoesToTheSearch()
    {
        QTest::keyClicks(&Field(), QStringLiteral("node"));
        Canvas().setFocus();
        QVERIFY(!Field().hasFocus());
        QTest::keyClick(&Canvas(), Qt::Key_F, Qt::ControlModifier);
        QVERIFY(Field().hasFocus());
        QCOMPARE(Field().selectedText(), QStringLiteral("node"));
    }

    void undoInTheFieldReachesTheLibrary_data()
    {
        QTest::addColumn<int>("redoKey");
        QTest::addColumn<int>("redoModifiers");
        QTest::newRow("Ctrl+Y") << int(Qt::Key_Y) << int(Qt::ControlModifier);
        QTest::newRow("Ctrl+Shift+Z") << int(Qt::Key_Z) << int(Qt::ControlModifier | Qt::ShiftModifier);
    }

    void undoInTheFieldReachesTheLibrary()
    {
        QFETCH(int, redoKey);
        QFETCH(int, redoModifiers);
        const Qt::KeyboardModifiers redo = static_cast<Qt::KeyboardModifiers>(redoModifiers);
        const ItemID blend = m_library->FindByName("Blend");
        m_library->Rename(blend, "Mix", &m_layer.GetCommandManager());
        Undo();
        QVERIFY(m_library->FindByName("Blend") == blend);
        QTest::keyClick(&Field(), static_cast<Qt::Key>(redoKey), redo);
        QVERIFY(m_library->FindByName("Mix") == blend);
        Undo();
        QVERIFY(m_library->FindByName("Blend") == blend);
    }

    void whatWasTypedLastIsUndoneFirst()
    {
        const ItemID blend = m_library->FindByName("Blend");
        m_library->Rename(blend, "Mix", &m_layer.GetCommandManager());
        QTest::keyClicks(&Field(), QStringLiteral("node"));
        Undo();
        QCOMPARE(Field().text(), QString());
        QVERIFY(m_library->FindByName("Mix") == blend);
        QTest::keyClick(&Field(), Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(Field().text(), QStringLiteral("node"));
        Undo();
        Undo(); // nothing is left to undo in the field
        QVERIFY(m_library->FindByName("Blend") == blend);
    }

    void aChangeOfTheLibraryEndsTheHistoryOfTheField()
    {
        QTest::keyClicks(&Field(), QStringLiteral("node 07"));
        Field().setCursorPosition(4);
        Field().setSelection(1, 3);
        Press(Qt::Key_Return);
        QCOMPARE(Boxes().size(), 1);
        QCOMPARE(Field().text(), QStringLiteral("node 07"));
        QCOMPARE(Field().selectedText(), QStringLiteral("ode"));
        Undo();
        QVERIFY(Boxes().isEmpty());
        QCOMPARE(Field().text(), QStringLiteral("node 07"));
    }

    void quickAddOpensAtThePointer_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Tab") << int(Qt::Key_Tab);
        QTest::newRow("Space") << int(Qt::Key_Space);
    }

    void quickAddOpensAtThePointer()
    {
        QFETCH(int, key);
        const QPoint place(120, 90);
        const QPoint pointer = Canvas().viewport()->mapToGlobal(place);
        QCursor::setPos(pointer);
        if (QCursor::pos() != pointer)
            QSKIP("This platform lets no program move the pointer.");
        QuickAdd* const popup = OpenQuickAdd(static_cast<Qt::Key>(key));
        QVERIFY(popup);
        // The platform of the tests has frames of two pixels around all windows.
        QVERIFY((popup->pos() - pointer).manhattanLength() <= 4);
        QLineEdit& field = popup->GetBrowser().GetSearchField();
        QVERIFY(popup->focusWidget() == &field);
        QTest::keyClicks(&field, QStringLiteral("031"));
        QTest::keyClick(&field, Qt::Key_Return);
        QVERIFY(!popup->isVisible());
        QCOMPARE(Boxes(), QStringList(QStringLiteral("Node 031")));
        QCOMPARE(Canvas().mapFromScene(Canvas().GetBoxes().first()->pos()), place);
        QCOMPARE(m_layer.GetCommandManager().GetStack().count(), 1);
    }

    void quickAddBeginsAnewEachTime()
    {
        QuickAdd* popup = OpenQuickAdd(Qt::Key_Tab);
        QVERIFY(popup);
        QLineEdit& field = popup->GetBrowser().GetSearchField();
        QTest::keyClicks(&field, QStringLiteral("node"));
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&field, Qt::Key_Down);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(Boxes(), QStringList(QStringLiteral("Node 002")));

        QCOMPARE(OpenQuickAdd(Qt::Key_Tab), popup);
        QCOMPARE(field.text(), QString());
        QVERIFY(!popup->GetBrowser().GetSelection().IsValid());
        QTest::keyClicks(&field, QStringLiteral("blend"));
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(Boxes(), QStringList() << QStringLiteral("Node 002") << QStringLiteral("Blend"));
    }

    void enterInQuickAddAddsTheFirstRowOfANewSearch()
    {
        QuickAdd* const popup = OpenQuickAdd(Qt::Key_Tab);
        QVERIFY(popup);
        QLineEdit& field = popup->GetBrowser().GetSearchField();
        QTest::keyClicks(&field, QStringLiteral("node"));
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&field, Qt::Key_Down);
        QTest::keyClicks(&field, QStringLiteral(" 05"));
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(Boxes(), QStringList(QStringLiteral("Node 000")));
    }

    void rowsOfQuickAddHaveToolTips()
    {
        QuickAdd* const popup = OpenQuickAdd(Qt::Key_Tab);
        QVERIFY(popup);
        QTest::keyClicks(&popup->GetBrowser().GetSearchField(), QStringLiteral("042"));
        popup->grab();
        QHelpEvent help(QEvent::ToolTip, RowCentre(0), popup->GetBrowser().mapToGlobal(RowCentre(0)));
        QApplication::sendEvent(&popup->GetBrowser(), &help);
        QVERIFY2(QToolTip::text().startsWith(QStringLiteral("<b>Node 042</b>")), qPrintable(QToolTip::text()));
        popup->close();
        HideToolTip();
    }

    void escapeClosesQuickAdd()
    {
        QuickAdd* const popup = OpenQuickAdd(Qt::Key_Tab);
        QVERIFY(popup);
        QTest::keyClicks(&popup->GetBrowser().GetSearchField(), QStringLiteral("node"));
        QTest::keyClick(&popup->GetBrowser().GetSearchField(), Qt::Key_Escape);
        QVERIFY(!popup->isVisible());
        QVERIFY(Boxes().isEmpty());
    }

    void aClickInQuickAddChooses()
    {
        QuickAdd* const popup = OpenQuickAdd(Qt::Key_Tab);
        QVERIFY(popup);
        popup->grab();
        QTest::mouseClick(&popup->GetBrowser(), Qt::RightButton, Qt::NoModifier, RowCentre(2));
        QVERIFY(popup->isVisible());
        QTest::mouseClick(&popup->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(2));
        QVERIFY(!popup->isVisible());
        QCOMPARE(Boxes(), QStringList(QStringLiteral("Node 001"))); // behind Blend
    }

    void aTypeLeavesQuickAddOpen()
    {
        QuickAdd* const popup = OpenQuickAdd(Qt::Key_Tab);
        QVERIFY(popup);
        popup->GetBrowser().SelectTab(1);
        QTest::keyClick(&popup->GetBrowser().GetSearchField(), Qt::Key_Return);
        QVERIFY(popup->isVisible());
        QVERIFY(Boxes().isEmpty());
        popup->close();
    }

    void keysOfTheCanvas()
    {
        for (int i = 0; i < 2; ++i)
            Canvas().PlaceInSight(m_library->FindByName("Blend"));
        Canvas().setFocus();
        QTest::keyClick(&Canvas(), Qt::Key_A, Qt::ControlModifier);
        QVERIFY(Canvas().GetBoxes().first()->isSelected() && Canvas().GetBoxes().last()->isSelected());
        QTest::keyClick(&Canvas(), Qt::Key_Plus);
        QVERIFY(Canvas().transform().m11() > 1.0);
        QTest::keyClick(&Canvas(), Qt::Key_F);
        QCOMPARE(Canvas().transform().m11(), 1.0);
        QTest::keyClick(&Canvas(), Qt::Key_Delete);
        QVERIFY(Boxes().isEmpty());
        QTest::keyClick(&Canvas(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(Boxes().size(), 2);
    }

private:
    QLineEdit& Field() { return m_window->GetBrowser().GetSearchField(); }
    GraphCanvas& Canvas() { return *m_window->findChild<GraphCanvas*>(); }
    void Press(Qt::Key in_key) { QTest::keyClick(&Field(), in_key); }
    void Undo() { QTest::keyClick(&Field(), Qt::Key_Z, Qt::ControlModifier); }

    QByteArray Selected()
    {
        return QByteArray::fromStdString(
            m_library->GetAccessor().GetItemName(m_window->GetBrowser().GetSelection(), true, nullptr));
    }
    QString Status() { return m_window->statusBar()->findChildren<QLabel*>().first()->text(); }

    QStringList Boxes()
    {
        QStringList names;
        for (const host::GraphBox* const box : Canvas().GetBoxes())
            names << box->GetName();
        return names;
    }

    QuickAdd* OpenQuickAdd(Qt::Key in_key)
    {
        Canvas().setFocus();
        QTest::keyClick(&Canvas(), in_key);
        QuickAdd* const popup = m_window->findChild<QuickAdd*>();
        if (!popup || !QTest::qWaitForWindowExposed(popup))
            return nullptr;
        QCoreApplication::processEvents(); // where it was open before, it counts as exposed without a paint
        return popup;
    }

    /// As the list was painted last.
    QColor PixelOfRow(int in_row)
    {
        const QPoint place = m_window->GetBrowser().mapTo(m_window.get(), QPoint(2, RowCentre(in_row).y()));
        return m_window->grab().toImage().pixelColor(place);
    }

    OwnSettings m_settings;
    memorymodel::DataLayer m_layer;
    Library* m_library = nullptr;
    std::unique_ptr<MainWindow> m_window;
};

NODEBROWSER_TEST_MAIN(TestKeyboard)
#include "test_keyboard.moc"
