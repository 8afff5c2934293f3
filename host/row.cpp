// SPDX-License-Identifier: MIT
#include "host/row.h"

namespace host
{

namespace
{

QString EscapeCharacter(QChar in_character)
{
    switch (in_character.unicode())
    {
    case '\\':
        return QStringLiteral("\\\\");
    case '\t':
        return QStringLiteral("\\t");
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    default:
        break;
    }
    if (in_character.category() != QChar::Other_Control)
        return in_character;
    return QStringLiteral("\\x%1").arg(in_character.unicode(), 2, 16, QLatin1Char('0'));
}

QString Escape(const QString& in_text)
{
    QString escaped;
    for (const QChar character : in_text)
        escaped += EscapeCharacter(character);
    return escaped;
}

} // namespace

QByteArray FormatRow(std::size_t in_number, const Row& in_row)
{
    const QStringList fields = {QString::number(in_number), in_row.m_kind, Escape(in_row.m_name),
                                Escape(in_row.m_tags.join(QLatin1Char(';'))), QString::number(in_row.m_score)};
    return fields.join(QLatin1Char('\t')).toUtf8() + '\n';
}

} // namespace host
