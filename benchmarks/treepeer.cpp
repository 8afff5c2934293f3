// SPDX-License-Identifier: MIT
#include "treepeer.h"

#include <QIcon>
#include <QTreeWidget>

#include <algorithm>

TreePeer::TreePeer() : Peer(new QTreeWidget), m_tree(findChild<QTreeWidget*>())
{
    m_tree->setUniformRowHeights(true);
    m_tree->setRootIsDecorated(false);
    m_tree->setHeaderHidden(true);
    m_tree->setColumnCount(1);
}

void TreePeer::Open(const vireo::datamodel::ItemLibraryAccessor& in_library)
{
    const std::array<QIcon, ePeerIconCount> icons = LoadPeerIcons();
    m_rows = ReadPeerRows(in_library);
    m_hidden.assign(m_rows.size(), false);
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<int>(m_rows.size()));
    for (const PeerRow& row : m_rows)
    {
        QTreeWidgetItem* const item = new QTreeWidgetItem;
        item->setText(0, row.m_name);
        item->setIcon(0, icons[row.m_icon]);
        items.append(item);
    }
    m_tree->addTopLevelItems(items);
}

std::size_t TreePeer::GetRowCount() const
{
    return static_cast<std::size_t>(std::count(m_hidden.begin(), m_hidden.end(), false));
}

void TreePeer::Search(const std::vector<std::string>& in_words)
{
    bool changed = false;
    for (std::size_t row = 0; row < m_rows.size(); ++row)
    {
        const bool hidden = ScorePeerRow(in_words, m_rows[row]) == gPeerNoMatch;
        if (hidden == m_hidden[row])
            continue;
        changed = true;
        m_hidden[row] = hidden;
        m_tree->setRowHidden(static_cast<int>(row), QModelIndex(), hidden);
    }
    // The other windows paint a frame even if all rows stay the same, so this one does too.
    if (!changed)
        m_tree->viewport()->update();
}
