// SPDX-License-Identifier: MIT
/// The data layer in memory as the contract of the boundary needs it.
#pragma once

#include "contract/boundaryfixture.h"
#include "memorymodel/datalayer.h"

#include <memory>

namespace memorymodel
{

class MemoryFixture : public contract::BoundaryFixture
{
public:
    MemoryFixture() : m_library(m_layer.AddLibrary("Contract"))
    {
        m_library.AddDataSource("Local");
        m_library.AddDataSource("Shared");
        m_library.AddDataSource("Product", eReadOnlySource);
    }

    unsigned GetFeatures() const override { return contract::eAllFeatures; }
    vireo::datamodel::ItemLibraryAccessor GetLibrary() override { return m_library.GetAccessor(); }

    ItemID Add(const contract::ItemWish& in_wish) override
    {
        NewItem item = ItemOf(in_wish);
        item.Tags(in_wish.m_tags);
        for (const std::shared_ptr<DataSource>& source : m_library.GetDataSources())
            if (source->GetName() == in_wish.m_source)
                item.In(*source);
        if (in_wish.m_readOnly)
            item.ReadOnly();
        if (in_wish.m_parent)
            item.Parent("Something");
        if (in_wish.m_specializes)
            item.Specializes("Something");
        if (!in_wish.m_withUID)
            item.WithoutUID();
        if (!in_wish.m_forGraphs)
            item.NotForGraphs();
        return m_library.Add(item);
    }

    void Remove(const ItemID& in_item, hmx::fwk::ICommandManager* in_commands) override
    {
        m_library.Remove(in_item, in_commands);
    }
    void Close() override { m_library.Close(); }

    hmx::fwk::ICommandManager* GetCommands() override { return &m_layer.GetCommandManager(); }
    int GetCommandCount() override { return m_layer.GetCommandManager().GetStack().count(); }
    void Undo() override { m_layer.GetCommandManager().GetStack().undo(); }
    void Redo() override { m_layer.GetCommandManager().GetStack().redo(); }

    void Install() override { m_layer.Install(); }
    void MakeCurrent() override { m_layer.SetCurrentLibrary(&m_library); }
    void SetService(const char* in_name, hmx::IBase* in_service) override { m_layer.SetService(in_name, in_service); }
    void SetSystemPresent(bool in_present) override { m_layer.SetSystemPresent(in_present); }
    ItemID GetCompoundTarget() override { return m_layer.GetCompoundTarget(); }

    void SetEnabled(bool in_enabled) override { m_layer.GetSourceControl().SetEnabled(in_enabled); }
    void SetHasProperties(bool in_has) override { m_layer.GetSourceControl().SetHasProperties(in_has); }
    void SetVersionControlActive(bool in_active) override
    {
        m_layer.GetSourceControl().SetVersionControlActive(in_active);
    }
    unsigned GetOneState() override { return eCheckedOutByOther; }
    unsigned GetOtherState() override { return eOutOfDate; }
    void SetState(const ItemID& in_item, unsigned in_state) override
    {
        m_layer.GetSourceControl().SetState(in_item, in_state);
    }

private:
    static NewItem ItemOf(const contract::ItemWish& in_wish)
    {
        if (in_wish.m_type == vireo::datamodel::VireoType::gSolver)
            return NewItem::Solver(in_wish.m_name);
        if (in_wish.m_type == vireo::datamodel::VireoType::gPolymorphicSolver)
            return NewItem::PolymorphicSolver(in_wish.m_name);
        if (in_wish.m_type == vireo::datamodel::VireoType::gGlobalConstant)
            return NewItem::GlobalConstant(in_wish.m_name);
        if (in_wish.m_type == vireo::datamodel::LibType::gType)
            return NewItem::Type(in_wish.m_name);
        if (in_wish.m_signature)
            return NewItem::Signature(in_wish.m_name);
        return in_wish.m_loop ? NewItem::LoopCompound(in_wish.m_name) : NewItem::Compound(in_wish.m_name);
    }

    DataLayer m_layer;
    Library& m_library;
};

} // namespace memorymodel
