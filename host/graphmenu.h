// SPDX-License-Identifier: MIT
/// The menu of the graph.
#pragma once

#include <QKeySequence>
#include <QList>
#include <QMenu>

class QAction;

namespace host
{

class GraphPanel;

/// What can be done with the graph. The keys of the entries work while the canvas has the focus, since elsewhere they
/// have other meanings.
class GraphMenu : public QMenu
{
    Q_OBJECT

public:
    /// \param in_panel must outlive the menu
    GraphMenu(GraphPanel& in_panel, QWidget* in_parent);

private:
    template <class Receiver>
    QAction* Add(const QString& in_text, const QList<QKeySequence>& in_keys, Receiver& in_receiver,
                 void (Receiver::*in_slot)());

    GraphPanel& m_panel;
};

} // namespace host
