// SPDX-License-Identifier: MIT
/// Where the host keeps what it remembers.
#pragma once

#include <QSettings>

namespace host
{

/// The user's settings, in the folder that QSettings::setPath() sets, under "nodebrowser" in the settings' default
/// format.
class Settings : public QSettings
{
public:
    Settings();
};

} // namespace host
