// SPDX-License-Identifier: MIT
/// The window of the reference host: the browser in a dock beside a graph.
#pragma once

#include "datamodel/itemid.h"

#include <QMainWindow>
#include <QString>

#include <memory>

class QLabel;

namespace memorymodel
{
class DataLayer;
class Library;
} // namespace memorymodel

namespace host
{

class ChangeWatcher;
class GraphCanvas;
class LibraryBrowser;
class VersionFollower;

/// Shows one library of a data layer, and can open another one instead. Title and graph follow the compound that is
/// edited, the status bar names the selected item and the library. Whoever closes the window or opens another library
/// is asked what to do with changes that are not saved.
///
/// The data layer must outlive the window. The window sets its handlers for the compound target and for "Show Files".
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// \param in_library of the data layer; the window removes it when another one is opened
    MainWindow(memorymodel::DataLayer& in_layer, memorymodel::Library& in_library);
    ~MainWindow() override;

    LibraryBrowser& GetBrowser() { return *m_browser; }
    memorymodel::Library& GetLibrary() { return *m_library; }

    /// Opens a file or a folder instead of the present library and makes it the first of the recent ones. The undo
    /// history and the graphs start anew. The present library stays when the user keeps its unsaved changes, and when
    /// the other one cannot be read; a message then says why.
    /// \return whether it was opened
    bool Open(const QString& in_path);

protected:
    void closeEvent(QCloseEvent* in_event) override;

private Q_SLOTS:
    void OnOpenLibrary();
    void OnOpenFolder();
    void OnChooseType();
    void OnSelectionChanged();

private:
    void CreateDock();
    void CreateFileMenu();
    void CreateEditMenu();
    void CreateLibraryMenu();
    void CreateStatusBar();
    void ConnectDataLayer();
    void Attach(memorymodel::Library& in_library);
    void OnLibraryChanged();
    void OnLibraryCommitted();
    void ShowSelection();
    void ShowTarget();

    memorymodel::DataLayer& m_layer;
    memorymodel::Library* m_library;
    LibraryBrowser* m_browser;
    GraphCanvas* m_canvas;
    vireo::datamodel::ItemID m_selected;
    QLabel* m_selectionLabel;
    QLabel* m_libraryLabel;
    std::unique_ptr<ChangeWatcher> m_watcher;
    std::unique_ptr<VersionFollower> m_versionFollower;
};

} // namespace host
