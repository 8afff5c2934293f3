// SPDX-License-Identifier: MIT
#include "datamodel/helpers.h"
#include "host/breadcrumb.h"
#include "host/fileswindow.h"
#include "host/graphbox.h"
#include "host/graphcanvas.h"
#include "host/librarybrowser.h"
#include "host/mainwindow.h"
#include "host/quickadd.h"
#include "host/samplelibrary.h"
#include "memorymodel/datalayer.h"
#include "qtcompat/latin1.h"
#include "tests/host/windowjourney.h"
#include "tests/support/testmain.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDrag>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

using host::FilesWindow;
using host::GraphBox;
using host::GraphCanvas;
using memorymodel::Library;
using vireo::datamodel::ItemID;

namespace
{

const QPoint gWhereDropped(250, 200); // in the canvas
const std::size_t gStateWithBox = 2;  // from the second change on Blend has a box in its graph

QPoint CentreOfAnswer(QMessageBox::StandardButton in_answer)
{
    return CentreOf(*qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->button(in_answer));
}

/// What the data model holds of all that the journey changes; the undo steps, the compound that is edited and how often
/// the person was asked something too.
struct Facts
{
    QString m_blend = QStringLiteral("Blend");
    QString m_tags = QStringLiteral("colour;mix;layer;opacity");
    QString m_bricksSource = QStringLiteral("Studio");
    QString m_created;
    QString m_base;
    QString m_target;
    QString m_unsaved;
    int m_items = 0;
    int m_undoIndex = 0;
    int m_undoCount = 0;
    int m_questions = 0;

    QString ToText() const
    {
        return QStringLiteral("Blend: %1 (%2); Bricks in %3; new: %4 of %5; edited: %6; unsaved: %7; %8 items; ")
                   .arg(m_blend, m_tags, m_bricksSource, m_created, m_base, m_target, m_unsaved)
                   .arg(m_items) +
               QStringLiteral("%1 of %2 steps done; asked %3 times").arg(m_undoIndex).arg(m_undoCount).arg(m_questions);
    }
};

/// Notes that the toolkit has brought a drag to a widget.
class DragWatcher : public QObject
{
public:
    bool m_entered = false;

protected:
    bool eventFilter(QObject*, QEvent* in_event) override
    {
        m_entered = m_entered || in_event->type() == QEvent::DragMove;
        return false;
    }
};

/// Counts the boxes that ask or tell something.
class QuestionCounter : public QObject
{
public:
    int m_count = 0;

protected:
    bool eventFilter(QObject* in_object, QEvent* in_event) override
    {
        if (in_event->type() == QEvent::Show && !in_event->spontaneous() && qobject_cast<QMessageBox*>(in_object))
            ++m_count;
        return false;
    }
};

} // namespace

class TestJourney : public WindowJourney
{
    Q_OBJECT

private Q_SLOTS:
    void aPersonsDay();

private:
    void AddSearch();
    void AddDrag();
    void AddQuickAdd();
    void AddRename();
    void AddTags();
    void AddMove();
    void AddCreation();
    void AddUndoAndRedo();
    void AddSave();
    void AddFiles();
    void AddLateChange();
    void AddQuit();

    /// A step that leaves the data model as the facts are at this point of the script, and that needs what the check
    /// says.
    void Step(const QString& in_name, Journey::Action in_action, Journey::Check in_check) override
    {
        const Facts facts = m_facts;
        WindowJourney::Step(in_name, std::move(in_action),
                            [this, facts, in_check] { return Both(in_check(), Same(ReadFacts(), facts.ToText())); });
    }

    /// The facts are changed after this by one step that can be undone.
    void BeginChange()
    {
        m_states.push_back(m_facts);
        m_facts.m_undoIndex = ++m_facts.m_undoCount;
    }

    /// A step that brings all back to one of the states before or after a change.
    void GoTo(std::size_t in_state, const QString& in_name, const char* in_key)
    {
        const int count = m_facts.m_undoCount;
        m_facts = m_states[in_state];
        m_facts.m_undoCount = count;
        const QString box = in_state < gStateWithBox ? QString() : m_facts.m_blend;
        Step(
            in_name, [in_key] { return PressKeys({QLatin1String(in_key)}); },
            [this, box] { return Same(FirstBox(), box); });
    }

