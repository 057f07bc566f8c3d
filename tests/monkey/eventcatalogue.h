#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// What the receiving side of the usage events relies on.
namespace EventCatalogue {

/// What is wrong with an event as the analytics library recorded it; empty when nothing is.
QString flawOf(const QJsonObject &recordedCall);

} // namespace EventCatalogue
