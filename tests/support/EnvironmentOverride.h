#pragma once

#include <QByteArray>
#include <QtGlobal>
#include <optional>

// Sets an environment variable (or, with no value, removes it) for as long as it lives.
class EnvironmentOverride {
public:
    EnvironmentOverride(const char* name, std::optional<QByteArray> value)
        : m_name(name)
        , m_previous(qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt) {
        set(value);
    }
    ~EnvironmentOverride() { set(m_previous); }
    EnvironmentOverride(const EnvironmentOverride&) = delete;
    EnvironmentOverride& operator=(const EnvironmentOverride&) = delete;

private:
    void set(const std::optional<QByteArray>& value) const {
        if (value) {
            qputenv(m_name, *value);
        } else {
            qunsetenv(m_name);
        }
    }

    const char* m_name;
    std::optional<QByteArray> m_previous;
};
