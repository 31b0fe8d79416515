#include "core/shell/ScreenshotFlow.h"

#include "core/async/LoadGuard.h"
#include "core/compose/AttachmentStaging.h"
#include "core/compose/TemplateList.h"

#include <QFile>
#include <QImage>
#include <QScopeGuard>

ScreenshotFlow::ScreenshotFlow(ScreenshotCapture& capture, SettingsStore& settings, TemplateActions& templates,
                               TaskDraft& draft, std::function<void()> showComposeTab, QObject* parent)
    : QObject(parent)
    , m_capture(capture)
    , m_settings(settings)
    , m_templates(templates)
    , m_draft(draft)
    , m_showComposeTab(std::move(showComposeTab)) {}

QCoro::Task<bool> ScreenshotFlow::startScreenshotCapture() {
    const LoadGuard guard(this);
    QCoro::Task<std::optional<QUrl>> capturing = m_capture.capture();
    const std::optional<QUrl> shot = co_await std::move(capturing);
    const auto removeShot = qScopeGuard([&shot] {
        if (shot) {
            QFile::remove(shot->toLocalFile());
        }
    });
    if (!shot || !guard.holds()) {
        co_return false;
    }
    const std::optional<StagedAttachment> staged = AttachmentStaging::stage(QImage(shot->toLocalFile()), std::nullopt);
    if (!staged) {
        co_return false;
    }
    m_draft.reset(m_settings.settings().defaultReminderLeadMinutes);
    m_draft.setAttachments({*staged});
    if (const std::optional<TaskTemplate> applied =
            TemplateList::find(m_settings.settings(), m_settings.settings().screenshotTemplateID)) {
        QCoro::Task<bool> applying = awaitGuarded(guard, m_templates.applyTemplate(*applied));
        if (!co_await std::move(applying)) {
            co_return false;
        }
        m_draft.setAttachments({*staged});
    }
    m_showComposeTab();
    co_return true;
}
