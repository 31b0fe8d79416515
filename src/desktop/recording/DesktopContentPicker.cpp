#include "desktop/recording/DesktopContentPicker.h"

#include "platform/linux/ScreenCastPortal.h"
#include "platform/linux/X11Connection.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStandardPaths>

namespace {
// Whether the desktop's portals offer screen casts: a portal may run without them.
bool screenCastPortalAnswers() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QStringLiteral("org.freedesktop.portal.ScreenCast") << QStringLiteral("version");
    constexpr int timeoutMs = 2000;
    return QDBusConnection::sessionBus().call(question, QDBus::Block, timeoutMs).type() == QDBusMessage::ReplyMessage;
}

QString restoreTokenPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/NorvaneBar/screencast-restore-token");
}

// The portal's chooser where the portal casts screens, else ours on X11; asked which at the first
// use, when a person is about to record, so that starting the program asks the bus nothing.
class DesktopContentPicker : public ScreenContentPicker {
public:
    explicit DesktopContentPicker(X11PickerMaker makeX11Picker)
        : m_makeX11Picker(std::move(makeX11Picker)) {}

    void addObserver(ScreenContentPickerObserver* observer) override { chosen().addObserver(observer); }
    void removeObserver(ScreenContentPickerObserver* observer) override { chosen().removeObserver(observer); }
    bool isActive() const override { return chosen().isActive(); }
    void setActive(bool active) override { chosen().setActive(active); }
    void present(bool showsCursor) override { chosen().present(showsCursor); }
    bool remembersChoice() const override { return chosen().remembersChoice(); }
    void forgetChoice() override { chosen().forgetChoice(); }

private:
    ScreenContentPicker& chosen() const {
        if (!m_chosen) {
            if (x11Connection() && !screenCastPortalAnswers()) {
                m_chosen = m_makeX11Picker();
            } else {
                m_chosen = std::make_unique<ScreenCastPortal>(restoreTokenPath());
            }
        }
        return *m_chosen;
    }

    X11PickerMaker m_makeX11Picker;
    mutable std::unique_ptr<ScreenContentPicker> m_chosen;
};
} // namespace

std::unique_ptr<ScreenContentPicker> desktopContentPicker(X11PickerMaker makeX11Picker) {
    return std::make_unique<DesktopContentPicker>(std::move(makeX11Picker));
}
