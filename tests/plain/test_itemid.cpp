// SPDX-License-Identifier: MIT
// The identity of items: validity, type names, order, text.

#include "datamodel/itemid.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace vireo::datamodel;

TEST(ItemID, defaultIsInvalid)
{
    const ItemID none;
    EXPECT_FALSE(none.IsValid());
    EXPECT_TRUE(none.GetType() == nullptr);
    EXPECT_TRUE(none.Serialize().empty());
    EXPECT_TRUE(none == ItemID());
}

TEST(ItemID, typeIsThePointerThatWasGiven)
{
    EXPECT_TRUE(ItemID(VireoType::gCompound, 1, 1).GetType() == VireoType::gCompound);
    EXPECT_TRUE(ItemID(LibType::gType, 1, 1).GetType() == LibType::gType);
}

TEST(ItemID, typeNamesAreDistinct)
{
    std::set<std::string> texts;
    const char* const names[] = {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                                 VireoType::gSolver, LibType::gType};
    for (const char* const name : names)
        texts.insert(name);
    EXPECT_EQ(texts.size(), std::size_t(5));
}

TEST(ItemID, identitiesAreEqualBySpaceAndNumber)
{
    const ItemID one(VireoType::gSolver, 3, 7);
    EXPECT_TRUE(one == ItemID(VireoType::gSolver, 3, 7));
    EXPECT_TRUE(one != ItemID(VireoType::gSolver, 3, 8));
    EXPECT_TRUE(one != ItemID(VireoType::gSolver, 4, 7));
    EXPECT_TRUE(ItemID(VireoType::gSolver, 0, 0) != ItemID());
    EXPECT_EQ(one.GetSpace(), std::uint64_t(3));
    EXPECT_EQ(one.GetNumber(), std::uint64_t(7));
}

TEST(ItemID, orderIsInvalidThenSpaceThenNumber)
{
    const ItemID ordered[] = {ItemID(), ItemID(LibType::gType, 0, 0), ItemID(VireoType::gCompound, 0, 9),
                              ItemID(LibType::gType, 1, 2), ItemID(VireoType::gSolver, 1, 3)};
    const int count = 5;
    for (int left = 0; left < count; ++left)
        for (int right = 0; right < count; ++right)
            EXPECT_EQ(ordered[left] < ordered[right], left < right) << left << " " << right;
}

TEST(ItemID, textNamesTypeSpaceAndNumber)
{
    EXPECT_EQ(ItemID(VireoType::gCompound, 0x2a, 0xBCDEF0123456789ull).Serialize(),
              std::string("Compound:000000000000002A-0BCDEF0123456789"));
}

TEST(ItemID, textsDifferAsIdentitiesDo)
{
    std::set<std::string> texts;
    for (std::uint64_t space = 0; space < 20; ++space)
        for (std::uint64_t number = 0; number < 20; ++number)
            texts.insert(ItemID(VireoType::gSolver, space, number).Serialize());
    EXPECT_EQ(texts.size(), std::size_t(400));
    for (const std::string& text : texts)
        EXPECT_TRUE(text.find_first_of(" \t\n") == std::string::npos);
}
