// SPDX-License-Identifier: MIT
#include "host/troublebar.h"

#include "workspace/workspace.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace host
{

TroubleBar::TroubleBar() : m_label(new QLabel), m_buttons(new QWidget), m_dismiss(new QPushButton(tr("Dismiss")))
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    m_label->setForegroundRole(QPalette::ToolTipText);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    QHBoxLayout* const row = new QHBoxLayout(this);
    row->addWidget(m_label, 1);
    row->addWidget(m_buttons);
    row->addWidget(m_dismiss);
    connect(m_dismiss, &QPushButton::clicked, this, &TroubleBar::Dismiss);
    QHBoxLayout* const buttons = new QHBoxLayout(m_buttons);
    buttons->setContentsMargins(0, 0, 0, 0);
    const auto add = [this, buttons](const QString& in_text, void (TroubleBar::*in_slot)()) {
        QPushButton* const button = new QPushButton(in_text);
        buttons->addWidget(button);
        connect(button, &QPushButton::clicked, this, in_slot);
    };
    add(tr("Take theirs"), &TroubleBar::TakeTheirs);
    add(tr("Keep mine"), &TroubleBar::KeepMine);
    add(tr("Save mine beside it"), &TroubleBar::SaveMineBeside);
    hide();
}

void TroubleBar::SetWorkspace(std::shared_ptr<workspace::Workspace> in_workspace)
{
    m_workspace = std::move(in_workspace);
    Refresh();
}

void TroubleBar::Refresh()
{
    const QStringList troubled = m_workspace ? m_workspace->GetTroubledDocuments() : QStringList();
    const bool isGone = m_workspace && !m_workspace->IsThere() && !m_workspace->GetFiles().isEmpty();
    // A conflict first: it waits for the user, what cannot be read waits for others.
    const auto conflict = std::find_if(troubled.begin(), troubled.end(), [this](const QString& in_document) {
        return m_workspace->GetDocumentState(in_document) == workspace::eDocumentState::eConflict;
    });
    const bool isConflict = conflict != troubled.end() && !isGone;
    m_document = isConflict ? *conflict : troubled.value(0);
    const QStringList remarks = m_workspace ? m_workspace->GetRemarks() : QStringList();
    QString text;
    bool isRemark = false;
    if (isGone)
    {
        text = tr("%1 is not there any more. The items are the last ones that were read.")
                   .arg(QDir::toNativeSeparators(m_workspace->GetPath()));
    }
    else if (!m_document.isEmpty())
    {
        text = isConflict
                   ? tr("%1 has changes of yours, and another program has changed it. It is not saved until you "
                        "choose.")
                         .arg(m_document)
                   : tr("%1. The items are the last ones that could be read.").arg(m_workspace->GetProblem(m_document));
        const QStringList tied = m_workspace->GetTiedDocuments(m_document);
        if (isConflict && !tied.isEmpty())
            text +=
                QLatin1Char(' ') +
                tr("Your changes of %1 go the same way: they belong together.").arg(tied.join(QStringLiteral(", ")));
        const int others = static_cast<int>(troubled.size()) - 1;
        if (others > 0)
            text += QLatin1Char(' ') + (others == 1 ? tr("One more document needs a look.")
                                                    : tr("%n more documents need a look.", nullptr, others));
    }
    else if (!remarks.isEmpty())
    {
        isRemark = true;
        text = remarks.join(QLatin1Char('\n'));
    }
    m_label->setText(text);
    m_buttons->setVisible(isConflict);
    m_dismiss->setVisible(isRemark);
    setVisible(!text.isEmpty());
}

void TroubleBar::TakeTheirs()
{
    const QString document = m_document;
    Decide(m_workspace->TakeTheirs(document), tr("%1 is as the other program has left it").arg(document));
}

void TroubleBar::KeepMine()
{
    const QString document = m_document;
    Decide(m_workspace->KeepOurs(document), tr("The next save replaces %1").arg(document));
}

void TroubleBar::SaveMineBeside()
{
    QStringList files;
    const QString error = m_workspace->SaveOursBeside(m_document, &files);
    Decide(error, tr("Your version is in %1").arg(QDir::toNativeSeparators(files.join(QStringLiteral(", ")))));
}

void TroubleBar::Dismiss()
{
    m_workspace->ClearRemarks();
    Refresh();
}

void TroubleBar::Decide(const QString& in_error, const QString& in_done)
{
    if (!in_error.isEmpty())
    {
        m_label->setText(in_error);
        return;
    }
    Refresh();
    Q_EMIT Decided(in_done);
}

} // namespace host
