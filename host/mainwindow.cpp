// SPDX-License-Identifier: MIT
#include "host/mainwindow.h"

#include "datamodel/helpers.h"
#include "host/application.h"
#include "host/aside.h"
#include "host/changewatcher.h"
#include "host/elidedlabel.h"
#include "host/fileswindow.h"
#include "host/graphcanvas.h"
#include "host/graphmenu.h"
#include "host/graphpanel.h"
#include "host/helpmenu.h"
#include "host/itemhelp.h"
#include "host/itemlabel.h"
#include "host/librarybrowser.h"
#include "host/newlibrary.h"
#include "host/opening.h"
#include "host/openingbar.h"
#include "host/recentlibraries.h"
#include "host/samplelibrary.h"
#include "host/searchkeys.h"
#include "host/settings.h"
#include "host/sourcecontrolmenu.h"
#include "host/theme.h"
#include "host/troublebar.h"
#include "host/undokeys.h"
#include "host/unsavedchanges.h"
#include "host/versionfollower.h"
#include "memorymodel/datalayer.h"
#include "nodebrowser/typeselector.h"
#include "qtcompat/latin1.h"
#include "workspace/watch.h"
#include "workspace/workspace.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTabBar>
#include <QTextBrowser>
#include <QTimer>
#include <QVBoxLayout>

using qtcompat::FromLatin1;
using vireo::datamodel::CompoundAccessor;
using vireo::datamodel::Helpers;
using vireo::datamodel::ItemID;

namespace host
{

namespace
{

const int gDockWidth = 300;
const int gBrowserHeight = 140; // at least
const int gLabelIndent = 6;
const int gMessageTime = 10000; // milliseconds
const int gPause = 50;          // milliseconds

QString CountItems(std::size_t in_count)
{
    return in_count == 1 ? MainWindow::tr("1 item") : MainWindow::tr("%n items", nullptr, static_cast<int>(in_count));
}

} // namespace

MainWindow::MainWindow(memorymodel::DataLayer& in_layer, memorymodel::Library& in_library)
    : m_layer(in_layer),
      m_library(&in_library),
      m_browser(new LibraryBrowser),
      m_graph(new GraphPanel(in_layer.GetCommandManager().GetStack())),
      m_help(new QTextBrowser),
      m_selectionLabel(new ElidedLabel),
      m_libraryLabel(new ElidedLabel),
      m_rowsLabel(new QLabel),
      m_openingBar(new OpeningBar),
      m_troubleBar(new TroubleBar)
{
    QWidget* const centre = new QWidget;
    QVBoxLayout* const layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_troubleBar);
    layout->addWidget(m_graph, 1);
    setCentralWidget(centre);
    connect(m_troubleBar, &TroubleBar::Decided, this, &MainWindow::Say);
    if (const Application* const application = qobject_cast<Application*>(qApp))
        // What goes on selects another row, which would take the message away.
        connect(application, &Application::Failed, this, &MainWindow::Say, Qt::QueuedConnection);
    CreateDocks();
    CreateFileMenu();
    CreateEditMenu();
    CreateViewMenu();
    CreateLibraryMenu();
    menuBar()->addMenu(new GraphMenu(*m_graph, this));
    menuBar()->addMenu(new SourceControlMenu(m_layer, *m_browser, this));
    menuBar()->addMenu(new HelpMenu(*this));
    CreateStatusBar();
    ConnectDataLayer();
    Attach(in_library, nullptr);
}

MainWindow::~MainWindow()
{
    if (m_opening)
        EndOpening(false, QString());
    m_layer.SetCompoundTargetHandler(nullptr);
    m_layer.GetSourceControl().SetShowFilesHandler(nullptr);
}

void MainWindow::CreateDocks()
{
    m_dock = new QDockWidget(tr("Node library"), this);
    m_dock->setObjectName(QStringLiteral("library")); // by which its place is remembered
    // The browser has no size of its own: it takes what the help leaves.
    m_browser->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_browser->setMinimumHeight(gBrowserHeight);
    m_dock->setWidget(m_browser);
    addDockWidget(Qt::LeftDockWidgetArea, m_dock);
    m_helpDock = new QDockWidget(tr("About the item"), this);
    m_helpDock->setObjectName(QStringLiteral("help"));
    m_help->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_help->setFrameShape(QFrame::NoFrame);
    m_help->setAccessibleName(m_helpDock->windowTitle());
    m_helpDock->setWidget(m_help);
    splitDockWidget(m_dock, m_helpDock, Qt::Vertical);
    SetDockSizes();
}

