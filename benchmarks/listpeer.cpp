// SPDX-License-Identifier: MIT
#include "listpeer.h"

#include <QListView>

#include <algorithm>
#include <utility>

void PeerModel::SetRows(std::vector<PeerRow> in_rows)
{
    beginResetModel();
    m_rows = std::move(in_rows);
    endResetModel();
}

int PeerModel::rowCount(const QModelIndex& in_parent) const
{
    return in_parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant PeerModel::data(const QModelIndex& in_index, int in_role) const
{
    const PeerRow& row = m_rows[static_cast<std::size_t>(in_index.row())];
    if (in_role == Qt::DisplayRole)
        return row.m_name;
    return in_role == Qt::DecorationRole ? QVariant(m_icons[row.m_icon]) : QVariant();
}

void PeerFilter::SetRows(std::vector<PeerRow> in_rows)
{
    m_scores.assign(in_rows.size(), 0);
    m_model.SetRows(std::move(in_rows));
    setSourceModel(&m_model);
}

void PeerFilter::Search(const std::vector<std::string>& in_words)
{
    std::transform(m_model.GetRows().begin(), m_model.GetRows().end(), m_scores.begin(),
                   [&in_words](const PeerRow& in_row) { return ScorePeerRow(in_words, in_row); });
    // Without words all scores are equal, and the rows are in order already.
    const int column = in_words.empty() ? -1 : 0;
    if (sortColumn() != column)
        sort(column);
    // A reset is far cheaper than invalidateFilter(), which removes and inserts each run of rows separately.
    invalidate();
}

bool PeerFilter::filterAcceptsRow(int in_row, const QModelIndex&) const
{
    return m_scores[static_cast<std::size_t>(in_row)] != gPeerNoMatch;
}

bool PeerFilter::lessThan(const QModelIndex& in_left, const QModelIndex& in_right) const
{
    return m_scores[static_cast<std::size_t>(in_left.row())] < m_scores[static_cast<std::size_t>(in_right.row())];
}

ListPeer::ListPeer() : Peer(new QListView)
{
    QListView* const view = findChild<QListView*>();
    view->setUniformItemSizes(true);
    view->setModel(&m_filter);
}

void ListPeer::Open(const vireo::datamodel::ItemLibraryAccessor& in_library)
{
    m_filter.SetRows(ReadPeerRows(in_library));
}

std::size_t ListPeer::GetRowCount() const
{
    return static_cast<std::size_t>(m_filter.rowCount());
}

void ListPeer::Search(const std::vector<std::string>& in_words)
{
    m_filter.Search(in_words);
}
