#pragma once

#include "core/settings/AppSettings.h"

#include <QObject>
#include <QString>

// Owns the settings file and the AppSettings in memory, on the main thread. Created once; reads the
// file at creation and falls back to defaults when it is missing, unreadable or damaged, without a
// word and without writing. Every change, however small and even to an equal value, ends in save()
// and notifies observers. There is no reload: a change made to the file by another process is lost
// at the next save.
class SettingsStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(AppSettings settings READ settings WRITE setSettings NOTIFY settingsChanged)

public:
    // The file of this user: NorvaneBar/settings.json in the per-user configuration folder.
    explicit SettingsStore(QObject* parent = nullptr);
    // A file of the caller's choosing, for tests.
    explicit SettingsStore(QString filePath, QObject* parent = nullptr);

    static QString defaultFilePath();

    const QString& filePath() const { return m_filePath; }
    const AppSettings& settings() const { return m_settings; }

    // Replaces the whole record.
    void setSettings(AppSettings settings);
    // Changes one field: store.set(&AppSettings::showDueCountBadge, true).
    template <typename T, typename V> void set(T AppSettings::*field, V&& value) {
        m_settings.*field = std::forward<V>(value);
        changed();
    }
    // Changes the record in place, for edits of several fields or inside a field.
    template <typename Change> void modify(Change&& change) {
        std::forward<Change>(change)(m_settings);
        changed();
    }

    // Writes the whole file atomically, pretty-printed with sorted keys, so that a crash leaves the
    // old file or the new one. A failure is dropped: the value in memory stays ahead of the file and
    // the next change tries again.
    void save() const;

signals:
    void settingsChanged();

private:
    void changed();

    QString m_filePath;
    AppSettings m_settings;
};
