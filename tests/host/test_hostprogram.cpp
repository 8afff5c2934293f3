// SPDX-License-Identifier: MIT
#include "host/commandline.h"
#include "host/sampletable.h"
#include "tests/materialx/documents.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <set>

using host::SampleItem;
using host::SampleKind;

namespace
{

struct Result
{
    int m_status = -1;
    QByteArray m_out;
    QByteArray m_error;
};

/// Runs the built program as in a terminal without a display.
Result RunHost(const QStringList& in_arguments, const QString& in_scale = QString(),
               const QString& in_folder = QString())
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(name));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    if (!in_scale.isEmpty())
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), in_scale);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(in_folder);
    process.start(QStringLiteral(HOST_PROGRAM), in_arguments);
    Result result;
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.m_status = process.exitCode();
    result.m_out = process.readAllStandardOutput();
    result.m_error = process.readAllStandardError();
    return result;
}

QStringList Arguments(std::initializer_list<const char*> in_arguments)
{
    QStringList arguments;
    for (const char* const argument : in_arguments)
        arguments << QString::fromUtf8(argument);
    return arguments;
}

/// The fields of each line; every line must end with a line break.
QList<QByteArrayList> RowsOf(const Result& in_result)
{
    QList<QByteArrayList> rows;
    QByteArrayList lines = in_result.m_out.split('\n');
    if (!lines.takeLast().isEmpty())
        return rows;
    for (const QByteArray& line : lines)
        rows << line.split('\t');
    return rows;
}

QByteArrayList NamesOf(const Result& in_result)
{
    QByteArrayList names;
    for (const QByteArrayList& row : RowsOf(in_result))
        names << row.value(2);
    return names;
}

QString WriteFile(const QTemporaryDir& in_folder, const char* in_name, const QByteArray& in_content)
{
    const QString path = in_folder.filePath(QLatin1String(in_name));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(in_content) != in_content.size())
        return QString();
    return path;
}

/// The score of a row by the rule for one item, in plain words; -1 when the words do not find it.
int PlainScore(const QByteArrayList& in_row, const std::set<QByteArray>& in_words)
{
    const QByteArray name = in_row.at(2).toLower();
    const QByteArrayList tags = in_row.at(3).toLower().split(';');
    const int fromTag = 1000;
    int score = -1;
    int position = 0;
    for (const QByteArray& word : in_words)
    {
        if (name.startsWith(word))
            return position;
        if (name.contains(word))
            score = static_cast<int>(in_words.size()) + position;
        else if (score < 0 &&
                 std::any_of(
                     tags.begin(), tags.end(), [&word](const QByteArray& in_tag) { return in_tag.contains(word); }))
            score = fromTag;
        ++position;
    }
    return score;
}

int CountListed(std::initializer_list<SampleKind> in_kinds)
{
    int count = 0;
    for (const SampleItem& item : host::GetSampleItems())
        if (!item.m_parent && !item.m_general)
            count += std::find(in_kinds.begin(), in_kinds.end(), item.m_kind) != in_kinds.end() ? 1 : 0;
    return count;
}

} // namespace

class TestHostProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allRowsOfTheSampleArePrinted()
    {
        const Result result = RunHost(Arguments({"--tab", "all", "--rows"}));
        QCOMPARE(result.m_status, 0);
        const QList<QByteArrayList> rows = RowsOf(result);
        QMap<QByteArray, int> kinds;
        for (int i = 0; i < rows.size(); ++i)
        {
            QCOMPARE(rows.at(i).size(), 5);
            QCOMPARE(rows.at(i).at(0), QByteArray::number(i));
            QCOMPARE(rows.at(i).at(4), QByteArray("0"));
            ++kinds[rows.at(i).at(1)];
        }
        QCOMPARE(kinds.size(), 6);
        QCOMPARE(kinds.value("compound"), CountListed({SampleKind::Compound, SampleKind::LoopCompound}));
        QCOMPARE(kinds.value("signature"), CountListed({SampleKind::Signature}));
        QCOMPARE(kinds.value("solver"), CountListed({SampleKind::Solver}));
        QCOMPARE(kinds.value("polymorphic-solver"), CountListed({SampleKind::Polymorphic}));
        QCOMPARE(kinds.value("global-constant"), CountListed({SampleKind::Constant}));
        QCOMPARE(kinds.value("type"), CountListed({SampleKind::Type}));
    }

    void tabsSelectKinds_data()
    {
        QTest::addColumn<QStringList>("kinds");
        QTest::newRow("nodes") << Arguments({"compound", "polymorphic-solver", "solver"});
        QTest::newRow("types") << Arguments({"type"});
    }

    void tabsSelectKinds()
    {
        QFETCH(QStringList, kinds);
        const Result result = RunHost(Arguments({"--rows", "--tab", QTest::currentDataTag()}));
        QCOMPARE(result.m_status, 0);
        QStringList printed;
        for (const QByteArrayList& row : RowsOf(result))
            if (!printed.contains(QString::fromLatin1(row.at(1))))
                printed << QString::fromLatin1(row.at(1));
        printed.sort();
        QCOMPARE(printed, kinds);
    }

    void nodesAreTheFirstTab()
    {
        QCOMPARE(RunHost(Arguments({"--rows"})).m_out, RunHost(Arguments({"--rows", "--tab", "nodes"})).m_out);
    }

    void aSearchOrdersByRelevance()
    {
        const Result result = RunHost(Arguments({"--tab", "all", "--search", "Blend", "--rows"}));
        QCOMPARE(result.m_status, 0);
        QCOMPARE(result.m_out, QByteArray("0\tcompound\tBlend\tCompound;colour;layer;mix;opacity\t0\n"
                                          "1\tsignature\tBlend Function\tCompound;colour;function;interface;mix\t0\n"
                                          "2\ttype\tBlend Mode\tType;choice;colour;mix\t0\n"
                                          "3\tcompound\tMultiply Blend\tCompound;colour;darken;layer;mix\t1\n"
                                          "4\tcompound\tOverlay Blend\tCompound;colour;contrast;layer;mix\t1\n"
                                          "5\tcompound\tScreen Blend\tCompound;colour;layer;lighten;mix\t1\n"
                                          "6\tcompound\tSmooth Union\tCompound;blend;combine;geometry;shape\t1000\n"));
    }

    void aSearchForNothingThereIsPrintsNothing()
    {
        const Result result = RunHost(Arguments({"--search", "qqq", "--rows"}));
        QCOMPARE(result.m_status, 0);
        QCOMPARE(result.m_out, QByteArray());
    }

    void namesArePrintedInUtf8()
    {
        const Result result = RunHost(Arguments({"--search", "moir\xc3\xa9", "--rows"}));
        QCOMPARE(NamesOf(result), QByteArrayList() << "Moir\xc3\xa9");
    }

    void valuesThatLookLikeOptionsOfTheToolkitAreTaken()
    {
        const Result result = RunHost(Arguments({"--search", "-style", "--rows"}));
        QCOMPARE(result.m_status, 0);
        QCOMPARE(result.m_out, QByteArray());
    }

    void aFileIsOpened()
    {
        QTemporaryDir folder;
        const QString path = WriteFile(folder, "weather.mtlx",
                                       "<materialx>\n"
                                       "  <typedef name=\"caf\xc3\xa9\" semantic=\"a;b\"/>\n"
                                       "  <typedef name=\"\xe2\x82\xac\"/>\n"
                                       "  <nodedef name=\"ND_rain\" node=\"rain\" nodegroup=\"weather\"/>\n"
                                       "</materialx>\n");
        const Result result = RunHost({QStringLiteral("--library"), path, QStringLiteral("--tab"),
                                       QStringLiteral("all"), QStringLiteral("--rows")});
        QCOMPARE(result.m_status, 0);
        QCOMPARE(result.m_out, QByteArray("0\ttype\t?\tType\t0\n"
                                          "1\ttype\tcaf\xc3\xa9\tType;a;b\t0\n"
                                          "2\tsignature\train\tCompound;weather\t0\n"));
    }

    void controlCharactersAreEscaped()
    {
        QTemporaryDir folder;
        const QString path =
            WriteFile(folder, "odd.mtlx", "<materialx><typedef name=\"a&#9;b&#10;c\\d\"/></materialx>\n");
        const Result result = RunHost({QStringLiteral("--library"), path, QStringLiteral("--tab"),
                                       QStringLiteral("types"), QStringLiteral("--rows")});
        QCOMPARE(result.m_out, QByteArray("0\ttype\ta\\tb\\nc\\\\d\tType\t0\n"));
    }

    void aFolderIsOpened()
    {
        const Result result = RunHost({QStringLiteral("--library"), QStringLiteral(OBSERVATORY_FOLDER),
                                       QStringLiteral("--tab"), QStringLiteral("all"), QStringLiteral("--rows")});
        QCOMPARE(result.m_status, 0);
        QCOMPARE(result.m_out, QByteArray("0\tpolymorphic-solver\tadd\tPolymorphicSolver;astronomy;math;sky;stdlib\t0\n"
                                          "1\tsignature\taurora\tCompound;sky\t0\n"
                                          "2\tcompound\tcheckerboard\tCompound;procedural2d;stdlib\t0\n"
                                          "3\ttype\tcolor3\tType;color\t0\n"
                                          "4\tglobal-constant\tdegree\tGlobalConstant;angle\t0\n"
                                          "5\ttype\tfloat\tType\t0\n"
                                          "6\tcompound\tkaleidoscope\tCompound;glass\t0\n"
                                          "7\tcompound\tlens\tCompound;glass;optics\t0\n"
                                          "8\tcompound\tmilky_way\tCompound;sky\t0\n"
                                          "9\tpolymorphic-solver\tmix\tPolymorphicSolver;colour;compositing;stdlib\t0\n"
                                          "10\tcompound\tnight_sky\tCompound;astronomy;sky\t0\n"
                                          "11\tsolver\tnoise2d\tSolver;procedural2d;stdlib\t0\n"
                                          "12\tglobal-constant\tparsec\tGlobalConstant;distance\t0\n"
                                          "13\ttype\tphoton\tType\t0\n"
                                          "14\tglobal-constant\tradian\tGlobalConstant;angle\t0\n"
                                          "15\ttype\tstarlight\tType;light\t0\n"
                                          "16\tsignature\tsurface_unlit\tCompound;shader;stdlib\t0\n"
                                          "17\ttype\tsurfaceshader\tType;shader\t0\n"
                                          "18\tsolver\ttwinkle\tSolver;astronomy;sky\t0\n"));
    }

    void theStandardLibraryIsOpened()
    {
        const QString path = QStringLiteral(MATERIALX_FOLDER);
        if (!QDir(path).exists())
            QSKIP("the documents are not beside the project");
        const Result result = RunHost({QStringLiteral("--library"), path, QStringLiteral("--tab"),
                                       QStringLiteral("all"), QStringLiteral("--rows")});
        QCOMPARE(result.m_status, 0);
        QCOMPARE(RowsOf(result).size(), 266);
    }

    void searchesOfTheStandardLibraryScoreByThePlainRule_data()
    {
        QTest::addColumn<int>("least"); // rows that are found
        QTest::newRow("noise") << 5;
        QTest::newRow("color") << 10;
        QTest::newRow("MIX blend") << 2;
        QTest::newRow("math noise a") << 20;
        QTest::newRow("pbr light") << 5;
        QTest::newRow("2d 3d _") << 20;
        QTest::newRow("globalconstant") << 12;
        QTest::newRow("nothing-of-this") << 0;
    }

    void searchesOfTheStandardLibraryScoreByThePlainRule()
    {
        QFETCH(int, least);
        const QString path = QStringLiteral(MATERIALX_FOLDER);
        if (!QDir(path).exists())
            QSKIP("the documents are not beside the project");
        const QStringList all = {QStringLiteral("--library"), path, QStringLiteral("--tab"), QStringLiteral("all"),
                                 QStringLiteral("--rows")};
        const QString search = QString::fromLatin1(QTest::currentDataTag());
        const QByteArrayList typed = search.toLower().toLatin1().split(' ');
        const std::set<QByteArray> words(typed.begin(), typed.end());
        QList<QByteArrayList> expected;
        for (QByteArrayList row : RowsOf(RunHost(all)))
            if (const int score = PlainScore(row, words); score >= 0)
            {
                row[4] = QByteArray::number(score);
                expected << row;
            }
        std::stable_sort(expected.begin(), expected.end(), [](const QByteArrayList& in_a, const QByteArrayList& in_b) {
            return in_a.at(4).toInt() < in_b.at(4).toInt();
        });
        for (int i = 0; i < expected.size(); ++i)
            expected[i][0] = QByteArray::number(i);
        QVERIFY2(expected.size() >= least, qPrintable(QString::number(expected.size())));
        QCOMPARE(RowsOf(RunHost(all + QStringList{QStringLiteral("--search"), search})), expected);
    }

    void aRelativePathIsOpened_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("from");
        QTest::newRow("folder") << QStringLiteral("mtlx") << QString();
        QTest::newRow("folder with a slash") << QStringLiteral("mtlx/") << QString();
        QTest::newRow("folder from another one") << QStringLiteral("../mtlx") << QStringLiteral("mtlx");
        QTest::newRow("this folder") << QStringLiteral(".") << QStringLiteral("mtlx");
    }

    void aRelativePathIsOpened()
    {
        QFETCH(QString, path);
        QFETCH(QString, from);
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("mtlx/mtlx")));
        WriteFile(folder, "mtlx/a.mtlx", "<materialx><typedef name=\"sun\"/></materialx>");
        WriteFile(folder, "mtlx/mtlx/b.mtlx", "<materialx><typedef name=\"moon\"/></materialx>");
        const Result result = RunHost({QStringLiteral("--library"), path, QStringLiteral("--tab"),
                                       QStringLiteral("all"), QStringLiteral("--rows")},
                                      QString(), folder.filePath(from));
        QVERIFY2(result.m_status == 0, result.m_error.constData());
        QCOMPARE(NamesOf(result), (QByteArrayList{"moon", "sun"}));
    }

    void aRelativeFileIsOpened()
    {
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("mtlx")));
        WriteFile(folder, "mtlx/a.mtlx", "<materialx><typedef name=\"sun\"/></materialx>");
        const QStringList arguments = {QStringLiteral("--tab"), QStringLiteral("all"), QStringLiteral("--rows"),
                                       QStringLiteral("--library"), QStringLiteral("mtlx/a.mtlx")};
        QCOMPARE(NamesOf(RunHost(arguments, QString(), folder.path())), QByteArrayList{"sun"});
    }

    void aFileLargerThanTheMemoryIsAnError()
    {
#ifdef __SANITIZE_ADDRESS__
        QSKIP("The sanitizer ends a program that asks for so much");
#endif
        QTemporaryDir folder;
        const QString path = WriteFile(folder, "a.mtlx", "<materialx/>");
        if (!MakeLargerThanTheMemory(path))
            QSKIP("The file system takes no such file");
        const Result result = RunHost({QStringLiteral("--rows"), QStringLiteral("--library"), path});
        QCOMPARE(result.m_status, 1);
        QVERIFY2(result.m_error.contains(path.toLocal8Bit() + ":1: There is not enough memory for it"),
                 result.m_error.constData());
    }

    void librariesThatCannotBeOpened_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<int>("line");
        QTest::newRow("not closed") << QByteArray("<materialx>\n<typedef name=\"a\"/>\n") << 3;
        QTest::newRow("closed wrongly") << QByteArray("<materialx>\n<typedef name=\"a\"/>\n</material>\n") << 3;
        QTest::newRow("attribute without quotes") << QByteArray("<materialx>\n<typedef name=a/>\n</materialx>") << 2;
        QTest::newRow("unknown entity") << QByteArray("<materialx>\n\n<typedef name=\"&a;\"/></materialx>") << 3;
        QTest::newRow("another root") << QByteArray("\n<svg/>\n") << 2;
        QTest::newRow("empty") << QByteArray() << 1;
        QTest::newRow("no XML") << QByteArray("name: weather\n") << 1;
    }

    void librariesThatCannotBeOpened()
    {
        QFETCH(QByteArray, document);
        QFETCH(int, line);
        QTemporaryDir folder;
        WriteFile(folder, "a.mtlx", "<materialx><typedef name=\"good\"/></materialx>");
        const QString bad = WriteFile(folder, "b.mtlx", document);
        const QString picture = folder.filePath(QStringLiteral("x.png"));
        const Result result =
            RunHost({QStringLiteral("--library"), folder.path(), QStringLiteral("--rows"), QStringLiteral("--tab"),
                     QStringLiteral("all"), QStringLiteral("--screenshot"), picture});
        QCOMPARE(result.m_status, 1);
        QCOMPARE(result.m_out, QByteArray());
        QVERIFY(!QFile::exists(picture));
        const QByteArray start = QStringLiteral("%1:%2: ").arg(bad).arg(line).toLocal8Bit();
        const QByteArray message = result.m_error.split('\n').value(ErrorLine(result));
        QVERIFY2(message.startsWith(start) && message.size() > start.size(), result.m_error.constData());
    }

    void aPathThatIsNotThereIsAnError()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("nowhere.mtlx"));
        const Result result = RunHost({QStringLiteral("--rows"), QStringLiteral("--library"), path});
        QCOMPARE(result.m_status, 1);
        QCOMPARE(result.m_out, QByteArray());
        QVERIFY2(result.m_error.contains(path.toLocal8Bit() + ":1: "), result.m_error.constData());
    }

    void wrongCommandLines_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("unknown option") << Arguments({"--rows", "--colour"});
        QTest::newRow("missing value") << Arguments({"--rows", "--library"});
        QTest::newRow("bad tab") << Arguments({"--rows", "--tab", "solvers"});
        QTest::newRow("bad size") << Arguments({"--rows", "--size", "0x10"});
        QTest::newRow("positional argument") << Arguments({"--rows", "file.mtlx"});
        QTest::newRow("even with help") << Arguments({"--help", "--colour"});
    }

    void wrongCommandLines()
    {
        QFETCH(QStringList, arguments);
        const Result result = RunHost(arguments);
        QCOMPARE(result.m_status, 2);
        QCOMPARE(result.m_out, QByteArray());
        QVERIFY2(result.m_error.contains("nodebrowser-host: "), result.m_error.constData());
        QVERIFY2(result.m_error.endsWith(host::UsageText().toUtf8()), result.m_error.constData());
    }

    void helpIsPrintedOnStandardOutput()
    {
        const Result result = RunHost(Arguments({"--help"}));
        QCOMPARE(result.m_status, 0);
        QCOMPARE(result.m_out, host::HelpText().toUtf8());
    }

    void aPictureOfTheWindowIsWritten_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("default") << QSize(1100, 720);
        QTest::newRow("larger than the screen") << QSize(2500, 1300);
        QTest::newRow("small") << QSize(200, 100);
        QTest::newRow("a pixel") << QSize(1, 1);
    }

    void aPictureOfTheWindowIsWritten()
    {
        QFETCH(QSize, size);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("window"));
        QStringList arguments = {QStringLiteral("--screenshot"), path};
        if (size != QSize(1100, 720))
            arguments << QStringLiteral("--size") << QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
        const Result result = RunHost(arguments);
        QCOMPARE(result.m_status, 0);
        QCOMPARE(result.m_out, QByteArray());
        const QImage picture(path, "png");
        QCOMPARE(picture.size(), size);
    }

    void thePictureShowsTheSearch()
    {
        QTemporaryDir folder;
        const QString all = folder.filePath(QStringLiteral("all.png"));
        const QString found = folder.filePath(QStringLiteral("found.png"));
        QCOMPARE(RunHost({QStringLiteral("--screenshot"), all}).m_status, 0);
        const Result result = RunHost({QStringLiteral("--screenshot"), found, QStringLiteral("--search"),
                                       QStringLiteral("moir"), QStringLiteral("--rows")});
        QCOMPARE(result.m_status, 0);
        QCOMPARE(NamesOf(result), QByteArrayList() << "Moir\xc3\xa9");
        // One row is left, so the list below it is empty and the scroll bar is gone.
        const QRect lowerList(0, 150, 300, 120);
        QVERIFY(!IsPlain(QImage(all).copy(lowerList)));
        QVERIFY(IsPlain(QImage(found).copy(lowerList)));
    }

    void thePictureHasThePixelsOfADenseScreen_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::newRow("1") << 1.0;
        QTest::newRow("1.5") << 1.5;
        QTest::newRow("2") << 2.0;
    }

    void thePictureHasThePixelsOfADenseScreen()
    {
        QFETCH(double, ratio);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("window.png"));
        const QStringList arguments = {QStringLiteral("--screenshot"), path, QStringLiteral("--size"),
                                       QStringLiteral("400x300")};
        QCOMPARE(RunHost(arguments, QString::number(ratio)).m_status, 0);
        QCOMPARE(QImage(path).size(), QSize(400, 300) * ratio);
    }

    void aPictureThatCannotBeWrittenIsAnError()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("missing/x.png"));
        const Result result = RunHost({QStringLiteral("--rows"), QStringLiteral("--screenshot"), path});
        QCOMPARE(result.m_status, 1);
        QCOMPARE(result.m_out, QByteArray());
        QVERIFY2(result.m_error.contains(path.toLocal8Bit() + ": "), result.m_error.constData());
    }

private:
    /// The index of the line that is the host's own; the toolkit may have said something before.
    static int ErrorLine(const Result& in_result) { return static_cast<int>(in_result.m_error.split('\n').size()) - 2; }

    static bool IsPlain(const QImage& in_image)
    {
        for (int y = 0; y < in_image.height(); ++y)
            for (int x = 0; x < in_image.width(); ++x)
                if (in_image.pixel(x, y) != in_image.pixel(0, 0))
                    return false;
        return true;
    }
};

NODEBROWSER_TEST_MAIN(TestHostProgram)
#include "test_hostprogram.moc"
