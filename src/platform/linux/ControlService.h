#pragma once

#include <QObject>

// NorvaneBar's interface on the session bus, so that any desktop can bind a shortcut to it:
//   gdbus call --session --dest com.norvanebar.NorvaneBar \
//       --object-path /com/norvanebar/NorvaneBar --method com.norvanebar.NorvaneBar.TogglePopover
class ControlService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.norvanebar.NorvaneBar")
    Q_PROPERTY(bool PopoverVisible READ popoverVisible NOTIFY PopoverVisibilityChanged SCRIPTABLE true)

public:
    static inline const QString serviceName = QStringLiteral("com.norvanebar.NorvaneBar");
    static inline const QString objectPath = QStringLiteral("/com/norvanebar/NorvaneBar");

    explicit ControlService(QObject* parent = nullptr);

    // Publishes the object and claims the name; false when the session bus is missing or the name
    // is taken, in which case NorvaneBar goes on without it.
    bool publish();
    bool popoverVisible() const { return m_popoverVisible; }
    // Told once the popover's first frame is on screen, and again when it hides.
    void setPopoverVisible(bool visible);

public slots:
    Q_SCRIPTABLE void TogglePopover();

signals:
    Q_SCRIPTABLE void PopoverVisibilityChanged(bool visible);
    void toggleRequested();

private:
    bool m_popoverVisible = false;
};
