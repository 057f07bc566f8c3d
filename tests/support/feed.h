#pragma once

#include "sandbox/installation/samplefeed.h"
#include "tests/support/sandbox.h"

#include <QtCore/QJsonObject>
#include <QtCore/QList>

/// An empty feed of the upgrade library's stand-in, in its own sandbox; this process uses it until
/// the object is destroyed.
class Feed
{
public:
    explicit Feed(Sandbox::Content content = Sandbox::Content::Nothing);
    ~Feed();

    Q_DISABLE_COPY(Feed)

    const SampleFeed *operator->() const { return &m_feed; }
    const Sandbox &sandbox() const { return m_sandbox; }

    /// A path in the product's shared data folder, which is made when missing.
    QString dataPath(const QString &relative) const;
    void writeDataFile(const QString &relative, const QByteArray &content) const;

    /// What the library was called with, in order.
    QList<QJsonObject> calls() const;
    QStringList callNames() const;

    /// Short answers and a package of 64 KiB, so that a download takes no time.
    void writeSmallUpgrade(const QString &version) const;

private:
    Sandbox m_sandbox;
    SampleFeed m_feed;
};
