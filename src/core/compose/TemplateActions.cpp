#include "core/compose/TemplateActions.h"

#include "core/async/LoadGuard.h"
#include "core/compose/TemplateList.h"

TemplateActions::TemplateActions(SettingsStore& settings, HierarchyStore& hierarchy, LocationMemory& location,
                                 TaskDraft& draft, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_hierarchy(hierarchy)
    , m_location(location)
    , m_draft(draft) {}

QCoro::Task<> TemplateActions::applyTemplate(TaskTemplate applied) {
    const AppSettings& settings = m_settings.settings();
    m_draft.reset(settings.defaultReminderLeadMinutes);
    m_draft.setName(applied.taskName);
    m_draft.setDescriptionText(applied.descriptionMarkdown);
    m_draft.setStatus(applied.status);
    m_draft.setPriority(applied.priority ? std::optional<int>(static_cast<int>(*applied.priority)) : std::nullopt);
    m_draft.setTags(applied.tags);
    m_draft.setCustom(applied.custom);
    if (!applied.listID || selectCached(*applied.listID)) {
        co_return;
    }
    std::optional<QString> workspaceID;
    if (settings.lastLocation) {
        workspaceID = settings.lastLocation->workspaceID;
    } else if (!m_hierarchy.workspaces().isEmpty()) {
        workspaceID = m_hierarchy.workspaces().constFirst().id;
    }
    if (!workspaceID) {
        co_return;
    }
    QCoro::Task<bool> entriesLoad = awaitGuarded(LoadGuard(this), m_hierarchy.loadEntries(*workspaceID, false));
    if (co_await std::move(entriesLoad)) {
        selectCached(*applied.listID);
    }
}

bool TemplateActions::selectCached(const QString& listID) {
    const std::optional<ListEntry> entry = m_hierarchy.entry(listID);
    if (entry) {
        m_location.selectLocation(*entry);
    }
    return entry.has_value();
}

void TemplateActions::saveCurrentAsTemplate(const QString& name) {
    TaskTemplate saved;
    if (const ListContext* context = m_location.currentContext()) {
        TemplateList::pin(saved, context->entry());
    }
    saved.name = name;
    saved.taskName = m_draft.name();
    saved.descriptionMarkdown = m_draft.descriptionText();
    saved.status = m_draft.status();
    if (m_draft.priority()) {
        saved.priority = *m_draft.priority();
    }
    saved.tags = m_draft.tags();
    saved.custom = m_draft.custom();
    m_settings.modify([&saved](AppSettings& changed) { changed.templates.append(saved); });
}
