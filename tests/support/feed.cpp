#include "tests/support/feed.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>

Feed::Feed(Sandbox::Content content)
    : m_sandbox(content)
    , m_feed(m_sandbox.path(QStringLiteral("feed")))
{
    QDir().mkpath(m_sandbox.path(QStringLiteral("feed")));
    const QMap<QString, QString> environment = m_feed.environment();
    for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable)
        qputenv(variable.key().toLatin1().constData(), QFile::encodeName(variable.value()));
}

Feed::~Feed()
{
    const QMap<QString, QString> environment = m_feed.environment();
    for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable)
        qunsetenv(variable.key().toLatin1().constData());
}

QString Feed::dataPath(const QString &relative) const
{
    QDir().mkpath(m_sandbox->productDataDir());
    return m_sandbox->productDataDir() + QLatin1Char('/') + relative;
}

void Feed::writeDataFile(const QString &relative, const QByteArray &content) const
{
    m_sandbox.writeFile(QStringLiteral("ProgramData/Norvane Clipwright/") + relative, content);
}

QList<QJsonObject> Feed::calls() const
{
    QList<QJsonObject> calls;
    const QStringList lines = Sandbox::readLines(m_feed.callsFile());
    for (const QString &line : lines)
        calls += QJsonDocument::fromJson(line.toUtf8()).object();
    return calls;
}

QStringList Feed::callNames() const
{
    QStringList names;
    const QList<QJsonObject> all = calls();
    for (const QJsonObject &call : all)
        names += call.value(QLatin1String("call")).toString();
    return names;
}

void Feed::writeSmallUpgrade(const QString &version) const
{
    const bool written = m_feed.writeUpdateInfo(version) &&
                         m_feed.writeCheckAnswer(m_feed.checkAnswer(version)) &&
                         m_feed.writeDownloadAnswer(m_feed.downloadAnswer(version)) &&
                         m_feed.writePackage(64 * 1024) &&
                         m_feed.writeOrders({{QStringLiteral("chunk"), QStringLiteral("4096")}});
    if (!written)
        qFatal("cannot write the feed");
}
