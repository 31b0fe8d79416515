#include "shell/PopoverPages.h"

PopoverPages::PopoverPages(AppState& app, QClipboard& clipboard)
    : m_auth(app.auth())
    , m_onboarding(app.auth(), app.serviceAddresses())
    , m_location(app.location(), app.auth())
    , m_attachments(app.draft())
    , m_composer(app.draft(), app.submit())
    , m_submit(app.submit(), app.auth(), app.settings(), app.linkActions())
    , m_attachmentInput(m_window, m_attachments, clipboard) {
    m_window.setInitialProperties({{QStringLiteral("auth"), QVariant::fromValue(&m_auth)},
                                   {QStringLiteral("onboarding"), QVariant::fromValue(&m_onboarding)},
                                   {QStringLiteral("location"), QVariant::fromValue(&m_location)},
                                   {QStringLiteral("attachments"), QVariant::fromValue(&m_attachments)},
                                   {QStringLiteral("composer"), QVariant::fromValue(&m_composer)},
                                   {QStringLiteral("submit"), QVariant::fromValue(&m_submit)}});
}
