// SPDX-License-Identifier: MIT
/// A node on the canvas: a box with an icon, a name, inputs and outputs.
#pragma once

#include "datamodel/itemid.h"
#include "host/itemhelp.h"

#include <QCoreApplication>
#include <QFont>
#include <QGraphicsItem>
#include <QIcon>
#include <QPalette>

#include <vector>

namespace host
{

/// Its origin is the middle of its title, so that it stays where it is when its name changes. The scene moves and
/// selects it. Inputs stand at the left edge, outputs at the right one, each with its type and a dot in the colour of
/// that type.
class GraphBox : public QGraphicsItem
{
    Q_DECLARE_TR_FUNCTIONS(host::GraphBox)

public:
    /// \param in_number the node that it shows
    GraphBox(int in_number, const vireo::datamodel::ItemID& in_item, const QFont& in_font);

    int GetNumber() const { return m_number; }
    const vireo::datamodel::ItemID& GetItem() const { return m_item; }

    /// Shows an item. Long texts are drawn shortened; the tool tip has all of the name. Help without a name means that
    /// the item is not in the library any more: the box keeps what it shows, greyed out with a dashed edge, and says so
    /// in its tool tip. It can still be moved and deleted.
    void Show(const ItemHelp& in_help);

    const QString& GetName() const { return m_help.m_name; }
    const QString& GetDrawnName() const { return m_drawnName; }
    bool IsMissing() const { return m_missing; }

    /// The ports in words, as they are drawn: "in1 float".
    QStringList GetDrawnInputs() const { return TextsOf(m_inputs); }
    QStringList GetDrawnOutputs() const { return TextsOf(m_outputs); }

    QRectF boundingRect() const override;
    void paint(QPainter* in_painter, const QStyleOptionGraphicsItem* in_option, QWidget* in_widget) override;

private:
    struct Port
    {
        QString m_name;
        QString m_type;
    };
    using Ports = std::vector<Port>;

    Ports Shorten(const std::vector<ItemPort>& in_ports) const;
    int WidthOf(const Ports& in_ports) const;
    static QStringList TextsOf(const Ports& in_ports);
    void Arrange();
    void PaintTitle(QPainter& io_painter, const QPalette& in_palette) const;
    void PaintPorts(QPainter& io_painter, const QPalette& in_palette) const;

    const int m_number;
    const vireo::datamodel::ItemID m_item;
    const QFont m_font;
    ItemHelp m_help;
    QIcon m_icon;
    QString m_drawnName;
    Ports m_inputs;
    Ports m_outputs;
    bool m_missing = false;
    QRectF m_rect;
};

} // namespace host
