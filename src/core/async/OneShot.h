#pragma once

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>

// A resume point that one coroutine waits on and another fulfils once, on the same thread. The
// waiter resumes inside fulfil(), before it returns. Copies share one state, so either side may
// outlive the object that made it.
//
//     OneShot<int> done;
//     ... hand a copy of `done` to whoever finishes the work ...
//     const int value = co_await done;
//
// The state is shared rather than held because GCC 12 may copy the awaitable that await_transform
// hands back by reference, and a waiter noted in such a copy would never be resumed.
template <typename T> class OneShot {
public:
    void fulfil(T value) const {
        m_state->value = std::move(value);
        if (const std::coroutine_handle<> waiter = std::exchange(m_state->waiter, {})) {
            waiter.resume();
        }
    }

    bool await_ready() const noexcept { return m_state->value.has_value(); }
    void await_suspend(std::coroutine_handle<> waiter) const noexcept { m_state->waiter = waiter; }
    T await_resume() const { return std::move(*m_state->value); }

private:
    struct State {
        std::optional<T> value;
        std::coroutine_handle<> waiter;
    };
    std::shared_ptr<State> m_state = std::make_shared<State>();
};
