// SPDX-License-Identifier: MIT
/// Measures the browser, what could be written in its place, and the limits of both, on libraries of several sizes.
///
/// Prints a table with tabs between its columns, one row per metric and size: "nodebrowser" is the browser, "listview" a
/// QListView over a sorting proxy, "treewidget" a QTreeWidget that hides its items, "limit" the least that would do. All
/// of a row is measured in turns, on the same names. The files searching, scrolling, opening and changing say what each
/// metric is.

#include "changing.h"
#include "content.h"
#include "count.h"
#include "opening.h"
#include "options.h"
#include "scrolling.h"
#include "searching.h"
#include "table.h"

#include <QApplication>

#include <cstdio>

namespace
{

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
    if (options.m_count.isEmpty())
        PrintHeader();
    if (options.m_names.empty())
    {
        for (const std::size_t size : options.m_sizes)
            if (!Run(options, MakeItems(size)))
                return 1;
        return 0;
    }
    const std::vector<NamedItem> items = ReadItems(options.m_names);
    if (items.empty())
    {
        std::fprintf(stderr, "%s: no items could be read\n", options.m_names.c_str());
        return 1;
    }
    return Run(options, items) ? 0 : 1;
}
