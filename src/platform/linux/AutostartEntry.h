#pragma once

#include "core/platform/LoginItem.h"

#include <QCoreApplication>
#include <QString>

// Launch at login on the freedesktop desktops: an autostart entry, com.norvanebar.NorvaneBar.desktop
// in the autostart folder of the user's configuration folder ($XDG_CONFIG_HOME/autostart, by default
// ~/.config/autostart), that starts this program: the installed one, or the build tree's, whichever
// runs. Turning it off removes the file.
class AutostartEntry : public LoginItem {
    Q_DECLARE_TR_FUNCTIONS(AutostartEntry)

public:
    // The entry of the running program in the user's autostart folder.
    AutostartEntry();
    // An entry in `folder` that starts `executable`, for tests.
    AutostartEntry(QString folder, QString executable);

    static QString defaultFolder();

    QString filePath() const;
    // The file's text: an application entry whose Exec line starts `executable`, quoted.
    static QByteArray contents(const QString& executable);

    // Whether the entry is on disk and not switched off there (Hidden=true or
    // X-GNOME-Autostart-enabled=false, as a desktop's own startup settings may leave it).
    bool isEnabled() const override;
    std::optional<QString> setEnabled(bool enabled) override;

private:
    QString m_folder;
    QString m_executable;
};
