// SPDX-License-Identifier: MIT
#include "host/settings.h"

namespace host
{

Settings::Settings()
    : QSettings(QSettings::defaultFormat(), QSettings::UserScope, QStringLiteral("nodebrowser"),
                QStringLiteral("nodebrowser"))
{
}

} // namespace host
