#include "core/api/APIErrorBody.h"
#include "core/api/FieldRecords.h"
#include "core/api/HierarchyRecords.h"
#include "core/api/TaskRecords.h"
#include "core/api/TaskRequests.h"
#include "core/api/UserRecords.h"
#include "core/json/JsonDecoding.h"
#include "core/json/JsonEncoding.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
// JSON is written here with single quotes, which read better than escaped double quotes (and raw
// string literals trip up moc of Qt 6.4).
QByteArray json(const char* singleQuoted) {
    return QByteArray(singleQuoted).replace('\'', '"');
}

template <typename T> T decode(const char* singleQuoted) {
    return Json::decode<T>(Json::parse(json(singleQuoted)), QStringLiteral("$"));
}

// Decoding a record and writing it again gives the same JSON, key for key.
template <typename T> bool roundTrips(const char* singleQuoted) {
    return Json::serialize(decode<T>(singleQuoted).toJson()) == Json::serialize(Json::parse(json(singleQuoted)));
}
} // namespace

class WireRecordsTest : public QObject {
    Q_OBJECT

private slots:
    void aUserWithAnEmptyUsernameAndAnEmailIsShownByTheEmptyName() {
        const auto user = decode<NVUser>("{'id':7,'username':'','email':'ann@example.com'}");
        QCOMPARE(user.displayName(), QString());
    }

    void aUserWithNeitherUsernameNorEmailIsShownAsUserAndTheId() {
        QCOMPARE(decode<NVUser>("{'id':4810005}").displayName(), QStringLiteral("User 4810005"));
        QCOMPARE(decode<NVUser>("{'id':4810005,'username':null,'email':null}").displayName(),
                 QStringLiteral("User 4810005"));
    }

    void aUserWithoutUsernameIsShownByTheEmail() {
        QCOMPARE(decode<NVUser>("{'id':7,'email':'ann@example.com'}").displayName(), QStringLiteral("ann@example.com"));
        QCOMPARE(decode<NVUser>("{'id':7,'username':'ann','email':'ann@example.com'}").displayName(),
                 QStringLiteral("ann"));
    }

    void aMemberIsShownByTheSameRule() {
        QCOMPARE(decode<Member>("{'id':9,'username':'','email':'bo@example.com'}").displayName(), QString());
        QCOMPARE(decode<Member>("{'id':9,'email':'bo@example.com'}").displayName(), QStringLiteral("bo@example.com"));
        QCOMPARE(decode<Member>("{'id':9}").displayName(), QStringLiteral("User 9"));
    }

