// SPDX-License-Identifier: MIT
/// Measures the browser, two peers made of the toolkit's item views, and lower bounds, on libraries of several sizes.
///
/// Prints a table with tabs between its columns, one row per metric and size. "nodebrowser" is the browser,
/// "listview" a QListView over a sorting proxy, "treewidget" a QTreeWidget that hides its items. "lowerbound" and
/// "onebuild" are lower bounds: the time of the work that no implementation can avoid. All columns of a row are
/// measured in turns, on the same names; "git" is the git program, in a folder with as many documents. The headers
/// searching.h, scrolling.h, opening.h, changing.h and gitstates.h define the metrics.

#include "changing.h"
#include "content.h"
#include "count.h"
#include "gitstates.h"
#include "opening.h"
#include "options.h"
#include "scrolling.h"
#include "searching.h"
#include "table.h"

#include <QApplication>

#include <cstdio>

namespace
{

/// More documents than this would take minutes to write.
const std::size_t gLargestFolder = 10000;

bool Measure(const std::vector<NamedItem>& in_items)
{
    Content content(in_items);
    if (!MeasureKeys(content, in_items))
        return false;
    MeasureScrolling(content);
    MeasureOpening(content);
    MeasureStates(content);
    MeasureBurst(content);
    MeasureMemory(content);
#if defined(BENCHMARK_WORKSPACE)
    if (in_items.size() <= gLargestFolder)
        return MeasureGitStates(in_items.size());
#endif
    return true;
}

bool Run(const Options& in_options, const std::vector<NamedItem>& in_items)
{
    if (in_options.m_count.isEmpty())
        return Measure(in_items);
    CountStep(Content(in_items), in_options.m_count);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0);
    Options options;
    if (!ParseOptions(QCoreApplication::arguments(), options))
    {
        std::fputs(gUsage, stderr);
        return 2;
    }
    const std::vector<NamedItem> named = ReadItems(options.m_names);
    if (named.empty() && !options.m_names.empty())
    {
        std::fprintf(stderr, "%s: no items could be read\n", options.m_names.c_str());
        return 1;
    }
    if (options.m_sizes.empty())
        options.m_sizes.push_back(named.size());
    if (options.m_count.isEmpty())
        PrintHeader();
    for (const std::size_t size : options.m_sizes)
        if (!Run(options, options.m_names.empty() ? MakeItems(size) : RepeatItems(named, size)))
            return 1;
    return 0;
}
