#pragma once

#include "core/hierarchy/LocationPickerModel.h"
#include "desktop/hierarchy/HierarchyQmlTypes.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>
#include <functional>

// The location selector and the picker it opens: the title of the chosen list, and the picker's
// search, workspace, rows with their stars, and what stands in their place. A choice goes to the
// composer's list, or to the owner's `onSelect` when one is given (a template pins its own list).
class LocationPickerViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    // The chosen list's name, or the prompt to choose one.
    Q_PROPERTY(QString locationTitle READ locationTitle NOTIFY selectedListIDChanged)
    // The list marked with a check mark; empty for none.
    Q_PROPERTY(QString selectedListID READ selectedListID WRITE setSelectedListID NOTIFY selectedListIDChanged)
    Q_PROPERTY(LocationRowModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(QStringList workspaceNames READ workspaceNames NOTIFY workspacesChanged)
    // The shown workspace's position among them, or -1.
    Q_PROPERTY(int workspaceIndex READ workspaceIndex NOTIFY workspacesChanged)
    Q_PROPERTY(Content content READ content NOTIFY contentChanged)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY contentChanged)
    // The last load's failure, or empty.
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY contentChanged)
    Q_PROPERTY(QString noMatchTitle READ noMatchTitle NOTIFY contentChanged)
    // The ids of the shown lists that are bookmarked.
    Q_PROPERTY(QList<QString> bookmarkedListIDs READ bookmarkedListIDs NOTIFY bookmarksChanged)

public:
    // What stands below the header.
    enum Content { Rows, Loading, Failed, NoMatch, Empty };
    Q_ENUM(Content)

    using OnSelect = std::function<void(const ListEntry&)>;

    // The stores must outlive this object. Without `onSelect` a choice becomes the composer's list,
    // and the check mark follows it; with it, the owner sets selectedListID.
    LocationPickerViewModel(SettingsStore& settings, LocationMemory& location, const QUrl& webBaseURL,
                            OnSelect onSelect = {}, QObject* parent = nullptr);

    LocationPickerModel& model() { return m_model; }
    LocationRowModel& rowModel() { return m_rows; }

    QString locationTitle() const;
    QString selectedListID() const;
    void setSelectedListID(const QString& listID);
    LocationRowModel* rows() { return &m_rows; }
    const QString& searchText() const { return m_model.searchText(); }
    void setSearchText(const QString& text) { m_model.setSearchText(text); }
    QStringList workspaceNames() const;
    int workspaceIndex() const;
    Content content() const;
    bool isLoading() const { return m_model.isLoading(); }
    QString errorMessage() const;
    QString noMatchTitle() const;
    QStringList bookmarkedListIDs() const;

    Q_INVOKABLE void appear() { m_model.appear(); }
    Q_INVOKABLE void disappear() { m_model.disappear(); }
    Q_INVOKABLE void chooseWorkspace(int index);
    // The header's refresh button, and "Try again" after a failed load.
    Q_INVOKABLE void refresh();
    // The list of a row: handed on, then the picker closes.
    Q_INVOKABLE void choose(int row);
    Q_INVOKABLE void toggleBookmark(int row);
    // The row of a list, or -1.
    Q_INVOKABLE int rowOf(const QString& listID) const;

signals:
    void selectedListIDChanged();
    void searchTextChanged();
    void workspacesChanged();
    void contentChanged();
    void bookmarksChanged();
    // A list was chosen; the picker closes.
    void chosen();

private:
    const ListEntry* entryAt(int row) const;

    LocationMemory& m_location;
    LocationPickerModel m_model;
    LocationRowModel m_rows;
    const OnSelect m_onSelect;
    QString m_selectedListID;
};
