#include "platform/win32/hardening.h"

#include "tests/support/literals.h"
#include "tests/support/testcase.h"

#include <QtTest/QTest>

class TestHardening : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void asksToDistrustRedirections_data();
    void asksToDistrustRedirections();
    void forgetsVariablesByWhichQtLoads();
};

void TestHardening::asksToDistrustRedirections_data()
{
    QTest::addColumn<bool>("isKnown");
    QTest::newRow("Windows 11") << true;
    QTest::newRow("older system") << false;
}

void TestHardening::asksToDistrustRedirections()
{
    QFETCH(bool, isKnown);
    quint32 asked = 0;
    Platform::distrustRedirections([&](int policy, void *content, std::size_t size) {
        // The values of the system's header.
        asked = policy == 16 && size == 4 ? *static_cast<quint32 *>(content) : 0;
        return isKnown;
    });
    QCOMPARE(asked, 1U);
    Platform::distrustRedirections(); // whatever this system answers
}

void TestHardening::forgetsVariablesByWhichQtLoads()
{
    const char *const variables[] = {"QT_LOAD_TESTABILITY", "QT_PLUGIN_PATH",
                                     "QT_QPA_PLATFORM_PLUGIN_PATH"};
    for (const char *variable : variables)
        qputenv(variable, "C:/planted");
    Platform::restrictLibraries();
    for (const char *variable : variables)
        QVERIFY2(!qEnvironmentVariableIsSet(variable), variable);
}

QTEST_GUILESS_MAIN(TestHardening)
#include "test_hardening.moc"
