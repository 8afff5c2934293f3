// SPDX-License-Identifier: MIT
/// The command line.
#pragma once

#include <QString>
#include <QStringList>

#include <cstddef>
#include <string>
#include <vector>

extern const char* const gUsage;

struct Options
{
    std::vector<std::size_t> m_sizes; ///< of the libraries; empty for the size of the file
    std::string m_names;              ///< the file with the names; empty for made-up names
    QString m_count;                  ///< the step to run once instead of the table; empty for the table
};

/// \param in_arguments the program's name first
/// \return false for unknown arguments
bool ParseOptions(const QStringList& in_arguments, Options& out_options);
