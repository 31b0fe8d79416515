#pragma once

#include <QString>
#include <optional>

// Whether NorvaneBar starts when the user logs in to the desktop. The desktop gives the real one.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    // What the desktop will do at the next login, as it stands now.
    virtual bool isEnabled() const = 0;
    // Registers or unregisters NorvaneBar; the reason it failed, for the user, or absent.
    virtual std::optional<QString> setEnabled(bool enabled) = 0;
};
