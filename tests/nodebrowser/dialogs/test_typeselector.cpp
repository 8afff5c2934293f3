// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"
#include "nodebrowser/nodebrowser.h"
#include "nodebrowser/rowlayout.h"
#include "nodebrowser/typeselector.h"
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/dialogs/dialogfixture.h"
#include "tests/support/otherservice.h"
#include "tests/support/testmain.h"

#include <QHBoxLayout>
#include <QTabBar>
#include <QVBoxLayout>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;

namespace
{

const int gTypesTab = 1;
const int gAllTab = 2;

/// A data layer whose current library has a few types and other items.
class Types
{
public:
    Types() : m_library(m_layer.AddLibrary("Nodes"))
    {
        m_compound = m_library.Add(NewItem::Compound("Add"));
        m_colour = m_library.Add(NewItem::Type("Colour"));
        m_float = m_library.Add(NewItem::Type("Float"));
        m_layer.SetCurrentLibrary(&m_library);
    }

    DataLayer m_layer;
    Library& m_library;
    ItemID m_compound;
    ItemID m_colour;
    ItemID m_float;
};

CNodeBrowser& Browser(const QWidget& in_selector)
{
    return *in_selector.findChild<CNodeBrowser*>();
}

QLineEdit& SearchField(const QWidget& in_selector)
{
    return *in_selector.findChild<QLineEdit*>();
}

/// Presses a mouse button on a row of the browser. There is no tab bar above the rows.
void PressRow(const QWidget& in_selector, int in_row, Qt::MouseButton in_button = Qt::LeftButton)
{
    CNodeBrowser& browser = Browser(in_selector);
    QTest::mouseClick(&browser, in_button, Qt::NoModifier,
                      QPoint(browser.width() / 2,
                             nodebrowser::gListTop + nodebrowser::gRowHeight * in_row + nodebrowser::gRowHeight / 2));
}

/// Lets the browser paint, and so read its library.
void LetPaint(QWidget& in_selector)
{
    Browser(in_selector).repaint();
    QCoreApplication::processEvents();
}

/// Lets the browser list the items of a tab that it does not have here.
void ShowTab(QWidget& in_selector, int in_tab)
{
    QVERIFY(QMetaObject::invokeMethod(&Browser(in_selector), "TabChanged", Q_ARG(int, in_tab)));
    LetPaint(in_selector);
}

/// Runs a selector in which a row is pressed.
int RunAndPress(CTypeSelector& in_selector, int in_row)
{
    return RunDialog(in_selector, [in_row](QWidget& in_window) { PressRow(in_window, in_row); });
}

} // namespace

