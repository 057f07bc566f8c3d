#include "tests/support/lookapplied.h"

#include <QtCore/QFile>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QApplication>

LookApplied::LookApplied(const QString &appendedRules)
{
    QFontDatabase::addApplicationFont(QStringLiteral(":/Resources/font/NotoSans-Bold.ttf"));
    QFile style(QStringLiteral(":/Resources/styles_light.qss"));
    if (!style.open(QIODevice::ReadOnly))
        qFatal("the test does not link the resources");
    qApp->setStyleSheet(QString::fromUtf8(style.readAll()) + appendedRules);
}

LookApplied::~LookApplied()
{
    qApp->setStyleSheet(QString());
}
