// SPDX-License-Identifier: MIT
// The identity of database objects: text in, text out.

#include "datamodel/dbobjectid.h"

#include <gtest/gtest.h>

#include <string>

using nexa4::DbObjectId;

TEST(DbObjectId, textIsAUID)
{
    EXPECT_TRUE(DbObjectId::IsUID("D2BA853A-8668-704A-A121-1F7DE917B664"));
    EXPECT_TRUE(DbObjectId::IsUID("d2ba853a-8668-704a-a121-1f7de917b664"));
    EXPECT_TRUE(DbObjectId::IsUID("00000000-0000-0000-0000-000000000000"));
}

TEST(DbObjectId, otherTextsAreNoUIDs)
{
    const char* const texts[] = {
        "",
        "D2BA853A-8668-704A-A121-1F7DE917B66",   // one digit less
        "D2BA853A-8668-704A-A121-1F7DE917B6640", // one digit more
        "D2BA853A-8668-704A-A121-1F7DE917B66G",  // no digit
        "D2BA853-A8668-704A-A121-1F7DE917B664",  // a hyphen at the wrong place
        "D2BA853A 8668-704A-A121-1F7DE917B664",  // a blank for a hyphen
        "{D2BA853A-8668-704A-A121-1F7DE917B6}",  // in braces
    };
    for (const char* const text : texts)
    {
        EXPECT_FALSE(DbObjectId::IsUID(text)) << text;
        EXPECT_EQ(DbObjectId(text).GetStr(), nexa4::UID_Null().GetStr()) << text;
    }
}

TEST(DbObjectId, nullIsNoUID)
{
    EXPECT_FALSE(DbObjectId::IsUID(nullptr));
    EXPECT_TRUE(DbObjectId(static_cast<const char*>(nullptr)) == nexa4::UID_Null());
}

TEST(DbObjectId, textComesBackInUpperCase)
{
    EXPECT_EQ(DbObjectId("d2ba853a-8668-704a-a121-1f7de917b664").GetStr(),
              std::string("D2BA853A-8668-704A-A121-1F7DE917B664"));
    EXPECT_EQ(nexa4::UID_Null().GetStr(), std::string("00000000-0000-0000-0000-000000000000"));
}

TEST(DbObjectId, bytesAreInTheOrderOfTheText)
{
    const DbObjectId id("00010203-0405-0607-0809-0A0B0C0D0E0F");
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_EQ(int(id.GetBytes()[i]), int(i));
    EXPECT_TRUE(DbObjectId(id.GetBytes()) == id);
}

TEST(DbObjectId, caseDoesNotTellIdentitiesApart)
{
    EXPECT_TRUE(DbObjectId("abcdefab-0000-0000-0000-000000000000") ==
                DbObjectId("ABCDEFAB-0000-0000-0000-000000000000"));
}

TEST(DbObjectId, orderIsThatOfTheBytes)
{
    const DbObjectId low("00000000-0000-0000-0000-0000000000FF");
    const DbObjectId high("01000000-0000-0000-0000-000000000000");
    EXPECT_TRUE(low < high);
    EXPECT_FALSE((high < low));
    EXPECT_FALSE((low < low));
    EXPECT_TRUE(low != high);
}
