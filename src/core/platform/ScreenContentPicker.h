#pragma once

#include "core/platform/CaptureStream.h"

#include <QString>

// Told what the person chose in a content picker. The picker calls on the main thread.
class ScreenContentPickerObserver {
public:
    virtual ~ScreenContentPickerObserver() = default;

    // A screen, window or region to record.
    virtual void contentPickerDidSelect(const CaptureTarget& target) = 0;
    virtual void contentPickerDidCancel() = 0;
    // The picker could not be shown, or could not hand over what was chosen.
    virtual void contentPickerStartDidFail(const QString& description) = 0;
};

// The desktop's way of choosing what to record: the ScreenCast portal's own chooser, or a picker of
// the program's own on X11. An active picker keeps what it handed out (a portal's session and its
// PipeWire connection) until it is made inactive.
class ScreenContentPicker {
public:
    virtual ~ScreenContentPicker() = default;

    virtual void addObserver(ScreenContentPickerObserver* observer) = 0;
    virtual void removeObserver(ScreenContentPickerObserver* observer) = 0;
    virtual bool isActive() const = 0;
    virtual void setActive(bool active) = 0;
    // Shows the chooser; the choice reaches the observers. A portal asks for the pointer in the
    // frames, or not, as it hands out the screen.
    virtual void present(bool showsCursor) = 0;
    // Whether the next present() hands out what was chosen before without asking.
    virtual bool remembersChoice() const = 0;
    // The next present() asks the person again.
    virtual void forgetChoice() = 0;
};