    /// Brings Bricks to another source with the mouse.
    void MoveBricks(const QString& in_source, const QString& in_unsaved)
    {
        ChooseInContextMenu(QStringLiteral("Compound source"),
                            [in_source] { return Needs(EntryInFront(in_source), "the sources"); });
        BeginChange();
        m_facts.m_bricksSource = in_source;
        m_facts.m_unsaved = in_unsaved;
        Step(
            QStringLiteral("move to ") + in_source, [in_source] { return ClickAt(CentreOfEntry(in_source)); },
            [this, in_source] {
                return Both(Needs(!OpenPopup(), "the end of the menus"),
                            Same(StatusText(), QStringLiteral("Bricks \u2013 compound, ") + in_source));
            });
    }

    /// Asks to leave, and needs the question about the changes that are not saved.
    void AskToQuit(const QString& in_name, Journey::Action in_action)
    {
        ++m_facts.m_questions;
        Step(in_name, std::move(in_action), [this] { return FaultOfQuestion(); });
    }

    /// Answers the question so that all stays, and needs the window in front again.
    void Stay(const QString& in_name, Journey::Action in_action)
    {
        Step(in_name, std::move(in_action), [this] {
            return Both(Needs(!QApplication::activeModalWidget(), "the end of the question"),
                        Needs(m_window->isVisible() && m_window->isActiveWindow(), "the window in front"));
        });
    }

    QString ReadFacts() const;
    QString FaultOfQuestion() const;

    GraphCanvas* Canvas() const { return m_window->findChild<GraphCanvas*>(); }
    QString Way() const { return m_window->findChild<host::Breadcrumb*>()->GetNames().join(QLatin1Char('/')); }
    /// The name on the first box; empty without one.
    QString FirstBox() const
    {
        const QList<GraphBox*> boxes = Canvas()->GetBoxes();
        return boxes.isEmpty() ? QString() : boxes.first()->GetName();
    }
    QString NameOf(const ItemID& in_item) const
    {
        return in_item.IsValid() ? qtcompat::FromLatin1(m_library->GetAccessor().GetItemName(in_item, true, nullptr))
                                 : QString();
    }

    Library* m_library = nullptr;
    DragWatcher m_dragWatcher;
    QuestionCounter m_questions;
    ItemID m_blend;
    ItemID m_bricks;
    Facts m_facts;
    std::vector<Facts> m_states; // before each change, and after the last one
};

QString TestJourney::ReadFacts() const
{
    const vireo::datamodel::ItemLibraryAccessor accessor = m_library->GetAccessor();
    Facts facts;
    facts.m_blend = NameOf(m_blend);
    facts.m_tags = qtcompat::FromLatin1(accessor.GetItemTags(m_blend, vireo::datamodel::gApplicationTagsKey));
    facts.m_bricksSource = qtcompat::FromLatin1(m_library->GetSourceOf(m_bricks)->GetName());
    const ItemID created = m_library->FindByName("Frosting");
    facts.m_created = NameOf(created);
    if (created.IsValid())
        facts.m_base = qtcompat::FromLatin1(m_library->GetBaseClass(created));
    facts.m_target = NameOf(m_layer.GetCompoundTarget());
    QStringList unsaved;
    for (const ItemID& item : m_library->GetItems())
        if (accessor.ItemIsDirty(item))
            unsaved << NameOf(item);
    unsaved.sort();
    facts.m_unsaved = unsaved.join(QLatin1Char(','));
    facts.m_items = static_cast<int>(m_library->GetItemCount());
    const QUndoStack& stack = const_cast<memorymodel::DataLayer&>(m_layer).GetCommandManager().GetStack();
    facts.m_undoIndex = stack.index();
    facts.m_undoCount = stack.count();
    facts.m_questions = m_questions.m_count;
    return facts.ToText();
}

/// What is wrong with the question about the one change that is not saved, else empty.
QString TestJourney::FaultOfQuestion() const
{
    const QMessageBox* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box)
        return Needs(false, "the question");
    QString fault =
        Both(Same(box->text(), QStringLiteral("An item of the library Sample has changes that are not saved.")),
             Same(box->informativeText(), QStringLiteral("Bricks")));
    fault = Both(fault, Needs(box->isActiveWindow() && m_window->isVisible(), "the question before the window"));
    fault =
        Both(fault, Needs(box->standardButtons() == (QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel),
                          "three answers"));
    return Both(fault, Needs(box->button(QMessageBox::Save)->hasFocus(), "the focus on the answer that loses nothing"));
}