class TestTypeSelector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setCursorFlashTime(0); }

    void theWindowHasATitleAndASystemMenuOnly()
    {
        const DataLayer layer;
        const CTypeSelector selector(nullptr);
        const Qt::WindowFlags flags(Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
        const QDialog plain(nullptr, flags);
        QCOMPARE(selector.windowTitle(), FromLatin1("Choose Type"));
        QCOMPARE(selector.windowFlags(), plain.windowFlags());
        QCOMPARE(selector.windowFlags() & flags, flags);
        QVERIFY(!(selector.windowFlags() & (Qt::WindowContextHelpButtonHint | Qt::WindowCloseButtonHint)));
        QVERIFY(selector.isModal());
    }

    void itBelongsToTheWidgetThatItIsGiven()
    {
        const DataLayer layer;
        QWidget parent;
        const CTypeSelector selector(&parent);
        QCOMPARE(selector.parentWidget(), &parent);
        QVERIFY(selector.isWindow());
    }

    void itOpensTallAndNarrow()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        QCOMPARE(selector.sizeHint(), QSize(275, 500));
        // The toolkit makes a window no higher than two thirds of the screen by itself.
        QVERIFY(ShowActive(selector));
        QCOMPARE(selector.width(), 275);
        QVERIFY(selector.height() > selector.width() && selector.height() <= 500);
    }

    void doneAndSelectionChangedAreSlotsInThisOrder()
    {
        const QMetaObject& object = CTypeSelector::staticMetaObject;
        QCOMPARE(object.methodCount() - object.methodOffset(), 2);
        QCOMPARE(object.indexOfSlot("done(int)"), object.methodOffset());
        QCOMPARE(object.indexOfSlot("SelectionChanged()"), object.methodOffset() + 1);
    }

    void theBrowserStandsAboveCancel()
    {
        const Types types;
        const CTypeSelector selector(nullptr);
        QVBoxLayout* const rows = qobject_cast<QVBoxLayout*>(selector.layout());
        QVERIFY(rows);
        QCOMPARE(rows->count(), 2);
        QCOMPARE(rows->itemAt(0)->widget(), static_cast<QWidget*>(&Browser(selector)));
        QHBoxLayout* const buttons = qobject_cast<QHBoxLayout*>(rows->itemAt(1)->layout());
        QVERIFY(buttons);
        QCOMPARE(buttons->count(), 1);
        QCOMPARE(buttons->itemAt(0)->widget(), static_cast<QWidget*>(FindButton(selector, "Cancel")));
        QCOMPARE(buttons->stretch(0), 0);
        QVERIFY(!buttons->itemAt(0)->alignment());
        for (int i = 0; i < 2; ++i)
        {
            QCOMPARE(rows->stretch(i), 0);
            QVERIFY(!rows->itemAt(i)->alignment());
        }
    }

    void theBrowserIsATypeSelector()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        QVERIFY(!selector.findChild<QTabBar*>());
        QCOMPARE(Browser(selector).parentWidget(), static_cast<QWidget*>(&selector));
        // The first row is the first type: the compound, which its name would put before, is not listed.
        QCOMPARE(RunAndPress(selector, 0), int(QDialog::Accepted));
        QVERIFY(selector.GetSelected() == types.m_colour);
    }

    void theBrowserWorksWithTheApplicationsCommandManager()
    {
        Types types;
        const CTypeSelector selector(nullptr);
        QVERIFY(Browser(selector).GetCommandManager() == &types.m_layer.GetCommandManager());
    }

    void theSearchFieldHasTheFocus()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        QVERIFY(ShowActive(selector));
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(&SearchField(selector)));
    }

    void nothingIsSelectedAtFirst()
    {
        const Types types;
        const CTypeSelector selector(nullptr);
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void pressingATypeAcceptsIt()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        QCOMPARE(RunAndPress(selector, 1), int(QDialog::Accepted));
        QVERIFY(selector.GetSelected() == types.m_float);
        QCOMPARE(selector.result(), int(QDialog::Accepted));
    }

    void searchingAndEnterAcceptsTheFirstTypeFound()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [](QWidget& in_window) {
            TypeText(FromLatin1("flo"));
            LetPaint(in_window);
            PressKey(Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QVERIFY(selector.GetSelected() == types.m_float);
    }

    void enterWithoutAnythingFoundRejects()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [](QWidget& in_window) {
            TypeText(FromLatin1("nothing"));
            LetPaint(in_window);
            PressKey(Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void whatIsNoTypeIsRejectedButKept()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [](QWidget& in_window) {
            ShowTab(in_window, gAllTab);
            PressRow(in_window, 0);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(selector.GetSelected() == types.m_compound);
    }

    void everySelectionChangeCloses()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [](QWidget& in_window) {
            QVERIFY(QMetaObject::invokeMethod(&Browser(in_window), "SelectionChanged"));
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void acceptingWithoutASelectionRejects()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [](QWidget& in_window) { static_cast<QDialog&>(in_window).accept(); });
        QCOMPARE(result, int(QDialog::Rejected));
    }

    void otherResultsPassThrough()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        QVERIFY(ShowActive(selector));
        LetPaint(selector);
        selector.done(7);
        QCOMPARE(selector.result(), 7);
        QVERIFY(!selector.GetSelected().IsValid());
        QVERIFY(!selector.isVisible());
    }

    void aSecondSelectionReplacesTheFirst()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        QVERIFY(ShowActive(selector));
        LetPaint(selector);
        PressRow(selector, 1);
        QVERIFY(selector.GetSelected() == types.m_float);
        QCOMPARE(selector.result(), int(QDialog::Accepted));
        selector.show();
        ShowTab(selector, gAllTab);
        PressRow(selector, 0);
        QVERIFY(selector.GetSelected() == types.m_compound);
        QCOMPARE(selector.result(), int(QDialog::Rejected));
        selector.show();
        ShowTab(selector, gTypesTab);
        Click(*FindButton(selector, "Cancel"));
        QVERIFY(selector.GetSelected() == types.m_compound);
        QCOMPARE(selector.result(), int(QDialog::Rejected));
    }

    void cancelRejects()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [](QWidget& in_window) { Click(*FindButton(in_window, "Cancel")); });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void escapeRejects()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        QCOMPARE(RunDialog(selector, [](QWidget&) { PressKey(Qt::Key_Escape); }), int(QDialog::Rejected));
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void closingTheWindowRejects()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        QCOMPARE(RunDialog(selector, [](QWidget& in_window) { in_window.close(); }), int(QDialog::Rejected));
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void pressesBesideTheRowsAndRightPressesDoNotClose()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        bool stayedOpen = false;
        const int result = RunDialog(selector, [&stayedOpen](QWidget& in_window) {
            PressRow(in_window, 5);
            PressRow(in_window, 0, Qt::RightButton);
            PressRow(in_window, 0, Qt::MiddleButton);
            stayedOpen = in_window.isVisible();
            Click(*FindButton(in_window, "Cancel"));
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(stayedOpen);
    }

    void clearingTheSearchDoesNotClose()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [](QWidget& in_window) {
            TypeText(FromLatin1("flo"));
            const QList<QPushButton*> buttons = Browser(in_window).findChildren<QPushButton*>();
            Click(*buttons.at(0));
            QCOMPARE(SearchField(in_window).text(), QString());
            QVERIFY(in_window.isVisible());
            LetPaint(in_window);
            PressRow(in_window, 1);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QVERIFY(selector.GetSelected() == types.m_float);
    }

    void withoutTheServiceOnlyCancelIsLeft()
    {
        Types types;
        types.m_layer.SetService("NEXADBProxy", nullptr);
        CTypeSelector selector(nullptr);
        bool stayedOpen = false;
        const int result = RunDialog(selector, [&stayedOpen](QWidget& in_window) {
            PressRow(in_window, 0);
            stayedOpen = in_window.isVisible();
            Click(*FindButton(in_window, "Cancel"));
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(stayedOpen);
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void aServiceOfAnotherKindCountsAsNone()
    {
        Types types;
        OtherService other;
        types.m_layer.SetService("NEXADBProxy", &other);
        CTypeSelector selector(nullptr);
        QVERIFY(ShowActive(selector));
        LetPaint(selector);
        PressRow(selector, 0);
        QVERIFY(selector.isVisible());
    }

    void withoutASystemOrADataLayerTheBrowserIsEmpty()
    {
        {
            Types types;
            types.m_layer.SetSystemPresent(false);
            CTypeSelector selector(nullptr);
            QVERIFY(ShowActive(selector));
            LetPaint(selector);
            PressRow(selector, 0);
            QVERIFY(selector.isVisible());
        }
        CTypeSelector selector(nullptr);
        QVERIFY(!Browser(selector).GetCommandManager());
        QCOMPARE(RunDialog(selector, [](QWidget&) { PressKey(Qt::Key_Escape); }), int(QDialog::Rejected));
    }

    void withoutACurrentLibraryTheBrowserIsEmpty()
    {
        Types types;
        types.m_layer.SetCurrentLibrary(nullptr);
        CTypeSelector selector(nullptr);
        QVERIFY(ShowActive(selector));
        LetPaint(selector);
        PressRow(selector, 0);
        QVERIFY(selector.isVisible());
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void enterInAnEmptyBrowserRejects()
    {
        const DataLayer layer;
        CTypeSelector selector(nullptr);
        QCOMPARE(RunDialog(selector, [](QWidget&) { PressKey(Qt::Key_Return); }), int(QDialog::Rejected));
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void aLibraryThatEndsMeanwhileRejects()
    {
        Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [&types](QWidget& in_window) {
            types.m_library.Close();
            PressRow(in_window, 1);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void aTypeThatIsRemovedMeanwhileCannotBeChosen()
    {
        Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [&types](QWidget& in_window) {
            types.m_library.Remove(types.m_colour);
            LetPaint(in_window);
            PressRow(in_window, 0);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QVERIFY(selector.GetSelected() == types.m_float);
    }

    void aTypeThatIsRemovedUnderThePressRejects()
    {
        Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [&types](QWidget& in_window) {
            types.m_library.Remove(types.m_float);
            PressRow(in_window, 1);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void withoutItsBrowserTheDialogIsRejected()
    {
        const Types types;
        CTypeSelector selector(nullptr);
        QCOMPARE(RunAndPress(selector, 1), int(QDialog::Accepted));
        QVERIFY(selector.GetSelected() == types.m_float);
        delete &Browser(selector);
        QVERIFY(QMetaObject::invokeMethod(&selector, "SelectionChanged"));
        QCOMPARE(selector.result(), int(QDialog::Rejected));
        QVERIFY(!selector.GetSelected().IsValid());
    }

    void unusualSearchTextsDoNoHarm_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("found");
        QTest::newRow("blank") << FromLatin1("   ") << true;
        QTest::newRow("10000 characters") << QString(10000, QLatin1Char('f')) << false;
        QTest::newRow("other script") << QString(QChar(0x6F22)) << false;
        QTest::newRow("control character") << FromLatin1("\x01") << false;
    }

    void unusualSearchTextsDoNoHarm()
    {
        QFETCH(QString, text);
        QFETCH(bool, found);
        const Types types;
        CTypeSelector selector(nullptr);
        const int result = RunDialog(selector, [&text](QWidget& in_window) {
            SearchField(in_window).setText(text);
            LetPaint(in_window);
            PressKey(Qt::Key_Return);
        });
        QCOMPARE(result, int(found ? QDialog::Accepted : QDialog::Rejected));
        QVERIFY(selector.GetSelected().IsValid() == found);
    }

    void namesOfAllSortsCanBeChosen()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        layer.SetCurrentLibrary(&library);
        const char* const names[] = {"", " ", "\x01", "%1", "\xC4rger"};
        for (const char* const name : names)
            library.Add(NewItem::Type(name));
        library.Add(NewItem::Type(std::string(10000, 'z')));
        for (int row = 0; row < 6; ++row)
        {
            CTypeSelector selector(nullptr);
            QCOMPARE(RunAndPress(selector, row), int(QDialog::Accepted));
            QVERIFY(selector.GetSelected().IsValid());
        }
    }
};

NODEBROWSER_TEST_MAIN(TestTypeSelector)
#include "test_typeselector.moc"
