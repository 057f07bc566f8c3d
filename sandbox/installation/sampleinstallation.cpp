#include "sandbox/installation/sampleinstallation.h"

#include "sandbox/installation/systemvalues.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace {

const auto productExe = QStringLiteral("Norvane Clipwright X.exe");

// Within the sample's folder.
const auto installFolder = QStringLiteral("Program Files/Norvane/Norvane Clipwright/");
const auto dataFolder = QStringLiteral("ProgramData/Norvane Clipwright/");
const auto updateStem =
    QStringLiteral("Program Files/Norvane/Norvane Clipwright Update/Norvane Clipwright Update");

bool copyProgram(const QString &name, const QString &target)
{
    QDir().mkpath(QFileInfo(target).path());
    QFile::remove(target);
    return QFile::copy(QStringLiteral(SANDBOX_PROGRAMS_DIR "/%1" SANDBOX_PROGRAM_SUFFIX).arg(name),
                       target);
}

} // namespace

SampleInstallation::SampleInstallation(const QString &root)
    : m_folder(root)
{
}

bool SampleInstallation::write() const
{
    for (const char *folder : {"Temp", "Runtime", "Received"})
        QDir().mkpath(path(QString::fromLatin1(folder)));
    QFile(path(QStringLiteral("Runtime")))
        .setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    bool ok = true;
    const QStringList files = productFiles() + resourceFiles();
    for (const QString &file : files)
        ok =
            m_folder.write(installFolder + file, "Sample content of " + file.toUtf8() + '\n') && ok;
    ok = copyProgram(QStringLiteral("sample-program"), path(installFolder + productExe)) && ok;
    ok = writeUninstaller(0, {{QStringLiteral("delay"), QStringLiteral("3000")}}) && ok;
    ok = writeUpdateInstaller({{QStringLiteral("delay"), QStringLiteral("2000")}}) && ok;
    ok = writeProductIni(QStringLiteral("ENG")) && ok;
    ok = m_folder.write(dataFolder + QStringLiteral("KConfig.ini"),
                        "[Uid]\nUid=20260417\n\n[AccountInfo]\nEmail=robin@mail.example\n") &&
         ok;

    setSystemValue(QStringLiteral("HKEY_CLASSES_ROOT/NCPFile/path"), installDir());
    setSystemValue(QStringLiteral("HKEY_LOCAL_MACHINE/SOFTWARE/Norvane/846/UninstallJumpPage"),
                   QStringLiteral("https://www.norvane.example/clipwright/goodbye"));
    setSystemValue(QStringLiteral("System/Online"), QStringLiteral("true"));
    return ok;
}

QString SampleInstallation::installDir() const
{
    return path(installFolder).chopped(1);
}

QString SampleInstallation::productDataDir() const
{
    return path(dataFolder).chopped(1);
}

QString SampleInstallation::updateInstaller() const
{
    return path(updateStem + QStringLiteral(".exe"));
}

QStringList SampleInstallation::productFiles() const
{
    return {productExe,
            QStringLiteral("ClipCore.dll"),
            QStringLiteral("Render.dll"),
            QStringLiteral("Codecs/NorvaneH264.dll"),
            QStringLiteral("Codecs/NorvaneAac.dll"),
            QStringLiteral("Help/Getting started.html"),
            QStringLiteral("Languages/Deutsch.lng"),
            QStringLiteral("Languages/日本語.lng")};
}

QStringList SampleInstallation::resourceFiles() const
{
    return {QStringLiteral("Effects/Transitions/Soft Wipe.ncfx"),
            QStringLiteral("Effects/Transitions/Film Roll.ncfx"),
            QStringLiteral("Effects/Titles/Lower Third.ncfx"),
            QStringLiteral("Effects/Looks/Golden Hour.ncfx")};
}

QString SampleInstallation::uninstallerRecord() const
{
    return path(QStringLiteral("Received/uninstaller.txt"));
}

QString SampleInstallation::installerRecord() const
{
    return path(QStringLiteral("Received/update-installer.txt"));
}

bool SampleInstallation::writeUninstaller(int number, const Orders &orders) const
{
    const QString stem = installFolder + QStringLiteral("unins00%1").arg(number);
    QByteArray dat = SampleFolder::lines(orders) + "record=" + uninstallerRecord().toUtf8() + '\n';
    const QStringList files = productFiles();
    for (const QString &file : files)
        dat += "file=" + file.toUtf8() + '\n';
    const QStringList resources = resourceFiles();
    for (const QString &resource : resources)
        dat += "resource=" + resource.toUtf8() + '\n';
    return copyProgram(QStringLiteral("sample-uninstaller"), path(stem + QStringLiteral(".exe"))) &&
           m_folder.write(stem + QStringLiteral(".dat"), dat);
}

bool SampleInstallation::writeUpdateInstaller(const Orders &orders) const
{
    return copyProgram(QStringLiteral("sample-update-installer"), updateInstaller()) &&
           m_folder.write(updateStem + QStringLiteral(".txt"),
                          SampleFolder::lines(orders) + "record=" + installerRecord().toUtf8() +
                              "\nini=" + productDataDir().toUtf8() + "/Clipwright.ini\n");
}

bool SampleInstallation::writeProductIni(const QString &language) const
{
    return m_folder.write(dataFolder + QStringLiteral("Clipwright.ini"),
                          "[System]\nProductID=8461\nDefInstallLang=" + language.toLatin1() +
                              "\n\n[Product]\nProductID=846\nVersion=7.2.1.4\n");
}

void SampleInstallation::setSystemValue(const QString &key, const QString &value) const
{
    SystemValues::set(m_folder.root(), key, value);
}

void SampleInstallation::removeSystemValue(const QString &key) const
{
    SystemValues::remove(m_folder.root(), key);
}

void SampleInstallation::clearSystemValues() const
{
    SystemValues::clear(m_folder.root());
}

QMap<QString, QString> SampleInstallation::environment() const
{
    const QString temp = path(QStringLiteral("Temp"));
    QMap<QString, QString> environment = SystemValues::environment(m_folder.root());
    environment.insert(QStringLiteral("ProgramData"), path(QStringLiteral("ProgramData")));
    environment.insert(QStringLiteral("ProgramFiles"), path(QStringLiteral("Program Files")));
    for (const char *variable : {"TMPDIR", "TMP", "TEMP"})
        environment.insert(QString::fromLatin1(variable), temp);
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), path(QStringLiteral("Runtime")));
    return environment;
}

QString SampleInstallation::path(const QString &relative) const
{
    return m_folder.path(relative);
}
