#pragma once

#include "core/platform/CaptureStream.h"
#include "core/platform/MicrophoneAccess.h"
#include "core/platform/MovieWriter.h"
#include "core/recording/RecordingPanels.h"
#include "desktop/shell/DesktopWindows.h"

#include <QLibrary>

// The windows module as the program holds it: loaded at the first call that needs a window or a
// device of a recording. Until then the popover counts as hidden and no panel of a recording as
// shown, so hiding and closing load nothing.
class DesktopWindowsModule final : public DesktopWindows {
public:
    explicit DesktopWindowsModule(Context context);
    ~DesktopWindowsModule() override;
    Q_DISABLE_COPY_MOVE(DesktopWindowsModule)

    // Lets the windows go, before the state they show.
    void close();

    void togglePopover(std::optional<QRect> anchor) override;
    void showPopover(std::optional<QRect> anchor) override;
    void hidePopover() override;
    bool isPopoverVisible() const override;
    void showSettings(std::optional<SettingsTab> tab) override;
    RecordingPanels& recordingPanels() override { return m_panels; }
    std::unique_ptr<ScreenContentPicker> makeScreenPicker() override;
    ScreenCaptureService& screenCapture() override { return m_capture; }
    MovieWriterFactory& movieWriters() override { return m_writers; }
    MicrophoneAccess& microphone() override { return m_microphone; }
    std::unique_ptr<FacecamOverlay> makeFacecam(const FacecamStyle& style) override;

private:
    // Loads the module at the first call; a program without it cannot go on.
    DesktopWindows& windows();

    // The recording's panels, loading the module to show one.
    class LoadingPanels : public RecordingPanels {
    public:
        explicit LoadingPanels(DesktopWindowsModule& module)
            : m_module(module) {}

        void showCountdown(RecordingCountdown& countdown) override;
        void closeCountdown() override;
        void showControls() override;
        void hideControls() override;
        void showFacecamPreview(FacecamOverlay& facecam, const FacecamStyle& style) override;
        void dismissFacecamPreview() override;
        void showReview(const PendingRecordingPreview& preview, std::function<void()> onAttach,
                        std::function<void()> onReRecord, std::function<void()> onDiscard) override;
        void dismissReview() override;

    private:
        RecordingPanels& shown() { return m_module.windows().recordingPanels(); }
        // The panels when the module is loaded; none is shown before.
        RecordingPanels* loaded() { return m_module.m_windows ? &m_module.m_windows->recordingPanels() : nullptr; }

        DesktopWindowsModule& m_module;
    };

    // The devices of a recording, loading the module at their first use.
    class LoadingCapture : public ScreenCaptureService {
    public:
        explicit LoadingCapture(DesktopWindowsModule& module)
            : m_module(module) {}

        QCoro::Task<> checkAccess() override;
        std::unique_ptr<CaptureStream> makeStream(const CaptureTarget& target,
                                                  const CaptureConfiguration& configuration) override;
        void prepareStream(const CaptureTarget& target, const CaptureConfiguration& configuration) override;

    private:
        DesktopWindowsModule& m_module;
    };

    class LoadingWriters : public MovieWriterFactory {
    public:
        explicit LoadingWriters(DesktopWindowsModule& module)
            : m_module(module) {}

        std::unique_ptr<MovieWriter> makeWriter(const QString& path) override;

    private:
        DesktopWindowsModule& m_module;
    };

    class LoadingMicrophone : public MicrophoneAccess {
    public:
        explicit LoadingMicrophone(DesktopWindowsModule& module)
            : m_module(module) {}

        QCoro::Task<Status> authorizationStatus() override;
        QCoro::Task<bool> requestAccess() override;

    private:
        DesktopWindowsModule& m_module;
    };

    Context m_context;
    QLibrary m_library;
    std::unique_ptr<DesktopWindows> m_windows;
    LoadingPanels m_panels{*this};
    LoadingCapture m_capture{*this};
    LoadingWriters m_writers{*this};
    LoadingMicrophone m_microphone{*this};
};
