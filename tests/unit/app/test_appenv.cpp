#include "app/env/appenv.h"
#include "tests/support/machine.h"
#include "tests/support/offlinemachine.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtTest/QTest>

namespace {

QStringList texts(const char *joined)
{
    return QString::fromLatin1(joined).split(QLatin1Char('|'));
}

QStringList productFields()
{
    const AppEnv::ProductInfo product = AppEnv::readProductInfo();
    return {product.productId, product.language, product.productGroupId, product.version};
}

} // namespace

class TestAppEnv : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void foldersAndFilesOfAnInstallation();
    void nothingIsFoundWithoutRegistryKeys();
    void dataFoldersAreMadeWhenMissing();
    void productDataDirWithoutProgramDataLiesAtTheRoot();
    void filesAndEnvironmentAreReadAfresh();
    void productIni_data();
    void productIni();
    void groupIdIsReadOnlyOnRequest();
    void accountIni_data();
    void accountIni();
    void namedPipesAreNotRead();
    void uninstallerIsChosenAmongPairs_data();
    void uninstallerIsChosenAmongPairs();
    void onlineStateComesFromTheSystem();
};

void TestAppEnv::foldersAndFilesOfAnInstallation()
{
    const Sandbox sandbox;
    QCOMPARE(AppEnv::installDir(), sandbox->installDir());
    QCOMPARE(AppEnv::installDirOrDefault(), sandbox->installDir());
    QCOMPARE(AppEnv::productExePath(), sandbox->installDir() + QDir::separator() +
                                           QStringLiteral("Norvane Clipwright X.exe"));
    QCOMPARE(AppEnv::updateInstallerPath(), sandbox->updateInstaller());
    const QString data = sandbox.path(QStringLiteral("ProgramData/Norvane Clipwright"));
    QCOMPARE(AppEnv::productDataDir(), data);
    QCOMPARE(AppEnv::productIniPath(), data + QStringLiteral("/Clipwright.ini"));
    QCOMPARE(AppEnv::accountIniPath(), data + QStringLiteral("/KConfig.ini"));
    QCOMPARE(AppEnv::uninstallJumpPage(QStringLiteral("846")),
             QStringLiteral("https://www.norvane.example/clipwright/goodbye"));
    QCOMPARE(productFields(), texts("8461|ENG|846|7.2.1.4"));
    const AppEnv::AccountInfo account = AppEnv::readAccountInfo();
    QCOMPARE(account.uid, QStringLiteral("20260417"));
    QCOMPARE(account.email, QStringLiteral("robin@mail.example"));
}

void TestAppEnv::nothingIsFoundWithoutRegistryKeys()
{
    const Sandbox sandbox;
    sandbox->clearSystemValues();
    QCOMPARE(AppEnv::installDir(), QString());
    QCOMPARE(AppEnv::installDirOrDefault(),
             sandbox.path(QStringLiteral("Program Files/Norvane/Norvane Clipwright")));
    QCOMPARE(AppEnv::productExePath(), QString());
    QCOMPARE(AppEnv::findUninstaller(), QString());
    QCOMPARE(AppEnv::uninstallJumpPage(QStringLiteral("846")), QString());
}

void TestAppEnv::dataFoldersAreMadeWhenMissing()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    const QString product = sandbox.path(QStringLiteral("ProgramData/Norvane Clipwright"));
    const QString uninstaller = sandbox.path(QStringLiteral("Temp/Norvane Clipwright Uninstaller"));
    QVERIFY(!QDir(product).exists() && !QDir(uninstaller).exists());
    QCOMPARE(AppEnv::productDataDir(), product);
    QCOMPARE(AppEnv::uninstallerDataDir(), uninstaller);
    QVERIFY(QDir(product).exists() && QDir(uninstaller).exists());
}

void TestAppEnv::productDataDirWithoutProgramDataLiesAtTheRoot()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    const QString expected = QStringLiteral("/Norvane Clipwright");
    const bool existed = QDir(expected).exists();
    qunsetenv("ProgramData");
    QCOMPARE(AppEnv::productDataDir(), expected);
    if (!existed)
        QDir().rmdir(expected);
}

void TestAppEnv::filesAndEnvironmentAreReadAfresh()
{
    const Sandbox sandbox;
    QCOMPARE(productFields(), texts("8461|ENG|846|7.2.1.4"));
    QTest::qSleep(20); // QSettings tells files of the same size apart by their time
    sandbox->writeProductIni(QStringLiteral("DEU"));
    QCOMPARE(productFields(), texts("8461|DEU|846|7.2.1.4"));

    QVERIFY(!AppEnv::findUninstaller().isEmpty());
    QVERIFY(QFile::remove(sandbox->installDir() + QStringLiteral("/unins000.dat")));
    QVERIFY(AppEnv::findUninstaller().isEmpty());

    const QString other = sandbox.path(QStringLiteral("Other"));
    sandbox.writeFile(QStringLiteral("Other/Norvane Clipwright/Clipwright.ini"),
                      "[System]\nProductID=12\n");
    for (const char *variable : {"ProgramData", "TMPDIR", "TMP", "TEMP"})
        qputenv(variable, QFile::encodeName(other));
    QCOMPARE(productFields(), texts("12|||"));
    QCOMPARE(AppEnv::uninstallerDataDir(),
             other + QStringLiteral("/Norvane Clipwright Uninstaller"));
}