void MainWindow::SetDockSizes()
{
    resizeDocks({m_dock}, {gDockWidth}, Qt::Horizontal);
    resizeDocks({m_dock, m_helpDock}, {2, 1}, Qt::Vertical);
}

void MainWindow::CreateFileMenu()
{
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    connect(file->addAction(tr("&New library\u2026")), &QAction::triggered, this, &MainWindow::OnNewLibrary);
    QAction* const openLibrary = file->addAction(tr("&Open library\u2026"));
    openLibrary->setShortcut(QKeySequence::Open);
    connect(openLibrary, &QAction::triggered, this, &MainWindow::OnOpenLibrary);
    connect(file->addAction(tr("Open &folder\u2026")), &QAction::triggered, this, &MainWindow::OnOpenFolder);
    RecentMenu* const recent = new RecentMenu(file);
    connect(recent, &RecentMenu::Chosen, this, &MainWindow::StartOpening);
    file->addMenu(recent);
    connect(file->addAction(tr("&Sample")), &QAction::triggered, this, &MainWindow::OnSample);
    m_reload = file->addAction(tr("&Reload"));
    m_reload->setShortcut(QKeySequence::Refresh);
    connect(m_reload, &QAction::triggered, this, &MainWindow::OnReload);
    file->addSeparator();
    QAction* const quit = file->addAction(tr("&Quit"));
    quit->setShortcut(QKeySequence::Quit);
    connect(quit, &QAction::triggered, this, &MainWindow::close);
}

void MainWindow::CreateEditMenu()
{
    QUndoStack& stack = m_layer.GetCommandManager().GetStack();
    QMenu* const edit = menuBar()->addMenu(tr("&Edit"));
    QAction* const undo = stack.createUndoAction(edit, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    edit->addAction(undo);
    QAction* const redo = stack.createRedoAction(edit, tr("&Redo"));
    redo->setShortcuts(GetRedoKeys());
    edit->addAction(redo);
    // Behind the stack's own slots. What is undone may be anywhere, in the graph of a compound that is not shown, say.
    connect(undo, &QAction::triggered, this, [this, &stack] { Say(tr("Undone: %1").arg(stack.redoText())); });
    connect(redo, &QAction::triggered, this, [this, &stack] { Say(tr("Done again: %1").arg(stack.undoText())); });
    edit->addSeparator();
    QAction* const find = edit->addAction(tr("&Find in library"));
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, this, &MainWindow::OnFind);
    QLineEdit& field = m_browser->GetSearchField();
    new UndoKeys(field, stack);
    new SearchKeys(*m_browser);
    connect(&field, &QLineEdit::returnPressed, this, &MainWindow::OnEnter);
}

void MainWindow::CreateViewMenu()
{
    QMenu* const view = menuBar()->addMenu(tr("&View"));
    view->addAction(m_dock->toggleViewAction());
    view->addAction(m_helpDock->toggleViewAction());
    view->addMenu(new ThemeMenu(view));
    view->addSeparator();
    m_firstLayout = saveState();
    connect(view->addAction(tr("&Reset layout")), &QAction::triggered, this, [this] {
        restoreState(m_firstLayout);
        SetDockSizes();
    });
}

void MainWindow::CreateLibraryMenu()
{
    QMenu* const library = menuBar()->addMenu(tr("&Library"));
    QMenu* const newItem = library->addMenu(tr("&New"));
    m_browser->CreateMenuCommand(CNodeBrowser::eNewCompound, newItem);
    m_browser->CreateMenuCommand(CNodeBrowser::eNewLoopCompound, newItem);
    m_browser->CreateMenuCommand(CNodeBrowser::eNewSignature, newItem);
    // Not the browser's own command, which tells nobody what could not be saved.
    QAction* const save = library->addAction(tr("Save graph library"));
    save->setShortcut(QKeySequence::Save);
    connect(save, &QAction::triggered, this, &MainWindow::OnSave);
    library->addSeparator();
    connect(library->addAction(tr("Choose &type\u2026")), &QAction::triggered, this, &MainWindow::OnChooseType);
}

