#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>

/// The folder from which the upgrade library's stand-in answers: its answers, the package that it
/// "downloads", and how it is to behave. Methods that write return false when they could not.
class SampleFeed
{
public:
    /// "key=value" lines; standins/nvUpgrade/nvupgrade.cpp lists the keys.
    using Orders = QMap<QString, QString>;

    static constexpr qint64 defaultPackageBytes = qint64(24) * 1024 * 1024;

    /// The folder is made by the first method that writes.
    explicit SampleFeed(const QString &root);

    /// Answers, as they are; they need not be JSON.
    bool writeCheckAnswer(const QByteArray &answer) const;
    bool writeDownloadAnswer(const QByteArray &answer) const;

    /// Bytes that differ along the file, so that a misplaced chunk shows.
    bool writePackage(qint64 bytes = defaultPackageBytes) const;

    /// Replaces all orders. The package's target is among them unless the caller names another.
    bool writeOrders(const Orders &orders) const;

    /// The update description file of a version.
    bool writeUpdateInfo(const QString &version) const;

    /// A complete offer of this version, downloaded within a few seconds.
    bool writeUpgrade(const QString &version) const;

    /// Answers that are part of a complete offer.
    QByteArray checkAnswer(const QString &version) const;
    QByteArray downloadAnswer(const QString &version) const;

    QString packageFile() const;
    QString updateInfoFile() const;

    /// Where a download puts the package.
    QString target() const;

    /// The calls that the library received, one JSON line each.
    QString callsFile() const;

    /// What a program needs in its environment to be answered from this folder.
    QMap<QString, QString> environment() const;

private:
    QString path(const QString &relative) const;
    bool writeFile(const QString &relative, const QByteArray &content) const;

    const QString m_root;
};
