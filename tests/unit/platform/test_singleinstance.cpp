#include "tests/support/machine.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtTest/QTest>

class TestSingleInstance : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void secondProcessIsRefused();
    void nameIsFreeAfterAnOrderlyEnd();
    void nameIsFreeAfterAKill();
    void otherNamesAreIndependent();
    void copyWithoutStandardInputIsRefused();
    void missingRuntimeFolderDoesNotLockOut();
    void plantedLinkIsNotFollowed();
    void lockHeldByAnotherUserDoesNotLockOut();
};

namespace {

class Claim
{
public:
    explicit Claim(const QString &name)
    {
        m_process.start(QStringLiteral(CLAIM_INSTANCE), {name});
        m_process.waitForReadyRead();
        m_answer = QString::fromLatin1(m_process.readAll().trimmed());
    }

    QString answer() const { return m_answer; }

    void end()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    ~Claim() { kill(); }
    Q_DISABLE_COPY(Claim)

private:
    QProcess m_process;
    QString m_answer;
};

const QString name = QStringLiteral("Some Program");
const QString claimed = QStringLiteral("claimed");
const QString refused = QStringLiteral("refused");

} // namespace

void TestSingleInstance::secondProcessIsRefused()
{
    const Sandbox sandbox;
    const Claim first(name);
    QCOMPARE(first.answer(), claimed);
    QCOMPARE(Claim(name).answer(), refused);
    QCOMPARE(Claim(name).answer(), refused);
}

void TestSingleInstance::nameIsFreeAfterAnOrderlyEnd()
{
    const Sandbox sandbox;
    Claim first(name);
    QCOMPARE(first.answer(), claimed);
    first.end();
    QCOMPARE(Claim(name).answer(), claimed);
}

void TestSingleInstance::nameIsFreeAfterAKill()
{
    const Sandbox sandbox;
    Claim first(name);
    QCOMPARE(first.answer(), claimed);
    first.kill();
    QCOMPARE(Claim(name).answer(), claimed);
}

void TestSingleInstance::otherNamesAreIndependent()
{
    const Sandbox sandbox;
    const Claim first(name);
    QCOMPARE(Claim(QStringLiteral("Other Program")).answer(), claimed);
}

// The file is its descriptor 0.
void TestSingleInstance::copyWithoutStandardInputIsRefused()
{
    if (!Machine::locksFilesToClaimNames)
        QSKIP("the name is held by this system itself, not by a file");
    const Sandbox sandbox;
    const Claim first(name);
    QProcess copy;
    copy.start(QStringLiteral("sh"),
               {QStringLiteral("-c"), QStringLiteral("exec \"$0\" \"$1\" <&-"),
                QStringLiteral(CLAIM_INSTANCE), name});
    QVERIFY(copy.waitForFinished());
    QCOMPARE(QString::fromLatin1(copy.readAll().trimmed()), refused);
}

void TestSingleInstance::missingRuntimeFolderDoesNotLockOut()
{
    const Sandbox sandbox;
    qputenv("XDG_RUNTIME_DIR", "/nowhere/at/all");
    QCOMPARE(Claim(name).answer(), claimed);
}

void TestSingleInstance::plantedLinkIsNotFollowed()
{
    if (!Machine::locksFilesToClaimNames)
        QSKIP("the name is held by this system itself, not by a file");
    const Sandbox sandbox;
    // The lock file that a first claim leaves behind gives the name under which to plant a link.
    const QString folder = sandbox.path(QStringLiteral("Runtime"));
    QDir().mkpath(folder);
    Claim(name).end();
    const QStringList locks = QDir(folder).entryList(QDir::Files);
    QCOMPARE(locks.size(), 1);
    const QString lock = folder + QLatin1Char('/') + locks.constFirst();
    QVERIFY(QFile::remove(lock));
    QVERIFY(QFile::link(sandbox.path(QStringLiteral("made through the link")), lock));
    QCOMPARE(Claim(name).answer(), claimed);
    QVERIFY(!QFile::exists(sandbox.path(QStringLiteral("made through the link"))));
}

void TestSingleInstance::lockHeldByAnotherUserDoesNotLockOut()
{
    if (!Machine::locksFilesToClaimNames)
        QSKIP("the name is held by this system itself, not by a file");
    const Sandbox sandbox;
    const QString folder = sandbox.path(QStringLiteral("Runtime"));
    QDir().mkpath(folder);
    const Claim first(name);
    QCOMPARE(Claim(name).answer(), refused);
    const QString lock = QDir(folder).entryInfoList(QDir::Files).constFirst().filePath();
    if (!Machine::giveToAnotherUser(lock))
        QSKIP("only root can make a file another user's");
    QCOMPARE(Claim(name).answer(), claimed);
}

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "test_singleinstance.moc"
