// SPDX-License-Identifier: MIT
#include "host/application.h"

#include "datamodel/nexaptr.h"

#include <exception>

namespace host
{

Application::Application(int& io_count, char** in_arguments) : QApplication(io_count, in_arguments) {}

/// Menus and dialogs run loops of their own. These deliver events by this function, too, so the innermost loop goes on.
bool Application::notify(QObject* in_receiver, QEvent* in_event)
{
    try
    {
        return QApplication::notify(in_receiver, in_event);
    }
    catch (const nexa4::ExBase::NullPtr&)
    {
        Q_EMIT Failed(tr("That could not be done: the item is not there any more"));
    }
    catch (const std::exception& error)
    {
        Q_EMIT Failed(tr("That could not be done: %1").arg(QString::fromLocal8Bit(error.what())));
    }
    return true;
}

} // namespace host
