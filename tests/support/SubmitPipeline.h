#pragma once

#include "RecordingNotifier.h"
#include "submit/AttachmentUploadQueue.h"
#include "submit/BackgroundSubmitQueue.h"

// The queue of jobs as the central state builds it, with a recording notifier and an upload queue of
// its own. The registry and the settings must outlive it.
struct SubmitPipeline {
    SubmitPipeline(const StorageProviderRegistry& providers, const SettingsStore& settings)
        : queue(notifier, uploads, providers, settings) {}

    RecordingNotifier notifier;
    AttachmentUploadQueue uploads;
    BackgroundSubmitQueue queue;
};
