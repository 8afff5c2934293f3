// SPDX-License-Identifier: MIT
#include "host/row.h"
#include "tests/support/testmain.h"

using host::Row;

class TestRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRowIsFiveFieldsAndALineBreak()
    {
        const Row row = {
            QStringLiteral("compound"), QStringLiteral("Blend"), {QStringLiteral("colour"), QStringLiteral("mix")}, 3};
        QCOMPARE(host::FormatRow(12, row), QByteArray("12\tcompound\tBlend\tcolour;mix\t3\n"));
    }

    void emptyFieldsStay() { QCOMPARE(host::FormatRow(0, Row()), QByteArray("0\t\t\t\t0\n")); }

    void names_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("blanks") << QStringLiteral(" a  b ") << QByteArray(" a  b ");
        QTest::newRow("Latin-1 in UTF-8") << QString::fromLatin1("Moir\xe9") << QByteArray("Moir\xc3\xa9");
        QTest::newRow("no-break space") << QString(QChar(0xA0)) << QByteArray("\xc2\xa0");
        QTest::newRow("tab") << QStringLiteral("a\tb") << QByteArray("a\\tb");
        QTest::newRow("line break") << QStringLiteral("a\nb") << QByteArray("a\\nb");
        QTest::newRow("carriage return") << QStringLiteral("a\rb") << QByteArray("a\\rb");
        QTest::newRow("backslash") << QStringLiteral("a\\tb") << QByteArray("a\\\\tb");
        QTest::newRow("NUL") << QString(QChar(0)) << QByteArray("\\x00");
        QTest::newRow("escape") << QString(QChar(0x1B)) << QByteArray("\\x1b");
        QTest::newRow("delete") << QString(QChar(0x7F)) << QByteArray("\\x7f");
        QTest::newRow("next line of Latin-1") << QString(QChar(0x85)) << QByteArray("\\x85");
        QTest::newRow("last control of Latin-1") << QString(QChar(0x9F)) << QByteArray("\\x9f");
    }

    void names()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, written);
        Row row;
        row.m_name = name;
        QCOMPARE(host::FormatRow(0, row), "0\t\t" + written + "\t\t0\n");
    }

    void tagsAreEscapedToo()
    {
        Row row;
        row.m_tags << QStringLiteral("a\tb") << QStringLiteral("c");
        QCOMPARE(host::FormatRow(0, row), QByteArray("0\t\t\ta\\tb;c\t0\n"));
    }
};

NODEBROWSER_TEST_MAIN(TestRow)
#include "test_row.moc"
