#pragma once

#include "core/compose/TaskDraft.h"
#include "core/compose/TemplateActions.h"
#include "core/recording/ScreenshotCapture.h"
#include "core/settings/SettingsStore.h"

#include <QObject>
#include <functional>
#include <qcoro/qcorotask.h>

// A screenshot as a new task: the region the user marks becomes the only attachment of a fresh
// draft, filled from the screenshot's template when the settings name one. Main thread only.
class ScreenshotFlow : public QObject {
    Q_OBJECT

public:
    // Everything given must outlive this object; `showComposeTab` puts the popover on its Create tab.
    ScreenshotFlow(ScreenshotCapture& capture, SettingsStore& settings, TemplateActions& templates, TaskDraft& draft,
                   std::function<void()> showComposeTab, QObject* parent = nullptr);

    // Captures a region; when there is a picture, starts a new draft with it as the only
    // attachment, applies the screenshot's template and turns to the Create tab. Whether the
    // popover is to be shown: without a picture (the selection cancelled, no tool, a file that isn't
    // an image) draft and tab stay as they were. The captured file is removed on every path.
    QCoro::Task<bool> startScreenshotCapture();

private:
    ScreenshotCapture& m_capture;
    SettingsStore& m_settings;
    TemplateActions& m_templates;
    TaskDraft& m_draft;
    std::function<void()> m_showComposeTab;
};
