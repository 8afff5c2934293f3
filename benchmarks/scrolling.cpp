// SPDX-License-Identifier: MIT
#include "scrolling.h"

#include "measure.h"
#include "subjects.h"

#include <QCoreApplication>
#include <QScrollBar>
#include <QWheelEvent>

namespace
{

const int gSteps = 10 * gRepetitions;

/// From the top again at the bottom. Nothing for a list that is too short to scroll.
void TimeWheel(const Panel& in_panel, std::vector<double>& out_times)
{
    if (in_panel.m_bar->maximum() == 0)
        return;
    if (in_panel.m_bar->value() == in_panel.m_bar->maximum())
    {
        in_panel.m_bar->setValue(0);
        Settle();
    }
    out_times.push_back(TimeToFrame(in_panel, [&in_panel] { TurnWheel(*in_panel.m_list); }));
    Settle();
}

} // namespace

void TurnWheel(QWidget& io_list)
{
    const QPointF center = QRectF(io_list.rect()).center();
    QWheelEvent event(center, io_list.mapToGlobal(center.toPoint()), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&io_list, &event);
}

void MeasureScrolling(const Content& in_content)
{
    const Subjects subjects(in_content);
    Samples samples;
    for (int step = 0; step < gSteps; ++step)
        for (const Subject& subject : subjects.m_all)
            TimeWheel(subject.m_panel, samples[subject.m_column]);
    PrintRow("scroll", in_content.GetCount(), Medians(samples));
}
