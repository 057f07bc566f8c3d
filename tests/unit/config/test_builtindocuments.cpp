#include "config/content/configcontent.h"
#include "tests/support/literals.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtTest/QTest>

/// The built-in documents as the accessors read them. Resources/cfg/check checks their content, as
/// that of every other document.
class TestBuiltinDocuments : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void accessorsFindTheirOptions();
};

void TestBuiltinDocuments::initTestCase_data()
{
    QTest::addColumn<QString>("file");
    const QDir documents(":/Resources/cfg"_s);
    const QStringList names = documents.entryList();
    QCOMPARE(names.join(QLatin1Char(' ')),
             "ar.cfg de.cfg en.cfg es.cfg fr.cfg id.cfg it.cfg ja.cfg ko.cfg nl.cfg "
             "pl.cfg pt.cfg ro.cfg ru.cfg sv.cfg tw.cfg"_s);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << documents.filePath(name);
}

void TestBuiltinDocuments::accessorsFindTheirOptions()
{
    QFETCH_GLOBAL(QString, file);
    const QJsonObject document = Config::readDocument(file).object();
    QStringList options;
    const QList<QJsonObject> list =
        Config::jsonObjectList(document.value(QLatin1String("problem_type")).toObject(), "list"_s);
    for (const QJsonObject &option : list) {
        const QString type = Config::jsonString(Config::extendObject(option), "option_type"_s);
        options += QString::number(option.value(QLatin1String("value")).toInt(-1)) + type;
    }
    QCOMPARE(options.join(QLatin1Char(' ')),
             "56homepage 57jump 58submit 59upgrade 60jump 61upgrade 62 63 64submit"_s);
}

QTEST_GUILESS_MAIN(TestBuiltinDocuments)
#include "test_builtindocuments.moc"
