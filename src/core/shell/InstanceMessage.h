#pragma once

#include <QByteArray>
#include <QStringList>
#include <QUrl>
#include <optional>

// What a second launch of NorvaneBar hands to the running instance over the local socket: toggle
// the popover, or an address of the program's own URL scheme, which the browser opened to answer a
// sign-in. Anyone of the same user can write to that socket, so decoding accepts only what it knows.
struct InstanceMessage {
    // Absent: toggle the popover.
    std::optional<QUrl> callbackURL;

    static InstanceMessage togglePopover() { return {}; }
    static InstanceMessage callback(QUrl url) { return {std::move(url)}; }

    bool operator==(const InstanceMessage&) const = default;
};

namespace InstanceMessages {

inline constexpr qsizetype maximumSize = 4096;

QByteArray encode(const InstanceMessage& message);
// One message per connection, optionally ended by a newline: the toggle's word, or the callback's
// word, a blank and an encoded address of the callback scheme.
std::optional<InstanceMessage> decode(const QByteArray& bytes);
// What a launch with these arguments (the program's name left out) asks: the callback when the first
// is an address of the callback scheme, as the desktop entry's Exec line gives it, else the toggle.
InstanceMessage fromArguments(const QStringList& arguments);

} // namespace InstanceMessages
