#include "tools/gallery/controls.h"

#include "ui/basewindow.h"
#include "ui/look.h"

#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QVBoxLayout>

namespace Gallery {

namespace {

using Maker = std::function<QWidget *(QWidget *parent)>;

Maker button(const char *look, bool isChecked = false)
{
    return [look, isChecked](QWidget *parent) {
        auto *made = new QPushButton(parent);
        made->setObjectName(QString::fromLatin1(look));
        made->setCheckable(isChecked);
        made->setChecked(isChecked);
        if (made->objectName() == QStringLiteral("btnClose"))
            made->setFixedSize(32, 32);
        else
            made->setText(QStringLiteral("Continue"));
        return made;
    };
}

template<typename Choice>
Maker choice(bool isChecked)
{
    return [isChecked](QWidget *parent) {
        auto *made = new Choice(QStringLiteral("It runs slowly"), parent);
        made->setChecked(isChecked);
        return made;
    };
}

Maker line(const QString &text)
{
    return [text](QWidget *parent) {
        auto *made = new QLineEdit(text, parent);
        made->setMinimumHeight(40);
        Look::setHint(made, QStringLiteral("Email address"));
        return made;
    };
}

Maker box(const QString &text)
{
    return [text](QWidget *parent) {
        auto *made = new QPlainTextEdit(text, parent);
        made->setFixedHeight(52);
        made->setCursorWidth(0); // a caret is not text
        Look::setHint(made, QStringLiteral("Please describe the problem."));
        made->setProperty("text", text); // as the feedback page keeps it, for the style sheet
        return made;
    };
}

void put(QWidget &control, const QString &state)
{
    if (state == QStringLiteral("hover")) {
        control.setAttribute(Qt::WA_UnderMouse);
        // Buttons find out by themselves whether the mouse is over them.
        const QPointF middle = QRectF(control.rect()).center();
        QMouseEvent move(QEvent::MouseMove, middle, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&control, &move);
    }
    if (state == QStringLiteral("focus"))
        control.setFocus();
    if (state == QStringLiteral("disabled"))
        control.setEnabled(false);
    if (auto *clickable = qobject_cast<QAbstractButton *>(&control))
        clickable->setDown(state == QStringLiteral("pressed"));
}

std::unique_ptr<QWidget> show(const Maker &make, const QString &state)
{
    auto window = std::make_unique<BaseWindow>(nullptr);
    window->setFocusPolicy(Qt::StrongFocus);
    auto *layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(12, 8, 12, 8);
    QWidget *control = make(window.get());
    layout->addWidget(control);
    window->show();
    QApplication::setActiveWindow(window.get());
    window->setFocus();
    put(*control, state);
    QCoreApplication::processEvents();
    return window;
}

} // namespace

QList<Control> controls()
{
    const QList<QPair<QString, Maker>> makers{
        {QStringLiteral("PrimaryBtn"), button("PrimaryBtn")},
        {QStringLiteral("SecondaryBtn"), button("SecondaryBtn")},
        {QStringLiteral("QuatenaryBtn"), button("QuatenaryBtn")},
        {QStringLiteral("CheckableBtn"), button("CheckableBtn")},
        {QStringLiteral("CheckableBtn checked"), button("CheckableBtn", true)},
        {QStringLiteral("btnProduct"), button("btnProduct")},
        {QStringLiteral("btnClose"), button("btnClose")},
        {QStringLiteral("QRadioButton"), choice<QRadioButton>(false)},
        {QStringLiteral("QRadioButton checked"), choice<QRadioButton>(true)},
        {QStringLiteral("QCheckBox"), choice<QCheckBox>(false)},
        {QStringLiteral("QCheckBox checked"), choice<QCheckBox>(true)},
        {QStringLiteral("QLineEdit"), line(QStringLiteral("someone@mail.example"))},
        {QStringLiteral("QLineEdit hint"), line(QString())},
        {QStringLiteral("QPlainTextEdit"), box(QStringLiteral("It stops at 90 %."))},
        {QStringLiteral("QPlainTextEdit hint"), box(QString())},
    };
    const QStringList states{QStringLiteral("normal"), QStringLiteral("hover"),
                             QStringLiteral("pressed"), QStringLiteral("focus"),
                             QStringLiteral("disabled")};
    QList<Control> list;
    for (const auto &[name, make] : makers) {
        for (const QString &state : states) {
            const Maker maker = make;
            list.append({name, state, [maker, state] { return show(maker, state); }});
        }
    }
    return list;
}

} // namespace Gallery
