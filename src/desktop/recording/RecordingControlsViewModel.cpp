#include "desktop/recording/RecordingControlsViewModel.h"

#include "core/compose/AttachmentSizeLimits.h"
#include "core/support/ByteCountText.h"

RecordingControlsViewModel::RecordingControlsViewModel(ScreenRecordingCoordinator& coordinator, QObject* parent)
    : QObject(parent)
    , m_coordinator(coordinator) {
    connect(&m_coordinator, &ScreenRecordingCoordinator::changed, this, &RecordingControlsViewModel::changed);
}

QString RecordingControlsViewModel::elapsedText() const {
    return AttachmentSizeLimits::formattedDuration(m_coordinator.elapsedSeconds());
}

QString RecordingControlsViewModel::sizeText() const {
    return formattedByteCount(m_coordinator.estimatedFileBytes());
}

QString RecordingControlsViewModel::microphoneLabel() const {
    if (m_coordinator.micInputWarning()) {
        return tr("No mic");
    }
    return m_coordinator.micIsReceiving() ? tr("Mic connected") : tr("Mic on");
}

QString RecordingControlsViewModel::microphoneSymbol() const {
    return m_coordinator.micInputWarning() ? QStringLiteral("mic.slash.fill") : QStringLiteral("mic.fill");
}

QString RecordingControlsViewModel::microphoneHelp() const {
    if (const std::optional<QString>& warning = m_coordinator.micInputWarning()) {
        return *warning;
    }
    if (m_coordinator.micIsReceiving()) {
        return tr("Microphone audio is being saved to the recording.");
    }
    if (m_coordinator.micSamplesReceivedFromSystem()) {
        return tr("Microphone signal detected. Waiting for audio to be written.");
    }
    return tr("Waiting for microphone signal from system.");
}

RecordingControlsViewModel::MicrophoneTone RecordingControlsViewModel::microphoneTone() const {
    if (m_coordinator.micInputWarning()) {
        return Warning;
    }
    return m_coordinator.micIsReceiving() ? Connected : Secondary;
}
