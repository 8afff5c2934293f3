/// The window of the reference host: the browser in a dock beside a graph.
#pragma once

#include <QMainWindow>
#include <QString>

class QLabel;

namespace memorymodel
{
class DataLayer;
class Library;
} // namespace memorymodel

namespace host
{

class GraphCanvas;
class LibraryBrowser;

/// Shows one library of a data layer and can open another in its place. The title names the compound that is edited, the
/// status bar the selected item and the library.
///
/// The data layer must outlive the window; the window takes its handlers for the compound target and for showing files.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// \param in_library of the data layer; the window removes it when another one is opened
    MainWindow(memorymodel::DataLayer& in_layer, memorymodel::Library& in_library);
    ~MainWindow() override;

    LibraryBrowser& GetBrowser() { return *m_browser; }
    memorymodel::Library& GetLibrary() { return *m_library; }

    /// Opens a file or a folder in the place of the library shown. The undo history and the graph start anew. When it
    /// cannot be read, the library shown stays and a message says why.
    /// \return whether it was opened
    bool Open(const QString& in_path);

private Q_SLOTS:
    void OnOpenLibrary();
    void OnOpenFolder();
    void OnSelectionChanged();
    void OnLibraryChanged();

private:
    void CreateDock();
    void CreateMenus();
    void CreateStatusBar();
    void ConnectDataLayer();
    void Attach(memorymodel::Library& in_library);
    void ShowTarget();

    memorymodel::DataLayer& m_layer;
    memorymodel::Library* m_library;
    LibraryBrowser* m_browser;
    GraphCanvas* m_canvas;
    QLabel* m_selectionLabel;
    QLabel* m_libraryLabel;
};

} // namespace host
