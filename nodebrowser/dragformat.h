// SPDX-License-Identifier: MIT
/// What a row carries when it is dragged out of the browser. For hosts that accept drops. The functions are whole in
/// this header: nothing of them is in the library.
#pragma once

#include "datamodel/itemid.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QString>

#include <cstddef>
#include <string>

namespace nodebrowser
{

/// The MIME type of the drag, "vireo/toc.key".
inline QString GetDragFormat()
{
    return QString::fromLatin1("vireo/toc.key");
}

/// The payload for an item: its ItemID::Serialize() as one QString in a QDataStream. Each version of the toolkit writes
/// the same bytes: the byte count in 32 bits, then UTF-16, both big-endian.
inline QByteArray EncodeDrag(const vireo::datamodel::ItemID& in_item)
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    stream << QString::fromLatin1(in_item.Serialize().c_str());
    return payload;
}

/// The identity text in a payload, as ItemID::Serialize() made it. Empty when the payload is cut short, is followed by
/// anything, or holds no text.
inline std::string DecodeDrag(const QByteArray& in_payload)
{
    QDataStream stream(in_payload);
    QString text;
    stream >> text;
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return std::string();
    const QByteArray bytes = text.toLatin1();
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

} // namespace nodebrowser
