#pragma once

#include "core/settings/SettingsStore.h"
#include "core/shell/HotKeyManager.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// The shortcuts of the "General" tab: the combination that opens NorvaneBar, the one that captures
// a screenshot, the one that starts a screen recording, and the templates they apply. A preset chosen is stored, saved
// and bound at once. Where the desktop binds no shortcut for a program, the section says so and
// gives the command to bind in the desktop's own keyboard settings.
class ShortcutSettingsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window builds its view models.")
    Q_PROPERTY(QStringList presetLabels READ presetLabels CONSTANT)
    Q_PROPERTY(int composePresetIndex READ composePresetIndex WRITE setComposePresetIndex NOTIFY settingsChanged)
    Q_PROPERTY(
        int screenshotPresetIndex READ screenshotPresetIndex WRITE setScreenshotPresetIndex NOTIFY settingsChanged)
    Q_PROPERTY(QStringList templateNames READ templateNames NOTIFY settingsChanged)
    Q_PROPERTY(int screenshotTemplateIndex READ screenshotTemplateIndex WRITE setScreenshotTemplateIndex NOTIFY
                   settingsChanged)
    Q_PROPERTY(int screenRecordingPresetIndex READ screenRecordingPresetIndex WRITE setScreenRecordingPresetIndex NOTIFY
                   settingsChanged)
    Q_PROPERTY(int screenRecordingTemplateIndex READ screenRecordingTemplateIndex WRITE setScreenRecordingTemplateIndex
                   NOTIFY settingsChanged)
    Q_PROPERTY(bool bindsShortcuts READ bindsShortcuts CONSTANT)
    Q_PROPERTY(QString toggleCommand READ toggleCommand CONSTANT)

public:
    ShortcutSettingsViewModel(SettingsStore& settings, HotKeyManager& hotKeys, QObject* parent = nullptr);

    // The presets in their order, "Disabled" last.
    static QStringList presetLabels();
    int composePresetIndex() const { return int(settings().hotKeyPreset); }
    void setComposePresetIndex(int index);
    int screenshotPresetIndex() const { return int(settings().screenshotHotKeyPreset); }
    void setScreenshotPresetIndex(int index);

    int screenRecordingPresetIndex() const { return int(settings().screenRecordingHotKeyPreset); }
    void setScreenRecordingPresetIndex(int index);

    // "None", then the templates by name.
    QStringList templateNames() const;
    // 0 for none, also when the stored template is gone.
    int screenshotTemplateIndex() const { return templateIndex(settings().screenshotTemplateID); }
    void setScreenshotTemplateIndex(int index) { setTemplateIndex(&AppSettings::screenshotTemplateID, index); }
    int screenRecordingTemplateIndex() const { return templateIndex(settings().screenRecordingTemplateID); }
    void setScreenRecordingTemplateIndex(int index) {
        setTemplateIndex(&AppSettings::screenRecordingTemplateID, index);
    }

    bool bindsShortcuts() const { return m_hotKeys.bindsShortcuts(); }
    // The command that opens or closes the popover of the running NorvaneBar.
    static QString toggleCommand();

signals:
    void settingsChanged();

private:
    const AppSettings& settings() const { return m_settings.settings(); }
    static std::optional<HotKeyPreset> presetAt(int index);
    int templateIndex(const std::optional<QUuid>& templateID) const;
    void setTemplateIndex(std::optional<QUuid> AppSettings::*templateID, int index);

    SettingsStore& m_settings;
    HotKeyManager& m_hotKeys;
};
