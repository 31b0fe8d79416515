#pragma once

#include <QAccessible>
#include <QQuickItem>
#include <QString>
#include <QStringList>

// Reading a Qt Quick scene in UI tests: items out of findChild's reach, and the text an item shows.
namespace QuickItems {

// The first visual descendant with this objectName, or null. Delegates of views and the content of
// popups are visual children only, out of reach of findChild.
inline QQuickItem* visualChild(QQuickItem* item, const QString& objectName) {
    if (!item) {
        return nullptr;
    }
    for (QQuickItem* child : item->childItems()) {
        if (child->objectName() == objectName) {
            return child;
        }
        if (QQuickItem* found = visualChild(child, objectName)) {
            return found;
        }
    }
    return nullptr;
}

// The text the item shows when it shows it as plain text (a Text or Label with textFormat
// Text.PlainText); otherwise a note that says what is wrong, so a comparison prints it.
inline QString plainText(const QObject* item) {
    if (!item) {
        return QStringLiteral("<no item>");
    }
    const QVariant format = item->property("textFormat");
    if (!format.isValid()) {
        return QStringLiteral("<%1 has no textFormat>").arg(QString::fromLatin1(item->metaObject()->className()));
    }
    if (format.toInt() != Qt::PlainText) {
        return QStringLiteral("<textFormat %1, not plain text>").arg(format.toInt());
    }
    return item->property("text").toString();
}

// The accessible names of the item and all its visual descendants, without the empty ones.
inline QStringList accessibleNames(QQuickItem* item) {
    QStringList names;
    if (QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(item)) {
        names << accessible->text(QAccessible::Name);
    }
    for (QQuickItem* child : item->childItems()) {
        names << accessibleNames(child);
    }
    names.removeAll(QString());
    return names;
}

} // namespace QuickItems
