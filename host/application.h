// SPDX-License-Identifier: MIT
/// The application of the reference host: it outlives what goes wrong in one event.
#pragma once

#include <QApplication>
#include <QString>

namespace host
{

/// Catches what the handling of an event throws. The toolkit cannot: an exception that reached its event loop would end
/// the program. It happens, for example, when a command of a menu begins to work on an item that has gone while the
/// menu was open.
class Application : public QApplication
{
    Q_OBJECT

public:
    /// \param io_count must stay as long as the application
    Application(int& io_count, char** in_arguments);

    bool notify(QObject* in_receiver, QEvent* in_event) override;

Q_SIGNALS:
    /// The handling of an event has ended early.
    void Failed(const QString& in_reason);
};

} // namespace host
