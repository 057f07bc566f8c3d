#include "tests/monkey/eventcatalogue.h"

#include "tests/support/literals.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>

namespace EventCatalogue {

namespace {

/// One expression for all events: category, action, and the properties as compact JSON, whose keys
/// are in order. It is written with ' for ", and ~ for any text.
QRegularExpression makeCatalogue()
{
    const auto source = "'source':'(uninstall_action|upgrade_failure|upgrade_cancel)'"_s;
    const auto result = "'result':'(success|failure)'"_s;
    const QString feedback = "'MsgCode':'(|-1|[0-9]+)','Msgdetail':'~',"_s +
                             "'RetainActionName':'%1','isoption':'%2',"_s + source;
    const QStringList forms{
        "DoUninstall/UninstallPopUp {%1}"_s.arg(source),
        "DoUninstall/UninstallReConfirm {'ButtonClick':'(Remove|Cancel)',"_s +
            "'is_delete_all':'[01]'}"_s,
        "DoUninstall/UninstallCompleted {('ButtonClick':'Click_more',)?%1}"_s.arg(result),
        "DoUninstall/UninstallCompleted {'ButtonClick':'Subscribe',"_s +
            "'email':'(|[A-Za-z0-9._]+@[A-Za-z0-9.-]+)','result':'success'}"_s,
        "DoUninstall/ReCommend {'Clickurl':'~','pagetype':"_s +
            "'(allpage|Creativity|Productivity|Utility|uninstallprocess)','pid':'(-1|[0-9]+)'}"_s,
        "DoUninstall/Click_exit {'pagesource':'(moreproducts|uninstallprocess)',%1}"_s.arg(result),
        "DoRetain/(UpgradeCompleted|UpgradeSuccess_launchclick) {}"_s,
        // An action button and its kind come together.
        "DoUninstall/(RetainClick|PopUp_FeedbackClick|UninstallCancel|UninstallContinue) {%1}"_s
            .arg(feedback.arg("(Coupon|Upgrade)"_s, "1"_s)),
        "DoUninstall/(UninstallCancel|UninstallContinue) {%1}"_s.arg(
            feedback.arg(QString(), "0"_s))};
    QString all = forms.join(u'|');
    all.replace(" {"_s, " \\{"_s);
    all.replace(u'~', "(?:[^'\\\\]|\\\\u....|\\\\[^u])*+"_s);
    all.replace(u'\'', u'"');
    return QRegularExpression(QRegularExpression::anchoredPattern(all));
}

} // namespace

QString flawOf(const QJsonObject &recordedCall)
{
    const QByteArray text = recordedCall.value("properties"_s).toString().toUtf8();
    const QJsonDocument properties = QJsonDocument::fromJson(text);
    if (!properties.isObject())
        return "properties are no JSON object"_s;
    if (properties.toJson() != text)
        return "properties are not in the indented form"_s;
    if (recordedCall.value("reserved"_s).toInt(-1) != 0)
        return "the reserved argument is not 0"_s;

    if (properties.object().value("Msgdetail"_s).toString().size() > 1000)
        return "too long a description"_s;

    static const QRegularExpression catalogue = makeCatalogue();
    const QString event = recordedCall.value("category"_s).toString() + u'/' +
                          recordedCall.value("action"_s).toString() + u' ' +
                          QString::fromUtf8(properties.toJson(QJsonDocument::Compact));
    return catalogue.match(event).hasMatch() ? QString() : "no such event in the catalogue"_s;
}

} // namespace EventCatalogue
