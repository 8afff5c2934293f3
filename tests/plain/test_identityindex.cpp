// SPDX-License-Identifier: MIT
#include "nodebrowser/identityindex.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

using namespace nodebrowser;
using vireo::datamodel::ItemID;
using vireo::datamodel::VireoType;

namespace
{

ItemID Id(std::uint64_t in_number)
{
    return ItemID(VireoType::gSolver, 1, in_number);
}

int Found(const IdentityIndex& in_index, const ItemID& in_item)
{
    const std::vector<std::uint32_t> indexes = in_index.Find(in_item);
    return indexes.size() == 1 ? static_cast<int>(indexes.front()) : -1;
}

} // namespace

TEST(IdentityIndex, itemsAreFoundByTheirIdentities)
{
    EXPECT_EQ(Found(IdentityIndex({}), Id(1)), -1);
    const IdentityIndex index({Id(30), Id(10), Id(20)});
    EXPECT_EQ(Found(index, Id(10)), 1);
    EXPECT_EQ(Found(index, Id(20)), 2);
    EXPECT_EQ(Found(index, Id(30)), 0);
    for (const int stranger : {5, 15, 25, 35})
        EXPECT_EQ(Found(index, Id(static_cast<std::uint64_t>(stranger))), -1);
    EXPECT_EQ(Found(index, ItemID()), -1);
    EXPECT_EQ(Found(index, ItemID(VireoType::gSolver, 2, 10)), -1);
}

TEST(IdentityIndex, anItemThatIsThereTwiceHasTwoIndexes)
{
    const IdentityIndex index({Id(10), Id(20), Id(10)});
    EXPECT_EQ(index.Find(Id(10)), (std::vector<std::uint32_t>{0, 2}));
    EXPECT_TRUE(index.GetIdentities() == (IdentityIndex::Identities{Id(10), Id(20), Id(10)}));
}
