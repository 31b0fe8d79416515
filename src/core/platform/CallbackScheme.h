#pragma once

#include <QString>
#include <optional>

// Makes the desktop hand addresses of a URL scheme to this program: the browser ends a sign-in by
// opening such an address, which must come back here. The desktop gives the real one.
class CallbackScheme {
public:
    virtual ~CallbackScheme() = default;

    // Registers this program for addresses of `scheme`, once more if it already is; the reason it
    // could not, for the user, or absent.
    virtual std::optional<QString> registerHandler(const QString& scheme) = 0;
};
