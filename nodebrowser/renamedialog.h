// SPDX-License-Identifier: MIT
/// The dialog that asks for a compound's new name.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/models.h"

#include <QDialog>
#include <QString>

class QDialogButtonBox;
class QLineEdit;

/// Checks the name while it is typed: it may be neither empty nor in use, but the compound's present name is always
/// accepted, in whatever case. What is wrong turns the edit red, stands in a tool tip and switches OK off. The dialog
/// renames nothing: after exec() the caller reads GetName().
class CRenameCompoundDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param in_library where the name must be free
    /// \param in_compound the compound to rename
    CRenameCompoundDialog(const vireo::datamodel::ItemLibraryAccessor& in_library,
                          vireo::datamodel::CompoundAccessor& in_compound);

    /// Puts a name into the edit, selected, so that typing replaces it. It is not checked: a dialog that nobody has
    /// typed in can always be confirmed.
    void SetName(const QString& in_name);
    QString GetName() const;

private Q_SLOTS:
    void OnNameChanged(const QString& in_text);

private:
    QString FindFault(const QString& in_text) const;
    void ShowFault(const QString& in_fault);
    void ShowNoFault();

    vireo::datamodel::ItemLibraryAccessor m_library;
    QLineEdit* m_nameEdit;
    QDialogButtonBox* m_buttons;
    QString m_currentName;
};
