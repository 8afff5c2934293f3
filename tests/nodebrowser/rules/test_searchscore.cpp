// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"
#include "nodebrowser/searchscore.h"
#include "tests/support/random.h"
#include "tests/support/testmain.h"

#include <algorithm>
#include <vector>

using namespace nodebrowser;
using memorymodel::NewItem;

namespace
{

const int gNoScore = -1;

std::string FromQByteArray(const QByteArray& in_bytes)
{
    return std::string(in_bytes.constData(), static_cast<std::size_t>(in_bytes.size()));
}

std::set<std::string> Tags(const char* in_joined)
{
    std::set<std::string> tags;
    const QList<QByteArray> parts = QByteArray(in_joined).split(';');
    for (int i = 0; i < parts.size(); ++i)
        if (!parts.at(i).isEmpty())
            tags.insert(FromQByteArray(parts.at(i)));
    return tags;
}

int Score(const QString& in_text, const std::string& in_name, const std::set<std::string>& in_tags)
{
    std::size_t score = 0;
    const bool passes = ScoreItem(SplitSearchWords(in_text.toLower()), LowerName(in_name), in_tags, &score);
    return passes ? static_cast<int>(score) : gNoScore;
}

// The second version of the rule, plain and slow: bytes in loops, nothing of the first one used.

unsigned char LowerByte(unsigned char in_byte)
{
    const bool upper = (in_byte >= 'A' && in_byte <= 'Z') || (in_byte >= 0xC0 && in_byte <= 0xDE && in_byte != 0xD7);
    return static_cast<unsigned char>(upper ? in_byte + 32 : in_byte);
}

unsigned char LowerAsciiByte(unsigned char in_byte)
{
    return static_cast<unsigned char>(in_byte >= 'A' && in_byte <= 'Z' ? in_byte + 32 : in_byte);
}

bool IsWhiteByte(char in_byte)
{
    return in_byte == ' ' || (in_byte >= '\t' && in_byte <= '\r');
}

std::string LowerBytes(std::string in_text, unsigned char (*in_lower)(unsigned char))
{
    for (char& character : in_text)
        character = static_cast<char>(in_lower(static_cast<unsigned char>(character)));
    return in_text;
}

int PlaceOf(const std::string& in_word, const std::string& in_text)
{
    for (std::size_t place = 0; place + in_word.size() <= in_text.size(); ++place)
    {
        bool same = true;
        for (std::size_t i = 0; i < in_word.size(); ++i)
            same = same && in_text[place + i] == in_word[i];
        if (same)
            return static_cast<int>(place);
    }
    return -1;
}

std::vector<std::string> PlainWords(const std::string& in_text)
{
    std::vector<std::string> words;
    if (in_text.empty())
        return words;
    words.push_back(std::string());
    bool inSeparator = false;
    for (const char character : in_text)
    {
        if (!IsWhiteByte(character))
            words.back() += character;
        else if (!inSeparator)
            words.push_back(std::string());
        inSeparator = IsWhiteByte(character);
    }
    std::sort(words.begin(), words.end());
    words.erase(std::unique(words.begin(), words.end()), words.end());
    return words;
}

int PlainScore(const std::string& in_text, const std::string& in_name, const std::set<std::string>& in_tags)
{
    const std::vector<std::string> words = PlainWords(LowerBytes(in_text, LowerByte));
    if (words.empty())
        return 0;
    const std::string name = LowerBytes(in_name, LowerByte);
    int score = 10000;
    for (int i = 0; i < static_cast<int>(words.size()); ++i)
    {
        const std::string& word = words[static_cast<std::size_t>(i)];
        const int place = PlaceOf(word, name);
        if (place == 0)
            return i;
        if (place > 0)
            score = static_cast<int>(words.size()) + i;
        else
            for (const std::string& tag : in_tags)
                if (PlaceOf(LowerBytes(word, LowerAsciiByte), LowerBytes(tag, LowerAsciiByte)) >= 0 && score == 10000)
                    score = 1000;
    }
    return score == 10000 ? gNoScore : score;
}

/// Short texts over few characters, so that random words are found often: white space, both cases, Latin-1 letters with
/// and without an upper case, and other bytes above 127, a no-break space among them.
std::string RandomText(Random& io_random, int in_longest)
{
    return io_random.Text("aabbAB   \t\n.1\xE4\xC4\xFF\xDF\xD7\xA0\xB5", 0, in_longest);
}

} // namespace

