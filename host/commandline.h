// SPDX-License-Identifier: MIT
/// The command line of the reference host.
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

namespace host
{

struct CommandLine
{
    bool m_help = false;
    QString m_library; ///< a file or a folder; empty for the embedded sample
    int m_tab = 0;     ///< as the browser numbers its tabs: nodes, types, all
    bool m_hasTab = false;
    QString m_search;
    bool m_rows = false;
    QString m_screenshot; ///< the file to write; empty for none
    QSize m_size = QSize(1100, 720);
    bool m_hasSize = false;

    /// Whether the host does its work and ends, without anybody looking at a window.
    bool IsUnattended() const { return m_rows || !m_screenshot.isEmpty(); }
};

/// Reads a command line. Options may be written "--size 640x480" or "--size=640x480"; of an option that is given more
/// than once the last one counts.
/// \param in_arguments the program's name and what follows it
/// \param out_commandLine defaults for what is not given; unspecified after an error
/// \return what is wrong with it in one sentence, or an empty text
QString ParseCommandLine(const QStringList& in_arguments, CommandLine* out_commandLine);

/// One line that names all options.
QString UsageText();

/// What --help prints.
QString HelpText();

} // namespace host
