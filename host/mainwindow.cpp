// SPDX-License-Identifier: MIT
#include "host/mainwindow.h"

#include "datamodel/helpers.h"
#include "host/changewatcher.h"
#include "host/fileswindow.h"
#include "host/graphcanvas.h"
#include "host/itemlabel.h"
#include "host/librarybrowser.h"
#include "host/openlibrary.h"
#include "host/recentlibraries.h"
#include "host/sourcecontrolmenu.h"
#include "host/unsavedchanges.h"
#include "host/versionfollower.h"
#include "memorymodel/datalayer.h"
#include "nodebrowser/typeselector.h"
#include "qtcompat/latin1.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>

using qtcompat::FromLatin1;
using vireo::datamodel::CompoundAccessor;
using vireo::datamodel::Helpers;
using vireo::datamodel::ItemID;

namespace host
{

namespace
{

const int gDockWidth = 300;
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
      m_canvas(new GraphCanvas),
      m_selectionLabel(new QLabel),
      m_libraryLabel(new QLabel)
{
    setCentralWidget(m_canvas);
    CreateDock();
    CreateFileMenu();
    CreateEditMenu();
    CreateLibraryMenu();
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

void MainWindow::CreateDock()
{
    QDockWidget* const dock = new QDockWidget(tr("Node library"), this);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    dock->setWidget(m_browser);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    resizeDocks({dock}, {gDockWidth}, Qt::Horizontal);
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
    redo->setShortcut(QKeySequence::Redo);
    edit->addAction(redo);
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
    m_layer.SetCompoundTargetHandler([this] { ShowTarget(); });
    m_layer.GetSourceControl().SetShowFilesHandler(
        [this](const ItemID& in_item) { FilesWindow::Open(*m_library, in_item, *this); });
}

void MainWindow::Attach(memorymodel::Library& in_library)
{
    m_library = &in_library;
    m_watcher.reset(
        new ChangeWatcher(m_library->GetAccessor(), [this] { OnLibraryChanged(); }, [this] { OnLibraryCommitted(); }));
    m_versionFollower.reset(new VersionFollower(m_layer, *m_library, *m_browser, *this));
    m_layer.SetCurrentLibrary(m_library);
    m_browser->SetItemLibrary(m_library->GetAccessor());
    m_canvas->SetLibrary(m_library);
    m_selected = ItemID();
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
    ShowSelection();
}

void MainWindow::OnLibraryChanged()
{
    m_canvas->Refresh();
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
    const memorymodel::DataSource* const source = m_library->GetSourceOf(m_selected);
    if (source)
        m_selectionLabel->setText(tr("%1 \u2013 %2, %3")
                                      .arg(GetItemName(*m_library, m_selected),
                                           QLatin1String(GetItemLabel(*m_library, m_selected).m_text),
                                           FromLatin1(source->GetName())));
    else
        m_selectionLabel->clear();
}

void MainWindow::ShowTarget()
{
    const ItemID target = m_layer.GetCompoundTarget();
    const QString name = GetItemName(*m_library, target);
    const QString application = QStringLiteral("nodebrowser");
    setWindowTitle(name.isEmpty() ? application : tr("%1 \u2013 %2").arg(name, application));
    m_canvas->SetCompound(target);
}

} // namespace host
