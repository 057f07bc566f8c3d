// The least that a splash can be: an application object and a frameless translucent window of the
// splash's size that paints one colour. Runs until it is killed.

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace {

class Window : public QWidget
{
public:
    Window()
    {
        setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
        setAttribute(Qt::WA_TranslucentBackground);
        resize(720, 480);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter(this).fillRect(rect(), Qt::white);
    }
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    Window window;
    window.show();
    return QApplication::exec();
}
