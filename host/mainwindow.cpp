// SPDX-License-Identifier: MIT
#include "host/mainwindow.h"

#include "datamodel/helpers.h"
#include "host/changewatcher.h"
#include "host/fileswindow.h"
#include "host/graphcanvas.h"
#include "host/graphmenu.h"
#include "host/graphpanel.h"
#include "host/itemhelp.h"
#include "host/itemlabel.h"
#include "host/librarybrowser.h"
#include "host/openlibrary.h"
#include "host/recentlibraries.h"
#include "host/searchkeys.h"
#include "host/sourcecontrolmenu.h"
#include "host/undokeys.h"
#include "host/unsavedchanges.h"
#include "memorymodel/datalayer.h"
#include "nodebrowser/typeselector.h"
#include "qtcompat/latin1.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTextBrowser>

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
      m_selectionLabel(new QLabel),
      m_libraryLabel(new QLabel)
{
    setCentralWidget(m_graph);
    CreateDocks();
    CreateFileMenu();
    CreateEditMenu();
    CreateLibraryMenu();
    menuBar()->addMenu(new GraphMenu(*m_graph, this));
    menuBar()->addMenu(new SourceControlMenu(m_layer, *m_browser, this));
    CreateStatusBar();
    ConnectDataLayer();
    Attach(in_library);
}

MainWindow::~MainWindow()
{
    m_layer.SetCompoundTargetHandler(nullptr);
    m_layer.GetSourceControl().SetShowFilesHandler(nullptr);
}

void MainWindow::CreateDocks()
{
    QDockWidget* const dock = new QDockWidget(tr("Node library"), this);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    // The browser has no size of its own: it takes what the help leaves.
    m_browser->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_browser->setMinimumHeight(gBrowserHeight);
    dock->setWidget(m_browser);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    QDockWidget* const help = new QDockWidget(tr("About the item"), this);
    help->setObjectName(QStringLiteral("help"));
    m_help->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_help->setFrameShape(QFrame::NoFrame);
    m_help->setAccessibleName(help->windowTitle());
    help->setWidget(m_help);
    splitDockWidget(dock, help, Qt::Vertical);
    resizeDocks({dock}, {gDockWidth}, Qt::Horizontal);
    resizeDocks({dock, help}, {2, 1}, Qt::Vertical);
}

void MainWindow::CreateFileMenu()
{
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    QAction* const openLibrary = file->addAction(tr("&Open library\u2026"));
    openLibrary->setShortcut(QKeySequence::Open);
    connect(openLibrary, &QAction::triggered, this, &MainWindow::OnOpenLibrary);
    connect(file->addAction(tr("Open &folder\u2026")), &QAction::triggered, this, &MainWindow::OnOpenFolder);
    RecentMenu* const recent = new RecentMenu(file);
    connect(recent, &RecentMenu::Chosen, this, &MainWindow::Open);
    file->addMenu(recent);
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
    edit->addSeparator();
    QAction* const find = edit->addAction(tr("&Find in library"));
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, this, &MainWindow::OnFind);
    QLineEdit& field = m_browser->GetSearchField();
    new UndoKeys(field, stack);
    new SearchKeys(*m_browser);
    connect(&field, &QLineEdit::returnPressed, this, &MainWindow::OnEnter);
}

void MainWindow::CreateLibraryMenu()
{
    QMenu* const library = menuBar()->addMenu(tr("&Library"));
    QMenu* const newItem = library->addMenu(tr("&New"));
    m_browser->CreateMenuCommand(CNodeBrowser::eNewCompound, newItem);
    m_browser->CreateMenuCommand(CNodeBrowser::eNewLoopCompound, newItem);
    m_browser->CreateMenuCommand(CNodeBrowser::eNewSignature, newItem);
    m_browser->CreateMenuCommand(CNodeBrowser::eSaveGraphLibrary, library);
    library->actions().last()->setShortcut(QKeySequence::Save);
    library->addSeparator();
    connect(library->addAction(tr("Choose &type\u2026")), &QAction::triggered, this, &MainWindow::OnChooseType);
}

void MainWindow::CreateStatusBar()
{
    statusBar()->setSizeGripEnabled(false);
    statusBar()->addWidget(m_selectionLabel, 1);
    statusBar()->addPermanentWidget(m_libraryLabel);
    m_selectionLabel->setTextFormat(Qt::PlainText);
    m_libraryLabel->setTextFormat(Qt::PlainText);
    m_selectionLabel->setIndent(gLabelIndent);
    m_libraryLabel->setContentsMargins(0, 0, gLabelIndent, 0);
}

