// SPDX-License-Identifier: MIT
#include "datamodel/objectdatabase.h"

#include <cstdio>
#include <iostream>

namespace nexa4
{
namespace
{

const std::size_t gTextLength = 36;

/// Whether a hyphen stands before a byte of an identity.
bool HasHyphenBefore(std::size_t in_byte)
{
    return in_byte == 4 || in_byte == 6 || in_byte == 8 || in_byte == 10;
}

/// What each character is worth as a hexadecimal digit; 16 or more for those that are none.
struct DigitValues
{
    constexpr DigitValues() : m_values()
    {
        for (std::uint8_t& value : m_values)
            value = 16;
        for (std::uint8_t digit = 0; digit < 16; ++digit)
        {
            m_values[static_cast<unsigned char>("0123456789ABCDEF"[digit])] = digit;
            m_values[static_cast<unsigned char>("0123456789abcdef"[digit])] = digit;
        }
    }
    std::uint8_t m_values[256];
};

constexpr DigitValues gDigits;

/// Reads an identity in one pass, which stops at the first character that does not belong there, a terminator too.
bool ReadText(const char* in_text, std::array<std::uint8_t, 16>& out_bytes)
{
    if (!in_text)
        return false;
    const char* character = in_text;
    for (std::size_t byte = 0; byte < out_bytes.size(); ++byte)
    {
        if (HasHyphenBefore(byte) && *character++ != '-')
            return false;
        const unsigned high = gDigits.m_values[static_cast<unsigned char>(character[0])];
        if (high > 15)
            return false;
        const unsigned low = gDigits.m_values[static_cast<unsigned char>(character[1])];
        if (low > 15)
            return false;
        out_bytes[byte] = static_cast<std::uint8_t>(high << 4 | low);
        character += 2;
    }
    return *character == '\0';
}

thread_local int gSilencedReports = 0;

} // namespace

DbObjectId::DbObjectId(const char* in_text) : m_bytes()
{
    if (!ReadText(in_text, m_bytes))
        m_bytes.fill(0);
}

bool DbObjectId::IsUID(const char* in_text)
{
    std::array<std::uint8_t, 16> bytes;
    return ReadText(in_text, bytes);
}

std::string DbObjectId::GetStr() const
{
    static const char* const digits = "0123456789ABCDEF";
    char text[gTextLength];
    char* end = text;
    for (std::size_t byte = 0; byte < m_bytes.size(); ++byte)
    {
        if (HasHyphenBefore(byte))
            *end++ = '-';
        *end++ = digits[m_bytes[byte] >> 4];
        *end++ = digits[m_bytes[byte] & 15];
    }
    return std::string(text, gTextLength);
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
