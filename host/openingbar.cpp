// SPDX-License-Identifier: MIT
#include "host/openingbar.h"

#include "host/elidedlabel.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>

namespace host
{

namespace
{

const int gProgressWidth = 120;

} // namespace

OpeningBar::OpeningBar() : m_label(new ElidedLabel), m_progress(new QProgressBar)
{
    QPushButton* const cancel = new QPushButton(tr("Cancel"));
    QHBoxLayout* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label);
    layout->addWidget(m_progress);
    layout->addWidget(cancel);
    m_progress->setFixedWidth(gProgressWidth);
    m_progress->setFormat(QStringLiteral("%v / %m"));
    connect(cancel, &QPushButton::clicked, this, &OpeningBar::Cancelled);
    hide();
}

void OpeningBar::Begin(const QString& in_path)
{
    m_label->setText(tr("Opening %1").arg(QFileInfo(in_path).fileName()));
    m_progress->setRange(0, 0);
    m_progress->setValue(0);
    show();
}

void OpeningBar::SetProgress(int in_read, int in_all)
{
    m_progress->setRange(0, in_all);
    m_progress->setValue(in_read);
}

} // namespace host
