// SPDX-License-Identifier: MIT
#include "nodebrowser/typeselector.h"

#include "datamodel/helpers.h"
#include "datamodel/itemlibrary.h"
#include "datamodel/system.h"
#include "nodebrowser/nodebrowser.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

struct CTypeSelector::Private
{
    QPointer<CNodeBrowser> m_browser; // null once somebody has destroyed it
    vireo::datamodel::ItemID m_selected;
};

CTypeSelector::CTypeSelector(QWidget* in_parent)
    : QDialog(in_parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint), m_private(new Private)
{
    CNodeBrowser* const browser = new CNodeBrowser(eConfigTypeSelector);
    m_private->m_browser = browser;
    QPushButton* const cancel = new QPushButton(tr("Cancel"));
    QHBoxLayout* const buttons = new QHBoxLayout;
    buttons->addWidget(cancel);
    QVBoxLayout* const rows = new QVBoxLayout;
    rows->addWidget(browser);
    rows->addLayout(buttons);
    setLayout(rows);
    setModal(true);
    setWindowTitle(tr("Choose Type"));
    connect(cancel, SIGNAL(clicked()), this, SLOT(reject()));
    connect(browser, SIGNAL(SelectionChanged()), this, SLOT(SelectionChanged()));
    if (hmx::fwk::INEXADBProxy* const database = hmxGetService<hmx::fwk::INEXADBProxy>("NEXADBProxy"))
        browser->SetItemLibrary(database->GetItemLibrary());
    browser->SetCommandManager(vireo::datamodel::GetApplicationCommandManager());
}

CTypeSelector::~CTypeSelector() = default;

vireo::datamodel::ItemID CTypeSelector::GetSelected() const
{
    return m_private->m_selected;
}

QSize CTypeSelector::sizeHint() const
{
    return QSize(275, 500);
}

void CTypeSelector::done(int r)
{
    if (r == Accepted)
    {
        CNodeBrowser* const browser = m_private->m_browser;
        m_private->m_selected = browser ? browser->GetSelection() : vireo::datamodel::ItemID();
        if (!browser || !browser->IsSelectionType() || !m_private->m_selected.IsValid())
            r = Rejected;
    }
    QDialog::done(r);
}

void CTypeSelector::SelectionChanged()
{
    accept();
}
