// SPDX-License-Identifier: MIT
#include "nodebrowser/vireodialog.h"
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/dialogs/dialogfixture.h"
#include "tests/support/testmain.h"

#include <locale>
#include <memory>
#include <string>
#include <vector>

using qtcompat::FromLatin1;

namespace
{

const char gHint[] = "State machine tags: Condition, TransitionBlend";

/// A dialog for an item named "Blend".
class TagsDialog : public CItemTagsEditorDialog
{
public:
    explicit TagsDialog(const char* in_tags) : CItemTagsEditorDialog("Blend", in_tags) {}
};

QLineEdit& TagsEdit(const QWidget& in_dialog)
{
    return *in_dialog.findChild<QLineEdit*>();
}

/// The hint of the dialog that is open, which is no part of it.
QLabel* FindHint()
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (int i = 0; i < widgets.size(); ++i)
    {
        QLabel* const label = qobject_cast<QLabel*>(widgets.at(i));
        if (label && label->text() == FromLatin1(gHint))
            return label;
    }
    return nullptr;
}

/// The seven widgets of a dialog with the tags "color", in the order in which they are made.
QList<QPointer<QWidget>> AllWidgets(const QWidget& in_dialog)
{
    QList<QPointer<QWidget>> widgets;
    widgets << FindButton(in_dialog, "Ok") << FindButton(in_dialog, "Cancel")
            << FindLabel(in_dialog, FromLatin1("Name: ")) << FindLabel(in_dialog, FromLatin1("Blend"))
            << FindLabel(in_dialog, FromLatin1("Tags: ")) << in_dialog.findChild<QLineEdit*>() << FindHint();
    return widgets;
}

int Confirm(QDialog& in_dialog)
{
    return RunDialog(in_dialog, [](QWidget& in_window) { Click(*FindButton(in_window, "Ok")); });
}

/// The tags that a dialog returns when a text is typed into it and confirmed.
std::string Normalise(const QString& in_text)
{
    TagsDialog dialog("old");
    TagsEdit(dialog).setText(in_text);
    return Confirm(dialog) == QDialog::Accepted ? dialog.GetItemTags() : std::string("not accepted");
}

/// The classic character classes, except that "x" is white space and the blank is not.
class BlankIsNoSpace : public std::ctype<char>
{
public:
    BlankIsNoSpace() : std::ctype<char>(MakeTable()) {}

private:
    static const mask* MakeTable()
    {
        static std::vector<mask> table(classic_table(), classic_table() + table_size);
        table['x'] = static_cast<mask>(table['x'] | space);
        table[' '] = static_cast<mask>(table[' '] & ~space);
        return table.data();
    }
};

/// Makes a locale the global one for as long as it lives.
class GlobalLocale
{
public:
    explicit GlobalLocale(const std::locale& in_locale) : m_before(std::locale::global(in_locale)) {}
    ~GlobalLocale() { std::locale::global(m_before); }
    GlobalLocale(const GlobalLocale&) = delete;
    GlobalLocale& operator=(const GlobalLocale&) = delete;

private:
    std::locale m_before;
};

} // namespace

Q_DECLARE_METATYPE(std::string)

class TestTagsDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nameTagsAndCaptionsAreShown()
    {
        const CItemTagsEditorDialog dialog("Blend", "color;mix");
        QCOMPARE(dialog.windowTitle(), FromLatin1("Edit Item Tags"));
        QCOMPARE(dialog.findChildren<QLabel*>().size(), 3);
        QVERIFY(FindLabel(dialog, FromLatin1("Name: ")));
        QVERIFY(FindLabel(dialog, FromLatin1("Blend")));
        QVERIFY(FindLabel(dialog, FromLatin1("Tags: ")));
        QCOMPARE(dialog.findChildren<QLineEdit*>().size(), 1);
        QCOMPARE(TagsEdit(dialog).text(), FromLatin1("color;mix"));
        QVERIFY(!TagsEdit(dialog).validator());
        QVERIFY(!TagsEdit(dialog).isReadOnly());
    }

    void theWindowHasNoParentAndTheUsualFlags()
    {
        const TagsDialog dialog("");
        const QDialog plain;
        QVERIFY(!dialog.parentWidget());
        QCOMPARE(dialog.windowFlags(), plain.windowFlags());
        QVERIFY(!dialog.layout());
    }

    void okAndCancelAreSlotsAndThereIsNothingElse()
    {
        const QMetaObject& object = CItemTagsEditorDialog::staticMetaObject;
        QCOMPARE(object.methodCount() - object.methodOffset(), 2);
        QCOMPARE(object.indexOfSlot("OnOk()"), object.methodOffset());
        QCOMPARE(object.indexOfSlot("OnCancel()"), object.methodOffset() + 1);
    }

    void everyWidgetStandsAtItsPlace()
    {
        TagsDialog dialog("color");
        QVERIFY(ShowActive(dialog));
        QCOMPARE(FindLabel(dialog, FromLatin1("Name: "))->pos(), QPoint(10, 12));
        QCOMPARE(FindLabel(dialog, FromLatin1("Tags: "))->pos(), QPoint(10, 42));
        QCOMPARE(FindLabel(dialog, FromLatin1("Blend"))->geometry(), QRect(120, 10, 220, 20));
        QCOMPARE(TagsEdit(dialog).geometry(), QRect(120, 40, 220, 20));
        QCOMPARE(FindButton(dialog, "Ok")->pos(), QPoint(100, 100));
        QCOMPARE(FindButton(dialog, "Cancel")->pos(), QPoint(190, 100));
    }

    void captionsAndButtonsHaveTheSizeThatTheyAskFor()
    {
        TagsDialog dialog("color");
        QVERIFY(ShowActive(dialog));
        QList<QWidget*> widgets;
        widgets << FindLabel(dialog, FromLatin1("Name: ")) << FindLabel(dialog, FromLatin1("Tags: "))
                << FindButton(dialog, "Ok") << FindButton(dialog, "Cancel");
        for (int i = 0; i < widgets.size(); ++i)
            QCOMPARE(widgets.at(i)->size(), widgets.at(i)->sizeHint());
    }

    void theSizeIsFixed()
    {
        TagsDialog dialog("");
        QCOMPARE(dialog.minimumSize(), QSize(370, 130));
        QCOMPARE(dialog.maximumSize(), QSize(370, 130));
        QVERIFY(ShowActive(dialog));
        QCOMPARE(dialog.size(), QSize(370, 130));
    }

    void okIsTheDefaultButton()
    {
        const TagsDialog dialog("");
        QVERIFY(FindButton(dialog, "Ok")->isDefault());
        QVERIFY(!FindButton(dialog, "Cancel")->isDefault());
    }

    void theTabKeyStartsAtTheButtons()
    {
        TagsDialog dialog("");
        QVERIFY(ShowActive(dialog));
        QList<QWidget*> expected;
        expected << FindButton(dialog, "Ok") << FindButton(dialog, "Cancel") << &TagsEdit(dialog);
        QCOMPARE(FollowTabKey(), expected);
    }

    void theHintIsNoPartOfTheDialogAndNeverVisible()
    {
        TagsDialog dialog("color");
        QLabel* const hint = FindHint();
        QVERIFY(hint);
        QVERIFY(!hint->parent());
        QCOMPARE(hint->pos(), QPoint(10, 72));
        QVERIFY(!FindLabel(dialog, FromLatin1(gHint)));
        bool visible = true;
        RunDialog(dialog, [&](QWidget& in_window) {
            visible = hint->isVisible() || in_window.childAt(15, 78);
            Click(*FindButton(in_window, "Ok"));
        });
        QVERIFY(!visible);
        QVERIFY(!hint->isVisible());
    }

    void theHintGoesWithTheDialog()
    {
        QPointer<QLabel> hint;
        {
            const TagsDialog dialog("");
            hint = FindHint();
            QVERIFY(hint);
        }
        QVERIFY(!hint);
        QVERIFY(!FindHint());
    }

    void theHintMayGoBeforeTheDialog()
    {
        std::unique_ptr<TagsDialog> dialog(new TagsDialog("color"));
        delete FindHint();
        QVERIFY(!FindHint());
        QCOMPARE(Confirm(*dialog), int(QDialog::Accepted));
        QCOMPARE(dialog->GetItemTags(), std::string("color"));
        const QPointer<QWidget> edit(&TagsEdit(*dialog));
        dialog.reset();
        QVERIFY(!edit);
    }

    void aDialogThatIsOpenAndEditedGoesWithAllItsWidgets()
    {
        TagsDialog* const dialog = new TagsDialog("color");
        QVERIFY(ShowActive(*dialog));
        TagsEdit(*dialog).setFocus();
        const QList<QPointer<QWidget>> widgets = AllWidgets(*dialog);
        for (int i = 0; i < widgets.size(); ++i)
            QVERIFY(widgets.at(i));
        delete dialog;
        for (int i = 0; i < widgets.size(); ++i)
            QVERIFY(!widgets.at(i));
    }

    void everyWidgetMayGoBeforeTheDialog_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        const char* const names[] = {"ok", "cancel", "name caption", "name", "tags caption", "tags edit", "hint"};
        for (int i = 0; i < 7; ++i)
            QTest::newRow(names[i]) << i << i;
        QTest::newRow("all") << 0 << 6;
    }

    void everyWidgetMayGoBeforeTheDialog()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        std::unique_ptr<TagsDialog> dialog(new TagsDialog("color"));
        QVERIFY(ShowActive(*dialog));
        const QList<QPointer<QWidget>> widgets = AllWidgets(*dialog);
        QCOMPARE(widgets.size(), 7);
        for (int i = first; i <= last; ++i)
        {
            QVERIFY(widgets.at(i));
            delete widgets.at(i);
        }
        QVERIFY(QMetaObject::invokeMethod(dialog.get(), "OnOk"));
        QVERIFY(!dialog->isVisible());
        QCOMPARE(dialog->GetItemTags(), std::string("color"));
        dialog.reset();
        for (int i = 0; i < widgets.size(); ++i)
            QVERIFY(!widgets.at(i));
    }

    void withoutItsEditTheDialogChangesNoTags()
    {
        TagsDialog dialog(" a ;b;");
        TagsEdit(dialog).setText(FromLatin1("new"));
        delete dialog.findChild<QLineEdit*>();
        QCOMPARE(Confirm(dialog), int(QDialog::Rejected));
        QCOMPARE(dialog.GetItemTags(), std::string(" a ;b;"));
    }

    void tagsAreNormalised_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<std::string>("tags");
        QTest::newRow("nothing") << QString() << std::string();
        QTest::newRow("one tag") << FromLatin1("color") << std::string("color");
        QTest::newRow("two tags") << FromLatin1("color;mix") << std::string("color;mix");
        QTest::newRow("blanks round a tag") << FromLatin1("  color ") << std::string("color");
        QTest::newRow("blanks inside a tag stay") << FromLatin1("two  words") << std::string("two  words");
        QTest::newRow("two separators") << FromLatin1("a;;b") << std::string("a;b");
        QTest::newRow("many separators") << FromLatin1(";;;a;;;;b;;") << std::string("a;b");
        QTest::newRow("blanks between separators") << FromLatin1("a; ;b") << std::string("a;b");
        QTest::newRow("all at once") << FromLatin1(" a ;b;;c ;") << std::string("a;b;c");
        QTest::newRow("lone separator") << FromLatin1(";") << std::string();
        QTest::newRow("only separators and blanks") << FromLatin1(" ; ;;  ;") << std::string();
        QTest::newRow("only blanks") << FromLatin1("   ") << std::string();
        QTest::newRow("comma") << FromLatin1("one,two") << std::string("one,two");
        QTest::newRow("comma and blanks") << FromLatin1(" one , two ;three") << std::string("one , two;three");
        QTest::newRow("order stays") << FromLatin1("b;a;c") << std::string("b;a;c");
        QTest::newRow("twice the same tag") << FromLatin1("a;a") << std::string("a;a");
        QTest::newRow("case stays") << FromLatin1("Color;COLOR") << std::string("Color;COLOR");
        QTest::newRow("tab, line break and the like") << FromLatin1("\ta\n;\r\v b\f") << std::string("a;b");
        QTest::newRow("control character") << FromLatin1("\x01;a\x7F") << std::string("\x01;a\x7F");
        QTest::newRow("null character") << FromLatin1("a") + QChar(0) + FromLatin1("b") << std::string("a");
        QTest::newRow("Latin-1") << FromLatin1(" \xFC"
                                               "ber ; \xDF")
                                 << std::string("\xFC"
                                                "ber;\xDF");
        QTest::newRow("no-break space is no blank") << FromLatin1("\xA0"
                                                                  "a;\xA0")
                                                    << std::string("\xA0"
                                                                   "a;\xA0");
        QTest::newRow("beyond Latin-1") << QString(QChar(0x6F22)) + FromLatin1(" ; a") << std::string("?;a");
        QTest::newRow("wide blank is no blank") << QString(QChar(0x3000)) << std::string("?");
        QTest::newRow("10000 characters") << QString(10000, QLatin1Char('a')) << std::string(10000, 'a');
        QTest::newRow("10000 separators") << QString(10000, QLatin1Char(';')) + FromLatin1("a") << std::string("a");
        QTest::newRow("5000 tags") << FromLatin1(" a;").repeated(5000)
                                   << std::string("a").append(FromLatin1(";a").repeated(4999).toLatin1().constData());
    }

    void tagsAreNormalised()
    {
        QFETCH(QString, typed);
        QFETCH(std::string, tags);
        QCOMPARE(Normalise(typed), tags);
    }

    void whiteSpaceIsThatOfTheGlobalLocale()
    {
        const GlobalLocale locale(std::locale(std::locale::classic(), new BlankIsNoSpace));
        QCOMPARE(Normalise(FromLatin1("xaxbx; c ;x")), std::string("axb; c "));
    }

    void theTagsAreThosePassedInUntilOk()
    {
        TagsDialog dialog(" a ;b;");
        QCOMPARE(dialog.GetItemTags(), std::string(" a ;b;"));
        TagsEdit(dialog).setText(FromLatin1("new"));
        QCOMPARE(dialog.GetItemTags(), std::string(" a ;b;"));
    }

    void okWithoutEditingNormalisesTheOldTags()
    {
        TagsDialog untidy("a ; b");
        QCOMPARE(Confirm(untidy), int(QDialog::Accepted));
        QCOMPARE(untidy.GetItemTags(), std::string("a;b"));
        TagsDialog tidy("\xE4;b");
        QCOMPARE(Confirm(tidy), int(QDialog::Accepted));
        QCOMPARE(tidy.GetItemTags(), std::string("\xE4;b"));
    }

    void unusualOldTagsAreShownAsTheyAreAndNormalisedByOk_data()
    {
        QTest::addColumn<QByteArray>("old");
        QTest::addColumn<std::string>("tags");
        QTest::newRow("blanks") << QByteArray("   ") << std::string();
        QTest::newRow("control characters") << QByteArray("\x01 ;\ta\x7F") << std::string("\x01;a\x7F");
        QTest::newRow("line break") << QByteArray("a\nb;\nc\r\n") << std::string("a\nb;c");
        QTest::newRow("10000 characters") << QByteArray(10000, 'a') << std::string(10000, 'a');
    }

    void unusualOldTagsAreShownAsTheyAreAndNormalisedByOk()
    {
        QFETCH(QByteArray, old);
        QFETCH(std::string, tags);
        TagsDialog dialog(old.constData());
        QCOMPARE(TagsEdit(dialog).text(), QString::fromLatin1(old));
        QCOMPARE(dialog.GetItemTags(), std::string(old.constData()));
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetItemTags(), tags);
        QCOMPARE(TagsEdit(dialog).geometry(), QRect(120, 40, 220, 20));
        QCOMPARE(dialog.size(), QSize(370, 130));
    }

    void okWithNothingClearsTheTags()
    {
        TagsDialog dialog("color");
        const int result = RunDialog(dialog, [](QWidget& in_window) {
            TagsEdit(in_window).setFocus();
            PressKey(Qt::Key_A, Qt::ControlModifier);
            PressKey(Qt::Key_Delete);
            PressKey(Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetItemTags(), std::string());
    }

    void enterInTheEditConfirmsWhatWasTyped()
    {
        TagsDialog dialog("color");
        const int result = RunDialog(dialog, [](QWidget& in_window) {
            TagsEdit(in_window).setFocus();
            PressKey(Qt::Key_End);
            TypeText(FromLatin1(" ; mix"));
            PressKey(Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetItemTags(), std::string("color;mix"));
    }

    void cancelLeavesTheOldTags()
    {
        TagsDialog dialog(" color ");
        const int result = RunDialog(dialog, [](QWidget& in_window) {
            TagsEdit(in_window).setText(FromLatin1("other"));
            Click(*FindButton(in_window, "Cancel"));
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QCOMPARE(dialog.GetItemTags(), std::string(" color "));
    }

    void escapeLeavesTheOldTags()
    {
        TagsDialog dialog(" color ");
        const int result = RunDialog(dialog, [](QWidget& in_window) {
            TagsEdit(in_window).setText(FromLatin1("other"));
            PressKey(Qt::Key_Escape);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QCOMPARE(dialog.GetItemTags(), std::string(" color "));
    }

    void closingTheWindowLeavesTheOldTags()
    {
        TagsDialog dialog(" color ");
        const int result = RunDialog(dialog, [](QWidget& in_window) {
            TagsEdit(in_window).setText(FromLatin1("other"));
            in_window.close();
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QCOMPARE(dialog.GetItemTags(), std::string(" color "));
    }

    void theDialogKeepsCopiesOfWhatIsPassedIn()
    {
        QByteArray name("Blend");
        QByteArray tags("color");
        const CItemTagsEditorDialog dialog(name.constData(), tags.constData());
        name.fill('x');
        tags.fill('x');
        QCOMPARE(dialog.GetItemTags(), std::string("color"));
        QVERIFY(FindLabel(dialog, FromLatin1("Blend")));
    }

    void unusualNamesAreShownAsTheyAre_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("blank") << QByteArray("   ");
        QTest::newRow("ampersand") << QByteArray("Add & mix");
        QTest::newRow("percent") << QByteArray("%1 %n");
        QTest::newRow("markup") << QByteArray("<b>a</b><br>b");
        QTest::newRow("control characters") << QByteArray("a\tb\x01");
        QTest::newRow("Latin-1") << QByteArray("\xC4rger");
        QTest::newRow("10000 characters") << QByteArray(10000, 'n');
    }

    void unusualNamesAreShownAsTheyAre()
    {
        QFETCH(QByteArray, name);
        CItemTagsEditorDialog dialog(name.constData(), "color");
        QVERIFY(FindLabel(dialog, QString::fromLatin1(name)));
        QCOMPARE(FindLabel(dialog, QString::fromLatin1(name))->textFormat(), Qt::PlainText);
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetItemTags(), std::string("color"));
        QCOMPARE(FindLabel(dialog, QString::fromLatin1(name))->geometry(), QRect(120, 10, 220, 20));
        QCOMPARE(dialog.size(), QSize(370, 130));
    }
};

NODEBROWSER_TEST_MAIN(TestTagsDialog)
#include "test_tagsdialog.moc"
