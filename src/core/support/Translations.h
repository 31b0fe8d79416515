#pragma once

#include <QLocale>

class QCoreApplication;

// The program's catalogues, compiled into the core's resources under :/i18n. The English one comes
// first: its texts are the sources themselves, but it holds the English singular and plural forms
// of each text counted with %n ("1 task created", "2 tasks created"). Over it comes the catalogue
// of the person's language, where there is one, which then answers first.
namespace Translations {

// Installs the English catalogue on app, then the one of locale if the program has it. Each is a
// translator owned by app. Returns whether the English catalogue loaded.
bool install(QCoreApplication& app, const QLocale& locale = QLocale());

} // namespace Translations
