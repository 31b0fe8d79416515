#pragma once

#include "core/json/RawValue.h"

// The fixed menu of key combinations offered for the compose, screenshot and screen recording
// shortcuts.
enum class HotKeyPreset {
    optionShiftSpace,
    controlShiftSpace,
    commandShiftSpace,
    optionShiftN,
    disabled,
};

template <> struct RawValues<HotKeyPreset> {
    static constexpr std::array cases{
        std::pair{HotKeyPreset::optionShiftSpace, "optionShiftSpace"},
        std::pair{HotKeyPreset::controlShiftSpace, "controlShiftSpace"},
        std::pair{HotKeyPreset::commandShiftSpace, "commandShiftSpace"},
        std::pair{HotKeyPreset::optionShiftN, "optionShiftN"},
        std::pair{HotKeyPreset::disabled, "disabled"},
    };
};
