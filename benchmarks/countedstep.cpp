// SPDX-License-Identifier: MIT
#include "countedstep.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

void CountedStep(QWidget& in_window, const std::function<void()>& in_step)
{
    in_step();
    QCoreApplication::sendPostedEvents(&in_window, QEvent::UpdateRequest);
}
