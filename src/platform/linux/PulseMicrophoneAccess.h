#pragma once

#include "core/platform/MicrophoneAccess.h"

#include <chrono>

// Microphone access on Linux, where no one asks the person: granted when a sound server of the
// PulseAudio protocol (PulseAudio, or PipeWire's pulse server) answers and offers at least one
// source, denied otherwise. No server is ever started for the question. The answer is sought on a
// thread of its own, within `timeout`.
class PulseMicrophoneAccess : public MicrophoneAccess {
public:
    explicit PulseMicrophoneAccess(std::chrono::milliseconds timeout = std::chrono::seconds(2));

    QCoro::Task<Status> authorizationStatus() override;
    // The same answer: there is no one to ask.
    QCoro::Task<bool> requestAccess() override;

private:
    std::chrono::milliseconds m_timeout;
};
