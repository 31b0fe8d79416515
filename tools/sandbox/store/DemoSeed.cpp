#include "sandbox/store/DemoSeed.h"

#include <QJsonArray>
#include <QRandomGenerator>
#include <QUuid>

#include <array>

namespace DemoSeed {
namespace {

constexpr qint64 chidiID = 4810003;
constexpr qint64 danaID = 4810004;
constexpr qint64 anonymousID = 4810005;
constexpr qint64 eveID = 4810006;

// What a hostile name's picture points at: the sandbox itself, so that a client that fetched it
// would show in the request log.
QString pixel(const QString& webBase, const char* name) {
    return QStringLiteral("%1/hostile/%2.png").arg(webBase, QLatin1String(name));
}

QJsonObject status(const char* name, const char* color, const char* type) {
    QJsonObject object{{QStringLiteral("status"), QLatin1String(name)},
                       {QStringLiteral("color"), QLatin1String(color)}};
    if (type) {
        object.insert(QStringLiteral("type"), QLatin1String(type));
    }
    return object;
}

QJsonArray productStatuses() {
    return {status("to do", "#d3d3d3", "open"), status("in progress", "#4194f6", "custom"),
            status("review", "#a875ff", "custom"), status("complete", "#6bc950", "closed")};
}

QJsonArray releaseStatuses() {
    return {status("open", "#d3d3d3", "open"), status("testing", "#f9d900", "custom"),
            status("shipped", "#2ecd6f", "closed")};
}

QJsonArray supportStatuses() {
    return {status("new", "#87909e", "open"), status("waiting on customer", "#ff7800", "custom"),
            status("solved", "#008844", "closed")};
}

// Statuses without types: the list closes with its last status.
QJsonArray facilitiesStatuses() {
    return {status("requested", "#d3d3d3", nullptr), status("ordered", "#4194f6", nullptr),
            status("delivered", "#6bc950", nullptr)};
}

// No status of type "closed", and a last one whose type is none of the others': the list closes
// with its last status all the same.
QJsonArray loanStatuses() {
    return {status("requested", "#d3d3d3", "open"), status("lent out", "#4194f6", "custom"),
            status("returned", "#6bc950", "done")};
}

QJsonArray researchStatuses() {
    return {status("open", "#d3d3d3", "open"), status("active", "#e16b16", "custom"),
            status("done", "#6bc950", "closed")};
}

QJsonObject tag(const char* name, const char* foreground, const char* background) {
    return {{QStringLiteral("name"), QLatin1String(name)},
            {QStringLiteral("tag_fg"), QLatin1String(foreground)},
            {QStringLiteral("tag_bg"), QLatin1String(background)}};
}

QString stableID(const QString& name) {
    static const QUuid demoNamespace(QStringLiteral("{6f1c2a4e-3b7d-4e59-9a0c-5d8e7f1b2c3a}"));
    return QUuid::createUuidV5(demoNamespace, name).toString(QUuid::WithoutBraces);
}

QJsonObject option(const QString& fieldID, const char* key, const char* text, const char* color, int index) {
    return {{QStringLiteral("id"), stableID(fieldID + QLatin1String(text))},
            {QLatin1String(key), QLatin1String(text)},
            {QStringLiteral("color"), QLatin1String(color)},
            {QStringLiteral("orderindex"), index}};
}

QJsonObject field(const QString& listID, const char* name, const char* type, QJsonObject typeConfig = {}) {
    return {{QStringLiteral("id"), stableID(listID + QLatin1String(name))},
            {QStringLiteral("name"), QLatin1String(name)},
            {QStringLiteral("type"), QLatin1String(type)},
            {QStringLiteral("type_config"), typeConfig},
            {QStringLiteral("date_created"), QStringLiteral("1700000000000")},
            {QStringLiteral("hide_from_guests"), false},
            {QStringLiteral("required"), false}};
}

// One field of each of the ten types the client edits, with options where the type has them, and
// a formula, which the client leaves alone.
QJsonArray allFieldTypes(const QString& listID) {
    const QString severityID = stableID(listID + QLatin1String("Severity"));
    const QString componentsID = stableID(listID + QLatin1String("Components"));
    QJsonObject severity =
        field(listID, "Severity", "drop_down",
              {{QStringLiteral("default"), 0},
               {QStringLiteral("options"), QJsonArray{option(severityID, "name", "Low", "#6bc950", 0),
                                                      option(severityID, "name", "Medium", "#f9d900", 1),
                                                      option(severityID, "name", "High", "#ff7800", 2),
                                                      option(severityID, "name", "Critical", "#e50000", 3)}}});
    severity.insert(QStringLiteral("required"), true);
    return {field(listID, "Customer", "text"),
            field(listID, "Short note", "short_text"),
            field(listID, "Estimate (h)", "number"),
            severity,
            field(listID, "Components", "labels",
                  {{QStringLiteral("options"), QJsonArray{option(componentsID, "label", "Frontend", "#4194f6", 0),
                                                          option(componentsID, "label", "Backend", "#a875ff", 1),
                                                          option(componentsID, "label", "Docs", "#2ecd6f", 2)}}}),
            field(listID, "Target date", "date"),
            field(listID, "Customer facing", "checkbox"),
            field(listID, "Design link", "url"),
            field(listID, "Contact email", "email"),
            field(listID, "Contact phone", "phone"),
            field(listID, "Health score", "formula", {{QStringLiteral("formula"), QStringLiteral("1+1")}})};
}

QJsonObject list(const char* id, const char* name, QJsonObject extra = {}) {
    extra.insert(QStringLiteral("id"), QLatin1String(id));
    extra.insert(QStringLiteral("name"), QString::fromUtf8(name));
    extra.insert(QStringLiteral("tasks"), QJsonArray());
    return extra;
}

QString hostileUserName(const QString& webBase) {
    return QStringLiteral("<i>Mia</i> & \"Mo\" <img src=\"%1\"> Ødegård").arg(pixel(webBase, "user"));
}

QJsonArray users(const QString& webBase) {
    const auto user = [](qint64 id, QJsonObject fields) {
        fields.insert(QStringLiteral("id"), id);
        return fields;
    };
    return {user(firstUserID, {{QStringLiteral("username"), QStringLiteral("Ada Okafor")},
                               {QStringLiteral("email"), QStringLiteral("ada@northwind.example")},
                               {QStringLiteral("color"), QStringLiteral("#7b68ee")},
                               {QStringLiteral("initials"), QStringLiteral("AO")},
                               {QStringLiteral("token"), QStringLiteral("pk_demo_ada_3F7Q9XK2LM")}}),
            user(secondUserID, {{QStringLiteral("username"), QStringLiteral("Ben Carter")},
                                {QStringLiteral("email"), QStringLiteral("ben@northwind.example")},
                                {QStringLiteral("color"), QStringLiteral("#f9d900")},
                                {QStringLiteral("initials"), QStringLiteral("BC")},
                                {QStringLiteral("token"), QStringLiteral("pk_demo_ben_8W2R5TJ6NP")}}),
            // An empty user name: the client shows it empty rather than the email.
            user(chidiID, {{QStringLiteral("username"), QString()},
                           {QStringLiteral("email"), QStringLiteral("chidi@northwind.example")},
                           {QStringLiteral("initials"), QStringLiteral("C")}}),
            user(danaID, {{QStringLiteral("email"), QStringLiteral("dana@fabrikam.example")},
                          {QStringLiteral("color"), QStringLiteral("#0ab4ff")}}),
            user(anonymousID, {}),
            user(eveID, {{QStringLiteral("username"), QStringLiteral("Eve Lindqvist")},
                         {QStringLiteral("initials"), QStringLiteral("EL")}}),
            // Signs in to a workspace of hostile names only, with a name that is markup itself.
            user(hostileNamesUserID, {{QStringLiteral("username"), hostileUserName(webBase)},
                                      {QStringLiteral("email"), QStringLiteral("mia@hostile.example")},
                                      {QStringLiteral("initials"), QStringLiteral("MØ")},
                                      {QStringLiteral("token"), QStringLiteral("pk_demo_mia_5T8H3V6ZQR")}})};
}

// Where the generated tasks go and how the generator finds their lists again.
struct ListSlot {
    QJsonObject* list;
    QJsonArray statuses;
    QStringList tags;
};

class TaskMaker {
public:
    // `seed` and `firstIndex` give a second generator its own sequence and ids.
    explicit TaskMaker(const QDateTime& now, quint32 seed = 20240611U, int firstIndex = 0)
        : m_now(now)
        , m_startOfToday(now.date().startOfDay())
        , m_random(seed)
        , m_count(firstIndex) {}

