// SPDX-License-Identifier: MIT
/// The dialog that asks for a compound's new name.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/models.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPointer>
#include <QString>

namespace nodebrowser
{

/// Checks the name while the user types it. The name may be neither empty nor in use. The compound's present name is
/// always accepted, in upper or lower case. A fault turns the edit red, shows a tool tip that names the fault, and
/// disables OK. The dialog renames nothing: after exec() the caller reads GetName().
class CRenameCompoundDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param in_library where the name must be free
    /// \param in_compound the compound to rename
    CRenameCompoundDialog(const vireo::datamodel::ItemLibraryAccessor& in_library,
                          vireo::datamodel::CompoundAccessor& in_compound);

    /// Puts a name into the edit and selects it, so that typing replaces it. The name is not checked, so the user can
    /// confirm the dialog without typing.
    void SetName(const QString& in_name);
    /// The name in the edit. It is the present name when somebody has destroyed the edit, so that nothing is renamed.
    QString GetName() const;

private Q_SLOTS:
    void OnNameChanged(const QString& in_text);

private:
    QString FindFault(const QString& in_text) const;
    void ShowFault(const QString& in_fault);
    void ShowNoFault();
    void EnableOk(bool in_enabled);

    vireo::datamodel::ItemLibraryAccessor m_library;
    QPointer<QLineEdit> m_nameEdit;
    QPointer<QDialogButtonBox> m_buttons;
    QString m_currentName;
};

} // namespace nodebrowser
