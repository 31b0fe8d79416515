#pragma once

#include <QtGlobal>
#include <functional>
#include <optional>

// Decides what a toggle request does to the popover. A click on the tray icon while the popover is
// open first takes focus from the popover, which hides itself, and only then arrives as a toggle:
// a toggle that follows such a hide within a moment means "close", not "open again".
class PopoverToggle {
public:
    using MonotonicClock = std::function<qint64()>; // milliseconds
    static constexpr qint64 reopenGraceMs = 300;

    explicit PopoverToggle(MonotonicClock clock);

    void noteHiddenByFocusLoss();
    // Whether a toggle arriving now should show the popover (else it hides or stays hidden).
    bool shouldShow(bool popoverVisible) const;

private:
    MonotonicClock m_clock;
    std::optional<qint64> m_hiddenByFocusLossAt;
};
