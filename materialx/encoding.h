// SPDX-License-Identifier: MIT
/// The encodings of documents, and the way from their text to the 8-bit text of the data layer and back.
#pragma once

#include "materialx/export.h"
#include "materialx/markup.h"

#include <optional>
#include <string>
#include <string_view>

namespace materialx
{

/// The bytes of a document as UTF-8. Known are UTF-8, US-ASCII, ISO-8859-1, and UTF-16 with a byte order mark; any
/// other declared encoding is a fault, and so is an XML version other than 1.
/// \param out_text nothing when the bytes are UTF-8 as they are, and stay so with any edit, as far as their start tells
std::optional<Fault> DecodeDocument(std::string_view in_bytes, std::optional<std::string>& out_text);

/// UTF-8 as Latin-1. Each character that Latin-1 lacks becomes one "?". The text is well-formed UTF-8.
MATERIALX_EXPORT std::string NarrowToLatin1(std::string_view in_utf8);

/// Latin-1 as UTF-8.
MATERIALX_EXPORT std::string WidenFromLatin1(std::string_view in_latin1);

} // namespace materialx
