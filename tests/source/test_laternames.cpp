// SPDX-License-Identifier: MIT
#include "tests/source/sourcefiles.h"
#include "tests/support/testmain.h"

#include <QMap>

namespace
{

/// What also builds with Qt 4.8. qtcompat/ is where the versions differ, and the other rooms need a later Qt.
const char* const gRooms[] = {"datamodel",       "memorymodel",       "nodebrowser",       "contract",
                              "tests/datamodel", "tests/memorymodel", "tests/nodebrowser", "tests/contract",
                              "tests/manual",    "tests/source",      "tests/support"};

/// Files of these rooms that may use later names.
struct Exception
{
    const char* m_file;
    const char* m_reason;
};

const Exception gExceptions[] = {
    {"nodebrowser/accessiblelist.cpp", "built with Qt 5 and later; Qt 4 has accessiblelist_qt4.cpp"},
    {"tests/nodebrowser/view/test_accessibility.cpp", "built with Qt 5 and later; Qt 4 has nothing to test"},
    {"tests/nodebrowser/view/test_gesture.cpp", "built with Qt 5 and later; Qt 4 knows no gestures of the wheel"},
    {"tests/support/testcompat.h", "tells the versions apart for the tests"},
};

bool IsException(const QString& in_file)
{
    for (const Exception& exception : gExceptions)
        if (in_file == QLatin1String(exception.m_file))
            return true;
    return false;
}

/// Names that Qt 4.8 lacks, each with what to write instead. A name that ends with a star stands for all that begin so.
QMap<QString, QString> ReadNames()
{
    QMap<QString, QString> names;
    const QStringList lines = Lines(QString::fromLatin1("tests/source/names-after-qt48.txt"));
    for (int i = 0; i < lines.size(); ++i)
        if (!lines.at(i).isEmpty() && !lines.at(i).startsWith(QLatin1Char('#')))
            names[lines.at(i).section(QLatin1Char(' '), 0, 0)] =
                lines.at(i).section(QLatin1Char(' '), 1, -1, QString::SectionSkipEmpty).trimmed();
    return names;
}

/// The name in the list that stands for a word; empty when there is none.
QString FindName(const QMap<QString, QString>& in_names, const QString& in_word)
{
    if (in_names.contains(in_word))
        return in_word;
    for (QString beginning = in_word; !beginning.isEmpty(); beginning.chop(1))
        if (in_names.contains(beginning + QLatin1Char('*')))
            return beginning + QLatin1Char('*');
    return QString();
}

bool IsInWord(QChar in_character)
{
    return in_character.isLetterOrNumber() || in_character == QLatin1Char('_');
}

/// The words of a line of code, without those of a comment at its end.
QStringList WordsOf(const QString& in_line)
{
    const QString code = in_line.left(in_line.indexOf(QLatin1String("//"))); // all of it when there is none
    QStringList words;
    for (int begin = 0; begin < code.size();)
    {
        int end = begin;
        while (end < code.size() && IsInWord(code.at(end)))
            ++end;
        if (end > begin)
            words << code.mid(begin, end - begin);
        begin = end + 1;
    }
    return words;
}

/// Each use of a name in the list, as "LINE: WORD, write …".
QStringList FindLaterNames(const QMap<QString, QString>& in_names, const QStringList& in_lines)
{
    QStringList found;
    for (int line = 0; line < in_lines.size(); ++line)
    {
        const QStringList words = WordsOf(in_lines.at(line));
        for (int i = 0; i < words.size(); ++i)
        {
            const QString name = FindName(in_names, words.at(i));
            if (name.isEmpty())
                continue;
            const QString instead = in_names.value(name);
            found << QString::number(line + 1) + QLatin1String(": ") + words.at(i) +
                         (instead.isEmpty() ? QString() : QLatin1String(", write ") + instead);
        }
    }
    return found;
}

} // namespace

class TestLaterNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreRecognised_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("found");
        QTest::newRow("name") << QString::fromLatin1("x = qLater(y);")
                              << QString::fromLatin1("1: qLater, write qOld()");
        QTest::newRow("beginning") << QString::fromLatin1("QNewThing a;") << QString::fromLatin1("1: QNewThing");
        QTest::newRow("header") << QString::fromLatin1("#include <QNew>") << QString::fromLatin1("1: QNew");
        QTest::newRow("part of a word") << QString::fromLatin1("qLaterOn(MyQNew);") << QString();
        QTest::newRow("comment") << QString::fromLatin1("f(); // not qLater()") << QString();
        QTest::newRow("before a comment") << QString::fromLatin1("QNew(); // why") << QString::fromLatin1("1: QNew");
        QTest::newRow("two") << QString::fromLatin1("QNewA b(QNewC::d);") << QString::fromLatin1("1: QNewA\n1: QNewC");
    }

    void namesAreRecognised()
    {
        QFETCH(QString, line);
        QFETCH(QString, found);
        QMap<QString, QString> names;
        names[QString::fromLatin1("qLater")] = QString::fromLatin1("qOld()");
        names[QString::fromLatin1("QNew*")] = QString();
        QCOMPARE(FindLaterNames(names, QStringList(line)).join(QLatin1String("\n")), found);
    }

    void theListIsRead()
    {
        const QMap<QString, QString> names = ReadNames();
        QVERIFY(names.size() > 50);
        // In two pieces, so that this file uses none of them.
        const QString withoutOther = QString::fromLatin1("Q_NAME") + QLatin1String("SPACE");
        QVERIFY(names.contains(withoutOther));
        QCOMPARE(names.value(withoutOther), QString());
        QVERIFY(names.contains(QString::fromLatin1("QTR") + QLatin1String("Y_*")));
        QCOMPARE(names.value(QString::fromLatin1("q") + QLatin1String("Overload")),
                 QString::fromLatin1("the string form of connect()"));
    }

    void nothingUsesNamesThatCameAfterQt48()
    {
        const QMap<QString, QString> names = ReadNames();
        QStringList all;
        for (const char* const room : gRooms)
        {
            const QStringList files = SourceFiles(QString::fromLatin1(room));
            QVERIFY2(!files.isEmpty(), room);
            for (int i = 0; i < files.size(); ++i)
            {
                if (IsException(files.at(i)))
                    continue;
                QVERIFY2(Lines(files.at(i)).size() > 1, qPrintable(files.at(i)));
                const QStringList found = FindLaterNames(names, Lines(files.at(i)));
                for (int k = 0; k < found.size(); ++k)
                    all << files.at(i) + QLatin1Char(':') + found.at(k);
            }
        }
        QVERIFY2(all.isEmpty(), qPrintable(QLatin1Char('\n') + all.join(QLatin1String("\n"))));
    }

    void eachExceptionIsNeeded()
    {
        const QMap<QString, QString> names = ReadNames();
        for (const Exception& exception : gExceptions)
            QVERIFY2(!FindLaterNames(names, Lines(QString::fromLatin1(exception.m_file))).isEmpty(), exception.m_file);
    }
};

NODEBROWSER_TEST_MAIN(TestLaterNames)
#include "test_laternames.moc"
