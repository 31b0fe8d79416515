#pragma once

#include "core/settings/SettingsTab.h"

#include <QPoint>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>

class AppState;
class FacecamOverlay;
class HotKeyManager;
class LoginItem;
class MicrophoneAccess;
class MovieWriterFactory;
class RecordingPanels;
class ScreenCaptureService;
class ScreenContentPicker;
struct FacecamStyle;

// NorvaneBar's windows drawn with Qt Quick: the popover, the settings, the recording's panels and
// the X11 screen picker; and the devices a recording takes through GStreamer and the sound server.
// The windows live in a module of their own, which the program loads when one of them is first
// needed, so that the tray icon alone maps no Qt Quick with its QML engine; the devices live in
// another, which the windows load at the first recording.
class DesktopWindows {
public:
    // What the windows need of the program, and whom they tell.
    struct Context {
        AppState& app;
        LoginItem& loginItem;
        HotKeyManager& hotKeys;
        // True once the popover's first frame after showing is on screen, false when it hides.
        std::function<void(bool presented)> popoverPresented;
        // The Menu key or Shift+F10 in the popover asks for the tray menu at `at`.
        std::function<void(QPoint at)> menuRequested;
    };

    virtual ~DesktopWindows() = default;

    // Shows the popover hanging from `anchor`, or hides it, as a click on the tray icon does.
    virtual void togglePopover(std::optional<QRect> anchor) = 0;
    // Shows the popover hanging from `anchor`; without one, where it last hung.
    virtual void showPopover(std::optional<QRect> anchor) = 0;
    virtual void hidePopover() = 0;
    virtual bool isPopoverVisible() const = 0;
    // Shows the settings window on `tab`, or on the tab it last showed.
    virtual void showSettings(std::optional<SettingsTab> tab) = 0;
    // The countdown, controls, camera preview and review of a recording.
    virtual RecordingPanels& recordingPanels() = 0;
    // Our own chooser of what to record, for X11 desktops without the ScreenCast portal.
    virtual std::unique_ptr<ScreenContentPicker> makeScreenPicker() = 0;

    // The devices of a recording: the capture of the screen, the movie writers, the microphone and
    // the camera behind the overlay.
    virtual ScreenCaptureService& screenCapture() = 0;
    virtual MovieWriterFactory& movieWriters() = 0;
    virtual MicrophoneAccess& microphone() = 0;
    virtual std::unique_ptr<FacecamOverlay> makeFacecam(const FacecamStyle& style) = 0;
};

// The module's entry point, by this name: the windows, built for `context`.
extern "C" {
using MakeDesktopWindows = DesktopWindows* (*)(const DesktopWindows::Context& context);
}
