// SPDX-License-Identifier: MIT
#include "nodebrowser/compoundname.h"
#include "qtcompat/latin1.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <memory>

using nodebrowser::CheckCompoundName;
using nodebrowser::CompoundNameValidator;
using nodebrowser::IsSameNameButCase;
using qtcompat::FromLatin1;

Q_DECLARE_METATYPE(QValidator::State)

namespace
{

/// A letter, a number, a mark or an underscore.
bool IsWord(QChar in_character)
{
    return in_character.isLetterOrNumber() || in_character.isMark() || in_character == QLatin1Char('_');
}

/// How often a rule and the names' check disagree about names with one character of each of the 65536 kinds.
template <class Rule> int CountDisagreements(const QString& in_before, Rule in_rule)
{
    int count = 0;
    for (int unit = 0; unit < 0x10000; ++unit)
    {
        const QString name = in_before + QChar(static_cast<ushort>(unit));
        if (CheckCompoundName(name) != in_rule(name))
        {
            if (++count <= 10)
                qDebug("The character %04X is judged differently.", unit);
        }
    }
    return count;
}

} // namespace

class TestCompoundName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreChecked_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QValidator::State>("state");
        QTest::newRow("empty") << QString() << QValidator::Intermediate;
        QTest::newRow("letter") << FromLatin1("a") << QValidator::Acceptable;
        QTest::newRow("digit first") << FromLatin1("3D") << QValidator::Acceptable;
        QTest::newRow("underscore first") << FromLatin1("_a") << QValidator::Acceptable;
        QTest::newRow("underscore alone") << FromLatin1("_") << QValidator::Acceptable;
        QTest::newRow("trailing underscore") << FromLatin1("a_") << QValidator::Acceptable;
        QTest::newRow("inner blank") << FromLatin1("a b") << QValidator::Acceptable;
        QTest::newRow("trailing blanks") << FromLatin1("a  ") << QValidator::Acceptable;
        QTest::newRow("inner tab") << FromLatin1("a\tb") << QValidator::Acceptable;
        QTest::newRow("inner line break") << FromLatin1("a\nb") << QValidator::Acceptable;
        QTest::newRow("no-break space") << FromLatin1("a\xA0") << QValidator::Acceptable;
        QTest::newRow("blank alone") << FromLatin1(" ") << QValidator::Invalid;
        QTest::newRow("leading blank") << FromLatin1(" a") << QValidator::Invalid;
        QTest::newRow("leading tab") << FromLatin1("\ta") << QValidator::Invalid;
        QTest::newRow("leading hyphen") << FromLatin1("-a") << QValidator::Invalid;
        QTest::newRow("inner hyphen") << FromLatin1("a-b") << QValidator::Invalid;
        QTest::newRow("trailing dot") << FromLatin1("a.") << QValidator::Invalid;
        QTest::newRow("percent") << FromLatin1("a%1") << QValidator::Invalid;
        QTest::newRow("backslash") << FromLatin1("a\\w") << QValidator::Invalid;
        QTest::newRow("bracket") << FromLatin1("a]") << QValidator::Invalid;
        QTest::newRow("control character") << FromLatin1("a\x01") << QValidator::Invalid;
        QTest::newRow("null character") << QString(FromLatin1("a")) + QChar(0) << QValidator::Invalid;
        QTest::newRow("Latin-1 letters") << FromLatin1("\xC4\xDF\xFF") << QValidator::Acceptable;
        QTest::newRow("Latin-1 sign") << FromLatin1("a\xD7") << QValidator::Invalid;
        QTest::newRow("superscript two is a number") << FromLatin1("\xB2") << QValidator::Acceptable;
        QTest::newRow("Greek") << QString(QChar(0x03A9)) << QValidator::Acceptable;
        QTest::newRow("ideograph") << QString(QChar(0x6F22)) << QValidator::Acceptable;
        QTest::newRow("Arabic digit") << QString(QChar(0x0663)) << QValidator::Acceptable;
        QTest::newRow("mark first") << QString(QChar(0x0301)) << QValidator::Acceptable;
        QTest::newRow("wide blank inside")
            << FromLatin1("a") + QChar(0x3000) + FromLatin1("b") << QValidator::Acceptable;
        QTest::newRow("wide blank first") << QString(QChar(0x3000)) + FromLatin1("a") << QValidator::Invalid;
        QTest::newRow("zero-width space") << FromLatin1("a") + QChar(0x200B) << QValidator::Invalid;
        QTest::newRow("letter of two units") << QString(QChar(0xD835)) + QChar(0xDC00) << QValidator::Invalid;
        QTest::newRow("letter of two units inside")
            << FromLatin1("a") + QChar(0xD835) + QChar(0xDC00) << QValidator::Invalid;
        QTest::newRow("10000 letters") << QString(10000, QLatin1Char('a')) << QValidator::Acceptable;
        QTest::newRow("10000 letters and a hyphen")
            << QString(10000, QLatin1Char('a')) + QLatin1Char('-') << QValidator::Invalid;
    }

    void namesAreChecked()
    {
        QFETCH(QString, name);
        QFETCH(QValidator::State, state);
        QCOMPARE(CheckCompoundName(name), state);
    }

    void everyCharacterIsJudgedByItsClass()
    {
        const int first = CountDisagreements(QString(), [](const QString& in_name) {
            return IsWord(in_name.at(0)) ? QValidator::Acceptable : QValidator::Invalid;
        });
        QCOMPARE(first, 0);
        const int later = CountDisagreements(FromLatin1("a"), [](const QString& in_name) {
            const QChar last = in_name.at(1);
            return IsWord(last) || last.isSpace() ? QValidator::Acceptable : QValidator::Invalid;
        });
        QCOMPARE(later, 0);
    }

    void surrogatesAreRefusedEverywhere()
    {
        for (int unit = 0xD800; unit < 0xE000; ++unit)
        {
            QCOMPARE(CheckCompoundName(QString(QChar(static_cast<ushort>(unit)))), QValidator::Invalid);
            QCOMPARE(CheckCompoundName(FromLatin1("a") + QChar(static_cast<ushort>(unit))), QValidator::Invalid);
        }
    }

    void theToolkitsPatternTakesTheSameCharacters()
    {
        const std::unique_ptr<QValidator> pattern = testcompat::MakePatternValidator(FromLatin1("[\\w_][\\d\\w\\s_]*"));
        if (!pattern)
            return;
        const auto judge = [&pattern](QString in_name) {
            int position = 0;
            return pattern->validate(in_name, position);
        };
        QCOMPARE(CheckCompoundName(QString()), judge(QString()));
        QCOMPARE(CountDisagreements(QString(), judge), 0);
        QCOMPARE(CountDisagreements(FromLatin1("a"), judge), 0);
        QCOMPARE(CountDisagreements(FromLatin1("a "), judge), 0);
        QCOMPARE(CountDisagreements(FromLatin1("-"), judge), 0);
    }

    void theValidatorLeavesTheTextAndMovesThePositionToTheEndOfBadText()
    {
        const CompoundNameValidator validator(nullptr);
        QString good = FromLatin1("a b");
        int position = 1;
        QCOMPARE(validator.validate(good, position), QValidator::Acceptable);
        QCOMPARE(good, FromLatin1("a b"));
        QCOMPARE(position, 1);
        QString bad = FromLatin1("a-b");
        QCOMPARE(validator.validate(bad, position), QValidator::Invalid);
        QCOMPARE(bad, FromLatin1("a-b"));
        QCOMPARE(position, 3);
        QString empty;
        position = 0;
        QCOMPARE(validator.validate(empty, position), QValidator::Intermediate);
        QCOMPARE(position, 0);
    }

    void namesThatDifferInCaseAloneAreTheSame_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<bool>("same");
        QTest::newRow("equal") << FromLatin1("foo") << FromLatin1("foo") << true;
        QTest::newRow("case") << FromLatin1("Foo") << FromLatin1("fOO") << true;
        QTest::newRow("both empty") << QString() << FromLatin1("") << true;
        QTest::newRow("one empty") << QString() << FromLatin1("a") << false;
        QTest::newRow("longer") << FromLatin1("foo") << FromLatin1("foob") << false;
        QTest::newRow("trailing blank") << FromLatin1("foo") << FromLatin1("foo ") << false;
        QTest::newRow("other letter") << FromLatin1("foo") << FromLatin1("fop") << false;
        QTest::newRow("Latin-1 capital left") << FromLatin1("\xDC"
                                                            "bung")
                                              << FromLatin1("\xFC"
                                                            "bung")
                                              << true;
        QTest::newRow("Latin-1 capital right") << FromLatin1("caf\xE9") << FromLatin1("CAF\xC9") << true;
        QTest::newRow("all Latin-1 letters")
            << FromLatin1("\xC0\xC6\xC7\xD0\xD6\xD8\xDE") << FromLatin1("\xE0\xE6\xE7\xF0\xF6\xF8\xFE") << true;
        QTest::newRow("accent") << FromLatin1("\xE9") << FromLatin1("e") << false;
        QTest::newRow("times and divide") << FromLatin1("\xD7") << FromLatin1("\xF7") << false;
        QTest::newRow("sharp s") << FromLatin1("\xDF") << FromLatin1("ss") << false;
        QTest::newRow("brackets are no letters") << FromLatin1("[") << FromLatin1("{") << false;
        QTest::newRow("outside of Latin-1") << QString(QChar(0x03A9)) << QString(QChar(0x03C9)) << true;
        QTest::newRow("all that Latin-1 lacks is one") << QString(QChar(0x6F22)) << QString(QChar(0x0416)) << true;
        QTest::newRow("what Latin-1 lacks is a question mark") << QString(QChar(0x6F22)) << FromLatin1("?") << true;
        QTest::newRow("capital of a Latin-1 letter outside") << QString(QChar(0x0178)) << FromLatin1("\xFF") << false;
    }

    void namesThatDifferInCaseAloneAreTheSame()
    {
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(bool, same);
        QCOMPARE(IsSameNameButCase(left, right), same);
        QCOMPARE(IsSameNameButCase(right, left), same);
    }
};

NODEBROWSER_TEST_MAIN(TestCompoundName)
#include "test_compoundname.moc"
