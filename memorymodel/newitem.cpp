// SPDX-License-Identifier: MIT
#include "memorymodel/newitem.h"

#include "memorymodel/itemdescription.h"

#include <utility>

using namespace vireo::datamodel;

namespace memorymodel
{

NewItem::NewItem(const char* in_type, std::string in_name) : m_private(new ItemDescription(in_type, std::move(in_name)))
{
}

NewItem::NewItem(const NewItem& in_other) : m_private(new ItemDescription(*in_other.m_private)) {}

NewItem& NewItem::operator=(const NewItem& in_other)
{
    *m_private = *in_other.m_private;
    return *this;
}

NewItem::~NewItem() = default;

NewItem NewItem::Compound(std::string in_name)
{
    return NewItem(VireoType::gCompound, std::move(in_name));
}

NewItem NewItem::LoopCompound(std::string in_name)
{
    NewItem item = Compound(std::move(in_name));
    item.m_private->m_loop = true;
    return item;
}

NewItem NewItem::Signature(std::string in_name)
{
    NewItem item = Compound(std::move(in_name));
    item.m_private->m_signature = true;
    return item;
}

NewItem NewItem::Solver(std::string in_name)
{
    return NewItem(VireoType::gSolver, std::move(in_name));
}

NewItem NewItem::PolymorphicSolver(std::string in_name)
{
    return NewItem(VireoType::gPolymorphicSolver, std::move(in_name));
}

NewItem NewItem::GlobalConstant(std::string in_name)
{
    return NewItem(VireoType::gGlobalConstant, std::move(in_name));
}

NewItem NewItem::Type(std::string in_name)
{
    return NewItem(LibType::gType, std::move(in_name));
}

NewItem& NewItem::Tags(std::string in_tags)
{
    m_private->m_tags = std::move(in_tags);
    return *this;
}

NewItem& NewItem::In(DataSource& in_source)
{
    m_private->m_source = &in_source;
    return *this;
}

NewItem& NewItem::Parent(std::string in_parent)
{
    m_private->m_parent = std::move(in_parent);
    return *this;
}

NewItem& NewItem::Specializes(std::string in_general)
{
    m_private->m_specializes = std::move(in_general);
    return *this;
}

NewItem& NewItem::ReadOnly()
{
    m_private->m_readOnly = true;
    return *this;
}

NewItem& NewItem::WithoutUID()
{
    m_private->m_withUID = false;
    return *this;
}

NewItem& NewItem::UID(std::string in_uid)
{
    m_private->m_uid = std::move(in_uid);
    return *this;
}

NewItem& NewItem::WithoutObject()
{
    m_private->m_withObject = false;
    return *this;
}

NewItem& NewItem::BuiltIn()
{
    m_private->m_builtIn = true;
    return *this;
}

NewItem& NewItem::Unloaded()
{
    m_private->m_loaded = false;
    return *this;
}

NewItem& NewItem::NotForGraphs()
{
    m_private->m_forGraphs = false;
    return *this;
}

NewItem& NewItem::BaseClass(std::string in_uid)
{
    m_private->m_baseClass = std::move(in_uid);
    return *this;
}

NewItem& NewItem::Category(std::string in_category)
{
    m_private->m_category = std::move(in_category);
    return *this;
}

} // namespace memorymodel
