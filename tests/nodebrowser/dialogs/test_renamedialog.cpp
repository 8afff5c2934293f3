// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"
#include "nodebrowser/renamedialog.h"
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/dialogs/dialogfixture.h"
#include "tests/support/testmain.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QImage>
#include <QSignalSpy>
#include <QToolTip>
#include <QVBoxLayout>
#include <QValidator>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using nodebrowser::CRenameCompoundDialog;
using qtcompat::FromLatin1;
using vireo::datamodel::CompoundAccessor;
using vireo::datamodel::ItemID;

namespace
{

const char gEmpty[] = "Name can't be empty";
const char gUsed[] = "Name already used";
const QColor gRed(255, 90, 90, 255);

/// A library in which a compound is to be renamed.
class Renaming
{
public:
    explicit Renaming(const std::string& in_name = "Blend")
        : m_library(m_layer.AddLibrary("Nodes")),
          m_item(m_library.Add(NewItem::Compound(in_name))),
          m_compound(m_library.GetAccessor().GetModel(m_item, nullptr))
    {
    }

    DataLayer m_layer;
    Library& m_library;
    ItemID m_item;
    CompoundAccessor m_compound;
};

/// The tool tip on the screen; null when there is none.
QWidget* FindToolTip()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (int i = 0; i < windows.size(); ++i)
        if (windows.at(i)->inherits("QTipLabel") && windows.at(i)->isVisible())
            return windows.at(i);
    return nullptr;
}

/// The dialog as the browser opens it, and what a person sees of it.
class RenameDialog : public CRenameCompoundDialog
{
public:
    explicit RenameDialog(Renaming& in_renaming)
        : CRenameCompoundDialog(in_renaming.m_library.GetAccessor(), in_renaming.m_compound)
    {
        const std::string name = in_renaming.m_library.GetAccessor().GetItemName(in_renaming.m_item, true, nullptr);
        SetName(QString::fromLatin1(name.data(), static_cast<int>(name.size())));
    }

    QLineEdit& Edit() const { return *findChild<QLineEdit*>(); }
    QDialogButtonBox& Buttons() const { return *findChild<QDialogButtonBox*>(); }
    QPushButton& Ok() const { return *Buttons().button(QDialogButtonBox::Ok); }
    QPushButton& Cancel() const { return *Buttons().button(QDialogButtonBox::Cancel); }

    /// Whether the dialog shows a fault, in all the ways that it has.
    bool Shows(const char* in_fault) const
    {
        return Edit().palette().color(QPalette::Active, Edit().backgroundRole()) == gRed &&
               Edit().toolTip() == FromLatin1(in_fault) && QToolTip::isVisible() &&
               QToolTip::text() == FromLatin1(in_fault) && !Ok().isEnabled();
    }

    /// A tool tip takes a moment to go.
    bool ShowsNoFault() const
    {
        return Edit().palette() == QPalette() && Edit().toolTip().isEmpty() && Ok().isEnabled() &&
               WaitFor([] { return !FindToolTip(); });
    }
};

/// The colour that an edit shows behind its text, at its right end.
QColor GroundOf(QLineEdit& in_edit)
{
    QImage picture(in_edit.size(), QImage::Format_RGB32);
    in_edit.render(&picture);
    return QColor(picture.pixel(in_edit.width() - 8, in_edit.height() / 2));
}

/// Types a text in the place of what is selected.
void Retype(const char* in_text)
{
    PressKey(Qt::Key_A, Qt::ControlModifier);
    TypeText(FromLatin1(in_text));
}

void Clear()
{
    PressKey(Qt::Key_A, Qt::ControlModifier);
    PressKey(Qt::Key_Delete);
}

void Paste(const QString& in_text)
{
    QApplication::clipboard()->setText(in_text);
    PressKey(Qt::Key_V, Qt::ControlModifier);
}

} // namespace

class TestRenameDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setCursorFlashTime(0); }

    void cleanup()
    {
        QToolTip::hideText();
        QVERIFY(WaitFor([] { return !FindToolTip(); }));
    }

    void theTitleNamesTheCompound_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("plain") << QByteArray("Blend");
        QTest::newRow("blanks") << QByteArray(" my blend ");
        QTest::newRow("place of a name") << QByteArray("%1");
        QTest::newRow("places of names") << QByteArray("%1 of %2 %L1 %n");
        QTest::newRow("ampersand") << QByteArray("a & b");
        QTest::newRow("Latin-1") << QByteArray("\xC4rger \xFF");
        QTest::newRow("control characters") << QByteArray("a\tb\x01");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("10000 characters") << QByteArray(10000, 'n');
    }

    void theTitleNamesTheCompound()
    {
        QFETCH(QByteArray, name);
        Renaming renaming(name.constData());
        RenameDialog dialog(renaming);
        QCOMPARE(dialog.windowTitle(), FromLatin1("Rename ") + QString::fromLatin1(name));
        QCOMPARE(dialog.GetName(), QString::fromLatin1(name));
        dialog.SetName(FromLatin1("other"));
        QCOMPARE(dialog.windowTitle(), FromLatin1("Rename ") + QString::fromLatin1(name));
    }

    void theWindowHasNoParentAndNoHelpButton()
    {
        Renaming renaming;
        const RenameDialog dialog(renaming);
        const QDialog plain;
        QVERIFY(!dialog.parentWidget());
        QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
        QCOMPARE(dialog.windowFlags(), plain.windowFlags() & ~Qt::WindowContextHelpButtonHint);
    }

    void theCheckIsTheOnlySlot()
    {
        const QMetaObject& object = CRenameCompoundDialog::staticMetaObject;
        QCOMPARE(object.methodCount() - object.methodOffset(), 1);
        QCOMPARE(object.indexOfSlot("OnNameChanged(QString)"), object.methodOffset());
    }

    void labelAndEditStandAboveTheButtons()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        QVBoxLayout* const rows = qobject_cast<QVBoxLayout*>(dialog.layout());
        QVERIFY(rows);
        QCOMPARE(rows->count(), 2);
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
        rows->getContentsMargins(&left, &top, &right, &bottom);
        QCOMPARE(QRect(left, top, right, bottom), QRect(5, 5, 5, 5));
        QHBoxLayout* const row = qobject_cast<QHBoxLayout*>(rows->itemAt(0)->layout());
        QVERIFY(row);
        QCOMPARE(row->count(), 2);
        QCOMPARE(row->sizeConstraint(), QLayout::SetDefaultConstraint);
        for (int i = 0; i < 2; ++i)
        {
            QCOMPARE(row->stretch(i), 0);
            QVERIFY(!row->itemAt(i)->alignment());
        }
        QCOMPARE(row->itemAt(0)->widget(), static_cast<QWidget*>(FindLabel(dialog, FromLatin1("New name:"))));
        QCOMPARE(row->itemAt(1)->widget(), static_cast<QWidget*>(&dialog.Edit()));
        QCOMPARE(rows->itemAt(1)->widget(), static_cast<QWidget*>(&dialog.Buttons()));
        QCOMPARE(rows->itemAt(1)->alignment(), Qt::Alignment(Qt::AlignRight | Qt::AlignBottom));
        QCOMPARE(FindLabel(dialog, FromLatin1("New name:"))->x(), 5);
        QCOMPARE(dialog.Edit().geometry().right(), dialog.width() - 1 - 5);
        QCOMPARE(dialog.Buttons().geometry().bottomRight(), QPoint(dialog.width() - 1 - 5, dialog.height() - 1 - 5));
    }

    void theEditIsAtLeast120Wide()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QCOMPARE(dialog.Edit().minimumWidth(), 120);
        QVERIFY(ShowActive(dialog));
        dialog.resize(dialog.minimumSizeHint());
        QVERIFY(dialog.Edit().width() >= 120);
    }

    void thereAreOkAndCancelInARow()
    {
        Renaming renaming;
        const RenameDialog dialog(renaming);
        QCOMPARE(dialog.Buttons().orientation(), Qt::Horizontal);
        QCOMPARE(int(dialog.Buttons().standardButtons()), int(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
        QCOMPARE(dialog.Buttons().buttons().size(), 2);
    }

    void theEditOwnsItsValidator()
    {
        Renaming renaming;
        const RenameDialog dialog(renaming);
        QVERIFY(dialog.Edit().validator());
        QCOMPARE(dialog.Edit().validator()->parent(), static_cast<QObject*>(&dialog.Edit()));
    }

    void theEditHasTheFocusAndTheNameIsSelected()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QCOMPARE(dialog.focusWidget(), static_cast<QWidget*>(&dialog.Edit()));
        QVERIFY(ShowActive(dialog));
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(&dialog.Edit()));
        QCOMPARE(dialog.Edit().selectedText(), FromLatin1("Blend"));
        TypeText(FromLatin1("M"));
        QCOMPARE(dialog.GetName(), FromLatin1("M"));
    }

    void theTabKeyGoesFromTheEditToTheButtons()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        const QList<QWidget*> stops = FollowTabKey();
        QCOMPARE(stops.size(), 3);
        QCOMPARE(stops.at(0), static_cast<QWidget*>(&dialog.Edit()));
        QVERIFY(stops.contains(&dialog.Ok()) && stops.contains(&dialog.Cancel()));
    }

    void theEditIsEmptyUntilANameIsSet()
    {
        Renaming renaming;
        const CRenameCompoundDialog dialog(renaming.m_library.GetAccessor(), renaming.m_compound);
        QCOMPARE(dialog.GetName(), QString());
        QVERIFY(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->isEnabled());
    }

    void okAtOnceReturnsTheNameThatWasSet()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        const int result = RunDialog(dialog, [&dialog](QWidget&) { Click(dialog.Ok()); });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetName(), FromLatin1("Blend"));
    }

    void settingANameChecksNothing()
    {
        Renaming renaming;
        renaming.m_library.Add(NewItem::Solver("Add"));
        RenameDialog dialog(renaming);
        const char* const names[] = {"", " ", "Add", "a-b", "a;%1"};
        for (const char* const name : names)
        {
            dialog.SetName(FromLatin1(name));
            QCOMPARE(dialog.GetName(), FromLatin1(name));
            QVERIFY(dialog.ShowsNoFault());
        }
        QVERIFY(!QToolTip::isVisible());
        const int result = RunDialog(dialog, [&dialog](QWidget&) { Click(dialog.Ok()); });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetName(), FromLatin1("a;%1"));
    }

    void settingANameLeavesAFaultThatIsShown()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Clear();
        QVERIFY(dialog.Shows(gEmpty));
        dialog.SetName(FromLatin1("Free"));
        QVERIFY(!dialog.Ok().isEnabled());
        QCOMPARE(dialog.Edit().toolTip(), FromLatin1(gEmpty));
    }

    void clearingTheNameIsRefused()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        QVERIFY(dialog.ShowsNoFault());
        Clear();
        QVERIFY(dialog.Shows(gEmpty));
        TypeText(FromLatin1("x"));
        QVERIFY(dialog.ShowsNoFault());
    }

    void aNameInUseIsRefused()
    {
        Renaming renaming;
        renaming.m_library.Add(NewItem::Solver("Add"));
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Retype("Ad");
        QVERIFY(dialog.ShowsNoFault());
        TypeText(FromLatin1("d"));
        QVERIFY(dialog.Shows(gUsed));
        TypeText(FromLatin1("2"));
        QVERIFY(dialog.ShowsNoFault());
        PressKey(Qt::Key_Backspace);
        QVERIFY(dialog.Shows(gUsed));
    }

    void oneFaultReplacesTheOther()
    {
        Renaming renaming;
        renaming.m_library.Add(NewItem::Solver("A"));
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Retype("A");
        QVERIFY(dialog.Shows(gUsed));
        PressKey(Qt::Key_Backspace);
        QVERIFY(dialog.Shows(gEmpty));
    }

    void theFaultStandsAtTheTopLeftCornerOfTheEdit_data()
    {
        QTest::addColumn<bool>("empty");
        QTest::newRow("empty") << true;
        QTest::newRow("used") << false;
    }

    void theFaultStandsAtTheTopLeftCornerOfTheEdit()
    {
        QFETCH(bool, empty);
        Renaming renaming;
        renaming.m_library.Add(NewItem::Solver("Add"));
        RenameDialog dialog(renaming);
        dialog.move(100, 100);
        QVERIFY(ShowActive(dialog));
        if (empty)
            Clear();
        else
            Retype("Add");
        QWidget* const tip = FindToolTip();
        QVERIFY(tip);
#ifndef Q_OS_WIN
        // There the toolkit gives every tip to the screen, so that no window comes to the front with it.
        QCOMPARE(tip->parentWidget(), static_cast<QWidget*>(&dialog.Edit()));
#endif
        const QRect place = tip->geometry();
        // The same text, shown at that corner by hand, after another one elsewhere.
        QToolTip::showText(QPoint(300, 300), FromLatin1("elsewhere"), &dialog);
        QVERIFY(FindToolTip()->pos() != place.topLeft());
        QToolTip::showText(dialog.Edit().mapToGlobal(QPoint(0, 0)), FromLatin1(empty ? gEmpty : gUsed), &dialog.Edit());
        QCOMPARE(FindToolTip()->geometry(), place);
    }

    void theFaultGoesWhenTheNameIsGood()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Clear();
        QVERIFY(FindToolTip());
        TypeText(FromLatin1("x"));
        QVERIFY(WaitFor([] { return !FindToolTip(); }));
    }

    void theEditIsRedInEveryState()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        const QPalette::ColorRole role = dialog.Edit().backgroundRole();
        QPalette expected;
        expected.setColor(QPalette::All, role, gRed);
        Clear();
        const QPalette::ColorGroup groups[] = {QPalette::Active, QPalette::Inactive, QPalette::Disabled};
        for (const QPalette::ColorGroup group : groups)
        {
            QCOMPARE(dialog.Edit().palette().color(group, role), gRed);
            QCOMPARE(dialog.Edit().palette().color(group, QPalette::Text), expected.color(group, QPalette::Text));
        }
        QCOMPARE(dialog.Edit().palette(), expected);
        TypeText(FromLatin1("x"));
        QCOMPARE(dialog.Edit().palette(), QPalette());
    }

    void theRedCanBeSeen()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        QVERIFY(GroundOf(dialog.Edit()) != gRed);
        Clear();
        QCOMPARE(GroundOf(dialog.Edit()), gRed);
        TypeText(FromLatin1("x"));
        QVERIFY(GroundOf(dialog.Edit()) != gRed);
    }

    void aRefusedNameCannotBeConfirmed()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        bool stayedOpen = false;
        const int result = RunDialog(dialog, [&](QWidget& in_window) {
            Clear();
            PressKey(Qt::Key_Return);
            Click(dialog.Ok());
            stayedOpen = in_window.isVisible();
            PressKey(Qt::Key_Escape);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(stayedOpen);
    }

    void enterConfirmsANewName()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        const int result = RunDialog(dialog, [](QWidget&) {
            Retype("a_ ");
            PressKey(Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetName(), FromLatin1("a_ "));
        QCOMPARE(renaming.m_library.GetAccessor().GetItemName(renaming.m_item, true, nullptr), std::string("Blend"));
    }

    void cancelEscapeAndClosingReject()
    {
        Renaming renaming;
        RenameDialog cancelled(renaming);
        QCOMPARE(RunDialog(cancelled, [&cancelled](QWidget&) { Click(cancelled.Cancel()); }), int(QDialog::Rejected));
        RenameDialog escaped(renaming);
        QCOMPARE(RunDialog(escaped, [](QWidget&) { PressKey(Qt::Key_Escape); }), int(QDialog::Rejected));
        RenameDialog closed(renaming);
        QCOMPARE(RunDialog(closed, [](QWidget& in_window) { in_window.close(); }), int(QDialog::Rejected));
    }

    void thePresentNameIsAcceptedInWhateverCase()
    {
        Renaming renaming("foo");
        renaming.m_library.Add(NewItem::Solver("Foo"));
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        const char* const names[] = {"foo", "Foo", "FOO"};
        for (const char* const name : names)
        {
            Clear();
            QVERIFY(dialog.Shows(gEmpty));
            Paste(FromLatin1(name));
            QCOMPARE(dialog.GetName(), FromLatin1(name));
            QVERIFY(dialog.ShowsNoFault());
        }
    }

    void thePresentNameCountsInLatin1LettersToo()
    {
        Renaming renaming("\xDC"
                          "bung \xE9");
        const char variant[] = "\xFC"
                               "bung \xC9";
        renaming.m_library.Add(NewItem::Solver(variant));
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Clear();
        Paste(FromLatin1(variant));
        QCOMPARE(dialog.GetName(), FromLatin1(variant));
        QVERIFY(dialog.ShowsNoFault());
    }

    void anotherNameIsCheckedLetterByLetter()
    {
        Renaming renaming;
        renaming.m_library.Add(NewItem::Solver("Add"));
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Retype("ADD");
        QVERIFY(dialog.ShowsNoFault());
    }

    void aRenameMeanwhileLeavesThePresentNameAsItWas()
    {
        Renaming renaming("foo");
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        renaming.m_library.Rename(renaming.m_item, "bar");
        renaming.m_library.Add(NewItem::Solver("foo"));
        Retype("foo");
        QVERIFY(dialog.ShowsNoFault());
        Retype("bar");
        QVERIFY(dialog.Shows(gUsed));
        QCOMPARE(dialog.windowTitle(), FromLatin1("Rename foo"));
    }

    void whatCannotStartANameCannotBeTyped()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Clear();
        TypeText(FromLatin1(" -.;%&/\xA0\xD7"));
        QCOMPARE(dialog.GetName(), QString());
        QVERIFY(dialog.Shows(gEmpty));
        TypeText(FromLatin1("_"));
        QCOMPARE(dialog.GetName(), FromLatin1("_"));
        PressKey(Qt::Key_Home);
        TypeText(FromLatin1(" "));
        QCOMPARE(dialog.GetName(), FromLatin1("_"));
        TypeText(FromLatin1("3"));
        QCOMPARE(dialog.GetName(), FromLatin1("3_"));
    }

    void punctuationCannotBeTypedAndChangesNothing()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        QSignalSpy edits(&dialog.Edit(), SIGNAL(textEdited(const QString&)));
        PressKey(Qt::Key_End);
        TypeText(FromLatin1("-.;%&/()[]{}+*?!'\"\\\xD7"));
        QCOMPARE(dialog.GetName(), FromLatin1("Blend"));
        QCOMPARE(static_cast<int>(edits.count()), 0);
        QVERIFY(dialog.ShowsNoFault());
    }

    void aPresentNameThatBreaksTheRuleCanBeEditedFreely()
    {
        Renaming renaming("a-b");
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        PressKey(Qt::Key_End);
        TypeText(FromLatin1(".c"));
        QCOMPARE(dialog.GetName(), FromLatin1("a-b.c"));
        QVERIFY(dialog.ShowsNoFault());
        Retype("x");
        QCOMPARE(dialog.GetName(), FromLatin1("x"));
        TypeText(FromLatin1("-"));
        QCOMPARE(dialog.GetName(), FromLatin1("x"));
    }

    void blanksAndUnderscoresCanBeTypedInsideAndAtTheEnd()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Retype("a b");
        QCOMPARE(dialog.GetName(), FromLatin1("a b"));
        Retype("a_");
        QCOMPARE(dialog.GetName(), FromLatin1("a_"));
        Retype("3d  ");
        QCOMPARE(dialog.GetName(), FromLatin1("3d  "));
        QVERIFY(dialog.ShowsNoFault());
    }

    void lettersOfOtherScriptsCanBeTyped()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        const QString name = QString(QChar(0x03A9)) + QChar(0x6F22) + FromLatin1("\xC4");
        PressKey(Qt::Key_A, Qt::ControlModifier);
        TypeText(name);
        QCOMPARE(dialog.GetName(), name);
        QVERIFY(dialog.ShowsNoFault());
    }

    void whatLatin1LacksIsAskedForAsAQuestionMark()
    {
        Renaming renaming;
        renaming.m_library.Add(NewItem::Solver("a?"));
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        PressKey(Qt::Key_A, Qt::ControlModifier);
        TypeText(QString(QLatin1Char('a')) + QChar(0x6F22));
        QVERIFY(dialog.Shows(gUsed));
    }

    void badTextCannotBePasted_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("hyphen") << FromLatin1("a-b");
        QTest::newRow("tags") << FromLatin1("a;b");
        QTest::newRow("markup") << FromLatin1("<b>a</b>");
        QTest::newRow("control character") << FromLatin1("a\x01");
        QTest::newRow("null character") << FromLatin1("a") + QChar(0);
        QTest::newRow("letter of two units") << FromLatin1("a") + QChar(0xD835) + QChar(0xDC00);
        QTest::newRow("zero-width space") << FromLatin1("a") + QChar(0x200B);
        QTest::newRow("10000 characters and a dot") << QString(10000, QLatin1Char('a')) + QLatin1Char('.');
    }

    void badTextCannotBePasted()
    {
        QFETCH(QString, text);
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        PressKey(Qt::Key_End);
        Paste(text);
        QCOMPARE(dialog.GetName(), FromLatin1("Blend"));
        PressKey(Qt::Key_A, Qt::ControlModifier);
        Paste(text);
        QCOMPARE(dialog.GetName(), FromLatin1("Blend"));
        QVERIFY(dialog.Ok().isEnabled());
    }

    void lineBreaksAndTabsCanBePasted()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        PressKey(Qt::Key_A, Qt::ControlModifier);
        Paste(FromLatin1("a\nb\tc"));
        QCOMPARE(dialog.GetName(), FromLatin1("a\nb\tc"));
        QVERIFY(dialog.ShowsNoFault());
    }

    void textThatMayFollowMayNotLead()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        PressKey(Qt::Key_Home);
        Paste(FromLatin1(" 2"));
        QCOMPARE(dialog.GetName(), FromLatin1("Blend"));
        PressKey(Qt::Key_End);
        Paste(FromLatin1(" 2"));
        QCOMPARE(dialog.GetName(), FromLatin1("Blend 2"));
    }

    void aNameOf10000CharactersCanBePasted()
    {
        Renaming renaming;
        renaming.m_library.Add(NewItem::Solver(std::string(9999, 'a')));
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        PressKey(Qt::Key_A, Qt::ControlModifier);
        Paste(QString(10000, QLatin1Char('a')));
        QCOMPARE(dialog.GetName().size(), 10000);
        QVERIFY(dialog.ShowsNoFault());
        PressKey(Qt::Key_Backspace);
        QVERIFY(dialog.Shows(gUsed));
    }

    void aLibraryThatEndsMeanwhileHasNoNames()
    {
        Renaming renaming;
        renaming.m_library.Add(NewItem::Solver("Add"));
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Retype("Add");
        QVERIFY(dialog.Shows(gUsed));
        renaming.m_library.Close();
        Retype("Add");
        QVERIFY(dialog.ShowsNoFault());
        Clear();
        QVERIFY(dialog.Shows(gEmpty));
    }

    void aCompoundThatIsRemovedMeanwhileKeepsItsName()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        const int result = RunDialog(dialog, [&](QWidget&) {
            renaming.m_library.Remove(renaming.m_item);
            Retype("blend");
            PressKey(Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetName(), FromLatin1("blend"));
        QCOMPARE(dialog.windowTitle(), FromLatin1("Rename Blend"));
    }

    void withoutItsEditTheDialogKeepsThePresentName()
    {
        Renaming renaming;
        RenameDialog dialog(renaming);
        QVERIFY(ShowActive(dialog));
        Retype("Mix");
        delete &dialog.Edit();
        QCOMPARE(dialog.GetName(), FromLatin1("Blend"));
        dialog.SetName(FromLatin1("Add"));
        QVERIFY(QMetaObject::invokeMethod(&dialog, "OnNameChanged", Q_ARG(QString, QString())));
        QCOMPARE(dialog.GetName(), FromLatin1("Blend"));
        Click(dialog.Ok());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.GetName(), FromLatin1("Blend"));
    }

    void withoutOkOrAllButtonsTheNameIsStillChecked()
    {
        Renaming renaming;
        for (int i = 0; i < 2; ++i)
        {
            RenameDialog dialog(renaming);
            delete (i == 0 ? static_cast<QWidget*>(&dialog.Ok()) : &dialog.Buttons());
            QVERIFY(ShowActive(dialog));
            dialog.Edit().setFocus();
            Clear();
            QCOMPARE(dialog.Edit().toolTip(), FromLatin1(gEmpty));
            TypeText(FromLatin1("Mix"));
            QCOMPARE(dialog.Edit().toolTip(), QString());
            QCOMPARE(dialog.GetName(), FromLatin1("Mix"));
            QVERIFY(WaitFor([] { return !FindToolTip(); }));
        }
    }

    void withoutACompoundThereIsNoPresentName()
    {
        Renaming renaming;
        CompoundAccessor none;
        CRenameCompoundDialog dialog(renaming.m_library.GetAccessor(), none);
        QCOMPARE(dialog.windowTitle(), FromLatin1("Rename "));
        QVERIFY(ShowActive(dialog));
        Retype("Blend");
        QCOMPARE(QToolTip::text(), FromLatin1(gUsed));
        Clear();
        QCOMPARE(QToolTip::text(), FromLatin1(gEmpty));
    }
};

NODEBROWSER_TEST_MAIN(TestRenameDialog)
#include "test_renamedialog.moc"
