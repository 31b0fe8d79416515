#pragma once

#include "sandbox/store/StoreData.h"

#include <mutex>
#include <utility>

// The sandbox's data behind one lock. Requests arrive on many threads; each reads or changes the
// data inside one call, so what a request sees never changes halfway through.
class SandboxStore {
public:
    explicit SandboxStore(StoreData data)
        : m_data(std::move(data)) {}

    template <typename Function> auto read(Function&& function) const {
        std::lock_guard lock(m_mutex);
        return function(std::as_const(m_data));
    }

    template <typename Function> auto write(Function&& function) {
        std::lock_guard lock(m_mutex);
        return function(m_data);
    }

private:
    mutable std::mutex m_mutex;
    StoreData m_data;
};
