#include "platform/linux/PulseMicrophoneAccess.h"

#include "core/async/Background.h"

#include <QDeadlineTimer>
#include <algorithm>
#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>

namespace {
struct SourceCount {
    int sources = 0;
    bool listed = false;
};

void countSource(pa_context* /*context*/, const pa_source_info* /*source*/, int last, void* data) {
    auto* count = static_cast<SourceCount*>(data);
    if (last != 0) {
        count->listed = true;
    } else {
        ++count->sources;
    }
}

// Whether the sound server of the session ($PULSE_SERVER, or the user's) lists a source within
// `timeout`; blocks meanwhile.
bool soundServerHasSource(std::chrono::milliseconds timeout) {
    const QDeadlineTimer deadline(timeout);
    pa_mainloop* loop = pa_mainloop_new();
    pa_context* context = pa_context_new(pa_mainloop_get_api(loop), "NorvaneBar");
    SourceCount count;
    pa_operation* listing = nullptr;
    if (pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0) {
        while (!count.listed && !deadline.hasExpired() && PA_CONTEXT_IS_GOOD(pa_context_get_state(context))) {
            if (!listing && pa_context_get_state(context) == PA_CONTEXT_READY) {
                listing = pa_context_get_source_info_list(context, &countSource, &count);
            }
            const auto microseconds = static_cast<int>(std::max<qint64>(deadline.remainingTime(), 0) * 1000);
            if (pa_mainloop_prepare(loop, microseconds) < 0 || pa_mainloop_poll(loop) < 0 ||
                pa_mainloop_dispatch(loop) < 0) {
                break;
            }
        }
    }
    if (listing) {
        if (pa_operation_get_state(listing) == PA_OPERATION_RUNNING) {
            pa_operation_cancel(listing);
        }
        pa_operation_unref(listing);
    }
    pa_context_disconnect(context);
    pa_context_unref(context);
    pa_mainloop_free(loop);
    return count.listed && count.sources > 0;
}
} // namespace

PulseMicrophoneAccess::PulseMicrophoneAccess(std::chrono::milliseconds timeout)
    : m_timeout(timeout) {}

QCoro::Task<MicrophoneAccess::Status> PulseMicrophoneAccess::authorizationStatus() {
    QCoro::Task<bool> asking = runInBackground<bool>([timeout = m_timeout] { return soundServerHasSource(timeout); });
    const bool hasSource = co_await std::move(asking);
    co_return hasSource ? Status::authorized : Status::denied;
}

QCoro::Task<bool> PulseMicrophoneAccess::requestAccess() {
    QCoro::Task<Status> asking = authorizationStatus();
    const Status status = co_await std::move(asking);
    co_return status == Status::authorized;
}
