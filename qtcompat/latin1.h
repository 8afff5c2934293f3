// SPDX-License-Identifier: MIT
/// Conversions between the text of the data layer, which is 8-bit Latin-1, and the text of the user interface.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <string>

namespace qtcompat
{

inline QString FromLatin1(const std::string& in_text)
{
    return QString::fromLatin1(in_text.data(), static_cast<int>(in_text.size()));
}

/// The empty text for null.
inline QString FromLatin1(const char* in_text)
{
    return QString::fromLatin1(in_text);
}

/// What Latin-1 lacks becomes "?".
inline std::string ToLatin1(const QString& in_text)
{
    const QByteArray bytes = in_text.toLatin1();
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

} // namespace qtcompat
