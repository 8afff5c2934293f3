/// Every difference between the toolkit's versions, each as one named function. No other file tests a version.
#pragma once

#include <QDropEvent>
#include <QMouseEvent>
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

/// How far the wheel turned: above 0 away from the user. A wheel that only turned sideways counts by that.
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

/// What takes the pointer's events of a shown window while something is dragged: a drag listens to windows, not to
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

/// False for the events that only say that a gesture on a touch pad begins or ends: Qt 4 has none of them.
inline bool IsWheelTurn(const QWheelEvent& in_event)
{
#if QT_VERSION >= 0x050C00
    return in_event.phase() == Qt::NoScrollPhase || !in_event.angleDelta().isNull();
#else
    Q_UNUSED(in_event);
    return true;
#endif
}

/// Device pixels per widget pixel of a picture.
inline double PixelRatio(const QPixmap& in_pixmap)
{
#if QT_VERSION >= 0x050600
    return in_pixmap.devicePixelRatioF();
#else
    Q_UNUSED(in_pixmap);
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

} // namespace qtcompat