void TestAppEnv::productIni_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("fields"); // id, language, group id, version
    const auto row = [](const char *name, const QByteArray &content, const char *fields) {
        QTest::newRow(name) << content << texts(fields);
    };

    const QByteArray system = "[System]\nProductID=12\nDefInstallLang=FRA\n";
    row("empty", {}, "|||");
    row("no Product group", system, "12|FRA||");
    row("no System group", "[Product]\nProductID=3\nVersion=1.2\n", "||3|1.2");
    row("no groups at all", "ProductID=12\nVersion=1.2\n", "|||");
    row("empty values", "[System]\nProductID=\nDefInstallLang=\n", "|||");
    row("windows line ends", QByteArray(system).replace("\n", "\r\n"), "12|FRA||");
    row("blanks around", "[System]\nProductID = 12 \nDefInstallLang= FRA\n", "12|FRA||");
    row("quoted", "[System]\nProductID=\"12\"\nDefInstallLang=\"FRA\"\n", "12|FRA||");
    row("a list where text belongs", "[System]\nProductID=1, 2\nDefInstallLang=FRA\n", "|FRA||");
    row("no line end at the end", "[System]\nDefInstallLang=FRA", "|FRA||");
    row("garbage", QByteArray("\x00\xff\xfe[[[=]]]\n==\n[", 16), "|||");
    row("garbage before good lines", "no sense here\n[unclosed\n" + system, "12|FRA||");
    row("huge", system + "[Product]\nVersion=3\nPadding=" + QByteArray(8 * 1024 * 1024, 'x') + '\n',
        "12|FRA||3");
}

void TestAppEnv::productIni()
{
    QFETCH(QByteArray, content);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    sandbox.writeFile(QStringLiteral("ProgramData/Norvane Clipwright/Clipwright.ini"), content);
    QTEST(productFields(), "fields");
}

void TestAppEnv::groupIdIsReadOnlyOnRequest()
{
    const Sandbox sandbox;
    QString productId;
    QString version;
    QString language;
    AppEnv::readProductInfo(productId, version, language, nullptr);
    QCOMPARE(QStringList({productId, language, version}), texts("8461|ENG|7.2.1.4"));
}

void TestAppEnv::accountIni_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("uid");
    QTest::addColumn<QString>("email");

    QTest::newRow("empty") << QByteArray() << QString() << QString();
    QTest::newRow("signed out") << QByteArray("[ProxyInfo]\nMode=0\n") << QString() << QString();
    QTest::newRow("no address") << QByteArray("[Uid]\nUid=77\n") << QStringLiteral("77")
                                << QString();
    QTest::newRow("both") << QByteArray("[Uid]\nUid=77\n[AccountInfo]\nEmail=a@b.cd\n")
                          << QStringLiteral("77") << QStringLiteral("a@b.cd");
}

void TestAppEnv::accountIni()
{
    QFETCH(QByteArray, content);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    sandbox.writeFile(QStringLiteral("ProgramData/Norvane Clipwright/KConfig.ini"), content);
    const AppEnv::AccountInfo account = AppEnv::readAccountInfo();
    QTEST(account.uid, "uid");
    QTEST(account.email, "email");
}

void TestAppEnv::namedPipesAreNotRead()
{
    const Sandbox sandbox;
    for (const QString &ini : {AppEnv::productIniPath(), AppEnv::accountIniPath()}) {
        QVERIFY(!AppEnv::isSpecialFile(ini));
        QVERIFY(QFile::remove(ini));
        QVERIFY(!AppEnv::isSpecialFile(ini));
        if (!Machine::makePipe(ini))
            QSKIP("no pipe has a name of the file system here");
        QVERIFY(AppEnv::isSpecialFile(ini));
    }
    QVERIFY(!AppEnv::isSpecialFile(sandbox.path(QString())));
    QCOMPARE(productFields(), texts("|||"));
    QCOMPARE(AppEnv::readAccountInfo().uid, QString());
}

void TestAppEnv::uninstallerIsChosenAmongPairs_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("found");
    const auto row = [](const char *name, const char *files, const char *found) {
        QTest::newRow(name) << texts(files) << QString::fromLatin1(found);
    };

    row("no pair", "readme.txt", "");
    row("one pair", "unins000.exe|unins000.dat", "unins000.exe");
    row("a newer one without its data", "unins000.exe|unins000.dat|unins001.exe", "unins000.exe");
    row("the highest of several pairs", "unins003.exe|unins003.dat|unins007.exe|unins007.dat",
        "unins007.exe");
    row("data only", "unins000.dat", "");
    row("program only", "unins000.exe", "");
    row("two digits do not count", "unins010.exe|unins010.dat|unins0010.exe|unins0010.dat", "");
    row("the last digit", "unins009.exe|unins009.dat|unins000.exe|unins000.dat", "unins009.exe");
}

void TestAppEnv::uninstallerIsChosenAmongPairs()
{
    QFETCH(QStringList, files);
    QFETCH(QString, found);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    const QString folder = sandbox.path(QStringLiteral("product"));
    sandbox->setSystemValue(QStringLiteral("HKEY_CLASSES_ROOT/NCPFile/path"), folder);
    for (const QString &file : qAsConst(files))
        sandbox.writeFile(QStringLiteral("product/") + file, QByteArray());
    QCOMPARE(AppEnv::findUninstaller(),
             found.isEmpty() ? QString() : QString(folder + QDir::separator() + found));
}

void TestAppEnv::onlineStateComesFromTheSystem()
{
    QVERIFY(AppEnv::isNetworkOnline());
    const OfflineMachine machine;
    QVERIFY(!AppEnv::isNetworkOnline());
}

QTEST_GUILESS_MAIN(TestAppEnv)
#include "test_appenv.moc"
