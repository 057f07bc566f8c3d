#include "sandbox/installation/samplefeed.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace {

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray successAnswer(const QJsonObject &result)
{
    return json({{QStringLiteral("errcode"), QStringLiteral("0")},
                 {QStringLiteral("errmsg"), QString()},
                 {QStringLiteral("result"), result}});
}

} // namespace

SampleFeed::SampleFeed(const QString &root)
    : m_folder(root)
{
}

bool SampleFeed::writeCheckAnswer(const QByteArray &answer) const
{
    return m_folder.write(QStringLiteral("check.json"), answer);
}

bool SampleFeed::writeDownloadAnswer(const QByteArray &answer) const
{
    return m_folder.write(QStringLiteral("download.json"), answer);
}

bool SampleFeed::writePackage(int bytes) const
{
    // A prime period, which no chunk size has.
    constexpr int period = 251;
    QByteArray package(bytes, Qt::Uninitialized);
    for (int at = 0; at < bytes; ++at)
        package[at] = static_cast<char>(at % period);
    return m_folder.write(QStringLiteral("package"), package);
}

bool SampleFeed::writeOrders(Orders orders) const
{
    const QString targetKey = QStringLiteral("target");
    if (!orders.contains(targetKey))
        orders.insert(targetKey, target());
    return m_folder.write(QStringLiteral("orders.txt"), SampleFolder::lines(orders));
}

bool SampleFeed::writeUpdateInfo(const QString &version) const
{
    return m_folder.write(
        QStringLiteral("UpdateInfo.json"),
        json({{QStringLiteral("brand"), QStringLiteral("Norvane")},
              {QStringLiteral("email"), QStringLiteral("robin@mail.example")},
              {QStringLiteral("full_url"),
               QStringLiteral("https://download.norvane.example/clipwright-full.exe")},
              {QStringLiteral("whats_new_content"),
               QStringLiteral("Faster export; new titles; »überarbeitete« Übergänge.")},
              {QStringLiteral("whats_new_title"),
               QStringLiteral("What's new in Clipwright %1").arg(version)},
              {QStringLiteral("nvid"), QStringLiteral("20260417")},
              {QStringLiteral("ok_path"), target()},
              {QStringLiteral("version"), version}}));
}

bool SampleFeed::writeUpgrade(const QString &version) const
{
    return writeUpdateInfo(version) && writeCheckAnswer(checkAnswer(version)) &&
           writeDownloadAnswer(downloadAnswer(version)) && writePackage() &&
           writeOrders({{QStringLiteral("check_delay"), QStringLiteral("500")},
                        {QStringLiteral("download_delay"), QStringLiteral("100")}});
}

QByteArray SampleFeed::checkAnswer(const QString &version) const
{
    return successAnswer({{QStringLiteral("needupgrade"), QStringLiteral("1")},
                          {QStringLiteral("forceupgrade"), QStringLiteral("0")},
                          {QStringLiteral("upgradeVersion"), version},
                          {QStringLiteral("packageSize"), QString::number(defaultPackageBytes)},
                          {QStringLiteral("path"), updateInfoFile()}});
}

QByteArray SampleFeed::downloadAnswer(const QString &version) const
{
    return successAnswer({{QStringLiteral("version"), version},
                          {QStringLiteral("downloaded"), QStringLiteral("1")},
                          {QStringLiteral("path"), target()}});
}

QString SampleFeed::packageFile() const
{
    return m_folder.path(QStringLiteral("package"));
}

QString SampleFeed::updateInfoFile() const
{
    return m_folder.path(QStringLiteral("UpdateInfo.json"));
}

QString SampleFeed::target() const
{
    return m_folder.path(QStringLiteral("Norvane Clipwright Package"));
}

QString SampleFeed::callsFile() const
{
    return m_folder.path(QStringLiteral("calls.jsonl"));
}

QMap<QString, QString> SampleFeed::environment() const
{
    return {{QStringLiteral("NVUPGRADE_FEED"), m_folder.root()}};
}
