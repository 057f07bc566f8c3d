#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// The session with the maker's analytics library, which stores and sends on its own. All calls
/// come from the GUI thread; none reports a failure. Order: initAnalytics(), sendBaseInfo(),
/// events, stopAnalytics().
namespace Analytics {

/// The folder in which the library keeps its files; made when missing.
QString analyticsDir();

/// Opens the session.
void initAnalytics();

/// Describes machine and product to the library, once per run.
void sendBaseInfo();

/// Hands one event over. Values of properties are strings by agreement with the receiving side.
void sendEvent(const QString &category, const QString &action, const QJsonObject &properties);

/// Closes the session; waits up to three seconds for what is still queued.
void stopAnalytics();

} // namespace Analytics
