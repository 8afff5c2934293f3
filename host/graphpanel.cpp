// SPDX-License-Identifier: MIT
#include "host/graphpanel.h"

#include "datamodel/helpers.h"
#include "host/breadcrumb.h"
#include "host/graphcanvas.h"
#include "host/quickadd.h"
#include "memorymodel/library.h"

#include <QCursor>
#include <QVBoxLayout>

using vireo::datamodel::CompoundAccessor;
using vireo::datamodel::Helpers;
using vireo::datamodel::ItemID;

namespace host
{

GraphPanel::GraphPanel(QUndoStack& in_stack) : m_breadcrumb(new Breadcrumb), m_canvas(new GraphCanvas(in_stack))
{
    QVBoxLayout* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(m_breadcrumb);
    rows->addWidget(m_canvas, 1);
    connect(m_canvas, &GraphCanvas::CompoundEntered, this, &GraphPanel::OnCompoundEntered);
    connect(m_breadcrumb, &Breadcrumb::Chosen, this, &GraphPanel::OnCompoundChosen);
}

GraphPanel::~GraphPanel() = default;

void GraphPanel::SetLibrary(const memorymodel::Library* in_library)
{
    m_quickAdd.reset();
    m_library = in_library;
    m_compound = ItemID();
    m_breadcrumb->SetLibrary(in_library);
    m_canvas->SetLibrary(in_library);
}

void GraphPanel::SetCompound(const ItemID& in_compound)
{
    m_compound = in_compound;
    m_breadcrumb->SetCompound(in_compound);
    m_canvas->SetCompound(in_compound);
}

void GraphPanel::Refresh()
{
    m_breadcrumb->Refresh();
    m_canvas->Refresh();
}

void GraphPanel::MakeTarget(const ItemID& in_compound, const ItemID& in_root)
{
    const auto model = [this](const ItemID& in_item) {
        return in_item.IsValid() ? CompoundAccessor(m_library->GetAccessor().GetModel(in_item, nullptr))
                                 : CompoundAccessor();
    };
    Helpers::SetGlobalVireoCompoundTarget(model(in_compound), model(in_root));
}

void GraphPanel::OnCompoundEntered(const ItemID& in_compound)
{
    m_breadcrumb->Enter(in_compound);
    MakeTarget(in_compound, m_breadcrumb->GetParentOf(in_compound));
}

void GraphPanel::OnCompoundChosen(const ItemID& in_compound)
{
    MakeTarget(in_compound, m_breadcrumb->GetParentOf(in_compound));
    m_canvas->setFocus(Qt::OtherFocusReason);
}

void GraphPanel::LeaveCompound()
{
    if (IsInCompound())
        OnCompoundChosen(m_breadcrumb->GetParentOf(m_compound));
}

void GraphPanel::OpenQuickAdd()
{
    if (!m_quickAdd)
    {
        m_quickAdd = std::make_unique<QuickAdd>(*m_library, this);
        connect(m_quickAdd.get(), &QuickAdd::Chosen, this, &GraphPanel::OnItemChosen);
    }
    const QWidget& viewport = *m_canvas->viewport();
    QPoint position = viewport.mapFromGlobal(QCursor::pos());
    if (!viewport.rect().contains(position))
        position = viewport.rect().center();
    m_quickAddPosition = m_canvas->mapToScene(position);
    m_quickAdd->OpenAt(viewport.mapToGlobal(position));
}

void GraphPanel::OnItemChosen(const ItemID& in_item)
{
    if (!m_canvas->MayPlace(in_item))
        return;
    m_quickAdd->close();
    m_canvas->Place(in_item, m_quickAddPosition);
}

} // namespace host
