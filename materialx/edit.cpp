// SPDX-License-Identifier: MIT
#include "materialx/edit.h"

namespace materialx
{

Edit Inverse(const Edit& in_edit)
{
    return {in_edit.m_offset, in_edit.m_inserted, in_edit.m_removed};
}

Change Inverse(const Change& in_change)
{
    Change inverse;
    for (auto edit = in_change.rbegin(); edit != in_change.rend(); ++edit)
        inverse.push_back({edit->m_document, Inverse(edit->m_edit)});
    return inverse;
}

} // namespace materialx
