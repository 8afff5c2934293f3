/// Texts in tests.
#pragma once

#include <QString>

/// A text of the data layer, which is Latin-1, as the toolkit has it.
inline QString Text(const char* in_text)
{
    return QString::fromLatin1(in_text);
}
