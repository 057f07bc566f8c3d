#pragma once

#include <QtCore/QString>

/// What the product's setup left behind: folders, ini files, registry values.
///
/// Nothing is cached: every call reads afresh, because the uninstaller that this program starts
/// changes these places while it runs. Nothing reports an error: what is missing is empty text.
/// Call from the GUI thread or, for the folders, from any.
namespace AppEnv {

/// The maker's and the product's name, as the maker's services and installers know them.
QString brandName();
QString productName();

/// What the product ini says; the ids are texts, as they stand there.
struct ProductInfo
{
    QString productId;
    QString language; ///< the installer's three-letter code
    QString productGroupId;
    QString version;
};

/// The signed-in account, empty when there is none.
struct AccountInfo
{
    QString uid;
    QString email;
};

/// The path with forward slashes; the folder is made, with its parents, when missing. The path is
/// returned also when that fails.
QString ensuredFolder(const QString &path);

/// Whether a named pipe or a device has this name, which to open or read may never end.
bool isSpecialFile(const QString &path);

/// The installation folder as the registry holds it, with native separators.
QString installDir();

/// installDir() or, without one, the folder into which the setup installs by default.
QString installDirOrDefault();

/// The maker's update installer, whether or not it exists.
QString updateInstallerPath();

/// The product's executable in installDir(), whether or not it exists; empty without installDir().
QString productExePath();

/// The product's shared data folder; made when missing.
QString productDataDir();

/// This program's own data folder, below the temporary files; made when missing.
QString uninstallerDataDir();

/// The product's settings, "Clipwright.ini" in productDataDir(); where that is a special file, a
/// path where nothing is.
QString productIniPath();

/// The signed-in account's settings, "KConfig.ini" in productDataDir(), likewise.
QString accountIniPath();

/// Fills what the product ini holds; productGroupId may be null and is then not read.
void readProductInfo(QString &productId, QString &version, QString &language,
                     QString *productGroupId);

/// All of it at once.
ProductInfo readProductInfo();

/// Fills what the account ini holds.
void readAccountInfo(QString &uid, QString &email);

AccountInfo readAccountInfo();

/// The setup uninstaller to run: the highest-numbered unins00N.exe in installDir() that has its
/// .dat beside it. Empty when there is none.
QString findUninstaller();

/// The page to open after an uninstallation of the product with this id, as its setup registered
/// it; empty when there is none.
QString uninstallJumpPage(const QString &productId);

/// Whether the machine counts as connected to a network.
bool isNetworkOnline();

} // namespace AppEnv
