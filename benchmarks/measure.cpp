#include "measure.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QWidget>

#include <algorithm>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace
{

/// Notes when a widget is painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget& in_widget) { in_widget.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* in_event) override
    {
        m_painted = m_painted || in_event->type() == QEvent::Paint;
        return false;
    }

    bool m_painted = false;
};

} // namespace

double TimeToFrame(QWidget& in_widget, const std::function<void()>& in_step)
{
    PaintWatch watch(in_widget);
    QElapsedTimer timer;
    timer.start();
    in_step();
    do
        QCoreApplication::processEvents();
    while (!watch.m_painted);
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double Median(std::vector<double> in_values)
{
    const auto middle = in_values.begin() + static_cast<std::ptrdiff_t>(in_values.size() / 2);
    std::nth_element(in_values.begin(), middle, in_values.end());
    return *middle;
}

std::size_t HeapBytes()
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#else
    return 0;
#endif
}
