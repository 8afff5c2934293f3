// SPDX-License-Identifier: MIT
#include "nodebrowser/typeselector.h"

#include "datamodel/helpers.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/system.h"
#include "nodebrowser/nodebrowser.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

CTypeSelector::CTypeSelector(QWidget* in_parent)
    : QDialog(in_parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint),
      m_browser(new CNodeBrowser(eConfigTypeSelector))
{
    QPushButton* const cancel = new QPushButton(tr("Cancel"));
    QHBoxLayout* const buttons = new QHBoxLayout;
    buttons->addWidget(cancel);
    QVBoxLayout* const rows = new QVBoxLayout;
    rows->addWidget(m_browser);
    rows->addLayout(buttons);
    setLayout(rows);
    setModal(true);
    setWindowTitle(tr("Choose Type"));
    connect(cancel, SIGNAL(clicked()), this, SLOT(reject()));
    connect(m_browser, SIGNAL(SelectionChanged()), this, SLOT(SelectionChanged()));
    if (hmx::fwk::INEXADBProxy* const database = hmxGetService<hmx::fwk::INEXADBProxy>("NEXADBProxy"))
        m_browser->SetItemLibrary(database->GetItemLibrary());
    m_browser->SetCommandManager(vireo::datamodel::GetApplicationCommandManager());
}

QSize CTypeSelector::sizeHint() const
{
    return QSize(275, 500);
}

void CTypeSelector::done(int r)
{
    if (r == Accepted)
    {
        m_selected = m_browser->GetSelection();
        if (!m_browser->IsSelectionType() || !m_selected.IsValid())
            r = Rejected;
    }
    QDialog::done(r);
}

void CTypeSelector::SelectionChanged()
{
    accept();
}
