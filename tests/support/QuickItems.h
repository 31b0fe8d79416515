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

// The visible controls under `item` that assistive technology could not tell apart: a control a
// person can focus or act on whose accessible name is empty or whose role says nothing. Each is
// described by its type, objectName and role, so a failing comparison says which.
inline QStringList unnamedControls(QQuickItem* item) {
    QStringList unnamed;
    if (!item || !item->isVisible()) {
        return unnamed;
    }
    if (QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(item)) {
        const QAccessible::State state = accessible->state();
        const QAccessibleActionInterface* actions = accessible->actionInterface();
        const bool interactive =
            !state.invisible && (state.focusable || (actions && !actions->actionNames().isEmpty()));
        const bool silentRole = accessible->role() == QAccessible::NoRole || accessible->role() == QAccessible::Client;
        if (interactive && (accessible->text(QAccessible::Name).trimmed().isEmpty() || silentRole)) {
            unnamed << QStringLiteral("%1 \"%2\" role %3")
                           .arg(QString::fromLatin1(item->metaObject()->className()), item->objectName())
                           .arg(int(accessible->role()));
        }
    }
    for (QQuickItem* child : item->childItems()) {
        unnamed << unnamedControls(child);
    }
    return unnamed;
}

} // namespace QuickItems
