#pragma once

#include "auth/AuthController.h"
#include "hierarchy/LocationMemory.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// A plain chooser of the list new tasks go to, among the lists of the active workspace; the full
// location picker takes its place later.
class LocationViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    // "Space › Folder › List" for each list, in the tree's order.
    Q_PROPERTY(QStringList entryTitles READ entryTitles NOTIFY changed)
    // The position of the chosen list among them, or -1.
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY changed)
    // The chosen list's name, or the prompt to choose one.
    Q_PROPERTY(QString locationTitle READ locationTitle NOTIFY changed)

public:
    // The lists are asked for only while `auth` is signed in.
    LocationViewModel(LocationMemory& location, const AuthController& auth, QObject* parent = nullptr);

    QStringList entryTitles() const;
    int currentIndex() const;
    QString locationTitle() const;

    Q_INVOKABLE void select(int index);
    // Asks for the lists of the active workspace when the person turns to the chooser. Not at
    // sign-in: restoring the last location loads them then, and a second load would be dropped.
    Q_INVOKABLE void loadEntries();

signals:
    void changed();

private:
    QList<ListEntry> entries() const;

    LocationMemory& m_location;
    const AuthController& m_auth;
};
