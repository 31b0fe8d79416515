#include "core/shell/PopoverToggle.h"

#include <utility>

PopoverToggle::PopoverToggle(MonotonicClock clock)
    : m_clock(std::move(clock)) {}

void PopoverToggle::noteHiddenByFocusLoss() {
    m_hiddenByFocusLossAt = m_clock();
}

bool PopoverToggle::shouldShow(bool popoverVisible) const {
    if (popoverVisible) {
        return false;
    }
    return !m_hiddenByFocusLossAt || m_clock() - *m_hiddenByFocusLossAt >= reopenGraceMs;
}
