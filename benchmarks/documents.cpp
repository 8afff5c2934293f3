// SPDX-License-Identifier: MIT
/// Measures a library on disk that is one large document, in the window of the reference host: opening it, what it
/// takes of memory, renaming an item, and saving that.
///
/// Prints a table with tabs between its columns: what was measured, the figure, what it is compared with, the ratio of
/// the two, and the highest that this is meant to be. All times are those that pass. Each step is measured several
/// times, in turns with what it is compared with, and the shortest counts: what else runs on the machine only makes it
/// longer. A gap is the longest time, of all rounds, that the thread of the user interface did not answer; its work is
/// the longest processor time of that thread between two answers.

#include "datamodel/itemlibrarymodifier.h"
#include "heartbeat.h"
#include "host/librarybrowser.h"
#include "host/mainwindow.h"
#include "measure.h"
#include "memorymodel/datalayer.h"
#include "workspace/files.h"
#include "workspace/workspace.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <pugixml.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

namespace
{

const int gRounds = 7;
const int gAllTab = 2; // definitions that nothing implements are on this one only

double Milliseconds(const std::function<void()>& in_step)
{
    QElapsedTimer clock;
    clock.start();
    in_step();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// A definition as libraries have them, again and again under other names.
std::string MakeDocument(int in_count)
{
    std::string text = "<?xml version=\"1.0\"?>\n<materialx version=\"1.39\">\n";
    for (int i = 0; i < in_count; ++i)
    {
        const std::string number = std::to_string(i);
        text.append("  <nodedef name=\"ND_node").append(number).append("_color3\" node=\"node").append(number);
        text.append("\" nodegroup=\"group").append(std::to_string(i % 50)).append("\">\n");
        text.append("    <input name=\"in\" type=\"color3\" value=\"0.0, 0.0, 0.0\" />\n");
        text.append("    <output name=\"out\" type=\"color3\" />\n  </nodedef>\n");
    }
    text.append("</materialx>\n");
    return text;
}

struct Least
{
    void Add(double in_value) { m_value = m_count++ == 0 ? in_value : std::min(m_value, in_value); }

    double m_value = 0;
    int m_count = 0;
};

struct Gap
{
    void Add(Heartbeat& io_heart)
    {
        io_heart.Beat();
        m_pause = std::max(m_pause, io_heart.GetLongestPause());
        m_work = std::max(m_work, io_heart.GetLongestWork());
    }

    double m_pause = 0;
    double m_work = 0;
};

void Print(const char* in_metric, double in_figure, const char* in_unit, double in_bound, const char* in_limit)
{
    if (in_bound > 0)
        std::printf("%s\t%.1f\t%s\t%.1f\t%.2f\t%s\n", in_metric, in_figure, in_unit, in_bound, in_figure / in_bound,
                    in_limit);
    else
        std::printf("%s\t%.1f\t%s\t\t\t%s\n", in_metric, in_figure, in_unit, in_limit);
    std::fflush(stdout);
}

class Bench
{
public:
    explicit Bench(int in_count)
        : m_count(in_count), m_text(MakeDocument(in_count)), m_path(m_folder.filePath(QStringLiteral("large.mtlx")))
    {
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) || file.write(m_text.data(), static_cast<qint64>(m_text.size())) < 0)
            qFatal("The document cannot be written.");
    }

    void Run()
    {
        std::printf("metric\tfigure\tunit\tcompared with\tratio\tlimit\n");
        std::printf("bytes\t%zu\t\t\t\t\n", m_text.size());
        MeasureOpening();
        MeasureChanging();
    }

private:
    void MeasureOpening()
    {
        Least parsing;
        Least opening;
        Gap gap;
        Least build;
        for (int round = 0; round < gRounds; ++round)
        {
            pugi::xml_document document;
            parsing.Add(Milliseconds([&] { document.load_buffer(m_text.data(), m_text.size()); }));
            document.reset();
            m_window.reset();
            m_layer.reset();
            m_layer = std::make_unique<memorymodel::DataLayer>();
            m_window = std::make_unique<host::MainWindow>(*m_layer, m_layer->AddLibrary(std::string()));
            m_window->resize(1100, 720);
            m_window->GetBrowser().SelectTab(gAllTab);
            m_window->show();
            Settle();
            const std::size_t before = HeapBytes();
            QElapsedTimer clock;
            clock.start();
            Heartbeat heart;
            QString error;
            if (!m_window->Open(m_path, &error))
                qFatal("%s", qPrintable(error));
            while (m_window->GetBrowser().GetRowCount() == 0)
                QCoreApplication::processEvents();
            opening.Add(static_cast<double>(clock.nsecsElapsed()) / 1e6);
            gap.Add(heart);
            Settle();
            m_perItem =
                (static_cast<double>(HeapBytes()) - static_cast<double>(before) - static_cast<double>(m_text.size())) /
                m_count;
            CNodeBrowser other(eConfigNodeBrowser);
            build.Add(Milliseconds([&] { other.SetItemLibrary(m_window->GetLibrary().GetAccessor()); }));
        }
        Print("open", opening.m_value, "ms", parsing.m_value, "4");
        Print("open gap", gap.m_pause, "ms", 0, "50");
        Print("open gap, work", gap.m_work, "ms", 0, "50");
        Print("the browser's own build", build.m_value, "ms", 0, "");
        Print("memory", m_perItem, "bytes/item", 0, "1024");
    }

    void MeasureChanging()
    {
        memorymodel::Library& library = m_window->GetLibrary();
        const auto item = library.GetItems()[static_cast<std::size_t>(m_count / 2)];
        const vireo::datamodel::ItemLibraryModifierAccessor modifier(library.GetAccessor());
        Least renaming;
        Least writing;
        Least saving;
        Gap gap;
        for (int round = 0; round < gRounds; ++round)
        {
            const std::string name = "renamed" + std::to_string(round);
            renaming.Add(Milliseconds([&] { library.Rename(item, name); }));
            Settle();
            const QString other = m_folder.filePath(QStringLiteral("written"));
            QFile::remove(other);
            writing.Add(Milliseconds([&] { workspace::WriteNewFile(QFile::encodeName(other), m_text); }));
            Heartbeat heart;
            bool isWritten = false;
            saving.Add(Milliseconds([&] {
                if (!modifier.CommitToDisk(isWritten, nullptr, false, nexa4::UID_Null()) || !isWritten)
                    qFatal("The rename could not be saved.");
            }));
            gap.Add(heart);
            Settle();
        }
        Print("rename", renaming.m_value, "ms", 0, "");
        Print("save", saving.m_value, "ms", writing.m_value, "2");
        Print("save gap", gap.m_pause, "ms", 0, "50");
        Print("save gap, work", gap.m_work, "ms", 0, "50");
    }

    const int m_count;
    const std::string m_text;
    const QTemporaryDir m_folder{QStringLiteral("bench-XXXXXX")}; // here: not every /tmp is on a disk
    const QString m_path;
    std::unique_ptr<memorymodel::DataLayer> m_layer;
    std::unique_ptr<host::MainWindow> m_window;
    double m_perItem = 0;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    const int count = argc > 1 ? std::atoi(argv[1]) : 100000;
    if (argc > 2 || count < 2)
    {
        std::fputs("usage: nodebrowser-bench-documents [ITEMS]\n", stderr);
        return 2;
    }
    Bench(count).Run();
    return 0;
}
