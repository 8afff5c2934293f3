// SPDX-License-Identifier: MIT
/// The menu of source control.
#pragma once

#include "datamodel/revisioncontrol.h"

#include <QMenu>

class QAction;

namespace memorymodel
{
class DataLayer;
}

namespace host
{

class LibraryBrowser;

/// Checks out the browser's selected item, makes it writable, and switches the display of states in the browser. The
/// switch follows the property, whoever changes it. Everything is greyed out without version control. The first two are
/// also greyed out while no item with a database object is selected.
class SourceControlMenu : public QMenu, private IRevisionControlPropertiesMgr_Slot
{
    Q_OBJECT

public:
    /// Both must outlive the menu.
    SourceControlMenu(memorymodel::DataLayer& in_layer, LibraryBrowser& in_browser, QWidget* in_parent);

private Q_SLOTS:
    void OnAboutToShow();
    void OnShowTriggered(bool in_checked);

private:
    void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* in_manager) override;

    memorymodel::DataLayer& m_layer;
    LibraryBrowser& m_browser;
    QAction* m_checkOut;
    QAction* m_makeWritable;
    QAction* m_show;
    RevisionControlConnection m_connection;
};

} // namespace host