void MainWindow::CreateStatusBar()
{
    statusBar()->setSizeGripEnabled(false);
    statusBar()->addWidget(m_selectionLabel, 1);
    statusBar()->addPermanentWidget(m_openingBar);
    statusBar()->addPermanentWidget(m_rowsLabel);
    statusBar()->addPermanentWidget(m_libraryLabel);
    connect(m_openingBar, &OpeningBar::Cancelled, this, &MainWindow::OnCancelOpening);
    m_selectionLabel->setContentsMargins(gLabelIndent, 0, 0, 0);
    m_libraryLabel->setContentsMargins(0, 0, gLabelIndent, 0);
}

void MainWindow::ConnectDataLayer()
{
    m_browser->SetCommandManager(&m_layer.GetCommandManager());
    connect(m_browser, SIGNAL(SelectionChanged()), this, SLOT(OnSelectionChanged()));
    m_browser->SetToolTips([this](const ItemID& in_item) { return GetShortHelp(GetItemHelp(*m_library, in_item)); });
    connect(&m_graph->GetCanvas(), &GraphCanvas::NodeSelected, this, &MainWindow::Explain);
    connect(m_browser, &LibraryBrowser::Painted, this, &MainWindow::OnPainted);
    m_layer.SetCompoundTargetHandler([this] { ShowTarget(); });
    m_layer.GetSourceControl().SetShowFilesHandler(
        [this](const ItemID& in_item) { FilesWindow::Open(*m_library, in_item, *this); });
}

void MainWindow::Attach(memorymodel::Library& in_library, const std::shared_ptr<workspace::Workspace>& in_workspace)
{
    m_library = &in_library;
    m_watcher.reset(
        new ChangeWatcher(m_library->GetAccessor(), [this] { OnLibraryChanged(); }, [this] { OnLibraryCommitted(); }));
    m_workspace = in_workspace;
    m_watch.reset();
    if (m_workspace)
    {
        m_workspace->SetRunner(RunAside);
        m_watch.reset(new workspace::Watch(m_workspace));
        connect(m_watch.get(), &workspace::Watch::Looked, this, &MainWindow::OnDocumentsLookedAt);
        connect(m_watch.get(), &workspace::Watch::CannotWatch, this, [this](const QString& in_first) {
            Say(tr("Changes by other programs may come late: %1 cannot be watched").arg(in_first));
        });
        m_watch->Start();
    }
    m_reload->setEnabled(m_workspace != nullptr);
    m_troubleBar->SetWorkspace(m_workspace);
    m_versionFollower.reset(new VersionFollower(m_layer, *m_library, *m_browser, *this));
    m_layer.SetCurrentLibrary(m_library);
    m_browser->ClearSelection(); // else the same row would be selected
    m_browser->SetItemLibrary(m_library->GetAccessor());
    m_graph->SetLibrary(m_library);
    m_selected = ItemID();
    m_explained = ItemID();
    OnLibraryChanged();
}

void MainWindow::Exchange(memorymodel::Library& in_library, const std::shared_ptr<workspace::Workspace>& in_workspace)
{
    memorymodel::Library& old = *m_library;
    // Delete them now, not in the event loop: they must not outlive the library.
    qDeleteAll(findChildren<FilesWindow*>());
    m_layer.GetCommandManager().GetStack().clear();
    Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(), CompoundAccessor());
    Attach(in_library, in_workspace);
    m_layer.RemoveLibrary(old);
}

void MainWindow::StartOpening(const QString& in_path)
{
    if (m_opening)
        EndOpening(false, QString());
    m_isOpeningQuiet = false;
    m_opening.reset(new Opening(m_layer, in_path));
    connect(m_opening.get(), &Opening::Progressed, m_openingBar, &OpeningBar::SetProgress);
    connect(m_opening.get(), &Opening::Opened, this, &MainWindow::OnOpened);
    connect(m_opening.get(), &Opening::Failed, this, &MainWindow::OnOpeningFailed);
    m_openingBar->Begin(in_path);
}

