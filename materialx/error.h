// SPDX-License-Identifier: MIT
/// Why something on disk could not be read.
#pragma once

#include "materialx/export.h"

#include <QString>

namespace materialx
{

struct Error
{
    QString m_file; ///< the opened path, or one below it
    qint64 m_line;  ///< from 1; 1 too when the file or folder as a whole is at fault
    QString m_reason;

    /// "FILE:LINE: reason".
    MATERIALX_EXPORT QString GetText() const;
};

} // namespace materialx
