#pragma once

#include "core/app/AppState.h"
#include "desktop/auth/AccountsViewModel.h"
#include "desktop/auth/AuthViewModel.h"
#include "desktop/auth/OnboardingModel.h"
#include "desktop/compose/AttachmentExporterViewModel.h"
#include "desktop/compose/AttachmentInput.h"
#include "desktop/compose/AttachmentListModel.h"
#include "desktop/compose/ComposerViewModel.h"
#include "desktop/compose/TemplateMenuViewModel.h"
#include "desktop/hierarchy/LocationPickerViewModel.h"
#include "desktop/myday/MyDayViewModel.h"
#include "desktop/recording/ScreenRecordingSetupViewModel.h"
#include "desktop/settings/SettingsLauncher.h"
#include "desktop/shell/PopoverWindow.h"
#include "desktop/shell/TabPickerViewModel.h"
#include "desktop/submit/SubmitViewModel.h"

class QClipboard;

// The popover window and the view models of its pages, wired the one way the app and the UI tests
// share: each page gets its models as required properties, files pasted into or dropped on the
// window join the draft, and "Add Account…" closes the popover before the settings open.
class PopoverPages {
public:
    PopoverPages(AppState& app, QClipboard& clipboard);
    Q_DISABLE_COPY_MOVE(PopoverPages)

    PopoverWindow& window() { return m_window; }
    const PopoverWindow& window() const { return m_window; }
    AuthViewModel& auth() { return m_auth; }
    OnboardingModel& onboarding() { return m_onboarding; }
    AccountsViewModel& accounts() { return m_accounts; }
    LocationPickerViewModel& location() { return m_location; }
    AttachmentListModel& attachments() { return m_attachments; }
    FieldChipsViewModel& fieldChips() { return m_fieldChips; }
    ComposerViewModel& composer() { return m_composer; }
    TemplateMenuViewModel& templates() { return m_templates; }
    AttachmentExporterViewModel& exporter() { return m_exporter; }
    SubmitViewModel& submit() { return m_submit; }
    SettingsLauncher& settingsLauncher() { return m_settingsLauncher; }
    TabPickerViewModel& tabs() { return m_tabs; }
    MyDayViewModel& myDay() { return m_myDay; }
    ScreenRecordingSetupViewModel& recording() { return m_recording; }

private:
    AuthViewModel m_auth;
    OnboardingModel m_onboarding;
    AccountsViewModel m_accounts;
    LocationPickerViewModel m_location;
    AttachmentListModel m_attachments;
    FieldChipsViewModel m_fieldChips;
    ComposerViewModel m_composer;
    TemplateMenuViewModel m_templates;
    AttachmentExporterViewModel m_exporter;
    SubmitViewModel m_submit;
    SettingsLauncher m_settingsLauncher;
    TabPickerViewModel m_tabs;
    MyDayViewModel m_myDay;
    ScreenRecordingSetupViewModel m_recording;
    // After the models, so that the pages are gone before the models they show.
    PopoverWindow m_window;
    AttachmentInput m_attachmentInput;
};