void TestJourney::AddSearch()
{
    Step(
        QStringLiteral("the window opens"), [] { return QStringList(QStringLiteral("get_num_desktops")); },
        [this] {
            return Both(Needs(m_window->isActiveWindow(), "the active window"),
                        Needs(m_window->frameGeometry() != m_window->geometry(), "a frame around the window"));
        });
    SearchFor(QStringLiteral("blend"),
              {QStringLiteral("Blend"), QStringLiteral("Multiply Blend"), QStringLiteral("Overlay Blend"),
               QStringLiteral("Screen Blend"), QStringLiteral("Smooth Union")});
    BeginChange();
    Step(
        QStringLiteral("Enter adds the first row"), [] { return PressKeys({QStringLiteral("Return")}); },
        [this] {
            return Both(Same(StatusText(), QStringLiteral("Blend \u2013 compound, Studio")),
                        Same(FirstBox(), QStringLiteral("Blend")));
        });
    Step(
        QStringLiteral("Down goes to the next row"), [] { return PressKeys({QStringLiteral("Down")}); },
        [this] { return Same(StatusText(), QStringLiteral("Multiply Blend \u2013 compound, Factory")); });
    Step(
        QStringLiteral("a click selects a row"), [this] { return ClickAt(Row(1)); },
        [this] {
            return Both(Same(NameOf(m_window->GetBrowser().GetSelection()), QStringLiteral("Multiply Blend")),
                        Same(StatusText(), QStringLiteral("Multiply Blend \u2013 compound, Factory")));
        });
    m_facts.m_target = QStringLiteral("Blend");
    m_states.front().m_target = m_facts.m_target; // no undo leads back out of the compound
    Step(
        QStringLiteral("a double click edits a compound"),
        [this] { return ClickAt(Row(0)) << QStringLiteral("click") << QStringLiteral("1"); },
        [this] {
            return Both(Same(m_window->windowTitle(), QStringLiteral("Blend \u2013 nodebrowser")),
                        Same(Way(), QStringLiteral("Main graph/Blend")));
        });
}

void TestJourney::AddDrag()
{
    Step(
        QStringLiteral("press a row"),
        [this] { return MoveTo(Row(0)) << QStringLiteral("mousedown") << QStringLiteral("1"); },
        [this] { return Same(NameOf(m_window->GetBrowser().GetSelection()), QStringLiteral("Blend")); });
    Step(
        QStringLiteral("pull the row away"),
        [this] { return MoveTo(Row(0) + QPoint(15, 0)) + MoveTo(Row(0) + QPoint(60, 0)); },
        [this] { return Needs(m_window->GetBrowser().findChild<QDrag*>(), "a drag under way"); });
    Step(
        QStringLiteral("over the canvas"),
        [this] {
            const QPoint target = Canvas()->viewport()->mapToGlobal(gWhereDropped);
            return MoveTo(target - QPoint(40, 40)) + MoveTo(target - QPoint(20, 20)) + MoveTo(target);
        },
        [this] { return Needs(m_dragWatcher.m_entered, "the drag over the canvas"); });
    BeginChange();
    Step(
        QStringLiteral("drop on the canvas"),
        [] { return QStringList{QStringLiteral("mouseup"), QStringLiteral("1")}; },
        [this] {
            const QList<GraphBox*> boxes = Canvas()->GetBoxes();
            if (boxes.size() != 1)
                return Needs(false, "one box in the graph");
            return Both(Needs(boxes.first()->GetItem() == m_blend && boxes.first()->isVisible(), "a box for Blend"),
                        Both(Same(boxes.first()->GetName(), QStringLiteral("Blend")),
                             Needs(Canvas()->mapFromScene(boxes.first()->pos()) == gWhereDropped,
                                   "the box where it was dropped")));
        });
}

