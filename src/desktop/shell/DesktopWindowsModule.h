#pragma once

#include "core/recording/RecordingPanels.h"
#include "desktop/shell/DesktopWindows.h"

#include <QLibrary>
#include <QString>

// The windows module as the program holds it: loaded at the first call that needs a window. Until
// then the popover counts as hidden and no panel of a recording as shown, so hiding and closing
// load nothing.
class DesktopWindowsModule final : public DesktopWindows {
public:
    explicit DesktopWindowsModule(Context context);
    ~DesktopWindowsModule() override;
    Q_DISABLE_COPY_MOVE(DesktopWindowsModule)

    // Where the module is: beside the program in the build tree, in its own folder once
    // installed; empty when neither place has it.
    static QString path();
    bool isLoaded() const { return m_windows != nullptr; }
    // Lets the windows go, before the state they show.
    void close();

    void togglePopover(std::optional<QRect> anchor) override;
    void showPopover(std::optional<QRect> anchor) override;
    void hidePopover() override;
    bool isPopoverVisible() const override;
    void showSettings(std::optional<SettingsTab> tab) override;
    RecordingPanels& recordingPanels() override { return m_panels; }
    std::unique_ptr<ScreenContentPicker> makeScreenPicker() override;

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

    Context m_context;
    QLibrary m_library;
    std::unique_ptr<DesktopWindows> m_windows;
    LoadingPanels m_panels{*this};
};
