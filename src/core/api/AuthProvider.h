#pragma once

#include <QString>
#include <optional>

// Where a request gets its Authorization header: the bare personal token, or absent when there is
// none. Read at the start of every request, so one client follows whichever account is active.
class AuthProvider {
public:
    virtual ~AuthProvider() = default;
    virtual std::optional<QString> authorizationValue() const = 0;
};
