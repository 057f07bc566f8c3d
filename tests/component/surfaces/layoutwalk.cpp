#include "tests/component/surfaces/layoutwalk.h"

#include "tools/gallery/contrast.h"

#include <QtGui/QAccessible>
#include <QtGui/QGlyphRun>
#include <QtGui/QTextDocument>
#include <QtGui/QTextLayout>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QStyleOption>

namespace {

QString describe(const QWidget &widget)
{
    return QStringLiteral("%1 \"%2\" \"%3\"")
        .arg(QString::fromLatin1(widget.metaObject()->className()), widget.objectName(),
             Gallery::shownText(widget));
}

QString place(const QRect &rect)
{
    return QStringLiteral("%1,%2 %3x%4")
        .arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height());
}

QList<QWidget *> visibleWidgets(const QWidget &window)
{
    QList<QWidget *> list;
    const QList<QWidget *> all = window.findChildren<QWidget *>();
    for (QWidget *widget : all) {
        if (widget->isVisible())
            list.append(widget);
    }
    return list;
}

// What lies in a viewport may be larger than it: that is what scrolling is for.
bool isScrolled(const QWidget &widget)
{
    const QWidget *parent = widget.parentWidget();
    const auto *area =
        parent ? qobject_cast<const QAbstractScrollArea *>(parent->parentWidget()) : nullptr;
    return area && area->viewport() == parent;
}

QRect textRoom(const QWidget &widget)
{
    QStyleOptionButton option;
    option.initFrom(&widget);
    const QStyle *style = widget.style();
    if (qobject_cast<const QPushButton *>(&widget))
        return style->subElementRect(QStyle::SE_PushButtonContents, &option, &widget);
    if (qobject_cast<const QRadioButton *>(&widget))
        return style->subElementRect(QStyle::SE_RadioButtonContents, &option, &widget);
    if (qobject_cast<const QCheckBox *>(&widget))
        return style->subElementRect(QStyle::SE_CheckBoxContents, &option, &widget);
    if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
        const int margin = label->margin();
        return label->contentsRect().adjusted(margin, margin, -margin, -margin);
    }
    if (qobject_cast<const QLineEdit *>(&widget)) {
        QStyleOptionFrame frame;
        frame.initFrom(&widget);
        return style->subElementRect(QStyle::SE_LineEditContents, &frame, &widget);
    }
    if (const auto *box = qobject_cast<const QPlainTextEdit *>(&widget)) {
        const int margin = static_cast<int>(box->document()->documentMargin());
        return box->viewport()->rect().adjusted(margin, 0, -margin, 0);
    }
    return widget.rect();
}

// Typed texts scroll; only their hints must fit.
QString textToFit(const QWidget &widget)
{
    if (const auto *line = qobject_cast<const QLineEdit *>(&widget))
        return line->text().isEmpty() ? line->placeholderText() : QString();
    if (const auto *box = qobject_cast<const QPlainTextEdit *>(&widget))
        return box->toPlainText().isEmpty() ? box->placeholderText() : QString();
    return Gallery::shownText(widget);
}

bool isWrapped(const QWidget &widget)
{
    const auto *label = qobject_cast<const QLabel *>(&widget);
    return (label && label->wordWrap()) || qobject_cast<const QPlainTextEdit *>(&widget);
}

QString misfit(const QWidget &widget)
{
    const QString text = textToFit(widget);
    if (text.isEmpty())
        return {};
    const QRect room = textRoom(widget);
    const bool isButton = qobject_cast<const QAbstractButton *>(&widget);
    const int flags =
        (isWrapped(widget) ? Qt::TextWordWrap : 0) | (isButton ? Qt::TextShowMnemonic : 0);
    const QSize needed =
        widget.fontMetrics().boundingRect(QRect(0, 0, room.width(), 10000), flags, text).size();
    if (needed.width() <= room.width() && needed.height() <= room.height())
        return {};
    return QStringLiteral("clipped: %1 needs %2x%3 and has %4x%5")
        .arg(describe(widget))
        .arg(needed.width())
        .arg(needed.height())
        .arg(room.width())
        .arg(room.height());
}

