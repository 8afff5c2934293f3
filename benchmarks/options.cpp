// SPDX-License-Identifier: MIT
#include "options.h"

const char* const gUsage =
    "usage: nodebrowser-bench [--items N,N,...] [--names FILE] [--count STEP]\n"
    "\n"
    "  --items N,N,...  sizes of the libraries; without it the file's size, or 1000,10000,100000, or 10000 to count\n"
    "  --names FILE     names from a file, repeated or cut to each size, instead of made-up ones:\n"
    "                   an item a line, its name, a tab, its tags joined by \";\"\n"
    "  --count STEP     no table: prepares everything and runs a step once inside the function CountedStep, for a "
    "tool\n"
    "                   that counts what happens there: key, open, rename, onebuild, scroll, scroll-list\n"
    "\n"
    "Each figure is the median of at least 20 repetitions, in milliseconds of processor time; memory in bytes an "
    "item;\n"
    "\"-\" where a column does not apply. Libraries of more than 100000 items are measured without the list view and\n"
    "the tree widget.\n";

namespace
{

/// Numbers above 0 with commas between them.
bool ParseSizes(const QString& in_text, std::vector<std::size_t>& out_sizes)
{
    const QStringList sizes = in_text.split(QLatin1Char(','));
    for (const QString& size : sizes)
        out_sizes.push_back(size.toUInt());
    for (const std::size_t size : out_sizes)
        if (size == 0)
            return false;
    return true;
}

bool ParseOption(const QString& in_name, const QString& in_value, Options& out_options)
{
    if (in_name == QLatin1String("--items"))
        return out_options.m_sizes.empty() && ParseSizes(in_value, out_options.m_sizes);
    if (in_name == QLatin1String("--names"))
    {
        out_options.m_names = in_value.toLocal8Bit().constData();
        return !out_options.m_names.empty();
    }
    out_options.m_count = in_value;
    const QStringList steps =
        QString(QLatin1String("key open rename onebuild scroll scroll-list")).split(QLatin1Char(' '));
    return in_name == QLatin1String("--count") && steps.contains(in_value);
}

} // namespace

bool ParseOptions(const QStringList& in_arguments, Options& out_options)
{
    if (in_arguments.size() % 2 == 0)
        return false;
    for (int i = 1; i < in_arguments.size(); i += 2)
        if (!ParseOption(in_arguments.at(i), in_arguments.at(i + 1), out_options))
            return false;
    if (out_options.m_sizes.empty() && out_options.m_names.empty())
        out_options.m_sizes = out_options.m_count.isEmpty() ? std::vector<std::size_t>{1000, 10000, 100000}
                                                            : std::vector<std::size_t>{10000};
    return true;
}
