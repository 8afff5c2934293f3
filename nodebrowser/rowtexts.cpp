// SPDX-License-Identifier: MIT
#include "nodebrowser/rowtexts.h"

#include "qtcompat/qtcompat.h"

#include <QPaintDevice>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <tuple>

namespace nodebrowser
{
namespace
{

const int gAlignment = Qt::AlignLeft | Qt::AlignVCenter;
const int gLongest = 200;
/// Up to so many texts are kept, drawn or not.
const int gKept = 250;
/// Wider than any text: nothing is wrapped.
const double gLineWidth = 0x01000000;

/// Whether a text is one line of characters that are drawn as they are. The toolkit breaks other texts into lines or
/// replaces characters in them, so it draws those itself.
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

RowTexts::RowTexts()
{
    qtcompat::ConnectFontsChanged(*this, SLOT(Clear()));
}

void RowTexts::Clear()
{
    m_texts.clear();
    m_tops.clear();
}

void RowTexts::BeginFrame(const QPainter& in_painter)
{
    ++m_frame;
    if (m_texts.size() > gKept)
        DropUnused();
    const int resolution = in_painter.device()->logicalDpiY();
    if (in_painter.font() == m_font && resolution == m_resolution)
        return;
    m_font = in_painter.font();
    m_resolution = resolution;
    Clear();
}

/// Forgets the texts that the frame before did not draw.
void RowTexts::DropUnused()
{
    for (QHash<QString, Shaped>::iterator text = m_texts.begin(); text != m_texts.end();)
        if (text.value().m_frame + 1 == m_frame)
            ++text;
        else
            text = m_texts.erase(text);
}

const QTextLayout& RowTexts::Find(const QPainter& in_painter, const QString& in_text)
{
    Shaped& text = m_texts[in_text];
    if (!text.m_layout)
    {
        text.m_layout = Shape(in_painter, in_text);
        ++m_shapings;
    }
    text.m_frame = m_frame;
    return *text.m_layout;
}

/// The distance that Top describes. Versions of the toolkit round it differently, so the toolkit is asked, once for
/// each height.
double RowTexts::FindTop(QPainter& io_painter, const QRect& in_rect, const QString& in_text, const QTextLine& in_line)
{
    const Top wanted = {in_line.ascent(), in_line.descent(), in_rect.height(), 0};
    for (const Top& top : m_tops)
        if (std::tie(top.m_ascent, top.m_descent, top.m_rectHeight) ==
            std::tie(wanted.m_ascent, wanted.m_descent, wanted.m_rectHeight))
            return top.m_top;
    m_tops.push_back(wanted);
    m_tops.back().m_top = io_painter.boundingRect(QRectF(in_rect), gAlignment, in_text).top() - in_rect.top();
    return m_tops.back().m_top;
}

void RowTexts::Draw(QPainter& io_painter, const QRect& in_rect, const QString& in_text)
{
    if (io_painter.layoutDirection() != Qt::RightToLeft && IsPlain(in_text))
    {
        const QTextLayout& layout = Find(io_painter, in_text);
        const QTextLine line = layout.lineAt(0);
        const QPointF position(in_rect.left(), in_rect.top() + FindTop(io_painter, in_rect, in_text, line));
        // One line height more than the text is wide: a last letter may stick out, and must not be clipped.
        const double height = line.height();
        if (QRectF(in_rect).contains(QRectF(position, QSizeF(line.naturalTextWidth() + height, height))))
        {
            layout.draw(&io_painter, position);
            return;
        }
    }
    io_painter.drawText(in_rect, gAlignment, in_text);
}

} // namespace nodebrowser
