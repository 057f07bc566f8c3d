#include "ui/basewindow.h"

#include <QtCore/QVariant>
#include <QtCore/QtMath>
#include <QtGui/QCloseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QLayout>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

BaseWindow::BaseWindow(QWidget *parent)
    : QWidget(parent)
{
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    // The style sheet has pictures for this many pixels a unit. No display changes it: the scale
    // factor is settled before the first window.
    setProperty("density", qBound(1, qCeil(devicePixelRatioF()), 3));
    // Made as a child of a disabled window, it was disabled with it. Its own children would tell
    // assistive technology so while they are half built, and be taken for nameless boxes for good.
    setEnabled(true);
}

void BaseWindow::growToTexts()
{
    // Fonts come with the style sheet, which reaches widgets late.
    const QList<QWidget *> widgets = findChildren<QWidget *>();
    for (const QWidget *widget : widgets)
        widget->ensurePolished();
    const int wide = qMax(width(), layout()->minimumSize().width());
    resize(wide, qMax(height(), layout()->minimumHeightForWidth(wide)));
}

bool BaseWindow::refuseUsersClose(QCloseEvent *event)
{
    if (event->spontaneous())
        event->ignore();
    return event->spontaneous();
}

void BaseWindow::paintGround(QPainter &painter) const
{
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

void BaseWindow::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    paintGround(painter);
}
