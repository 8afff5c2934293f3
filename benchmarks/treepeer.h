// SPDX-License-Identifier: MIT
/// The peer made of a tree widget whose items are hidden one by one.
#pragma once

#include "peer.h"
#include "peerrows.h"

class QTreeWidget;

class TreePeer : public Peer
{
public:
    TreePeer();

    void Open(const vireo::datamodel::ItemLibraryAccessor& in_library) override;
    std::size_t GetRowCount() const override;

protected:
    void Search(const std::vector<std::string>& in_words) override;

private:
    QTreeWidget* const m_tree;
    std::vector<PeerRow> m_rows;
    std::vector<bool> m_hidden; // by row
};
