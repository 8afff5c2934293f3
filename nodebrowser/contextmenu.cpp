// SPDX-License-Identifier: MIT
#include "nodebrowser/contextmenu.h"

#include "datamodel/compoundmodifier.h"
#include "datamodel/models.h"
#include "nodebrowser/datasourcelist.h"
#include "nodebrowser/dbobject.h"
#include "qtcompat/latin1.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QStringList>
#include <QVariant>

#include <vector>

using nexa4::IDbObject;
using nexa4::NEXAHandle;
using qtcompat::FromLatin1;
using vireo::datamodel::CompoundModifierAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::VireoType;

namespace nodebrowser
{
namespace
{

QString Translate(const char* in_text)
{
    return QCoreApplication::translate("CNodeBrowser", in_text);
}

QString Named(const QString& in_text, const QString& in_name)
{
    return in_text.arg(in_name, 0, QLatin1Char(' '));
}

/// Appends the data sources that a compound can be moved to. The data of each entry is the identity of the compound and
/// that of the resource that stands for the source.
void FillDataSourceMenu(QMenu& io_menu, QObject& in_receiver, const NEXAHandle<IDbObject>& in_compound)
{
    const QString compound = FromLatin1(in_compound.GetDbObjectId().GetStr());
    const std::vector<DataSourceEntry> sources = ListDataSources(in_compound);
    for (const DataSourceEntry& source : sources)
    {
        QAction* const entry = AddEntry(io_menu, source.m_label, in_receiver, SLOT(OnDatasourceChange()));
        entry->setEnabled(source.m_enabled);
        entry->setToolTip(source.m_toolTip);
        entry->setData(QVariant(QStringList() << compound << FromLatin1(source.m_resource)));
    }
}

} // namespace

QAction* AddEntry(QMenu& io_menu, const QString& in_text, QObject& in_receiver, const char* in_slot)
{
    QAction* const entry = new QAction(in_text, &io_menu);
    QObject::connect(entry, SIGNAL(triggered()), &in_receiver, in_slot);
    io_menu.addAction(entry);
    return entry;
}

void FillContextMenu(QMenu& io_menu, QObject& in_receiver, const ItemLibraryAccessor& in_library, const ItemID& in_item)
{
    const QString name = FromLatin1(in_library.GetItemName(in_item, true, nullptr));
    nexa4::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    bool canEdit = !in_library.ItemIsReadOnly(in_item);
    const NEXAHandle<IDbObject> object = helper ? FindDbObject(*helper, in_item) : NEXAHandle<IDbObject>();
    const auto add = [&](const QString& in_text, const char* in_slot) {
        return AddEntry(io_menu, Named(in_text, name), in_receiver, in_slot);
    };
    if (object.IsValid())
        add(Translate("Show Files for %1"), SLOT(OnShowItemFiles()));
    const char* const type = in_item.GetType();
    if (type == VireoType::gCompound)
    {
        CompoundModifierAccessor modifier(vireo::datamodel::CompoundAccessor(in_library.GetModel(in_item, nullptr)));
        modifier.Initialize();
        canEdit = modifier.CanModifyCompound(true);
        add(Translate("Rename %1"), SLOT(OnRenameItem()))->setEnabled(canEdit);
        // Always disabled on purpose: the browser does not offer to delete.
        add(Translate("Delete %1"), SLOT(OnDeleteItem()))->setEnabled(false);
        if (object.IsValid())
            FillDataSourceMenu(*io_menu.addMenu(Translate("Compound source")), in_receiver, object);
    }
    if (type == VireoType::gCompound || type == VireoType::gSolver || type == VireoType::gGlobalConstant)
        add(Translate("Edit Tags for %1"), SLOT(OnEditItemTags()))->setEnabled(canEdit);
}

} // namespace nodebrowser
