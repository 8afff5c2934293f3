// SPDX-License-Identifier: MIT
#include "host/commandline.h"
#include "tests/support/testmain.h"

using host::CommandLine;

namespace
{

/// Reads a command line that is written with "|" between two arguments.
QString Parse(const char* in_arguments, CommandLine* out_commandLine)
{
    QStringList arguments = QString::fromLatin1(in_arguments).split(QLatin1Char('|'));
    arguments.prepend(QStringLiteral("nodebrowser-host"));
    return host::ParseCommandLine(arguments, out_commandLine);
}

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutArgumentsTheSampleIsShown()
    {
        CommandLine commandLine;
        const QString error = host::ParseCommandLine({QStringLiteral("nodebrowser-host")}, &commandLine);
        QCOMPARE(error, QString());
        QCOMPARE(commandLine.m_library, QString());
        QCOMPARE(commandLine.m_tab, 0);
        QCOMPARE(commandLine.m_search, QString());
        QCOMPARE(commandLine.m_screenshot, QString());
        QCOMPARE(commandLine.m_size, QSize(1100, 720));
        QVERIFY(!commandLine.m_rows);
        QVERIFY(!commandLine.m_help);
        QVERIFY(!commandLine.IsUnattended());
    }

    void allOptionsTogether()
    {
        CommandLine commandLine;
        QCOMPARE(Parse("--library|a b.mtlx|--tab|all|--search| noise 3d|--rows|--screenshot|x.png|--size|640x480",
                       &commandLine),
                 QString());
        QCOMPARE(commandLine.m_library, QStringLiteral("a b.mtlx"));
        QCOMPARE(commandLine.m_tab, 2);
        QCOMPARE(commandLine.m_search, QStringLiteral(" noise 3d"));
        QVERIFY(commandLine.m_rows);
        QCOMPARE(commandLine.m_screenshot, QStringLiteral("x.png"));
        QCOMPARE(commandLine.m_size, QSize(640, 480));
        QVERIFY(commandLine.IsUnattended());
    }

    void aPictureAloneIsUnattendedToo()
    {
        CommandLine commandLine;
        QCOMPARE(Parse("--screenshot|x.png", &commandLine), QString());
        QVERIFY(commandLine.IsUnattended());
        QVERIFY(!commandLine.m_rows);
    }

    void valuesMayLookLikeOptions()
    {
        CommandLine commandLine;
        QCOMPARE(Parse("--search|--rows", &commandLine), QString());
        QCOMPARE(commandLine.m_search, QStringLiteral("--rows"));
        QVERIFY(!commandLine.m_rows);
    }

    void anEmptySearchIsASearch()
    {
        CommandLine commandLine;
        QCOMPARE(Parse("--search||--rows", &commandLine), QString());
        QCOMPARE(commandLine.m_search, QString());
        QVERIFY(commandLine.m_rows);
    }

    void theLastOfAnOptionCounts()
    {
        CommandLine commandLine;
        QCOMPARE(Parse("--tab|types|--tab=nodes|--size=1x1|--size=2x3", &commandLine), QString());
        QCOMPARE(commandLine.m_tab, 0);
        QCOMPARE(commandLine.m_size, QSize(2, 3));
    }

    void tabs_data()
    {
        QTest::addColumn<int>("tab");
        QTest::newRow("nodes") << 0;
        QTest::newRow("types") << 1;
        QTest::newRow("all") << 2;
    }

    void tabs()
    {
        QFETCH(int, tab);
        CommandLine commandLine;
        QCOMPARE(Parse(QByteArray("--tab|").append(QTest::currentDataTag()).constData(), &commandLine), QString());
        QCOMPARE(commandLine.m_tab, tab);
    }

    void help_data()
    {
        QTest::addColumn<QByteArray>("arguments");
        QTest::newRow("long") << QByteArray("--help");
        QTest::newRow("short") << QByteArray("-h");
        QTest::newRow("among others") << QByteArray("--rows|--help");
    }

    void help()
    {
        QFETCH(QByteArray, arguments);
        CommandLine commandLine;
        QCOMPARE(Parse(arguments.constData(), &commandLine), QString());
        QVERIFY(commandLine.m_help);
    }

    void errors_data()
    {
        QTest::addColumn<QByteArray>("arguments");
        QTest::addColumn<QString>("named");
        const auto row = [](const char* in_arguments, const char* in_named) {
            QTest::newRow(in_arguments) << QByteArray(in_arguments) << QString::fromLatin1(in_named);
        };
        row("--colour", "colour");
        row("-x", "x");
        row("-rows", "r");
        row("--Rows", "Rows");
        row("--rows=yes", "rows");
        row("--tab", "--tab");
        row("--library", "--library");
        row("--search", "--search");
        row("--screenshot", "--screenshot");
        row("--size", "--size");
        row("--library|", "--library");
        row("--screenshot|", "--screenshot");
        row("--tab|", "no tab");
        row("--tab|Nodes", "\"Nodes\"");
        row("--tab|3", "\"3\"");
        row("file.mtlx", "\"file.mtlx\"");
        row("--rows|file.mtlx", "\"file.mtlx\"");
        row("--|--rows", "\"--rows\"");
        row("-", "\"-\"");
    }

    void errors()
    {
        QFETCH(QByteArray, arguments);
        QFETCH(QString, named);
        CommandLine commandLine;
        const QString error = Parse(arguments.constData(), &commandLine);
        QVERIFY2(error.contains(named), qPrintable(error));
    }

    void sizesThatAreNone_data()
    {
        QTest::addColumn<bool>("good");
        QTest::newRow("1x1") << true;
        QTest::newRow("8192x8192") << true;
        QTest::newRow("0640x0480") << true;
        for (const char* const size :
             {"",         "x",       "640",     "640x",      "x480",      "0x480",  "640x0",  "-640x480",
              "640x-480", "+6x4",    "640X480", "640x480x2", "640 x 480", "8193x1", "1x8193", "99999999999x1",
              "6.4x4.8",  "0x10x10", "wide",    "640*480"})
            QTest::newRow(qPrintable(QStringLiteral("\"%1\"").arg(QLatin1String(size)))) << false;
    }

    void sizesThatAreNone()
    {
        QFETCH(bool, good);
        const QByteArray size = QByteArray(QTest::currentDataTag()).replace("\"", "");
        CommandLine commandLine;
        const QString error = Parse("--size|" + size, &commandLine);
        QCOMPARE(error.isEmpty(), good);
        if (!good)
            QVERIFY2(error.contains(QLatin1String("\"" + size + "\" is no size")), qPrintable(error));
    }

    void theUsageNamesEveryOptionAndTheHelpExplainsIt()
    {
        for (const char* const option :
             {"--library", "--tab", "--search", "--rows", "--screenshot", "--size", "--help"})
        {
            QVERIFY2(host::UsageText().contains(QLatin1String(option)), option);
            QVERIFY2(host::HelpText().contains(QLatin1String("\n  ") + QLatin1String(option)), option);
        }
        QCOMPARE(host::UsageText().count(QLatin1Char('\n')), 1);
    }
};

NODEBROWSER_TEST_MAIN(TestCommandLine)
#include "test_commandline.moc"
