// SPDX-License-Identifier: MIT
#include "datamodel/helpers.h"
#include "datamodel/sourcecontrol.h"
#include "host/breadcrumb.h"
#include "host/graphbox.h"
#include "host/graphcanvas.h"
#include "host/librarybrowser.h"
#include "host/mainwindow.h"
#include "host/silentobserver.h"
#include "host/undokeys.h"
#include "memorymodel/datalayer.h"
#include "nodebrowser/typeselector.h"
#include "tests/host/windowfixture.h"
#include "tests/support/itemwriter.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTextBlock>
#include <QTextBrowser>

using host::MainWindow;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;

namespace
{

/// Types a name into the dialog that makes a compound, and confirms it.
void NameCompound(QWidget& in_dialog, const QString& in_name)
{
    QLineEdit* name = nullptr;
    for (QLineEdit* const line : in_dialog.findChildren<QLineEdit*>())
        if (!line->text().isEmpty()) // only the name has something to start with
            name = line;
    QVERIFY(name);
    name->selectAll();
    QTest::keyClicks(name, in_name);
    QTest::keyClick(name, Qt::Key_Return);
}

class PaintCounter : public QObject
{
public:
    int m_count = 0;

protected:
    bool eventFilter(QObject*, QEvent* in_event) override
    {
        m_count += in_event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

} // namespace

class TestMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_library = &m_layer.AddLibrary("Nodes");
        m_library->AddDataSource("Local");
        m_blend = m_library->Add(NewItem::Compound("Blend"));
        m_library->Add(NewItem::Solver("Add"));
        m_library->Add(NewItem::Type("Float"));
        m_layer.GetSourceControl().SetVersionControlActive(true);
        m_layer.GetSourceControl().SetEnabled(true);
        m_window.reset(new MainWindow(m_layer, *m_library));
        ShowMainWindow(*m_window);
    }

    void cleanup()
    {
        CloseMenus();
        RemoveMainWindow(m_window, m_layer);
    }

    void theMenuBarHasAllMenus()
    {
        QCOMPARE(Texts(*m_window->menuBar()),
                 QStringList() << QStringLiteral("&File") << QStringLiteral("&Edit") << QStringLiteral("&View")
                               << QStringLiteral("&Library") << QStringLiteral("&Graph")
                               << QStringLiteral("&Source control") << QStringLiteral("&Help"));
    }

    void theLibraryMenuHasTheBrowsersCommands()
    {
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Library"));
        QVERIFY(menu);
        QVERIFY(FindEntry(*menu, QStringLiteral("Save graph library")));
        QVERIFY(FindEntry(*menu, QStringLiteral("Choose &type\u2026")));
        QMenu* const newItem = OpenSubmenu(*menu, QStringLiteral("&New"));
        QVERIFY(newItem);
        QCOMPARE(Texts(*newItem), QStringList()
                                      << QStringLiteral("Public compound") << QStringLiteral("Public looping compound")
                                      << QStringLiteral("Compound signature"));
    }

    void aNewItemIsMadeAndCanBeUndone_data()
    {
        QTest::addColumn<bool>("loop");
        QTest::addColumn<bool>("signature");
        QTest::newRow("Public compound") << false << false;
        QTest::newRow("Public looping compound") << true << false;
        QTest::newRow("Compound signature") << false << true;
    }

    void aNewItemIsMadeAndCanBeUndone()
    {
        QFETCH(bool, loop);
        QFETCH(bool, signature);
        ModalUser person;
        person.WhenWindowOpens([](QWidget& in_dialog) { NameCompound(in_dialog, QStringLiteral("Mine")); });
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Library"));
        QVERIFY(menu);
        QMenu* const newItem = OpenSubmenu(*menu, QStringLiteral("&New"));
        QVERIFY(newItem);
        QVERIFY(ClickEntry(*newItem, QLatin1String(QTest::currentDataTag())));
        QVERIFY(person.IsDone());

        const ItemID item = m_library->FindByName("Mine");
        QVERIFY(item.IsValid());
        QCOMPARE(m_library->IsLoopCompound(item), loop);
        QCOMPARE(m_library->IsSignature(item), signature);
        QVERIFY(m_layer.GetCompoundTarget() == item);
        QCOMPARE(Way(), QStringList() << QStringLiteral("Main graph") << QStringLiteral("Mine"));
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Mine \u2013 nodebrowser"));

        m_layer.GetCommandManager().GetStack().undo();
        QCOMPARE(Way(), QStringList(QStringLiteral("Main graph")));
        QCOMPARE(m_window->windowTitle(), QStringLiteral("nodebrowser"));
        m_layer.GetCommandManager().GetStack().redo();
        QCOMPARE(Way(), QStringList() << QStringLiteral("Main graph") << QStringLiteral("Mine"));
    }

