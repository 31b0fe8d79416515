#pragma once

#include "core/platform/CallbackScheme.h"

#include <QCoreApplication>
#include <QString>

// The browser's way back to this program on the freedesktop desktops, as xdg-mime sets it up:
// the program's desktop entry, norvanebar.desktop in the user's applications folder
// ($XDG_DATA_HOME/applications), declares x-scheme-handler/<scheme> with an Exec line that takes the
// address (%u), and the user's mimeapps.list ($XDG_CONFIG_HOME) makes it the default handler of
// that scheme. The browser then starts `norvanebar <address>`, which hands the address to the
// running instance.
class SchemeHandlerEntry : public CallbackScheme {
    Q_DECLARE_TR_FUNCTIONS(SchemeHandlerEntry)

public:
    // The entry of the running program in the user's own folders.
    SchemeHandlerEntry();
    // An entry in `applicationsFolder` that starts `executable`, made the default in `mimeAppsFile`.
    SchemeHandlerEntry(QString applicationsFolder, QString mimeAppsFile, QString executable);

    QString filePath() const;
    // The entry's text: an application whose Exec line starts `executable`, quoted, with the address.
    static QByteArray contents(const QString& executable, const QString& scheme);
    // `mimeApps`, the text of a mimeapps.list, with this entry the default for the scheme; every other
    // line as it was.
    static QByteArray withDefaultHandler(const QByteArray& mimeApps, const QString& scheme);

    std::optional<QString> registerHandler(const QString& scheme) override;

private:
    // What could not be written, or absent.
    static std::optional<QString> write(const QString& path, const QByteArray& contents);

    QString m_applicationsFolder;
    QString m_mimeAppsFile;
    QString m_executable;
};
