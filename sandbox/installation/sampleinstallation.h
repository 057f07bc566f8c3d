#pragma once

#include "sandbox/installation/samplefolder.h"

#include <QtCore/QStringList>

/// A complete sample installation of the product below one folder: product files, effect
/// resources, ini files, registry, setup uninstaller, update installer. Everything in it is real
/// enough to be run and removed; nothing outside the folder is touched.
class SampleInstallation
{
public:
    /// "key=value" lines that tell a sample program what to do: "delay" (milliseconds), "exit"
    /// (code), "end" ("crash" or "hang").
    using Orders = SampleFolder::Orders;

    explicit SampleInstallation(const QString &root);

    /// Writes the installation; returns false when a file could not be written.
    bool write() const;

    QString installDir() const;
    QString productDataDir() const;
    QString updateInstaller() const;

    /// Files below installDir() that the uninstaller always removes, and those that it removes on
    /// request only.
    QStringList productFiles() const;
    QStringList resourceFiles() const;

    /// Where the uninstaller or the update installer writes the arguments it received.
    QString uninstallerRecord() const;
    QString installerRecord() const;

    bool writeUninstaller(int number, const Orders &orders) const;
    bool writeUpdateInstaller(const Orders &orders) const;
    bool writeProductIni(const QString &language) const;

    /// Sets a value of the registry, or of the machine's state, "System/Online", where a program
    /// can be told of it.
    void setSystemValue(const QString &key, const QString &value) const;
    void removeSystemValue(const QString &key) const;
    void clearSystemValues() const;

    /// What a program needs in its environment to see this installation.
    QMap<QString, QString> environment() const;

private:
    QString path(const QString &relative) const;

    const SampleFolder m_folder;
};
