// SPDX-License-Identifier: MIT
#include "datamodel/objectdatabase.h"

#include <cstdio>
#include <cstring>
#include <iostream>

namespace nexa4
{
namespace
{

const std::size_t gTextLength = 36;

bool IsHyphenPlace(std::size_t in_place)
{
    return in_place == 8 || in_place == 13 || in_place == 18 || in_place == 23;
}

/// The value of a hexadecimal digit, or -1.
int DigitValue(char in_character)
{
    if (in_character >= '0' && in_character <= '9')
        return in_character - '0';
    if (in_character >= 'A' && in_character <= 'F')
        return in_character - 'A' + 10;
    if (in_character >= 'a' && in_character <= 'f')
        return in_character - 'a' + 10;
    return -1;
}

thread_local int gSilencedReports = 0;

} // namespace

DbObjectId::DbObjectId(const char* in_text) : m_bytes()
{
    if (!IsUID(in_text))
        return;
    std::size_t digit = 0;
    for (std::size_t place = 0; place < gTextLength; ++place)
    {
        if (IsHyphenPlace(place))
            continue;
        std::uint8_t& byte = m_bytes[digit / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | DigitValue(in_text[place]));
        ++digit;
    }
}

bool DbObjectId::IsUID(const char* in_text)
{
    if (!in_text || std::strlen(in_text) != gTextLength)
        return false;
    for (std::size_t place = 0; place < gTextLength; ++place)
        if (IsHyphenPlace(place) ? in_text[place] != '-' : DigitValue(in_text[place]) < 0)
            return false;
    return true;
}

std::string DbObjectId::GetStr() const
{
    static const char* const digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(gTextLength);
    for (const std::uint8_t byte : m_bytes)
    {
        if (IsHyphenPlace(text.size()))
            text += '-';
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

DbObjectId UID_Null()
{
    return DbObjectId();
}

ExBase::ExBase(const char* in_reason, const std::string& in_function, const char* in_file, int in_line)
    : m_text(std::string(in_file) + "(" + std::to_string(in_line) + "): " + in_function + ": " + in_reason)
{
}

ExBase::NullPtr::NullPtr(const std::string& in_function, const char* in_file, int in_line)
    : ExBase("null pointer", in_function, in_file, in_line)
{
}

DisableErrorReportingGuard::DisableErrorReportingGuard()
{
    ++gSilencedReports;
}

DisableErrorReportingGuard::~DisableErrorReportingGuard()
{
    --gSilencedReports;
}

bool DisableErrorReportingGuard::IsErrorReportingDisabled()
{
    return gSilencedReports > 0;
}

void PrintDebugString(const char* in_text)
{
    std::cerr << in_text << '\n';
}

void ThrowNullPtr(const char* in_interface)
{
    const std::string function = std::string("nexa4::NEXAPtrBase<class ") + in_interface + ">::GetPointeeNotNull";
    const ExBase::NullPtr error(function, "nexaptr.h", 102);
    if (!DisableErrorReportingGuard::IsErrorReportingDisabled())
        PrintDebugString(error.what());
    throw error;
}

} // namespace nexa4
