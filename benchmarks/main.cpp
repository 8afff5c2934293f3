/// Measures the browser on libraries of several sizes and prints one tab-separated row per metric and size.

#include "measure.h"
#include "memorymodel/datalayer.h"
#include "names.h"
#include "nodebrowser/nodebrowser.h"

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QStringList>
#include <QTabBar>

#include <cstdio>
#include <memory>

using memorymodel::NewItem;

namespace
{

const int gRepetitions = 20;
const int gWheelStep = 72;

struct Options
{
    std::vector<std::size_t> m_sizes = {1000, 10000, 100000};
    std::string m_names;
};

bool ParseOptions(const QStringList& in_arguments, Options& out_options)
{
    for (int i = 1; i + 1 < in_arguments.size(); i += 2)
    {
        const QString& value = in_arguments.at(i + 1);
        if (in_arguments.at(i) == QLatin1String("--names"))
        {
            out_options.m_names = value.toLocal8Bit().constData();
        }
        else if (in_arguments.at(i) == QLatin1String("--items"))
        {
            out_options.m_sizes.clear();
            const QStringList sizes = value.split(QLatin1Char(','));
            for (const QString& size : sizes)
                out_options.m_sizes.push_back(size.toUInt());
        }
        else
        {
            return false;
        }
    }
    for (const std::size_t size : out_options.m_sizes)
        if (size == 0)
            return false;
    return in_arguments.size() % 2 == 1;
}

void Print(const char* in_metric, std::size_t in_items, double in_value)
{
    std::printf("%s\t%zu\t%.3f\n", in_metric, in_items, in_value);
    std::fflush(stdout);
}

/// Half compounds, half solvers, in the order of the names given.
void Fill(memorymodel::Library& in_library, const std::vector<NamedItem>& in_items)
{
    bool compound = false;
    for (const NamedItem& item : in_items)
    {
        compound = !compound;
        in_library.Add((compound ? NewItem::Compound(item.m_name) : NewItem::Solver(item.m_name)).Tags(item.m_tags));
    }
}

std::unique_ptr<CNodeBrowser> ShowBrowser()
{
    std::unique_ptr<CNodeBrowser> browser(new CNodeBrowser(eConfigNodeBrowser));
    browser->resize(300, 800);
    TimeToFrame(*browser, [&browser] { browser->show(); });
    return browser;
}

/// One letter, growing words, two words, a tag only, nothing found, and back to everything.
double TimeKeys(CNodeBrowser& in_browser)
{
    static const char* const texts[] = {"b",     "bl",       "ble",        "blend",  "blend c", "blend co",
                                        "noise", "noise 3d", "procedural", "zzzzzz", "world"};
    QLineEdit* const field = in_browser.findChild<QLineEdit*>();
    std::vector<double> times;
    for (int round = 0; round < gRepetitions; ++round)
        for (const char* const text : texts)
            times.push_back(TimeToFrame(in_browser, [field, text] { field->setText(QString::fromLatin1(text)); }));
    TimeToFrame(in_browser, [field] { field->clear(); });
    return Median(times);
}

/// One wheel step after the other, from the top again at the bottom. 0 for a list that is too short to scroll.
double TimeScrolling(CNodeBrowser& in_browser)
{
    QScrollBar* const bar = in_browser.findChild<QScrollBar*>();
    const int positions = bar->maximum() / gWheelStep + 1;
    if (positions < 2)
        return 0;
    std::vector<double> times;
    for (int step = 1; step <= 10 * gRepetitions; ++step)
        times.push_back(TimeToFrame(in_browser, [&] { bar->setValue(gWheelStep * (step % positions)); }));
    return Median(times);
}

void Measure(const std::vector<NamedItem>& in_items)
{
    const std::size_t count = in_items.size();
    memorymodel::DataLayer layer;
    memorymodel::Library& library = layer.AddLibrary("Bench");
    Fill(library, in_items);

    std::vector<double> opens;
    for (int round = 0; round < gRepetitions; ++round)
    {
        const std::unique_ptr<CNodeBrowser> browser = ShowBrowser();
        opens.push_back(
            TimeToFrame(*browser, [&browser, &library] { browser->SetItemLibrary(library.GetAccessor()); }));
    }
    Print("open", count, Median(opens));

    const std::unique_ptr<CNodeBrowser> browser = ShowBrowser();
    browser->findChild<QTabBar*>()->setCurrentIndex(2);
    const std::size_t before = HeapBytes();
    TimeToFrame(*browser, [&browser, &library] { browser->SetItemLibrary(library.GetAccessor()); });
    Print("memory", count, static_cast<double>(HeapBytes() - before) / static_cast<double>(count));
    Print("key", count, TimeKeys(*browser));
    Print("scroll", count, TimeScrolling(*browser));
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Options options;
    if (!ParseOptions(QCoreApplication::arguments(), options))
    {
        std::fprintf(stderr, "usage: nodebrowser-bench [--items N,N,...] [--names FILE]\n");
        return 2;
    }
    std::printf("metric\titems\tnodebrowser\n");
    if (options.m_names.empty())
    {
        for (const std::size_t size : options.m_sizes)
            Measure(MakeItems(size));
        return 0;
    }
    const std::vector<NamedItem> items = ReadItems(options.m_names);
    if (items.empty())
    {
        std::fprintf(stderr, "%s: no items could be read\n", options.m_names.c_str());
        return 1;
    }
    Measure(items);
    return 0;
}