// A last line of one character, as scripts without blanks get it.
QString orphan(const QWidget &widget)
{
    const auto *label = qobject_cast<const QLabel *>(&widget);
    if (!label || !label->wordWrap())
        return {};
    const QStringList paragraphs = label->text().split(QLatin1Char('\n'));
    for (const QString &paragraph : paragraphs) {
        QTextLayout layout(paragraph, label->font());
        layout.beginLayout();
        int lines = 0;
        int length = 0;
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(textRoom(widget).width());
            length = line.textLength();
            ++lines;
        }
        layout.endLayout();
        if (lines > 1 && length == 1)
            return QStringLiteral("last line of one character: ") + describe(widget);
    }
    return {};
}

bool lacksGlyphs(const QString &text, const QFont &font)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        QTextLayout layout(line, font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        const QList<QGlyphRun> runs = layout.glyphRuns();
        for (const QGlyphRun &run : runs) {
            if (run.glyphIndexes().contains(0))
                return true;
        }
    }
    return false;
}

QStringList textComplaints(const QWidget &widget)
{
    QStringList list;
    const QString cut = misfit(widget);
    if (!cut.isEmpty())
        list += cut;
    const QString left = orphan(widget);
    if (!left.isEmpty())
        list += left;
    if (lacksGlyphs(Gallery::shownText(widget), widget.font()))
        list += QStringLiteral("missing glyphs: ") + describe(widget);
    return list;
}

QStringList placeComplaints(const QWidget &widget)
{
    QStringList list;
    const QWidget *parent = widget.parentWidget();
    if (!isScrolled(widget) && !parent->rect().contains(widget.geometry()))
        list += QStringLiteral("outside its parent: %1 at %2 in %3")
                    .arg(describe(widget), place(widget.geometry()), place(parent->rect()));
    const QList<QWidget *> siblings =
        parent->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *sibling : siblings) {
        // Each pair once.
        if (sibling > &widget && sibling->isVisible() && !sibling->isWindow() &&
            sibling->geometry().intersects(widget.geometry()))
            list += QStringLiteral("overlap: %1 at %2 and %3 at %4")
                        .arg(describe(widget), place(widget.geometry()), describe(*sibling),
                             place(sibling->geometry()));
    }
    return list;
}

bool isSpeaking(QAccessibleInterface *object)
{
    static const QList<QAccessible::Role> mute{QAccessible::NoRole, QAccessible::Client,
                                               QAccessible::Pane, QAccessible::Grouping};
    return object && !object->text(QAccessible::Name).trimmed().isEmpty() &&
           !mute.contains(object->role());
}

bool isReachedByTab(const QWidget &window, const QWidget &wanted)
{
    // The chain holds every widget, whether Tab stops at it or not.
    if (!(wanted.focusPolicy() & Qt::TabFocus))
        return false;
    for (const QWidget *widget = window.nextInFocusChain(); widget != &window;
         widget = widget->nextInFocusChain()) {
        if (widget == &wanted)
            return true;
    }
    return false;
}

} // namespace

QStringList layoutComplaints(const QWidget &window)
{
    QStringList list;
    const QList<QWidget *> widgets = visibleWidgets(window);
    for (const QWidget *widget : widgets)
        list += textComplaints(*widget) + placeComplaints(*widget);
    return list;
}

QStringList accessibilityComplaints(const QWidget &window)
{
    QStringList list;
    if (QAccessible::queryAccessibleInterface(const_cast<QWidget *>(&window))
            ->text(QAccessible::Name)
            .isEmpty())
        list += QStringLiteral("nameless window");
    const QList<QWidget *> widgets = visibleWidgets(window);
    for (QWidget *widget : widgets) {
        const bool isFocusable = widget->focusPolicy() != Qt::NoFocus && widget->isEnabled();
        if (!isFocusable || isScrolled(*widget) ||
            qobject_cast<QAbstractScrollArea *>(widget->parentWidget()))
            continue;
        QAccessibleInterface *object = QAccessible::queryAccessibleInterface(widget);
        if (!isSpeaking(object))
            list += QStringLiteral("without name or role: ") + describe(*widget);
        if (!isReachedByTab(window, *widget))
            list += QStringLiteral("not reached by Tab: ") + describe(*widget);
        if (!qobject_cast<QAbstractItemView *>(widget))
            continue;
        for (int i = 0; i < object->childCount(); ++i) {
            if (!isSpeaking(object->child(i)))
                list +=
                    QStringLiteral("entry %1 without name or role: ").arg(i) + describe(*widget);
        }
    }
    return list;
}
