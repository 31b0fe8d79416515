#pragma once

#include "core/json/RawValue.h"

// The popover's two tabs. Not kept: every launch starts on compose.
enum class PopoverTab { compose, myDay };

template <> struct RawValues<PopoverTab> {
    static constexpr std::array cases{
        std::pair{PopoverTab::compose, "compose"},
        std::pair{PopoverTab::myDay, "myDay"},
    };
};
