#pragma once

#include <QtCore/QtGlobal>

/// Gives the application the program's font and style sheet for as long as it lives.
class LookApplied
{
public:
    LookApplied();
    ~LookApplied();

    Q_DISABLE_COPY(LookApplied)
};
