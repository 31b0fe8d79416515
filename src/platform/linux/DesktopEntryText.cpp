#include "platform/linux/DesktopEntryText.h"

#include <QDir>
#include <QFileInfo>

namespace DesktopEntryText {

QString installedEntryPath(const QString& executable) {
    return QDir::cleanPath(QFileInfo(executable).absolutePath() + QStringLiteral("/../share/applications/") +
                           entryFileName);
}

QString execArgument(const QString& argument) {
    QString quoted;
    for (const QChar character : argument) {
        if (character == u'"' || character == u'`' || character == u'$' || character == u'\\') {
            quoted += u'\\';
        } else if (character == u'%') {
            quoted += u'%';
        }
        quoted += character;
    }
    QString value;
    for (const QChar character : u'"' + quoted + u'"') {
        switch (character.unicode()) {
        case '\\':
            value += QStringLiteral("\\\\");
            break;
        case '\n':
            value += QStringLiteral("\\n");
            break;
        case '\t':
            value += QStringLiteral("\\t");
            break;
        case '\r':
            value += QStringLiteral("\\r");
            break;
        default:
            value += character;
        }
    }
    return value;
}

} // namespace DesktopEntryText
