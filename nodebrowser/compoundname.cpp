// SPDX-License-Identifier: MIT
#include "nodebrowser/compoundname.h"

namespace nodebrowser
{

namespace
{

bool IsWordCharacter(QChar in_character)
{
    return in_character.isLetterOrNumber() || in_character.isMark() || in_character == QLatin1Char('_');
}

} // namespace

QValidator::State CheckCompoundName(const QString& in_name)
{
    if (in_name.isEmpty())
        return QValidator::Intermediate;
    if (!IsWordCharacter(in_name.at(0)))
        return QValidator::Invalid;
    for (int i = 1; i < in_name.size(); ++i)
        if (!IsWordCharacter(in_name.at(i)) && !in_name.at(i).isSpace())
            return QValidator::Invalid;
    return QValidator::Acceptable;
}

bool IsSameNameButCase(const QString& in_left, const QString& in_right)
{
    return QString::fromLatin1(in_left.toLatin1()).toLower() == QString::fromLatin1(in_right.toLatin1()).toLower();
}

QValidator::State CompoundNameValidator::validate(QString& in_text, int& out_position) const
{
    const State state = CheckCompoundName(in_text);
    if (state == Invalid)
        out_position = static_cast<int>(in_text.size());
    return state;
}

} // namespace nodebrowser
