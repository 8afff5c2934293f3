// SPDX-License-Identifier: MIT
#include "nodebrowser/commands.h"

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/itemlibrarymodifier.h"
#include "datamodel/models.h"
#include "datamodel/sourcecontrol.h"
#include "nodebrowser/datasourcelist.h"
#include "nodebrowser/dbobject.h"
#include "nodebrowser/renamedialog.h"
#include "nodebrowser/vireodialog.h"
#include "qtcompat/latin1.h"

#include <QStringList>
#include <QToolTip>

#include <list>
#include <string>

using qtcompat::FromLatin1;
using qtcompat::ToLatin1;
using vireo::datamodel::CompoundAccessor;
using vireo::datamodel::CompoundModifierAccessor;
using vireo::datamodel::gApplicationTagsKey;
using vireo::datamodel::Helpers;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::ItemLibraryModifierAccessor;
using vireo::datamodel::LoopCompoundAccessor;
using vireo::datamodel::LoopCompoundModifierAccessor;
using vireo::datamodel::LowLevelItemLibraryAccessor;

namespace nodebrowser
{
namespace
{

/// What the user entered, as text of the data layer.
struct NewCompound
{
    std::string m_name;
    std::string m_baseClass;
    std::string m_category;
};

/// Runs the dialog.
/// \return whether the user entered a name and the browser still exists
bool Ask(const CommandTarget& in_target, CVireoCompoundCreateDialog& io_dialog, NewCompound& out_compound)
{
    io_dialog.exec();
    out_compound.m_name = ToLatin1(io_dialog.GetCompoundName());
    out_compound.m_baseClass = ToLatin1(io_dialog.GetBaseClass());
    out_compound.m_category = ToLatin1(io_dialog.GetCategory());
    return in_target.m_browser && !io_dialog.GetCompoundName().isEmpty();
}

bool FindObject(const ItemID& in_item, nexa4::IRevisionControlUIHelper*& out_helper,
                nexa4::NEXAHandle<nexa4::IDbObject>& out_object)
{
    out_helper = FindRevisionControlHelper();
    if (!out_helper)
        return false;
    out_object = FindDbObject(*out_helper, in_item);
    return out_object.IsValid();
}

} // namespace

void CreateCompound(const CommandTarget& in_target, const char* in_kindWord, bool in_signature)
{
    CVireoCompoundCreateDialog dialog(in_target.m_library, in_kindWord, in_kindWord, !in_signature);
    NewCompound compound;
    if (!Ask(in_target, dialog, compound))
        return;
    CompoundModifierAccessor modifier;
    modifier.CreateAndSetFromNewCompound(in_target.m_library, compound.m_name.c_str(), in_signature,
                                         in_signature ? nullptr : compound.m_baseClass.c_str(),
                                         compound.m_category.c_str(), in_target.m_commands);
    if (modifier.IsValid())
        Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(modifier), CompoundAccessor());
}

void CreateLoopCompound(const CommandTarget& in_target)
{
    CVireoCompoundCreateDialog dialog(in_target.m_library, "loop compound", "loopcompound", true);
    NewCompound compound;
    if (!Ask(in_target, dialog, compound))
        return;
    LoopCompoundModifierAccessor modifier;
    modifier.CreateAndSetFromNewLoopCompound(in_target.m_library, compound.m_name.c_str(), compound.m_baseClass.c_str(),
                                             compound.m_category.c_str(), in_target.m_commands);
    if (modifier.IsValid())
        Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(LoopCompoundAccessor(modifier)), CompoundAccessor());
}

void RenameCompound(const CommandTarget& in_target, const ItemID& in_compound)
{
    CompoundAccessor compound(in_target.m_library.GetModel(in_compound, nullptr));
    const QString oldName = FromLatin1(in_target.m_library.GetItemName(in_compound, true, nullptr));
    CRenameCompoundDialog dialog(in_target.m_library, compound);
    dialog.SetName(oldName);
    if (!dialog.exec() || !in_target.m_browser || dialog.GetName() == oldName)
        return;
    CompoundModifierAccessor modifier(compound);
    modifier.Initialize();
    modifier.RenameCompound(ToLatin1(dialog.GetName()).c_str(), in_target.m_commands);
}

void EditTags(const CommandTarget& in_target, const ItemID& in_item)
{
    const std::string name = in_target.m_library.GetItemName(in_item, true, nullptr);
    const std::string oldTags = in_target.m_library.GetItemTags(in_item, gApplicationTagsKey);
    CItemTagsEditorDialog dialog(name.c_str(), oldTags.c_str());
    if (!dialog.exec() || !in_target.m_browser || dialog.GetItemTags() == oldTags)
        return;
    ItemLibraryModifierAccessor(in_target.m_library)
        .SetItemTags(in_item, gApplicationTagsKey, dialog.GetItemTags().c_str(), in_target.m_commands);
}

void OpenCompound(const ItemLibraryAccessor& in_library, const ItemID& in_compound)
{
    Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(in_library.GetModel(in_compound, nullptr)),
                                          CompoundAccessor());
}

void SaveLibrary(ItemLibraryAccessor in_library)
{
    LowLevelItemLibraryAccessor(in_library).PreCommit();
    bool written = false;
    std::list<std::string> messages;
    ItemLibraryModifierAccessor(in_library).CommitToDisk(written, &messages, false, nexa4::UID_Null());
}

void CheckOut(const ItemID& in_item)
{
    nexa4::IRevisionControlUIHelper* helper = nullptr;
    nexa4::NEXAHandle<nexa4::IDbObject> object;
    bool checkedOut = false;
    if (FindObject(in_item, helper, object))
        helper->CheckOut(object, &checkedOut, true);
}

void MakeWritable(const ItemID& in_item)
{
    nexa4::IRevisionControlUIHelper* helper = nullptr;
    nexa4::NEXAHandle<nexa4::IDbObject> object;
    if (FindObject(in_item, helper, object))
        helper->MakeWritable(object, true);
}

void ShowFiles(const ItemID& in_item)
{
    nexa4::IRevisionControlUIHelper* helper = nullptr;
    nexa4::NEXAHandle<nexa4::IDbObject> object;
    if (FindObject(in_item, helper, object))
        helper->ShowFiles(object, nullptr);
}

void ShowStateToolTip(const ItemID& in_item, const QPoint& in_position)
{
    nexa4::IRevisionControlUIHelper* helper = nullptr;
    nexa4::NEXAHandle<nexa4::IDbObject> object;
    if (FindObject(in_item, helper, object))
        QToolTip::showText(in_position, ScsUtils::GetToolTip(object, QString::fromLatin1(":compound.png")));
}

void MoveCompound(const QVariant& in_identities)
{
    nexa4::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    if (!helper)
        return;
    const QStringList identities = in_identities.toStringList();
    const nexa4::DbObjectId compound(identities.at(0).toUtf8().constData());
    const nexa4::DbObjectId resource(identities.at(1).toUtf8().constData());
    MoveToDataSource(helper->FindObject(compound), resource);
}

} // namespace nodebrowser
