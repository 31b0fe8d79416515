#pragma once

#include "core/platform/GlobalShortcutService.h"

#include <QMap>
#include <QSet>
#include <QStringList>

// A desktop's global shortcuts as the test sets them: it binds what no other program holds, writes
// down each call in order ("bind 1 Alt+Shift+Space", "release 1"), and presses what the test asks.
class ManualGlobalShortcuts : public GlobalShortcutService {
public:
    bool bindsShortcuts() const override { return binds; }

    bool bind(quint32 id, const QString& keys, const QString& description) override {
        descriptions.insert(id, description);
        calls.append(QStringLiteral("bind %1 %2").arg(id).arg(keys));
        if (!binds || takenByOthers.contains(keys)) {
            return false;
        }
        bound.insert(id, keys);
        return true;
    }

    void release(quint32 id) override {
        calls.append(QStringLiteral("release %1").arg(id));
        bound.remove(id);
    }

    // The user pressed `keys`: every id bound to it hears of it, as a desktop that allowed
    // a combination twice would tell.
    void press(const QString& keys) {
        for (auto it = bound.cbegin(); it != bound.cend(); ++it) {
            if (it.value() == keys) {
                emit pressed(it.key());
            }
        }
    }

    QStringList calls;
    QMap<quint32, QString> bound;
    QMap<quint32, QString> descriptions;
    QSet<QString> takenByOthers;
    // False plays a desktop that binds nothing for a program.
    bool binds = true;
};
