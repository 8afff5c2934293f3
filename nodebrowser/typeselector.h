// SPDX-License-Identifier: MIT
/// The dialog that lets the user choose a type.
#pragma once

#include "datamodel/itemid.h"
#include "nodebrowser/export.h"

#include <QDialog>

class CNodeBrowser;

/// Shows the types of the application's current library in a browser. Picking a row closes it at once: there is nothing
/// to confirm. It accepts only a type.
///
///     CTypeSelector selector(this);
///     if (selector.exec() == QDialog::Accepted)
///         use(selector.GetSelected());
///
/// The library is that of the service "NEXADBProxy"; without it the list is empty and the dialog can only be cancelled.
class NODEBROWSER_EXPORT CTypeSelector : public QDialog
{
    Q_OBJECT

public:
    explicit CTypeSelector(QWidget* in_parent);

    /// The type picked. Meaningful only after exec() returned QDialog::Accepted.
    vireo::datamodel::ItemID GetSelected() const { return m_selected; }

    QSize sizeHint() const override;

public Q_SLOTS:
    /// Turns an acceptance into a rejection when what is selected is no type.
    void done(int r) override;

    /// Closes the dialog with what is selected now.
    void SelectionChanged();

private:
    CNodeBrowser* m_browser;
    vireo::datamodel::ItemID m_selected;
};
