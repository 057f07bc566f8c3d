#include "tools/bench/inprocess/sampledocument.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace SampleDocument {

namespace {

QJsonObject product(int number)
{
    return {
        {QStringLiteral("pid"), number},
        {QStringLiteral("name"), QStringLiteral("Norvane Réel Studio %1").arg(number)},
        {QStringLiteral("desc"),
         QStringLiteral("Schneidet, mischt und veröffentlicht Filme in wenigen Minuten.")},
        {QStringLiteral("icon"),
         QStringLiteral("https://images.norvane.example/icons/pid_%1.png").arg(number)},
        {QStringLiteral("url"),
         QStringLiteral("https://www.norvane.example/p/%1?from=uninstall").arg(number)},
        {QStringLiteral("sort"), number},
    };
}

QJsonObject reason(int number)
{
    return {
        {QStringLiteral("value"), number},
        {QStringLiteral("title"), QStringLiteral("Reason %1: it lacks what I need.").arg(number)},
        {QStringLiteral("banner_title"), QStringLiteral("We are sorry to hear that.")},
        {QStringLiteral("banner_url"),
         QStringLiteral("https://images.norvane.example/banners/option_%1.png").arg(number)},
        {QStringLiteral("banner_click_url"), QString()},
        {QStringLiteral("button_name"), QString()},
        {QStringLiteral("extend"), QStringLiteral("{\"option_type\":\"submit\"}")},
        {QStringLiteral("sort"), number},
    };
}

} // namespace

QJsonObject document(int products, int reasons)
{
    QJsonArray categories;
    int number = 0;
    const QStringList keys{QStringLiteral("digital_creativity"),
                           QStringLiteral("office_efficiency"), QStringLiteral("utilities")};
    for (int i = 0; i < keys.size(); ++i) {
        QJsonArray list;
        for (const int end = products * (i + 1) / keys.size(); number < end; ++number)
            list.append(product(number));
        categories.append(
            QJsonObject{{QStringLiteral("key"), keys.at(i)}, {QStringLiteral("list"), list}});
    }
    QJsonArray options;
    for (int i = 0; i < reasons; ++i)
        options.append(reason(i));
    return {{QStringLiteral("pid"), 846},
            {QStringLiteral("apps"), categories},
            {QStringLiteral("problem_type"), QJsonObject{{QStringLiteral("list"), options}}}};
}

QByteArray textOfSize(int bytes)
{
    const int sample = 1000;
    const int sampleBytes = QJsonDocument(document(sample, sample)).toJson().size();
    const int entries = static_cast<int>(static_cast<qint64>(bytes) * sample / sampleBytes);
    return QJsonDocument(document(entries, entries)).toJson();
}

} // namespace SampleDocument