    void savingSaysHowItWent()
    {
        m_library->Rename(m_blend, "Mix");
        QVERIFY(m_library->GetAccessor().ItemIsDirty(m_blend));
        SetWriter(*m_library, [](const ItemID&) { return std::string("The disk is full."); });
        QMenu* menu = OpenMenu(*m_window, QStringLiteral("&Library"));
        QVERIFY(menu);
        QString reasons;
        ModalUser person;
        person.WhenDialogOpens("Save library", [&reasons](QDialog& in_box) {
            reasons = static_cast<QMessageBox&>(in_box).informativeText();
            Press(in_box, Qt::Key_Return);
        });
        QVERIFY(ClickEntry(*menu, QStringLiteral("Save graph library")));
        QVERIFY(person.IsDone());
        QCOMPARE(reasons, QStringLiteral("The disk is full."));
        QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("1 item of Nodes could not be saved"));
        QVERIFY(m_library->GetAccessor().ItemIsDirty(m_blend));

        m_library->SetStore(nullptr);
        menu = OpenMenu(*m_window, QStringLiteral("&Library"));
        QVERIFY(menu);
        QVERIFY(ClickEntry(*menu, QStringLiteral("Save graph library")));
        QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("Nodes is in memory only"));
        QVERIFY(!m_library->GetAccessor().ItemIsDirty(m_blend));
    }

    void aRefusedSaveIsSaid()
    {
        class Refuser : public host::SilentObserver
        {
        private:
            void OnPreCommit(ItemLibraryAccessor&, bool* out_veto) override { *out_veto = true; }
        };
        Refuser refuser;
        const vireo::datamodel::ItemLibraryAccessor library = m_library->GetAccessor();
        library.AddObserver(&refuser, vireo::datamodel::eItemLibraryNotificationKind, library.GetContext());
        m_library->Rename(m_blend, "Mix");
        QString reasons;
        ModalUser person;
        person.WhenDialogOpens("Save library", [&reasons](QDialog& in_box) {
            reasons = static_cast<QMessageBox&>(in_box).informativeText();
            Press(in_box, Qt::Key_Return);
        });
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Library"));
        const bool isClicked = menu && ClickEntry(*menu, QStringLiteral("Save graph library"));
        library.RemoveObserver(&refuser, vireo::datamodel::eItemLibraryNotificationKind, library.GetContext());
        QVERIFY(isClicked);
        QVERIFY(person.IsDone());
        QCOMPARE(reasons, QStringLiteral("Another part of the application has refused it."));
        QVERIFY(m_library->GetAccessor().ItemIsDirty(m_blend));
    }

    void noTwoEntriesOfAMenuHaveTheSameLetter()
    {
        QList<const QWidget*> menus;
        menus << m_window->menuBar();
        for (const QMenu* const menu : m_window->menuBar()->findChildren<QMenu*>())
            menus << menu;
        for (const QMenu* const menu : m_window->findChildren<QMenu*>())
            menus << menu;
        QVERIFY(menus.size() > 7);
        for (const QWidget* const menu : menus)
        {
            QString letters;
            for (const QString& text : Texts(*menu))
            {
                const int sign = static_cast<int>(text.indexOf(QLatin1Char('&')));
                const QString letter = sign < 0 ? QString() : text.mid(sign + 1, 1).toLower();
                QVERIFY2(letter.isEmpty() || !letters.contains(letter), qPrintable(text));
                letters += letter;
            }
        }
    }

    void theGraphMenuOffersWhatThereIs()
    {
        testcompat::DeclareActive(*m_window);
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        host::GraphCanvas& canvas = *m_window->findChild<host::GraphCanvas*>();
        const auto offered = [this] {
            QStringList texts;
            QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Graph"));
            for (const QString& text : {QStringLiteral("&Select all"), QStringLiteral("&Delete")})
                if (menu && FindEntry(*menu, text)->isEnabled())
                    texts << text;
            CloseMenus();
            return texts;
        };
        QCOMPARE(offered(), QStringList());
        canvas.PlaceInSight(m_blend);
        QCOMPARE(offered(), QStringList() << QStringLiteral("&Select all") << QStringLiteral("&Delete"));
        canvas.scene()->clearSelection();
        QCOMPARE(offered(), QStringList() << QStringLiteral("&Select all"));
        // The keys stay, whatever the menu has shown.
        canvas.setFocus();
        QTest::keyClick(&canvas, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&canvas, Qt::Key_Delete);
        QVERIFY(canvas.GetBoxes().isEmpty());
    }

    void theManualBeginsWithTheHostAndHasNoDeadLinks()
    {
        ChooseHelp(QStringLiteral("&Manual"));
        QTextBrowser* pages = nullptr;
        for (QDialog* const dialog : m_window->findChildren<QDialog*>())
            if (dialog->windowTitle() == QStringLiteral("Manual"))
                pages = dialog->findChild<QTextBrowser*>();
        QVERIFY(pages && pages->isVisible());
        QVERIFY2(pages->toPlainText().startsWith(QStringLiteral("Working with the reference host")),
                 qPrintable(pages->toPlainText().left(80)));
        QStringList seen = {QStringLiteral("host.md")};
        int pictures = 0;
        for (int i = 0; i < seen.size(); ++i)
        {
            pages->setSource(QUrl(QStringLiteral("qrc:/manual/") + seen.at(i)));
            QVERIFY2(pages->toPlainText().size() > 500, qPrintable(seen.at(i)));
            QVERIFY(!pages->toPlainText().contains(QStringLiteral("](")));
            for (QTextBlock block = pages->document()->begin(); block.isValid(); block = block.next())
                for (QTextBlock::iterator part = block.begin(); !part.atEnd(); ++part)
                {
                    const QTextCharFormat format = part.fragment().charFormat();
                    const QString target = format.isImageFormat() ? format.toImageFormat().name() : format.anchorHref();
                    pictures += format.isImageFormat() ? 1 : 0;
                    QVERIFY2(target.isEmpty() || QFile::exists(QStringLiteral(":/manual/") + target),
                             qPrintable(seen.at(i) + QStringLiteral(": ") + target));
                    if (target.endsWith(QStringLiteral(".md")) && !seen.contains(target))
                        seen << target;
                }
        }
        seen.sort();
        QCOMPARE(seen, QStringList() << QStringLiteral("host-git.md") << QStringLiteral("host.md")
                                     << QStringLiteral("libraries.md") << QStringLiteral("searching.md"));
        QVERIFY(pictures > 0);
    }

    void allKeysAreListedInPlainText()
    {
        m_library->Rename(m_blend, "<b>Mix", &m_layer.GetCommandManager());
        QString text;
        Qt::TextFormat format = Qt::AutoText;
        ModalUser person;
        person.WhenDialogOpens("Keyboard shortcuts", [&](QDialog& in_box) {
            text = static_cast<QMessageBox&>(in_box).text();
            format = static_cast<QMessageBox&>(in_box).textFormat();
            Press(in_box, Qt::Key_Return);
        });
        ChooseHelp(QStringLiteral("&Keyboard shortcuts"));
        QVERIFY(person.IsDone());
        QCOMPARE(format, Qt::PlainText);
        const QString undo = m_layer.GetCommandManager().GetStack().undoText();
        for (const QString& line :
             {QStringLiteral("Undo ") + undo + QStringLiteral(": Ctrl+Z"), QStringLiteral("Add node\u2026: Tab; Space"),
              QStringLiteral("Delete: Del; Backspace"), QStringLiteral("Select another row: Up; Down; PgUp; PgDown"),
              QStringLiteral("Clear the search: Esc")})
            QVERIFY2(text.split(QLatin1Char('\n')).contains(line), qPrintable(line + QLatin1Char('\n') + text));
        for (const QKeySequence& redo : host::GetRedoKeys())
            QVERIFY2(text.contains(redo.toString(QKeySequence::NativeText)), qPrintable(text));
    }

    void aboutNamesTheVersion()
    {
        QString text;
        ModalUser person;
        person.WhenDialogOpens("About", [&](QDialog& in_box) {
            text = static_cast<QMessageBox&>(in_box).text();
            Press(in_box, Qt::Key_Return);
        });
        ChooseHelp(QStringLiteral("&About"));
        QVERIFY(person.IsDone());
        QVERIFY2(QRegularExpression(QStringLiteral("nodebrowser \\d+\\.\\d+")).match(text).hasMatch(),
                 qPrintable(text));
    }

    void undoAndRedoNameTheCommand()
    {
        QMenu* menu = OpenMenu(*m_window, QStringLiteral("&Edit"));
        QVERIFY(menu);
        QCOMPARE(menu->actions().size(), 4);
        QAction* const undo = menu->actions().at(0);
        QAction* const redo = menu->actions().at(1);
        QCOMPARE(undo->text(), QStringLiteral("&Undo"));
        QVERIFY(!undo->isEnabled());
        QCOMPARE(redo->text(), QStringLiteral("&Redo"));
        QVERIFY(!redo->isEnabled());
        CloseMenus();

        m_library->Rename(m_blend, "Mix", &m_layer.GetCommandManager());
        const QString command = m_layer.GetCommandManager().GetStack().undoText();
        QVERIFY(!command.isEmpty());
        QCOMPARE(undo->text(), QStringLiteral("&Undo ") + command);
        QVERIFY(!redo->isEnabled());
        menu = OpenMenu(*m_window, QStringLiteral("&Edit"));
        QVERIFY(menu);
        QVERIFY(ClickEntry(*menu, undo->text()));
        QVERIFY(m_library->FindByName("Blend") == m_blend);
        QVERIFY(!undo->isEnabled());
        QCOMPARE(redo->text(), QStringLiteral("&Redo ") + command);
        menu = OpenMenu(*m_window, QStringLiteral("&Edit"));
        QVERIFY(menu);
        QVERIFY(ClickEntry(*menu, redo->text()));
        QVERIFY(m_library->FindByName("Mix") == m_blend);
    }

    void theSelectedItemIsCheckedOutOrMadeWritable_data()
    {
        QTest::addColumn<unsigned>("state");
        QTest::newRow("&Check out") << unsigned(memorymodel::eCheckedOut);
        QTest::newRow("&Make writable") << unsigned(memorymodel::eWritable);
    }

    void theSelectedItemIsCheckedOutOrMadeWritable()
    {
        QFETCH(unsigned, state);
        const QString entry = QLatin1String(QTest::currentDataTag());
        QMenu* menu = OpenMenu(*m_window, QStringLiteral("&Source control"));
        QVERIFY(menu);
        QVERIFY(!FindEntry(*menu, entry)->isEnabled());
        CloseMenus();

        Select("Blend");
        menu = OpenMenu(*m_window, QStringLiteral("&Source control"));
        QVERIFY(menu);
        QVERIFY(FindEntry(*menu, entry)->isEnabled());
        QVERIFY(ClickEntry(*menu, entry));
        QCOMPARE(m_layer.GetSourceControl().GetState(m_blend), state);
    }

    void onlyCompoundsThatTakeChangesAreCheckedOut()
    {
        m_library->Add(
            NewItem::Compound("Archived").In(m_library->AddDataSource("Archive", memorymodel::eReadOnlySource)));
        m_library->Add(NewItem::Compound("Loose").WithoutUID());
        QCoreApplication::processEvents();
        for (const char* const name : {"Add", "Archived", "Loose"})
        {
            Select(name);
            QVERIFY2(m_window->GetBrowser().GetSelection() == m_library->FindByName(name), name);
            QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Source control"));
            QVERIFY(menu);
            QVERIFY2(!FindEntry(*menu, QStringLiteral("&Check out"))->isEnabled(), name);
            QVERIFY2(!FindEntry(*menu, QStringLiteral("&Make writable"))->isEnabled(), name);
            CloseMenus();
        }
    }

    void theSwitchSetsTheProperty()
    {
        QMenu* menu = OpenMenu(*m_window, QStringLiteral("&Source control"));
        QVERIFY(menu);
        QAction* const entry = FindEntry(*menu, QStringLiteral("&Show source control"));
        QVERIFY(entry->isChecked());
        QVERIFY(ClickEntry(*menu, entry->text()));
        QVERIFY(!entry->isChecked());
        QVERIFY(!IsDisplayOn());
        menu = OpenMenu(*m_window, QStringLiteral("&Source control"));
        QVERIFY(menu);
        QVERIFY(ClickEntry(*menu, entry->text()));
        QVERIFY(entry->isChecked());
        QVERIFY(IsDisplayOn());
    }

    void theSwitchFollowsTheProperty()
    {
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Source control"));
        QVERIFY(menu);
        const QAction* const entry = FindEntry(*menu, QStringLiteral("&Show source control"));
        QVERIFY(entry->isChecked());
        m_layer.GetSourceControl().SetEnabled(false);
        QVERIFY(!entry->isChecked());
        m_layer.GetSourceControl().SetEnabled(true);
        QVERIFY(entry->isChecked());
        m_layer.GetSourceControl().SetHasProperties(false);
        QVERIFY(!entry->isChecked());
        m_layer.GetSourceControl().SetHasProperties(true);
        QVERIFY(entry->isChecked());
    }

    void badgesGoAndComeWithTheSwitch()
    {
        m_layer.GetSourceControl().SetState(m_blend, memorymodel::eCheckedOut);
        const QImage with = PaintList();
        m_layer.GetSourceControl().SetEnabled(false);
        const QImage without = PaintList();
        QVERIFY(with != without);
        m_layer.GetSourceControl().SetEnabled(true);
        QCOMPARE(PaintList(), with);
    }

    void badgesGoAtOnce()
    {
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        PaintCounter paints;
        m_window->GetBrowser().installEventFilter(&paints);
        do
        {
            paints.m_count = 0;
            QCoreApplication::processEvents();
        } while (paints.m_count > 0);
        m_layer.GetSourceControl().SetEnabled(false);
        QCoreApplication::processEvents();
        QVERIFY(paints.m_count > 0);
    }

    void withoutVersionControlTheMenuIsGreyedOut()
    {
        m_layer.GetSourceControl().SetVersionControlActive(false);
        Select("Blend");
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Source control"));
        QVERIFY(menu);
        for (const QAction* const entry : menu->actions())
            QVERIFY2(entry->isSeparator() || !entry->isEnabled(), qPrintable(entry->text()));
    }

    void noTypeChosenIsNotMentioned()
    {
        ModalUser person;
        person.WhenWindowOpens([](QWidget& in_dialog) {
            QVERIFY(qobject_cast<CTypeSelector*>(&in_dialog));
            Press(in_dialog, Qt::Key_Escape);
        });
        ChooseType();
        QVERIFY(person.IsDone());
        QCOMPARE(m_window->statusBar()->currentMessage(), QString());
    }

    void aChosenTypeIsNamedInTheStatusBar()
    {
        ModalUser person;
        person.WhenWindowOpens([](QWidget& in_dialog) {
            QTest::keyClicks(in_dialog.findChild<QLineEdit*>(), QStringLiteral("flo"));
            in_dialog.grab();
            CNodeBrowser* const browser = in_dialog.findChild<CNodeBrowser*>();
            QLineEdit* const search = in_dialog.findChild<QLineEdit*>();
            const int below = search->mapTo(browser, QPoint(0, search->height())).y();
            QTest::mouseClick(browser, Qt::LeftButton, Qt::NoModifier, QPoint(100, below + gRowHeight));
            if (in_dialog.isVisible())
                Press(in_dialog, Qt::Key_Escape);
        });
        ChooseType();
        QVERIFY(person.IsDone());
        QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("Type chosen: Float"));
    }

