#include "sandbox/installation/samplefeed.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <algorithm>

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
    : m_root(QDir(root).absolutePath())
{
}

bool SampleFeed::writeCheckAnswer(const QByteArray &answer) const
{
    return writeFile(QStringLiteral("check.json"), answer);
}

bool SampleFeed::writeDownloadAnswer(const QByteArray &answer) const
{
    return writeFile(QStringLiteral("download.json"), answer);
}

bool SampleFeed::writePackage(qint64 bytes) const
{
    QDir().mkpath(m_root);
    QFile file(packageFile());
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // A prime period, which no chunk size has.
    constexpr int period = 251;
    QByteArray block(period * 4096, Qt::Uninitialized);
    for (int at = 0; at < block.size(); ++at)
        block[at] = static_cast<char>(at % period);
    for (qint64 left = bytes; left > 0; left -= block.size()) {
        const qint64 length = std::min<qint64>(left, block.size());
        if (file.write(block.constData(), length) != length)
            return false;
    }
    return file.flush();
}

bool SampleFeed::writeOrders(const Orders &orders) const
{
    Orders all = orders;
    const QString targetKey = QStringLiteral("target");
    if (!all.contains(targetKey))
        all.insert(targetKey, target());
    QByteArray text;
    for (auto order = all.cbegin(); order != all.cend(); ++order)
        text += order.key().toUtf8() + '=' + order.value().toUtf8() + '\n';
    return writeFile(QStringLiteral("orders.txt"), text);
}

bool SampleFeed::writeUpdateInfo(const QString &version) const
{
    return writeFile(
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
    return path(QStringLiteral("package"));
}

QString SampleFeed::updateInfoFile() const
{
    return path(QStringLiteral("UpdateInfo.json"));
}

QString SampleFeed::target() const
{
    return path(QStringLiteral("Norvane Clipwright Package"));
}

QString SampleFeed::callsFile() const
{
    return path(QStringLiteral("calls.jsonl"));
}

QMap<QString, QString> SampleFeed::environment() const
{
    return {{QStringLiteral("NVUPGRADE_FEED"), m_root}};
}

QString SampleFeed::path(const QString &relative) const
{
    return m_root + QLatin1Char('/') + relative;
}

bool SampleFeed::writeFile(const QString &relative, const QByteArray &content) const
{
    QDir().mkpath(m_root);
    QFile file(path(relative));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}
