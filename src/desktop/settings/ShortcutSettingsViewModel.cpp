#include "desktop/settings/ShortcutSettingsViewModel.h"

#include "platform/linux/ControlService.h"

ShortcutSettingsViewModel::ShortcutSettingsViewModel(SettingsStore& settings, HotKeyManager& hotKeys, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_hotKeys(hotKeys) {
    connect(&m_settings, &SettingsStore::settingsChanged, this, &ShortcutSettingsViewModel::settingsChanged);
}

QStringList ShortcutSettingsViewModel::presetLabels() {
    QStringList labels;
    for (const auto& [preset, raw] : RawValues<HotKeyPreset>::cases) {
        labels.append(preset == HotKeyPreset::disabled ? tr("Disabled") : HotKeyManager::keys(preset));
    }
    return labels;
}

std::optional<HotKeyPreset> ShortcutSettingsViewModel::presetAt(int index) {
    const auto& cases = RawValues<HotKeyPreset>::cases;
    if (index < 0 || size_t(index) >= cases.size()) {
        return std::nullopt;
    }
    return cases.at(size_t(index)).first;
}

void ShortcutSettingsViewModel::setComposePresetIndex(int index) {
    if (const std::optional<HotKeyPreset> preset = presetAt(index)) {
        m_settings.set(&AppSettings::hotKeyPreset, *preset);
        m_hotKeys.applyCompose(*preset);
    }
}

void ShortcutSettingsViewModel::setScreenshotPresetIndex(int index) {
    if (const std::optional<HotKeyPreset> preset = presetAt(index)) {
        m_settings.set(&AppSettings::screenshotHotKeyPreset, *preset);
        m_hotKeys.applyScreenshot(*preset);
    }
}

void ShortcutSettingsViewModel::setScreenRecordingPresetIndex(int index) {
    if (const std::optional<HotKeyPreset> preset = presetAt(index)) {
        m_settings.set(&AppSettings::screenRecordingHotKeyPreset, *preset);
        m_hotKeys.applyScreenRecording(*preset);
    }
}

QStringList ShortcutSettingsViewModel::templateNames() const {
    QStringList names{tr("None")};
    for (const TaskTemplate& entry : settings().templates) {
        names.append(entry.name);
    }
    return names;
}

int ShortcutSettingsViewModel::templateIndex(const std::optional<QUuid>& templateID) const {
    const QList<TaskTemplate>& templates = settings().templates;
    for (qsizetype index = 0; templateID && index < templates.size(); ++index) {
        if (templates.at(index).id == *templateID) {
            return int(index) + 1;
        }
    }
    return 0;
}

void ShortcutSettingsViewModel::setTemplateIndex(std::optional<QUuid> AppSettings::*templateID, int index) {
    const QList<TaskTemplate>& templates = settings().templates;
    if (index == 0) {
        m_settings.modify([templateID](AppSettings& changed) { (changed.*templateID).reset(); });
    } else if (index > 0 && index <= templates.size()) {
        m_settings.set(templateID, std::optional(templates.at(index - 1).id));
    }
}

QString ShortcutSettingsViewModel::toggleCommand() {
    return QStringLiteral("gdbus call --session --dest %1 --object-path %2 --method %1.TogglePopover")
        .arg(ControlService::serviceName, ControlService::objectPath);
}
