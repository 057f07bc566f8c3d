#pragma once

#include <QtCore/QTranslator>

class SampleInstallation;

/// For as long as it lives, the process has the language of an installation as after the program's
/// start: the installer's three-letter code is in the product's ini file, and the catalogue is
/// installed. A process reads the configuration document once, so it can have only one language.
class InterfaceLanguage
{
public:
    InterfaceLanguage(const SampleInstallation &installation, const QString &installerCode);
    ~InterfaceLanguage();

    Q_DISABLE_COPY(InterfaceLanguage)

private:
    QTranslator m_translator;
};
