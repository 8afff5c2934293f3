// SPDX-License-Identifier: MIT
/// A row of the browser as text.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>

namespace host
{

struct Row
{
    QString m_kind;
    QString m_name;
    QStringList m_tags; ///< sorted
    std::size_t m_score = 0;
};

/// The row as one line of UTF-8: number, kind, name, tags joined by ";", score, with a tab between two and a line break
/// at the end. A backslash and each control character of a field are written as escapes, so that a line always has five
/// fields: \\ \t \n \r, and \x with two hexadecimal digits for the rest.
QByteArray FormatRow(std::size_t in_number, const Row& in_row);

} // namespace host
