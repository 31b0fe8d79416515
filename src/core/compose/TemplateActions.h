#pragma once

#include "core/compose/TaskDraft.h"
#include "core/hierarchy/HierarchyStore.h"
#include "core/hierarchy/LocationMemory.h"
#include "core/settings/SettingsStore.h"
#include "core/settings/TaskTemplate.h"

#include <QCoroTask>
#include <QObject>

// Templates in the composer: filling the draft from one, and keeping the draft as a new one. Main
// thread only.
class TemplateActions : public QObject {
    Q_OBJECT

public:
    // Everything given must outlive this object.
    TemplateActions(SettingsStore& settings, HierarchyStore& hierarchy, LocationMemory& location, TaskDraft& draft,
                    QObject* parent = nullptr);

    // Empties the draft, fills it from the template, then aims the composer at the pinned list,
    // loading the tree of the last location's workspace (else the first workspace) when the list
    // isn't cached. The list is chosen after the fields are filled, so a pinned list other than the
    // current one wipes the status, tags and custom values just set: that order is intended. A list
    // that can't be found leaves the composer where it is, without a word.
    QCoro::Task<> applyTemplate(TaskTemplate applied);
    // Appends the draft's name, description, status, priority, tags and custom values, untrimmed and
    // pinned to the current list if there is one, as a new template, and writes the settings.
    void saveCurrentAsTemplate(const QString& name);

private:
    // Selects the cached entry of the list; false when there is none.
    bool selectCached(const QString& listID);

    SettingsStore& m_settings;
    HierarchyStore& m_hierarchy;
    LocationMemory& m_location;
    TaskDraft& m_draft;
};
