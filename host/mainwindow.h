// SPDX-License-Identifier: MIT
/// The window of the reference host: the browser in a dock beside a graph.
#pragma once

#include "datamodel/itemid.h"

#include <QMainWindow>
#include <QString>

#include <memory>

class QAction;
class QDockWidget;
class QLabel;
class QTextBrowser;

namespace memorymodel
{
class DataLayer;
class Library;
} // namespace memorymodel

namespace workspace
{
class Watch;
class Workspace;
} // namespace workspace

namespace host
{

class ChangeWatcher;
class ElidedLabel;
class GraphPanel;
class LibraryBrowser;
class Opening;
class OpeningBar;
class TroubleBar;
class VersionFollower;

/// Shows one library of a data layer, and can open another one instead. Title and graph follow the compound that is
/// edited, the status bar names the selected item and the library, and a pane tells what is known about the item or
/// node that was selected last. Whoever closes the window or opens another library is asked what to do with changes
/// that are not saved. What goes wrong in an event of a host::Application is said in the status bar.
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

    /// Begins to open a file or a folder; the window answers meanwhile, and shows how far it has come. When all is
    /// read, it takes the place of the present library and becomes the first of the recent ones. The undo history and
    /// the graphs start anew. The present library stays when the user keeps its unsaved changes or cancels, and when
    /// the other one cannot be read; a message then says why. The other one waits for questions, menus and saves that
    /// are under way.
    void StartOpening(const QString& in_path);
    /// The same, and waits for its end in an event loop.
    /// \param out_error if given: takes the place of the message
    /// \return whether it was opened
    bool Open(const QString& in_path, QString* out_error = nullptr);
    /// Makes the window as it was when it was closed last: its place and size, its dock, and the tab.
    void RestoreLayout();
    /// What keeps the present library on the disk; null for one in memory only.
    const std::shared_ptr<workspace::Workspace>& GetWorkspace() const { return m_workspace; }

Q_SIGNALS:
    /// What StartOpening() began has come to its end.
    /// \param in_error why the library could not be read; empty when it could, and when somebody cancelled
    void OpeningEnded(bool in_isOpened, const QString& in_error);

protected:
    void changeEvent(QEvent* in_event) override;
    void closeEvent(QCloseEvent* in_event) override;

private Q_SLOTS:
    void OnNewLibrary();
    void OnOpenLibrary();
    void OnOpenFolder();
    void OnReload();
    void OnSample();
    void OnOpened();
    void OnOpeningFailed(const QString& in_error);
    void OnCancelOpening();
    void OnPainted();
    void OnDocumentsLookedAt();
    void OnChooseType();
    void OnSave();
    void OnSelectionChanged();
    void OnEnter();
    void OnFind();
    void Explain(const vireo::datamodel::ItemID& in_item);

private:
    void CreateDocks();
    void SetDockSizes();
    void CreateFileMenu();
    void CreateEditMenu();
    void CreateViewMenu();
    void CreateLibraryMenu();
    void CreateStatusBar();
    void ConnectDataLayer();
    void Attach(memorymodel::Library& in_library, const std::shared_ptr<workspace::Workspace>& in_workspace);
    /// Puts a library in the place of the present one, which goes.
    void Exchange(memorymodel::Library& in_library, const std::shared_ptr<workspace::Workspace>& in_workspace);
    void EndOpening(bool in_isOpened, const QString& in_error);
    void Say(const QString& in_text);
    /// Whether somebody is just doing something with the present library, so that it cannot go.
    bool IsInUse() const;
    void FollowSelection();
    void OnLibraryChanged();
    void OnLibraryCommitted();
    void ShowSelection();
    void ShowTarget();

    memorymodel::DataLayer& m_layer;
    memorymodel::Library* m_library;
    LibraryBrowser* m_browser;
    GraphPanel* m_graph;
    QTextBrowser* m_help;
    vireo::datamodel::ItemID m_selected;
    vireo::datamodel::ItemID m_explained;
    ElidedLabel* m_selectionLabel;
    ElidedLabel* m_libraryLabel;
    QLabel* m_rowsLabel;
    OpeningBar* m_openingBar;
    TroubleBar* m_troubleBar;
    QDockWidget* m_dock = nullptr;     ///< of the browser
    QDockWidget* m_helpDock = nullptr; ///< of what is said about an item
    QAction* m_reload = nullptr;
    QByteArray m_firstLayout; ///< to reset to
    std::shared_ptr<workspace::Workspace> m_workspace;
    std::unique_ptr<workspace::Watch> m_watch; ///< of the workspace
    std::unique_ptr<Opening> m_opening;        ///< while one is opened
    bool m_isOpeningQuiet = false;             ///< no message when it fails
    std::unique_ptr<ChangeWatcher> m_watcher;
    std::unique_ptr<VersionFollower> m_versionFollower;
};

} // namespace host
