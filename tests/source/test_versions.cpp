// SPDX-License-Identifier: MIT
#include "tests/source/sourcefiles.h"
#include "tests/support/testmain.h"

#include <QMap>

namespace
{

const char* const gRooms[] = {"qtcompat",  "datamodel", "memorymodel", "nodebrowser", "materialx",
                              "workspace", "contract",  "host",        "benchmarks",  "tests"};

QStringList Words(const char* in_text)
{
    return QString::fromLatin1(in_text).split(QLatin1Char(' '));
}

/// What a line includes with its quotes or brackets, empty when it includes nothing.
QString Included(const QString& in_line)
{
    QString line = in_line.trimmed();
    if (!line.startsWith(QLatin1Char('#')))
        return QString();
    line = line.mid(1).trimmed();
    if (!line.startsWith(QLatin1String("include")))
        return QString();
    line = line.mid(7).trimmed();
    const QChar closing = line.startsWith(QLatin1Char('<')) ? QLatin1Char('>') : QLatin1Char('"');
    return line.left(line.indexOf(closing, 1) + 1);
}

/// Whether an included name may stand in a room: its own headers, those of the rooms and libraries that are allowed,
/// and the standard library. Allowed are rooms ("datamodel"), "Qt", "boost" and single names ("<QPixmap>").
bool IsAllowed(const QString& in_included, const QString& in_room, const QStringList& in_allowed)
{
    if (in_allowed.contains(in_included))
        return true;
    const QString name = in_included.mid(1, in_included.size() - 2);
    const QString folder = name.section(QLatin1Char('/'), 0, 0);
    if (in_included.startsWith(QLatin1Char('"')))
        return folder == in_room || in_allowed.contains(folder) || name.endsWith(QLatin1String(".moc"));
    if (name.startsWith(QLatin1Char('Q')))
        return in_allowed.contains(QLatin1String("Qt"));
    if (name.contains(QLatin1Char('/')) || name.endsWith(QLatin1String(".h")))
        return in_allowed.contains(folder);
    return name == name.toLower();
}

/// Each include of a room that is not allowed, as "FILE: INCLUDED".
QString Trespasses(const QString& in_room, const QStringList& in_allowed)
{
    QStringList found;
    const QStringList files = SourceFiles(in_room);
    for (int i = 0; i < files.size(); ++i)
    {
        const QStringList lines = Lines(files.at(i));
        for (int line = 0; line < lines.size(); ++line)
        {
            const QString included = Included(lines.at(line));
            if (!included.isEmpty() && !IsAllowed(included, in_room, in_allowed))
                found << files.at(i) + QLatin1String(": ") + included;
        }
    }
    return found.join(QLatin1String("\n"));
}

/// The files of a room that have a text anywhere.
QStringList FilesWith(const QString& in_room, const QString& in_text)
{
    QStringList found;
    const QStringList files = SourceFiles(in_room);
    for (int i = 0; i < files.size(); ++i)
        if (Lines(files.at(i)).join(QLatin1String("\n")).contains(in_text))
            found << files.at(i);
    return found;
}

/// A file without its ending: a header and what implements it are one unit, and so is a header "_p" with the class's
/// private part.
QString UnitOf(const QString& in_path)
{
    const QString unit = in_path.left(in_path.lastIndexOf(QLatin1Char('.')));
    return unit.endsWith(QLatin1String("_p")) ? unit.left(unit.size() - 2) : unit;
}

/// The units of a room that each of its units includes.
QMap<QString, QStringList> IncludedUnits(const QString& in_room)
{
    QMap<QString, QStringList> units;
    const QStringList files = SourceFiles(in_room);
    for (int i = 0; i < files.size(); ++i)
    {
        const QString unit = UnitOf(files.at(i));
        const QStringList lines = Lines(files.at(i));
        for (int line = 0; line < lines.size(); ++line)
        {
            const QString included = Included(lines.at(line));
            const QString other = UnitOf(included.mid(1, included.size() - 2));
            if (included.startsWith(QLatin1Char('"') + in_room + QLatin1Char('/')) && other != unit)
                units[unit] << other;
        }
    }
    return units;
}

/// Takes away what includes nothing that is left, again and again: what stays is in a circle or leads into one.
QStringList FindCircles(QMap<QString, QStringList> in_units)
{
    for (bool changed = true; changed;)
    {
        changed = false;
        const QStringList units = in_units.keys();
        for (int i = 0; i < units.size(); ++i)
        {
            bool isFree = true;
            const QStringList included = in_units.value(units.at(i));
            for (int k = 0; k < included.size(); ++k)
                isFree = isFree && !in_units.contains(included.at(k));
            if (isFree)
                changed = in_units.remove(units.at(i)) > 0;
        }
    }
    return in_units.keys();
}

} // namespace

