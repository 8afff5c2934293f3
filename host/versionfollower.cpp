// SPDX-License-Identifier: MIT
#include "host/versionfollower.h"

#include "datamodel/notifications.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "host/findworkspace.h"
#include "host/librarybrowser.h"
#include "memorymodel/datalayer.h"
#include "workspace/versions.h"
#include "workspace/workspace.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMainWindow>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolTip>

using vireo::datamodel::eItemLibraryNotificationKind;
using vireo::datamodel::eItemTOCNotificationKind;

namespace host
{
namespace
{

const int gMessageTime = 10000; // milliseconds

bool IsSourceControlShown()
{
    bool isEnabled = false;
    auto* const manager = hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr");
    if (manager && manager->HasProperties())
        manager->GetSourceControlEnabled(&isEnabled);
    return isEnabled;
}

} // namespace

workspace::Versions* FindVersions(const memorymodel::Library& in_library)
{
    const std::shared_ptr<workspace::Workspace> workspace = FindWorkspace(in_library);
    return workspace ? &workspace->GetVersions() : nullptr;
}

void WaitForStates(const memorymodel::Library& in_library)
{
    if (workspace::Versions* const versions = FindVersions(in_library))
        versions->Finish();
}

VersionFollower::VersionFollower(memorymodel::DataLayer& in_layer, const memorymodel::Library& in_library,
                                 LibraryBrowser& in_browser, QMainWindow& in_window)
    : m_layer(in_layer),
      m_browser(in_browser),
      m_window(in_window),
      m_library(in_library.GetAccessor()),
      m_contents(GetTOC(m_library)),
      m_versions(FindVersions(in_library))
{
    if (!m_versions)
        return;
    // A message runs an event loop, in which the library may go: not inside of a signal.
    connect(m_versions, &workspace::Versions::Refused, this, &VersionFollower::OnRefused, Qt::QueuedConnection);
    connect(m_versions, &workspace::Versions::StatesRead, this, &VersionFollower::OnStatesRead);
    connect(m_versions, &workspace::Versions::HistoryRead, this, &VersionFollower::OnHistoryRead);
    m_library.AddObserver(this, eItemLibraryNotificationKind, m_library.GetContext());
    m_contents.AddObserver(this, eItemTOCNotificationKind, m_contents.GetContext());
    m_versions->Ask();
}

VersionFollower::~VersionFollower()
{
    if (!m_versions || !m_library.IsValid())
        return;
    m_contents.RemoveObserver(this, eItemTOCNotificationKind, m_contents.GetContext());
    m_library.RemoveObserver(this, eItemLibraryNotificationKind, m_library.GetContext());
}

void VersionFollower::OnStatesRead()
{
    if (m_versions->GetProblem() == m_problem)
        return;
    m_problem = m_versions->GetProblem();
    m_window.statusBar()->showMessage(m_problem, gMessageTime);
}

void VersionFollower::OnHistoryRead()
{
    if (!QToolTip::isVisible() || !m_browser.underMouse())
        return;
    QHelpEvent again(QEvent::ToolTip, m_browser.mapFromGlobal(QCursor::pos()), QCursor::pos());
    QApplication::sendEvent(&m_browser, &again);
}

void VersionFollower::OnRefused(const QString& in_reason)
{
    QMessageBox::warning(&m_window, tr("Source control"), in_reason);
}

void VersionFollower::OnEndChanges(ItemLibraryAccessor&)
{
    if (!m_isRebuilt)
        return;
    m_isRebuilt = false;
    if (!ScsUtils::IsFileVersionControlActive() || !IsSourceControlShown())
        return;
    // Switching it on is what makes a browser ask.
    m_layer.GetSourceControl().SetEnabled(false);
    m_layer.GetSourceControl().SetEnabled(true);
}

} // namespace host
