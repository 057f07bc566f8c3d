#pragma once

#include <QtCore/QtGlobal>

/// Takes the machine off the network for as long as it lives. An executable that links this asks
/// the system nothing: without such an object it finds itself online.
class OfflineMachine
{
public:
    OfflineMachine();
    ~OfflineMachine();

    Q_DISABLE_COPY(OfflineMachine)
};
