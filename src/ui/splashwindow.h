#pragma once

#include "ui/basewindow.h"
#include "ui_splashwindow.h"

#include <QtCore/QElapsedTimer>
#include <QtGui/QPixmap>

class QTimer;

/// The loading window: a spinning picture and a close button. Like the dialogs it never closes
/// itself on a user's close: it says so through closed() and its owner decides.
class SplashWindow : public BaseWindow, public Ui::SplashWindow
{
    Q_OBJECT

public:
    explicit SplashWindow(QWidget *parent);

    /// Degrees by which the picture is turned after so many milliseconds: one turn a second.
    static qreal angleAt(qint64 elapsedMs);

    /// Whether the picture still turns. It stops for good when the window is hidden.
    bool isSpinning() const;

    /// The picture takes this colour, too.
    void setContrastColour(const QColor &colour) override;

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private Q_SLOTS:
    void timerTimeout();

private:
    /// The interface's language is set only when loading is over.
    void translateForScreenReaders();
    QRect centred(int side) const;

    QPixmap m_picture;
    QElapsedTimer m_clock;
    QTimer *m_timer;
};
