// SPDX-License-Identifier: MIT
#include "nodebrowser/nameorder.h"
#include "tests/support/random.h"
#include "tests/support/testmain.h"

#include <algorithm>

using namespace nodebrowser;

namespace
{

std::vector<std::uint32_t> Order(const std::vector<std::string>& in_names,
                                 const std::vector<std::uint32_t>& in_start = {})
{
    TextArena names;
    for (const std::string& name : in_names)
        names.Add(name);
    return SortByName(names, in_start);
}

} // namespace

Q_DECLARE_METATYPE(std::vector<std::uint32_t>)

class TestNameOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ordersNames_data()
    {
        QTest::addColumn<QString>("names");
        QTest::addColumn<QString>("ordered");
        QTest::newRow("one") << QString::fromLatin1("a") << QString::fromLatin1("a");
        QTest::newRow("case does not matter") << QString::fromLatin1("b,A,C") << QString::fromLatin1("A,b,C");
        QTest::newRow("beginnings first") << QString::fromLatin1("Blend2,Blend") << QString::fromLatin1("Blend,Blend2");
        QTest::newRow("equal but for case, in the order given")
            << QString::fromLatin1("ab,AB,aB") << QString::fromLatin1("ab,AB,aB");
        QTest::newRow("underscore before letters, as lower case is compared")
            << QString::fromLatin1("Za,_a,aa") << QString::fromLatin1("_a,aa,Za");
        QTest::newRow("letters beyond ASCII keep their case and come last")
            << QString::fromLatin1("\xE4,\xC4,z") << QString::fromLatin1("z,\xC4,\xE4");
        QTest::newRow("the characters around the letters keep their places")
            << QString::fromLatin1("a{,A[,a@,A`,a_,AZ,az") << QString::fromLatin1("a@,A[,a_,A`,AZ,az,a{");
        QTest::newRow("different only after many characters")
            << QString::fromLatin1("NoiseTextureB,noisetextureA,NoiseTexture")
            << QString::fromLatin1("NoiseTexture,noisetextureA,NoiseTextureB");
        QTest::newRow("as long as the part compared first")
            << QString::fromLatin1("abcdefgh,abcdefg,abcdefghi") << QString::fromLatin1("abcdefg,abcdefgh,abcdefghi");
    }

    void ordersNames()
    {
        QFETCH(QString, names);
        QFETCH(QString, ordered);
        const QStringList given = names.split(QLatin1Char(','));
        std::vector<std::string> texts;
        for (const QString& name : given)
            texts.push_back(name.toLatin1().constData());
        QStringList result;
        for (const std::uint32_t number : Order(texts))
            result << given.at(static_cast<int>(number));
        QCOMPARE(result.join(QLatin1String(",")), ordered);
    }

    void noNamesHaveAnOrderToo() { QVERIFY(SortByName(TextArena(), {}).empty()); }

    void aZeroByteIsMoreThanTheEnd()
    {
        const std::vector<std::string> names = {std::string("a\0", 2), "a", std::string("a\0b", 3)};
        const std::vector<std::uint32_t> order = {1, 0, 2};
        QVERIFY(Order(names) == order);
    }

    void zeroBytesAtTheEndOfAPartAreToldFromTheEnd()
    {
        const std::vector<std::string> names = {std::string("abcdef\0\0", 8), std::string("abcdef\0\0x", 9), "abcdef",
                                                std::string("abcdef\0", 7), std::string("abcdef\0\0\0", 9)};
        const std::vector<std::uint32_t> order = {2, 3, 0, 4, 1};
        QVERIFY(Order(names) == order);
    }

    void namesThatAreTheSameForVeryLongAreSortedToo()
    {
        const std::string same(100000, 'a');
        const std::vector<std::string> names = {same + "b", same, same + "A", same + "a", same + "B"};
        const std::vector<std::uint32_t> order = {1, 2, 3, 0, 4};
        QVERIFY(Order(names) == order);
    }

    void startsFromAnOrderThatIsAboutRight_data()
    {
        using Order = std::vector<std::uint32_t>;
        QTest::addColumn<Order>("start");
        QTest::newRow("nothing") << Order();
        QTest::newRow("the right order") << Order({4, 1, 3, 0, 2});
        QTest::newRow("some of it") << Order({4, 3, 2});
        QTest::newRow("one too early") << Order({2, 4, 1, 3, 0});
        QTest::newRow("one too late") << Order({1, 3, 0, 2, 4});
        QTest::newRow("backwards") << Order({2, 0, 3, 1, 4});
        QTest::newRow("equal names backwards") << Order({4, 3, 1, 0, 2});
        QTest::newRow("one alone") << Order({0});
    }

    void startsFromAnOrderThatIsAboutRight()
    {
        QFETCH(std::vector<std::uint32_t>, start);
        const std::vector<std::uint32_t> expected = {4, 1, 3, 0, 2};
        QVERIFY(Order({"blend", "Add", "noise", "add", "absolute"}, start) == expected);
    }

    void manyNamesAreSortedLikeFew()
    {
        // So many names are sorted digit by digit.
        Random random(TestSeed(12));
        std::vector<std::pair<std::string, std::uint32_t>> expected;
        std::vector<std::string> names;
        for (std::uint32_t entry = 0; entry < 20000; ++entry)
        {
            names.push_back(random.Text(random.OneIn(2) ? "ab_\xC4" : "abcdefghijklmnopqrstuvwxyz", 0, 12));
            if (random.OneIn(50))
                names.back() += std::string(2, '\0');
            expected.emplace_back(names.back(), entry);
        }
        std::sort(expected.begin(), expected.end());
        const std::vector<std::uint32_t> order = Order(names);
        QCOMPARE(order.size(), expected.size());
        for (std::size_t rank = 0; rank < order.size(); ++rank)
            QCOMPARE(order[rank], expected[rank].second);
    }

    void agreesWithAStableSortOfFoldedNames()
    {
        Random random(TestSeed(11));
        for (int round = 0; round < 300; ++round)
        {
            std::vector<std::string> names;
            for (int left = round; left > 0; --left)
                names.push_back(random.Text("aaaAbB_\xC4", 0, 20));
            std::vector<std::pair<std::string, std::uint32_t>> folded;
            for (const std::string& name : names)
            {
                folded.emplace_back(name, static_cast<std::uint32_t>(folded.size()));
                std::replace(folded.back().first.begin(), folded.back().first.end(), 'A', 'a');
                std::replace(folded.back().first.begin(), folded.back().first.end(), 'B', 'b');
            }
            std::sort(folded.begin(), folded.end());
            std::vector<std::uint32_t> expected;
            expected.reserve(folded.size());
            for (const auto& entry : folded)
                expected.push_back(entry.second);
            QVERIFY(Order(names) == expected);
            // A few changes later the order before is a start.
            for (int change = random.Below(4); change > 0 && !names.empty(); --change)
                names[static_cast<std::size_t>(random.Below(static_cast<int>(names.size())))] =
                    random.Text("aaaAbB_\xC4", 0, 20);
            QVERIFY(Order(names, expected) == Order(names));
        }
    }
};

NODEBROWSER_TEST_MAIN(TestNameOrder)
#include "test_nameorder.moc"
