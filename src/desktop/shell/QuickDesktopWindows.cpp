// The windows module: NorvaneBar's windows drawn with Qt Quick, which the program loads when one of
// them is first needed; they load the devices of a recording at the first recording.
#include "core/app/AppState.h"
#include "desktop/recording/RecordingDevicesModule.h"
#include "desktop/recording/RecordingWindows.h"
#include "desktop/recording/X11ScreenPicker.h"
#include "desktop/settings/SettingsWindow.h"
#include "desktop/shell/DesktopWindows.h"
#include "desktop/shell/PopoverPages.h"

#include <QGuiApplication>

namespace {
class QuickDesktopWindows final : public DesktopWindows {
public:
    explicit QuickDesktopWindows(const Context& context)
        : m_pages(context.app, *QGuiApplication::clipboard())
        , m_settings(context.app, context.loginItem, context.hotKeys) {
        PopoverWindow& popover = m_pages.window();
        QObject::connect(&popover, &PopoverWindow::presentedChanged, &popover, context.popoverPresented);
        QObject::connect(&popover, &PopoverWindow::menuRequested, &popover, context.menuRequested);
        m_recording.follow(context.app.recordingCoordinator());
    }

    void togglePopover(std::optional<QRect> anchor) override { m_pages.window().toggle(anchor); }
    void showPopover(std::optional<QRect> anchor) override { m_pages.window().showPopover(anchor); }
    void hidePopover() override { m_pages.window().hide(); }
    bool isPopoverVisible() const override { return m_pages.window().isVisible(); }

    void showSettings(std::optional<SettingsTab> tab) override {
        if (tab) {
            m_settings.showTab(*tab);
        } else {
            m_settings.showSettings();
        }
    }

    RecordingPanels& recordingPanels() override { return m_recording; }
    std::unique_ptr<ScreenContentPicker> makeScreenPicker() override { return std::make_unique<X11ScreenPicker>(); }

    ScreenCaptureService& screenCapture() override { return m_devices.devices().capture(); }
    MovieWriterFactory& movieWriters() override { return m_devices.devices().writers(); }
    MicrophoneAccess& microphone() override { return m_devices.devices().microphone(); }
    std::unique_ptr<FacecamOverlay> makeFacecam(const FacecamStyle& style) override {
        return m_devices.devices().makeFacecam(style);
    }

private:
    RecordingDevicesModule m_devices;
    PopoverPages m_pages;
    SettingsWindow m_settings;
    RecordingWindows m_recording;
};
} // namespace

extern "C" Q_DECL_EXPORT DesktopWindows* norvanebarMakeDesktopWindows(const DesktopWindows::Context& context) {
    PopoverWindow::configureQuick();
    return new QuickDesktopWindows(context);
}
