// SPDX-License-Identifier: MIT
/// Every difference between the toolkit's versions that only tests meet.
#pragma once

#include <QApplication>
#include <QImage>
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

/// What the events of the mouse arrive at during a drag: the window that the platform has, rather than one of its
/// widgets, where the toolkit tells the two apart.
inline QObject* DragEventReceiver(QWidget& in_window)
{
#if QT_VERSION >= 0x050000
    return in_window.windowHandle();
#else
    return &in_window;
#endif
}

/// Whether the platform has real windows, which can be raised for example.
inline bool HasWindowSystem()
{
#if QT_VERSION >= 0x050000
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
#else
    return true;
#endif
}

/// Whether a drag runs in a loop of the system's own rather than in one of the toolkit's.
inline bool DragsInSystemLoop()
{
#if !defined(Q_OS_WIN)
    return false;
#elif QT_VERSION >= 0x050000
    return QGuiApplication::platformName() == QLatin1String("windows");
#else
    return true;
#endif
}

/// Makes a window the active one for the toolkit, whatever the system says. Qt 6.5 and later have no such thing.
inline void DeclareActive(QWidget& in_window)
{
#if QT_VERSION < 0x060500
    QApplication::setActiveWindow(&in_window);
#else
    Q_UNUSED(in_window);
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

/// Whether a picture, a pixmap or a screen can have more pixels than those that widgets are measured in.
inline bool HasPixelRatios()
{
    return QT_VERSION >= 0x050600;
}

inline void SetPixelRatio(QImage& out_picture, double in_ratio)
{
#if QT_VERSION >= 0x050000
    out_picture.setDevicePixelRatio(in_ratio);
#else
    Q_UNUSED(out_picture);
    Q_UNUSED(in_ratio);
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

/// Waits until the window system has taken in what it was told, where the toolkit talks to it without waiting.
inline void SyncWindowSystem()
{
#if QT_VERSION < 0x050000
    QApplication::syncX();
#endif
}

/// Ends a test, or a row of its data, that has nothing to test with this toolkit.
#if QT_VERSION >= 0x050000
#define TESTCOMPAT_SKIP(in_reason) QSKIP(in_reason)
#else
#define TESTCOMPAT_SKIP(in_reason) QSKIP(in_reason, SkipSingle)
#endif

/// Announces to the application that the fonts of the system have changed, as the toolkit does.
/// \return false where the toolkit announces no such thing
inline bool AnnounceFontChange()
{
#if QT_VERSION >= 0x050000
    return QMetaObject::invokeMethod(QCoreApplication::instance(), "fontDatabaseChanged");
#else
    return false;
#endif
}

/// Drops the messages that a rule picks, from now on. All others go on to the handler that was in place.
inline void DropMessages(bool (*in_rule)(const QString&))
{
    static bool (*rule)(const QString&) = nullptr;
    rule = in_rule;
#if QT_VERSION >= 0x050000
    static QtMessageHandler next = nullptr;
    next = qInstallMessageHandler([](QtMsgType in_type, const QMessageLogContext& in_context, const QString& in_text) {
        if (!rule(in_text))
            next(in_type, in_context, in_text);
    });
#else
    static QtMsgHandler next = nullptr;
    next = qInstallMsgHandler([](QtMsgType in_type, const char* in_text) {
        if (!rule(QString::fromLocal8Bit(in_text)))
            next(in_type, in_text);
    });
#endif
}

} // namespace testcompat
