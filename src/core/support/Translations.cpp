#include "core/support/Translations.h"

#include <QCoreApplication>
#include <QTranslator>

namespace Translations {

bool install(QCoreApplication& app, const QLocale& locale) {
    auto* english = new QTranslator(&app);
    if (!english->load(QStringLiteral(":/i18n/norvanebar_en.qm"))) {
        delete english;
        return false;
    }
    QCoreApplication::installTranslator(english);
    // An English locale finds the English catalogue again: it is installed once.
    auto* local = new QTranslator(&app);
    if (local->load(locale, QStringLiteral("norvanebar"), QStringLiteral("_"), QStringLiteral(":/i18n")) &&
        local->filePath() != english->filePath()) {
        QCoreApplication::installTranslator(local);
    } else {
        delete local;
    }
    return true;
}

} // namespace Translations
