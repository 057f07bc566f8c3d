#pragma once

#include <QtCore/QString>

/// Lets a test say where the maker's hosts are; until it does, they are nowhere.
namespace TestEndpoints {

void setConfiguration(const QString &endpoint);
void setRedirect(const QString &endpoint);

} // namespace TestEndpoints
