#pragma once

#include "core/api/UserRecords.h"

#include <variant>

// Where sign-in stands. Compared by case, and for signedIn by every field of the user.
struct AuthState {
    // No usable token, or validation failed. The first state.
    struct SignedOut {
        bool operator==(const SignedOut&) const = default;
    };
    // A token is being checked against the service.
    struct Validating {
        bool operator==(const Validating&) const = default;
    };
    // The service accepted the token of this user.
    struct SignedIn {
        NVUser user;
        bool operator==(const SignedIn&) const = default;
    };

    std::variant<SignedOut, Validating, SignedIn> value;

    template <typename T> bool is() const { return std::holds_alternative<T>(value); }
    // The signed-in user, or null.
    const NVUser* user() const {
        const auto* signedIn = std::get_if<SignedIn>(&value);
        return signedIn ? &signedIn->user : nullptr;
    }

    bool operator==(const AuthState&) const = default;
};