    enum class Due { Overdue, Today, Later, Undated };

    // Adds a task to the slot and returns its id.
    QString add(ListSlot& slot, std::vector<qint64> assignees, Due due, bool closed,
                const std::optional<QString>& parent = std::nullopt, const QString& customIDPrefix = {}) {
        const int index = m_count++;
        QString id = QStringLiteral("86a") + QString::number(0x2d0000 + index * 97, 36);
        QJsonObject task{
            {QStringLiteral("id"), id},
            {QStringLiteral("name"), name(index)},
            {QStringLiteral("description"), QStringLiteral("Demo task %1 of the sandbox.").arg(index + 1)},
            {QStringLiteral("creator"), assignees.empty() ? firstUserID : assignees.front()},
            {QStringLiteral("date_created"), m_now.addDays(-1 - m_random.bounded(120)).toMSecsSinceEpoch() - index}};
        if (!customIDPrefix.isEmpty()) {
            task.insert(QStringLiteral("custom_id"), QStringLiteral("%1-%2").arg(customIDPrefix).arg(101 + index));
        }
        task.insert(QStringLiteral("status"), pickStatus(slot.statuses, closed));
        if (const std::optional<qint64> dueMs = dueDate(due, task)) {
            task.insert(QStringLiteral("due_date"), *dueMs);
        }
        if (const int priority = static_cast<int>(m_random.bounded(5)); priority > 0) {
            task.insert(QStringLiteral("priority"), priority);
        }
        QJsonArray assigneeIDs;
        for (const qint64 assignee : assignees) {
            assigneeIDs.append(assignee);
        }
        task.insert(QStringLiteral("assignees"), assigneeIDs);
        QJsonArray tags;
        for (int count = static_cast<int>(m_random.bounded(3)); count > 0 && !slot.tags.isEmpty(); --count) {
            const QString tag = slot.tags.at(static_cast<qsizetype>(m_random.bounded(slot.tags.size())));
            if (!tags.contains(tag)) {
                tags.append(tag);
            }
        }
        task.insert(QStringLiteral("tags"), tags);
        if (parent) {
            task.insert(QStringLiteral("parent"), *parent);
        }
        QJsonArray tasks = slot.list->value(QStringLiteral("tasks")).toArray();
        tasks.append(task);
        slot.list->insert(QStringLiteral("tasks"), tasks);
        return id;
    }

