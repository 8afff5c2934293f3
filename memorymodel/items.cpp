// SPDX-License-Identifier: MIT
#include "memorymodel/items.h"

#include "datamodel/itemlibrary.h"

#include <cstring>

using namespace vireo::datamodel;

namespace memorymodel
{

nexa4::DbObjectId ItemObject::GetDbObjectId() const
{
    return m_item.m_uid;
}

nexa4::NEXAPtr<nexa4::IDataSource> ItemObject::GetDataSource() const
{
    return nexa4::NEXAPtr<nexa4::IDataSource>(m_item.m_source);
}

nexa4::NEXAPtr<nexa4::IDataModelMgr> ItemObject::GetManager() const
{
    return m_item.m_library ? m_item.m_library->GetManager() : nexa4::NEXAPtr<nexa4::IDataModelMgr>();
}

bool ItemObject::IsLoaded() const
{
    return m_item.m_loaded;
}

bool ItemObject::IsBuiltIn() const
{
    return m_item.m_builtIn;
}

const std::uint64_t Item::s_neverCommitted = ~std::uint64_t(0);

Item::Item(const char* in_type, std::uint64_t in_space, std::uint64_t in_number)
    : m_type(in_type), m_space(in_space), m_number(in_number), m_object(*this)
{
}

ItemID Item::GetItemID() const
{
    return ItemID(m_type, m_space, m_number);
}

CSimpleValue Item::GetValue(const char* in_key) const
{
    if (!in_key)
        return CSimpleValue();
    return CSimpleValue((m_parent && std::strcmp(in_key, gParentKey) == 0) ||
                        (m_specializes && std::strcmp(in_key, gSpecializesKey) == 0));
}

bool Item::IsNode() const
{
    return m_type != LibType::gType;
}

const char* Item::GetKindName() const
{
    if (m_type == VireoType::gCompound)
        return m_signature ? "signature" : m_loop ? "loop compound" : "compound";
    if (m_type == VireoType::gSolver)
        return "solver";
    if (m_type == VireoType::gPolymorphicSolver)
        return "polymorphic solver";
    return m_type == VireoType::gGlobalConstant ? "constant" : "type";
}

std::string Item::GetTags(const char* in_key) const
{
    if (!in_key)
        return std::string();
    if (std::strcmp(in_key, gApplicationTagsKey) == 0)
        return m_tags;
    if (!m_extra)
        return std::string();
    const auto found = m_extra->m_tags.find(in_key);
    return found == m_extra->m_tags.end() ? std::string() : found->second;
}

void Item::SetTags(const char* in_key, const std::string& in_tags)
{
    if (std::strcmp(in_key, gApplicationTagsKey) == 0)
        m_tags = in_tags;
    else if (in_tags.empty())
        MakeExtra().m_tags.erase(in_key);
    else
        MakeExtra().m_tags[in_key] = in_tags;
}

ItemExtra& Item::MakeExtra()
{
    if (!m_extra)
        m_extra.reset(new ItemExtra);
    return *m_extra;
}

namespace
{

class TypeItem : public Item, public ITypeDescriptor
{
public:
    using Item::Item;
};

class SolverItem : public Item, public IFunction
{
public:
    using Item::Item;
};

class CompoundItem : public Item, public ICompound, public ICompoundModifier, public IFunction
{
public:
    using Item::Item;

    ItemID GetItemID() const override { return Item::GetItemID(); }

    bool CanModifyCompound(bool in_withSource) const override
    {
        return !m_readOnly && !(in_withSource && m_source->IsReadOnly());
    }

    void RenameCompound(const char* in_newName, hmx::fwk::ICommandManager* in_commands) override
    {
        if (m_library)
            m_library->RenameCompound(*this, in_newName, in_commands);
    }
};

class LoopCompoundItem : public CompoundItem, public ILoopCompound, public ILoopCompoundModifier
{
public:
    using CompoundItem::CompoundItem;
};

} // namespace

std::shared_ptr<Item> MakeItem(const char* in_type, bool in_loop, std::uint64_t in_space, std::uint64_t in_number)
{
    if (in_type == LibType::gType)
        return std::make_shared<TypeItem>(in_type, in_space, in_number);
    if (in_type == VireoType::gGlobalConstant)
        return std::make_shared<Item>(in_type, in_space, in_number);
    if (in_type != VireoType::gCompound)
        return std::make_shared<SolverItem>(in_type, in_space, in_number);
    if (in_loop)
        return std::make_shared<LoopCompoundItem>(in_type, in_space, in_number);
    return std::make_shared<CompoundItem>(in_type, in_space, in_number);
}

} // namespace memorymodel
