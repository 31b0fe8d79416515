#include "core/json/JsonEncoding.h"
#include "core/recording/FacecamStyle.h"
#include "core/recording/RecordingQuality.h"
#include "core/settings/Bookmark.h"
#include "core/settings/DefaultField.h"
#include "core/settings/HotKeyPreset.h"
#include "core/settings/SavedLocation.h"
#include "core/settings/StorageProviderKind.h"
#include "core/settings/StoredAccount.h"
#include "core/settings/TaskTemplate.h"
#include "support/TestMain.h"

#include <QJsonDocument>
#include <QTest>

namespace {
template <typename T> T decoded(const QByteArray& json) {
    return Json::decode<T>(Json::parse(json), QStringLiteral("$"));
}

template <typename T> bool fails(const QByteArray& json) {
    try {
        decoded<T>(json);
    } catch (const DecodingError&) {
        return true;
    }
    return false;
}

// Every case of an enumeration with its raw value, in order, and the raw values decode back.
template <RawValueEnum E> QStringList rawValuesOf() {
    QStringList raws;
    for (const auto& [value, raw] : RawValues<E>::cases) {
        raws.append(rawValue(value));
        if (fromRawValue<E>(raws.last()) != value) {
            raws.append(QStringLiteral("<does not decode>"));
        }
    }
    return raws;
}

const QByteArray wholeFacecamStyle = R"({"cornerRadius":0.35,"corner":"topLeft","sizeFraction":0.25,"isVisible":false,
    "backgroundKind":"customImage","blurRadius":12,"customImagePath":"/home/me/beach.png"})";
} // namespace

class SettingsValuesTest : public QObject {
    Q_OBJECT

private slots:
    void enumerationsHaveTheirRawValuesInOrder() {
        QCOMPARE(rawValuesOf<DefaultField>(), QStringList({"status", "assignee", "dueDate", "priority", "tags"}));
        QCOMPARE(rawValuesOf<StorageProviderKind>(),
                 QStringList({"norvane", "cloudinary", "cloudflareR2", "googleDrive"}));
        QCOMPARE(rawValuesOf<HotKeyPreset>(), QStringList({"optionShiftSpace", "controlShiftSpace", "commandShiftSpace",
                                                           "optionShiftN", "disabled"}));
        QCOMPARE(rawValuesOf<RecordingQuality>(), QStringList({"hd720", "hd1080"}));
        QCOMPARE(rawValuesOf<FacecamCorner>(), QStringList({"topLeft", "topRight", "bottomLeft", "bottomRight"}));
        QCOMPARE(rawValuesOf<FacecamBackgroundKind>(), QStringList({"none", "blur", "customImage"}));
    }

    void anUnknownRawValueFailsToDecode() {
        QVERIFY(fails<QList<HotKeyPreset>>(R"(["optionShiftSpace","hyperSpace"])"));
        QVERIFY(fails<QList<StorageProviderKind>>(R"(["Norvane"])"));
        QVERIFY(fails<QList<DefaultField>>(R"([0])"));
        QCOMPARE(decoded<QList<RecordingQuality>>(R"(["hd1080"])"), QList<RecordingQuality>{RecordingQuality::hd1080});
    }

    void aFacecamStyleHasItsDefaults() {
        const FacecamStyle style;
        QCOMPARE(style.cornerRadius, 1.0);
        QCOMPARE(style.corner, FacecamCorner::bottomRight);
        QCOMPARE(style.sizeFraction, 0.18);
        QVERIFY(style.isVisible);
        QCOMPARE(style.backgroundKind, FacecamBackgroundKind::none);
        QCOMPARE(style.blurRadius, 20.0);
        QCOMPARE(style.customImagePath, std::nullopt);
    }

    void aFacecamStyleComesBackAsItWasStored() {
        const auto style = decoded<FacecamStyle>(wholeFacecamStyle);
        QCOMPARE(style.cornerRadius, 0.35);
        QCOMPARE(style.corner, FacecamCorner::topLeft);
        QCOMPARE(style.backgroundKind, FacecamBackgroundKind::customImage);
        QCOMPARE(style.blurRadius, 12.0);
        QCOMPARE(style.customImagePath, QStringLiteral("/home/me/beach.png"));
        QCOMPARE(Json::decode<FacecamStyle>(style.toJson(), QStringLiteral("$")), style);
    }

