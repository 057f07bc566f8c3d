#include "tests/support/interfacelanguage.h"

#include "app/env/languages.h"
#include "sandbox/installation/sampleinstallation.h"

#include <QtCore/QCoreApplication>

InterfaceLanguage::InterfaceLanguage(const SampleInstallation &installation,
                                     const QString &installerCode)
{
    if (!installation.writeProductIni(installerCode))
        qFatal("cannot write the product's ini file");
    if (!m_translator.load(Languages::translatorFileName(QString())))
        qFatal("no catalogue for %s", qPrintable(installerCode));
    QCoreApplication::installTranslator(&m_translator);
}

InterfaceLanguage::~InterfaceLanguage()
{
    QCoreApplication::removeTranslator(&m_translator);
}
