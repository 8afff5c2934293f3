// SPDX-License-Identifier: MIT
#include "host/graphbox.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QWidget>

#include <algorithm>

using vireo::datamodel::ItemID;

namespace host
{

namespace
{

const int gTitleHeight = 36;
const int gPadding = 10;
const int gIconSide = 20;
const int gTextLeft = gPadding + gIconSide + 8;
const int gLongestName = 260;
const int gLongestPortText = 130;
const int gPortHeight = 20;
const int gPortMargin = 14; // from the edge to the text
const int gColumnGap = 24;
const int gWordGap = 6;
const double gDot = 4.5; // radius
const double gRounding = 5.0;
const double gMissingOpacity = 0.45;

/// The same one for a type wherever it occurs.
QColor ColorOf(const QString& in_type)
{
    unsigned sum = 7;
    for (const QChar character : in_type)
        sum = sum * 31 + character.unicode();
    return QColor::fromHsl(static_cast<int>(sum % 360), 150, 125);
}

QColor Blend(const QColor& in_a, const QColor& in_b, double in_share)
{
    const auto mix = [in_share](int in_one, int in_other) {
        return static_cast<int>(in_one * in_share + in_other * (1.0 - in_share));
    };
    return QColor(mix(in_a.red(), in_b.red()), mix(in_a.green(), in_b.green()), mix(in_a.blue(), in_b.blue()));
}

} // namespace

GraphBox::GraphBox(int in_number, const ItemID& in_item, const QFont& in_font)
    : m_number(in_number), m_item(in_item), m_font(in_font)
{
    setFlags(ItemIsMovable | ItemIsSelectable);
}

void GraphBox::Show(const ItemHelp& in_help)
{
    m_missing = in_help.m_name.isEmpty();
    if (!m_missing)
    {
        m_help = in_help;
        m_icon = QIcon(in_help.m_icon);
        m_drawnName = QFontMetrics(m_font).elidedText(in_help.m_name, Qt::ElideRight, gLongestName);
        m_inputs = Shorten(in_help.m_inputs);
        m_outputs = Shorten(in_help.m_outputs);
        Arrange();
    }
    setToolTip(m_missing ? tr("%1 is not in the library any more").arg(m_help.m_name).toHtmlEscaped()
                         : GetShortHelp(m_help));
    update();
}

GraphBox::Ports GraphBox::Shorten(const std::vector<ItemPort>& in_ports) const
{
    const QFontMetrics metrics(m_font);
    Ports ports;
    for (const ItemPort& port : in_ports)
        ports.push_back({metrics.elidedText(port.m_name, Qt::ElideRight, gLongestPortText),
                         metrics.elidedText(port.m_type, Qt::ElideRight, gLongestPortText)});
    return ports;
}

QStringList GraphBox::TextsOf(const Ports& in_ports)
{
    QStringList texts;
    for (const Port& port : in_ports)
        texts << port.m_name + QLatin1Char(' ') + port.m_type;
    return texts;
}

int GraphBox::WidthOf(const Ports& in_ports) const
{
    const QFontMetrics metrics(m_font);
    int widest = 0;
    for (const Port& port : in_ports)
        widest = std::max(widest,
                          metrics.horizontalAdvance(port.m_name) + gWordGap + metrics.horizontalAdvance(port.m_type));
    return in_ports.empty() ? 0 : widest + gPortMargin;
}

void GraphBox::Arrange()
{
    const int title = gTextLeft + QFontMetrics(m_font).horizontalAdvance(m_drawnName) + gPadding;
    const int left = WidthOf(m_inputs);
    const int right = WidthOf(m_outputs);
    const int ports = left + right + (left > 0 && right > 0 ? gColumnGap : gPortMargin);
    const int width = (std::max(title, ports) + 1) / 2 * 2; // even: the title's middle is on a pixel
    const int rows = static_cast<int>(std::max(m_inputs.size(), m_outputs.size()));
    const int height = gTitleHeight + (rows > 0 ? rows * gPortHeight + gPadding / 2 : 0);
    prepareGeometryChange();
    m_rect = QRectF(-width / 2, -gTitleHeight / 2, width, height);
}

QRectF GraphBox::boundingRect() const
{
    return m_rect.adjusted(-gDot, 0.0, gDot, 0.0); // the dots stand on the edges
}

void GraphBox::paint(QPainter* in_painter, const QStyleOptionGraphicsItem* in_option, QWidget* in_widget)
{
    // That of the widget follows the application's; that of the scene does not.
    const QPalette palette = in_widget ? in_widget->palette() : in_option->palette;
    in_painter->setFont(m_font);
    in_painter->setRenderHint(QPainter::Antialiasing);
    in_painter->setPen(QPen(palette.color(isSelected() ? QPalette::Highlight : QPalette::Dark),
                            isSelected() ? 2.0 : 1.0, m_missing ? Qt::DashLine : Qt::SolidLine));
    in_painter->setBrush(palette.color(m_missing ? QPalette::Base : QPalette::Button));
    in_painter->drawRoundedRect(m_rect.adjusted(1.0, 1.0, -1.0, -1.0), gRounding, gRounding);
    in_painter->setOpacity(m_missing ? gMissingOpacity : 1.0);
    PaintTitle(*in_painter, palette);
    PaintPorts(*in_painter, palette);
}

void GraphBox::PaintTitle(QPainter& io_painter, const QPalette& in_palette) const
{
    QRectF title = m_rect;
    title.setHeight(gTitleHeight);
    m_icon.paint(&io_painter, QRect(static_cast<int>(title.left()) + gPadding, -gIconSide / 2, gIconSide, gIconSide));
    io_painter.setPen(in_palette.color(QPalette::ButtonText));
    io_painter.drawText(title.adjusted(gTextLeft, 0.0, 0.0, 0.0), Qt::AlignLeft | Qt::AlignVCenter, m_drawnName);
    if (m_inputs.empty() && m_outputs.empty())
        return;
    io_painter.setPen(in_palette.color(QPalette::Mid));
    io_painter.drawLine(title.bottomLeft() + QPointF(1.5, -1.0), title.bottomRight() + QPointF(-1.5, -1.0));
}

void GraphBox::PaintPorts(QPainter& io_painter, const QPalette& in_palette) const
{
    const QFontMetrics metrics(m_font);
    const QColor strong = in_palette.color(QPalette::ButtonText);
    const QColor weak = Blend(strong, in_palette.color(QPalette::Button), 0.65);
    const auto paint = [&](const Ports& in_ports, const std::vector<ItemPort>& in_whole, bool in_right) {
        QRectF row(m_rect.left() + gPortMargin, m_rect.top() + gTitleHeight, m_rect.width() - 2 * gPortMargin,
                   gPortHeight);
        for (std::size_t i = 0; i < in_ports.size(); ++i, row.translate(0.0, gPortHeight))
        {
            const Qt::Alignment side = (in_right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
            const double step = metrics.horizontalAdvance(in_ports[i].m_name) + gWordGap;
            io_painter.setPen(strong);
            io_painter.drawText(row, static_cast<int>(side), in_ports[i].m_name);
            io_painter.setPen(weak);
            io_painter.drawText(in_right ? row.adjusted(0.0, 0.0, -step, 0.0) : row.adjusted(step, 0.0, 0.0, 0.0),
                                static_cast<int>(side), in_ports[i].m_type);
            io_painter.setPen(in_palette.color(QPalette::Dark));
            io_painter.setBrush(ColorOf(in_whole[i].m_type));
            io_painter.drawEllipse(QPointF(in_right ? m_rect.right() : m_rect.left(), row.center().y()), gDot, gDot);
        }
    };
    paint(m_inputs, m_help.m_inputs, false);
    paint(m_outputs, m_help.m_outputs, true);
}

} // namespace host
