// SPDX-License-Identifier: MIT
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/support/commandbrowser.h"
#include "tests/nodebrowser/support/pictures.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QDialogButtonBox>
#include <QToolTip>
#include <QUndoStack>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;

namespace
{

QStringList Names(const char* in_first, const char* in_second, const char* in_third)
{
    return QStringList() << FromLatin1(in_first) << FromLatin1(in_second) << FromLatin1(in_third);
}

QLineEdit& Field(QDialog& in_dialog)
{
    return *in_dialog.findChild<QLineEdit*>();
}

QPushButton& OkButton(QDialog& in_dialog)
{
    return *in_dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
}

bool IsToolTipThere()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (int i = 0; i < windows.size(); ++i)
        if (windows.at(i)->inherits("QTipLabel"))
            return true;
    return false;
}

/// A library of the solvers "Alpha" and "Mix" and a compound in between, and a browser that shows it.
struct Scene
{
    explicit Scene(const char* in_compoundName = "Blend")
        : m_library(m_layer.AddLibrary("Nodes")), m_stack(m_layer.GetCommandManager().GetStack())
    {
        m_library.Add(NewItem::Solver("Alpha"));
        m_compound = m_library.Add(NewItem::Compound(in_compoundName).Tags("colour"));
        m_library.Add(NewItem::Solver("Mix"));
        m_browser.SetCommandManager(&m_layer.GetCommandManager());
        ShowLibrary(m_browser, m_library.GetAccessor());
    }

    /// Renames the compound "Blend" by the context menu of a row and the keyboard.
    void RenameBlend(int in_row, const char* in_name)
    {
        ModalUser user;
        user.WhenMenuOpens([](QMenu& in_menu) { Choose(in_menu, "Rename Blend"); });
        user.WhenDialogOpens("Rename Blend", [in_name](QDialog& in_dialog) {
            Retype(Field(in_dialog), in_name);
            Press(Field(in_dialog), Qt::Key_Return);
        });
        m_browser.RightPress(in_row);
        QVERIFY(user.IsDone());
    }

    QStringList RowNames() { return m_browser.RowNames(m_library.GetAccessor()); }
    QImage Look() { return PictureWithoutChildren(m_browser); }

    DataLayer m_layer;
    Library& m_library;
    QUndoStack& m_stack;
    ItemID m_compound;
    CommandBrowser m_browser;
};

/// What a browser looks like that has never known the compound under another name than "Zebra".
QImage ExpectedLook()
{
    Scene scene("Zoo");
    scene.m_library.Rename(scene.m_compound, "Zebra"); // once renamed, it has changes to be saved
    Settle();
    scene.m_browser.Select(1);
    return scene.Look();
}

} // namespace

