#include "nodebrowser/rowtexts.h"

#include <QPaintDevice>
#include <QPainter>
#include <QTextOption>

#include <algorithm>

namespace
{

const int gAlignment = Qt::AlignLeft | Qt::AlignVCenter;
const int gLongest = 200;
/// Wider than any text: nothing is wrapped.
const double gLineWidth = 0x01000000;

/// Whether a text is one line of characters that stand for themselves. Others are left to the toolkit, which breaks lines
/// and replaces characters.
bool IsPlain(const QString& in_text)
{
    return !in_text.isEmpty() && in_text.size() <= gLongest &&
           std::all_of(in_text.begin(), in_text.end(), [](QChar in_character) {
               const ushort code = in_character.unicode();
               return (code >= 0x20 && code < 0x7F) || (code > 0xA0 && code <= 0xFF && code != 0xAD);
           });
}

std::shared_ptr<QTextLayout> Shape(const QPainter& in_painter, const QString& in_text)
{
    const std::shared_ptr<QTextLayout> layout =
        std::make_shared<QTextLayout>(in_text, in_painter.font(), in_painter.device());
    QTextOption option(Qt::AlignLeft);
    option.setTextDirection(Qt::LeftToRight);
    layout->setTextOption(option);
    layout->setCacheEnabled(true);
    layout->beginLayout();
    layout->createLine().setLineWidth(gLineWidth);
    layout->endLayout();
    return layout;
}

} // namespace

void RowTexts::BeginFrame(const QPainter& in_painter)
{
    m_textsBefore.swap(m_texts);
    m_texts.clear();
    const int resolution = in_painter.device()->logicalDpiY();
    if (in_painter.font() == m_font && resolution == m_resolution)
        return;
    m_font = in_painter.font();
    m_resolution = resolution;
    m_textsBefore.clear();
}

RowTexts::Layout RowTexts::Find(const QPainter& in_painter, const QString& in_text)
{
    Layout& layout = m_texts[in_text];
    if (!layout)
        layout = m_textsBefore.take(in_text);
    if (!layout)
        layout = Shape(in_painter, in_text);
    return layout;
}

void RowTexts::Draw(QPainter& in_painter, const QRect& in_rect, const QString& in_text)
{
    if (in_painter.layoutDirection() == Qt::LeftToRight && IsPlain(in_text))
    {
        const Layout layout = Find(in_painter, in_text);
        const QTextLine line = layout->lineAt(0);
        const double top = in_rect.y() + (in_rect.height() - line.height()) / 2;
        const QRectF bounds(in_rect.x(), top, line.naturalTextWidth(), line.height());
        if (QRectF(in_rect).contains(bounds))
        {
            layout->draw(&in_painter, bounds.topLeft());
            return;
        }
    }
    in_painter.drawText(in_rect, gAlignment, in_text);
}
