// SPDX-License-Identifier: MIT
/// A label that takes as little room as there is.
#pragma once

#include <QLabel>

namespace host
{

/// One line of plain text. Where it does not fit, its end is left out, and the tool tip has all of it. However long
/// the text is, it widens no window.
class ElidedLabel : public QLabel
{
public:
    ElidedLabel();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* in_event) override;
    void paintEvent(QPaintEvent* in_event) override;

private:
    QString GetDrawnText() const;
};

} // namespace host
