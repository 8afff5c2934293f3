// SPDX-License-Identifier: MIT
#include "importers/materialxcontent.h"

namespace importers
{

QString MaterialXError::GetText() const
{
    return QStringLiteral("%1:%2: %3").arg(m_file, QString::number(m_line), m_reason.simplified());
}

} // namespace importers
