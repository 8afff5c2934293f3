// SPDX-License-Identifier: MIT
#include "host/sourcecontrolmenu.h"

#include "datamodel/helpers.h"
#include "datamodel/sourcecontrol.h"
#include "host/librarybrowser.h"
#include "memorymodel/datalayer.h"

using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIDUnlock;
using vireo::datamodel::VireoType;

namespace host
{
namespace
{

/// Whether an item has a source-control state to change: compounds have, unless their source refuses changes. The
/// browser shows badges beside these only.
bool IsUnderSourceControl(const ItemID& in_item)
{
    auto* const helper = hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
    const char* const uid = ItemIDUnlock::GetItemIDUID(in_item);
    if (in_item.GetType() != VireoType::gCompound || !helper || !nexa4::DbObjectId::IsUID(uid))
        return false;
    const nexa4::NEXAHandle<nexa4::IDbObject> object = helper->FindObject(nexa4::DbObjectId(uid));
    return object.IsValid() && object.GetDataSource()->GetState() != nexa4::eDataSourceReadOnly;
}

} // namespace

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
    const bool changeable = active && IsUnderSourceControl(m_browser.GetSelection());
    m_checkOut->setEnabled(changeable);
    m_makeWritable->setEnabled(changeable);
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
