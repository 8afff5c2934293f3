// SPDX-License-Identifier: MIT
#include "nodebrowser/tagindex.h"
#include "tests/support/random.h"
#include "tests/support/testmain.h"

#include <boost/algorithm/string/find.hpp>

using namespace nodebrowser;

namespace
{

QString Joined(const TagIndex::Tags& in_tags)
{
    QStringList tags;
    for (const std::string& tag : in_tags)
        tags << QString::fromLatin1(tag.c_str());
    return tags.join(QLatin1String("|"));
}

/// Upper case as in a locale where "x" is what "q" is, too.
class StrangeCase : public std::ctype<char>
{
protected:
    char do_toupper(char in_character) const override
    {
        return in_character == 'x' || in_character == 'q' ? 'Q' : std::ctype<char>::do_toupper(in_character);
    }
    const char* do_toupper(char* in_begin, const char* in_end) const override
    {
        for (char* character = in_begin; character != in_end; ++character)
            *character = do_toupper(*character);
        return in_end;
    }
};

} // namespace

class TestTagIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_index.reset(new TagIndex); }

    void tagsAreSplitAtSemicolonsIntoASet_data()
    {
        QTest::addColumn<QByteArray>("joined");
        QTest::addColumn<QString>("set");
        QTest::newRow("one") << QByteArray("mix") << QString::fromLatin1("mix");
        QTest::newRow("sorted") << QByteArray("mix;colour") << QString::fromLatin1("colour|mix");
        QTest::newRow("distinct") << QByteArray("a;b;a") << QString::fromLatin1("a|b");
        QTest::newRow("blanks stay") << QByteArray(" a; b") << QString::fromLatin1(" a| b");
        QTest::newRow("commas separate nothing") << QByteArray("a,b") << QString::fromLatin1("a,b");
        QTest::newRow("case stays") << QByteArray("A;a") << QString::fromLatin1("A|a");
        QTest::newRow("none") << QByteArray() << QString();
    }

    void theTypeIsOneMoreTag()
    {
        m_index->Add("mix;colour", "Compound");
        m_index->Add("", "Compound");
        m_index->Add("", "");
        QCOMPARE(Joined(m_index->GetTags(0)), QString::fromLatin1("Compound|colour|mix"));
        QCOMPARE(Joined(m_index->GetTags(1)), QString::fromLatin1("Compound"));
        QCOMPARE(Joined(m_index->GetTags(2)), QString());
        QCOMPARE(m_index->GetItems("Compound"), (TagIndex::Indexes{0, 1}));
    }

    void tagsAreSplitAtSemicolonsIntoASet()
    {
        QFETCH(QByteArray, joined);
        QFETCH(QString, set);
        m_index->Add("other", "");
        m_index->Add(joined.constData(), "");
        m_index->Add("", "");
        QCOMPARE(Joined(m_index->GetTags(1)), set);
        // The same for tags that come later.
        m_index->SetTags(2, joined.constData(), "");
        QCOMPARE(Joined(m_index->GetTags(2)), set);
        QCOMPARE(Joined(m_index->GetTags(0)), QString::fromLatin1("other"));
    }

    void emptyTagsBetweenSeparatorsReachNoItem()
    {
        m_index->Add("a;;b", "");
        QCOMPARE(Joined(m_index->GetTags(0)), QString::fromLatin1("|a|b"));
        QVERIFY(m_index->GetItems("").empty());
    }

    void tagsLeadBackToTheirItems()
    {
        m_index->Add("mix;colour", "");
        m_index->Add("mix", "");
        m_index->Add("", "");
        QCOMPARE(m_index->GetItems("mix"), (TagIndex::Indexes{0, 1}));
        QCOMPARE(m_index->GetItems("colour"), (TagIndex::Indexes{0}));
        QVERIFY(m_index->GetItems("noise").empty());
        m_index->SetTags(2, "colour", "");
        m_index->SetTags(1, "colour", "");
        QCOMPARE(m_index->GetItems("colour"), (TagIndex::Indexes{0, 1, 2}));
        QCOMPARE(m_index->GetItems("mix"), (TagIndex::Indexes{0}));
    }

    void aTagThatIsThereTwiceIsAddedOnce()
    {
        m_index->Add("Solver;Solver", "");
        QCOMPARE(m_index->GetItems("Solver"), (TagIndex::Indexes{0}));
        m_index->SetTags(0, "", "");
        QVERIFY(m_index->GetItems("Solver").empty());
    }

    void noTagsForgetTheItem()
    {
        m_index->Add("mix;;colour", "");
        m_index->Add("mix", "");
        m_index->SetTags(0, "", "");
        QVERIFY(m_index->GetTags(0).empty());
        QVERIFY(m_index->GetItems("colour").empty());
        QCOMPARE(m_index->GetItems("mix"), (TagIndex::Indexes{1}));
    }

    void anIndexThatWasNotAddedHasNoTags()
    {
        QVERIFY(m_index->GetTags(0).empty());
        m_index->Add("mix", "");
        QVERIFY(m_index->GetTags(1).empty());
    }

    void aWordIsFoundInEachTagWhateverTheCase()
    {
        m_index->Add("Mixing;remix", "");
        m_index->Add("MIX", "");
        m_index->Add("colour", "");
        QCOMPARE(FindSet("mIx"), (std::set<std::uint32_t>{0, 1}));
        QCOMPARE(FindSet("colours"), std::set<std::uint32_t>());
    }

    void newTagsAreFoundAfterASearch()
    {
        m_index->Add("mix", "");
        m_index->Add("mix", "");
        QVERIFY(FindSet("noise").empty());
        m_index->SetTags(1, "noise", "");
        QCOMPARE(FindSet("noise"), (std::set<std::uint32_t>{1}));
    }

    void theCaseIsThatOfTheProgramsLocale()
    {
        m_index->Add("box", "");
        QVERIFY(FindSet("boq").empty());
        const std::locale before = std::locale::global(std::locale(std::locale(), new StrangeCase));
        const std::set<std::uint32_t> found = FindSet("boq");
        std::locale::global(before);
        QCOMPARE(found, (std::set<std::uint32_t>{0}));
        QVERIFY(FindSet("boq").empty());
    }

    /// Each change brings a tag string that nobody had before; what no item has any more is dropped on the way.
    void tagsThatChangeAgainAndAgainStayFound()
    {
        m_index->Add("first", "");
        m_index->Add("kept;Compound", "");
        for (int change = 0; change < 5000; ++change)
            m_index->SetTags(0, QString::fromLatin1("tag%1;Compound").arg(change).toLatin1().constData(), "");
        QCOMPARE(Joined(m_index->GetTags(0)), QString::fromLatin1("Compound|tag4999"));
        QCOMPARE(Joined(m_index->GetTags(1)), QString::fromLatin1("Compound|kept"));
        QCOMPARE(m_index->GetItems("Compound"), (TagIndex::Indexes{0, 1}));
        QVERIFY(m_index->GetItems("tag4998").empty());
        QCOMPARE(FindSet("tag"), (std::set<std::uint32_t>{0}));
        QCOMPARE(FindSet("kept"), (std::set<std::uint32_t>{1}));
    }

    void agreesWithASearchTagByTag()
    {
        Random random(TestSeed(5));
        const char letters[] = "abABx\xE4\xC4\xB5";
        std::vector<std::set<std::string>> tags(20);
        for (std::size_t i = 0; i < tags.size(); ++i)
            m_index->Add("", "");
        for (int change = 0; change < 3000; ++change)
        {
            const std::uint32_t item = static_cast<std::uint32_t>(random.Below(static_cast<int>(tags.size())));
            const std::string first = random.Text(letters, 1, 8);
            const std::string second = random.Text(letters, 1, 8);
            std::string joined = first;
            joined.append(";").append(second);
            m_index->SetTags(item, joined, "");
            tags[item] = {first, second};
            const std::string word = random.Text(letters, 1, 3);
            std::set<std::uint32_t> expected;
            for (std::uint32_t i = 0; i < tags.size(); ++i)
                for (const std::string& tag : tags[i])
                    if (!boost::algorithm::ifind_first(tag, word).empty())
                        expected.insert(i);
            QCOMPARE(FindSet(word), expected);
            QCOMPARE(m_index->GetTags(item), tags[item]);
        }
    }

private:
    std::set<std::uint32_t> FindSet(const std::string& in_word)
    {
        std::set<std::uint32_t> found;
        m_index->FindItems(in_word, [&found](std::uint32_t in_item) { found.insert(in_item); });
        return found;
    }

    std::unique_ptr<TagIndex> m_index;
};

NODEBROWSER_TEST_MAIN(TestTagIndex)
#include "test_tagindex.moc"
