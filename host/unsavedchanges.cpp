// SPDX-License-Identifier: MIT
#include "host/unsavedchanges.h"

#include "host/itemlabel.h"
#include "memorymodel/library.h"
#include "qtcompat/latin1.h"
#include "workspace/workspace.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QStringList>

#include <list>
#include <string>

using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryModifierAccessor;

namespace host
{

namespace
{

const int gNamesShown = 5;
const int gReasonsShown = 12; // a line each

class UnsavedChanges
{
    Q_DECLARE_TR_FUNCTIONS(host::UnsavedChanges)
};

QStringList GetUnsavedItems(const memorymodel::Library& in_library)
{
    const vireo::datamodel::ItemLibraryAccessor accessor = in_library.GetAccessor();
    QStringList unsaved;
    for (const ItemID& item : in_library.GetItems())
        if (accessor.ItemIsDirty(item))
            unsaved << GetItemName(in_library, item);
    unsaved.sort(Qt::CaseInsensitive);
    return unsaved;
}

QString ListNames(QStringList in_names)
{
    const int hidden = static_cast<int>(in_names.size()) - gNamesShown;
    if (hidden > 0)
        in_names = in_names.mid(0, gNamesShown) << UnsavedChanges::tr("and %n more", nullptr, hidden);
    return in_names.join(QStringLiteral(", "));
}

QString Question(int in_count, bool in_areDocuments)
{
    if (in_areDocuments)
        return in_count == 1 ? UnsavedChanges::tr("A document of the library %1 has changes that are not saved.")
                             : UnsavedChanges::tr("%n documents of the library %1 have changes that are not saved.",
                                                  nullptr, in_count);
    return in_count == 1
               ? UnsavedChanges::tr("An item of the library %1 has changes that are not saved.")
               : UnsavedChanges::tr("%n items of the library %1 have changes that are not saved.", nullptr, in_count);
}

/// Shows a message in plain text: the names in it may look like markup.
int Ask(QMessageBox& in_box, const QString& in_title, const QString& in_details)
{
    in_box.setTextFormat(Qt::PlainText);
    in_box.setWindowTitle(in_title);
    in_box.setInformativeText(in_details);
    return in_box.exec();
}

/// What a save that has failed says about it.
QStringList GetReasons(const std::list<std::string>& in_messages, const workspace::Workspace* in_workspace)
{
    if (in_messages.empty()) // it did not even begin
        return {UnsavedChanges::tr("Another part of the application has refused it.")};
    if (in_workspace)
        return in_workspace->GetSaveMessages();
    QStringList reasons;
    for (const std::string& message : in_messages)
        reasons << FromLatin1(message);
    return reasons;
}

} // namespace

std::size_t CountUnsavedItems(const memorymodel::Library& in_library)
{
    return static_cast<std::size_t>(GetUnsavedItems(in_library).size());
}

bool SaveLibrary(const memorymodel::Library& in_library, const workspace::Workspace* in_workspace, QWidget* in_parent)
{
    const ItemLibraryModifierAccessor library(in_library.GetAccessor());
    bool written = false;
    std::list<std::string> messages;
    if (library.CommitToDisk(written, &messages, false, nexa4::UID_Null()))
        return true;
    QStringList reasons = GetReasons(messages, in_workspace);
    const int hidden = static_cast<int>(reasons.size()) - gReasonsShown;
    if (hidden > 0)
        reasons = reasons.mid(0, gReasonsShown) << UnsavedChanges::tr("and %n more", nullptr, hidden);
    QMessageBox box(QMessageBox::Critical, QString(), UnsavedChanges::tr("The library could not be saved."),
                    QMessageBox::Ok, in_parent);
    Ask(box, UnsavedChanges::tr("Save library"), reasons.join(QLatin1Char('\n')));
    return false;
}

bool MayLeaveLibrary(const memorymodel::Library& in_library, const workspace::Workspace* in_workspace,
                     QWidget* in_parent)
{
    const QStringList unsaved = in_workspace ? in_workspace->GetChangedDocuments() : GetUnsavedItems(in_library);
    if (unsaved.isEmpty())
        return true;
    const QString text = Question(static_cast<int>(unsaved.size()), in_workspace != nullptr);
    QMessageBox box(QMessageBox::Warning, QString(), text.arg(FromLatin1(in_library.GetName())),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, in_parent);
    box.setDefaultButton(QMessageBox::Save);
    switch (Ask(box, UnsavedChanges::tr("Unsaved changes"), ListNames(unsaved)))
    {
    case QMessageBox::Save:
        return SaveLibrary(in_library, in_workspace, in_parent);
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}

} // namespace host
