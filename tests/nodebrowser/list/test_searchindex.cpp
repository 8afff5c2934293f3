// SPDX-License-Identifier: MIT
#include "nodebrowser/searchindex.h"
#include "nodebrowser/tagindex.h"
#include "tests/support/testmain.h"

#include <algorithm>

using namespace nodebrowser;

namespace
{

struct Entry
{
    std::string m_name;
    eItemKind m_kind;
    std::string m_tags;
};

/// The indexes of the items found.
std::vector<std::uint64_t> Rows(SearchIndex& io_index, const SearchWords& in_words, int in_mode, TagIndex& io_tags)
{
    std::vector<std::uint64_t> rows(3, 99); // of the search before
    io_index.Find(in_words, in_mode, io_tags, rows);
    for (std::uint64_t& row : rows)
        row = io_index.GetIndex(static_cast<std::size_t>(row));
    return rows;
}

/// A list of items, searched both ways.
class List
{
public:
    explicit List(const std::vector<Entry>& in_entries) : m_entries(in_entries)
    {
        TextArena names;
        std::vector<eItemKind> kinds;
        for (const Entry& entry : m_entries)
        {
            names.Add(entry.m_name);
            kinds.push_back(entry.m_kind);
            m_tags.Add(entry.m_tags, "");
        }
        m_index.reset(new SearchIndex(names, kinds, {}));
    }

    std::vector<std::uint64_t> Find(const SearchWords& in_words, int in_mode)
    {
        return Rows(*m_index, in_words, in_mode, m_tags);
    }

    std::vector<std::uint64_t> FindItemByItem(const SearchWords& in_words, int in_mode)
    {
        std::vector<std::pair<std::size_t, std::uint64_t>> found; // score and rank
        for (std::size_t rank = 0; rank < m_index->GetSize(); ++rank)
        {
            const Entry& entry = m_entries[m_index->GetIndex(rank)];
            std::size_t score = 0;
            if (PassesFilterMode(in_mode, entry.m_kind) &&
                ScoreItem(in_words, LowerName(entry.m_name), m_tags.GetTags(m_index->GetIndex(rank)), &score))
                found.emplace_back(score, rank);
        }
        std::sort(found.begin(), found.end());
        std::vector<std::uint64_t> indexes;
        indexes.reserve(found.size());
        for (const auto& entry : found)
            indexes.push_back(m_index->GetIndex(static_cast<std::size_t>(entry.second)));
        return indexes;
    }

private:
    const std::vector<Entry> m_entries;
    std::unique_ptr<SearchIndex> m_index;
    TagIndex m_tags;
};

SearchWords Words(const char* in_text)
{
    return SplitSearchWords(QString::fromLatin1(in_text).toLower());
}

QString Joined(const std::vector<std::uint64_t>& in_indexes)
{
    QStringList indexes;
    for (const std::uint64_t number : in_indexes)
        indexes << QString::number(number);
    return indexes.join(QLatin1String(" "));
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
        QTest::newRow("no text: the order of the names") << QString() << 2 << QString::fromLatin1("1 0 2 3 4");
        QTest::newRow("a start before an inside before a tag")
            << QString::fromLatin1("b") << 2 << QString::fromLatin1("0 2 1 4");
        QTest::newRow("only what the mode shows") << QString::fromLatin1("b") << 0 << QString::fromLatin1("0 4");
        QTest::newRow("a mode's kinds without a text") << QString() << 1 << QString::fromLatin1("2 3");
        QTest::newRow("no such mode") << QString() << 5 << QString();
        QTest::newRow("a trailing space lets everything pass")
            << QString::fromLatin1("zz ") << 2 << QString::fromLatin1("1 0 2 3 4");
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

    void equallyRelevantItemsStandInTheOrderOfTheirNames()
    {
        List list({{"b", eKindType, "c"}, {"AB", eKindType, "c"}, {"B", eKindType, ""}, {"ab", eKindType, ""}});
        QCOMPARE(Joined(list.Find(SearchWords(), 2)), QString::fromLatin1("1 3 0 2"));
        QCOMPARE(Joined(list.Find(Words("b"), 2)), QString::fromLatin1("0 2 1 3"));
        QCOMPARE(Joined(list.Find(Words("c"), 2)), QString::fromLatin1("1 0"));
    }

    void anEmptyListHasNoRows()
    {
        List list({});
        QVERIFY(list.Find(Words("a"), 2).empty());
        QVERIFY(list.Find(SearchWords(), 2).empty());
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
