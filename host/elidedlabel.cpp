// SPDX-License-Identifier: MIT
#include "host/elidedlabel.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace host
{

namespace
{

const int gWidest = 320; // that it asks for
const int gNarrowest = 40;

} // namespace

ElidedLabel::ElidedLabel()
{
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::sizeHint() const
{
    const QSize whole = QLabel::sizeHint();
    return QSize(std::min(whole.width(), gWidest), whole.height());
}

QSize ElidedLabel::minimumSizeHint() const
{
    const QSize whole = QLabel::minimumSizeHint();
    return QSize(std::min(whole.width(), gNarrowest), whole.height());
}

QString ElidedLabel::GetDrawnText() const
{
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

bool ElidedLabel::event(QEvent* in_event)
{
    if (in_event->type() != QEvent::ToolTip)
        return QLabel::event(in_event);
    // As markup in any case: else the toolkit guesses what it is.
    const QString whole = QStringLiteral("<span>%1</span>").arg(text().toHtmlEscaped());
    QToolTip::showText(static_cast<const QHelpEvent*>(in_event)->globalPos(),
                       GetDrawnText() == text() ? QString() : whole, this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                          GetDrawnText(), foregroundRole());
}

} // namespace host