void TestJourney::AddQuickAdd()
{
    const QPoint place(420, 60); // in the canvas
    Step(
        QStringLiteral("go to the canvas"), [this, place] { return ClickAt(Canvas()->viewport()->mapToGlobal(place)); },
        [this] { return Needs(Canvas()->hasFocus(), "the focus in the canvas"); });
    Step(
        QStringLiteral("Tab opens quick add"), [] { return PressKeys({QStringLiteral("Tab")}); },
        [this, place] {
            const QWidget* const open = qobject_cast<host::QuickAdd*>(QApplication::activePopupWidget());
            return open ? Needs(open->pos() == Canvas()->viewport()->mapToGlobal(place), "quick add at the pointer")
                        : Needs(false, "quick add");
        });
    Step(
        QStringLiteral("Escape closes quick add"), [] { return PressKeys({QStringLiteral("Escape")}); },
        [this] {
            return Needs(!QApplication::activePopupWidget() && Canvas()->hasFocus(), "the focus back in the canvas");
        });
    Step(
        QStringLiteral("Space opens quick add"), [] { return PressKeys({QStringLiteral("space")}); },
        [] { return Needs(QApplication::activePopupWidget(), "quick add"); });
    Step(
        QStringLiteral("type into quick add"), [] { return TypeText(QStringLiteral("square")); },
        [] {
            const QWidget* const open = QApplication::activePopupWidget();
            return open ? Same(open->findChild<QLineEdit*>()->text(), QStringLiteral("square"))
                        : Needs(false, "quick add");
        });
    BeginChange();
    Step(
        QStringLiteral("Enter adds a node"), [] { return PressKeys({QStringLiteral("Return")}); },
        [this, place] {
            const QList<GraphBox*> boxes = Canvas()->GetBoxes();
            if (boxes.size() != 2 || QApplication::activePopupWidget())
                return Needs(false, "a second box, and no pop-up");
            return Both(Same(boxes.last()->GetName(), QStringLiteral("Square Root")),
                        Needs(Canvas()->mapFromScene(boxes.last()->pos()) == place, "the box at the pointer"));
        });
}

void TestJourney::AddRename()
{
    ChooseInContextMenu(QStringLiteral("Rename Blend"), [] {
        const QLineEdit* const name = InDialog<QLineEdit>();
        return Needs(name && name->hasFocus() && name->selectedText() == QStringLiteral("Blend"),
                     "the old name marked in the dialog");
    });
    const auto isOkEnabled = [](const QString& in_text, bool in_enabled) {
        const QLineEdit* const name = InDialog<QLineEdit>();
        const QDialogButtonBox* const buttons = InDialog<QDialogButtonBox>();
        if (!name || !buttons)
            return Needs(false, "the dialog");
        return Both(Same(name->text(), in_text),
                    Needs(buttons->button(QDialogButtonBox::Ok)->isEnabled() == in_enabled, "the right state of OK"));
    };
    Step(
        QStringLiteral("a used name"), [] { return TypeText(QStringLiteral("Bricks")); },
        [isOkEnabled] {
            return Both(isOkEnabled(QStringLiteral("Bricks"), false),
                        Same(InDialog<QLineEdit>()->toolTip(), QStringLiteral("Name already used")));
        });
    Step(
        QStringLiteral("a free name"),
        [] { return PressKeys({QStringLiteral("ctrl+a")}) + TypeText(QStringLiteral("Varnish Coat")); },
        [isOkEnabled] { return isOkEnabled(QStringLiteral("Varnish Coat"), true); });
    BeginChange();
    m_facts.m_blend = m_facts.m_target = m_facts.m_unsaved = QStringLiteral("Varnish Coat");
    Step(
        QStringLiteral("Enter renames"), [] { return PressKeys({QStringLiteral("Return")}); },
        [this] {
            return Both(Needs(!QApplication::activeModalWidget(), "the end of the dialog"),
                        Both(Same(m_window->windowTitle(), QStringLiteral("Varnish Coat \u2013 nodebrowser")),
                             Same(FirstBox(), QStringLiteral("Varnish Coat"))));
        });
}

