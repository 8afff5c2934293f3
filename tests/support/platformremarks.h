// SPDX-License-Identifier: MIT
/// Drops the messages of a platform without a window system about requests that it does not support.
#pragma once

#include "tests/support/testcompat.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QString>

#include <cstddef>

/// Whether a message is one of those remarks. Versions of the toolkit differ in which ones come and how often, so no
/// test announces them. Every other message is left to the test.
inline bool IsPlatformRemark(const QString& in_message)
{
    static const char* const remarks[] = {
        "This plugin does not support raise()",
        "This plugin does not support propagateSizeHints()",
        "This plugin does not support grabbing the keyboard",
    };
    for (std::size_t i = 0; i < sizeof(remarks) / sizeof(remarks[0]); ++i)
        if (in_message == QLatin1String(remarks[i]))
            return !testcompat::HasWindowSystem();
    return false;
}

/// Drops these remarks as long as it lives. It starts at the first event, which comes before the first window. The test
/// framework has installed its message handler by then, and gets all other messages.
class PlatformRemarkFilter : public QObject
{
public:
    PlatformRemarkFilter() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject*, QEvent*) override
    {
        QCoreApplication::instance()->removeEventFilter(this);
        testcompat::DropMessages(IsPlatformRemark);
        return false;
    }
};
