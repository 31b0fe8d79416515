#include "settings/SettingsLauncher.h"

void SettingsLauncher::open() {
    if (m_app.openSettings) {
        m_app.openSettings(std::nullopt);
    }
}
