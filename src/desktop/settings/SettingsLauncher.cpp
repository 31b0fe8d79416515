#include "desktop/settings/SettingsLauncher.h"

void SettingsLauncher::openOn(std::optional<SettingsTab> tab) {
    m_app.openSettings(tab);
}
