// SPDX-License-Identifier: MIT
/// Every difference between the toolkit's versions, each as one named function. No other room tests a version.
#pragma once

#include <QCoreApplication>
#include <QDropEvent>
#include <QMouseEvent>
#include <QObject>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPixmap>
#include <QPoint>
#include <QWheelEvent>
#include <QtGlobal>

namespace qtcompat
{

/// Where the pointer is, in the receiving widget's pixels.
inline QPoint EventPosition(const QMouseEvent& in_event)
{
#if QT_VERSION >= 0x060000
    return in_event.position().toPoint();
#else
    return in_event.pos();
#endif
}

/// Where the pointer is, in screen pixels.
inline QPoint EventGlobalPosition(const QMouseEvent& in_event)
{
#if QT_VERSION >= 0x060000
    return in_event.globalPosition().toPoint();
#else
    return in_event.globalPos();
#endif
}

/// Where the pointer is, in the receiving widget's pixels.
inline QPoint EventPosition(const QWheelEvent& in_event)
{
#if QT_VERSION >= 0x050E00
    return in_event.position().toPoint();
#else
    return in_event.pos();
#endif
}

/// Where something is dropped, in the receiving widget's pixels.
inline QPoint EventPosition(const QDropEvent& in_event)
{
#if QT_VERSION >= 0x060000
    return in_event.position().toPoint();
#else
    return in_event.pos();
#endif
}

/// How far the wheel turned: above 0 means away from the user. Without a vertical turn the horizontal one counts.
inline int WheelDelta(const QWheelEvent& in_event)
{
#if QT_VERSION >= 0x060000
    const QPoint delta = in_event.angleDelta();
    return delta.y() != 0 ? delta.y() : delta.x();
#elif QT_VERSION >= 0x050000
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return in_event.delta();
    QT_WARNING_POP
#else
    return in_event.delta();
#endif
}

/// False for an event that only begins or ends a gesture on a touch pad. Qt 4 has no such events.
inline bool IsWheelTurn(const QWheelEvent& in_event)
{
#if QT_VERSION >= 0x050C00
    return in_event.phase() == Qt::NoScrollPhase || !in_event.angleDelta().isNull();
#else
    Q_UNUSED(in_event);
    return true;
#endif
}

/// How many device pixels of a pixmap make one widget pixel.
inline double PixelRatio(const QPixmap& in_pixmap)
{
#if QT_VERSION >= 0x050600
    return in_pixmap.devicePixelRatioF();
#else
    Q_UNUSED(in_pixmap);
    return 1.0;
#endif
}

/// How many device pixels make one pixel of a widget on the screen or the picture that a paint event of it paints on.
/// Ask in the paint event, before there is a painter. On Qt 4 the two are always the same.
inline double PaintedRatio(QPaintDevice& in_widget)
{
#if QT_VERSION >= 0x050600
    // The widget itself answers for its screen only.
    const QPainter painter(&in_widget);
    const QPaintEngine* const engine = painter.paintEngine();
    return engine ? engine->paintDevice()->devicePixelRatioF() : in_widget.devicePixelRatioF();
#else
    Q_UNUSED(in_widget);
    return 1.0;
#endif
}

inline void SetPixelRatio(QPixmap& out_pixmap, double in_ratio)
{
#if QT_VERSION >= 0x050000
    out_pixmap.setDevicePixelRatio(in_ratio);
#else
    Q_UNUSED(out_pixmap);
    Q_UNUSED(in_ratio);
#endif
}

/// Lets a program follow the pixel ratio of its screens, with icons that have as many pixels as a screen shows. Call it
/// before there is an application object. Qt 6 always does it, Qt 4 never.
inline void EnableDenseScreens()
{
#if QT_VERSION >= 0x050600 && QT_VERSION < 0x060000
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

/// Calls a slot whenever fonts are added to the system or removed. Qt 4 does not notify of that.
/// \param in_slot in the string form, SLOT(...)
inline void ConnectFontsChanged(QObject& in_receiver, const char* in_slot)
{
#if QT_VERSION >= 0x050000
    QObject::connect(QCoreApplication::instance(), SIGNAL(fontDatabaseChanged()), &in_receiver, in_slot);
#else
    Q_UNUSED(in_receiver);
    Q_UNUSED(in_slot);
#endif
}

} // namespace qtcompat
