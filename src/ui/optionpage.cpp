#include "ui/optionpage.h"

#include "config/content/configcontent.h"
#include "ui/look.h"
#include "ui/picture.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtCore/QVariant>
#include <QtGui/QTextCursor>
#include <QtWidgets/QRadioButton>

namespace {

constexpr int maxTextLength = 1000;
constexpr int reasonTextWidth = 330;

const char problemProperty[] = "problemObj";
const char jumpProperty[] = "jump";
const char urlProperty[] = "url";
const char textProperty[] = "text";

bool isOfType(const QJsonObject &option, const char *type)
{
    return Config::hasOptionType(option, {QString::fromLatin1(type)});
}

} // namespace

OptionPage::OptionPage(QWidget *parent)
    : OptionPage(parent, Config::problemTypeList())
{
}

OptionPage::OptionPage(QWidget *parent, const QList<QJsonObject> &options)
    : QWidget(parent)
{
    setupUi(this);
    btnCancel->setObjectName(QStringLiteral("SecondaryBtn"));
    btnContinue->setObjectName(QStringLiteral("QuatenaryBtn"));
    btnNext->setObjectName(QStringLiteral("PrimaryBtn"));
    btnNext->hide();

    removeSampleReasons();
    fill(options);

    Look::setHint(textEdit, tr("Please describe the problem you encountered."));
    keepText();
    Look::sayStatus(*this, {lblTitle->text()});

    connect(btnNext, &QPushButton::clicked, this,
            [this] { Analytics::reportRetainClick(feedbackState()); });
    connect(btnCancel, &QPushButton::clicked, this, [this] {
        Analytics::reportUninstallCancel(feedbackState());
        QCoreApplication::quit();
    });
    connect(btnContinue, &QPushButton::clicked, this,
            [this] { Analytics::reportUninstallContinue(feedbackState()); });
    connect(textEdit, &QPlainTextEdit::textChanged, this, &OptionPage::limitTextLength);
}

void OptionPage::setSource(const QString &source)
{
    m_source = source;
}

void OptionPage::removeSampleReasons()
{
    for (int i = scrollContentsLayout->count() - 1; i >= 0; --i) {
        QLayoutItem *item = scrollContentsLayout->takeAt(i);
        delete qobject_cast<QRadioButton *>(item->widget());
        delete item;
    }
}

void OptionPage::fill(const QList<QJsonObject> &options)
{
    for (const QJsonObject &option : options) {
        if (isOfType(option, "homepage")) {
            showBanner(option);
            lblTitle->setText(Config::jsonString(option, QStringLiteral("title")));
        } else {
            addReason(option);
        }
    }
    scrollContentsLayout->addWidget(pnlTextEdit);
    scrollContentsLayout->addItem(
        new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding));
    pnlTextEdit->hide();
    orderTabs();
}

void OptionPage::orderTabs()
{
    // The reasons were made last, but come first; then the text box, then the buttons. The page
    // takes no focus by Tab, but setTabOrder() passes over such widgets.
    setFocusPolicy(Qt::TabFocus);
    QWidget *previous = this;
    const QList<QRadioButton *> reasons = scrollContents->findChildren<QRadioButton *>();
    for (QRadioButton *reason : reasons) {
        QWidget::setTabOrder(previous, reason);
        previous = reason;
    }
    QWidget::setTabOrder(previous, textEdit);
    setFocusPolicy(Qt::NoFocus);
}

void OptionPage::addReason(const QJsonObject &option)
{
    const QString title = Config::jsonString(option, QStringLiteral("title"));
    auto *reason = new QRadioButton(scrollContents);
    Look::setWrappedText(reason, title, reasonTextWidth);
    reason->setFocusPolicy(Qt::TabFocus);
    reason->setProperty(problemProperty, option);
    scrollContentsLayout->addWidget(reason);
    connect(reason, &QRadioButton::toggled, this, &OptionPage::radioButtonClicked);
}

void OptionPage::radioButtonClicked(bool checked)
{
    if (!checked)
        return;
    auto *reason = qobject_cast<QRadioButton *>(sender());
    const QJsonObject option = reason->property(problemProperty).toJsonObject();

    moveTextBoxBelow(reason);
    if (m_chosenValue.isEmpty())
        btnContinue->setEnabled(true);
    m_chosenValue = QString::number(option.value(QStringLiteral("value")).toInt(-1));

    const bool asksForText = isOfType(option, "submit");
    pnlTextEdit->setVisible(asksForText);
    if (asksForText) {
        textEdit->setFocus();
        // Once the box has its place; it may lie below what the scroll area shows.
        QTimer::singleShot(0, this, [this] { scrollArea->ensureWidgetVisible(pnlTextEdit, 0, 8); });
    } else {
        reason->setFocus();
    }

    showOffer(option);
    showBanner(option);
}

void OptionPage::showBanner(const QJsonObject &option)
{
    Look::showPicture(*pnlLeft, Config::optionImagePath(option));
    label->setText(Config::jsonString(option, QStringLiteral("banner_title")));
}

void OptionPage::moveTextBoxBelow(QRadioButton *reason)
{
    scrollContentsLayout->removeWidget(pnlTextEdit);
    scrollContentsLayout->insertWidget(scrollContentsLayout->indexOf(reason) + 1, pnlTextEdit);
}

void OptionPage::showOffer(const QJsonObject &option)
{
    const bool isJump = isOfType(option, "jump");
    const bool isOffer = isJump || isOfType(option, "upgrade");
    btnNext->setVisible(isOffer);
    if (!isOffer)
        return;

    const QString name = Config::jsonString(option, QStringLiteral("button_name"));
    btnNext->setText(QStringLiteral("  %1  ").arg(Look::buttonText(name)));
    btnNext->setProperty(jumpProperty, isJump);
    if (isJump) {
        btnNext->setProperty(urlProperty,
                             Config::jsonString(option, QStringLiteral("banner_click_url")));
    }
    Analytics::reportFeedbackClick(feedbackState());
}

void OptionPage::limitTextLength()
{
    const QString text = textEdit->toPlainText();
    if (text.size() > maxTextLength) {
        textEdit->setPlainText(text.left(maxTextLength)); // comes back here with the shorter text
        QTextCursor cursor = textEdit->textCursor();
        cursor.setPosition(maxTextLength);
        textEdit->setTextCursor(cursor);
        return;
    }
    keepText();
}

void OptionPage::keepText()
{
    // Empty, but never null: the style sheet's selectors pass over null values.
    const QString text = textEdit->toPlainText();
    textEdit->setProperty(textProperty, text.isNull() ? QStringLiteral("") : text);
    Look::refreshStyle(textEdit);
}

Analytics::FeedbackState OptionPage::feedbackState() const
{
    // Visible as far as this page decides: it may itself be hidden behind another page.
    const bool hasAction = btnNext->isVisibleTo(this);
    Analytics::FeedbackState state;
    state.optionValue = m_chosenValue;
    if (pnlTextEdit->isVisibleTo(this))
        state.description = textEdit->toPlainText();
    state.hasAction = hasAction;
    state.source = m_source;
    if (hasAction) {
        state.actionName = btnNext->property(jumpProperty).toBool() ? QStringLiteral("Coupon")
                                                                    : QStringLiteral("Upgrade");
    }
    return state;
}
