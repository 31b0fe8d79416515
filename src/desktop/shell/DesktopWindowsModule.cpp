#include "desktop/shell/DesktopWindowsModule.h"

#include "core/platform/ScreenContentPicker.h"
#include "core/recording/FacecamOverlay.h"

#include "desktop/shell/ProgramModules.h"

DesktopWindowsModule::DesktopWindowsModule(Context context)
    : m_context(std::move(context)) {}

DesktopWindowsModule::~DesktopWindowsModule() {
    close();
}

void DesktopWindowsModule::close() {
    m_windows.reset();
}

DesktopWindows& DesktopWindowsModule::windows() {
    if (m_windows) {
        return *m_windows;
    }
    const auto make = reinterpret_cast<MakeDesktopWindows>(
        ProgramModules::entry(m_library, ProgramModules::windowsFileName, "norvanebarMakeDesktopWindows"));
    m_windows.reset(make(m_context));
    return *m_windows;
}

void DesktopWindowsModule::togglePopover(std::optional<QRect> anchor) {
    windows().togglePopover(anchor);
}

void DesktopWindowsModule::showPopover(std::optional<QRect> anchor) {
    windows().showPopover(anchor);
}

void DesktopWindowsModule::hidePopover() {
    if (m_windows) {
        m_windows->hidePopover();
    }
}

bool DesktopWindowsModule::isPopoverVisible() const {
    return m_windows && m_windows->isPopoverVisible();
}

void DesktopWindowsModule::showSettings(std::optional<SettingsTab> tab) {
    windows().showSettings(tab);
}

std::unique_ptr<ScreenContentPicker> DesktopWindowsModule::makeScreenPicker() {
    return windows().makeScreenPicker();
}

std::unique_ptr<FacecamOverlay> DesktopWindowsModule::makeFacecam(const FacecamStyle& style) {
    return windows().makeFacecam(style);
}

QCoro::Task<> DesktopWindowsModule::LoadingCapture::checkAccess() {
    return m_module.windows().screenCapture().checkAccess();
}

std::unique_ptr<CaptureStream>
DesktopWindowsModule::LoadingCapture::makeStream(const CaptureTarget& target,
                                                 const CaptureConfiguration& configuration) {
    return m_module.windows().screenCapture().makeStream(target, configuration);
}

void DesktopWindowsModule::LoadingCapture::prepareStream(const CaptureTarget& target,
                                                         const CaptureConfiguration& configuration) {
    m_module.windows().screenCapture().prepareStream(target, configuration);
}

std::unique_ptr<MovieWriter> DesktopWindowsModule::LoadingWriters::makeWriter(const QString& path) {
    return m_module.windows().movieWriters().makeWriter(path);
}

QCoro::Task<MicrophoneAccess::Status> DesktopWindowsModule::LoadingMicrophone::authorizationStatus() {
    return m_module.windows().microphone().authorizationStatus();
}

QCoro::Task<bool> DesktopWindowsModule::LoadingMicrophone::requestAccess() {
    return m_module.windows().microphone().requestAccess();
}

void DesktopWindowsModule::LoadingPanels::showCountdown(RecordingCountdown& countdown) {
    shown().showCountdown(countdown);
}

void DesktopWindowsModule::LoadingPanels::closeCountdown() {
    if (RecordingPanels* panels = loaded()) {
        panels->closeCountdown();
    }
}

void DesktopWindowsModule::LoadingPanels::showControls() {
    shown().showControls();
}

void DesktopWindowsModule::LoadingPanels::hideControls() {
    if (RecordingPanels* panels = loaded()) {
        panels->hideControls();
    }
}

void DesktopWindowsModule::LoadingPanels::showFacecamPreview(FacecamOverlay& facecam, const FacecamStyle& style) {
    shown().showFacecamPreview(facecam, style);
}

void DesktopWindowsModule::LoadingPanels::dismissFacecamPreview() {
    if (RecordingPanels* panels = loaded()) {
        panels->dismissFacecamPreview();
    }
}

void DesktopWindowsModule::LoadingPanels::showReview(const PendingRecordingPreview& preview,
                                                     std::function<void()> onAttach, std::function<void()> onReRecord,
                                                     std::function<void()> onDiscard) {
    shown().showReview(preview, std::move(onAttach), std::move(onReRecord), std::move(onDiscard));
}

void DesktopWindowsModule::LoadingPanels::dismissReview() {
    if (RecordingPanels* panels = loaded()) {
        panels->dismissReview();
    }
}
