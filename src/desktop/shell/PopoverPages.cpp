#include "desktop/shell/PopoverPages.h"

#include "core/app/MyDayContext.h"

PopoverPages::PopoverPages(AppState& app, QClipboard& clipboard)
    : m_auth(app.auth())
    , m_onboarding(app.auth(), app.serviceAddresses())
    , m_accounts(app.auth(), app.settings(), app.serviceAddresses())
    , m_location(app.settings(), app.location(), app.serviceAddresses().webBaseURL)
    , m_attachments(app.draft())
    , m_fieldChips(app)
    , m_composer(app.draft(), app.submit(), m_fieldChips)
    , m_templates(app)
    , m_submit(app.submit(), app.auth(), app.settings(), app.linkActions())
    , m_settingsLauncher(app)
    , m_tabs(app)
    , m_myDay(app.myDay(), myDayContext(app), app.linkActions(), app.settings())
    , m_recording(app.screenRecording(), app.recordingCoordinator().picker(), app.settings())
    , m_attachmentInput(m_window, m_attachments, clipboard) {
    m_window.setInitialProperties({{QStringLiteral("auth"), QVariant::fromValue(&m_auth)},
                                   {QStringLiteral("onboarding"), QVariant::fromValue(&m_onboarding)},
                                   {QStringLiteral("accounts"), QVariant::fromValue(&m_accounts)},
                                   {QStringLiteral("location"), QVariant::fromValue(&m_location)},
                                   {QStringLiteral("attachments"), QVariant::fromValue(&m_attachments)},
                                   {QStringLiteral("composer"), QVariant::fromValue(&m_composer)},
                                   {QStringLiteral("templates"), QVariant::fromValue(&m_templates)},
                                   {QStringLiteral("exporter"), QVariant::fromValue(&m_exporter)},
                                   {QStringLiteral("submit"), QVariant::fromValue(&m_submit)},
                                   {QStringLiteral("settingsLauncher"), QVariant::fromValue(&m_settingsLauncher)},
                                   {QStringLiteral("tabs"), QVariant::fromValue(&m_tabs)},
                                   {QStringLiteral("myDay"), QVariant::fromValue(&m_myDay)},
                                   {QStringLiteral("recording"), QVariant::fromValue(&m_recording)}});
    // Connected before anyone outside, so the popover is gone when the settings window comes up.
    QObject::connect(&m_accounts, &AccountsViewModel::openSettingsRequested, &m_window, &QWindow::hide);
    QObject::connect(&m_accounts, &AccountsViewModel::openSettingsRequested, &m_window,
                     [this] { m_settingsLauncher.openOn(SettingsTab::account); });
    followAppState(app, m_myDay.state());
}
