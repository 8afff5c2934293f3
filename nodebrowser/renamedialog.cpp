// SPDX-License-Identifier: MIT
#include "nodebrowser/renamedialog.h"

#include "nodebrowser/compoundname.h"
#include "qtcompat/latin1.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolTip>
#include <QVBoxLayout>

#include <string>

namespace nodebrowser
{

CRenameCompoundDialog::CRenameCompoundDialog(const vireo::datamodel::ItemLibraryAccessor& in_library,
                                             vireo::datamodel::CompoundAccessor& in_compound)
    : m_library(in_library)
{
    const std::string name = m_library.GetItemName(in_compound.GetItemID(), true, nullptr);
    m_currentName = qtcompat::FromLatin1(name);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setWindowTitle(tr("Rename %1").arg(m_currentName, 0, QLatin1Char(' ')));

    QLabel* const label = new QLabel(tr("New name:"));
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal);
    m_nameEdit = new QLineEdit;
    m_nameEdit->setMinimumWidth(120);
    m_nameEdit->setValidator(new CompoundNameValidator(m_nameEdit));

    QHBoxLayout* const nameRow = new QHBoxLayout;
    nameRow->addWidget(label);
    nameRow->addWidget(m_nameEdit);
    QVBoxLayout* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(5, 5, 5, 5);
    rows->addLayout(nameRow);
    rows->addWidget(m_buttons, 0, Qt::AlignRight | Qt::AlignBottom);

    connect(m_buttons, SIGNAL(accepted()), this, SLOT(accept()));
    connect(m_buttons, SIGNAL(rejected()), this, SLOT(reject()));
    connect(m_nameEdit, SIGNAL(textEdited(const QString&)), this, SLOT(OnNameChanged(const QString&)));
    m_nameEdit->setFocus(Qt::PopupFocusReason);
}

void CRenameCompoundDialog::SetName(const QString& in_name)
{
    if (!m_nameEdit)
        return;
    m_nameEdit->setText(in_name);
    m_nameEdit->selectAll();
}

QString CRenameCompoundDialog::GetName() const
{
    return m_nameEdit ? m_nameEdit->text() : m_currentName;
}

void CRenameCompoundDialog::OnNameChanged(const QString& in_text)
{
    if (!m_nameEdit)
        return;
    const QString fault = FindFault(in_text);
    if (fault.isEmpty())
        ShowNoFault();
    else
        ShowFault(fault);
}

/// What is wrong with a name, as the user reads it. Empty when the name is good.
QString CRenameCompoundDialog::FindFault(const QString& in_text) const
{
    if (in_text.isEmpty())
        return tr("Name can't be empty");
    if (IsSameNameButCase(in_text, m_currentName))
        return QString();
    return IsNameInNodeLibraryHierarchy(m_library, in_text.toLatin1().constData()) ? tr("Name already used")
                                                                                   : QString();
}

void CRenameCompoundDialog::ShowFault(const QString& in_fault)
{
    QPalette palette;
    palette.setColor(QPalette::All, m_nameEdit->backgroundRole(), QColor(255, 90, 90, 255));
    m_nameEdit->setPalette(palette);
    m_nameEdit->setToolTip(in_fault);
    QToolTip::showText(m_nameEdit->mapToGlobal(QPoint(0, 0)), in_fault, m_nameEdit);
    EnableOk(false);
}

void CRenameCompoundDialog::ShowNoFault()
{
    m_nameEdit->setPalette(QPalette());
    m_nameEdit->setToolTip(QString());
    QToolTip::hideText();
    EnableOk(true);
}

void CRenameCompoundDialog::EnableOk(bool in_enabled)
{
    if (QPushButton* const button = m_buttons ? m_buttons->button(QDialogButtonBox::Ok) : nullptr)
        button->setEnabled(in_enabled);
}

} // namespace nodebrowser
