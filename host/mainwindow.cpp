#include "host/mainwindow.h"

#include "datamodel/helpers.h"
#include "host/graphcanvas.h"
#include "host/itemkind.h"
#include "host/librarybrowser.h"
#include "host/openlibrary.h"
#include "host/text.h"
#include "memorymodel/datalayer.h"

#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>

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

QString GetName(const memorymodel::Library& in_library, const ItemID& in_item)
{
    return ToText(in_library.GetAccessor().GetItemName(in_item, true, nullptr));
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
    CreateMenus();
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

void MainWindow::CreateMenus()
{
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    QAction* const openLibrary = file->addAction(tr("&Open library\u2026"));
    openLibrary->setShortcut(QKeySequence::Open);
    connect(openLibrary, &QAction::triggered, this, &MainWindow::OnOpenLibrary);
    connect(file->addAction(tr("Open &folder\u2026")), &QAction::triggered, this, &MainWindow::OnOpenFolder);
    file->addSeparator();
    QAction* const quit = file->addAction(tr("&Quit"));
    quit->setShortcut(QKeySequence::Quit);
    connect(quit, &QAction::triggered, this, &MainWindow::close);

    QUndoStack& stack = m_layer.GetCommandManager().GetStack();
    QMenu* const edit = menuBar()->addMenu(tr("&Edit"));
    QAction* const undo = stack.createUndoAction(edit);
    undo->setShortcut(QKeySequence::Undo);
    edit->addAction(undo);
    QAction* const redo = stack.createRedoAction(edit);
    redo->setShortcut(QKeySequence::Redo);
    edit->addAction(redo);
}

void MainWindow::CreateStatusBar()
{
    statusBar()->setSizeGripEnabled(false);
    statusBar()->addWidget(m_selectionLabel, 1);
    statusBar()->addPermanentWidget(m_libraryLabel);
    m_selectionLabel->setIndent(gLabelIndent);
    m_libraryLabel->setContentsMargins(0, 0, gLabelIndent, 0);
}

void MainWindow::ConnectDataLayer()
{
    m_browser->SetCommandManager(&m_layer.GetCommandManager());
    connect(m_browser, SIGNAL(SelectionChanged()), this, SLOT(OnSelectionChanged()));
    // Everything that a person changes goes through the undo stack.
    connect(&m_layer.GetCommandManager().GetStack(), &QUndoStack::indexChanged, this, &MainWindow::OnLibraryChanged);
    m_layer.SetCompoundTargetHandler([this] { ShowTarget(); });
    m_layer.GetSourceControl().SetShowFilesHandler([this](const ItemID& in_item) {
        const memorymodel::DataSource* const source = m_library->GetSourceOf(in_item);
        if (source)
            statusBar()->showMessage(
                tr("%1 is stored in %2").arg(GetName(*m_library, in_item), ToText(source->GetLocation())),
                gMessageTime);
    });
}

void MainWindow::Attach(memorymodel::Library& in_library)
{
    m_library = &in_library;
    m_layer.SetCurrentLibrary(m_library);
    m_browser->SetItemLibrary(m_library->GetAccessor());
    m_canvas->SetLibrary(m_library);
    m_selectionLabel->clear();
    OnLibraryChanged();
}

bool MainWindow::Open(const QString& in_path)
{
    QString error;
    memorymodel::Library* const library = OpenLibrary(m_layer, in_path, &error);
    if (!library)
    {
        QMessageBox::critical(this, tr("Open library"), tr("The library could not be opened.\n\n%1").arg(error));
        return false;
    }
    memorymodel::Library& old = *m_library;
    m_layer.GetCommandManager().GetStack().clear();
    Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(), CompoundAccessor());
    Attach(*library);
    m_layer.RemoveLibrary(old);
    // What is opened from files has no source control behind it, other than the sample.
    m_layer.GetSourceControl().SetEnabled(false);
    m_layer.GetSourceControl().SetVersionControlActive(false);
    return true;
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

void MainWindow::OnSelectionChanged()
{
    const ItemID item = m_browser->GetSelection();
    const memorymodel::DataSource* const source = m_library->GetSourceOf(item);
    if (source)
        m_selectionLabel->setText(tr("%1 \u2013 %2, %3")
                                      .arg(GetName(*m_library, item),
                                           QLatin1String(GetItemKind(*m_library, item).m_label),
                                           ToText(source->GetName())));
    else
        m_selectionLabel->clear();
}

void MainWindow::OnLibraryChanged()
{
    m_canvas->UpdateNames();
    m_libraryLabel->setText(
        tr("%1: %n items", nullptr, static_cast<int>(m_library->GetItemCount())).arg(ToText(m_library->GetName())));
    ShowTarget();
}

void MainWindow::ShowTarget()
{
    const QString name = GetName(*m_library, m_layer.GetCompoundTarget());
    const QString application = QStringLiteral("nodebrowser");
    setWindowTitle(name.isEmpty() ? application : tr("%1 \u2013 %2").arg(name, application));
}

} // namespace host
