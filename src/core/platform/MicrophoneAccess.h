#pragma once

#include <qcoro/qcorotask.h>

// Whether the program may record from a microphone.
class MicrophoneAccess {
public:
    enum class Status { authorized, notDetermined, denied };

    virtual ~MicrophoneAccess() = default;

    virtual QCoro::Task<Status> authorizationStatus() = 0;
    // Asks the person; whether they allowed it.
    virtual QCoro::Task<bool> requestAccess() = 0;
};
