// SPDX-License-Identifier: MIT
#include "host/theme.h"

#include "host/settings.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>

namespace host
{

namespace
{

QString Key()
{
    return QStringLiteral("theme");
}

/// As it is kept in the settings.
QString WordFor(eTheme in_theme)
{
    switch (in_theme)
    {
    case eTheme::eLight:
        return QStringLiteral("light");
    case eTheme::eDark:
        return QStringLiteral("dark");
    case eTheme::eSystem:
        break;
    }
    return QStringLiteral("system");
}

} // namespace

QPalette DarkPalette()
{
    QPalette palette(QColor(69, 69, 69), QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(42, 42, 42));
    palette.setColor(QPalette::ToolTipBase, QColor(69, 69, 69));
    palette.setColor(QPalette::Highlight, QColor(48, 140, 198));
    return palette;
}

eTheme GetTheme()
{
    const QString word = Settings().value(Key()).toString();
    for (const eTheme theme : {eTheme::eLight, eTheme::eDark})
        if (word == WordFor(theme))
            return theme;
    return eTheme::eSystem;
}

void SetTheme(eTheme in_theme)
{
    Settings().setValue(Key(), WordFor(in_theme));
    switch (in_theme)
    {
    case eTheme::eSystem:
        QApplication::setPalette(QPalette());
        break;
    case eTheme::eLight:
        QApplication::setPalette(QPalette(QColor(239, 239, 239)));
        break;
    case eTheme::eDark:
        QApplication::setPalette(DarkPalette());
        break;
    }
}

void ApplyTheme()
{
    if (GetTheme() != eTheme::eSystem)
        SetTheme(GetTheme());
}

ThemeMenu::ThemeMenu(QWidget* in_parent) : QMenu(tr("&Theme"), in_parent)
{
    QActionGroup* const group = new QActionGroup(this);
    const auto add = [this, group](const QString& in_text, eTheme in_theme) {
        QAction* const action = addAction(in_text);
        action->setCheckable(true);
        action->setChecked(GetTheme() == in_theme);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [in_theme] { SetTheme(in_theme); });
    };
    add(tr("&System"), eTheme::eSystem);
    add(tr("&Light"), eTheme::eLight);
    add(tr("&Dark"), eTheme::eDark);
}

} // namespace host
