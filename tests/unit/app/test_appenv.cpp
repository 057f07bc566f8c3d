#include "app/env/appenv.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtTest/QTest>

class TestAppEnv : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void foldersAndFilesOfAnInstallation();
    void withoutRegistryKeyNothingIsFound();
    void productDataDirIsMadeWhenMissing();
    void productDataDirWithoutProgramDataLiesAtTheRoot();
    void uninstallerDataDirIsMadeBelowTemporaryFiles();
    void valuesAreReadAfresh();
    void environmentIsReadAfresh();
    void productIniAccidents_data();
    void productIniAccidents();
    void groupIdIsReadOnlyOnRequest();
    void accountIniAccidents_data();
    void accountIniAccidents();
    void uninstallerIsChosenAmongPairs_data();
    void uninstallerIsChosenAmongPairs();
    void onlineStateComesFromTheMachine();
};

void TestAppEnv::foldersAndFilesOfAnInstallation()
{
    const Sandbox sandbox;
    QCOMPARE(AppEnv::installDir(), sandbox->installDir());
    QCOMPARE(AppEnv::productExePath(), sandbox->installDir() + QDir::separator() +
                                           QStringLiteral("Norvane Clipwright X.exe"));
    QCOMPARE(AppEnv::productDataDir(),
             sandbox.path(QStringLiteral("ProgramData/Norvane Clipwright")));
    QCOMPARE(AppEnv::updateInstallerPath(), sandbox->updateInstaller());
    QCOMPARE(AppEnv::installDirOrDefault(), sandbox->installDir());
    QCOMPARE(AppEnv::productIniPath(),
             AppEnv::productDataDir() + QStringLiteral("/Clipwright.ini"));
    QCOMPARE(AppEnv::accountIniPath(), AppEnv::productDataDir() + QStringLiteral("/KConfig.ini"));

    const AppEnv::ProductInfo product = AppEnv::readProductInfo();
    QCOMPARE(product.productId, QStringLiteral("8461"));
    QCOMPARE(product.language, QStringLiteral("ENG"));
    QCOMPARE(product.productGroupId, QStringLiteral("846"));
    QCOMPARE(product.version, QStringLiteral("7.2.1.4"));

    const AppEnv::AccountInfo account = AppEnv::readAccountInfo();
    QCOMPARE(account.uid, QStringLiteral("20260417"));
    QCOMPARE(account.email, QStringLiteral("robin@mail.example"));
}

void TestAppEnv::withoutRegistryKeyNothingIsFound()
{
    const Sandbox sandbox;
    sandbox->removeSystemValue(QStringLiteral("HKEY_CLASSES_ROOT/NCPFile/path"));
    QCOMPARE(AppEnv::installDir(), QString());
    QCOMPARE(AppEnv::installDirOrDefault(),
             sandbox.path(QStringLiteral("Program Files/Norvane/Norvane Clipwright")));
    QCOMPARE(AppEnv::productExePath(), QString());
    QCOMPARE(AppEnv::findUninstaller(), QString());
}

void TestAppEnv::productDataDirIsMadeWhenMissing()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    const QString expected = sandbox.path(QStringLiteral("ProgramData/Norvane Clipwright"));
    QVERIFY(!QDir(expected).exists());
    QCOMPARE(AppEnv::productDataDir(), expected);
    QVERIFY(QDir(expected).exists());
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

void TestAppEnv::uninstallerDataDirIsMadeBelowTemporaryFiles()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    const QString expected = sandbox.path(QStringLiteral("Temp/Norvane Clipwright Uninstaller"));
    QVERIFY(!QDir(expected).exists());
    QCOMPARE(AppEnv::uninstallerDataDir(), expected);
    QVERIFY(QDir(expected).exists());
}

void TestAppEnv::valuesAreReadAfresh()
{
    const Sandbox sandbox;
    QCOMPARE(AppEnv::readProductInfo().language, QStringLiteral("ENG"));
    QTest::qSleep(20); // files of the same size are told apart by their time
    sandbox->writeProductIni(QStringLiteral("DEU"));
    QCOMPARE(AppEnv::readProductInfo().language, QStringLiteral("DEU"));

    QVERIFY(!AppEnv::findUninstaller().isEmpty());
    QVERIFY(QFile::remove(sandbox->installDir() + QStringLiteral("/unins000.dat")));
    QVERIFY(AppEnv::findUninstaller().isEmpty());
}

void TestAppEnv::environmentIsReadAfresh()
{
    const Sandbox sandbox;
    QCOMPARE(AppEnv::readProductInfo().productId, QStringLiteral("8461"));
    const QString other = sandbox.path(QStringLiteral("Other"));
    sandbox.writeFile(QStringLiteral("Other/Norvane Clipwright/Clipwright.ini"),
                      "[System]\nProductID=12\n");
    for (const char *variable : {"ProgramData", "TMPDIR", "TMP", "TEMP"})
        qputenv(variable, QFile::encodeName(other));
    QCOMPARE(AppEnv::readProductInfo().productId, QStringLiteral("12"));
    QCOMPARE(AppEnv::uninstallerDataDir(),
             other + QStringLiteral("/Norvane Clipwright Uninstaller"));
}

