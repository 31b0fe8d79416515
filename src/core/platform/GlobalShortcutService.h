#pragma once

#include <QObject>
#include <QString>

// Key combinations that reach NorvaneBar from anywhere on the desktop, each under a number of ours.
// A combination is written as Qt writes a key sequence ("Alt+Shift+Space").
class GlobalShortcutService : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Whether this desktop binds anything at all; when not, only the desktop's own shortcut settings
    // can reach NorvaneBar (through its D-Bus method or a second launch).
    virtual bool bindsShortcuts() const = 0;
    // Binds `keys` under `id`, with what it does in words for the desktop's shortcut settings; false
    // when the desktop refuses it, for example because another program holds the combination.
    virtual bool bind(quint32 id, const QString& keys, const QString& description) = 0;
    // Gives the combination bound under `id` back; nothing happens for an id that holds none.
    virtual void release(quint32 id) = 0;

signals:
    // A bound combination was pressed. May be emitted from inside the desktop's own event handling.
    void pressed(quint32 id);
};
