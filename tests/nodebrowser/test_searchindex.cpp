#include "nodebrowser/searchindex.h"
#include "nodebrowser/tagindex.h"
#include "tests/support/testmain.h"

#include <algorithm>

namespace
{

struct Entry
{
    std::string m_name;
    eItemKind m_kind;
    std::string m_tags;
};

std::vector<std::uint64_t> Rows(SearchIndex& in_index, const SearchWords& in_words, int in_mode,
                                const TagIndex& in_tags)
{
    std::vector<std::uint64_t> rows(3, 99); // of the search before
    in_index.Find(in_words, in_mode, in_tags, rows);
    return rows;
}

/// A list of items, searched both ways.
class List
{
public:
    explicit List(const std::vector<Entry>& in_entries) : m_entries(in_entries)
    {
        for (std::size_t i = 0; i < m_entries.size(); ++i)
        {
            m_index.Add(static_cast<std::uint32_t>(i), LowerName(m_entries[i].m_name), m_entries[i].m_kind);
            m_tags.SetTags(static_cast<std::uint32_t>(i), m_entries[i].m_tags);
        }
    }

    std::vector<std::uint64_t> Find(const SearchWords& in_words, int in_mode)
    {
        return Rows(m_index, in_words, in_mode, m_tags);
    }

    std::vector<std::uint64_t> FindItemByItem(const SearchWords& in_words, int in_mode) const
    {
        std::vector<std::pair<std::size_t, std::uint64_t>> found;
        for (std::size_t i = 0; i < m_entries.size(); ++i)
        {
            std::size_t score = 0;
            const TagIndex::Tags tags = m_tags.GetTags(static_cast<std::uint32_t>(i));
            if (PassesFilterMode(in_mode, m_entries[i].m_kind) &&
                ScoreItem(in_words, LowerName(m_entries[i].m_name), tags, &score))
                found.emplace_back(score, i);
        }
        std::sort(found.begin(), found.end());
        std::vector<std::uint64_t> numbers;
        for (const auto& entry : found)
            numbers.push_back(entry.second);
        return numbers;
    }

private:
    const std::vector<Entry> m_entries;
    SearchIndex m_index;
    TagIndex m_tags;
};

SearchWords Words(const char* in_text)
{
    return SplitSearchWords(QString::fromLatin1(in_text).toLower());
}

QString Joined(const std::vector<std::uint64_t>& in_numbers)
{
    QStringList numbers;
    for (const std::uint64_t number : in_numbers)
        numbers << QString::number(number);
    return numbers.join(QLatin1String(" "));
}

} // namespace

class TestSearchIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsInOrderOfRelevance_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("found");
        QTest::newRow("no text: the list's order") << QString() << 2 << QString::fromLatin1("0 1 2 3 4");
        QTest::newRow("a start before an inside before a tag")
            << QString::fromLatin1("b") << 2 << QString::fromLatin1("0 2 1 4");
        QTest::newRow("only what the mode shows") << QString::fromLatin1("b") << 0 << QString::fromLatin1("0 4");
        QTest::newRow("a mode's kinds without a text") << QString() << 1 << QString::fromLatin1("2 3");
        QTest::newRow("no such mode") << QString() << 5 << QString();
        QTest::newRow("a trailing space lets everything pass")
            << QString::fromLatin1("zz ") << 2 << QString::fromLatin1("0 1 2 3 4");
        QTest::newRow("a word that starts a name settles it")
            << QString::fromLatin1("blend l t") << 2 << QString::fromLatin1("0 3 1 2");
        QTest::newRow("a later word inside replaces a tag")
            << QString::fromLatin1("mix x") << 2 << QString::fromLatin1("4 0");
        QTest::newRow("nothing") << QString::fromLatin1("zz") << 2 << QString();
    }

    void findsInOrderOfRelevance()
    {
        QFETCH(QString, text);
        QFETCH(int, mode);
        QFETCH(QString, found);
        List list({{"Blend", eKindCompound, "mix"},
                   {"Able", eKindSignature, ""},
                   {"boolt", eKindType, ""},
                   {"Tile", eKindType, ""},
                   {"xyx", eKindSolver, "fabric"}});
        const SearchWords words = Words(text.toLatin1().constData());
        QCOMPARE(Joined(list.Find(words, mode)), found);
        QCOMPARE(Joined(list.FindItemByItem(words, mode)), found);
    }

    void equallyRelevantItemsStandInTheOrderInWhichTheyWereAdded()
    {
        SearchIndex index;
        TagIndex tags;
        index.Add(3, "ab", eKindType);
        index.Add(2, "b", eKindType);
        index.Add(0, "ab", eKindType);
        index.Add(1, "b", eKindType);
        tags.SetTags(0, "c");
        tags.SetTags(2, "c");
        QCOMPARE(Joined(Rows(index, SearchWords(), 2, tags)), QString::fromLatin1("3 2 0 1"));
        QCOMPARE(Joined(Rows(index, Words("b"), 2, tags)), QString::fromLatin1("2 1 3 0"));
        QCOMPARE(Joined(Rows(index, Words("c"), 2, tags)), QString::fromLatin1("2 0"));
    }

    void anEmptyListHasNoRows() { QVERIFY(List({}).Find(Words("a"), 2).empty()); }

    void clearingForgetsEverything()
    {
        SearchIndex index;
        index.Add(0, "a", eKindType);
        index.Clear();
        QVERIFY(Rows(index, SearchWords(), 2, TagIndex()).empty());
    }

    /// With thousands of words a name can earn the very number that stands for "not found".
    void scoresThatRunIntoTheNoMatchValueAgreeWithTheRule()
    {
        SearchWords words;
        for (int i = 0; i < 10100; ++i)
            words.insert(QString::fromLatin1("w%1").arg(i, 5, 10, QLatin1Char('0')).toLatin1().constData());
        List list({{"w10000", eKindType, ""},
                   {"w09999", eKindType, ""},
                   {"w10001", eKindType, ""},
                   {"a w00500", eKindType, "w00600"},
                   {"a", eKindType, "w00600"}});
        QCOMPARE(Joined(list.Find(words, 2)), Joined(list.FindItemByItem(words, 2)));
        QCOMPARE(Joined(list.Find(words, 2)), QString::fromLatin1("4 1 2 3"));

        words.clear();
        for (int i = 0; i < 5100; ++i)
            words.insert(QString::fromLatin1("w%1").arg(i, 5, 10, QLatin1Char('0')).toLatin1().constData());
        List inside({{"a w04900", eKindType, "w05000"},
                     {"a w04900", eKindType, "w04800"},
                     {"a w04900", eKindType, ""},
                     {"a w04901", eKindType, ""}});
        QCOMPARE(Joined(inside.Find(words, 2)), Joined(inside.FindItemByItem(words, 2)));
        QCOMPARE(Joined(inside.Find(words, 2)), QString::fromLatin1("0 3"));
    }
};

NODEBROWSER_TEST_MAIN(TestSearchIndex)
#include "test_searchindex.moc"
