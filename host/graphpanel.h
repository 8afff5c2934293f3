// SPDX-License-Identifier: MIT
/// The middle of the window: the graph, the way to it, and how nodes get into it.
#pragma once

#include "datamodel/itemid.h"

#include <QPointF>
#include <QWidget>

#include <memory>

class QUndoStack;

namespace memorymodel
{
class Library;
}

namespace host
{

class Breadcrumb;
class GraphCanvas;
class QuickAdd;

/// Breadcrumb above canvas. A compound that is entered or left becomes the application's compound target; the panel
/// then waits to be told, like everybody else.
class GraphPanel : public QWidget
{
    Q_OBJECT

public:
    /// \param in_stack must outlive the panel
    explicit GraphPanel(QUndoStack& in_stack);
    ~GraphPanel() override;

    /// See GraphCanvas.
    void SetLibrary(const memorymodel::Library* in_library);
    void SetCompound(const vireo::datamodel::ItemID& in_compound);
    void Refresh();

    GraphCanvas& GetCanvas() { return *m_canvas; }
    Breadcrumb& GetBreadcrumb() { return *m_breadcrumb; }
    bool IsInCompound() const { return m_compound.IsValid(); }

public Q_SLOTS:
    /// Opens the pop-up that adds a node: at the pointer when that is over the canvas, else in its middle.
    void OpenQuickAdd();
    /// Goes back to the compound, or the main graph, that this one was entered from.
    void LeaveCompound();

private Q_SLOTS:
    void OnCompoundEntered(const vireo::datamodel::ItemID& in_compound);
    void OnCompoundChosen(const vireo::datamodel::ItemID& in_compound);
    void OnItemChosen(const vireo::datamodel::ItemID& in_item);

private:
    void MakeTarget(const vireo::datamodel::ItemID& in_compound, const vireo::datamodel::ItemID& in_root);

    const memorymodel::Library* m_library = nullptr;
    Breadcrumb* m_breadcrumb;
    GraphCanvas* m_canvas;
    std::unique_ptr<QuickAdd> m_quickAdd; ///< null until it is first asked for
    QPointF m_quickAddPosition;           ///< in the scene
    vireo::datamodel::ItemID m_compound;
};

} // namespace host
