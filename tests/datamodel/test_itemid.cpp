// SPDX-License-Identifier: MIT
// The identity of items: validity, type names, order, text.

#include "datamodel/itemid.h"
#include "tests/support/testmain.h"

#include <set>
#include <string>

using namespace vireo::datamodel;

class TestItemID : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultIsInvalid()
    {
        const ItemID none;
        QVERIFY(!none.IsValid());
        QVERIFY(none.GetType() == nullptr);
        QVERIFY(none.Serialize().empty());
        QVERIFY(none == ItemID());
    }

    void typeIsThePointerThatWasGiven()
    {
        QVERIFY(ItemID(VireoType::gCompound, 1, 1).GetType() == VireoType::gCompound);
        QVERIFY(ItemID(LibType::gType, 1, 1).GetType() == LibType::gType);
    }

    void typeNamesAreDistinct()
    {
        std::set<std::string> texts;
        const char* const names[] = {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                                     VireoType::gSolver, LibType::gType};
        for (const char* const name : names)
            texts.insert(name);
        QCOMPARE(texts.size(), std::size_t(5));
    }

    void identitiesAreEqualBySpaceAndNumber()
    {
        const ItemID one(VireoType::gSolver, 3, 7);
        QVERIFY(one == ItemID(VireoType::gSolver, 3, 7));
        QVERIFY(one != ItemID(VireoType::gSolver, 3, 8));
        QVERIFY(one != ItemID(VireoType::gSolver, 4, 7));
        QVERIFY(ItemID(VireoType::gSolver, 0, 0) != ItemID());
        QCOMPARE(one.GetSpace(), std::uint64_t(3));
        QCOMPARE(one.GetNumber(), std::uint64_t(7));
    }

    void orderIsInvalidThenSpaceThenNumber()
    {
        const ItemID ordered[] = {ItemID(), ItemID(LibType::gType, 0, 0), ItemID(VireoType::gCompound, 0, 9),
                                  ItemID(LibType::gType, 1, 2), ItemID(VireoType::gSolver, 1, 3)};
        const int count = 5;
        for (int left = 0; left < count; ++left)
            for (int right = 0; right < count; ++right)
                QCOMPARE(ordered[left] < ordered[right], left < right);
    }

    void textNamesTypeSpaceAndNumber()
    {
        QCOMPARE(ItemID(VireoType::gCompound, 0x2a, 0xBCDEF0123456789ull).Serialize(),
                 std::string("Compound:000000000000002A-0BCDEF0123456789"));
    }

    void textsDifferAsIdentitiesDo()
    {
        std::set<std::string> texts;
        for (std::uint64_t space = 0; space < 20; ++space)
            for (std::uint64_t number = 0; number < 20; ++number)
                texts.insert(ItemID(VireoType::gSolver, space, number).Serialize());
        QCOMPARE(texts.size(), std::size_t(400));
        for (const std::string& text : texts)
            QVERIFY(text.find_first_of(" \t\n") == std::string::npos);
    }
};

NODEBROWSER_TEST_MAIN(TestItemID)
#include "test_itemid.moc"
