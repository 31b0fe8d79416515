#pragma once

// What the core may ask of the window that hosts the composer: to bring it up.
class PopoverControlling {
public:
    virtual ~PopoverControlling() = default;
    virtual void showPopover() = 0;
};