void TestAppEnv::productIniAccidents_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("productId");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("version");

    const QByteArray system = "[System]\nProductID=12\nDefInstallLang=FRA\n";
    QTest::newRow("empty") << QByteArray() << QString() << QString() << QString();
    QTest::newRow("no Product group")
        << system << QStringLiteral("12") << QStringLiteral("FRA") << QString();
    QTest::newRow("no System group") << QByteArray("[Product]\nVersion=1.2\n") << QString()
                                     << QString() << QStringLiteral("1.2");
    QTest::newRow("no groups at all")
        << QByteArray("ProductID=12\nVersion=1.2\n") << QString() << QString() << QString();
    QTest::newRow("empty values") << QByteArray("[System]\nProductID=\nDefInstallLang=\n")
                                  << QString() << QString() << QString();
    QTest::newRow("windows line ends")
        << QByteArray("[System]\r\nProductID=12\r\nDefInstallLang=FRA\r\n") << QStringLiteral("12")
        << QStringLiteral("FRA") << QString();
    QTest::newRow("blanks around") << QByteArray("[System]\nProductID = 12 \nDefInstallLang= FRA\n")
                                   << QStringLiteral("12") << QStringLiteral("FRA") << QString();
    QTest::newRow("quoted") << QByteArray("[System]\nProductID=\"12\"\nDefInstallLang=\"FRA\"\n")
                            << QStringLiteral("12") << QStringLiteral("FRA") << QString();
    QTest::newRow("a list where text belongs")
        << QByteArray("[System]\nProductID=1, 2\nDefInstallLang=FRA\n") << QString()
        << QStringLiteral("FRA") << QString();
    QTest::newRow("no line end at the end") << QByteArray("[System]\nDefInstallLang=FRA")
                                            << QString() << QStringLiteral("FRA") << QString();
    QTest::newRow("garbage") << QByteArray("\x00\xff\xfe[[[=]]]\n==\n[", 16) << QString()
                             << QString() << QString();
    QTest::newRow("garbage before good lines")
        << "no sense here\n[unclosed\n" + system << QStringLiteral("12") << QStringLiteral("FRA")
        << QString();
    QTest::newRow("huge") << system + "[Product]\nVersion=3\nPadding=" +
                                 QByteArray(8 * 1024 * 1024, 'x') + "\n"
                          << QStringLiteral("12") << QStringLiteral("FRA") << QStringLiteral("3");
}

void TestAppEnv::productIniAccidents()
{
    QFETCH(QByteArray, content);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    sandbox.writeFile(QStringLiteral("ProgramData/Norvane Clipwright/Clipwright.ini"), content);

    const AppEnv::ProductInfo product = AppEnv::readProductInfo();
    QTEST(product.productId, "productId");
    QTEST(product.language, "language");
    QTEST(product.version, "version");
    QCOMPARE(product.productGroupId, QString());
}

void TestAppEnv::groupIdIsReadOnlyOnRequest()
{
    const Sandbox sandbox;
    QString productId;
    QString version;
    QString language;
    AppEnv::readProductInfo(productId, version, language, nullptr);
    QCOMPARE(productId, QStringLiteral("8461"));
    QCOMPARE(version, QStringLiteral("7.2.1.4"));
    QCOMPARE(language, QStringLiteral("ENG"));
    QString groupId;
    AppEnv::readProductInfo(productId, version, language, &groupId);
    QCOMPARE(groupId, QStringLiteral("846"));
}

void TestAppEnv::accountIniAccidents_data()
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

void TestAppEnv::accountIniAccidents()
{
    QFETCH(QByteArray, content);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    sandbox.writeFile(QStringLiteral("ProgramData/Norvane Clipwright/KConfig.ini"), content);

    const AppEnv::AccountInfo account = AppEnv::readAccountInfo();
    QTEST(account.uid, "uid");
    QTEST(account.email, "email");
}

void TestAppEnv::uninstallerIsChosenAmongPairs_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("found");

    const auto files = [](const char *names) {
        return QString::fromLatin1(names).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    QTest::newRow("nothing") << files("") << QString();
    QTest::newRow("one pair") << files("unins000.exe unins000.dat")
                              << QStringLiteral("unins000.exe");
    QTest::newRow("a newer one without its data")
        << files("unins000.exe unins000.dat unins001.exe") << QStringLiteral("unins000.exe");
    QTest::newRow("the highest of several pairs")
        << files("unins003.exe unins003.dat unins007.exe unins007.dat")
        << QStringLiteral("unins007.exe");
    QTest::newRow("data only") << files("unins000.dat") << QString();
    QTest::newRow("program only") << files("unins000.exe") << QString();
    QTest::newRow("two digits do not count") << files("unins010.exe unins010.dat") << QString();
    QTest::newRow("the last digit") << files("unins009.exe unins009.dat unins000.exe unins000.dat")
                                    << QStringLiteral("unins009.exe");
}

void TestAppEnv::uninstallerIsChosenAmongPairs()
{
    QFETCH(QStringList, files);
    QFETCH(QString, found);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    sandbox->setSystemValue(QStringLiteral("HKEY_CLASSES_ROOT/NCPFile/path"),
                            sandbox.path(QStringLiteral("product")));
    for (const QString &file : qAsConst(files))
        sandbox.writeFile(QStringLiteral("product/") + file, QByteArray());

    const QString expected =
        found.isEmpty() ? QString()
                        : sandbox.path(QStringLiteral("product")) + QDir::separator() + found;
    QCOMPARE(AppEnv::findUninstaller(), expected);
}

void TestAppEnv::onlineStateComesFromTheMachine()
{
    const Sandbox sandbox;
    QVERIFY(AppEnv::isNetworkOnline());
    if (!SampleInstallation::canPretendOffline())
        QSKIP("this system's word that it is online cannot be changed for a test");
    sandbox->setSystemValue(QStringLiteral("System/Online"), QStringLiteral("false"));
    QVERIFY(!AppEnv::isNetworkOnline());
}

QTEST_GUILESS_MAIN(TestAppEnv)
#include "test_appenv.moc"
