/// Text of the data layer as text of the user interface.
#pragma once

#include <QString>

#include <string>

namespace host
{

inline QString ToText(const std::string& in_latin1)
{
    return QString::fromLatin1(in_latin1.data(), static_cast<int>(in_latin1.size()));
}

} // namespace host
