// SPDX-License-Identifier: MIT
#include "nodebrowser/textarena.h"
#include "tests/support/random.h"
#include "tests/support/testmain.h"

using namespace nodebrowser;

namespace
{

/// Where a word is found, as "entry" or "entry^" for an entry that starts with it.
QString Found(const std::vector<std::string>& in_texts, const std::string& in_word)
{
    TextArena arena;
    for (const std::string& text : in_texts)
        arena.Add(text);
    QStringList found;
    arena.CountCharacters();
    arena.Find(in_word, [&found](std::size_t in_entry, bool in_atStart) {
        found << QString::number(in_entry) + QString::fromLatin1(in_atStart ? "^" : "");
    });
    return found.join(QLatin1String(" "));
}

/// The same, text by text.
QString PlainFound(const std::vector<std::string>& in_texts, const std::string& in_word)
{
    QStringList found;
    for (std::size_t entry = 0; entry < in_texts.size(); ++entry)
    {
        const std::size_t offset = in_texts[entry].find(in_word);
        if (offset != std::string::npos)
            found << QString::number(entry) + QString::fromLatin1(offset == 0 ? "^" : "");
    }
    return found.join(QLatin1String(" "));
}

} // namespace

class TestTextArena : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsAWordInEachTextOnce_data()
    {
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QByteArray>("word");
        QTest::addColumn<QString>("found");
        const QStringList names = QString::fromLatin1("blend,,able,b,tab,abba").split(QLatin1Char(','));
        QTest::newRow("no texts") << QStringList() << QByteArray("a") << QString();
        QTest::newRow("nowhere") << names << QByteArray("x") << QString();
        QTest::newRow("at starts and inside") << names << QByteArray("b") << QString::fromLatin1("0^ 2 3^ 4 5");
        QTest::newRow("several letters") << names << QByteArray("ab") << QString::fromLatin1("2^ 4 5^");
        QTest::newRow("a whole text") << names << QByteArray("blend") << QString::fromLatin1("0^");
        QTest::newRow("longer than any text") << names << QByteArray("blends") << QString();
        QTest::newRow("not across two texts") << names << QByteArray("btab") << QString();
        QTest::newRow("the last text") << names << QByteArray("bba") << QString::fromLatin1("5");
        QTest::newRow("the empty word") << names << QByteArray("") << QString::fromLatin1("0^ 1^ 2^ 3^ 4^ 5^");
        QTest::newRow("the empty word among no texts") << QStringList() << QByteArray("") << QString();
    }

    void findsAWordInEachTextOnce()
    {
        QFETCH(QStringList, texts);
        QFETCH(QByteArray, word);
        QFETCH(QString, found);
        std::vector<std::string> given;
        for (const QString& text : texts)
            given.push_back(text.toLatin1().constData());
        QCOMPARE(Found(given, word.constData()), found);
    }

    void textsMayHoldLineFeedsAndZeroes()
    {
        const std::vector<std::string> texts = {"a\nb", std::string("c\0d", 3), "\n", "b"};
        QCOMPARE(Found(texts, "b"), QString::fromLatin1("0 3^"));
        QCOMPARE(Found(texts, std::string("\0d", 2)), QString::fromLatin1("1"));
        QCOMPARE(Found(texts, "ab"), QString());
    }

    void textsAreKeptAsTheyCame()
    {
        TextArena arena;
        const std::vector<std::string> texts = {"ab", "", std::string("a\0\n", 3)};
        for (const std::string& text : texts)
            arena.Add(text);
        QCOMPARE(arena.GetSize(), texts.size());
        for (std::size_t entry = 0; entry < texts.size(); ++entry)
            QVERIFY(std::string(arena.Begin(entry), arena.Length(entry)) == texts[entry]);
    }

    void agreesWithASearchTextByText()
    {
        Random random(TestSeed(7));
        for (int block = 0; block < 2000; ++block)
        {
            std::vector<std::string> texts;
            // Long runs of texts without the word between two hits, too.
            for (int left = block % 60; left > 0; --left)
                texts.push_back(left % 7 ? "x" : random.Text("abc", 0, 12));
            const std::string word = random.Text("abc", 0, 4);
            QCOMPARE(Found(texts, word), PlainFound(texts, word));
        }
    }
};

NODEBROWSER_TEST_MAIN(TestTextArena)
#include "test_textarena.moc"
