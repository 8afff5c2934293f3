// SPDX-License-Identifier: MIT
/// How far opening a library has come.
#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

namespace host
{

/// In the status bar: documents read of all, and a button that cancels. Hidden while nothing is opened.
class OpeningBar : public QWidget
{
    Q_OBJECT

public:
    OpeningBar();

    void Begin(const QString& in_path);
    void SetProgress(int in_read, int in_all);

Q_SIGNALS:
    void Cancelled();

private:
    QLabel* const m_label;
    QProgressBar* const m_progress;
};

} // namespace host
