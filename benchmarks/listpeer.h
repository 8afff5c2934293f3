// SPDX-License-Identifier: MIT
/// The peer made of a list view over a proxy that filters and sorts.
#pragma once

#include "peer.h"
#include "peerrows.h"

#include <QAbstractListModel>
#include <QIcon>
#include <QSortFilterProxyModel>

/// The rows as they were read.
class PeerModel : public QAbstractListModel
{
public:
    void SetRows(std::vector<PeerRow> in_rows);
    const std::vector<PeerRow>& GetRows() const { return m_rows; }

    int rowCount(const QModelIndex& in_parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& in_index, int in_role) const override;

private:
    std::vector<PeerRow> m_rows;
    const std::array<QIcon, ePeerIconCount> m_icons = LoadPeerIcons();
};

/// The rows that the search found, by score.
class PeerFilter : public QSortFilterProxyModel
{
public:
    void SetRows(std::vector<PeerRow> in_rows);
    void Search(const std::vector<std::string>& in_words);

protected:
    bool filterAcceptsRow(int in_row, const QModelIndex& in_parent) const override;
    bool lessThan(const QModelIndex& in_left, const QModelIndex& in_right) const override;

private:
    PeerModel m_model;
    std::vector<int> m_scores; // by row of the model
};

class ListPeer : public Peer
{
public:
    ListPeer();

    void Open(const vireo::datamodel::ItemLibraryAccessor& in_library) override;
    std::size_t GetRowCount() const override;

protected:
    void Search(const std::vector<std::string>& in_words) override;

private:
    PeerFilter m_filter;
};
