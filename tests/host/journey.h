// SPDX-License-Identifier: MIT
/// A person at a real screen: every move, press and key goes through the X server, and each step waits for what it has
/// to bring about.
#pragma once

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QPoint>
#include <QProcess>
#include <QProcessEnvironment>
#include <QScreen>
#include <QStringList>
#include <QWidget>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

/// What a person does, step by step, from the event loop: from a nested one too, while a menu, a dialog or a drag is
/// open.
///
/// A step is what is asked of the tool "xdotool", and a check that says what is still missing. It is over when the tool
/// has ended and the check finds nothing missing in two rounds in a row; then a picture of the screen is saved. With
/// the last step the program has to leave by itself, as it does when its last window closes.
class Journey : public QObject
{
public:
    /// The arguments of the tool, asked for when the step begins: where things are is known only then.
    using Action = std::function<QStringList()>;
    /// What is missing, empty when all is as it should be.
    using Check = std::function<QString()>;

    /// \param in_folder for the pictures; made if need be, and old pictures in it are removed
    explicit Journey(const QString& in_folder) : m_folder(in_folder)
    {
        QDir().mkpath(m_folder.path());
        for (const QString& old : m_folder.entryList({QStringLiteral("*.png")}))
            m_folder.remove(old);
    }

    ~Journey() override
    {
        for (QProcess* const process : {&m_tool, &m_windowManager})
            if (process->state() != QProcess::NotRunning)
            {
                process->terminate();
                process->waitForFinished();
            }
    }

    /// Starts the program that frames windows and hands them the focus, and waits until it does. Windows must not be
    /// shown before.
    /// \return why it cannot, else empty
    QString StartWindowManager()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder.path()); // whoever runs this may have set keys
        m_windowManager.setProcessEnvironment(environment);
        m_windowManager.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
        if (!m_windowManager.waitForStarted())
            return QStringLiteral("openbox, the window manager, cannot be started: ") + m_windowManager.errorString();
        for (int round = 0; round < gMostRounds; ++round)
        {
            // Only a window manager knows how many desktops there are.
            m_tool.start(QStringLiteral("xdotool"), {QStringLiteral("get_num_desktops")});
            if (!m_tool.waitForStarted())
                return QStringLiteral("xdotool, which moves the pointer and presses keys, cannot be started: ") +
                       m_tool.errorString();
            m_tool.waitForFinished();
            if (m_tool.exitStatus() == QProcess::NormalExit && m_tool.exitCode() == 0)
                return QString();
        }
        return QStringLiteral("openbox, the window manager, does not answer");
    }

    void Add(const QString& in_name, Action in_action, Check in_check)
    {
        m_steps.push_back({in_name, std::move(in_action), std::move(in_check)});
    }

    /// Runs the program and takes all steps, or those up to one that fails.
    /// \return the step that failed and what was missing, else empty
    QString Run()
    {
        Begin();
        const int timer = startTimer(gRoundTime);
        QApplication::exec();
        killTimer(timer);
        if (m_fault.isEmpty())
            CheckEnd();
        return m_fault;
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        if (!m_fault.isEmpty())
            CloseWhatIsOpen();
        else if (m_tool.state() != QProcess::NotRunning)
            Wait(QStringLiteral("xdotool is still running"));
        else if (m_tool.exitStatus() != QProcess::NormalExit || m_tool.exitCode() != 0)
            Fail(QStringLiteral("xdotool failed"));
        else
            CheckStep();
    }

private:
    struct Step
    {
        QString m_name;
        Action m_action;
        Check m_check;
    };

    void Begin()
    {
        m_rounds = 0;
        m_settled = false;
        m_tool.start(QStringLiteral("xdotool"), m_steps[m_step].m_action());
    }

    void CheckStep()
    {
        const QString missing = m_steps[m_step].m_check();
        if (!missing.isEmpty())
        {
            m_settled = false;
            Wait(missing);
        }
        else if (!m_settled)
            m_settled = true; // what was asked to be painted has been painted by the next round
        else if (m_step + 1 == m_steps.size())
            Wait(QStringLiteral("the program has not left"));
        else if (!SavePicture())
            Fail(QStringLiteral("the picture of the screen cannot be saved in ") + m_folder.path());
        else
        {
            ++m_step;
            Begin();
        }
    }

    /// The program has left: was it time to, and is all as it should be?
    void CheckEnd()
    {
        m_tool.waitForFinished();
        const QString missing = m_steps[m_step].m_check();
        if (m_step + 1 != m_steps.size())
            Fail(QStringLiteral("the program left"));
        else if (!missing.isEmpty())
            Fail(missing);
        else if (!SavePicture())
            Fail(QStringLiteral("the picture of the screen cannot be saved in ") + m_folder.path());
    }

    void Wait(const QString& in_missing)
    {
        if (++m_rounds == gMostRounds)
            Fail(in_missing);
    }

    void Fail(const QString& in_missing)
    {
        SavePicture();
        m_fault = QStringLiteral("%1: %2\n%3%4")
                      .arg(m_steps[m_step].m_name, in_missing, QString::fromLocal8Bit(m_tool.readAllStandardError()),
                           QString::fromLocal8Bit(m_windowManager.readAllStandardError()));
        m_tool.kill();
        m_tool.waitForFinished();
        m_tool.start(QStringLiteral("xdotool"),
                     {QStringLiteral("mouseup"), QStringLiteral("1"), QStringLiteral("key"), QStringLiteral("Escape")});
    }

    /// A loop that runs inside of another one has to end before the other can. The program then ends without a
    /// question.
    void CloseWhatIsOpen()
    {
        if (QWidget* const popup = QApplication::activePopupWidget())
            popup->close();
        else if (QWidget* const dialog = QApplication::activeModalWidget())
            dialog->close();
        else
            QApplication::exit(1);
    }

    bool SavePicture()
    {
        const QString number = QStringLiteral("%1").arg(m_step + 1, 2, 10, QLatin1Char('0'));
        const QString name = QString(m_steps[m_step].m_name).replace(QLatin1Char(' '), QLatin1Char('-'));
        return QApplication::primaryScreen()->grabWindow(0).save(
            m_folder.filePath(QStringLiteral("%1-%2.png").arg(number, name)));
    }

    static const int gRoundTime = 10; // milliseconds
    static const int gMostRounds = 1000;

    QDir m_folder;
    std::vector<Step> m_steps;
    std::size_t m_step = 0;
    int m_rounds = 0;
    bool m_settled = false;
    QString m_fault;
    QProcess m_tool;
    QProcess m_windowManager;
};

inline QStringList MoveTo(const QPoint& in_screen)
{
    return {QStringLiteral("mousemove"), QString::number(in_screen.x()), QString::number(in_screen.y())};
}

inline QStringList ClickAt(const QPoint& in_screen, int in_button = 1)
{
    return MoveTo(in_screen) << QStringLiteral("click") << QString::number(in_button);
}

inline QStringList PressKeys(const QStringList& in_keys)
{
    return QStringList(QStringLiteral("key")) << in_keys;
}

inline QStringList TypeText(const QString& in_text)
{
    return {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("5"), in_text};
}

inline QPoint CentreOf(const QWidget& in_widget)
{
    return in_widget.mapToGlobal(in_widget.rect().center());
}
