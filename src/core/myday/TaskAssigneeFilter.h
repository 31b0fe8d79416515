#pragma once

#include <QString>
#include <variant>

// Whose tasks the Tasks tab shows.
struct TaskAssigneeFilter {
    // One person, by user id, with the name shown for them.
    struct Person {
        qint64 id = 0;
        QString name;
        bool operator==(const Person&) const = default;
    };
    // The signed-in user.
    struct Mine {
        bool operator==(const Mine&) const = default;
    };
    struct Anyone {
        bool operator==(const Anyone&) const = default;
    };
    // Only tasks nobody is assigned to; the service can't be asked for them.
    struct Unassigned {
        bool operator==(const Unassigned&) const = default;
    };

    std::variant<Person, Mine, Anyone, Unassigned> value = Mine{};

    template <typename T> bool is() const { return std::holds_alternative<T>(value); }
    // "mine", "anyone", "unassigned", or "person:" and the id.
    QString keyPart() const;

    bool operator==(const TaskAssigneeFilter&) const = default;
};

// Which lists the Tasks tab fetches from: all of the workspace, or the composer's current list.
enum class TaskListFilter { all, current };
