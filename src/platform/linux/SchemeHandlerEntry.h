#pragma once

#include "core/platform/CallbackScheme.h"

#include <QCoreApplication>
#include <QString>

// The browser's way back to this program on the freedesktop desktops, as xdg-mime sets it up:
// the program's desktop entry, com.norvanebar.NorvaneBar.desktop, declares x-scheme-handler/<scheme>
// with an Exec line that takes the address (%u), and the user's mimeapps.list ($XDG_CONFIG_HOME)
// makes it the default handler of that scheme. The browser then starts `norvanebar <address>`, which
// hands the address to the running instance.
// An installed program has that entry in <prefix>/share/applications already, so only the default is
// set; a program run from its build tree writes its own entry into the user's applications folder
// ($XDG_DATA_HOME/applications), starting that very program.
class SchemeHandlerEntry : public CallbackScheme {
    Q_DECLARE_TR_FUNCTIONS(SchemeHandlerEntry)

public:
    // The entry of the running program in the user's own folders.
    SchemeHandlerEntry();
    // The default in `mimeAppsFile` for the entry of `executable`: the installed one, or else one
    // written into `applicationsFolder`.
    SchemeHandlerEntry(QString applicationsFolder, QString mimeAppsFile, QString executable);

    // The entry in the user's applications folder.
    QString filePath() const;
    // The entry's text: an application whose Exec line starts `executable`, quoted, with the address.
    static QByteArray contents(const QString& executable, const QString& scheme);
    // Whether `executable` is an installed program: its desktop entry is where the install puts it
    // beside the program (DesktopEntryText::installedEntryPath).
    static bool isInstalled(const QString& executable);
    // Whether `entry` is the text contents() writes for `scheme`, for any program.
    static bool isOurs(const QByteArray& entry, const QString& scheme);
    // `mimeApps`, the text of a mimeapps.list, with this entry the default for the scheme; every other
    // line as it was.
    static QByteArray withDefaultHandler(const QByteArray& mimeApps, const QString& scheme);

    // Writes the user's entry, or for an installed program removes one of ours left there, then sets
    // the default.
    std::optional<QString> registerHandler(const QString& scheme) override;

private:
    // What could not be written, or absent.
    static std::optional<QString> write(const QString& path, const QByteArray& contents);

    QString m_applicationsFolder;
    QString m_mimeAppsFile;
    QString m_executable;
};
