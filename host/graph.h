// SPDX-License-Identifier: MIT
/// The graphs that nodes are put into, without pixels, and their changes as commands.
#pragma once

#include "datamodel/itemid.h"

#include <QObject>
#include <QPointF>

#include <map>
#include <optional>

class QString;
class QUndoStack;

namespace host
{

struct GraphNode
{
    vireo::datamodel::ItemID m_item;     ///< what it is an instance of
    vireo::datamodel::ItemID m_compound; ///< whose graph it is in; the invalid identity for the main graph
    QPointF m_position;                  ///< the middle of its title
};

/// Nodes by numbers. A number is given once, so a node that comes back by undo is the same one.
using GraphNodes = std::map<int, GraphNode>;

/// What becomes of some nodes: nothing stands for a node that is not there.
using GraphChange = std::map<int, std::optional<GraphNode>>;

/// The graph of each compound of a library, and one more for no compound. All changes are commands on a stack; the text
/// of a command is for the menu, as in "Undo Add Blend". Commands may outlive the graph, and do nothing then.
class Graph : public QObject
{
    Q_OBJECT

public:
    /// \param in_stack must outlive the graph
    explicit Graph(QUndoStack& in_stack, QObject* in_parent = nullptr);

    const GraphNodes& GetNodes() const { return m_nodes; }
    int MakeNumber() { return ++m_lastNumber; }

    /// Makes a change as one command. A change that changes nothing makes none.
    void Do(const QString& in_text, const GraphChange& in_change);

Q_SIGNALS:
    /// After a change: which nodes are to be looked at again.
    void Changed(const host::GraphChange& in_change);

private:
    class Command;

    void Apply(const GraphChange& in_change);

    QUndoStack& m_stack;
    GraphNodes m_nodes;
    int m_lastNumber = 0;
};

} // namespace host