class TestVersions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// No room may be missing and no file unreadable: nothing that is forbidden would be found there.
    void initTestCase()
    {
        for (const char* const room : gRooms)
        {
            const QStringList files = SourceFiles(QString::fromLatin1(room));
            QVERIFY2(!files.isEmpty(), room);
            for (int i = 0; i < files.size(); ++i)
                QVERIFY2(Lines(files.at(i)).size() > 1, qPrintable(files.at(i)));
        }
    }

    void theSourcesAreFound_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("boundary") << QString::fromLatin1("datamodel/provider.h");
        QTest::newRow("browser") << QString::fromLatin1("nodebrowser/nodebrowser.cpp");
        QTest::newRow("memory") << QString::fromLatin1("memorymodel/datalayer.h");
        QTest::newRow("tests below the room") << QString::fromLatin1("tests/source/test_versions.cpp");
    }

    void theSourcesAreFound()
    {
        QFETCH(QString, file);
        QVERIFY(SourceFiles(file.section(QLatin1Char('/'), 0, 0)).contains(file));
        QVERIFY(Lines(file).size() > 10);
    }

    void includesAreRecognised_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("included");
        QTest::newRow("quotes") << QString::fromLatin1("#include \"a/b.h\"") << QString::fromLatin1("\"a/b.h\"");
        QTest::newRow("brackets") << QString::fromLatin1("#include <QString> // why")
                                  << QString::fromLatin1("<QString>");
        QTest::newRow("blanks") << QString::fromLatin1("  #  include   <set>") << QString::fromLatin1("<set>");
        QTest::newRow("no include") << QString::fromLatin1("#pragma once") << QString();
        QTest::newRow("comment") << QString::fromLatin1("// #include <set>") << QString();
    }

    void includesAreRecognised()
    {
        QFETCH(QString, line);
        QFETCH(QString, included);
        QCOMPARE(Included(line), included);
    }

    void trespassesAreRecognised_data()
    {
        QTest::addColumn<QString>("included");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("own") << QString::fromLatin1("\"nodebrowser/a.h\"") << true;
        QTest::newRow("allowed room") << QString::fromLatin1("\"datamodel/a.h\"") << true;
        QTest::newRow("other room") << QString::fromLatin1("\"memorymodel/a.h\"") << false;
        QTest::newRow("no room") << QString::fromLatin1("\"a.h\"") << false;
        QTest::newRow("standard") << QString::fromLatin1("<vector>") << true;
        QTest::newRow("toolkit") << QString::fromLatin1("<QWidget>") << true;
        QTest::newRow("library") << QString::fromLatin1("<boost/version.hpp>") << true;
        QTest::newRow("other library") << QString::fromLatin1("<git2/odb.h>") << false;
        QTest::newRow("system") << QString::fromLatin1("<unistd.h>") << false;
    }

    void trespassesAreRecognised()
    {
        QFETCH(QString, included);
        QFETCH(bool, allowed);
        QCOMPARE(IsAllowed(included, QString::fromLatin1("nodebrowser"), Words("datamodel Qt boost")), allowed);
    }

    void theToolkitsVersionIsTestedInOneHeaderAndInOneOfTheTests()
    {
        // In two pieces, so that this file is not one of those that it looks for.
        const QString version = QString::fromLatin1("QT_") + QLatin1String("VERSION");
        QStringList found;
        for (const char* const room : gRooms)
            found << FilesWith(QString::fromLatin1(room), version);
        QCOMPARE(found.join(QLatin1String("\n")),
                 QString::fromLatin1("qtcompat/qtcompat.h\ntests/support/testcompat.h"));
    }

    void theBrowserNeverSeesWhereADataLayerPlugsIn()
    {
        QVERIFY(
            !FilesWith(QString::fromLatin1("memorymodel"), QString::fromLatin1("\"datamodel/provider.h\"")).isEmpty());
        QCOMPARE(
            FilesWith(QString::fromLatin1("nodebrowser"), QString::fromLatin1("provider.h")).join(QLatin1String("\n")),
            QString());
    }

    void roomsIncludeOnlyWhatTheyMay_data()
    {
        QTest::addColumn<QString>("room");
        QTest::addColumn<QString>("allowed");
        QTest::newRow("qtcompat") << QString::fromLatin1("qtcompat") << QString::fromLatin1("Qt");
        QTest::newRow("datamodel") << QString::fromLatin1("datamodel") << QString::fromLatin1("<QPixmap> <QString>");
        QTest::newRow("nodebrowser") << QString::fromLatin1("nodebrowser")
                                     << QString::fromLatin1("datamodel qtcompat Qt boost");
        QTest::newRow("memorymodel") << QString::fromLatin1("memorymodel")
                                     << QString::fromLatin1("datamodel qtcompat Qt");
        QTest::newRow("materialx") << QString::fromLatin1("materialx") << QString::fromLatin1("Qt <pugixml.hpp>");
        QTest::newRow("workspace") << QString::fromLatin1("workspace")
                                   << QString::fromLatin1(
                                          "materialx memorymodel datamodel Qt <fcntl.h> <git2.h> <git2/sys/diff.h> "
                                          "<sys/file.h> <sys/stat.h> <unistd.h> <xxhash.h>");
        QTest::newRow("contract") << QString::fromLatin1("contract")
                                  << QString::fromLatin1("datamodel <QObject> <QCoreApplication> <QEvent> "
                                                         "<QElapsedTimer> <QImage>");
        QTest::newRow("host") << QString::fromLatin1("host")
                              << QString::fromLatin1(
                                     "datamodel nodebrowser memorymodel materialx workspace qtcompat Qt");
    }

    void roomsIncludeOnlyWhatTheyMay()
    {
        QFETCH(QString, room);
        QFETCH(QString, allowed);
        QVERIFY2(!SourceFiles(room).isEmpty(), "the room is not there"); // rooms that gRooms lacks included
        QCOMPARE(Trespasses(room, Words(allowed.toLatin1().constData())), QString());
    }

    void circlesAreFound()
    {
        QMap<QString, QStringList> units;
        units[QString::fromLatin1("a")] = Words("b c");
        units[QString::fromLatin1("b")] = Words("c");
        QCOMPARE(FindCircles(units), QStringList());
        units[QString::fromLatin1("c")] = Words("d");
        units[QString::fromLatin1("d")] = Words("b");
        QCOMPARE(FindCircles(units), Words("a b c d"));
    }

    void filesOfARoomDoNotIncludeEachOtherInACircle_data()
    {
        QTest::addColumn<QString>("room");
        for (const char* const room : gRooms)
            QTest::newRow(room) << QString::fromLatin1(room);
    }

    void filesOfARoomDoNotIncludeEachOtherInACircle()
    {
        QFETCH(QString, room);
        QVERIFY2(!SourceFiles(room).isEmpty(), "the room is not there");
        QCOMPARE(FindCircles(IncludedUnits(room)).join(QLatin1String("\n")), QString());
    }

    void nobodyKnowsTheHost()
    {
        QStringList found;
        for (const char* const room : gRooms)
            found << FilesWith(QString::fromLatin1(room), QString::fromLatin1("#include \"") + QLatin1String("host/"));
        QStringList strangers;
        for (int i = 0; i < found.size(); ++i)
            if (!found.at(i).startsWith(QLatin1String("host/")) &&
                !found.at(i).startsWith(QLatin1String("tests/host/")) &&
                found.at(i) != QLatin1String("benchmarks/documents.cpp")) // it measures the window
                strangers << found.at(i);
        QCOMPARE(strangers.join(QLatin1String("\n")), QString());
    }

    void theDataLayersDrawNoWidgets()
    {
        QStringList found;
        const char* const rooms[] = {"datamodel", "memorymodel"};
        for (const char* const room : rooms)
            found << FilesWith(QString::fromLatin1(room), QString::fromLatin1("#include <QWidget>"))
                  << FilesWith(QString::fromLatin1(room), QString::fromLatin1("#include <QDialog>"));
        QCOMPARE(found.join(QLatin1String("\n")), QString());
    }
};

NODEBROWSER_TEST_MAIN(TestVersions)
#include "test_versions.moc"
