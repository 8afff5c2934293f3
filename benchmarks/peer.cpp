// SPDX-License-Identifier: MIT
#include "peer.h"

#include "peerrows.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace
{

const int gIconSide = 20;
const int gFieldHeight = 20;

/// Rows as high as the browser's.
class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return QSize(gWindowWidth, gRowHeight);
    }
};

} // namespace

Peer::Peer(QAbstractItemView* in_view)
    : m_panel{this, in_view->viewport(), new QLineEdit(this), in_view->verticalScrollBar()}
{
    m_panel.m_field->setGeometry(0, 0, gWindowWidth, gFieldHeight);
    in_view->setParent(this);
    in_view->setGeometry(0, gListTop, gWindowWidth, gWindowHeight - gListTop);
    in_view->setFrameShape(QFrame::NoFrame);
    in_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    in_view->setIconSize(QSize(gIconSide, gIconSide));
    in_view->setTextElideMode(Qt::ElideNone);
    in_view->setItemDelegate(new RowDelegate(in_view));
    connect(m_panel.m_field, &QLineEdit::textChanged, this,
            [this](const QString& in_text) { Search(SplitPeerWords(in_text)); });
}