    void aUserIdMustBeAnInteger() {
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<NVUser>("{'id':'7'}"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<NVUser>("{'id':7.5}"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<UserResponse>("{'user':{'username':'ann'}}"));
    }

    void theProfilePictureKeyIsInCamelCase() {
        const auto user = decode<NVUser>("{'id':7,'profilePicture':'https://x/p.png','profile_picture':'no'}");
        QCOMPARE(user.profilePicture, std::optional<QString>(QStringLiteral("https://x/p.png")));
        QVERIFY(roundTrips<UserResponse>("{'user':{'color':'#7b68ee','email':'a@b.c','id':1,'initials':'AB','"
                                         "profilePicture':'p','username':'ab'}}"));
        QVERIFY(roundTrips<MembersResponse>("{'members':[{'id':1,'profilePicture':'p'},{'id':2,'initials':'X'}]}"));
    }

    void aTaskWithoutURLOpensAtItsIdUnderTheWebBase() {
        const auto task = decode<NVTaskSummary>("{'id':'86a1b2c3','name':'Write notes'}");
        QCOMPARE(task.browserURL(QUrl(QStringLiteral("https://app.norvane.com"))),
                 QStringLiteral("https://app.norvane.com/t/86a1b2c3"));
        QCOMPARE(task.browserURL(QUrl(QStringLiteral("http://127.0.0.1:8080/"))),
                 QStringLiteral("http://127.0.0.1:8080/t/86a1b2c3"));
    }

    void aTaskWithURLOpensThere() {
        const auto task = decode<NVTaskSummary>("{'id':'86a1b2c3','name':'n','url':'https://x.test/t/1'}");
        QCOMPARE(task.browserURL(QUrl(QStringLiteral("https://app.norvane.com"))),
                 QStringLiteral("https://x.test/t/1"));
    }

    void aTaskSummaryReadsEveryKey() {
        const char* const sample = "{'assignees':[{'id':4810001,'username':'ann'}],'custom_id':'NW-12',"
                                   "'due_date':'1718092800000','id':'86a1','list':{'id':'9015','name':'Inbox'},"
                                   "'name':'Write notes','parent':'86a0','status':{'color':'#d3d3d3',"
                                   "'status':'to do','type':'open'},'url':'https://x.test/t/86a1'}";
        const auto task = decode<NVTaskSummary>(sample);
        QCOMPARE(task.dueDate, std::optional<QString>(QStringLiteral("1718092800000")));
        QCOMPARE(task.parentTaskID, std::optional<QString>(QStringLiteral("86a0")));
        QCOMPARE(task.customTaskID, std::optional<QString>(QStringLiteral("NW-12")));
        QCOMPARE(task.list->name, std::optional<QString>(QStringLiteral("Inbox")));
        QCOMPARE(task.assignees->first().id, qint64(4810001));
        QCOMPARE(task.status->type, std::optional<QString>(QStringLiteral("open")));
        QVERIFY(roundTrips<NVTaskSummary>(sample));
    }

    void aDueDateSentAsANumberFailsTheTask() {
        QVERIFY_THROWS_EXCEPTION(DecodingError,
                                 decode<NVTaskSummary>("{'id':'1','name':'n','due_date':1718092800000}"));
    }

    void aMissingLastPageIsAbsent() {
        QCOMPARE(decode<TeamTasksResponse>("{'tasks':[]}").lastPage, std::nullopt);
        QCOMPARE(decode<TeamTasksResponse>("{'tasks':[],'last_page':null}").lastPage, std::nullopt);
        QCOMPARE(decode<TeamTasksResponse>("{'tasks':[],'last_page':true}").lastPage, std::optional(true));
    }

    void aTaskListWithoutTasksFails() {
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<TeamTasksResponse>("{'last_page':true}"));
    }

