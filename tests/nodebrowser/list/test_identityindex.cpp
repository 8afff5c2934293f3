// SPDX-License-Identifier: MIT
#include "nodebrowser/identityindex.h"
#include "tests/support/testmain.h"

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

class TestIdentityIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemsAreFoundByTheirIdentities()
    {
        QCOMPARE(Found(IdentityIndex({}), Id(1)), -1);
        const IdentityIndex index({Id(30), Id(10), Id(20)});
        QCOMPARE(Found(index, Id(10)), 1);
        QCOMPARE(Found(index, Id(20)), 2);
        QCOMPARE(Found(index, Id(30)), 0);
        for (const int stranger : {5, 15, 25, 35})
            QCOMPARE(Found(index, Id(static_cast<std::uint64_t>(stranger))), -1);
        QCOMPARE(Found(index, ItemID()), -1);
        QCOMPARE(Found(index, ItemID(VireoType::gSolver, 2, 10)), -1);
    }

    void anItemThatIsThereTwiceHasTwoIndexes()
    {
        const IdentityIndex index({Id(10), Id(20), Id(10)});
        QVERIFY(index.Find(Id(10)) == (std::vector<std::uint32_t>{0, 2}));
        QVERIFY(index.GetIdentities() == (IdentityIndex::Identities{Id(10), Id(20), Id(10)}));
    }
};

NODEBROWSER_TEST_MAIN(TestIdentityIndex)
#include "test_identityindex.moc"
