#pragma once

#include "sandbox/installation/samplefolder.h"

/// The folder from which the upgrade library's stand-in answers: its answers, the package that it
/// "downloads", and how it is to behave.
class SampleFeed
{
public:
    /// standins/nvUpgrade/nvupgrade.cpp lists the keys.
    using Orders = SampleFolder::Orders;

    static constexpr int defaultPackageBytes = 24 * 1024 * 1024;

    explicit SampleFeed(const QString &root);

    /// Answers, as they are; they need not be JSON.
    bool writeCheckAnswer(const QByteArray &answer) const;
    bool writeDownloadAnswer(const QByteArray &answer) const;

    /// Bytes that differ along the file, so that a misplaced chunk shows.
    bool writePackage(int bytes = defaultPackageBytes) const;

    /// Replaces all orders. The package's target is among them unless the caller names another.
    bool writeOrders(Orders orders) const;

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
    const SampleFolder m_folder;
};
