// SPDX-License-Identifier: MIT
#include "nodebrowser/itemnumbers.h"
#include "tests/support/testmain.h"

using vireo::datamodel::ItemID;
using vireo::datamodel::VireoType;

namespace
{

ItemID Id(std::uint64_t in_number)
{
    return ItemID(VireoType::gSolver, 1, in_number);
}

int Found(const ItemNumbers& in_numbers, const ItemID& in_item)
{
    const std::vector<std::uint32_t> numbers = in_numbers.Find(in_item);
    return numbers.size() == 1 ? static_cast<int>(numbers.front()) : -1;
}

} // namespace

class TestItemNumbers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemsAreFoundByTheirIdentities()
    {
        ItemNumbers numbers;
        QCOMPARE(Found(numbers, Id(1)), -1);
        numbers.Add(Id(30), 0);
        numbers.Add(Id(10), 1);
        numbers.Add(Id(20), 2);
        QCOMPARE(Found(numbers, Id(10)), 1);
        QCOMPARE(Found(numbers, Id(20)), 2);
        QCOMPARE(Found(numbers, Id(30)), 0);
        for (const int stranger : {5, 15, 25, 35})
            QCOMPARE(Found(numbers, Id(static_cast<std::uint64_t>(stranger))), -1);
        QCOMPARE(Found(numbers, ItemID()), -1);
        QCOMPARE(Found(numbers, ItemID(VireoType::gSolver, 2, 10)), -1);
    }

    void itemsThatAreAddedAfterALookUpAreFoundToo()
    {
        ItemNumbers numbers;
        numbers.Add(Id(20), 0);
        QCOMPARE(Found(numbers, Id(10)), -1);
        numbers.Add(Id(10), 1);
        QCOMPARE(Found(numbers, Id(10)), 1);
        QCOMPARE(Found(numbers, Id(20)), 0);
    }

    void anItemThatIsThereTwiceHasTwoNumbers()
    {
        ItemNumbers numbers;
        numbers.Add(Id(10), 0);
        numbers.Add(Id(20), 1);
        numbers.Add(Id(10), 2);
        QVERIFY(numbers.Find(Id(10)) == (std::vector<std::uint32_t>{0, 2}));
        QCOMPARE(int(numbers.GetEntries().size()), 3);
    }

    void clearingForgetsEverything()
    {
        ItemNumbers numbers;
        numbers.Add(Id(10), 0);
        numbers.Clear();
        QCOMPARE(Found(numbers, Id(10)), -1);
        numbers.Add(Id(20), 0);
        QCOMPARE(Found(numbers, Id(20)), 0);
    }
};

NODEBROWSER_TEST_MAIN(TestItemNumbers)
#include "test_itemnumbers.moc"
