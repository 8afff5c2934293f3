// SPDX-License-Identifier: MIT
#include "options.h"

const char* const gUsage =
    "usage: nodebrowser-bench [--items N,N,...] [--names FILE] [--count key|open]\n"
    "\n"
    "  --items N,N,...  sizes of the libraries; without it 1000,10000,100000, or 10000 to count, or the file's size\n"
    "  --names FILE     names from a file instead of made-up ones: an item a line, its name, a tab, its tags joined "
    "by\n"
    "                   \";\". The file is repeated or cut to each size\n"
    "  --count STEP     no table: prepares everything and runs one key stroke, or opens the library once, inside of "
    "the\n"
    "                   function CountedStep, for a tool that counts what happens there\n"
    "\n"
    "Each figure is the median of at least 20 repetitions, in milliseconds; memory in bytes an item; \"-\" where a\n"
    "column does not apply. Libraries of more than 100000 items are measured without the list view and the tree "
    "widget.\n";

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
    return in_name == QLatin1String("--count") &&
           (in_value == QLatin1String("key") || in_value == QLatin1String("open"));
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