void MainWindow::ConnectDataLayer()
{
    m_browser->SetCommandManager(&m_layer.GetCommandManager());
    connect(m_browser, SIGNAL(SelectionChanged()), this, SLOT(OnSelectionChanged()));
    m_browser->SetToolTips([this](const ItemID& in_item) { return GetShortHelp(GetItemHelp(*m_library, in_item)); });
    connect(&m_graph->GetCanvas(), &GraphCanvas::NodeSelected, this, &MainWindow::Explain);
    m_layer.SetCompoundTargetHandler([this] { ShowTarget(); });
    m_layer.GetSourceControl().SetShowFilesHandler(
        [this](const ItemID& in_item) { FilesWindow::Open(*m_library, in_item, *this); });
}

void MainWindow::Attach(memorymodel::Library& in_library)
{
    m_library = &in_library;
    m_watcher.reset(
        new ChangeWatcher(m_library->GetAccessor(), [this] { OnLibraryChanged(); }, [this] { OnLibraryCommitted(); }));
    m_layer.SetCurrentLibrary(m_library);
    m_browser->SetItemLibrary(m_library->GetAccessor());
    m_graph->SetLibrary(m_library);
    m_selected = ItemID();
    m_explained = ItemID();
    OnLibraryChanged();
}

bool MainWindow::Open(const QString& in_path)
{
    if (!MayLeaveLibrary(*m_library, this))
        return false;
    QString error;
    memorymodel::Library* const library = OpenLibrary(m_layer, in_path, &error);
    if (!library)
    {
        QMessageBox::critical(this, tr("Open library"), tr("The library could not be opened.\n\n%1").arg(error));
        return false;
    }
    memorymodel::Library& old = *m_library;
    // Delete them now, not in the event loop: they must not outlive the library.
    qDeleteAll(findChildren<FilesWindow*>());
    m_layer.GetCommandManager().GetStack().clear();
    Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(), CompoundAccessor());
    Attach(*library);
    m_layer.RemoveLibrary(old);
    // Only the sample library has source control; libraries from files have none.
    m_layer.GetSourceControl().SetEnabled(false);
    m_layer.GetSourceControl().SetVersionControlActive(false);
    AddRecentLibrary(in_path);
    return true;
}

void MainWindow::closeEvent(QCloseEvent* in_event)
{
    in_event->setAccepted(MayLeaveLibrary(*m_library, this));
}

void MainWindow::OnOpenLibrary()
{
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open library"), QString(), tr("MaterialX (*.mtlx);;All files (*)"));
    if (!path.isEmpty())
        Open(path);
}

void MainWindow::OnOpenFolder()
{
    const QString path = QFileDialog::getExistingDirectory(this, tr("Open folder"));
    if (!path.isEmpty())
        Open(path);
}

void MainWindow::OnChooseType()
{
    CTypeSelector selector(this);
    if (selector.exec() == QDialog::Accepted)
        statusBar()->showMessage(tr("Type chosen: %1").arg(GetItemName(*m_library, selector.GetSelected())),
                                 gMessageTime);
}

void MainWindow::OnSelectionChanged()
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
    m_help->setHtml(GetLongHelp(GetItemHelp(*m_library, in_item)));
}

void MainWindow::OnLibraryChanged()
{
    m_graph->Refresh();
    m_libraryLabel->setText(tr("%1: %2").arg(FromLatin1(m_library->GetName()), CountItems(m_library->GetItemCount())));
    ShowSelection();
    ShowTarget();
    for (FilesWindow* const window : findChildren<FilesWindow*>())
        window->Refresh();
}

void MainWindow::OnLibraryCommitted()
{
    const std::size_t unsaved = CountUnsavedItems(*m_library);
    const QString name = FromLatin1(m_library->GetName());
    const QString text =
        unsaved == 0 ? tr("%1 is saved").arg(name) : tr("%1 of %2 could not be saved").arg(CountItems(unsaved), name);
    statusBar()->showMessage(text, gMessageTime);
}

void MainWindow::ShowSelection()
{
    m_selectionLabel->setText(GetHeadline(GetItemHelp(*m_library, m_selected)));
    Explain(m_explained);
}

void MainWindow::ShowTarget()
{
    const ItemID target = m_layer.GetCompoundTarget();
    const QString name = GetItemName(*m_library, target);
    const QString application = QStringLiteral("nodebrowser");
    setWindowTitle(name.isEmpty() ? application : tr("%1 \u2013 %2").arg(name, application));
    m_graph->SetCompound(target);
}

} // namespace host
