#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <cstdint>

// The freedesktop XEmbed system tray of the X screen: whether one runs now, and word when one
// starts later (a tray announces itself with a MANAGER message on the root window). Off X11
// there is never one.
class XEmbedTray : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit XEmbedTray(QObject* parent = nullptr);
    ~XEmbedTray() override;

    bool isRunning() const;
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

signals:
    void started();

private:
    uint32_t m_selectionAtom = 0;
    uint32_t m_managerAtom = 0;
};
