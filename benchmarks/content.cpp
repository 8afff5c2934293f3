// SPDX-License-Identifier: MIT
#include "content.h"

using memorymodel::NewItem;

Content::Content(const std::vector<NamedItem>& in_items) : m_library(m_layer.AddLibrary("Bench"))
{
    bool compound = false;
    for (const NamedItem& item : in_items)
    {
        compound = !compound;
        m_library.Add((compound ? NewItem::Compound(item.m_name) : NewItem::Solver(item.m_name)).Tags(item.m_tags));
    }
}
