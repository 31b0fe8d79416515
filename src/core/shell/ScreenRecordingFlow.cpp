#include "core/shell/ScreenRecordingFlow.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"
#include "core/compose/TemplateList.h"
#include "core/support/Overloaded.h"

ScreenRecordingFlow::ScreenRecordingFlow(ScreenRecordingCoordinator& coordinator, SettingsStore& settings,
                                         TemplateActions& templates, TaskDraft& draft,
                                         std::function<void()> showComposeTab, QObject* parent)
    : QObject(parent)
    , m_coordinator(coordinator)
    , m_settings(settings)
    , m_templates(templates)
    , m_draft(draft)
    , m_showComposeTab(std::move(showComposeTab)) {}

void ScreenRecordingFlow::setScreenRecordingError(std::optional<QString> error) {
    if (m_screenRecordingError != error) {
        m_screenRecordingError = std::move(error);
        emit screenRecordingErrorChanged();
    }
}

void ScreenRecordingFlow::setShowScreenRecordingSetup(bool shown) {
    if (std::exchange(m_showScreenRecordingSetup, shown) != shown) {
        emit showScreenRecordingSetupChanged();
    }
}

void ScreenRecordingFlow::startScreenRecording(ScreenRecordingStartMode mode) {
    // One recording at a time: a second start while one is being chosen, runs or waits in review
    // would take over the first one's way into the draft.
    if (m_coordinator.awaitingPickerSelection() || m_coordinator.isActive() || m_coordinator.pendingPreview()) {
        return;
    }
    m_pendingRecordingMode = std::move(mode);
    emit popoverShowRequested();
    setShowScreenRecordingSetup(true);
}

void ScreenRecordingFlow::startOrStopScreenRecording(ScreenRecordingStartMode mode) {
    if (m_coordinator.isRecording()) {
        m_coordinator.stopRecording();
        return;
    }
    startScreenRecording(std::move(mode));
}

void ScreenRecordingFlow::cancelScreenRecordingSetup() {
    setShowScreenRecordingSetup(false);
    m_pendingRecordingMode.reset();
}

void ScreenRecordingFlow::confirmScreenRecordingSetup(const RecordingConfiguration& configuration) {
    setShowScreenRecordingSetup(false);
    const ScreenRecordingStartMode mode =
        std::exchange(m_pendingRecordingMode, std::nullopt).value_or(ScreenRecordingStartModes::AppendToDraft{});
    emit popoverCloseRequested();
    // A recording that was to go into the draft as it stands leaves the popover closed when it
    // fails; one that was to start a new task brings it back with the message.
    const bool showsPopoverAfterFailure = !std::holds_alternative<ScreenRecordingStartModes::AppendToDraft>(mode);
    const auto showFailure = [this, showsPopoverAfterFailure](const std::optional<ScreenRecordingError>& failure) {
        if (failure) {
            if (const std::optional<QString> description = failure->errorDescription()) {
                setScreenRecordingError(description);
            }
        }
        if (showsPopoverAfterFailure) {
            emit popoverShowRequested();
        }
    };

    m_coordinator.onPreviewReady = [this] { emit popoverShowRequested(); };
    m_coordinator.setConfiguration(configuration);
    m_coordinator.setStartMode(mode);
    m_coordinator.completion = [this, mode, showFailure](ScreenRecordingCoordinator::Outcome outcome) {
        m_coordinator.onPreviewReady = nullptr;
        if (const auto* attachment = std::get_if<StagedAttachment>(&outcome)) {
            applyRecordedAttachment(*attachment, mode);
            setScreenRecordingError(m_coordinator.sizeWarning());
            emit popoverShowRequested();
        } else {
            showFailure(std::get<ScreenRecordingError>(outcome));
        }
    };
    m_coordinator.previewCancelledCompletion = [this, showFailure](std::optional<ScreenRecordingError> failure) {
        m_coordinator.onPreviewReady = nullptr;
        showFailure(failure);
    };
    m_coordinator.presentPicker();
}

void ScreenRecordingFlow::applyRecordedAttachment(const StagedAttachment& attachment,
                                                  const ScreenRecordingStartMode& mode) {
    std::visit(Overloaded{
                   [&](const ScreenRecordingStartModes::AppendToDraft&) {
                       QList<StagedAttachment> attachments = m_draft.attachments();
                       attachments.append(attachment);
                       m_draft.setAttachments(attachments);
                   },
                   [&](const ScreenRecordingStartModes::ReplaceDraft& replace) {
                       m_draft.reset(m_settings.settings().defaultReminderLeadMinutes);
                       m_draft.setAttachments({attachment});
                       if (std::optional<TaskTemplate> applied =
                               TemplateList::find(m_settings.settings(), replace.templateID)) {
                           startTask(this, applyTemplate(std::move(*applied), attachment));
                       }
                       m_showComposeTab();
                   },
               },
               mode);
}

QCoro::Task<> ScreenRecordingFlow::applyTemplate(TaskTemplate applied, StagedAttachment attachment) {
    const LoadGuard guard(this);
    QCoro::Task<bool> applying = awaitGuarded(guard, m_templates.applyTemplate(std::move(applied)));
    if (co_await std::move(applying)) {
        // Applying a template replaces the attachments.
        m_draft.setAttachments({attachment});
    }
}
