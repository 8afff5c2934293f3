// SPDX-License-Identifier: MIT
#include "datamodel/helpers.h"
#include "datamodel/provider.h"
#include "memorymodel/datalayer.h"
#include "nodebrowser/vireodialog.h"
#include "qtcompat/latin1.h"
#include "tests/nodebrowser/dialogs/dialogfixture.h"
#include "tests/support/testmain.h"

#include <QComboBox>
#include <QMessageBox>
#include <QPointer>
#include <QStringList>

#include <memory>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIDUnlock;
using vireo::datamodel::ItemLibraryAccessor;

namespace
{

/// The dialog for a new compound, on a library or on none.
class CompoundDialog : public CVireoCompoundCreateDialog
{
public:
    explicit CompoundDialog(const ItemLibraryAccessor& in_library = ItemLibraryAccessor())
        : CVireoCompoundCreateDialog(in_library, "compound", "compound", true)
    {
    }
};

/// The dialog for a new signature.
class SignatureDialog : public CVireoCompoundCreateDialog
{
public:
    SignatureDialog() : CVireoCompoundCreateDialog(ItemLibraryAccessor(), "signature", "signature", false) {}
};

QLineEdit& NameEdit(const QWidget& in_dialog)
{
    return *FindEdits(in_dialog).at(0);
}

QLineEdit& CategoryEdit(const QWidget& in_dialog)
{
    return *FindEdits(in_dialog).at(1);
}

QComboBox* SignatureList(const QWidget& in_dialog)
{
    return in_dialog.findChild<QComboBox*>();
}

QStringList SignatureNames(const QWidget& in_dialog)
{
    QStringList names;
    const QComboBox& list = *SignatureList(in_dialog);
    for (int i = 0; i < list.count(); ++i)
        names << list.itemText(i);
    return names;
}

/// Confirms a dialog by its OK button.
int Confirm(QDialog& in_dialog)
{
    return RunDialog(in_dialog, [](QWidget& in_window) { Click(*FindButton(in_window, "Ok")); });
}

/// Confirms an empty name, and answers the message that this brings up with a key.
/// \param in_look what to do with the message before
void ConfirmEmptyName(QWidget& in_window, const std::function<void(QWidget&)>& in_look = nullptr)
{
    ModalUser reader;
    // The toolkit fixes the size of a message that has a window already.
    reader.WhenDialogOpens("Invalid Name", [&in_look](QDialog& in_message) {
        QVERIFY(Activate(in_message));
        if (in_look)
            in_look(in_message);
        PressKey(Qt::Key_Return);
    });
    Click(*FindButton(in_window, "Ok"));
    QVERIFY(reader.IsDone());
    QVERIFY(Activate(in_window));
}

/// Takes all items out of a library as soon as somebody asks about one of them.
class VanishingItems : private vireo::datamodel::IItemModel
{
public:
    explicit VanishingItems(Library& in_library) : m_library(in_library)
    {
        m_watched = InstallProvider(Provider());
        Provider provider = m_watched;
        provider.m_items = this;
        InstallProvider(provider);
    }
    ~VanishingItems() override { InstallProvider(m_watched); }
    VanishingItems(const VanishingItems&) = delete;
    VanishingItems& operator=(const VanishingItems&) = delete;

    int m_questions = 0;

private:
    vireo::datamodel::ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library) override
    {
        return m_watched.m_items->GetTOC(in_library);
    }
    bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor&, const char*) override { return false; }
    bool IsAbstractFunction(vireo::datamodel::ItemAccessor&) override
    {
        ++m_questions;
        const std::vector<ItemID> items = m_library.GetItems();
        for (const ItemID& item : items)
            m_library.Remove(item);
        return false;
    }
    bool IsValidGraphItemType(const char*, vireo::datamodel::ItemAccessor&) override { return false; }
    void SetGlobalVireoCompoundTarget(const vireo::datamodel::CompoundAccessor&,
                                      const vireo::datamodel::CompoundAccessor&) override
    {
    }
    const char* GetItemIDUID(const ItemID& in_item) override { return m_watched.m_items->GetItemIDUID(in_item); }
    hmx::fwk::ICommandManager* GetApplicationCommandManager() override { return nullptr; }

    Library& m_library;
    Provider m_watched;
};

const char gFirstUID[] = "11111111-1111-1111-1111-111111111111";
const char gSecondUID[] = "22222222-2222-2222-2222-222222222222";

} // namespace

class TestCreateDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theKindWordStandsInTitleAndLabel_data()
    {
        QTest::addColumn<QByteArray>("kindWord");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("label");
        QTest::newRow("compound") << QByteArray("compound") << FromLatin1("Create compound")
                                  << FromLatin1("Compound name: ");
        QTest::newRow("loop compound") << QByteArray("loop compound") << FromLatin1("Create loop compound")
                                       << FromLatin1("Loop compound name: ");
        QTest::newRow("signature") << QByteArray("signature") << FromLatin1("Create signature")
                                   << FromLatin1("Signature name: ");
        QTest::newRow("one letter") << QByteArray("x") << FromLatin1("Create x") << FromLatin1("X name: ");
        QTest::newRow("Latin-1") << QByteArray("\xE9tat") << FromLatin1("Create \xE9tat")
                                 << FromLatin1("\xC9tat name: ");
        QTest::newRow("capital beyond Latin-1")
            << QByteArray("\xFF") << FromLatin1("Create \xFF") << FromLatin1("? name: ");
        QTest::newRow("percent") << QByteArray("%1") << FromLatin1("Create %1") << FromLatin1("%1 name: ");
        QTest::newRow("nothing") << QByteArray("") << FromLatin1("Create ") << FromLatin1(" name: ");
    }

    void theKindWordStandsInTitleAndLabel()
    {
        QFETCH(QByteArray, kindWord);
        QFETCH(QString, title);
        QFETCH(QString, label);
        const CVireoCompoundCreateDialog dialog(ItemLibraryAccessor(), kindWord.constData(), "x", false);
        QCOMPARE(dialog.windowTitle(), title);
        QVERIFY(FindLabel(dialog, label));
    }

    void theDefaultNameIsThereAndTheCategoryIsEmpty()
    {
        const CVireoCompoundCreateDialog dialog(ItemLibraryAccessor(), "loop compound", "loopcompound", true);
        QCOMPARE(FindEdits(dialog).size(), 2);
        QCOMPARE(NameEdit(dialog).text(), FromLatin1("loopcompound"));
        QCOMPARE(CategoryEdit(dialog).text(), QString());
        QVERIFY(!NameEdit(dialog).validator());
        QVERIFY(!CategoryEdit(dialog).validator());
    }

    void theWindowHasNoParentAndTheUsualFlags()
    {
        const CompoundDialog dialog;
        const QDialog plain;
        QVERIFY(!dialog.parentWidget());
        QCOMPARE(dialog.windowFlags(), plain.windowFlags());
        QVERIFY(!dialog.layout());
    }

    void okAndCancelAreSlotsAndThereIsNothingElse()
    {
        const QMetaObject& object = CVireoCompoundCreateDialog::staticMetaObject;
        QCOMPARE(object.methodCount() - object.methodOffset(), 2);
        QCOMPARE(object.indexOfSlot("OnOk()"), object.methodOffset());
        QCOMPARE(object.indexOfSlot("OnCancel()"), object.methodOffset() + 1);
    }

    void everyWidgetStandsAtItsPlace()
    {
        CompoundDialog dialog;
        QVERIFY(ShowActive(dialog));
        QCOMPARE(FindLabel(dialog, FromLatin1("Compound name: "))->pos(), QPoint(10, 12));
        QCOMPARE(FindLabel(dialog, FromLatin1("Category: "))->pos(), QPoint(10, 42));
        QCOMPARE(FindLabel(dialog, FromLatin1("Signature: "))->pos(), QPoint(10, 72));
        QCOMPARE(NameEdit(dialog).geometry(), QRect(120, 10, 220, 20));
        QCOMPARE(CategoryEdit(dialog).geometry(), QRect(120, 40, 220, 20));
        QCOMPARE(SignatureList(dialog)->geometry(), QRect(120, 70, 220, 20));
        QCOMPARE(FindButton(dialog, "Ok")->pos(), QPoint(100, 100));
        QCOMPARE(FindButton(dialog, "Cancel")->pos(), QPoint(190, 100));
    }

    void labelsAndButtonsHaveTheSizeThatTheyAskFor()
    {
        CompoundDialog dialog;
        QVERIFY(ShowActive(dialog));
        const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
        QCOMPARE(labels.size(), 3);
        for (int i = 0; i < labels.size(); ++i)
            QCOMPARE(labels.at(i)->size(), labels.at(i)->sizeHint());
        const QList<QPushButton*> buttons = dialog.findChildren<QPushButton*>();
        QCOMPARE(buttons.size(), 2);
        for (int i = 0; i < buttons.size(); ++i)
            QCOMPARE(buttons.at(i)->size(), buttons.at(i)->sizeHint());
    }

    void theSizeIsFixed()
    {
        CompoundDialog dialog;
        QCOMPARE(dialog.minimumSize(), QSize(370, 130));
        QCOMPARE(dialog.maximumSize(), QSize(370, 130));
        QVERIFY(ShowActive(dialog));
        QCOMPARE(dialog.size(), QSize(370, 130));
    }

    void withoutTheSignatureRowTheSizeStaysAndAGapIsLeft()
    {
        SignatureDialog dialog;
        QVERIFY(ShowActive(dialog));
        QCOMPARE(dialog.minimumSize(), QSize(370, 130));
        QCOMPARE(dialog.maximumSize(), QSize(370, 130));
        QCOMPARE(dialog.size(), QSize(370, 130));
        QVERIFY(!SignatureList(dialog));
        QVERIFY(!FindLabel(dialog, FromLatin1("Signature: ")));
        QVERIFY(!dialog.childAt(15, 78));
        QVERIFY(!dialog.childAt(200, 80));
        QCOMPARE(FindLabel(dialog, FromLatin1("Signature name: "))->pos(), QPoint(10, 12));
        QCOMPARE(FindLabel(dialog, FromLatin1("Category: "))->pos(), QPoint(10, 42));
        QCOMPARE(NameEdit(dialog).geometry(), QRect(120, 10, 220, 20));
        QCOMPARE(CategoryEdit(dialog).geometry(), QRect(120, 40, 220, 20));
        QCOMPARE(FindButton(dialog, "Ok")->pos(), QPoint(100, 100));
        QCOMPARE(FindButton(dialog, "Cancel")->pos(), QPoint(190, 100));
    }

    void okIsTheDefaultButton()
    {
        const CompoundDialog dialog;
        QVERIFY(FindButton(dialog, "Ok")->isDefault());
        QVERIFY(!FindButton(dialog, "Cancel")->isDefault());
    }

    void theTabKeyStartsAtTheButtons()
    {
        CompoundDialog dialog;
        QVERIFY(ShowActive(dialog));
        QList<QWidget*> expected;
        expected << FindButton(dialog, "Ok") << FindButton(dialog, "Cancel") << &NameEdit(dialog)
                 << &CategoryEdit(dialog) << SignatureList(dialog);
        QCOMPARE(FollowTabKey(), expected);
    }

    void theResultsAreNullAtFirst()
    {
        const CompoundDialog dialog;
        QVERIFY(dialog.GetCompoundName().isNull());
        QVERIFY(dialog.GetCategory().isNull());
        QVERIFY(dialog.GetBaseClass().isNull());
    }

    void confirmingAtOnceGivesTheDefaultNameAndNothingElse()
    {
        CompoundDialog dialog;
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetCompoundName(), FromLatin1("compound"));
        QVERIFY(dialog.GetCategory().isEmpty());
        QVERIFY(dialog.GetBaseClass().isEmpty() && !dialog.GetBaseClass().isNull());
    }

    void enterInAnEditConfirms()
    {
        CompoundDialog dialog;
        const int result = RunDialog(dialog, [](QWidget& in_window) {
            NameEdit(in_window).setFocus();
            PressKey(Qt::Key_A, Qt::ControlModifier);
            TypeText(FromLatin1("Blend"));
            PressKey(Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetCompoundName(), FromLatin1("Blend"));
    }

    void anEmptyNameIsReported_data()
    {
        QTest::addColumn<QByteArray>("kindWord");
        QTest::addColumn<QString>("text");
        QTest::newRow("compound") << QByteArray("compound") << FromLatin1("The compound name is invalid.");
        QTest::newRow("loop compound") << QByteArray("loop compound")
                                       << FromLatin1("The loop compound name is invalid.");
        QTest::newRow("signature") << QByteArray("signature") << FromLatin1("The signature name is invalid.");
    }

    void anEmptyNameIsReported()
    {
        QFETCH(QByteArray, kindWord);
        QFETCH(QString, text);
        CVireoCompoundCreateDialog dialog(ItemLibraryAccessor(), kindWord.constData(), "", false);
        bool stayedOpen = false;
        const std::function<void(QWidget&)> readMessage = [&text](QWidget& in_window) {
            QMessageBox* const box = qobject_cast<QMessageBox*>(&in_window);
            QVERIFY(box);
            QCOMPARE(box->icon(), QMessageBox::Critical);
            QCOMPARE(box->windowTitle(), FromLatin1("Invalid Name"));
            QCOMPARE(box->text(), text);
            QCOMPARE(int(box->standardButtons()), int(QMessageBox::Ok));
            QCOMPARE(box->buttons().size(), 1);
            QVERIFY(!box->parentWidget());
            const Qt::WindowFlags flags(Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
            const QMessageBox plain(QMessageBox::Critical, QString(), QString(), QMessageBox::Ok, nullptr, flags);
            QCOMPARE(box->windowFlags(), plain.windowFlags());
            QCOMPARE(box->windowFlags() & flags, flags);
        };
        const int result = RunDialog(dialog, [&](QWidget& in_window) {
            ConfirmEmptyName(in_window, readMessage);
            stayedOpen = in_window.isVisible();
            PressKey(Qt::Key_Escape);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(stayedOpen);
    }

    void afterTheReportANameCanBeTypedAndConfirmed()
    {
        CVireoCompoundCreateDialog dialog(ItemLibraryAccessor(), "compound", "", true);
        const int result = RunDialog(dialog, [&dialog](QWidget& in_window) {
            CategoryEdit(in_window).setText(FromLatin1("Colour"));
            ConfirmEmptyName(in_window);
            QVERIFY(dialog.GetCompoundName().isEmpty());
            QVERIFY(dialog.GetCategory().isEmpty());
            QCOMPARE(CategoryEdit(in_window).text(), FromLatin1("Colour"));
            NameEdit(in_window).setFocus();
            TypeText(FromLatin1("Mix"));
            Click(*FindButton(in_window, "Ok"));
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetCompoundName(), FromLatin1("Mix"));
        QCOMPARE(dialog.GetCategory(), FromLatin1("Colour"));
    }

    void theReportEmptiesTheResultsButTheBaseClass()
    {
        CVireoCompoundCreateDialog dialog(ItemLibraryAccessor(), "compound", "", true);
        RunDialog(dialog, [](QWidget& in_window) {
            ConfirmEmptyName(in_window);
            PressKey(Qt::Key_Escape);
        });
        QVERIFY(dialog.GetCompoundName().isEmpty() && !dialog.GetCompoundName().isNull());
        QVERIFY(dialog.GetCategory().isEmpty() && !dialog.GetCategory().isNull());
        QVERIFY(dialog.GetBaseClass().isNull());
    }

    void theReportLeavesTheBaseClassOfAnEarlierAgreement()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("a"));
        CompoundDialog dialog(library.GetAccessor());
        SignatureList(dialog)->setCurrentIndex(1);
        CategoryEdit(dialog).setText(FromLatin1("Colour"));
        Click(*FindButton(dialog, "Ok"));
        QCOMPARE(dialog.GetCategory(), FromLatin1("Colour"));
        const QString identifier = dialog.GetBaseClass();
        QVERIFY(!identifier.isEmpty());
        NameEdit(dialog).clear();
        SignatureList(dialog)->setCurrentIndex(0);
        const int result = RunDialog(dialog, [](QWidget& in_window) {
            ConfirmEmptyName(in_window);
            PressKey(Qt::Key_Escape);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(dialog.GetCompoundName().isEmpty() && !dialog.GetCompoundName().isNull());
        QVERIFY(dialog.GetCategory().isEmpty() && !dialog.GetCategory().isNull());
        QCOMPARE(dialog.GetBaseClass(), identifier);
    }

    void theDialogMayGoWhileItsReportIsOpen()
    {
        QPointer<QDialog> dialog(new CVireoCompoundCreateDialog(ItemLibraryAccessor(), "compound", "", true));
        ModalUser reader;
        bool gone = false;
        const int result = RunDialog(*dialog, [&](QWidget& in_window) {
            reader.WhenDialogOpens("Invalid Name", [&](QDialog& in_message) {
                QVERIFY(Activate(in_message));
                delete dialog;
                gone = !dialog && in_message.isVisible();
                PressKey(Qt::Key_Return);
            });
            Click(*FindButton(in_window, "Ok"));
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(gone);
        QVERIFY(reader.IsDone());
    }

    void whatIsNoLetterOrDigitBecomesAnUnderscore_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("blank and hyphen") << FromLatin1("my node-1") << FromLatin1("my_node_1");
        QTest::newRow("digit first") << FromLatin1("3D") << FromLatin1("3D");
        QTest::newRow("underscores") << FromLatin1("_a_") << FromLatin1("_a_");
        QTest::newRow("blanks alone") << FromLatin1("  ") << FromLatin1("__");
        QTest::newRow("blanks round it") << FromLatin1(" a ") << FromLatin1("_a_");
        QTest::newRow("punctuation") << FromLatin1("a.b;c/d%1<e>") << FromLatin1("a_b_c_d_1_e_");
        QTest::newRow("control characters") << FromLatin1("a\tb\nc\x01") << FromLatin1("a_b_c_");
        QTest::newRow("Latin-1 letters") << FromLatin1("\xC4rger \xDF") << FromLatin1("\xC4rger_\xDF");
        QTest::newRow("no-break space") << FromLatin1("a\xA0"
                                                      "b")
                                        << FromLatin1("a_b");
        QTest::newRow("superscript two is a number") << FromLatin1("x\xB2") << FromLatin1("x\xB2");
        const QChar omega(0x03A9);
        const QChar arabicThree(0x0663);
        const QChar ideograph(0x6F22);
        QTest::newRow("letters and digits of any script")
            << QString(omega) + arabicThree + QLatin1Char('-') + ideograph
            << QString(omega) + arabicThree + QLatin1Char('_') + ideograph;
        QTest::newRow("combining mark") << FromLatin1("e") + QChar(0x0301) << FromLatin1("e_");
        QTest::newRow("letter of two units") << QString(QChar(0xD835)) + QChar(0xDC00) << FromLatin1("__");
        QTest::newRow("10000 characters") << QString(5000, QLatin1Char('a')) + QString(5000, QLatin1Char('-'))
                                          << QString(5000, QLatin1Char('a')) + QString(5000, QLatin1Char('_'));
    }

    void whatIsNoLetterOrDigitBecomesAnUnderscore()
    {
        QFETCH(QString, typed);
        QFETCH(QString, name);
        CompoundDialog dialog;
        NameEdit(dialog).setText(typed);
        QCOMPARE(NameEdit(dialog).text(), typed);
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetCompoundName(), name);
        QCOMPARE(NameEdit(dialog).text(), typed);
    }

    void theCategoryIsReturnedAsTyped_data()
    {
        QTest::addColumn<QString>("category");
        QTest::newRow("empty") << QString();
        QTest::newRow("blanks inside") << FromLatin1("Deform Bend-2");
        QTest::newRow("blanks outside") << FromLatin1("  Deform ");
        QTest::newRow("blank") << FromLatin1(" ");
        QTest::newRow("control characters") << FromLatin1("a\tb\x01");
        QTest::newRow("null character") << FromLatin1("a") + QChar(0) + FromLatin1("b");
        QTest::newRow("Latin-1") << FromLatin1("\xE4");
        QTest::newRow("other scripts") << QString(QChar(0x03A9)) + QChar(0x6F22);
        QTest::newRow("10000 characters") << QString(10000, QLatin1Char('-'));
    }

    void theCategoryIsReturnedAsTyped()
    {
        QFETCH(QString, category);
        CompoundDialog dialog;
        CategoryEdit(dialog).setText(category);
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetCategory(), category);
        QCOMPARE(dialog.GetCompoundName(), FromLatin1("compound"));
    }

    void aNameThatExistsIsNotRefused()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("compound"));
        CompoundDialog dialog(library.GetAccessor());
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetCompoundName(), FromLatin1("compound"));
    }

    void noneStandsFirstWithAnEmptyIdentifier()
    {
        const CompoundDialog dialog;
        const QComboBox& list = *SignatureList(dialog);
        QCOMPARE(list.count(), 1);
        QCOMPARE(list.itemText(0), FromLatin1("None"));
        QVERIFY(list.itemData(0).isValid());
        QCOMPARE(list.itemData(0).toString(), QString());
        QCOMPARE(list.currentIndex(), 0);
        QVERIFY(!list.isEditable());
    }

    void onlySignaturesAreOffered()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("a compound"));
        library.Add(NewItem::LoopCompound("a loop"));
        library.Add(NewItem::Solver("a solver"));
        library.Add(NewItem::PolymorphicSolver("a polymorphic solver"));
        library.Add(NewItem::GlobalConstant("a constant"));
        library.Add(NewItem::Type("a type"));
        library.Add(NewItem::Signature("a signature"));
        const CompoundDialog dialog(library.GetAccessor());
        QCOMPARE(SignatureNames(dialog), QStringList() << FromLatin1("None") << FromLatin1("a signature"));
    }

    void signaturesThatTheBrowserHidesAreOfferedAllTheSame()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("inner").Parent("outer"));
        library.Add(NewItem::Signature("special").Specializes("general"));
        library.Add(NewItem::Signature("unfit").NotForGraphs());
        const CompoundDialog dialog(library.GetAccessor());
        QCOMPARE(SignatureNames(dialog), QStringList() << FromLatin1("None") << FromLatin1("inner")
                                                       << FromLatin1("special") << FromLatin1("unfit"));
    }

    void signaturesAreSortedByTheBytesOfTheirNames()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const char* const names[] = {"b", "\xC4", "ab", "B", "_", "a", "1", "\xE4", "a b", "~", "None"};
        for (const char* const name : names)
            library.Add(NewItem::Signature(name));
        const CompoundDialog dialog(library.GetAccessor());
        QCOMPARE(SignatureNames(dialog), QStringList() << FromLatin1("None") << FromLatin1("1") << FromLatin1("B")
                                                       << FromLatin1("None") << FromLatin1("_") << FromLatin1("a")
                                                       << FromLatin1("a b") << FromLatin1("ab") << FromLatin1("b")
                                                       << FromLatin1("~") << FromLatin1("\xC4") << FromLatin1("\xE4"));
    }

    void ofSignaturesWithOneNameTheLastOneIsOffered()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("twice").UID(gFirstUID));
        const ItemID last = library.Add(NewItem::Signature("twice").UID(gSecondUID));
        library.Add(NewItem::Signature("Twice"));
        const CompoundDialog dialog(library.GetAccessor());
        QCOMPARE(SignatureNames(dialog), QStringList()
                                             << FromLatin1("None") << FromLatin1("Twice") << FromLatin1("twice"));
        const QString identifier = FromLatin1(ItemIDUnlock::GetItemIDUID(last));
        QVERIFY(!identifier.isEmpty());
        QCOMPARE(SignatureList(dialog)->itemData(2).toString(), identifier);
    }

    void aChosenSignatureGivesItsIdentifier()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID first = library.Add(NewItem::Signature("a"));
        const ItemID second = library.Add(NewItem::Signature("b"));
        const QString identifier = FromLatin1(ItemIDUnlock::GetItemIDUID(second));
        QVERIFY(identifier != FromLatin1(ItemIDUnlock::GetItemIDUID(first)));
        CompoundDialog dialog(library.GetAccessor());
        const int result = RunDialog(dialog, [](QWidget& in_window) {
            SignatureList(in_window)->setFocus();
            PressKey(Qt::Key_Down);
            PressKey(Qt::Key_Down);
            Click(*FindButton(in_window, "Ok"));
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetBaseClass(), identifier);
    }

    void aSignatureWithAnUnusualNameIsOffered_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("blank") << QByteArray(" ");
        QTest::newRow("control characters") << QByteArray("a\tb\nc\x01");
        QTest::newRow("ampersand") << QByteArray("a & b");
        QTest::newRow("10000 characters") << QByteArray(10000, 'n');
    }

    void aSignatureWithAnUnusualNameIsOffered()
    {
        QFETCH(QByteArray, name);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature(name.constData()).UID(gFirstUID));
        CompoundDialog dialog(library.GetAccessor());
        QCOMPARE(SignatureNames(dialog), QStringList() << FromLatin1("None") << QString::fromLatin1(name));
        SignatureList(dialog)->setCurrentIndex(1);
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetBaseClass().toUpper(), FromLatin1(gFirstUID));
        QCOMPARE(SignatureList(dialog)->geometry(), QRect(120, 70, 220, 20));
        QCOMPARE(dialog.size(), QSize(370, 130));
    }

    void leavingTheListAtNoneGivesNoBaseClass()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("a"));
        CompoundDialog dialog(library.GetAccessor());
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QVERIFY(dialog.GetBaseClass().isEmpty() && !dialog.GetBaseClass().isNull());
    }

    void aSignatureNamedNoneIsASignature()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("None").UID(gFirstUID));
        CompoundDialog dialog(library.GetAccessor());
        SignatureList(dialog)->setCurrentIndex(1);
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetBaseClass().toUpper(), FromLatin1(gFirstUID));
    }

    void aSignatureWithoutIdentifierGivesNoBaseClass()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID bare = library.Add(NewItem::Signature("bare").WithoutUID());
        CompoundDialog dialog(library.GetAccessor());
        SignatureList(dialog)->setCurrentIndex(1);
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetBaseClass(), FromLatin1(ItemIDUnlock::GetItemIDUID(bare)));
    }

    void aNewSignatureHasNoBaseClass()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("a"));
        CVireoCompoundCreateDialog dialog(library.GetAccessor(), "signature", "signature", false);
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetCompoundName(), FromLatin1("signature"));
        QVERIFY(dialog.GetBaseClass().isEmpty() && !dialog.GetBaseClass().isNull());
    }

    void cancelEmptiesNameAndCategory()
    {
        CompoundDialog dialog;
        const int result = RunDialog(dialog, [](QWidget& in_window) {
            CategoryEdit(in_window).setText(FromLatin1("Colour"));
            Click(*FindButton(in_window, "Cancel"));
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(dialog.GetCompoundName().isEmpty() && !dialog.GetCompoundName().isNull());
        QVERIFY(dialog.GetCategory().isEmpty() && !dialog.GetCategory().isNull());
        QVERIFY(dialog.GetBaseClass().isNull());
    }

    void cancelLeavesTheBaseClassOfAnEarlierAgreement()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("a"));
        CompoundDialog dialog(library.GetAccessor());
        SignatureList(dialog)->setCurrentIndex(1);
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        const QString identifier = dialog.GetBaseClass();
        QVERIFY(!identifier.isEmpty());
        Click(*FindButton(dialog, "Cancel"));
        QVERIFY(dialog.GetCompoundName().isEmpty());
        QCOMPARE(dialog.GetBaseClass(), identifier);
    }

    void escapeLeavesTheResultsNull()
    {
        CompoundDialog dialog;
        const int result = RunDialog(dialog, [](QWidget&) { PressKey(Qt::Key_Escape); });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(dialog.GetCompoundName().isNull());
        QVERIFY(dialog.GetCategory().isNull());
        QVERIFY(dialog.GetBaseClass().isNull());
    }

    void closingTheWindowLeavesTheResultsNull()
    {
        CompoundDialog dialog;
        const int result = RunDialog(dialog, [](QWidget& in_window) { in_window.close(); });
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(dialog.GetCompoundName().isNull());
        QVERIFY(dialog.GetCategory().isNull());
        QVERIFY(dialog.GetBaseClass().isNull());
    }

    void anInvalidLibraryOffersNone()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("a"));
        const ItemLibraryAccessor accessor = library.GetAccessor();
        library.Close();
        QVERIFY(!accessor.IsValid());
        const CompoundDialog dialog(accessor);
        QCOMPARE(SignatureNames(dialog), QStringList() << FromLatin1("None"));
    }

    void withoutADataLayerNoneIsOffered()
    {
        const CompoundDialog dialog;
        QCOMPARE(SignatureNames(dialog), QStringList() << FromLatin1("None"));
    }

    void aLibraryThatEndsMeanwhileChangesNothing()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("a").UID(gFirstUID));
        CompoundDialog dialog(library.GetAccessor());
        const int result = RunDialog(dialog, [&library](QWidget& in_window) {
            SignatureList(in_window)->setCurrentIndex(1);
            library.Close();
            Click(*FindButton(in_window, "Ok"));
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetBaseClass().toUpper(), FromLatin1(gFirstUID));
    }

    void aSignatureThatIsRemovedMeanwhileStaysOnOffer()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID signature = library.Add(NewItem::Signature("a").UID(gFirstUID));
        CompoundDialog dialog(library.GetAccessor());
        const int result = RunDialog(dialog, [&](QWidget& in_window) {
            library.Remove(signature);
            SignatureList(in_window)->setCurrentIndex(1);
            Click(*FindButton(in_window, "Ok"));
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(dialog.GetBaseClass().toUpper(), FromLatin1(gFirstUID));
    }

    void itemsThatVanishWhileTheListIsReadAreLeftOut()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("first"));
        library.Add(NewItem::Signature("second"));
        library.Add(NewItem::Signature("third"));
        const VanishingItems vanishing(library);
        const CompoundDialog dialog(library.GetAccessor());
        QCOMPARE(SignatureNames(dialog), QStringList() << FromLatin1("None"));
        QCOMPARE(vanishing.m_questions, 1);
    }

    void theLibraryIsNotKept()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemLibraryAccessor accessor = library.GetAccessor();
        const long before = accessor.GetContext().use_count();
        const CompoundDialog dialog(accessor);
        QCOMPARE(accessor.GetContext().use_count(), before);
    }

    void unusualTextsOfTheCallerAreShownAsTheyAre()
    {
        const QByteArray longName(10000, 'n');
        const CVireoCompoundCreateDialog dialog(ItemLibraryAccessor(), "a\tb", longName.constData(), false);
        QCOMPARE(NameEdit(dialog).text(), QString::fromLatin1(longName));
        QVERIFY(FindLabel(dialog, FromLatin1("A\tb name: ")));
        const CVireoCompoundCreateDialog latin(ItemLibraryAccessor(), "compound", "\xE4\x01", false);
        QCOMPARE(NameEdit(latin).text(), FromLatin1("\xE4\x01"));
    }

    void aBlankDefaultNameIsANameToo()
    {
        CVireoCompoundCreateDialog dialog(ItemLibraryAccessor(), "compound", " ", false);
        QCOMPARE(NameEdit(dialog).text(), FromLatin1(" "));
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetCompoundName(), FromLatin1("_"));
    }

    void everyWidgetMayGoBeforeTheDialog()
    {
        for (int i = 0; i < 8; ++i)
        {
            std::unique_ptr<CompoundDialog> dialog(new CompoundDialog);
            QVERIFY(ShowActive(*dialog));
            QLineEdit* const nameEdit = &NameEdit(*dialog);
            QList<QWidget*> widgets;
            widgets << FindButton(*dialog, "Ok") << FindButton(*dialog, "Cancel") << nameEdit << &CategoryEdit(*dialog)
                    << SignatureList(*dialog) << FindLabel(*dialog, FromLatin1("Compound name: "))
                    << FindLabel(*dialog, FromLatin1("Category: ")) << FindLabel(*dialog, FromLatin1("Signature: "));
            QCOMPARE(widgets.size(), 8);
            QVERIFY(widgets.at(i));
            const bool named = widgets.at(i) != nameEdit;
            delete widgets.at(i);
            QVERIFY(QMetaObject::invokeMethod(dialog.get(), "OnOk"));
            QVERIFY(!dialog->isVisible());
            QCOMPARE(dialog->result(), int(named ? QDialog::Accepted : QDialog::Rejected));
            QCOMPARE(dialog->GetCompoundName(), FromLatin1(named ? "compound" : ""));
        }
    }

    void withoutTheNameEditTheDialogGivesNoName()
    {
        CompoundDialog dialog;
        QVERIFY(ShowActive(dialog));
        Click(*FindButton(dialog, "Ok"));
        QCOMPARE(dialog.GetCompoundName(), FromLatin1("compound"));
        delete &NameEdit(dialog);
        dialog.show();
        Click(*FindButton(dialog, "Ok"));
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(dialog.GetCompoundName(), QString());
    }

    void withoutTheCategoryEditAndTheListTheRestCounts()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Signature("Add"));
        CompoundDialog dialog(library.GetAccessor());
        CategoryEdit(dialog).setText(FromLatin1("Math"));
        SignatureList(dialog)->setCurrentIndex(1);
        delete &CategoryEdit(dialog);
        delete SignatureList(dialog);
        QCOMPARE(Confirm(dialog), int(QDialog::Accepted));
        QCOMPARE(dialog.GetCompoundName(), FromLatin1("compound"));
        QCOMPARE(dialog.GetCategory(), QString());
        QCOMPARE(dialog.GetBaseClass(), QString());
    }

    void aLongKindWordLeavesTheWindowAsItIs()
    {
        const QByteArray kindWord(10000, 'n');
        CVireoCompoundCreateDialog dialog(ItemLibraryAccessor(), kindWord.constData(), "x", false);
        QCOMPARE(dialog.windowTitle(), FromLatin1("Create ") + QString::fromLatin1(kindWord));
        QVERIFY(FindLabel(dialog, FromLatin1("N") + QString::fromLatin1(kindWord).mid(1) + FromLatin1(" name: ")));
        QVERIFY(ShowActive(dialog));
        QCOMPARE(dialog.size(), QSize(370, 130));
        QCOMPARE(NameEdit(dialog).geometry(), QRect(120, 10, 220, 20));
    }
};

NODEBROWSER_TEST_MAIN(TestCreateDialog)
#include "test_createdialog.moc"