bool MainWindow::Open(const QString& in_path, QString* out_error)
{
    StartOpening(in_path);
    m_isOpeningQuiet = out_error != nullptr;
    QEventLoop loop;
    bool isOpened = false;
    connect(this, &MainWindow::OpeningEnded, &loop, [&](bool in_isOpened, const QString& in_error) {
        isOpened = in_isOpened;
        if (out_error)
            *out_error = in_error;
        loop.quit();
    });
    loop.exec();
    return isOpened;
}

bool MainWindow::IsInUse() const
{
    return Application::activeModalWidget() || Application::activePopupWidget() ||
           (m_workspace && m_workspace->IsBusy());
}

void MainWindow::OnOpened()
{
    if (IsInUse())
    {
        QTimer::singleShot(gPause, m_opening.get(), [this] { OnOpened(); });
        return;
    }
    // It calls this function, so it cannot go at once.
    Opening* const opening = m_opening.release();
    opening->deleteLater();
    if (!MayLeaveLibrary(*m_library, m_workspace.get(), this))
    {
        EndOpening(false, QString());
        return;
    }
    const std::shared_ptr<workspace::Workspace> workspace = opening->TakeWorkspace();
    Exchange(workspace->GetLibrary(), workspace);
    if (isVisible()) // else nobody has opened it
        AddRecentLibrary(opening->GetPath());
    EndOpening(true, QString());
}

void MainWindow::OnOpeningFailed(const QString& in_error)
{
    m_opening.release()->deleteLater();
    const bool isQuiet = m_isOpeningQuiet;
    EndOpening(false, in_error);
    if (!isQuiet)
        QMessageBox::critical(this, tr("Open library"), tr("The library could not be opened.\n\n%1").arg(in_error));
}

void MainWindow::OnCancelOpening()
{
    EndOpening(false, QString());
    Say(tr("Opening was cancelled"));
}

void MainWindow::EndOpening(bool in_isOpened, const QString& in_error)
{
    m_opening.reset();
    m_openingBar->hide();
    Q_EMIT OpeningEnded(in_isOpened, in_error);
}

void MainWindow::changeEvent(QEvent* in_event)
{
    QMainWindow::changeEvent(in_event);
    if (in_event->type() == QEvent::ActivationChange && isActiveWindow() && m_watch)
        m_watch->LookSoon();
}

void MainWindow::closeEvent(QCloseEvent* in_event)
{
    in_event->setAccepted(MayLeaveLibrary(*m_library, m_workspace.get(), this));
    if (!in_event->isAccepted())
        return;
    if (m_opening)
        EndOpening(false, QString());
    Settings settings;
    settings.setValue(QStringLiteral("geometry"), saveGeometry());
    settings.setValue(QStringLiteral("layout"), saveState());
    settings.setValue(QStringLiteral("tab"), m_browser->findChild<QTabBar*>()->currentIndex());
}

