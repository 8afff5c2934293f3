// SPDX-License-Identifier: MIT
/// What a row carries when it is dragged out of the browser. For hosts that accept drops.
#pragma once

#include "datamodel/itemid.h"
#include "nodebrowser/export.h"

#include <QByteArray>
#include <QString>

#include <string>

namespace nodebrowser
{

/// The MIME type of the drag, "vireo/toc.key".
NODEBROWSER_EXPORT QString GetDragFormat();

/// The payload for an item: its ItemID::Serialize() as one QString in a QDataStream. Each version of the toolkit writes
/// the same bytes: the byte count in 32 bits, then UTF-16, both big-endian.
NODEBROWSER_EXPORT QByteArray EncodeDrag(const vireo::datamodel::ItemID& in_item);

/// The identity text in a payload, as ItemID::Serialize() made it. Empty when the payload is cut short, is followed by
/// anything, or holds no text.
NODEBROWSER_EXPORT std::string DecodeDrag(const QByteArray& in_payload);

} // namespace nodebrowser
