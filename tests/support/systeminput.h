// SPDX-License-Identifier: MIT
/// The mouse and the keyboard of the system, for drags that run in a loop of the system's own. Such a loop asks the
/// devices themselves: events that are sent to widgets do not reach it. Only where testcompat::DragsInSystemLoop() says
/// so is there anything to do.
#pragma once

#include <QPoint>
#include <QtGlobal>

#ifdef Q_OS_WIN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

namespace systeminput
{

inline void MovePointer(const QPoint& in_global)
{
#ifdef Q_OS_WIN
    SetCursorPos(in_global.x(), in_global.y());
#else
    Q_UNUSED(in_global);
#endif
}

inline void PressLeftButton()
{
#ifdef Q_OS_WIN
    mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
#endif
}

/// Does nothing when the button is up.
inline void ReleaseLeftButton()
{
#ifdef Q_OS_WIN
    mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
#endif
}

inline void ClickEscape()
{
#ifdef Q_OS_WIN
    keybd_event(VK_ESCAPE, 0, 0, 0);
    keybd_event(VK_ESCAPE, 0, KEYEVENTF_KEYUP, 0);
#endif
}

} // namespace systeminput