    void aFacecamStyleWithoutCustomImagePathDecodesWithAbsent() {
        const auto style = decoded<FacecamStyle>(R"({"cornerRadius":1,"corner":"bottomRight","sizeFraction":0.18,
            "isVisible":true,"backgroundKind":"none","blurRadius":20})");
        QCOMPARE(style, FacecamStyle());
        QVERIFY(!style.toJson().contains(QStringLiteral("customImagePath")));
    }

    void aFacecamStyleWithoutBlurRadiusDoesNotDecode() {
        QJsonObject object = Json::parse(wholeFacecamStyle).toObject();
        object.remove(QStringLiteral("blurRadius"));
        QVERIFY(fails<FacecamStyle>(QJsonDocument(object).toJson()));
    }

    void aFacecamStyleLackingAnyOtherKeyDoesNotDecode() {
        for (const QString& key : {"cornerRadius", "corner", "sizeFraction", "isVisible", "backgroundKind"}) {
            QJsonObject object = Json::parse(wholeFacecamStyle).toObject();
            object.remove(key);
            QVERIFY2(fails<FacecamStyle>(QJsonDocument(object).toJson()), qPrintable(key));
        }
    }

    void aSavedLocationNeedsAllFourKeys() {
        const QByteArray whole =
            R"({"workspaceID":"w1","listID":"l1","listName":"Inbox","pathDescription":"Team › Sprint"})";
        QCOMPARE(decoded<SavedLocation>(whole),
                 (SavedLocation{QStringLiteral("w1"), QStringLiteral("l1"), QStringLiteral("Inbox"),
                                QStringLiteral("Team › Sprint")}));
        QVERIFY(fails<SavedLocation>(R"({"workspaceID":"w1","listID":"l1","listName":"Inbox"})"));
        QCOMPARE(QSet<SavedLocation>({decoded<SavedLocation>(whole), decoded<SavedLocation>(whole)}).size(), 1);
    }

    void aStoredAccountNeedsItsIdAndName() {
        const auto account = decoded<StoredAccount>(R"({"id":42,"displayName":"Ada","initials":"A"})");
        QCOMPARE(account.id, 42);
        QCOMPARE(account.email, std::nullopt);
        QCOMPARE(account.initials, QStringLiteral("A"));
        QCOMPARE(Json::serialize(account.toJson()), QByteArray(R"({"displayName":"Ada","id":42,"initials":"A"})"));
        QVERIFY(fails<StoredAccount>(R"({"displayName":"Ada"})"));
        QVERIFY(fails<StoredAccount>(R"({"id":"42","displayName":"Ada"})"));
    }

    void aNewBookmarkGetsAFreshRandomId() {
        const Bookmark first;
        const Bookmark second;
        QVERIFY(!first.id.isNull());
        QVERIFY(first.id != second.id);
        QCOMPARE(first.id.version(), QUuid::Random);
    }

    void aBookmarkIdIsWrittenInCanonicalForm() {
        const auto bookmark = decoded<Bookmark>(
            R"({"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","name":"Docs","urlString":"https:\/\/x"})");
        QCOMPARE(bookmark.toJson().value(QStringLiteral("id")).toString(),
                 QStringLiteral("6f9619ff-8b86-d011-b42d-00c04fc964ff"));
        QVERIFY(fails<Bookmark>(R"({"id":"not-a-uuid","name":"Docs","urlString":"https:\/\/x"})"));
        QVERIFY(fails<Bookmark>(R"({"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","name":"Docs"})"));
    }

    void aTemplateObjectWithNoKeysIsNamedTemplateWithANewIdAtEachRead() {
        const auto first = decoded<TaskTemplate>("{}");
        const auto second = decoded<TaskTemplate>("{}");
        QCOMPARE(first.name, QStringLiteral("Template"));
        QVERIFY(!first.id.isNull());
        QVERIFY(first.id != second.id);
        QCOMPARE(first.taskName, QString());
        QCOMPARE(first.listID, std::nullopt);
        QCOMPARE(first.priority, std::nullopt);
        QVERIFY(first.tags.isEmpty());
        QVERIFY(first.custom.isEmpty());
    }

    void aTemplateWritesItsSetFieldsAndLeavesOutAbsentOnes() {
        TaskTemplate bare;
        bare.id = QUuid(QStringLiteral("{00000000-0000-4000-8000-000000000001}"));
        QCOMPARE(Json::serialize(bare.toJson()),
                 QByteArray(R"({"custom":{},"descriptionMarkdown":"","id":"00000000-0000-4000-8000-000000000001",)"
                            R"("name":"Template","tags":[],"taskName":""})"));
    }

    void aTemplateComesBackAsItWasStored() {
        TaskTemplate stored;
        stored.name = QStringLiteral("Bug report");
        stored.listID = QStringLiteral("901");
        stored.listPath = QStringLiteral("Engineering › Backlog › Bugs");
        stored.taskName = QStringLiteral(" [Bug] ");
        stored.descriptionMarkdown = QStringLiteral("## Steps\n");
        stored.status = QStringLiteral("to do");
        stored.priority = 2;
        stored.tags = {QStringLiteral("bug"), QStringLiteral("ui")};
        stored.custom = {{QStringLiteral("f1"), CustomValue::checkbox(true)},
                         {QStringLiteral("f2"), CustomValue::date(std::nullopt)}};
        QCOMPARE(Json::decode<TaskTemplate>(stored.toJson(), QStringLiteral("$")), stored);
    }

    void aTemplateKeyOfTheWrongTypeFails() {
        QVERIFY(fails<TaskTemplate>(R"({"name":1})"));
        QVERIFY(fails<TaskTemplate>(R"({"priority":1.5})"));
        QVERIFY(fails<TaskTemplate>(R"({"tags":"bug"})"));
        QVERIFY(fails<TaskTemplate>(R"({"custom":{"f1":{}}})"));
        QVERIFY(fails<TaskTemplate>(R"({"id":"template-1"})"));
    }

    void aNullTemplateKeyReadsAsItsDefault() {
        const auto read = decoded<TaskTemplate>(R"({"name":null,"status":null,"tags":null})");
        QCOMPARE(read.name, QStringLiteral("Template"));
        QCOMPARE(read.status, std::nullopt);
        QVERIFY(read.tags.isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SettingsValuesTest)
#include "SettingsValuesTest.moc"
