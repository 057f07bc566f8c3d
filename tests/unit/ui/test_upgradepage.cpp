#include "tests/support/literals.h"
#include "tests/support/patience.h"
#include "tests/support/testcase.h"
#include "ui/upgradepage.h"

#include <QtGui/QAccessible>
#include <QtTest/QTest>

class TestUpgradePage : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void firstLook();
    void everyValueIsShownAtOnce();
    void upgradingLookStartsAtZero();
    void completedLook();
    void upgradingAfterCompletedKeepsTheCloseButton();
    void actionTellsWhetherItIsDisabled();
    void actionOfADisabledPageIsNotItselfDisabled();
    void closeButtonQuits();
    void upgradeIsReadAloud();
    void focusStaysOnThePage();
};

void TestUpgradePage::firstLook()
{
    const UpgradePage page;
    QCOMPARE(page.btnCancel->objectName(), "SecondaryBtn"_s);
    QCOMPARE(page.btnCancel->text(), "Cancel"_s);
    QCOMPARE(page.lblTitle->text(), "Upgrading, please wait..."_s);
    QCOMPARE(page.label_2->text(), "TextLabel"_s);
    QCOMPARE(page.progressBar->value(), 24);
    QVERIFY(!page.progressBar->isTextVisible());
    QVERIFY(page.btnClose->isHidden());
}

void TestUpgradePage::everyValueIsShownAtOnce()
{
    const UpgradePage page;
    for (int value = 0; value <= 100; ++value) {
        page.progressBar->setValue(value);
        QCOMPARE(page.label_2->text(), "%1%"_s.arg(value));
    }
}

void TestUpgradePage::upgradingLookStartsAtZero()
{
    UpgradePage page;
    page.progressBar->setValue(99); // as a finished download leaves it
    page.showUpgrading();
    QCOMPARE(page.progressBar->value(), 0);
    QCOMPARE(page.label_2->text(), "0%"_s);

    page.label_2->setText("something else"_s);
    page.showUpgrading(); // the value does not change, the text does
    QCOMPARE(page.label_2->text(), "0%"_s);
    QCOMPARE(page.btnCancel->text(), "Cancel"_s);
    QCOMPARE(page.imgUpgrade->styleSheet(),
             ".QWidget{border-image: url(:/Resources/light/Upgrading_2x.png);}"_s);
    QVERIFY(!page.progressBar->isHidden());
}

void TestUpgradePage::completedLook()
{
    UpgradePage page;
    page.showUpgrading();
    page.progressBar->setValue(100);
    page.showCompleted();
    QCOMPARE(page.lblTitle->text(), "Upgrade completed"_s);
    QCOMPARE(page.label_2->text(), "The new version is more stable and faster!"_s);
    QCOMPARE(page.btnCancel->text(), "Launch"_s);
    QCOMPARE(page.imgUpgrade->styleSheet(),
             ".QWidget{border-image: url(:/Resources/light/UpgradeSuccess_2x.png);}"_s);
    QVERIFY(page.progressBar->isHidden());
    QVERIFY(!page.btnClose->isHidden());
}

void TestUpgradePage::upgradingAfterCompletedKeepsTheCloseButton()
{
    UpgradePage page;
    page.showCompleted();
    page.showUpgrading();
    QVERIFY(!page.btnClose->isHidden());
    QVERIFY(!page.progressBar->isHidden());
    QCOMPARE(page.btnCancel->text(), "Cancel"_s);
    QCOMPARE(page.lblTitle->text(), "Upgrading, please wait..."_s);
}

void TestUpgradePage::actionTellsWhetherItIsDisabled()
{
    const UpgradePage page;
    QVERIFY(!page.isActionDisabled());
    page.btnCancel->setEnabled(false);
    QVERIFY(page.isActionDisabled());
}

void TestUpgradePage::actionOfADisabledPageIsNotItselfDisabled()
{
    QWidget window;
    auto *page = new UpgradePage(&window);
    window.setEnabled(false);
    QVERIFY(!page->btnCancel->isEnabled());
    QVERIFY(!page->isActionDisabled());
    page->btnCancel->setEnabled(false);
    QVERIFY(page->isActionDisabled());
}

void TestUpgradePage::closeButtonQuits()
{
    UpgradePage page;
    page.showCompleted();
    QVERIFY(quitsAfter([&page] { page.btnClose->click(); }));
}

// A new name of the page, which has the keyboard, is what screen readers read aloud.
void TestUpgradePage::upgradeIsReadAloud()
{
    UpgradePage page;
    page.showUpgrading();
    QStringList read{page.accessibleName()};
    for (const int percent : {3, 9, 12, 19, 31, 100}) {
        page.progressBar->setValue(percent);
        if (page.accessibleName() != read.constLast())
            read += page.accessibleName();
    }
    page.showCompleted();
    read += page.accessibleName();
    const QString upgrading = "Upgrading, please wait... "_s;
    QCOMPARE(read, (QStringList{upgrading + "0%"_s, upgrading + "12%"_s, upgrading + "31%"_s,
                                upgrading + "100%"_s,
                                "Upgrade completed "
                                "The new version is more stable and faster!"_s}));
}

// The action takes the keyboard back with the news, after it was disabled during the installation.
void TestUpgradePage::focusStaysOnThePage()
{
    UpgradePage page;
    page.showUpgrading();
    page.show();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    QVERIFY(!page.hasFocus());
    page.btnCancel->setFocus();
    page.btnCancel->setEnabled(false);
    QVERIFY(page.hasFocus()); // whose name is read as it changes
    page.btnCancel->setEnabled(true);
    QVERIFY(page.hasFocus());

    page.showCompleted();
    QVERIFY(page.btnCancel->hasFocus());
    const QAccessibleInterface *read = QAccessible::queryAccessibleInterface(page.btnCancel);
    QCOMPARE(read->text(QAccessible::Name), "Launch"_s);
    QCOMPARE(read->text(QAccessible::Description),
             "Upgrade completed The new version is more stable and faster!"_s);

    page.btnClose->setFocus();
    page.btnCancel->setEnabled(false);
    page.btnCancel->setEnabled(true);
    QVERIFY(page.btnClose->hasFocus());

    page.showUpgrading();
    QCOMPARE(page.btnCancel->accessibleDescription(), QString());
}

QTEST_MAIN(TestUpgradePage)
#include "test_upgradepage.moc"
