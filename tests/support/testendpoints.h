#pragma once

#include <QtCore/QString>

/// Sets the maker's hosts for a test; the initial names do not resolve.
namespace TestEndpoints {

void setConfiguration(const QString &endpoint);
void setRedirect(const QString &endpoint);

} // namespace TestEndpoints
