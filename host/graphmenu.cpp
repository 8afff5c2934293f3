// SPDX-License-Identifier: MIT
#include "host/graphmenu.h"

#include "host/graphcanvas.h"
#include "host/graphpanel.h"

namespace host
{

GraphMenu::GraphMenu(GraphPanel& in_panel, QWidget* in_parent) : QMenu(tr("&Graph"), in_parent), m_panel(in_panel)
{
    GraphCanvas& canvas = m_panel.GetCanvas();
    Add(tr("&Add node\u2026"), {QKeySequence(Qt::Key_Tab), QKeySequence(Qt::Key_Space)}, m_panel,
        &GraphPanel::OpenQuickAdd);
    addSeparator();
    QAction* const all = Add(tr("&Select all"), {QKeySequence::SelectAll}, canvas, &GraphCanvas::SelectAll);
    QAction* const remove = Add(tr("&Delete"), {QKeySequence(Qt::Key_Delete), QKeySequence(Qt::Key_Backspace)}, canvas,
                                &GraphCanvas::DeleteSelected);
    addSeparator();
    Add(tr("&Fit all"), {QKeySequence(Qt::Key_F)}, canvas, &GraphCanvas::FitAll);
    Add(tr("Zoom &in"), {QKeySequence::ZoomIn, QKeySequence(Qt::Key_Plus)}, canvas, &GraphCanvas::ZoomIn);
    Add(tr("Zoom &out"), {QKeySequence::ZoomOut, QKeySequence(Qt::Key_Minus)}, canvas, &GraphCanvas::ZoomOut);
    Add(tr("Full si&ze"), {QKeySequence(Qt::CTRL | Qt::Key_0)}, canvas, &GraphCanvas::ZoomToFullSize);
    addSeparator();
    QAction* const leave =
        Add(tr("&Leave compound"), {QKeySequence(Qt::ALT | Qt::Key_Up)}, m_panel, &GraphPanel::LeaveCompound);
    connect(this, &QMenu::aboutToShow, this, [this, all, remove, leave] {
        all->setEnabled(!m_panel.GetCanvas().GetBoxes().isEmpty());
        remove->setEnabled(!m_panel.GetCanvas().GetSelectedBoxes().isEmpty());
        leave->setEnabled(m_panel.IsInCompound());
    });
    connect(this, &QMenu::aboutToHide, this, [all, remove, leave] {
        for (QAction* const action : {all, remove, leave})
            action->setEnabled(true); // their keys may be pressed anytime
    });
}

template <class Receiver>
QAction* GraphMenu::Add(const QString& in_text, const QList<QKeySequence>& in_keys, Receiver& in_receiver,
                        void (Receiver::*in_slot)())
{
    QAction* const action = addAction(in_text);
    action->setShortcuts(in_keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    m_panel.GetCanvas().addAction(action);
    connect(action, &QAction::triggered, &in_receiver, in_slot);
    return action;
}

} // namespace host
