// SPDX-License-Identifier: MIT
#include "nodebrowser/dragformat.h"

#include "qtcompat/latin1.h"

#include <QDataStream>
#include <QIODevice>

namespace nodebrowser
{

QString GetDragFormat()
{
    return QString::fromLatin1("vireo/toc.key");
}

QByteArray EncodeDrag(const vireo::datamodel::ItemID& in_item)
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    stream << qtcompat::FromLatin1(in_item.Serialize());
    return payload;
}

std::string DecodeDrag(const QByteArray& in_payload)
{
    QDataStream stream(in_payload);
    QString text;
    stream >> text;
    const bool whole = stream.status() == QDataStream::Ok && stream.atEnd();
    return whole ? qtcompat::ToLatin1(text) : std::string();
}

} // namespace nodebrowser