void MainWindow::RestoreLayout()
{
    const Settings settings;
    restoreGeometry(settings.value(QStringLiteral("geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("layout")).toByteArray());
    m_browser->SelectTab(settings.value(QStringLiteral("tab"), 0).toInt());
}

void MainWindow::Say(const QString& in_text)
{
    statusBar()->showMessage(in_text, gMessageTime);
}

void MainWindow::OnNewLibrary()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("New library: choose an empty folder"));
    if (folder.isEmpty())
        return;
    const QString error = MakeLibrary(folder);
    if (error.isEmpty())
        StartOpening(folder);
    else
        QMessageBox::critical(this, tr("New library"), tr("The library could not be made.\n\n%1").arg(error));
}

void MainWindow::OnReload()
{
    m_watch->LookSoon();
}

void MainWindow::OnSample()
{
    if (!MayLeaveLibrary(*m_library, m_workspace.get(), this))
        return;
    if (m_opening)
        EndOpening(false, QString()); // the sample was chosen last
    Exchange(AddSampleLibrary(m_layer), nullptr);
}

void MainWindow::OnDocumentsLookedAt()
{
    m_troubleBar->Refresh();
}

void MainWindow::OnPainted()
{
    m_rowsLabel->setText(tr("%1 listed").arg(m_browser->GetRowCount()));
    if (m_selected != m_browser->GetSelection())
        FollowSelection();
}

void MainWindow::OnOpenLibrary()
{
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open library"), QString(), tr("MaterialX (*.mtlx);;All files (*)"));
    if (!path.isEmpty())
        StartOpening(path);
}

void MainWindow::OnOpenFolder()
{
    const QString path = QFileDialog::getExistingDirectory(this, tr("Open folder"));
    if (!path.isEmpty())
        StartOpening(path);
}

void MainWindow::OnChooseType()
{
    CTypeSelector selector(this);
    if (selector.exec() == QDialog::Accepted)
        Say(tr("Type chosen: %1").arg(GetItemName(*m_library, selector.GetSelected())));
}

void MainWindow::OnSave()
{
    SaveLibrary(*m_library, m_workspace.get(), this);
}

void MainWindow::OnSelectionChanged()
{
    // A message would hide what was just selected.
    if (m_selected != m_browser->GetSelection())
        statusBar()->clearMessage();
    FollowSelection();
}

void MainWindow::FollowSelection()
{
    m_selected = m_browser->GetSelection();
    m_explained = m_selected;
    m_browser->update(); // by Enter the browser itself asks for no paint
    ShowSelection();
}

void MainWindow::OnEnter()
{
    m_browser->ShowSelection();
    m_graph->GetCanvas().PlaceInSight(m_browser->GetSelection());
}

void MainWindow::OnFind()
{
    QLineEdit& field = m_browser->GetSearchField();
    field.setFocus(Qt::ShortcutFocusReason);
    field.selectAll();
}

void MainWindow::Explain(const ItemID& in_item)
{
    m_explained = in_item;
    m_help->setHtml(GetLongHelp(GetItemHelp(*m_library, in_item), GetBaseName(*m_library, in_item)));
}

void MainWindow::OnLibraryChanged()
{
    m_graph->Refresh();
    if (!m_troubleBar->isHidden())
    {
        // Edits that are taken back may end a conflict, and then the other side can come.
        m_troubleBar->Refresh();
        m_watch->LookSoon();
    }
    m_libraryLabel->setText(tr("%1: %2").arg(FromLatin1(m_library->GetName()), CountItems(m_library->GetItemCount())));
    ShowSelection();
    ShowTarget();
    for (FilesWindow* const window : findChildren<FilesWindow*>())
        window->Refresh();
}

void MainWindow::OnLibraryCommitted()
{
    m_troubleBar->Refresh();
    if (!m_workspace)
    {
        const QString name = FromLatin1(m_library->GetName());
        const std::size_t unsaved = CountUnsavedItems(*m_library);
        Say(unsaved == 0 ? tr("%1 is in memory only").arg(name)
                         : tr("%1 of %2 could not be saved").arg(CountItems(unsaved), name));
        return;
    }
    const QStringList saved = m_workspace->GetSavedDocuments();
    const int unsaved = static_cast<int>(m_workspace->GetChangedDocuments().size());
    QStringList parts;
    if (!saved.isEmpty())
        parts << (saved.size() == 1 ? tr("Saved 1 document: %1")
                                    : tr("Saved %n documents: %1", nullptr, static_cast<int>(saved.size())))
                     .arg(saved.join(QStringLiteral(", ")));
    if (unsaved > 0)
        parts << (unsaved == 1 ? tr("1 document could not be saved")
                               : tr("%n documents could not be saved", nullptr, unsaved));
    Say(parts.isEmpty() ? tr("Nothing to save") : parts.join(QStringLiteral("; ")));
}

void MainWindow::ShowSelection()
{
    m_selectionLabel->setText(GetHeadline(GetItemHelp(*m_library, m_selected)));
    Explain(m_explained);
}

void MainWindow::ShowTarget()
{
    const ItemID target = m_layer.GetCompoundTarget();
    const QString name = GetFullName(*m_library, target);
    const QString application = QStringLiteral("nodebrowser");
    setWindowTitle(name.isEmpty() ? application : tr("%1 \u2013 %2").arg(name, application));
    m_graph->SetCompound(target);
}

} // namespace host
