// SPDX-License-Identifier: MIT
#include "table.h"

#include <algorithm>
#include <cstdio>

namespace
{

std::optional<double> Median(std::vector<double> in_values)
{
    if (in_values.empty())
        return std::nullopt;
    const auto middle = in_values.begin() + static_cast<std::ptrdiff_t>(in_values.size() / 2);
    std::nth_element(in_values.begin(), middle, in_values.end());
    return *middle;
}

} // namespace

Figures Medians(const Samples& in_samples)
{
    Figures figures;
    std::transform(in_samples.begin(), in_samples.end(), figures.begin(), Median);
    return figures;
}

Figures Largest(const std::vector<Figures>& in_rows)
{
    Figures largest;
    for (const Figures& row : in_rows)
        for (std::size_t column = 0; column < largest.size(); ++column)
            largest[column] = std::max(largest[column], row[column]);
    return largest;
}

void PrintHeader()
{
    std::printf("metric\titems\tnodebrowser\tlistview\ttreewidget\tlowerbound\tonebuild\tgit\n");
}

void PrintRow(const char* in_metric, std::size_t in_items, const Figures& in_figures)
{
    std::printf("%s\t%zu", in_metric, in_items);
    for (const std::optional<double>& figure : in_figures)
    {
        if (figure)
            std::printf("\t%.3f", *figure);
        else
            std::printf("\t-");
    }
    std::printf("\n");
    std::fflush(stdout);
}
