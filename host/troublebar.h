// SPDX-License-Identifier: MIT
/// Says above the graph which documents need a decision.
#pragma once

#include <QFrame>
#include <QString>

#include <memory>

class QLabel;
class QPushButton;

namespace workspace
{
class Workspace;
}

namespace host
{

/// Names the first document that another program has changed as well as the user, and lets the user choose a side; or
/// the first that cannot be read any more, and why; or that the opened folder is gone; or what became of saves that
/// were interrupted, until the user has seen it. Hidden when there is nothing to say.
class TroubleBar : public QFrame
{
    Q_OBJECT

public:
    TroubleBar();

    /// \param in_workspace null for a library that is in no documents
    void SetWorkspace(std::shared_ptr<workspace::Workspace> in_workspace);
    /// Looks at the documents' states again.
    void Refresh();

Q_SIGNALS:
    /// A side was chosen, and the library has followed.
    void Decided(const QString& in_what);

private Q_SLOTS:
    void TakeTheirs();
    void KeepMine();
    void SaveMineBeside();
    void Dismiss();

private:
    void Decide(const QString& in_error, const QString& in_done);

    std::shared_ptr<workspace::Workspace> m_workspace;
    QString m_document; ///< the one that the buttons are about
    QLabel* const m_label;
    QWidget* const m_buttons; ///< to choose a side
    QPushButton* const m_dismiss;
};

} // namespace host
