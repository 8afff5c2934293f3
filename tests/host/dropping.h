// SPDX-License-Identifier: MIT
/// What tests of the graph share: a drag from the browser, as the toolkit delivers it to the widget under the pointer.
#pragma once

#include "datamodel/itemid.h"

#include <QApplication>
#include <QDataStream>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

/// The payload of a row of the browser.
inline QByteArray PayloadOf(const QString& in_text)
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    stream << in_text;
    return payload;
}

inline QByteArray PayloadOf(const vireo::datamodel::ItemID& in_item)
{
    return PayloadOf(QString::fromLatin1(in_item.Serialize().c_str()));
}

/// Drags data over a widget and drops it there.
/// \return whether the widget took it
inline bool Drop(QWidget& in_target, const QPoint& in_position, const QByteArray& in_payload,
                 const QString& in_format = QStringLiteral("vireo/toc.key"),
                 Qt::DropActions in_offered = Qt::CopyAction)
{
    QMimeData data;
    data.setData(in_format, in_payload);
    QDragEnterEvent enter(in_position, in_offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&in_target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(in_position, in_offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&in_target, &drop);
    return drop.isAccepted();
}
