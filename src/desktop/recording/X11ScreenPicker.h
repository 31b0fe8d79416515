#pragma once

#include "core/platform/ScreenContentPicker.h"
#include "desktop/recording/RegionSelectionWindow.h"
#include "desktop/recording/ScreenPickerViewModel.h"

#include <QList>
#include <QObject>
#include <QQuickView>
#include <memory>

// Our own chooser of what to record on X11, where no ScreenCast portal answers: a window listing
// the screens and the application windows, and a region dragged on the screen; all of it by
// keyboard too, Escape cancelling. It remembers nothing between recordings.
class X11ScreenPicker : public QObject, public ScreenContentPicker {
    Q_OBJECT

public:
    explicit X11ScreenPicker(QObject* parent = nullptr);
    ~X11ScreenPicker() override;

    void addObserver(ScreenContentPickerObserver* observer) override;
    void removeObserver(ScreenContentPickerObserver* observer) override;
    bool isActive() const override { return m_active; }
    void setActive(bool active) override;
    void present(bool showsCursor) override;
    bool remembersChoice() const override { return false; }
    void forgetChoice() override {}

    // The windows as they stand, none before the first present().
    QQuickView* pickerWindow() const { return m_view.get(); }
    RegionSelectionWindow& regionWindow() { return m_region; }
    ScreenPickerViewModel& choices() { return m_choices; }

protected:
    // Closing the picker's window by its title bar cancels.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void select(const CaptureTarget& target);
    void cancel();
    void tell(const std::function<void(ScreenContentPickerObserver&)>& message);
    void closePicker();

    QList<ScreenContentPickerObserver*> m_observers;
    bool m_active = false;
    ScreenPickerViewModel m_choices;
    RegionSelectionWindow m_region;
    std::unique_ptr<QQuickView> m_view;
};
