#pragma once

#include "core/platform/ColorSchemeSource.h"

// A desktop colour scheme the test sets by hand, told to its readers as the desktop's would be.
class ManualColorScheme : public ColorSchemeSource {
public:
    ColorScheme colorScheme() const override { return m_scheme; }

    void set(ColorScheme scheme) {
        if (scheme != m_scheme) {
            m_scheme = scheme;
            emit colorSchemeChanged(scheme);
        }
    }

private:
    ColorScheme m_scheme = ColorScheme::noPreference;
};