/// Renaming a compound, all the way from the right press to the pixels.
class TestRenameJourney : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRenamedCompoundIsDrawnInItsNewPlace_data()
    {
        QTest::addColumn<bool>("byMouse");
        QTest::newRow("with the keyboard") << false;
        QTest::newRow("with the mouse") << true;
    }

    void aRenamedCompoundIsDrawnInItsNewPlace()
    {
        QFETCH(bool, byMouse);
        const QImage expected = ExpectedLook();
        Scene scene;
        scene.m_browser.Select(1);
        const QImage before = scene.Look();
        QCOMPARE(scene.RowNames(), Names("Alpha", "Blend", "Mix"));
        QVERIFY(before != expected);

        ModalUser user;
        user.WhenMenuOpens([byMouse](QMenu& in_menu) {
            if (byMouse)
                ClickEntry(in_menu, "Rename Blend");
            else
                Choose(in_menu, "Rename Blend");
        });
        user.WhenDialogOpens("Rename Blend", [byMouse](QDialog& in_dialog) {
            Retype(Field(in_dialog), "Zebra");
            if (byMouse)
                QTest::mouseClick(&OkButton(in_dialog), Qt::LeftButton);
            else
                Press(Field(in_dialog), Qt::Key_Return);
        });
        scene.m_browser.RightPress(1);
        QVERIFY(user.IsDone());
        QCOMPARE(scene.m_browser.SignalCount(), 2);
        QCOMPARE(scene.m_stack.count(), 1);
        QCOMPARE(scene.m_stack.text(0), FromLatin1("Rename compound Blend"));
        // Nothing is sorted anew before the next paint.
        QCOMPARE(scene.RowNames(), Names("Alpha", "Zebra", "Mix"));

        const int paints = scene.m_browser.m_paints;
        Settle();
        QVERIFY(scene.m_browser.m_paints > paints);
        QCOMPARE(scene.RowNames(), Names("Alpha", "Mix", "Zebra"));
        QVERIFY(scene.Look() == expected);
        // The rows of both names and nothing else look different; the selected row is the same number.
        const int top = scene.m_browser.ListTop();
        const QRect changed = Difference(before, expected);
        QVERIFY(changed.top() >= top + gRowHeight && changed.bottom() < top + 3 * gRowHeight);
        QVERIFY(Difference(before, expected, QRect(0, top + gRowHeight, 300, gRowHeight)).isValid());
        QVERIFY(Difference(before, expected, QRect(0, top + 2 * gRowHeight, 300, gRowHeight)).isValid());
        QVERIFY(scene.m_browser.GetSelection() == scene.m_library.FindByName("Mix"));

        scene.m_stack.undo();
        Settle();
        QCOMPARE(scene.RowNames(), Names("Alpha", "Blend", "Mix"));
        QVERIFY(scene.Look() == before);
        scene.m_stack.redo();
        Settle();
        QCOMPARE(scene.RowNames(), Names("Alpha", "Mix", "Zebra"));
        QVERIFY(scene.Look() == expected);
        QCOMPARE(scene.m_browser.SignalCount(), 2);
    }

    void theScreenFollowsByItself()
    {
        Scene scene;
        scene.m_browser.Select(1);
        const QImage before = testcompat::ScreenPicture(scene.m_browser).toImage();
        scene.RenameBlend(1, "Zebra");
        Settle();
        const QRect rows(0, scene.m_browser.ListTop(), 300, 3 * gRowHeight);
        const QImage after = testcompat::ScreenPicture(scene.m_browser).toImage();
        QVERIFY(Difference(before, after, rows).isValid());
        QVERIFY(!Difference(scene.Look(), after, rows).isValid());
        scene.m_stack.undo();
        Settle();
        QVERIFY(!Difference(before, testcompat::ScreenPicture(scene.m_browser).toImage(), rows).isValid());
    }

    void theSearchIsAppliedToTheNewName()
    {
        Scene scene;
        scene.m_browser.SearchField().setText(FromLatin1("ble"));
        Settle();
        QCOMPARE(scene.RowNames(), QStringList(FromLatin1("Blend")));
        scene.RenameBlend(0, "Zebra");
        Settle();
        QCOMPARE(scene.RowNames(), QStringList());
        QVERIFY(!scene.m_browser.GetSelection().IsValid());
        scene.m_stack.undo();
        Settle();
        QCOMPARE(scene.RowNames(), QStringList(FromLatin1("Blend")));
        QVERIFY(scene.m_browser.GetSelection() == scene.m_compound);
        scene.m_stack.redo();
        Settle();
        QCOMPARE(scene.RowNames(), QStringList());
        scene.m_browser.SearchField().setText(FromLatin1("zeb"));
        Settle();
        QCOMPARE(scene.RowNames(), QStringList(FromLatin1("Zebra")));
    }

    void badNamesAreRefusedOnTheWay()
    {
        Scene scene;
        ModalUser user;
        user.WhenMenuOpens([](QMenu& in_menu) { Choose(in_menu, "Rename Blend"); });
        bool refusedUsed = false;
        bool refusedEmpty = false;
        bool toldWhy = false;
        user.WhenDialogOpens("Rename Blend", [&](QDialog& in_dialog) {
            Retype(Field(in_dialog), "Mix");
            toldWhy = Field(in_dialog).toolTip() == FromLatin1("Name already used");
            Press(Field(in_dialog), Qt::Key_Return);
            refusedUsed = in_dialog.isVisible() && !OkButton(in_dialog).isEnabled();
            Retype(Field(in_dialog), "");
            toldWhy = toldWhy && Field(in_dialog).toolTip() == FromLatin1("Name can't be empty");
            Press(Field(in_dialog), Qt::Key_Return);
            refusedEmpty = in_dialog.isVisible() && !OkButton(in_dialog).isEnabled();
            Retype(Field(in_dialog), "-Zebra");
            Press(Field(in_dialog), Qt::Key_Return);
        });
        scene.m_browser.RightPress(1);
        QVERIFY(user.IsDone());
        QVERIFY(refusedUsed);
        QVERIFY(refusedEmpty);
        QVERIFY(toldWhy);
        Settle();
        // The hyphen could not be typed.
        QCOMPARE(scene.RowNames(), Names("Alpha", "Mix", "Zebra"));
        QCOMPARE(scene.m_stack.count(), 1);
        QToolTip::hideText();
        QVERIFY(WaitFor([] { return !IsToolTipThere(); }));
    }

    void aChangeOfCaseIsARenameToo()
    {
        Scene scene;
        scene.RenameBlend(1, "BLEND");
        Settle();
        QCOMPARE(scene.RowNames(), Names("Alpha", "BLEND", "Mix"));
        QCOMPARE(scene.m_stack.count(), 1);
    }

    void aJourneyThatEndsEarlyChangesNothing_data()
    {
        QTest::addColumn<int>("end");
        QTest::newRow("in the menu") << 0;
        QTest::newRow("in the dialog") << 1;
        QTest::newRow("with the name untouched") << 2;
    }

    void aJourneyThatEndsEarlyChangesNothing()
    {
        QFETCH(int, end);
        Scene scene;
        scene.m_browser.Select(1);
        const QImage before = scene.Look();
        ModalUser user;
        user.WhenMenuOpens([end](QMenu& in_menu) {
            if (end == 0)
                Press(in_menu, Qt::Key_Escape);
            else
                Choose(in_menu, "Rename Blend");
        });
        if (end != 0)
            user.WhenDialogOpens("Rename Blend", [end](QDialog& in_dialog) {
                if (end == 1)
                    Retype(Field(in_dialog), "Zebra");
                Press(Field(in_dialog), end == 1 ? Qt::Key_Escape : Qt::Key_Return);
            });
        scene.m_browser.RightPress(1);
        QVERIFY(user.IsDone());
        Settle();
        QCOMPARE(scene.m_stack.count(), 0);
        QVERIFY(scene.Look() == before);
        QCOMPARE(scene.m_browser.SignalCount(), 2);
    }

    void withoutACommandManagerTheNameChangesForGood()
    {
        Scene scene;
        scene.m_browser.SetCommandManager(nullptr);
        scene.RenameBlend(1, "Zebra");
        Settle();
        QCOMPARE(scene.RowNames(), Names("Alpha", "Mix", "Zebra"));
        QCOMPARE(scene.m_stack.count(), 0);
    }
};

NODEBROWSER_TEST_MAIN(TestRenameJourney)
#include "test_renamejourney.moc"
