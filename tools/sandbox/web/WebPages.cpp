#include "sandbox/web/WebRoutes.h"

#include "sandbox/api/WireJson.h"

#include <QDateTime>

namespace {

QString escaped(const QString& text) {
    return text.toHtmlEscaped();
}

QString page(const QString& title, const QString& body) {
    return QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>%1 · Norvane "
                          "sandbox</title>\n<style>body{font-family:sans-serif;max-width:60em;margin:2em auto;"
                          "padding:0 1em}code{background:#eee;padding:.1em .3em}td,th{padding:.2em .6em;"
                          "text-align:left}</style></head>\n<body><p><a href=\"/\">Norvane sandbox</a></p>\n"
                          "<h1>%1</h1>\n%2</body></html>\n")
        .arg(escaped(title), body);
}

QString link(const QString& href, const QString& text) {
    return QStringLiteral("<a href=\"%1\">%2</a>").arg(escaped(href), escaped(text));
}

ServiceResponse notFoundPage(const QString& title) {
    ServiceResponse missing = ServiceResponse::html(page(title, QString()));
    missing.status = 404;
    return missing;
}

QString listPath(const StoreData& data, const TaskList& list) {
    const Workspace* workspace = data.workspaceOfList(list.id);
    return QStringLiteral("/%1/v/l/li/%2").arg(workspace ? workspace->id : QString(), list.id);
}

QString dueText(const Task& task) {
    if (!task.dueDateMs) {
        return QStringLiteral("no due date");
    }
    const QDateTime due = QDateTime::fromMSecsSinceEpoch(*task.dueDateMs);
    return due.toString(task.dueDateTime ? QStringLiteral("yyyy-MM-dd HH:mm") : QStringLiteral("yyyy-MM-dd"));
}

QString index(const StoreData& data, const QString& webBase) {
    QString body = QStringLiteral("<p>A local service that speaks the Norvane REST contract. API base: "
                                  "<code>%1/api/v2</code>. Tokens: %2.</p>\n")
                       .arg(escaped(webBase), link(QStringLiteral("/settings/apps"), QStringLiteral("settings/apps")));
    for (const Workspace& workspace : data.workspaces) {
        body += QStringLiteral("<h2>%1 <small>(%2)</small></h2>\n<ul>\n").arg(escaped(workspace.name), workspace.id);
        for (const Space& space : data.spaces) {
            if (space.workspaceID != workspace.id) {
                continue;
            }
            for (const TaskList& list : data.lists) {
                if (list.spaceID == space.id) {
                    const Folder* folder = list.folderID ? data.folder(*list.folderID) : nullptr;
                    body += QStringLiteral("<li>%1 / %2%3</li>\n")
                                .arg(escaped(space.name),
                                     folder ? escaped(folder->name) + QStringLiteral(" / ") : QString(),
                                     link(listPath(data, list), list.name));
                }
            }
        }
        body += QStringLiteral("</ul>\n");
    }
    return page(QStringLiteral("Norvane sandbox"), body);
}

QString tokens(const StoreData& data) {
    QString rows;
    for (const User& user : data.users) {
        if (user.token) {
            rows += QStringLiteral("<tr><td>%1</td><td>%2</td><td><code>%3</code></td></tr>\n")
                        .arg(escaped(user.displayName()))
                        .arg(user.id)
                        .arg(escaped(*user.token));
        }
    }
    return page(QStringLiteral("Apps"), QStringLiteral("<p>Paste one of these personal API tokens into NorvaneBar's "
                                                       "settings.</p>\n<table><tr><th>User</th><th>Id</th><th>API "
                                                       "token</th></tr>\n%1</table>\n")
                                            .arg(rows));
}

QString taskPage(const StoreData& data, const Task& task, const QString& webBase) {
    const WireJson wire(data, webBase);
    const TaskList* list = data.list(task.listID);
    QStringList assignees;
    for (const qint64 assignee : task.assignees) {
        const User* user = data.user(assignee);
        assignees.append(escaped(user ? user->displayName() : QString::number(assignee)));
    }
    QString body = QStringLiteral("<p>%1 · status <b>%2</b> · %3 · list %4</p>\n<p>Assignees: %5</p>\n<p>%6</p>\n")
                       .arg(escaped(task.customID.value_or(task.id)), escaped(task.status), escaped(dueText(task)),
                            list ? link(listPath(data, *list), list->name) : QString(),
                            assignees.isEmpty() ? QStringLiteral("none") : assignees.join(QStringLiteral(", ")),
                            escaped(task.description));
    if (task.parentID) {
        body +=
            QStringLiteral("<p>Subtask of %1</p>\n").arg(link(QStringLiteral("/t/") + *task.parentID, *task.parentID));
    }
    for (const Attachment& attachment : task.attachments) {
        body += QStringLiteral("<p>Attachment: %1 (%2 bytes)</p>\n")
                    .arg(link(wire.attachmentURL(attachment), attachment.title))
                    .arg(attachment.size);
    }
    for (const Comment& comment : task.comments) {
        const User* author = data.user(comment.userID);
        body += QStringLiteral("<blockquote>%1<br><small>%2</small></blockquote>\n")
                    .arg(escaped(comment.text), escaped(author ? author->displayName() : QString()));
    }
    return page(task.name, body);
}

QString listPage(const StoreData& data, const TaskList& list) {
    QString rows;
    for (const Task& task : data.tasks) {
        if (task.listID == list.id) {
            rows += QStringLiteral("<tr><td>%1</td><td>%2</td><td>%3</td></tr>\n")
                        .arg(link(QStringLiteral("/t/") + task.id, task.name), escaped(task.status),
                             escaped(dueText(task)));
        }
    }
    return page(list.name,
                QStringLiteral("<table><tr><th>Task</th><th>Status</th><th>Due</th></tr>\n%1</table>\n").arg(rows));
}

} // namespace

void addWebPages(WebRoutes& routes, const SandboxStore& store, const QString& webBase) {
    routes.add("GET", u"", [&store, webBase](const RouteCall&) {
        return store.read([&](const StoreData& data) { return ServiceResponse::html(index(data, webBase)); });
    });
    routes.add("GET", u"settings/apps", [&store](const RouteCall&) {
        return store.read([&](const StoreData& data) { return ServiceResponse::html(tokens(data)); });
    });
    // A task by its id or its custom id.
    routes.add("GET", u"t/{}", [&store, webBase](const RouteCall& call) {
        return store.read([&](const StoreData& data) {
            for (const Task& task : data.tasks) {
                if (task.id == call.param(0) || task.customID == call.param(0)) {
                    return ServiceResponse::html(taskPage(data, task, webBase));
                }
            }
            return notFoundPage(QStringLiteral("Task not found"));
        });
    });
    routes.add("GET", u"{}/v/l/li/{}", [&store](const RouteCall& call) {
        return store.read([&](const StoreData& data) {
            const TaskList* list = data.list(call.param(1));
            const Workspace* workspace = list ? data.workspaceOfList(list->id) : nullptr;
            if (!workspace || workspace->id != call.param(0)) {
                return notFoundPage(QStringLiteral("List not found"));
            }
            return ServiceResponse::html(listPage(data, *list));
        });
    });
}
