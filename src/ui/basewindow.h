#pragma once

#include <QtGui/QColor>
#include <QtWidgets/QWidget>

/// Base of every top-level surface: no system frame, translucent outside its rounded corners,
/// painted by the application's style sheet. While a key is held, its repeats press no button in
/// any of them. A window with a parent stays above it and is owned by it, but is a window all the
/// same.
class BaseWindow : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor contrastColour READ contrastColour WRITE setContrastColour)

public:
    explicit BaseWindow(QWidget *parent);

    /// The colour of a high-contrast scheme for what its rules of the style sheet cannot colour but
    /// by this property. Invalid when there is no such scheme.
    QColor contrastColour() const { return m_contrastColour; }
    virtual void setContrastColour(const QColor &colour) { m_contrastColour = colour; }

    /// Grows the window to what its texts need; a layout alone sets no minimum height for texts
    /// that wrap. Call before it is shown.
    void growToTexts();

protected:
    /// For windows whose closing is decided by their owner: refuses a close that comes from the
    /// window system and returns whether it was one.
    static bool refuseUsersClose(QCloseEvent *event);

    /// Paints the window's ground, as the style sheet has it, at least in this area.
    void paintGround(QPainter &painter, const QRect &area) const;

    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_contrastColour;
};
