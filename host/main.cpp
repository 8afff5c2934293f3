// SPDX-License-Identifier: MIT
/// The reference host: the browser at work on a real library.

#include "host/application.h"
#include "host/commandline.h"
#include "host/librarybrowser.h"
#include "host/mainwindow.h"
#include "host/samplelibrary.h"
#include "host/theme.h"
#include "host/versionfollower.h"
#include "memorymodel/datalayer.h"
#include "qtcompat/qtcompat.h"

#include <QFile>
#include <QImage>
#include <QImageWriter>

#include <cstdio>

using host::CommandLine;
using host::MainWindow;

namespace
{

enum eExitStatus
{
    eExitSuccess = 0,
    eExitFailure = 1,
    eExitUsage = 2,
};

void PrintError(const QString& in_text)
{
    std::fputs(in_text.toLocal8Bit().constData(), stderr);
}

bool PrintOut(const QByteArray& in_text)
{
    QFile out;
    if (out.open(stdout, QIODevice::WriteOnly) && out.write(in_text) == in_text.size() && out.flush())
        return true;
    PrintError(QStringLiteral("nodebrowser-host: standard output: %1\n").arg(out.errorString()));
    return false;
}

/// The arguments in Unicode on every system, known before there is a display to connect to.
QStringList ReadArguments(int in_count, char** in_arguments)
{
    const QCoreApplication application(in_count, in_arguments);
    return QCoreApplication::arguments();
}

/// Rows never need a display. A picture is drawn on one if there is one, else off screen.
void ChoosePlatform(const CommandLine& in_commandLine)
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    const bool display = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const bool needed = !in_commandLine.m_rows || !in_commandLine.m_screenshot.isEmpty();
    if (in_commandLine.IsUnattended() && !(display && needed) && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
#else
    Q_UNUSED(in_commandLine);
#endif
}

QImage PaintWindow(MainWindow& in_window)
{
    const qreal ratio = in_window.devicePixelRatioF();
    QImage image((QSizeF(in_window.size()) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    in_window.render(&image);
    return image;
}

bool WriteScreenshot(const QImage& in_image, const QString& in_path)
{
    QImageWriter writer(in_path, "png");
    if (writer.write(in_image))
        return true;
    PrintError(QStringLiteral("%1: %2\n").arg(in_path, writer.errorString()));
    return false;
}

bool PrintRows(MainWindow& in_window)
{
    QByteArray text;
    std::size_t number = 0;
    for (const host::Row& row : in_window.GetBrowser().GetRows(in_window.GetLibrary()))
        text += host::FormatRow(number++, row);
    return PrintOut(text);
}

int RunUnattended(const CommandLine& in_commandLine, memorymodel::DataLayer& in_layer, MainWindow& in_window)
{
    in_window.setMinimumSize(1, 1); // a picture may be smaller than a window that people work with
    in_window.resize(in_commandLine.m_size);
    in_window.setAttribute(Qt::WA_DontShowOnScreen);
    in_window.show();
    const bool isPictured = !in_commandLine.m_screenshot.isEmpty();
    if (isPictured)
        host::WaitForStates(in_window.GetLibrary());
    PaintWindow(in_window);
    // The first paint asked for the source-control states and counted the rows; the second one shows both.
    in_layer.GetSourceControl().DeliverRequestedStates();
    QCoreApplication::processEvents();
    if (isPictured)
        host::WaitForStates(in_window.GetLibrary());
    const QImage image = PaintWindow(in_window);
    if (isPictured && !WriteScreenshot(image, in_commandLine.m_screenshot))
        return eExitFailure;
    return !in_commandLine.m_rows || PrintRows(in_window) ? eExitSuccess : eExitFailure;
}

int RunHost(const CommandLine& in_commandLine)
{
    memorymodel::DataLayer layer;
    const bool isSample = in_commandLine.m_library.isEmpty();
    MainWindow window(layer, isSample ? host::AddSampleLibrary(layer) : layer.AddLibrary(std::string()));
    window.resize(in_commandLine.m_size);
    if (!in_commandLine.IsUnattended())
    {
        host::ApplyTheme();
        window.RestoreLayout();
    }
    if (in_commandLine.m_hasSize)
        window.resize(in_commandLine.m_size);
    if (in_commandLine.m_hasTab)
        window.GetBrowser().SelectTab(in_commandLine.m_tab);
    window.GetBrowser().Search(in_commandLine.m_search);
    if (!in_commandLine.IsUnattended())
        window.show();
    QString error;
    if (!isSample && !window.Open(in_commandLine.m_library, &error) && !error.isEmpty())
    {
        PrintError(error + QLatin1Char('\n'));
        return eExitFailure;
    }
    if (in_commandLine.IsUnattended())
        return RunUnattended(in_commandLine, layer, window);
    return window.isVisible() ? host::Application::exec() : eExitSuccess;
}

} // namespace

int main(int in_argc, char** in_argv)
{
    CommandLine commandLine;
    const QString error = host::ParseCommandLine(ReadArguments(in_argc, in_argv), &commandLine);
    if (!error.isEmpty())
    {
        PrintError(QStringLiteral("nodebrowser-host: %1\n").arg(error) + host::UsageText());
        return eExitUsage;
    }
    if (commandLine.m_help)
        return PrintOut(host::HelpText().toLocal8Bit()) ? eExitSuccess : eExitFailure;

    ChoosePlatform(commandLine);
    qtcompat::EnableDenseScreens();
    // The toolkit gets no arguments: it would take the value of an option for an option of its own.
    int programOnly = 1;
    const host::Application application(programOnly, in_argv);
    return RunHost(commandLine);
}
