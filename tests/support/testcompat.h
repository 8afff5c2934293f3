// SPDX-License-Identifier: MIT
/// Every difference between the toolkit's versions that only tests meet.
#pragma once

#include <QPixmap>
#include <QPoint>
#include <QString>
#include <QValidator>
#include <QWheelEvent>
#include <QWidget>
#include <QtGlobal>

#if QT_VERSION >= 0x050000
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#endif

#if QT_VERSION < 0x060000
#include <QRegExpValidator>
#endif

#include <memory>

namespace testcompat
{

/// One turn of a wheel as a widget receives it, for whoever stands in for a person at the mouse.
inline QWheelEvent MakeWheelEvent(const QPoint& in_position, const QPoint& in_globalPosition, int in_delta,
                                  Qt::Orientation in_orientation)
{
#if QT_VERSION >= 0x050C00
    const QPoint delta = in_orientation == Qt::Vertical ? QPoint(0, in_delta) : QPoint(in_delta, 0);
    return QWheelEvent(QPointF(in_position), QPointF(in_globalPosition), QPoint(), delta, Qt::NoButton, Qt::NoModifier,
                       Qt::NoScrollPhase, false);
#else
    return QWheelEvent(in_position, in_globalPosition, in_delta, Qt::NoButton, Qt::NoModifier, in_orientation);
#endif
}

/// widgets, where the toolkit tells the two apart.
inline QObject* DragEventReceiver(QWidget& in_window)
{
#if QT_VERSION >= 0x050000
    return in_window.windowHandle();
#else
    return &in_window;
#endif
}

/// Whether windows can be brought to the front. Where they cannot, each try leads to a warning.
inline bool CanRaiseWindows()
{
#if QT_VERSION >= 0x050000
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
#else
    return true;
#endif
}

/// What the screen shows of a window at this moment; asks for no painting.
inline QPixmap ScreenPicture(const QWidget& in_window)
{
#if QT_VERSION >= 0x050000
    return QGuiApplication::primaryScreen()->grabWindow(in_window.winId());
#else
    return QPixmap::grabWindow(in_window.winId());
#endif
}

/// The toolkit's own validator of texts that match a pattern in the classic notation; null where it has none any more.
inline std::unique_ptr<QValidator> MakePatternValidator(const QString& in_pattern)
{
#if QT_VERSION >= 0x060000
    Q_UNUSED(in_pattern);
    return nullptr;
#else
    return std::unique_ptr<QValidator>(new QRegExpValidator(QRegExp(in_pattern), nullptr));
#endif
}

/// How often an open menu grabs the keyboard again when the menu beside it closes.
inline int KeyboardGrabsAfterSubmenu()
{
#if QT_VERSION >= 0x060000
    return 2;
#else
    return 1;
#endif
}

} // namespace testcompat
