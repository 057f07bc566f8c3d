#pragma once

#include "sandbox/installation/sampleinstallation.h"

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QTemporaryDir>

/// A sample installation of its own for one test, seen by this process through its environment
/// until the object is destroyed.
class Sandbox
{
public:
    enum class Content { Installation, Nothing };

    /// Blanks and letters outside ASCII stand in the folder's name, as they do in users' folders.
    explicit Sandbox(Content content = Content::Installation);
    ~Sandbox();

    Q_DISABLE_COPY(Sandbox)

    const SampleInstallation *operator->() const { return &m_installation; }

    /// A path below the sandbox's folder.
    QString path(const QString &relative) const;

    /// Writes a file below the sandbox's folder, with its folders.
    void writeFile(const QString &relative, const QByteArray &content) const;

    static QByteArray readFile(const QString &fileName);

    /// The lines of a file, without line ends; empty when it does not exist.
    static QStringList readLines(const QString &fileName);

private:
    void reportLeftFiles() const;

    QTemporaryDir m_folder;
    SampleInstallation m_installation;
    QMap<QString, QByteArray> m_previousEnvironment;
};
