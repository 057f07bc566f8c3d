#include "tests/component/surfaces/layoutwalk.h"
#include "tests/support/interfacelanguage.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "tools/gallery/surfaces.h"
#include "ui/systemlook.h"
#include "wizard/mainwindow.h"

#include <QtTest/QTest>
#include <QtWidgets/QWidget>

Q_DECLARE_METATYPE(Gallery::Surface)

// One language and one scale factor in a process: the configuration document is read once, and the
// scale factor comes from the environment.
class TestSurfaces : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everythingFitsAndSpeaks_data();
    void everythingFitsAndSpeaks();

private:
    // From the start on: the surfaces are listed in the installation's language.
    const Sandbox m_sandbox;
    const LinkCatcher m_links;
    const InterfaceLanguage m_language{
        *m_sandbox.operator->(),
        qEnvironmentVariable("CLIPWRIGHT_TEST_LANGUAGE", QStringLiteral("ENG"))};
    const LookApplied m_look{SystemLook::rules()};
};

void TestSurfaces::everythingFitsAndSpeaks_data()
{
    QTest::addColumn<Gallery::Surface>("surface");
    const QList<Gallery::Surface> surfaces = Gallery::surfaces();
    QVERIFY(surfaces.size() > 20);
    for (const Gallery::Surface &surface : surfaces)
        QTest::newRow(qPrintable(surface.name)) << surface;
}

// Both of each window at once: to make the windows takes most of this test's time.
void TestSurfaces::everythingFitsAndSpeaks()
{
    QFETCH(const Gallery::Surface, surface);
    const std::unique_ptr<QWidget> window = surface.show();
    if (qobject_cast<MainWindow *>(window.get()))
        QCOMPARE(window->size(), QSize(720, 480)); // no text makes it larger
    const QStringList complaints = layoutComplaints(*window) + accessibilityComplaints(*window);
    QVERIFY2(complaints.isEmpty(), complaints.join(QLatin1Char('\n')).toUtf8().constData());
}

QTEST_MAIN(TestSurfaces)
#include "test_surfaces.moc"
