#include "settings/SettingsLauncher.h"

void SettingsLauncher::openOn(std::optional<SettingsTab> tab) {
    if (m_app.openSettings) {
        m_app.openSettings(tab);
    }
}
