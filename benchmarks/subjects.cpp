// SPDX-License-Identifier: MIT
#include "subjects.h"

#include "measure.h"

Subjects::Subjects(const Content& in_content) : m_browser(ShowBrowser(in_content.m_library.GetAccessor()))
{
    m_all.push_back({eColumnBrowser, GetPanel(*m_browser)});
    if (in_content.HasPeers())
    {
        m_list.reset(new ListPeer);
        m_tree.reset(new TreePeer);
        m_all.push_back({eColumnListView, m_list->GetPanel()});
        m_all.push_back({eColumnTreeWidget, m_tree->GetPanel()});
        ShowPanel(m_list->GetPanel());
        ShowPanel(m_tree->GetPanel());
        const vireo::datamodel::ItemLibraryAccessor library = in_content.m_library.GetAccessor();
        m_list->Open(library);
        m_tree->Open(library);
    }
    Settle();
}
