#include "tests/monkey/eventcatalogue.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QVector>

namespace EventCatalogue {

namespace {

/// Pattern of each property; an event has all of them and no other.
using Properties = QMap<QString, QString>;

struct Form
{
    QString category;
    QString action;
    Properties properties;
};

QVector<Form> makeForms()
{
    const auto uninstall = QStringLiteral("DoUninstall");
    const auto retain = QStringLiteral("DoRetain");
    const auto source = QStringLiteral("uninstall_action|upgrade_failure|upgrade_cancel");
    const auto result = QStringLiteral("success|failure");
    const auto flag = QStringLiteral("[01]");
    const auto number = QStringLiteral("-1|[0-9]+");
    const auto anyText = QStringLiteral("[\\s\\S]*");

    QVector<Form> forms{
        {uninstall, QStringLiteral("UninstallPopUp"), {{QStringLiteral("source"), source}}},
        {uninstall,
         QStringLiteral("UninstallReConfirm"),
         {{QStringLiteral("ButtonClick"), QStringLiteral("Remove|Cancel")},
          {QStringLiteral("is_delete_all"), flag}}},
        {uninstall, QStringLiteral("UninstallCompleted"), {{QStringLiteral("result"), result}}},
        {uninstall,
         QStringLiteral("UninstallCompleted"),
         {{QStringLiteral("ButtonClick"), QStringLiteral("Subscribe")},
          {QStringLiteral("result"), QStringLiteral("success")},
          {QStringLiteral("email"), QStringLiteral("|[A-Za-z0-9._]+@[A-Za-z0-9.-]+")}}},
        {uninstall,
         QStringLiteral("UninstallCompleted"),
         {{QStringLiteral("ButtonClick"), QStringLiteral("Click_more")},
          {QStringLiteral("result"), result}}},
        {uninstall,
         QStringLiteral("ReCommend"),
         {{QStringLiteral("Clickurl"), anyText},
          {QStringLiteral("pid"), number},
          {QStringLiteral("pagetype"),
           QStringLiteral("allpage|Creativity|Productivity|Utility|uninstallprocess")}}},
        {uninstall,
         QStringLiteral("Click_exit"),
         {{QStringLiteral("pagesource"), QStringLiteral("moreproducts|uninstallprocess")},
          {QStringLiteral("result"), result}}},
        {retain, QStringLiteral("UpgradeCompleted"), {}},
        {retain, QStringLiteral("UpgradeSuccess_launchclick"), {}}};

    // On the feedback page an action button and its kind come together.
    const auto addFeedback = [&](const char *action, const char *hasButton, const char *kind) {
        forms += {uninstall,
                  QString::fromLatin1(action),
                  {{QStringLiteral("MsgCode"), QLatin1Char('|') + number},
                   {QStringLiteral("Msgdetail"), QStringLiteral("[\\s\\S]{0,1000}")},
                   {QStringLiteral("isoption"), QString::fromLatin1(hasButton)},
                   {QStringLiteral("source"), source},
                   {QStringLiteral("RetainActionName"), QString::fromLatin1(kind)}}};
    };
    for (const char *action :
         {"RetainClick", "PopUp_FeedbackClick", "UninstallCancel", "UninstallContinue"})
        addFeedback(action, "1", "Coupon|Upgrade");
    for (const char *action : {"UninstallCancel", "UninstallContinue"})
        addFeedback(action, "0", "");
    return forms;
}

bool fits(const Properties &expected, const QJsonObject &properties)
{
    if (properties.keys() != expected.keys())
        return false;
    for (auto property = expected.cbegin(); property != expected.cend(); ++property) {
        const QJsonValue value = properties.value(property.key());
        const QRegularExpression pattern(QRegularExpression::anchoredPattern(property.value()));
        if (!value.isString() || !pattern.match(value.toString()).hasMatch())
            return false;
    }
    return true;
}

} // namespace

QString flawOf(const QJsonObject &recordedCall)
{
    const QString category = recordedCall.value(QLatin1String("category")).toString();
    const QString action = recordedCall.value(QLatin1String("action")).toString();
    const QByteArray text = recordedCall.value(QLatin1String("properties")).toString().toUtf8();
    const QJsonDocument properties = QJsonDocument::fromJson(text);
    if (!properties.isObject())
        return QStringLiteral("properties are no JSON object");
    if (properties.toJson() != text)
        return QStringLiteral("properties are not in the indented form");
    if (recordedCall.value(QLatin1String("reserved")).toInt(-1) != 0)
        return QStringLiteral("the reserved argument is not 0");

    static const QVector<Form> forms = makeForms();
    for (const Form &form : forms) {
        if (form.category == category && form.action == action &&
            fits(form.properties, properties.object()))
            return {};
    }
    return QStringLiteral("no such event in the catalogue");
}

} // namespace EventCatalogue
