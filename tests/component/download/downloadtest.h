#pragma once

#include "config/content/configcontent.h"
#include "net/sharedaccessmanager.h"
#include "tests/support/literals.h"
#include "tests/support/machine.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/support/testendpoints.h"
#include "tests/unit/net/answers.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <memory>

using Answer = ScriptedServer::Answer;

/// Base of the tests of downloads: each test has an empty cache and a server of its own.
class DownloadTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_sandbox = std::make_unique<Sandbox>(Sandbox::Content::Nothing);
        m_server = std::make_unique<ScriptedServer>();
        TestEndpoints::setConfiguration(m_server->url());
    }

    void cleanup()
    {
        m_server.reset();
        m_sandbox.reset();
    }

protected:
    QString link(const QString &path) const { return m_server->url(path); }

    static QString image(const QString &name)
    {
        return Config::imagesDir() + QLatin1Char('/') + name;
    }

    static QStringList images() { return QDir(Config::imagesDir()).entryList(QDir::Files); }

    static void writeFile(const QString &fileName, const QByteArray &content)
    {
        QFile file(fileName);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(fileName));
    }

    static bool hasReplies()
    {
        return Net::sharedAccessManager()->findChild<QNetworkReply *>() != nullptr;
    }

    const QByteArray m_earlier{"\x89PNG earlier picture\0\xff", 22};
    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<ScriptedServer> m_server;
};