private:
    QStringList Way() { return m_window->findChild<host::Breadcrumb*>()->GetNames(); }

    void Select(const char* in_search)
    {
        m_window->GetBrowser().Search(QLatin1String(in_search));
        m_window->grab();
        QTest::mouseClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(0));
    }

    void ChooseHelp(const QString& in_entry)
    {
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Help"));
        QVERIFY(menu);
        QVERIFY(ClickEntry(*menu, in_entry));
    }

    void ChooseType()
    {
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Library"));
        QVERIFY(menu);
        QVERIFY(ClickEntry(*menu, QStringLiteral("Choose &type\u2026")));
    }

    /// The rows, once the states that they asked for are there.
    QImage PaintList()
    {
        m_window->grab();
        m_layer.GetSourceControl().DeliverRequestedStates();
        return m_window->GetBrowser().grab().toImage();
    }

    static bool IsDisplayOn()
    {
        bool enabled = false;
        hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr")->GetSourceControlEnabled(&enabled);
        return enabled;
    }

    OwnSettings m_settings;
    // The browser looks the factory objects up once in a process, so one layer serves all tests.
    memorymodel::DataLayer m_layer;
    Library* m_library = nullptr;
    ItemID m_blend;
    std::unique_ptr<MainWindow> m_window;
};

NODEBROWSER_TEST_MAIN(TestMenus)
#include "test_menus.moc"
