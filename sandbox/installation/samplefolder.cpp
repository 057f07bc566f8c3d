#include "sandbox/installation/samplefolder.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

SampleFolder::SampleFolder(const QString &root)
    : m_root(QDir(root).absolutePath())
{
}

QString SampleFolder::path(const QString &relative) const
{
    return m_root + QLatin1Char('/') + relative;
}

bool SampleFolder::write(const QString &relative, const QByteArray &content) const
{
    QDir().mkpath(QFileInfo(path(relative)).path());
    QFile file(path(relative));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

QByteArray SampleFolder::lines(const Orders &orders)
{
    QByteArray text;
    for (auto order = orders.cbegin(); order != orders.cend(); ++order)
        text += order.key().toUtf8() + '=' + order.value().toUtf8() + '\n';
    return text;
}
