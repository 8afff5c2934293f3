// SPDX-License-Identifier: MIT
#include "host/graph.h"

#include <QPointer>
#include <QUndoCommand>
#include <QUndoStack>

#include <utility>

namespace host
{

namespace
{

bool IsSame(const std::optional<GraphNode>& in_a, const std::optional<GraphNode>& in_b)
{
    if (!in_a || !in_b)
        return !in_a && !in_b;
    return in_a->m_item == in_b->m_item && in_a->m_compound == in_b->m_compound && in_a->m_position == in_b->m_position;
}

} // namespace

class Graph::Command : public QUndoCommand
{
public:
    Command(const QString& in_text, Graph& in_graph, GraphChange in_before, GraphChange in_after)
        : QUndoCommand(in_text), m_graph(&in_graph), m_before(std::move(in_before)), m_after(std::move(in_after))
    {
    }

    void undo() override { Apply(m_before); }
    void redo() override { Apply(m_after); }

private:
    void Apply(const GraphChange& in_change)
    {
        if (m_graph)
            m_graph->Apply(in_change);
    }

    const QPointer<Graph> m_graph;
    const GraphChange m_before;
    const GraphChange m_after;
};

Graph::Graph(QUndoStack& in_stack, QObject* in_parent) : QObject(in_parent), m_stack(in_stack) {}

void Graph::Do(const QString& in_text, const GraphChange& in_change)
{
    GraphChange before;
    GraphChange after;
    for (const auto& [number, node] : in_change)
    {
        const auto known = m_nodes.find(number);
        const std::optional<GraphNode> now = known == m_nodes.end() ? std::nullopt : std::optional(known->second);
        if (IsSame(now, node))
            continue;
        before[number] = now;
        after[number] = node;
    }
    if (!after.empty())
        m_stack.push(new Command(in_text, *this, std::move(before), std::move(after)));
}

void Graph::Apply(const GraphChange& in_change)
{
    for (const auto& [number, node] : in_change)
        if (node)
            m_nodes[number] = *node;
        else
            m_nodes.erase(number);
    Q_EMIT Changed(in_change);
}

} // namespace host
