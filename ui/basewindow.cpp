#include "ui/basewindow.h"

#include <QtGui/QCloseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

BaseWindow::BaseWindow(QWidget *parent)
    : QWidget(parent)
{
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    // Made as a child of a disabled window, it was disabled with it. Its own children would tell
    // assistive technology so while they are half built, and be taken for nameless boxes for good.
    setEnabled(true);
}

bool BaseWindow::refuseUsersClose(QCloseEvent *event)
{
    if (event->spontaneous())
        event->ignore();
    return event->spontaneous();
}

void BaseWindow::paintEvent(QPaintEvent * /*event*/)
{
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}
