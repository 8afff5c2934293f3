// SPDX-License-Identifier: MIT
#include "host/sourcecontrolmenu.h"

#include "datamodel/helpers.h"
#include "datamodel/sourcecontrol.h"
#include "host/librarybrowser.h"
#include "memorymodel/datalayer.h"

using vireo::datamodel::ItemID;

namespace host
{

SourceControlMenu::SourceControlMenu(memorymodel::DataLayer& in_layer, LibraryBrowser& in_browser, QWidget* in_parent)
    : QMenu(tr("&Source control"), in_parent),
      m_layer(in_layer),
      m_browser(in_browser),
      m_checkOut(addAction(tr("&Check out"))),
      m_makeWritable(addAction(tr("&Make writable"))),
      m_show(nullptr)
{
    addSeparator();
    m_show = addAction(tr("&Show source control"));
    m_show->setCheckable(true);
    connect(m_checkOut, SIGNAL(triggered()), &m_browser, SLOT(OnCheckOutItem()));
    connect(m_makeWritable, SIGNAL(triggered()), &m_browser, SLOT(OnMakeItemWritable()));
    connect(m_show, &QAction::triggered, this, &SourceControlMenu::OnShowTriggered);
    connect(this, &QMenu::aboutToShow, this, &SourceControlMenu::OnAboutToShow);
    if (auto* const manager = hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr"))
    {
        manager->Connect(this, m_connection);
        SourceControlMenu::OnRevisionControlPropertiesChange(manager);
    }
}

void SourceControlMenu::OnAboutToShow()
{
    const bool active = ScsUtils::IsFileVersionControlActive();
    const ItemID item = m_browser.GetSelection();
    const bool stored = nexa4::DbObjectId::IsUID(vireo::datamodel::ItemIDUnlock::GetItemIDUID(item));
    m_checkOut->setEnabled(active && stored);
    m_makeWritable->setEnabled(active && stored);
    m_show->setEnabled(active);
}

void SourceControlMenu::OnShowTriggered(bool in_checked)
{
    m_layer.GetSourceControl().SetEnabled(in_checked);
}

void SourceControlMenu::OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* in_manager)
{
    bool enabled = false;
    if (in_manager && in_manager->HasProperties())
        in_manager->GetSourceControlEnabled(&enabled);
    m_show->setChecked(enabled);
    // The browser drops its badges without a repaint.
    m_browser.update();
}

} // namespace host