class TestSearchScore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scores_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("tags");
        QTest::addColumn<int>("score");
        const QString none;
        QTest::newRow("emptyTextPassesEverythingWithZero") << none << QByteArray("Blend") << QByteArray() << 0;
        QTest::newRow("onlySpacesPassEverythingWithZero")
            << QString::fromLatin1("   ") << QByteArray("Blend") << QByteArray() << 0;
        QTest::newRow("trailingSpacePassesEverythingWithZero")
            << QString::fromLatin1("abc ") << QByteArray("Blend") << QByteArray() << 0;
        QTest::newRow("leadingSpacePassesEverythingWithZero")
            << QString::fromLatin1(" abc") << QByteArray("Blend") << QByteArray() << 0;
        QTest::newRow("trailingSpacePassesAnEmptyName")
            << QString::fromLatin1("abc ") << QByteArray() << QByteArray() << 0;
        QTest::newRow("twoSpacesBetweenWordsGiveNoEmptyWord")
            << QString::fromLatin1("x  y") << QByteArray("Blend") << QByteArray() << gNoScore;
        QTest::newRow("caseOfTheTextDoesNotMatter")
            << QString::fromLatin1("Ab") << QByteArray("Abc") << QByteArray() << 0;
        QTest::newRow("insideTheNameScoresWordCountPlusIndex")
            << QString::fromLatin1("Ab") << QByteArray("Cab") << QByteArray() << 1;
        QTest::newRow("wordsAreTriedInByteOrder")
            << QString::fromLatin1("b a") << QByteArray("ab") << QByteArray() << 0;
        QTest::newRow("oneOfTwoWordsSuffices") << QString::fromLatin1("x y") << QByteArray("ax") << QByteArray() << 2;
        QTest::newRow("laterWordInsideTheNameOverwrites")
            << QString::fromLatin1("x y") << QByteArray("axy") << QByteArray() << 3;
        QTest::newRow("laterWordThatStartsTheNameWins")
            << QString::fromLatin1("a x") << QByteArray("xa") << QByteArray() << 1;
        QTest::newRow("tagOnlyScores1000")
            << QString::fromLatin1("mix") << QByteArray("Blend") << QByteArray("colour;mixing") << 1000;
        QTest::newRow("tagCaseDoesNotMatter")
            << QString::fromLatin1("mix") << QByteArray("Blend") << QByteArray("MIXING") << 1000;
        QTest::newRow("nameBeatsAnEarlierTag")
            << QString::fromLatin1("colour lend") << QByteArray("Blend") << QByteArray("colour") << 3;
        QTest::newRow("tagDoesNotReplaceAnEarlierNameMatch")
            << QString::fromLatin1("lend mix") << QByteArray("Blend") << QByteArray("mix") << 2;
        QTest::newRow("repeatedWordsCountOnce")
            << QString::fromLatin1("b b b") << QByteArray("ab") << QByteArray() << 1;
        QTest::newRow("nothingFound") << QString::fromLatin1("zz") << QByteArray("Blend") << QByteArray("colour")
                                      << gNoScore;
        QTest::newRow("latin1LettersLoseTheirCase")
            << QString::fromLatin1("\xC4rger") << QByteArray("\xE4RGER") << QByteArray() << 0;
        QTest::newRow("whatLatin1LacksIsAQuestionMark")
            << QString(QChar(0x4E2D)) << QByteArray("why?") << QByteArray() << 1;
        QTest::newRow("noBreakSpaceSeparatesNothing")
            << QString::fromLatin1("a\xA0") << QByteArray("xa") << QByteArray() << gNoScore;
        QTest::newRow("tabSeparates") << QString::fromLatin1("x\ty") << QByteArray("y") << QByteArray() << 1;
    }

    void scores()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, tags);
        QFETCH(int, score);
        QCOMPARE(Score(text, FromQByteArray(name), Tags(tags.constData())), score);
    }

    void scoreStaysUntouchedWhenNothingIsFound()
    {
        std::size_t score = 77;
        QVERIFY(!ScoreItem(SplitSearchWords(QString::fromLatin1("zz")), "blend", std::set<std::string>(), &score));
        QCOMPARE(int(score), 77);
    }

    void agreesWithASlowSecondVersionOnRandomPairs()
    {
        Random random(TestSeed(20090423));
        int found = 0;
        const int pairs = 200000;
        for (int pair = 0; pair < pairs; ++pair)
        {
            const std::string text = RandomText(random, 9);
            const std::string name = RandomText(random, 8);
            std::set<std::string> tags;
            for (int left = pair % 4; left > 0; --left)
                tags.insert(RandomText(random, 5));
            const int expected = PlainScore(text, name, tags);
            const int score = Score(QString::fromLatin1(text.data(), static_cast<int>(text.size())), name, tags);
            found += expected > 0;
            if (score != expected)
                qWarning("text '%s' name '%s'", text.c_str(), name.c_str());
            QCOMPARE(score, expected);
        }
        // The texts must not be so strange that nothing but the trivial scores is compared.
        QVERIFY(found > pairs / 10);
    }

    void modesShowTheirKinds_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("shown");
        QTest::newRow("nodes") << 0 << QString::fromLatin1("compound loop solver poly");
        QTest::newRow("types") << 1 << QString::fromLatin1("type");
        QTest::newRow("all") << 2 << QString::fromLatin1("compound loop signature solver poly constant type");
        QTest::newRow("signatures") << 3 << QString::fromLatin1("signature");
        QTest::newRow("constants") << 4 << QString::fromLatin1("constant");
        QTest::newRow("below") << -1 << QString();
        QTest::newRow("above") << 5 << QString();
    }

    void modesShowTheirKinds()
    {
        QFETCH(int, mode);
        QFETCH(QString, shown);
        memorymodel::DataLayer layer;
        memorymodel::Library& library = layer.AddLibrary("Kinds");
        library.Add(NewItem::Compound("compound"));
        library.Add(NewItem::LoopCompound("loop"));
        library.Add(NewItem::Signature("signature"));
        library.Add(NewItem::Solver("solver"));
        library.Add(NewItem::PolymorphicSolver("poly"));
        library.Add(NewItem::GlobalConstant("constant"));
        library.Add(NewItem::Type("type"));
        QStringList passed;
        for (const vireo::datamodel::ItemID& id : library.GetItems())
        {
            vireo::datamodel::ItemAccessor item(library.GetAccessor().GetModel(id, nullptr));
            QVERIFY(item.IsValid());
            if (PassesFilterMode(mode, KindOf(item)))
                passed << QString::fromLatin1(library.GetAccessor().GetItemName(id, true, nullptr).c_str());
        }
        QCOMPARE(passed.join(QLatin1String(" ")), shown);
    }
};

NODEBROWSER_TEST_MAIN(TestSearchScore)
#include "test_searchscore.moc"
