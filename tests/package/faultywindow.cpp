// SPDX-License-Identifier: MIT
/// A program with a window that does not close ("faultywindow stays"), or that ends with status 3 ("faultywindow
/// fails").
#include <QApplication>
#include <QCloseEvent>
#include <QWidget>

namespace
{

class Window : public QWidget
{
public:
    explicit Window(bool in_stays) : m_stays(in_stays) {}

protected:
    void closeEvent(QCloseEvent* in_event) override { in_event->setAccepted(!m_stays); }

private:
    bool m_stays;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Window window(argc > 1 && QByteArray(argv[1]) == "stays");
    window.show();
    QApplication::exec();
    return 3;
}
