#pragma once

#include <QByteArray>
#include <optional>

// What a second launch of NorvaneBar hands to the running instance over the local socket.
// Anyone of the same user can write to that socket, so decoding accepts only what it knows.
enum class InstanceMessage {
    togglePopover,
};

namespace InstanceMessages {

inline constexpr qsizetype maximumSize = 4096;

QByteArray encode(InstanceMessage message);
// One message per connection: a known word, optionally ended by a newline.
std::optional<InstanceMessage> decode(const QByteArray& bytes);

} // namespace InstanceMessages
