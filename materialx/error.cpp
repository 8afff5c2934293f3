// SPDX-License-Identifier: MIT
#include "materialx/error.h"

namespace materialx
{

QString Error::GetText() const
{
    return QStringLiteral("%1:%2: %3").arg(m_file, QString::number(m_line), m_reason.simplified());
}

} // namespace materialx