void TestJourney::AddTags()
{
    SearchFor(QStringLiteral("varnish"), {QStringLiteral("Varnish Coat")});
    ChooseInContextMenu(QStringLiteral("Edit Tags for Varnish Coat"), [] {
        const QLineEdit* const tags = InDialog<QLineEdit>();
        return tags ? Same(tags->text(), QStringLiteral("colour;mix;layer;opacity")) : Needs(false, "the dialog");
    });
    Step(
        QStringLiteral("go to the tags"), [] { return ClickAt(CentreOf(*InDialog<QLineEdit>())); },
        [] { return Needs(InDialog<QLineEdit>()->hasFocus(), "the focus in the tags"); });
    Step(
        QStringLiteral("type tags"),
        [] { return PressKeys({QStringLiteral("ctrl+a")}) + TypeText(QStringLiteral(" glaze ;; layer;")); },
        [] { return Same(InDialog<QLineEdit>()->text(), QStringLiteral(" glaze ;; layer;")); });
    BeginChange();
    m_facts.m_tags = QStringLiteral("glaze;layer");
    Step(
        QStringLiteral("Enter sets the tags"), [] { return PressKeys({QStringLiteral("Return")}); },
        [] { return Needs(!QApplication::activeModalWidget(), "the end of the dialog"); });
    SearchFor(QStringLiteral("glaze"), {QStringLiteral("Varnish Coat")});
}

void TestJourney::AddMove()
{
    SearchFor(QStringLiteral("bricks"), {QStringLiteral("Bricks")});
    MoveBricks(QStringLiteral("Local"), QStringLiteral("Bricks,Varnish Coat"));
}

void TestJourney::AddCreation()
{
    OpenInMenuBar(QStringLiteral("&Library"), QStringLiteral("&New"));
    Step(
        QStringLiteral("open its submenu"), [] { return ClickAt(CentreOfEntry(QStringLiteral("&New"))); },
        [] { return Needs(EntryInFront(QStringLiteral("Public compound")), "the submenu"); });
    Step(
        QStringLiteral("new compound"), [] { return ClickAt(CentreOfEntry(QStringLiteral("Public compound"))); },
        [] { return Needs(InDialog<QComboBox>(), "the dialog"); });
    Step(
        QStringLiteral("go to the name"), [] { return ClickAt(CentreOf(*InDialog<QLineEdit>())); },
        [] { return Needs(InDialog<QLineEdit>()->hasFocus(), "the focus in the name"); });
    Step(
        QStringLiteral("type the name"),
        [] { return PressKeys({QStringLiteral("ctrl+a")}) + TypeText(QStringLiteral("Frosting")); },
        [] { return Same(InDialog<QLineEdit>()->text(), QStringLiteral("Frosting")); });
    Step(
        QStringLiteral("open the signatures"), [] { return ClickAt(CentreOf(*InDialog<QComboBox>())); },
        [] { return Needs(InDialog<QComboBox>()->view()->isVisible(), "the list of signatures"); });
    Step(
        QStringLiteral("choose a signature"),
        [] { return PressKeys({QStringLiteral("Down"), QStringLiteral("Return")}); },
        [] {
            return Both(Same(InDialog<QComboBox>()->currentText(), QStringLiteral("Blend Function")),
                        Needs(!QApplication::activePopupWidget(), "the end of the list"));
        });
    BeginChange();
    m_facts.m_created = m_facts.m_target = QStringLiteral("Frosting");
    m_facts.m_base =
        QString::fromLatin1(vireo::datamodel::ItemIDUnlock::GetItemIDUID(m_library->FindByName("Blend Function")));
    m_facts.m_unsaved = QStringLiteral("Bricks,Frosting,Varnish Coat");
    ++m_facts.m_items;
    Step(
        QStringLiteral("confirm the new compound"),
        [] {
            for (const QPushButton* const button : QApplication::activeModalWidget()->findChildren<QPushButton*>())
                if (button->text() == QStringLiteral("Ok"))
                    return ClickAt(CentreOf(*button));
            return QStringList();
        },
        [this] {
            return Both(Needs(!QApplication::activeModalWidget(), "the end of the dialog"),
                        Same(m_window->windowTitle(), QStringLiteral("Frosting \u2013 nodebrowser")));
        });
    // Its graph is another one; the box with the keyboard focus is in the graph of the compound edited before.
    m_facts.m_target = QStringLiteral("Frosting");
    SearchFor(QStringLiteral("varnish"), {QStringLiteral("Varnish Coat")});
    m_facts.m_target = QStringLiteral("Varnish Coat");
    Step(
        QStringLiteral("edit the first compound again"),
        [this] { return ClickAt(Row(0)) << QStringLiteral("click") << QStringLiteral("1"); },
        [this] { return Needs(Canvas()->GetBoxes().size() == 2, "the first graph"); });
}

