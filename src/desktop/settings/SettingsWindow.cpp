#include "desktop/settings/SettingsWindow.h"

#include "desktop/shell/PopoverWindow.h"

SettingsWindow::SettingsWindow(AppState& app, LoginItem& loginItem, HotKeyManager& hotKeys, QObject* parent)
    : QObject(parent)
    , m_accounts(app.auth(), app.settings(), app.serviceAddresses())
    , m_fields(app.settings(), app.location(), app.serviceAddresses(), app.linkActions())
    , m_templates(app.settings(), app.location(), app.serviceAddresses().webBaseURL)
    , m_general(app, loginItem)
    , m_shortcuts(app.settings(), hotKeys)
    , m_recording(app.settings())
    , m_quickLinks(app.settings(), app.serviceAddresses())
    , m_storage(app) {}

QQuickView& SettingsWindow::view() {
    prepare();
    return *m_view;
}

void SettingsWindow::setCurrentTab(int tab) {
    if (tab < int(SettingsTab::account) || tab > int(SettingsTab::attachments) || tab == int(m_currentTab)) {
        return;
    }
    m_currentTab = SettingsTab(tab);
    emit currentTabChanged();
    if (m_currentTab == SettingsTab::attachments && m_view && m_view->isVisible()) {
        m_storage.appeared();
    }
}

void SettingsWindow::showTab(SettingsTab tab) {
    setCurrentTab(int(tab));
    showSettings();
}

void SettingsWindow::showSettings() {
    prepare();
    if (m_view->windowStates() & Qt::WindowMinimized) {
        m_view->setWindowStates(m_view->windowStates() & ~Qt::WindowMinimized);
    }
    m_view->show();
    m_view->raise();
    m_view->requestActivate();
    if (m_currentTab == SettingsTab::attachments) {
        m_storage.appeared();
    }
}

void SettingsWindow::prepare() {
    if (m_view) {
        return;
    }
    m_view = std::make_unique<QQuickView>();
    m_view->setTitle(tr("NorvaneBar Settings"));
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->setMinimumSize(QSize(480, 420));
    // Tall enough for the longest page, Cloudflare R2's, down to the result of its test.
    m_view->resize(600, 640);
    PopoverWindow::configureEngine(*m_view->engine());
    m_view->setInitialProperties({{QStringLiteral("settingsWindow"), QVariant::fromValue(this)},
                                  {QStringLiteral("accounts"), QVariant::fromValue(&m_accounts)},
                                  {QStringLiteral("fields"), QVariant::fromValue(&m_fields)},
                                  {QStringLiteral("templates"), QVariant::fromValue(&m_templates)},
                                  {QStringLiteral("general"), QVariant::fromValue(&m_general)},
                                  {QStringLiteral("shortcuts"), QVariant::fromValue(&m_shortcuts)},
                                  {QStringLiteral("recording"), QVariant::fromValue(&m_recording)},
                                  {QStringLiteral("quickLinks"), QVariant::fromValue(&m_quickLinks)},
                                  {QStringLiteral("storage"), QVariant::fromValue(&m_storage)}});
    m_view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/NorvaneBar/settings/qml/SettingsView.qml")));
    PopoverWindow::takeApplicationPalette(*m_view);
}
