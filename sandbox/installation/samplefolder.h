#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>

/// A folder in which a sample is written. Methods that write make missing folders and return false
/// when they could not write everything.
class SampleFolder
{
public:
    /// "key=value" lines for a program or a library's stand-in.
    using Orders = QMap<QString, QString>;

    explicit SampleFolder(const QString &root);

    const QString &root() const { return m_root; }

    /// A path in the folder.
    QString path(const QString &relative) const;

    bool write(const QString &relative, const QByteArray &content) const;

    static QByteArray lines(const Orders &orders);

private:
    const QString m_root;
};
