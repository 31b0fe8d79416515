#pragma once

#include "core/myday/TasksTabState.h"
#include "core/platform/LinkActions.h"
#include "core/settings/SettingsStore.h"
#include "desktop/myday/MyDayQmlTypes.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// What the Tasks tab shows and does: the header's refresh, the search, the three filter chips, the
// rows (sections and the subtask tree), the empty, loading and error states, and each row's
// actions. The filters are reset each time the tab appears, and a change of the refresh key fetches
// anew only while the tab is shown.
class MyDayViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(MyDayRowModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(Content content READ content NOTIFY contentChanged)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY contentChanged)
    Q_PROPERTY(QString loadingMessage READ loadingMessage NOTIFY contentChanged)
    // The last fetch's failure, or empty.
    Q_PROPERTY(QString error READ error NOTIFY contentChanged)
    // The last row action's failure, or empty.
    Q_PROPERTY(QString rowError READ rowError NOTIFY rowErrorChanged)
    Q_PROPERTY(QString emptyStateTitle READ emptyStateTitle NOTIFY filtersChanged)
    Q_PROPERTY(QString noMatchTitle READ noMatchTitle NOTIFY searchTextChanged)
    // The filter chips: the chosen entry's text, and the entries of each menu with the chosen one's
    // position.
    Q_PROPERTY(QString statusChipText READ statusChipText NOTIFY filtersChanged)
    Q_PROPERTY(QList<QString> statusChoices READ statusChoices NOTIFY filtersChanged)
    Q_PROPERTY(int statusIndex READ statusIndex NOTIFY filtersChanged)
    Q_PROPERTY(QString assigneeChipText READ assigneeChipText NOTIFY filtersChanged)
    Q_PROPERTY(QList<QString> assigneeChoices READ assigneeChoices NOTIFY filtersChanged)
    Q_PROPERTY(int assigneeIndex READ assigneeIndex NOTIFY filtersChanged)
    Q_PROPERTY(QString listChipText READ listChipText NOTIFY filtersChanged)
    Q_PROPERTY(QList<QString> listChoices READ listChoices NOTIFY filtersChanged)
    Q_PROPERTY(int listIndex READ listIndex NOTIFY filtersChanged)
    // The ids of the tasks whose row runs an action; their actions are off meanwhile.
    Q_PROPERTY(QList<QString> workingTaskIDs READ workingTaskIDs NOTIFY workingChanged)
    // The titles of the "Remind me" and "Move due date…" menus.
    Q_PROPERTY(QString remindMeTitle READ remindMeTitle CONSTANT)
    Q_PROPERTY(QString moveDueDateTitle READ moveDueDateTitle CONSTANT)

public:
    // What stands below the filters.
    enum Content { Rows, Loading, Failed, Empty, NoMatch };
    Q_ENUM(Content)
    // The entries of a row's "Remind me" menu, in its order.
    enum class Reminder { In30Minutes, In1Hour, In3Hours, TomorrowMorning };
    Q_ENUM(Reminder)
    // The entries of a row's "Move due date…" menu, in its order.
    enum class DueDateMove { PlusOneHour, ThisEvening, Tomorrow9AM, NextMonday };
    Q_ENUM(DueDateMove)

    // `context` is the rest of the program as the tab needs it (myDayContext); the owner tells
    // state() when the account, the workspace or the current list may have changed (followAppState).
    MyDayViewModel(MyDayStore& store, TasksTabContext context, LinkActions& links, const SettingsStore& settings,
                   QObject* parent = nullptr);

    TasksTabState& state() { return m_state; }
    MyDayRowModel* rows() { return &m_rows; }
    MyDayRowModel& rowModel() { return m_rows; }

    const QString& searchText() const { return m_state.searchText(); }
    void setSearchText(const QString& text) { m_state.setSearchText(text); }
    Content content() const;
    bool isLoading() const { return m_state.store().isLoading(); }
    QString loadingMessage() const { return m_state.store().loadingMessage(); }
    QString error() const { return m_state.store().error().value_or(QString()); }
    QString rowError() const { return m_state.rowError().value_or(QString()); }
    QString emptyStateTitle() const;
    QString noMatchTitle() const;
    QString statusChipText() const;
    QStringList statusChoices() const;
    int statusIndex() const;
    QString assigneeChipText() const;
    QStringList assigneeChoices() const;
    int assigneeIndex() const;
    QString listChipText() const;
    QStringList listChoices() const;
    int listIndex() const;
    QStringList workingTaskIDs() const;
    static QString remindMeTitle();
    static QString moveDueDateTitle();

    // The tab appeared: the filters start afresh and the tasks are fetched. While it is shown, a
    // change of the refresh key fetches again.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void disappear() { m_shown = false; }
    // "Refresh tasks" and "Try again".
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void clearSearch() { m_state.setSearchText(QString()); }
    // An entry of a chip's menu, by its position among the choices.
    Q_INVOKABLE void chooseStatus(int index);
    Q_INVOKABLE void chooseAssignee(int index);
    Q_INVOKABLE void chooseList(int index);

    // Whether the row is a section's title (or out of range), and the nearest task row from `row`
    // (exclusive) in the direction `step` (+1 or -1), or -1: the keyboard skips the titles.
    Q_INVOKABLE bool isSection(int row) const;
    Q_INVOKABLE int nextTaskRow(int row, int step) const;

    // The line under a task's name: its due date as the locale writes it, its list and its status,
    // those that it has.
    Q_INVOKABLE QString rowDetails(const QString& dueDate, const QString& listName, const QString& status) const;
    // Asks for the statuses of the task's list, once the row shows; they come as the row's
    // listStatuses.
    Q_INVOKABLE void loadStatuses(const QString& taskID);

    // The text of a menu entry: "In 30 minutes", …; "+1 hour", ….
    Q_INVOKABLE static QString reminderLabel(MyDayViewModel::Reminder reminder);
    Q_INVOKABLE static QString dueDateMoveLabel(MyDayViewModel::DueDateMove move);

    Q_INVOKABLE void complete(const QString& taskID);
    Q_INVOKABLE void moveDueDate(const QString& taskID, MyDayViewModel::DueDateMove move);
    Q_INVOKABLE void updateStatus(const QString& taskID, const QString& status);
    Q_INVOKABLE void remind(const QString& taskID, MyDayViewModel::Reminder reminder);
    Q_INVOKABLE void copyLink(const QString& taskID);
    Q_INVOKABLE void copyBranchName(const QString& taskID);
    Q_INVOKABLE void openInNorvane(const QString& taskID);

signals:
    void searchTextChanged();
    void contentChanged();
    void rowErrorChanged();
    void filtersChanged();
    void workingChanged();

private:
    // The task of a shown row, or null.
    const NVTaskSummary* task(const QString& taskID) const;
    QString browserURL(const NVTaskSummary& task) const;

    TasksTabState m_state;
    const TasksTabContext m_context;
    LinkActions& m_links;
    const SettingsStore& m_settings;
    MyDayRowModel m_rows;
    bool m_shown = false;
};
