#pragma once

#include "analytics/events.h"
#include "ui_optionpage.h"

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtWidgets/QWidget>

class QRadioButton;

/// The feedback page: why does the user leave? Its reasons come from the configuration. Moving on
/// is the owner's business; the page raises its events and, on Cancel, quits the application.
class OptionPage : public QWidget, public Ui::OptionPage
{
    Q_OBJECT

public:
    /// Fills the page from the configuration document.
    explicit OptionPage(QWidget *parent = nullptr);
    OptionPage(QWidget *parent, const QList<QJsonObject> &options);

    /// Why the page is shown; goes with every later event of the page.
    void setSource(const QString &source);

private Q_SLOTS:
    void radioButtonClicked(bool checked);

private:
    void removeSampleReasons();
    void fill(const QList<QJsonObject> &options);
    void orderTabs();
    void addReason(const QJsonObject &option);
    void showBanner(const QJsonObject &option);
    void moveTextBoxBelow(QRadioButton *reason);
    void showOffer(const QJsonObject &option);
    void limitTextLength();
    void keepText();
    Analytics::FeedbackState feedbackState() const;

    QString m_chosenValue;
    QString m_source;
};
