#pragma once

#include "core/submit/AttachmentUploadQueue.h"
#include "core/submit/BackgroundSubmitQueue.h"
#include "support/RecordingNotifier.h"

// The queue of jobs as the central state builds it, with a recording notifier and an upload queue of
// its own. The registry and the settings must outlive it.
struct SubmitPipeline {
    SubmitPipeline(const StorageProviderRegistry& providers, const SettingsStore& settings)
        : queue(notifier, uploads, providers, settings) {}

    RecordingNotifier notifier;
    AttachmentUploadQueue uploads;
    BackgroundSubmitQueue queue;
};
