// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/support/testmain.h"

#include <algorithm>
#include <cstring>
#include <random>

using memorymodel::NewItem;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;

namespace
{

const int gItems = 400;

/// Texts over few characters, so that random words are found often.
class Chance
{
public:
    explicit Chance(unsigned in_seed) : m_random(in_seed) {}

    int Below(int in_limit) { return static_cast<int>(m_random() % static_cast<unsigned>(in_limit)); }

    std::string Text(const char* in_characters, int in_longest)
    {
        const int count = static_cast<int>(std::strlen(in_characters));
        std::string text;
        for (int left = Below(in_longest + 1); left > 0; --left)
            text += in_characters[Below(count)];
        return text;
    }

    std::string Tags()
    {
        std::string tags;
        for (int left = Below(4); left > 0; --left)
            tags += (tags.empty() ? "" : ";") + Text("abAx\xE4\xC4", 3);
        return tags;
    }

    NewItem Item()
    {
        const std::string name = Text("aabbABc_ \n.\xE4\xC4\xFF\xD7", 8);
        switch (Below(6))
        {
        case 0:
            return NewItem::Compound(name).Tags(Tags());
        case 1:
            return NewItem::Signature(name).Tags(Tags());
        case 2:
            return NewItem::GlobalConstant(name).Tags(Tags());
        case 3:
            return NewItem::Type(name).Tags(Tags());
        case 4:
            return NewItem::PolymorphicSolver(name).Tags(Tags());
        default:
            return NewItem::Solver(name).Tags(Tags());
        }
    }

private:
    std::mt19937 m_random;
};

} // namespace

/// The rows that the browser lays out, against the plain rule asked item by item.
class TestFastFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theRowsAreWhatThePlainRuleSays_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= 10; ++seed)
            QTest::newRow(QByteArray::number(seed).constData()) << seed;
    }

    void theRowsAreWhatThePlainRuleSays()
    {
        QFETCH(unsigned, seed);
        Chance chance(seed);
        memorymodel::DataLayer layer;
        memorymodel::Library& library = layer.AddLibrary("Random");
        for (int left = gItems; left > 0; --left)
            library.Add(chance.Item());
        ProbedBrowser browser;
        browser.SetItemLibrary(library.GetAccessor());
        ShowBrowser(browser, 200, 60);
        std::vector<ItemAccessor> list = ListOf(browser);
        QCOMPARE(int(list.size()), gItems);

        int compared = 0;
        int found = 0;
        while (compared < 110000)
        {
            if (chance.Below(20) == 0)
            {
                const std::vector<ItemID> items = library.GetItems();
                library.Rename(items[static_cast<std::size_t>(chance.Below(gItems))],
                               "renamed " + chance.Text("abAB", 5));
                list = ListOf(browser);
            }
            for (int left = chance.Below(3); left > 0; --left)
                library.SetTags(library.GetItems()[static_cast<std::size_t>(chance.Below(gItems))], chance.Tags());
            const std::string text = chance.Text("aabcABx  \t\xE4\xC4\xFF", 6);
            SetSearch(browser, chance.Below(8) == 0 ? std::string() : text, chance.Below(7) - 1);
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