    void aCreatedTaskReadsItsCustomId() {
        const char* const sample = "{'custom_id':'NW-13','id':'86a2','name':'New','url':'https://x.test/t/86a2'}";
        QCOMPARE(decode<CreatedTask>(sample).customTaskID, std::optional<QString>(QStringLiteral("NW-13")));
        QVERIFY(roundTrips<CreatedTask>(sample));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<CreatedTask>("{'id':'86a2'}"));
    }

    void theWorkspaceTreeReadsEveryKey() {
        QVERIFY(roundTrips<TeamsResponse>("{'teams':[{'avatar':'a.png','color':'#fff','id':'9015','name':'N'}]}"));
        QVERIFY(roundTrips<SpacesResponse>("{'spaces':[{'archived':false,'id':'1','name':'P','statuses':[{'status':'"
                                           "open'}]},{'id':'2','name':'O'}]}"));
        QVERIFY(roundTrips<FoldersResponse>(
            "{'folders':[{'archived':true,'id':'3','lists':[{'archived':true,'id':'4','name':'L'}],'name':'F'}]}"));
        QVERIFY(roundTrips<ListsResponse>(
            "{'lists':[{'id':'5','name':'Inbox','statuses':[{'color':'#000','status':'done','type':'closed'}]}]}"));
    }

    void anArchivedNullIsAbsent() {
        QCOMPARE(decode<NVList>("{'id':'5','name':'Ideas','archived':null}").archived, std::nullopt);
    }

    void aSpaceWithoutNameFails() {
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<SpacesResponse>("{'spaces':[{'id':'1'}]}"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<SpacesResponse>("{'spaces':[{'id':1,'name':'P'}]}"));
    }

    void tagsUseTheirSnakeCaseKeys() {
        const char* const sample = "{'tags':[{'name':'bug','tag_bg':'#f00','tag_fg':'#fff'}]}";
        const auto tags = decode<TagsResponse>(sample);
        QCOMPARE(tags.tags.first().tagFg, std::optional<QString>(QStringLiteral("#fff")));
        QCOMPARE(tags.tags.first().tagBg, std::optional<QString>(QStringLiteral("#f00")));
        QVERIFY(roundTrips<TagsResponse>(sample));
    }

    void aCustomFieldReadsItsTypeConfig() {
        const char* const sample = "{'fields':[{'id':'f1','name':'Size','required':true,'type':'drop_down',"
                                   "'type_config':{'options':[{'color':'#0f0','id':'o1','label':'S','name':'Small'}]}},"
                                   "{'id':'f2','name':'Notes','type':'text','type_config':{}}]}";
        const auto fields = decode<FieldsResponse>(sample);
        QCOMPARE(fields.fields.first().typeConfig->options->first().name,
                 std::optional<QString>(QStringLiteral("Small")));
        QCOMPARE(fields.fields.last().typeConfig->options, std::nullopt);
        QVERIFY(roundTrips<FieldsResponse>(sample));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<FieldsResponse>("{'fields':[{'id':'f','name':'n'}]}"));
    }

    void theComposerEditsTenFieldTypes() {
        const QSet<QString> expected{QStringLiteral("text"),     QStringLiteral("short_text"),
                                     QStringLiteral("number"),   QStringLiteral("drop_down"),
                                     QStringLiteral("labels"),   QStringLiteral("date"),
                                     QStringLiteral("checkbox"), QStringLiteral("url"),
                                     QStringLiteral("email"),    QStringLiteral("phone")};
        QCOMPARE(CustomField::editableTypes(), expected);
        QVERIFY(!CustomField::editableTypes().contains(QStringLiteral("formula")));
    }

    void aCreateTaskRequestWithOnlyANameHasOneKey() {
        CreateTaskRequest request;
        request.name = QStringLiteral("Call back");
        QCOMPARE(Json::serialize(request.toJson()), json("{'name':'Call back'}"));
    }

    void aFullCreateTaskRequestIsWrittenWithSortedSnakeCaseKeys() {
        CreateTaskRequest request;
        request.name = QStringLiteral("Ship");
        request.markdownDescription = QStringLiteral("**now**");
        request.assignees = QList<qint64>{4810001, 4810002};
        request.tags = QList<QString>{QStringLiteral("bug")};
        request.status = QStringLiteral("to do");
        request.priority = 2;
        request.dueDate = 1718092800000;
        request.dueDateTime = false;
        request.notifyAll = true;
        request.customFields = QList<CreateTaskRequest::CustomFieldValue>{
            {QStringLiteral("f1"), JSONValue::integer(3)},
            {QStringLiteral("f2"), JSONValue::array({JSONValue::string(QStringLiteral("o1")), JSONValue::null()})}};
        QCOMPARE(Json::serialize(request.toJson()),
                 json("{'assignees':[4810001,4810002],'custom_fields':[{'id':'f1','value':3},"
                      "{'id':'f2','value':['o1',null]}],'due_date':1718092800000,'due_date_time':false,"
                      "'markdown_description':'**now**','name':'Ship','notify_all':true,'priority':2,"
                      "'status':'to do','tags':['bug']}"));
    }

    void anUpdateHoldsOnlyWhatChanges() {
        UpdateTaskRequest status;
        status.status = QStringLiteral("done");
        QCOMPARE(Json::serialize(status.toJson()), json("{'status':'done'}"));
        UpdateTaskRequest date;
        date.dueDate = 1718092800000;
        date.dueDateTime = true;
        QCOMPARE(Json::serialize(date.toJson()), json("{'due_date':1718092800000,'due_date_time':true}"));
    }

    void aCommentIsWrittenAsCommentText() {
        QCOMPARE(Json::serialize(CommentRequest{QStringLiteral("Done.")}.toJson()), json("{'comment_text':'Done.'}"));
    }

    void aCommentResponseAcceptsAnyObjectButNothingElse() {
        QCOMPARE(decode<CommentResponse>("{'id':'c1','hist_id':9,'date':null}"), CommentResponse());
        QCOMPARE(decode<CommentResponse>("{}"), CommentResponse());
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<CommentResponse>("[]"));
        QVERIFY_THROWS_EXCEPTION(DecodingError, decode<CommentResponse>(""));
    }

    void anErrorBodyReadsTheCapitalECODE() {
        const auto body = decode<APIErrorBody>("{'err':'Workspace storage limit reached','ECODE':'GBUSED_005'}");
        QCOMPARE(body.err, std::optional<QString>(QStringLiteral("Workspace storage limit reached")));
        QCOMPARE(body.ecode, std::optional<QString>(QStringLiteral("GBUSED_005")));
        QCOMPARE(decode<APIErrorBody>("{'ecode':'x'}").ecode, std::nullopt);
        QVERIFY(roundTrips<APIErrorBody>("{'ECODE':'OAUTH_025','err':'Token invalid'}"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(WireRecordsTest)
#include "WireRecordsTest.moc"
