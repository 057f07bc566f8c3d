#include "app/env/appenv.h"

#include "platform/network.h"
#include "platform/registry.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>

namespace AppEnv {

namespace {

QString textInGroup(QSettings &settings, const QString &group, const QString &key)
{
    settings.beginGroup(group);
    QString text = settings.value(key, QString()).toString();
    settings.endGroup();
    return text;
}

/// The path, or one where nothing is.
QString readable(const QString &path)
{
    return isSpecialFile(path) ? path + QStringLiteral("/none") : path;
}

QString makerProgramsDir()
{
    return QProcessEnvironment::systemEnvironment().value(QStringLiteral("ProgramFiles")) +
           QLatin1Char('/') + brandName() + QLatin1Char('/');
}

} // namespace

QString brandName()
{
    return QStringLiteral("Norvane");
}

QString productName()
{
    return QStringLiteral("Norvane Clipwright");
}

QString ensuredFolder(const QString &path)
{
    QString folder = QDir::fromNativeSeparators(path);
    if (!QDir(folder).exists())
        QDir().mkpath(folder);
    return folder;
}

bool isSpecialFile(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile() && !info.isDir();
}

QString installDir()
{
    return Platform::registryText(QStringLiteral("HKEY_CLASSES_ROOT\\NCPFile"),
                                  QStringLiteral("path"));
}

QString installDirOrDefault()
{
    const QString folder = installDir();
    return folder.isEmpty() ? QString(makerProgramsDir() + productName()) : folder;
}

QString updateInstallerPath()
{
    const QString program = productName() + QStringLiteral(" Update");
    return makerProgramsDir() + program + QLatin1Char('/') + program + QStringLiteral(".exe");
}

QString productExePath()
{
    const QString folder = installDir();
    if (folder.isEmpty())
        return {};
    return folder + QDir::separator() + productName() + QStringLiteral(" X.exe");
}

QString productDataDir()
{
    const QString programData =
        QProcessEnvironment::systemEnvironment().value(QStringLiteral("ProgramData"));
    return ensuredFolder(programData + QLatin1Char('/') + productName());
}

QString uninstallerDataDir()
{
    const QStringList temporary = QStandardPaths::standardLocations(QStandardPaths::TempLocation);
    const QString root = temporary.isEmpty() ? QDir::tempPath() : temporary.constFirst();
    return ensuredFolder(root + QStringLiteral("/Norvane Clipwright Uninstaller"));
}

QString productIniPath()
{
    return readable(productDataDir() + QStringLiteral("/Clipwright.ini"));
}

QString accountIniPath()
{
    return readable(productDataDir() + QStringLiteral("/KConfig.ini"));
}

void readProductInfo(QString &productId, QString &version, QString &language,
                     QString *productGroupId)
{
    QSettings ini(productIniPath(), QSettings::IniFormat);
    const QString system = QStringLiteral("System");
    const QString product = QStringLiteral("Product");
    productId = textInGroup(ini, system, QStringLiteral("ProductID"));
    language = textInGroup(ini, system, QStringLiteral("DefInstallLang"));
    if (productGroupId)
        *productGroupId = textInGroup(ini, product, QStringLiteral("ProductID"));
    version = textInGroup(ini, product, QStringLiteral("Version"));
}

ProductInfo readProductInfo()
{
    ProductInfo info;
    readProductInfo(info.productId, info.version, info.language, &info.productGroupId);
    return info;
}

void readAccountInfo(QString &uid, QString &email)
{
    QSettings ini(accountIniPath(), QSettings::IniFormat);
    uid = textInGroup(ini, QStringLiteral("Uid"), QStringLiteral("Uid"));
    email = textInGroup(ini, QStringLiteral("AccountInfo"), QStringLiteral("Email"));
}

AccountInfo readAccountInfo()
{
    AccountInfo info;
    readAccountInfo(info.uid, info.email);
    return info;
}

QString findUninstaller()
{
    const QString folder = installDir();
    if (folder.isEmpty())
        return {};
    for (int number = 9; number >= 0; --number) {
        const QString stem = folder + QDir::separator() + QStringLiteral("unins00%1").arg(number);
        QString program = stem + QStringLiteral(".exe");
        if (QFile::exists(program) && QFile::exists(stem + QStringLiteral(".dat")))
            return program;
    }
    return {};
}

QString uninstallJumpPage(const QString &productId)
{
    return Platform::registryText(QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane\\") +
                                      productId,
                                  QStringLiteral("UninstallJumpPage"));
}

bool isNetworkOnline()
{
    return Platform::isNetworkOnline();
}

} // namespace AppEnv
