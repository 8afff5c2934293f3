// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/support/random.h"
#include "tests/support/testmain.h"

#include <algorithm>

using memorymodel::NewItem;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;

namespace
{

const int gItems = 400;

// Few characters make random words that are found often.

std::string RandomTags(Random& io_random)
{
    std::string tags;
    for (int left = io_random.Below(4); left > 0; --left)
        tags += (tags.empty() ? "" : ";") + io_random.Text("abAx\xE4\xC4", 0, 3);
    return tags;
}

NewItem RandomItem(Random& io_random)
{
    const std::string name = io_random.Text("aabbABc_ \n.\xE4\xC4\xFF\xD7", 0, 8);
    const std::string tags = RandomTags(io_random);
    switch (io_random.Below(6))
    {
    case 0:
        return NewItem::Compound(name).Tags(tags);
    case 1:
        return NewItem::Signature(name).Tags(tags);
    case 2:
        return NewItem::GlobalConstant(name).Tags(tags);
    case 3:
        return NewItem::Type(name).Tags(tags);
    case 4:
        return NewItem::PolymorphicSolver(name).Tags(tags);
    default:
        return NewItem::Solver(name).Tags(tags);
    }
}

} // namespace

/// The rows that the browser lays out, against the plain rule asked item by item.
class TestFastFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theRowsAreWhatThePlainRuleSays_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= (IsSeedGiven() ? 1u : 10u); ++seed)
            QTest::newRow(QByteArray::number(seed).constData()) << seed;
    }

    void theRowsAreWhatThePlainRuleSays()
    {
        QFETCH(unsigned, seed);
        Random random(TestSeed(seed));
        memorymodel::DataLayer layer;
        memorymodel::Library& library = layer.AddLibrary("Random");
        for (int left = gItems; left > 0; --left)
            library.Add(RandomItem(random));
        ProbedBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        ShowBrowser(browser, 200, 60);
        std::vector<ItemAccessor> list = ListOf(browser);
        QCOMPARE(int(list.size()), gItems);

        int compared = 0;
        int found = 0;
        while (compared < 110000)
        {
            if (random.Below(20) == 0)
            {
                const std::vector<ItemID> items = library.GetItems();
                library.Rename(items[static_cast<std::size_t>(random.Below(gItems))],
                               "renamed " + random.Text("abAB", 0, 5));
                list = ListOf(browser);
            }
            for (int left = random.Below(3); left > 0; --left)
                library.SetTags(library.GetItems()[static_cast<std::size_t>(random.Below(gItems))], RandomTags(random));
            const std::string text = random.Text("aabcABx  \t\xE4\xC4\xFF", 0, 6);
            SetSearch(browser, random.Below(8) == 0 ? std::string() : text, random.Below(7) - 1);
            const QByteArray difference = Difference(browser, list);
            QVERIFY2(difference.isEmpty(), (difference + " for \"" + text.c_str() + '"').constData());
            compared += static_cast<int>(list.size());
            found += static_cast<int>(browser.GetRowCount());
        }
        // Neither everything nor nothing is found most of the time.
        QVERIFY(found > compared / 10);
        QVERIFY(found < compared * 9 / 10);
    }

private:
    static void SetSearch(ProbedBrowser& out_browser, const std::string& in_text, int in_mode)
    {
        QMetaObject::invokeMethod(&out_browser, "SearchTextChange",
                                  Q_ARG(QString, QString::fromLatin1(in_text.c_str())));
        QMetaObject::invokeMethod(&out_browser, "TabChanged", Q_ARG(int, in_mode));
        out_browser.repaint();
    }

    /// Every item, in the list's order.
    static std::vector<ItemAccessor> ListOf(ProbedBrowser& out_browser)
    {
        SetSearch(out_browser, std::string(), 2);
        std::vector<ItemAccessor> list;
        list.reserve(out_browser.GetRowCount());
        for (std::size_t row = 0; row < out_browser.GetRowCount(); ++row)
            list.push_back(out_browser.GetRowItem(row));
        return list;
    }

    static QByteArray Difference(ProbedBrowser& in_browser, std::vector<ItemAccessor>& in_list)
    {
        std::vector<std::pair<std::size_t, std::size_t>> expected;
        for (std::size_t number = 0; number < in_list.size(); ++number)
        {
            std::size_t score = 0;
            if (in_browser.CompareToFilter(in_list[number], &score))
                expected.emplace_back(score, number);
        }
        std::sort(expected.begin(), expected.end());
        if (in_browser.GetRowCount() != expected.size())
            return QByteArray::number(int(in_browser.GetRowCount())) + " rows instead of " +
                   QByteArray::number(int(expected.size()));
        for (std::size_t row = 0; row < expected.size(); ++row)
            if (in_browser.GetRowItem(row).GetItemID() != in_list[expected[row].second].GetItemID())
                return "another item in row " + QByteArray::number(int(row));
        return QByteArray();
    }
};

NODEBROWSER_TEST_MAIN(TestFastFilter)
#include "test_fastfilter.moc"
