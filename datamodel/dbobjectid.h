// SPDX-License-Identifier: MIT
/// Identity of an object of the object database.
#pragma once

#include "datamodel/export.h"

#include <array>
#include <cstdint>
#include <string>

namespace nexa4
{

/// A 16-byte object identity. Its text form is 8-4-4-4-12 hexadecimal digits, for example
/// "D2BA853A-8668-704A-A121-1F7DE917B664": the bytes in order, written in upper case and read in either.
class DATAMODEL_EXPORT DbObjectId
{
public:
    /// The null identity: all bytes 0.
    DbObjectId() : m_bytes() {}

    /// From bytes, in the order of the text form.
    explicit DbObjectId(const std::array<std::uint8_t, 16>& in_bytes) : m_bytes(in_bytes) {}

    /// From text that IsUID() accepts; any other text, and null, gives the null identity.
    explicit DbObjectId(const char* in_text);

    /// Whether a text is a well-formed identity. False for null.
    static bool IsUID(const char* in_text);

    /// The text form: 36 characters in upper case, for the null identity too.
    std::string GetStr() const;

    /// The bytes, in the order of the text form.
    const std::array<std::uint8_t, 16>& GetBytes() const { return m_bytes; }

    /// Equal when all bytes are.
    friend bool operator==(const DbObjectId& in_left, const DbObjectId& in_right)
    {
        return in_left.m_bytes == in_right.m_bytes;
    }
    /// The opposite of operator==().
    friend bool operator!=(const DbObjectId& in_left, const DbObjectId& in_right) { return !(in_left == in_right); }
    /// The order of the bytes, which is also that of the text forms. The null identity is the first.
    friend bool operator<(const DbObjectId& in_left, const DbObjectId& in_right)
    {
        return in_left.m_bytes < in_right.m_bytes;
    }

private:
    std::array<std::uint8_t, 16> m_bytes;
};

/// The same identity under the name that commits use.
using TezUID = DbObjectId;

/// The null identity.
DATAMODEL_EXPORT DbObjectId UID_Null();

/// The identity of the resource type, as database queries name it; null without a data layer.
DATAMODEL_EXPORT DbObjectId UID_Resource();

} // namespace nexa4
