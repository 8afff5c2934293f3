// SPDX-License-Identifier: MIT
/// Drops what a platform without a window system remarks about the wishes of windows that it cannot fulfil.
#pragma once

#include "tests/support/testcompat.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QString>

#include <cstddef>

/// Whether a message is one of those remarks. Which of them a window leads to, and how often, differs between the
/// toolkit's versions, so no test announces them. Every other message is left to the test.
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

/// Drops these remarks as long as it lives. It starts with the first event, which comes before the first window: the
/// handler of the test framework has to be in place by then, since it is the one that all other messages go on to.
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
