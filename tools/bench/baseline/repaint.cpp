// baseline-repaint X Y WIDTH HEIGHT TICK EVERY: a bare translucent window of the wizard's size. A
// timer ticks each TICK milliseconds, and each EVERYth tick fills this area of the window anew.
// Runs until it is killed.

#include <QtCore/QTimer>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <cstdlib>

namespace {

class Window : public QWidget
{
public:
    Window()
    {
        setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        setAttribute(Qt::WA_TranslucentBackground);
        resize(720, 480);
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter(this).fillRect(event->rect(), Qt::white);
    }
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 7)
        return EXIT_FAILURE;
    const QRect area(arguments.at(1).toInt(), arguments.at(2).toInt(), arguments.at(3).toInt(),
                     arguments.at(4).toInt());
    const int every = qMax(1, arguments.at(6).toInt());

    Window window;
    QTimer timer;
    int ticks = 0;
    QObject::connect(&timer, &QTimer::timeout, &window, [&window, &ticks, area, every] {
        if (++ticks % every == 0)
            window.update(area);
    });
    timer.start(arguments.at(5).toInt());
    window.show();
    return QApplication::exec();
}
