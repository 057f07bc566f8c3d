#pragma once

#include <QtCore/QString>

/// Gives the application the program's font and style sheet for as long as it lives.
class LookApplied
{
public:
    explicit LookApplied(const QString &appendedRules = {});
    ~LookApplied();

    Q_DISABLE_COPY(LookApplied)
};