    quint32 bounded(quint32 bound) { return m_random.bounded(bound); }

private:
    QString name(int index) {
        static const std::array<const char*, 12> verbs{"Fix",   "Review", "Draft",   "Update", "Test",  "Plan",
                                                       "Write", "Check",  "Prepare", "Ship",   "Clean", "Measure"};
        static const std::array<const char*, 17> objects{
            "the login redirect loop", "invoice export",       "onboarding emails",    "dark mode colours",
            "release notes",           "API rate limits",      "search ranking",       "CSV import",
            "billing page copy",       "the offline cache",    "crash on resume",      "Überprüfung der Rechnungen",
            "キャッシュの説明",        "the café menu photos", "the print stylesheet", "quarterly OKRs",
            "keyboard shortcuts"};
        return QStringLiteral("%1 %2").arg(
            QLatin1String(verbs[static_cast<size_t>(index) % verbs.size()]),
            QString::fromUtf8(objects[static_cast<size_t>(index * 5 + index / 17) % objects.size()]));
    }

    QString pickStatus(const QJsonArray& statuses, bool closed) {
        // Open tasks take any status but the closing one, which is the last in every demo list.
        if (closed) {
            return statuses.last().toObject().value(QStringLiteral("status")).toString();
        }
        const auto index = static_cast<qsizetype>(m_random.bounded(static_cast<quint32>(statuses.size() - 1)));
        return statuses.at(index).toObject().value(QStringLiteral("status")).toString();
    }

