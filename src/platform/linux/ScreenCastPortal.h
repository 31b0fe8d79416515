#pragma once

#include "core/platform/ScreenContentPicker.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>
#include <optional>
#include <qcoro/qcorotask.h>

// The ScreenCast portal of xdg-desktop-portal as the content picker: the desktop's own chooser of a
// screen or window, whose PipeWire stream the recording reads. The portal's session and PipeWire
// connection live while the picker is active. The chosen source is remembered (the portal's restore
// token, kept in a file), so the next recording offers it without asking, until forgetChoice().
class ScreenCastPortal : public QObject, public ScreenContentPicker {
    Q_OBJECT

public:
    // The restore token is kept at `restoreTokenPath`.
    explicit ScreenCastPortal(QString restoreTokenPath, QDBusConnection bus = QDBusConnection::sessionBus(),
                              QObject* parent = nullptr);
    ~ScreenCastPortal() override;

    void addObserver(ScreenContentPickerObserver* observer) override;
    void removeObserver(ScreenContentPickerObserver* observer) override;
    bool isActive() const override { return m_active; }
    void setActive(bool active) override;
    void present(bool showsCursor) override;

    // Whether a screen was remembered.
    bool remembersChoice() const override;
    // The next recording asks the person again which screen or window to share.
    void forgetChoice() override;

private:
    QCoro::Task<> choose(bool showsCursor);
    // The results of a request of the portal that succeeded. Otherwise none, and the observers
    // have been told how it ended.
    QCoro::Task<std::optional<QVariantMap>> ask(QString method, QVariantList arguments, QVariantMap options);
    // The source types or cursor modes the portal offers, as its bit mask; none when it doesn't say.
    QCoro::Task<std::optional<uint>> available(QString property);
    QVariantMap sourceOptions(bool showsCursor, std::optional<uint> types, std::optional<uint> cursorModes) const;
    QCoro::Task<int> openPipeWireRemote();
    void closeSession();
    // Tells the observers of the end of a request that didn't succeed.
    void tellEnd(const std::optional<uint>& code);
    void tellFailure(const QString& description);

    QString m_restoreTokenPath;
    QDBusConnection m_bus;
    QList<ScreenContentPickerObserver*> m_observers;
    bool m_active = false;
    bool m_choosing = false;
    // The portal's session of the last choice, and this program's connection to its PipeWire.
    QString m_session;
    int m_remote = -1;
};
