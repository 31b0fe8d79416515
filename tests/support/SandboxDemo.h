#pragma once

#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUrl>

// Ids of norvane-sandbox's demo data (tools/sandbox/store/DemoSeed.cpp) that tests rely on.
namespace SandboxDemo {

// Owns 250 open tasks in Northwind, so that My Day reads three pages of 100.
inline constexpr qint64 firstUserID = 4810001;
inline constexpr int firstUserOpenNorthwindTasks = 250;
// A member of Northwind only.
inline constexpr qint64 secondUserID = 4810002;
// Members without a token: an empty user name, no user name, neither user name nor email.
inline constexpr qint64 emptyUsernameUserID = 4810003;
inline constexpr qint64 noUsernameUserID = 4810004;
inline constexpr qint64 anonymousUserID = 4810005;

// Custom task ids, string attachment ids.
inline const QString northwindID = QStringLiteral("9015000001");
// No custom task ids, numeric attachment ids, an archived space.
inline const QString fabrikamID = QStringLiteral("9015000002");

inline const QString productSpaceID = QStringLiteral("90150000101");    // with statuses
inline const QString operationsSpaceID = QStringLiteral("90150000102"); // without statuses
inline const QString researchSpaceID = QStringLiteral("90150000401");
inline const QString legacySpaceID = QStringLiteral("90150000402"); // archived

inline const QString sprintFolderID = QStringLiteral("90150000201");
inline const QString releasesFolderID = QStringLiteral("90150000202"); // holds an archived list
inline const QString archivedFolderID = QStringLiteral("90150000203");

inline const QString inboxListID = QStringLiteral("901500001001");      // every custom field type
inline const QString ideasListID = QStringLiteral("901500001002");      // archived: null
inline const QString oldBacklogListID = QStringLiteral("901500001003"); // archived: true
inline const QString releaseListID = QStringLiteral("901500002003");    // statuses of its own
inline const QString supportListID = QStringLiteral("901500002006");
inline const QString facilitiesListID = QStringLiteral("901500002007"); // statuses without types
// No status of type "closed", the last of another type than the others; no tasks.
inline const QString loansListID = QStringLiteral("901500002008");
inline const QString labNotesListID = QStringLiteral("901500003001"); // in Fabrikam

// The first open task of the first demo user in Northwind, as the task search gives it.
inline QJsonObject firstNorthwindTask(SyncHttpClient& http, const SandboxProcess& sandbox) {
    return http.get(sandbox.apiUrl(QStringLiteral("team/%1/task").arg(northwindID)), sandbox.token())
        .json()
        .value(QStringLiteral("tasks"))
        .toArray()
        .first()
        .toObject();
}

// The names of the open tasks of a Northwind list by task id, through the task search, page by page.
inline QHash<QString, QString> openTaskNames(SyncHttpClient& http, const SandboxProcess& sandbox,
                                             const QString& listID) {
    QHash<QString, QString> names;
    for (int page = 0;; ++page) {
        const QJsonObject answer = http.get(sandbox.apiUrl(QStringLiteral("team/%1/task").arg(northwindID),
                                                           {{QStringLiteral("list_ids[]"), listID},
                                                            {QStringLiteral("page"), QString::number(page)}}),
                                            sandbox.token())
                                       .json();
        for (const QJsonValue task : answer.value(QStringLiteral("tasks")).toArray()) {
            names.insert(task[QStringLiteral("id")].toString(), task[QStringLiteral("name")].toString());
        }
        if (answer.value(QStringLiteral("last_page")).toBool(true)) {
            return names;
        }
    }
}

// The workspace of hostile names, whose only member is the hostile-names user. Pictures in its
// markup point at the sandbox's own address (its web base), so a fetch shows in the request log.
inline constexpr qint64 hostileNamesUserID = 4810007;
inline const QString hostileNamesToken = QStringLiteral("pk_demo_mia_5T8H3V6ZQR");
inline const QString hostileNamesID = QStringLiteral("9015000003");
inline const QString hostileSpaceName = QStringLiteral("Names");
inline const QString hostileFolderName = QStringLiteral("<i>Folder</i> & <u>more</u>");
inline QString hostilePicturePath(QStringView name) {
    return QStringLiteral("/hostile/%1.png").arg(name);
}
// The paths of the pictures of hostile names that were asked for, from the sandbox's request log.
inline QStringList hostilePictureRequests(const QJsonArray& requests) {
    QStringList paths;
    for (const QJsonValue& request : requests) {
        const QString path = request[QStringLiteral("path")].toString();
        if (path.startsWith(QStringLiteral("/hostile/"))) {
            paths.append(path);
        }
    }
    return paths;
}
inline QString hostileUserName(const QUrl& webBase) {
    return QStringLiteral("<i>Mia</i> & \"Mo\" <img src=\"%1%2\"> Ødegård")
        .arg(webBase.toString(QUrl::StripTrailingSlash), hostilePicturePath(u"user"));
}
inline const QString markupListID = QStringLiteral("901500006001");
inline QString markupListName(const QUrl& webBase) {
    return QStringLiteral("<b>Bold</b> & \"quoted\" <img src=\"%1%2\"> list")
        .arg(webBase.toString(QUrl::StripTrailingSlash), hostilePicturePath(u"list"));
}
// The one custom field of that list, named with markup.
inline QString hostileFieldName(const QUrl& webBase) {
    return QStringLiteral("<b>Field</b> & \"notes\" <img src=\"%1%2\">")
        .arg(webBase.toString(QUrl::StripTrailingSlash), hostilePicturePath(u"field"));
}
inline const QString ampersandListName = QStringLiteral("Ørders & Ärchive");
inline const QString rightToLeftListName = QStringLiteral("طلبات العملاء");
inline const QString emojiListName = QStringLiteral("🚀 Launch plan 👩🏽‍💻 🇳🇴");
inline const QString blanksListName = QStringLiteral("   Blanks around   ");
inline QString longListName() {
    return QStringLiteral("Long") + QStringLiteral(" name").repeated(59) + QLatin1Char('!');
}
// Open tasks of the first user in Northwind named as the hostile lists are: markup with a picture,
// ampersands, right-to-left text, emoji, blanks around and 300 characters.
inline QStringList hostileTaskNames(const QUrl& webBase) {
    return {QStringLiteral("<b>Ship</b> & \"launch\" <img src=\"%1%2\"> checklist")
                .arg(webBase.toString(QUrl::StripTrailingSlash), hostilePicturePath(u"task-name")),
            QStringLiteral("R&D budget & <Q3> review"),
            QStringLiteral("مراجعة طلبات العملاء"),
            QStringLiteral("🚀 Launch review 👩🏽‍💻 🇳🇴"),
            QStringLiteral("   Blanks around a task   "),
            QStringLiteral("Long task") + QStringLiteral(" name").repeated(58) + QLatin1Char('!')};
}

} // namespace SandboxDemo
