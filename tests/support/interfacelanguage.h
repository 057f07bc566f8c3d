#pragma once

#include <QtCore/QTranslator>

class SampleInstallation;

/// Gives the process the language of an installation, as the program's start does, for as long as
/// it lives: the installer's three-letter code stands in the product's ini file, the catalogue is
/// installed. The configuration document is read once in a process: one language for each.
class InterfaceLanguage
{
public:
    InterfaceLanguage(const SampleInstallation &installation, const QString &installerCode);
    ~InterfaceLanguage();

    Q_DISABLE_COPY(InterfaceLanguage)

private:
    QTranslator m_translator;
};
