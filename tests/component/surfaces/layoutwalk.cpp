#include "tests/component/surfaces/layoutwalk.h"

#include "tools/gallery/contrast.h"
#include "tools/gallery/textfit.h"

#include <QtGui/QAccessible>
#include <QtGui/QGlyphRun>
#include <QtGui/QTextLayout>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QLabel>

#include <algorithm>

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

// The lines in which a label shows its text, blanks and invisible characters included.
QStringList shownLines(const QLabel &label)
{
    QTextLayout layout(QString(label.text()).replace(QLatin1Char('\n'), QChar::LineSeparator),
                       label.font());
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(Gallery::textRoom(label).width());
        lines += layout.text().mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
    return lines;
}

bool isOf(QChar letter, std::initializer_list<QChar::Script> scripts)
{
    return std::find(scripts.begin(), scripts.end(), letter.script()) != scripts.end();
}

// Whether a line that ends in one letter and another that begins with the next part a word. Korean
// words are parted by blanks. In Japanese, hiragana follow what they inflect or mark; a word begins
// where they end.
bool isWordParted(QChar last, QChar first)
{
    if (!last.isLetterOrNumber() || !first.isLetterOrNumber())
        return false;
    const auto hiragana = QChar::Script_Hiragana;
    if (isOf(last, {QChar::Script_Hangul}) || isOf(first, {QChar::Script_Hangul}))
        return true;
    if (isOf(last, {hiragana}))
        return isOf(first, {hiragana});
    return isOf(first, {hiragana, QChar::Script_Katakana}) || isOf(last, {QChar::Script_Katakana});
}

// Last lines of one character, as scripts without blanks get them, and parted words.
QStringList badLines(const QWidget &widget)
{
    const auto *label = qobject_cast<const QLabel *>(&widget);
    if (!label || !label->wordWrap())
        return {};
    QStringList list;
    const QStringList lines = shownLines(*label);
    for (int i = 1; i < lines.size(); ++i) {
        const QString &above = lines.at(i - 1);
        if (above.isEmpty() || lines.at(i).isEmpty() || above.endsWith(QChar::LineSeparator))
            continue; // a break that stands in the text
        const bool isLast = i + 1 == lines.size() || lines.at(i).endsWith(QChar::LineSeparator);
        if (isLast && lines.at(i).trimmed().size() == 1)
            list += QStringLiteral("last line of one character: ") + describe(widget);
        if (isWordParted(above.back(), lines.at(i).front()))
            list += QStringLiteral("word parted: \"%1|%2\" in ").arg(above, lines.at(i)) +
                    describe(widget);
    }
    return list;
}

// Buttons are given their lines; what is read aloud is the text without them.
QString partedOnButton(const QWidget &widget)
{
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    if (!button || !button->text().contains(QLatin1Char('\n')))
        return {};
    const QStringList lines = button->text().split(QLatin1Char('\n'));
    for (int i = 1; i < lines.size(); ++i) {
        if (isWordParted(lines.at(i - 1).back(), lines.at(i).front()) &&
            !button->accessibleName().contains(lines.at(i - 1) + QLatin1Char(' ') + lines.at(i)))
            return QStringLiteral("word parted: ") + describe(widget);
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
    const QString misfit = Gallery::textMisfit(widget);
    if (!misfit.isEmpty())
        list += QStringLiteral("clipped: %1 %2").arg(describe(widget), misfit);
    list += badLines(widget);
    const QString parted = partedOnButton(widget);
    if (!parted.isEmpty())
        list += parted;
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