void TestJourney::AddUndoAndRedo()
{
    // In the search field the keys would take back what was typed there.
    Step(
        QStringLiteral("leave the search field"),
        [this] { return ClickAt(Canvas()->viewport()->mapToGlobal(gWhereDropped)); },
        [this] { return Needs(Canvas()->hasFocus(), "the focus in the canvas"); });
    m_states.push_back(m_facts);
    const std::size_t last = m_states.size() - 1;
    for (std::size_t state = last; state > 0; --state)
        GoTo(state - 1, QStringLiteral("undo %1").arg(state), "ctrl+z");
    for (std::size_t state = 1; state <= last; ++state)
        GoTo(state, QStringLiteral("redo %1").arg(state), "ctrl+shift+z");
}

void TestJourney::AddSave()
{
    m_facts.m_unsaved.clear();
    Step(
        QStringLiteral("save"), [] { return PressKeys({QStringLiteral("ctrl+s")}); },
        [this] { return Same(m_window->statusBar()->currentMessage(), QStringLiteral("Sample is in memory only")); });
}

void TestJourney::AddFiles()
{
    SearchFor(QStringLiteral("bricks"), {QStringLiteral("Bricks")});
    ChooseInContextMenu(QStringLiteral("Show Files for Bricks"), [this] {
        const FilesWindow* const window = m_window->findChild<FilesWindow*>();
        if (!window || !window->isActiveWindow())
            return Needs(false, "the window of files in front");
        return Both(
            Same(window->windowTitle(), QStringLiteral("Files of Bricks")),
            Needs(window->findChild<QLabel*>()->text().endsWith(QLatin1String("in memory only.")), "the place"));
    });
    Step(
        QStringLiteral("Escape closes the files"), [] { return PressKeys({QStringLiteral("Escape")}); },
        [this] {
            return Both(Needs(!m_window->findChild<FilesWindow*>(), "the end of the window of files"),
                        Needs(m_window->isActiveWindow(), "the window in front"));
        });
}

void TestJourney::AddLateChange()
{
    MoveBricks(QStringLiteral("Studio"), QStringLiteral("Bricks"));
}

void TestJourney::AddQuit()
{
    OpenInMenuBar(QStringLiteral("&File"), QStringLiteral("&Quit"));
    AskToQuit(QStringLiteral("choose Quit"), [] { return ClickAt(CentreOfEntry(QStringLiteral("&Quit"))); });
    Stay(QStringLiteral("Escape stays"), [] { return PressKeys({QStringLiteral("Escape")}); });

    AskToQuit(QStringLiteral("close the window"), [] { return PressKeys({QStringLiteral("alt+F4")}); });
    Stay(QStringLiteral("Cancel stays"), [] { return ClickAt(CentreOfAnswer(QMessageBox::Cancel)); });

    AskToQuit(QStringLiteral("press the keys for Quit"), [] { return PressKeys({QStringLiteral("ctrl+q")}); });
    m_facts.m_unsaved.clear();
    Step(
        QStringLiteral("Save leaves"), [] { return ClickAt(CentreOfAnswer(QMessageBox::Save)); },
        [this] {
            return Both(Needs(!m_window->isVisible(), "the end of the window"),
                        Needs(!QApplication::activeModalWidget(), "an end without another question"));
        });
}

void TestJourney::aPersonsDay()
{
    const QString fault = Begin(QStringLiteral(JOURNEY_FOLDER));
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    m_library = &host::AddSampleLibrary(m_layer);
    m_blend = m_library->FindByName("Blend");
    m_bricks = m_library->FindByName("Bricks");
    m_facts.m_items = static_cast<int>(m_library->GetItemCount());
    ShowWindow(*m_library);
    Canvas()->viewport()->installEventFilter(&m_dragWatcher);
    qApp->installEventFilter(&m_questions);

    AddSearch();
    AddDrag();
    AddQuickAdd();
    AddRename();
    AddTags();
    AddMove();
    AddCreation();
    AddUndoAndRedo();
    AddSave();
    AddFiles();
    AddLateChange();
    AddQuit();
    const QString missing = m_journey->Run();
    QVERIFY2(missing.isEmpty(), qPrintable(missing));
    m_window.reset();
}

NODEBROWSER_TEST_MAIN(TestJourney)
#include "test_journey.moc"
