#include "core/compose/TemplateList.h"

#include <QStringList>

namespace TemplateList {

QString listPath(const ListEntry& entry) {
    QStringList parts{entry.spaceName};
    if (entry.folderName) {
        parts.append(*entry.folderName);
    }
    parts.append(entry.list.name);
    return parts.join(QStringLiteral(" › "));
}

std::optional<TaskTemplate> find(const AppSettings& settings, const std::optional<QUuid>& id) {
    if (!id) {
        return std::nullopt;
    }
    for (const TaskTemplate& stored : settings.templates) {
        if (stored.id == *id) {
            return stored;
        }
    }
    return std::nullopt;
}

void pin(TaskTemplate& pinned, const ListEntry& entry) {
    pinned.listID = entry.list.id;
    pinned.listPath = listPath(entry);
}

void replace(SettingsStore& settings, const TaskTemplate& edited) {
    settings.modify([&edited](AppSettings& changed) {
        bool found = false;
        for (TaskTemplate& stored : changed.templates) {
            if (stored.id == edited.id) {
                stored = edited;
                found = true;
            }
        }
        if (!found) {
            changed.templates.append(edited);
        }
    });
}

void remove(SettingsStore& settings, QUuid id) {
    settings.modify([&id](AppSettings& changed) {
        changed.templates.removeIf([&id](const TaskTemplate& stored) { return stored.id == id; });
    });
    if (settings.settings().screenshotTemplateID == id) {
        settings.modify([](AppSettings& changed) { changed.screenshotTemplateID.reset(); });
    }
}

} // namespace TemplateList
