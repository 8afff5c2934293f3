// SPDX-License-Identifier: MIT
/// The dialog that lets the user choose a type.
#pragma once

#include "datamodel/itemid.h"
#include "nodebrowser/export.h"

#include <QDialog>

#include <memory>

/// Shows the types of the application's current library in a browser. A selected row closes the dialog at once; there
/// is no OK button. The dialog accepts only a type.
///
///     CTypeSelector selector(this);
///     if (selector.exec() == QDialog::Accepted)
///         use(selector.GetSelected());
///
/// The library is that of the service "NEXADBProxy". Without the service the list is empty, and the user can only
/// cancel.
class NODEBROWSER_EXPORT CTypeSelector : public QDialog
{
    Q_OBJECT

public:
    /// Reads the types at once. The dialog is modal.
    explicit CTypeSelector(QWidget* in_parent);
    ~CTypeSelector() override;

    /// The selected type. Meaningful only after exec() returned QDialog::Accepted.
    vireo::datamodel::ItemID GetSelected() const;

    /// 275 by 500 pixels.
    QSize sizeHint() const override;

public Q_SLOTS:
    /// Turns an acceptance into a rejection when the selected item is no type.
    void done(int r) override;

    /// Closes the dialog with the item that is selected now.
    void SelectionChanged();

private:
    struct Private;
    const std::unique_ptr<Private> m_private;
};
