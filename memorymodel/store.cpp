// SPDX-License-Identifier: MIT
#include "memorymodel/store.h"

using vireo::datamodel::ItemID;

namespace memorymodel
{

Step::~Step() = default;

bool Step::Run(bool /*in_forward*/)
{
    return true;
}

void Step::Settle() {}

Store::~Store() = default;

std::unique_ptr<Step> Store::Rename(const ItemID& /*in_item*/, const std::string& /*in_name*/)
{
    return std::make_unique<Step>();
}

std::unique_ptr<Step> Store::SetTags(const ItemID& /*in_item*/, const std::string& /*in_key*/,
                                     const std::string& /*in_tags*/)
{
    return std::make_unique<Step>();
}

std::unique_ptr<Step> Store::Move(const ItemID& /*in_item*/, const DataSource& /*in_target*/)
{
    return std::make_unique<Step>();
}

std::unique_ptr<Step> Store::Create(Creation& /*io_creation*/)
{
    return std::make_unique<Step>();
}

std::unique_ptr<Step> Store::Remove(const ItemID& /*in_item*/)
{
    return std::make_unique<Step>();
}

void Store::Close() {}

} // namespace memorymodel
