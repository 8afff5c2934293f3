// SPDX-License-Identifier: MIT
/// Light and dark.
#pragma once

#include <QMenu>
#include <QPalette>

namespace host
{

enum class eTheme
{
    eSystem, ///< as the desktop has it
    eLight,
    eDark,
};

/// A palette as dark desktops have it.
QPalette DarkPalette();

/// The theme that was chosen last; at first that of the system.
eTheme GetTheme();
/// Gives the application the colours of a theme, from now on and when it is started again.
void SetTheme(eTheme in_theme);
/// Gives the application the colours of the theme that was chosen last.
void ApplyTheme();

/// The menu that chooses the theme.
class ThemeMenu : public QMenu
{
    Q_OBJECT

public:
    explicit ThemeMenu(QWidget* in_parent);
};

} // namespace host
