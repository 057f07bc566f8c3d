#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// The form of every usage event, as the receiving side relies on it.
namespace EventCatalogue {

/// What is wrong with an event as the analytics library recorded it; empty when nothing is.
QString flawOf(const QJsonObject &recordedCall);

} // namespace EventCatalogue