    std::optional<qint64> dueDate(Due due, QJsonObject& task) {
        const bool withTime = m_random.bounded(2) == 0;
        task.insert(QStringLiteral("due_date_time"), withTime);
        const auto at = [&](int dayOffset) {
            const QDateTime day = m_startOfToday.addDays(dayOffset);
            const int minutes = withTime ? 7 * 60 + static_cast<int>(m_random.bounded(14 * 60)) : 12 * 60;
            return day.addSecs(minutes * 60LL).toMSecsSinceEpoch();
        };
        switch (due) {
        case Due::Overdue:
            return at(-1 - static_cast<int>(m_random.bounded(40)));
        case Due::Today:
            return at(0);
        case Due::Later:
            return at(1 + static_cast<int>(m_random.bounded(60)));
        case Due::Undated:
            break;
        }
        task.remove(QStringLiteral("due_date_time"));
        return std::nullopt;
    }

    QDateTime m_now;
    QDateTime m_startOfToday;
    QRandomGenerator m_random;
    int m_count;
};

// Gives the task just added to `slot` another name.
void renameLast(ListSlot& slot, const QString& name) {
    QJsonArray tasks = slot.list->value(QStringLiteral("tasks")).toArray();
    QJsonObject task = tasks.last().toObject();
    task.insert(QStringLiteral("name"), name);
    tasks.replace(tasks.size() - 1, task);
    slot.list->insert(QStringLiteral("tasks"), tasks);
}

// Task names a client must show exactly as written, as the lists of the hostile workspace.
QStringList hostileTaskNames(const QString& webBase) {
    return {QStringLiteral("<b>Ship</b> & \"launch\" <img src=\"%1\"> checklist").arg(pixel(webBase, "task-name")),
            QStringLiteral("R&D budget & <Q3> review"),
            QStringLiteral("مراجعة طلبات العملاء"),
            QStringLiteral("🚀 Launch review 👩🏽‍💻 🇳🇴"),
            QStringLiteral("   Blanks around a task   "),
            QStringLiteral("Long task") + QStringLiteral(" name").repeated(58) + QLatin1Char('!')};
}

// A third page of My Day for the first user: 100 more open tasks in Northwind from a generator of
// their own, so the tasks before keep their ids and dates. Among them tasks with hostile names,
// tasks shared with other members, and chains of a task, its subtask and the subtask's own.
void moreOfTheFirstUser(const QDateTime& now, const QString& webBase, std::vector<ListSlot>& targets) {
    TaskMaker maker(now, 20251124U, 1000);
    using Due = TaskMaker::Due;
    const QString prefix = QStringLiteral("NW");
    const std::array<Due, 4> dues{Due::Overdue, Due::Today, Due::Later, Due::Undated};
    const std::array<std::vector<qint64>, 3> sharing{std::vector<qint64>{firstUserID, secondUserID, danaID},
                                                     std::vector<qint64>{danaID, firstUserID},
                                                     std::vector<qint64>{chidiID, firstUserID, anonymousID}};
    int added = 0;
    const QStringList hostile = hostileTaskNames(webBase);
    for (const QString& name : hostile) {
        ListSlot& slot = targets[static_cast<size_t>(added) % targets.size()];
        maker.add(slot, {firstUserID}, dues[static_cast<size_t>(added) % dues.size()], false, std::nullopt, prefix);
        renameLast(slot, name);
        ++added;
    }
    // Four chains of three: the first due today as a whole, so that its subtasks nest in that
    // section; in the others each level in another due group.
    for (int chain = 0; chain < 4; ++chain) {
        ListSlot& slot = targets[static_cast<size_t>(chain) % targets.size()];
        std::optional<QString> parent;
        for (int level = 0; level < 3; ++level) {
            const Due due = chain == 0 ? Due::Today : dues[static_cast<size_t>(chain + level) % dues.size()];
            parent = maker.add(slot, {firstUserID}, due, false, parent, prefix);
            ++added;
        }
    }
    for (; added < 100; ++added) {
        ListSlot& slot = targets[maker.bounded(static_cast<quint32>(targets.size()))];
        maker.add(slot, sharing[static_cast<size_t>(added) % sharing.size()],
                  dues[static_cast<size_t>(added) % dues.size()], false, std::nullopt, prefix);
    }
}

QStringList tagNames(const QJsonArray& tags) {
    QStringList names;
    for (const auto& each : tags) {
        names.append(each.toObject().value(QStringLiteral("name")).toString());
    }
    return names;
}

QJsonObject northwind(TaskMaker& maker, const QDateTime& now, const QString& webBase) {
    const QJsonArray productTags{tag("bug", "#ffffff", "#e50000"), tag("feature", "#ffffff", "#1090e0"),
                                 tag("ux", "#800080", "#f5e6ff"), tag("chore", "#4f5762", "#e1e4e8"),
                                 tag("needs design", "#ffffff", "#ff7800")};
    const QJsonArray operationsTags{tag("hardware", "#ffffff", "#667684"), tag("vendor", "#ffffff", "#008844")};

    QJsonObject inbox = list("901500001001", "Inbox", {{QStringLiteral("fields"), allFieldTypes("901500001001")}});
    QJsonObject ideas = list("901500001002", "Ideas", {{QStringLiteral("archived"), QJsonValue()}});
    QJsonObject oldBacklog = list("901500001003", "Old backlog", {{QStringLiteral("archived"), true}});
    QJsonObject sprintWeb =
        list("901500002001", "Sprint 12 · Web", {{QStringLiteral("fields"), allFieldTypes("901500002001")}});
    QJsonObject sprintAPI =
        list("901500002002", "Sprint 12 · API",
             {{QStringLiteral("fields"), allFieldTypes("901500002002")}, {QStringLiteral("archived"), false}});
    QJsonObject release24 = list("901500002003", "2.4 release", {{QStringLiteral("statuses"), releaseStatuses()}});
    QJsonObject release23 = list("901500002004", "2.3 release",
                                 {{QStringLiteral("statuses"), releaseStatuses()}, {QStringLiteral("archived"), true}});
    QJsonObject planning = list("901500002005", "Q4 planning");
    QJsonObject support = list("901500002006", "Support queue", {{QStringLiteral("statuses"), supportStatuses()}});
    QJsonObject facilities = list("901500002007", "Facilities", {{QStringLiteral("statuses"), facilitiesStatuses()}});
    // Without tasks of its own, so that adding it changed nobody's tasks.
    QJsonObject loans = list("901500002008", "Equipment loans", {{QStringLiteral("statuses"), loanStatuses()}});

    std::vector<ListSlot> targets{{&inbox, productStatuses(), tagNames(productTags)},
                                  {&ideas, productStatuses(), tagNames(productTags)},
                                  {&sprintWeb, productStatuses(), tagNames(productTags)},
                                  {&sprintAPI, productStatuses(), tagNames(productTags)},
                                  {&release24, releaseStatuses(), tagNames(productTags)},
                                  {&support, supportStatuses(), tagNames(operationsTags)},
                                  {&facilities, facilitiesStatuses(), tagNames(operationsTags)}};
    const QString prefix = QStringLiteral("NW");
    const auto slot = [&]() -> ListSlot& { return targets[maker.bounded(static_cast<quint32>(targets.size()))]; };
    const auto withOthers = [&](std::vector<qint64> assignees) {
        if (maker.bounded(5) == 0) {
            assignees.push_back(DemoSeed::secondUserID);
        }
        if (maker.bounded(8) == 0) {
            assignees.push_back(chidiID);
        }
        return assignees;
    };

    // 150 open tasks of the first user: 134 top-level ones, then 16 subtasks whose parents sit in
    // the opposite due group, so that in due-date order a parent and its subtask fall on
    // different pages.
    using Due = TaskMaker::Due;
    const std::array<std::pair<Due, int>, 4> groups{
        {{Due::Overdue, 28}, {Due::Today, 22}, {Due::Later, 48}, {Due::Undated, 36}}};
    std::map<Due, QStringList> parents;
    for (const auto& [due, count] : groups) {
        for (int index = 0; index < count; ++index) {
            parents[due].append(maker.add(slot(), withOthers({firstUserID}), due, false, std::nullopt, prefix));
        }
    }
    const std::array<std::pair<Due, Due>, 4> opposite{{{Due::Overdue, Due::Undated},
                                                       {Due::Undated, Due::Overdue},
                                                       {Due::Today, Due::Later},
                                                       {Due::Later, Due::Today}}};
    for (int index = 0; index < 16; ++index) {
        const auto& [due, parentDue] = opposite[static_cast<size_t>(index) % opposite.size()];
        const QString parent = parents[parentDue].at(index);
        // A subtask lives in its parent's list.
        ListSlot* parentSlot = nullptr;
        for (ListSlot& each : targets) {
            for (const auto& task : each.list->value(QStringLiteral("tasks")).toArray()) {
                if (task.toObject().value(QStringLiteral("id")).toString() == parent) {
                    parentSlot = &each;
                }
            }
        }
        maker.add(*parentSlot, {firstUserID}, due, false, parent, prefix);
    }
    // Closed tasks of the first user, tasks of the others and unassigned ones.
    for (int index = 0; index < 20; ++index) {
        maker.add(slot(), {firstUserID}, static_cast<Due>(index % 4), true, std::nullopt, prefix);
    }
    for (int index = 0; index < 25; ++index) {
        maker.add(slot(), {DemoSeed::secondUserID}, static_cast<Due>(index % 4), index % 6 == 0, std::nullopt, prefix);
    }
    const std::array<qint64, 3> others{chidiID, danaID, anonymousID};
    for (int index = 0; index < 9; ++index) {
        maker.add(slot(), {others[static_cast<size_t>(index) % others.size()]}, static_cast<Due>(index % 4), false,
                  std::nullopt, prefix);
    }
    for (int index = 0; index < 8; ++index) {
        maker.add(slot(), {}, static_cast<Due>(index % 4), false, std::nullopt, prefix);
    }
    moreOfTheFirstUser(now, webBase, targets);

    const QJsonObject sprint{{QStringLiteral("id"), QStringLiteral("90150000201")},
                             {QStringLiteral("name"), QStringLiteral("Sprint 12")},
                             {QStringLiteral("lists"), QJsonArray{sprintWeb, sprintAPI}}};
    const QJsonObject releases{{QStringLiteral("id"), QStringLiteral("90150000202")},
                               {QStringLiteral("name"), QStringLiteral("Releases")},
                               {QStringLiteral("archived"), false},
                               {QStringLiteral("lists"), QJsonArray{release24, release23}}};
    const QJsonObject archive{{QStringLiteral("id"), QStringLiteral("90150000203")},
                              {QStringLiteral("name"), QStringLiteral("Archive 2023")},
                              {QStringLiteral("archived"), true},
                              {QStringLiteral("lists"), QJsonArray{planning}}};
    const QJsonObject product{{QStringLiteral("id"), QStringLiteral("90150000101")},
                              {QStringLiteral("name"), QStringLiteral("Product")},
                              {QStringLiteral("statuses"), productStatuses()},
                              {QStringLiteral("tags"), productTags},
                              {QStringLiteral("lists"), QJsonArray{inbox, ideas, oldBacklog}},
                              {QStringLiteral("folders"), QJsonArray{sprint, releases, archive}}};
    // A space without statuses: its lists bring their own.
    const QJsonObject operations{{QStringLiteral("id"), QStringLiteral("90150000102")},
                                 {QStringLiteral("name"), QStringLiteral("Operations")},
                                 {QStringLiteral("tags"), operationsTags},
                                 {QStringLiteral("lists"), QJsonArray{support, facilities, loans}}};
    return {{QStringLiteral("id"), QStringLiteral("9015000001")},
            {QStringLiteral("name"), QStringLiteral("Northwind Studio")},
            {QStringLiteral("color"), QStringLiteral("#7b68ee")},
            {QStringLiteral("members"), QJsonArray{firstUserID, DemoSeed::secondUserID, chidiID, danaID, anonymousID}},
            {QStringLiteral("customTaskIdPrefix"), prefix},
            {QStringLiteral("attachmentIds"), QStringLiteral("string")},
            {QStringLiteral("spaces"), QJsonArray{product, operations}}};
}

QJsonObject fabrikam(TaskMaker& maker) {
    const QJsonArray researchTags{tag("assay", "#ffffff", "#1090e0"), tag("microscopy", "#ffffff", "#a875ff")};
    QJsonObject notes = list("901500003001", "Lab notes");
    QJsonObject assays = list("901500003002", "Assays");
    QJsonObject imaging = list("901500003003", "Imaging");
    QJsonObject legacy = list("901500003004", "Old projects");
    std::vector<ListSlot> targets{{&notes, researchStatuses(), tagNames(researchTags)},
                                  {&assays, researchStatuses(), tagNames(researchTags)},
                                  {&imaging, researchStatuses(), tagNames(researchTags)}};
    using Due = TaskMaker::Due;
    QString parent;
    for (int index = 0; index < 18; ++index) {
        ListSlot& target = targets[static_cast<size_t>(index) % targets.size()];
        const QString id = maker.add(target, {firstUserID}, static_cast<Due>(index % 4), index % 5 == 4,
                                     index % 6 == 5 ? std::optional(parent) : std::nullopt);
        parent = id;
    }
    for (int index = 0; index < 15; ++index) {
        maker.add(targets[static_cast<size_t>(index) % targets.size()], {index % 3 == 0 ? danaID : eveID},
                  static_cast<Due>(index % 4), false);
    }
    const QJsonObject experiments{{QStringLiteral("id"), QStringLiteral("90150000501")},
                                  {QStringLiteral("name"), QStringLiteral("Experiments")},
                                  {QStringLiteral("lists"), QJsonArray{assays, imaging}}};
    const QJsonObject research{
        {QStringLiteral("id"), QStringLiteral("90150000401")}, {QStringLiteral("name"), QStringLiteral("Research")},
        {QStringLiteral("statuses"), researchStatuses()},      {QStringLiteral("tags"), researchTags},
        {QStringLiteral("lists"), QJsonArray{notes}},          {QStringLiteral("folders"), QJsonArray{experiments}}};
    const QJsonObject archivedSpace{{QStringLiteral("id"), QStringLiteral("90150000402")},
                                    {QStringLiteral("name"), QStringLiteral("Legacy")},
                                    {QStringLiteral("statuses"), productStatuses()},
                                    {QStringLiteral("archived"), true},
                                    {QStringLiteral("lists"), QJsonArray{legacy}}};
    return {{QStringLiteral("id"), QStringLiteral("9015000002")},
            {QStringLiteral("name"), QStringLiteral("Fabrikam Labs")},
            {QStringLiteral("color"), QStringLiteral("#0ab4ff")},
            {QStringLiteral("members"), QJsonArray{firstUserID, danaID, eveID}},
            {QStringLiteral("attachmentIds"), QStringLiteral("number")},
            {QStringLiteral("spaces"), QJsonArray{research, archivedSpace}}};
}

// The folderless lists of the hostile-names workspace, by id.
std::vector<std::pair<const char*, QString>> hostileListNames(const QString& webBase) {
    return {
        {"901500006001", QStringLiteral("<b>Bold</b> & \"quoted\" <img src=\"%1\"> list").arg(pixel(webBase, "list"))},
        {"901500006002", QStringLiteral("Ørders & Ärchive")},
        {"901500006003", QStringLiteral("طلبات العملاء")},
        {"901500006004", QStringLiteral("🚀 Launch plan 👩🏽‍💻 🇳🇴")},
        {"901500006005", QStringLiteral("   Blanks around   ")},
        {"901500006006", QStringLiteral("Long") + QStringLiteral(" name").repeated(59) + QLatin1Char('!')}};
}

// A text field of the list named with markup, named with markup itself.
QJsonObject hostileField(const QString& webBase) {
    QJsonObject named = field(QStringLiteral("901500006001"), "Hostile field", "text");
    named.insert(QStringLiteral("name"),
                 QStringLiteral("<b>Field</b> & \"notes\" <img src=\"%1\">").arg(pixel(webBase, "field")));
    return named;
}

// Names a client must show exactly as written: markup whose picture points back at the sandbox,
// an ampersand, right-to-left text, emoji, blanks around a name and a very long one. Only the
// hostile-names user is a member, so the other demo users see nothing of it.
QJsonObject hostileNames(const QString& webBase) {
    QJsonArray lists;
    for (const auto& [id, name] : hostileListNames(webBase)) {
        QJsonObject entry = list(id, "");
        entry.insert(QStringLiteral("name"), name);
        if (QLatin1String(id) == QLatin1String("901500006001")) {
            entry.insert(QStringLiteral("fields"), QJsonArray{hostileField(webBase)});
        }
        lists.append(entry);
    }
    const QJsonObject folder{{QStringLiteral("id"), QStringLiteral("90150000701")},
                             {QStringLiteral("name"), QStringLiteral("<i>Folder</i> & <u>more</u>")},
                             {QStringLiteral("lists"), QJsonArray{list("901500007001", "Inside")}}};
    const QJsonObject space{{QStringLiteral("id"), QStringLiteral("90150000601")},
                            {QStringLiteral("name"), QStringLiteral("Names")},
                            {QStringLiteral("statuses"), productStatuses()},
                            {QStringLiteral("lists"), lists},
                            {QStringLiteral("folders"), QJsonArray{folder}}};
    return {{QStringLiteral("id"), QStringLiteral("9015000003")},
            {QStringLiteral("name"), QStringLiteral("Hostile & <b>names</b>")},
            {QStringLiteral("color"), QStringLiteral("#e50000")},
            {QStringLiteral("members"), QJsonArray{hostileNamesUserID}},
            {QStringLiteral("spaces"), QJsonArray{space}}};
}

} // namespace

QJsonObject demo(const QDateTime& now, const QString& webBase) {
    TaskMaker maker(now);
    const QJsonObject first = northwind(maker, now, webBase);
    const QJsonObject second = fabrikam(maker);
    return {{QStringLiteral("users"), users(webBase)},
            {QStringLiteral("workspaces"), QJsonArray{first, second, hostileNames(webBase)}}};
}

QJsonObject empty() {
    const QJsonArray demoUsers = users(QString());
    return {{QStringLiteral("users"), QJsonArray{demoUsers[0], demoUsers[1]}},
            {QStringLiteral("workspaces"),
             QJsonArray{QJsonObject{{QStringLiteral("id"), QStringLiteral("9015000009")},
                                    {QStringLiteral("name"), QStringLiteral("Empty workspace")},
                                    {QStringLiteral("members"), QJsonArray{firstUserID, secondUserID}}}}}};
}

} // namespace DemoSeed
