#include "config/content/configcontent.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtCore/QSet>
#include <QtTest/QTest>

class TestBuiltinDocuments : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void optionsHaveCodesAndTypes();
    void categoriesAndRecommendationsAreFilled();
};

void TestBuiltinDocuments::initTestCase_data()
{
    QTest::addColumn<QString>("file");
    const QDir documents(QStringLiteral(":/Resources/cfg"));
    const QStringList names = documents.entryList({QStringLiteral("*.cfg")});
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("ar.cfg de.cfg en.cfg es.cfg fr.cfg id.cfg it.cfg ja.cfg ko.cfg nl.cfg "
                            "pl.cfg pt.cfg ro.cfg ru.cfg sv.cfg tw.cfg"));
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << documents.filePath(name);
}

void TestBuiltinDocuments::optionsHaveCodesAndTypes()
{
    QFETCH_GLOBAL(QString, file);
    const QJsonObject document = Config::readDocument(file).object();
    QCOMPARE(document.value(QLatin1String("pid")), QJsonValue(846));

    QSet<int> values;
    QStringList types;
    const QList<QJsonObject> options = Config::jsonObjectList(
        document.value(QLatin1String("problem_type")).toObject(), QStringLiteral("list"));
    for (const QJsonObject &option : options) {
        values += option.value(QLatin1String("value")).toInt(-1);
        const QString type =
            Config::jsonString(Config::extendObject(option), QStringLiteral("option_type"));
        types += type;
        QVERIFY(!Config::jsonString(option, QStringLiteral("title")).isEmpty());
        QVERIFY(!Config::jsonString(option, QStringLiteral("banner_title")).isEmpty());
        const bool hasButton = type == QLatin1String("upgrade") || type == QLatin1String("jump");
        QCOMPARE(!Config::jsonString(option, QStringLiteral("button_name")).isEmpty(), hasButton);
    }
    QCOMPARE(values, (QSet<int>{56, 57, 58, 59, 60, 61, 62, 63, 64}));
    QCOMPARE(types.count(QStringLiteral("homepage")), 1);
    for (const char *type : {"", "submit", "upgrade", "jump"})
        QVERIFY2(types.contains(QString::fromLatin1(type)), type);
}

void TestBuiltinDocuments::categoriesAndRecommendationsAreFilled()
{
    QFETCH_GLOBAL(QString, file);
    const QJsonObject document = Config::readDocument(file).object();
    QStringList keys;
    QSet<int> pids;
    const QList<QJsonObject> categories = Config::jsonObjectList(document, QStringLiteral("apps"));
    for (const QJsonObject &category : categories) {
        keys += Config::jsonString(category, QStringLiteral("key"));
        const QList<QJsonObject> products =
            Config::jsonObjectList(category, QStringLiteral("list"));
        QVERIFY(products.size() >= 5);
        for (const QJsonObject &product : products) {
            pids += product.value(QLatin1String("pid")).toInt(-1);
            for (const char *key : {"name", "desc", "icon", "url"})
                QVERIFY(!Config::jsonString(product, QString::fromLatin1(key)).isEmpty());
        }
    }
    QCOMPARE(keys, QStringList({QStringLiteral("digital_creativity"),
                                QStringLiteral("office_efficiency"), QStringLiteral("utilities")}));

    const QList<QJsonObject> recommended = Config::jsonObjectList(
        document.value(QLatin1String("recommended")).toObject(), QStringLiteral("list"));
    QVERIFY(recommended.size() >= 4);
    for (const QJsonObject &product : recommended)
        QVERIFY(pids.contains(product.value(QLatin1String("pid")).toInt(-1)));
}

QTEST_GUILESS_MAIN(TestBuiltinDocuments)
#include "test_builtindocuments.moc"
