#pragma once

#include "core/async/LatestWins.h"

#include <QObject>
#include <QPointer>
#include <QtGlobal>
#include <algorithm>
#include <functional>
#include <optional>
#include <qcoro/qcorotask.h>
#include <type_traits>
#include <utility>
#include <vector>

// Whether the result of a load is still wanted when it lands: its owner still lives, and whatever
// else the owner asked for still holds (the run is still the newest, the account and workspace it
// was asked for are still the active ones). Conditions are read only while the owner lives, so
// they may refer to the owner's members.
class LoadGuard {
public:
    // Holds while `owner` lives.
    explicit LoadGuard(const QObject* owner)
        : m_owner(owner) {}
    // Holds while `owner` lives and the ticket taken now from `latest`, a member of the owner, is
    // still the newest.
    LoadGuard(const QObject* owner, LatestWins& latest)
        : LoadGuard(owner, latest, latest.raise()) {}
    // Holds while `owner` lives and `ticket`, taken from `latest` before, is still the newest.
    LoadGuard(const QObject* owner, const LatestWins& latest, qint64 ticket)
        : LoadGuard(owner) {
        m_conditions.emplace_back([&latest, ticket] { return latest.isCurrent(ticket); });
    }

    // The same guard, which also needs `condition` to hold.
    LoadGuard also(std::function<bool()> condition) const {
        LoadGuard guard = *this;
        guard.m_conditions.push_back(std::move(condition));
        return guard;
    }

    bool holds() const {
        if (!m_owner) {
            return false;
        }
        return std::all_of(m_conditions.cbegin(), m_conditions.cend(),
                           [](const auto& condition) { return condition(); });
    }

private:
    QPointer<const QObject> m_owner;
    std::vector<std::function<bool()>> m_conditions;
};

// Awaits `task` for the guard's owner. What the task gives, or throws, reaches the caller only while
// the guard holds once the task has ended; otherwise it is dropped and the caller learns that it
// must stop: absent (or false for a task without a value).
//
//     QCoro::Task<std::optional<Answer>> asking = awaitGuarded(LoadGuard(this, m_latest), fetch(id));
//     const std::optional<Answer> answer = co_await std::move(asking);
//     if (!answer) {
//         co_return; // the owner is gone, or a newer load runs
//     }
template <typename T>
QCoro::Task<std::conditional_t<std::is_void_v<T>, bool, std::optional<T>>> awaitGuarded(LoadGuard guard,
                                                                                        QCoro::Task<T> task) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(task);
            co_return guard.holds();
        } else {
            T value = co_await std::move(task);
            if (!guard.holds()) {
                co_return std::nullopt;
            }
            co_return std::optional<T>(std::move(value));
        }
    } catch (...) {
        if (guard.holds()) {
            throw;
        }
    }
    if constexpr (std::is_void_v<T>) {
        co_return false;
    } else {
        co_return std::nullopt;
    }
}
