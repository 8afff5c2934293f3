// SPDX-License-Identifier: MIT
#include "host/commandline.h"

#include <QCommandLineParser>

namespace host
{

namespace
{

// Larger than any screen, and small enough for a picture of it to fit into memory.
const int gLargestSide = 8192;

QString ParseTab(const QString& in_text, int* out_tab)
{
    const QStringList tabs = {QStringLiteral("nodes"), QStringLiteral("types"), QStringLiteral("all")};
    *out_tab = static_cast<int>(tabs.indexOf(in_text));
    if (*out_tab >= 0)
        return QString();
    return QStringLiteral("\"%1\" is no tab; there are nodes, types and all.").arg(in_text);
}

/// A number of decimal digits only; 0 for everything else.
int ParseSide(const QString& in_text)
{
    for (const QChar character : in_text)
        if (character < QLatin1Char('0') || character > QLatin1Char('9'))
            return 0;
    return in_text.toInt();
}

QString ParseSize(const QString& in_text, QSize* out_size)
{
    const QStringList sides = in_text.split(QLatin1Char('x'));
    if (sides.size() == 2)
    {
        *out_size = QSize(ParseSide(sides.at(0)), ParseSide(sides.at(1)));
        if (!out_size->isEmpty() && out_size->width() <= gLargestSide && out_size->height() <= gLargestSide)
            return QString();
    }
    return QStringLiteral("\"%1\" is no size; it is written WIDTHxHEIGHT, each from 1 to %2.")
        .arg(in_text)
        .arg(gLargestSide);
}

QString ParsePath(const QString& in_option, const QString& in_text, QString* out_path)
{
    *out_path = in_text;
    return in_text.isEmpty() ? QStringLiteral("--%1 needs a path that is not empty.").arg(in_option) : QString();
}

} // namespace

QString ParseCommandLine(const QStringList& in_arguments, CommandLine* out_commandLine)
{
    const QString value = QStringLiteral("value");
    const QCommandLineOption help(QStringList({QStringLiteral("h"), QStringLiteral("help")}));
    const QCommandLineOption library(QStringLiteral("library"), QString(), value);
    const QCommandLineOption tab(QStringLiteral("tab"), QString(), value);
    const QCommandLineOption search(QStringLiteral("search"), QString(), value);
    const QCommandLineOption rows(QStringLiteral("rows"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"), QString(), value);
    const QCommandLineOption size(QStringLiteral("size"), QString(), value);

    QCommandLineParser parser;
    parser.addOptions({help, library, tab, search, rows, screenshot, size});
    if (!parser.parse(in_arguments))
        return parser.errorText();
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("\"%1\" is no option.").arg(parser.positionalArguments().first());

    *out_commandLine = CommandLine();
    out_commandLine->m_help = parser.isSet(help);
    out_commandLine->m_search = parser.value(search);
    out_commandLine->m_rows = parser.isSet(rows);
    out_commandLine->m_hasTab = parser.isSet(tab);
    out_commandLine->m_hasSize = parser.isSet(size);

    QString error;
    if (parser.isSet(library))
        error = ParsePath(QStringLiteral("library"), parser.value(library), &out_commandLine->m_library);
    if (error.isEmpty() && parser.isSet(screenshot))
        error = ParsePath(QStringLiteral("screenshot"), parser.value(screenshot), &out_commandLine->m_screenshot);
    if (error.isEmpty() && parser.isSet(tab))
        error = ParseTab(parser.value(tab), &out_commandLine->m_tab);
    if (error.isEmpty() && parser.isSet(size))
        error = ParseSize(parser.value(size), &out_commandLine->m_size);
    return error;
}

QString UsageText()
{
    return QStringLiteral("usage: nodebrowser-host [--library PATH] [--tab nodes|types|all] [--search TEXT] [--rows] "
                          "[--screenshot FILE] [--size WxH] [--help]\n");
}

QString HelpText()
{
    return UsageText() +
           QStringLiteral(
               "\n"
               "Opens a window with a node library beside a graph that its nodes can be dragged to.\n"
               "\n"
               "  --library PATH     a MaterialX file, or a folder of them; without it a sample is shown\n"
               "  --tab TAB          the tab to start with: nodes, types or all\n"
               "  --search TEXT      what to start with in the search field\n"
               "  --rows             print the rows that the browser shows, and exit\n"
               "  --screenshot FILE  write the window as a PNG picture, and exit\n"
               "  --size WxH         the size of the window in pixels, each side from 1 to 8192; at first 1100x720\n"
               "  --help             print this, and exit\n"
               "\n"
               "--rows prints one line for each row, in the order shown, in UTF-8: the row's number from 0, its kind\n"
               "(compound, signature, solver, polymorphic-solver, global-constant or type), its name, its tags as the\n"
               "search sees them (sorted, joined by \";\") and its score (the lower, the better it fits the search).\n"
               "A tab stands between two fields. Inside a field a backslash is printed as \\\\, a tab as \\t, a line\n"
               "break as \\n, a carriage return as \\r, and any other control character as \\x and two digits.\n"
               "\n"
               "--rows and --screenshot need no display. The exit status is 0, or 1 when the library cannot be opened\n"
               "or the picture cannot be written, or 2 for a wrong command line.\n");
}

} // namespace host
