// SPDX-License-Identifier: MIT
/// The table that is printed: one row per metric and size, medians only.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

enum eColumn : std::size_t
{
    eColumnBrowser,
    eColumnListView,
    eColumnTreeWidget,
    eColumnLowerBound,
    eColumnOneBuild, ///< the lower bound of a step that builds the list once
    eColumnGit,      ///< the git program
    eColumnCount,
};

/// The measured values of one row, by column. A column that does not apply has none.
using Samples = std::array<std::vector<double>, eColumnCount>;

/// One row's figures.
using Figures = std::array<std::optional<double>, eColumnCount>;

Figures Medians(const Samples& in_samples);

/// The largest figure of each column in several rows.
Figures Largest(const std::vector<Figures>& in_rows);

void PrintHeader();
void PrintRow(const char* in_metric, std::size_t in_items, const Figures& in_figures);
