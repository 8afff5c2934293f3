// SPDX-License-Identifier: MIT
/// A MaterialX document that keeps its bytes, and what they declare.
#pragma once

#include "materialx/declarations.h"
#include "materialx/edit.h"
#include "materialx/export.h"
#include "materialx/markup.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace materialx
{

/// Some declarations of a document, from the first one up to the one before the last.
struct Range
{
    std::size_t m_first;
    std::size_t m_last;
};

/// One document. Bytes, outline and declarations always belong together: a call that fails changes none of them.
///
/// A document without bytes is one that is not there yet. It declares nothing, and the edit that undoes its making
/// leads back to it.
class MATERIALX_EXPORT Document
{
public:
    Document() = default;

    /// Takes the bytes of a file. Nothing is expanded, fetched or included. Linear time; beside the bytes it takes
    /// the declarations, and for a while a few times the largest element. On a fault the document is as before; its
    /// position is an offset into the text, which is the bytes themselves when they are UTF-8.
    /// \param out_line the line of the fault, from 1
    std::optional<Fault> Read(std::string in_bytes, std::size_t* out_line = nullptr);

    const std::string& GetBytes() const { return m_bytes; }
    /// In the order of the document. An edit can change how many there are.
    const std::vector<Declaration>& GetDeclarations() const { return m_declarations; }
    /// The elements of the outline are the spans of the declarations; its own list is empty.
    const Outline& GetOutline() const { return m_outline; }
    bool IsEmpty() const { return m_bytes.empty(); }

    /// Whether the document is UTF-8. In other encodings documents can be read but not edited.
    bool CanBeEdited() const { return m_canBeEdited; }

    /// Makes an edit if the bytes it removes are there and the document stays well-formed; on a fault the document is
    /// as before. Reads only the elements that the edit touches. The time beside that is for moving the bytes and the
    /// spans behind them.
    /// \param out_touched the declarations that were read again, in the numbers of now; nothing when an edit changed
    ///     more of the document than how declarations are shown, that is, their "uiname" and "tags"
    std::optional<Fault> Apply(const Edit& in_edit, std::optional<Range>* out_touched = nullptr);

private:
    std::optional<Fault> ReadAround(const Edit& in_edit, std::optional<Range>& out_touched);

    std::string m_bytes;
    Outline m_outline;
    std::vector<Declaration> m_declarations;
    bool m_canBeEdited = true;
};

} // namespace materialx
