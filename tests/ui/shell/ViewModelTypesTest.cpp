#include "support/PopoverFixture.h"
#include "support/TestMain.h"

#include <QDir>
#include <QMetaEnum>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

// The popover's view models as QML sees them: types of the NorvaneBar module that only the app
// creates, whose states the pages compare with the enums' names.
class ViewModelTypesTest : public QObject {
    Q_OBJECT

    std::unique_ptr<PopoverFixture> m_fixture;

    // A QML object made from the text with those required properties; null when it fails.
    static std::unique_ptr<QObject> create(QQmlEngine& engine, const QByteArray& qml, const QVariantMap& properties) {
        engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent component(&engine);
        component.setData(qml, QUrl::fromLocalFile(QDir::temp().filePath(QStringLiteral("inline.qml"))));
        std::unique_ptr<QObject> object(component.createWithInitialProperties(properties));
        if (!object) {
            qWarning("%s", qPrintable(component.errorString()));
        }
        return object;
    }

private slots:
    void initTestCase() { PopoverWindow::configureQuick(); }
    void init() { m_fixture = std::make_unique<PopoverFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void qmlCannotCreateAViewModel_data() {
        QTest::addColumn<QByteArray>("type");
        for (const char* type : {"AuthViewModel", "OnboardingModel", "LocationPickerViewModel", "AttachmentListModel",
                                 "FieldChipsViewModel"}) {
            QTest::newRow(type) << QByteArray(type);
        }
    }

    void qmlCannotCreateAViewModel() {
        QFETCH(QByteArray, type);
        QQmlEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent component(&engine);
        component.setData("import NorvaneBar\n" + type + " {}\n",
                          QUrl::fromLocalFile(QDir::temp().filePath(QStringLiteral("inline.qml"))));
        QVERIFY(component.isError());
        QVERIFY2(component.errorString().contains(QStringLiteral("The app builds the popover's view models.")),
                 qPrintable(component.errorString()));
    }

    void thePhaseIsAnEnum() {
        const QMetaObject& meta = AuthViewModel::staticMetaObject;
        const QMetaProperty phase = meta.property(meta.indexOfProperty("phase"));
        QVERIFY(phase.isEnumType());
        const QMetaEnum phases = phase.enumerator();
        QCOMPARE(phases.keyCount(), 3);
        QCOMPARE(phases.keyToValue("SignedOut"), int(AuthViewModel::SignedOut));
        QCOMPARE(phases.keyToValue("Validating"), int(AuthViewModel::Validating));
        QCOMPARE(phases.keyToValue("SignedIn"), int(AuthViewModel::SignedIn));
        QCOMPARE(m_fixture->auth->phase(), AuthViewModel::SignedOut);
    }

    void qmlComparesThePhaseByName() {
        QQmlEngine engine;
        const std::unique_ptr<QObject> page = create(engine, R"(
import QtQml
import NorvaneBar
QtObject {
    required property AuthViewModel auth
    readonly property bool signedOut: auth.phase === AuthViewModel.SignedOut
    readonly property int signedOutValue: AuthViewModel.SignedOut
    readonly property int validatingValue: AuthViewModel.Validating
    readonly property int signedInValue: AuthViewModel.SignedIn
}
)",
                                                     {{QStringLiteral("auth"), QVariant::fromValue(m_fixture->auth)}});
        QVERIFY(page);
        QVERIFY(page->property("signedOut").toBool());
        QCOMPARE(page->property("signedOutValue").toInt(), int(AuthViewModel::SignedOut));
        QCOMPARE(page->property("validatingValue").toInt(), int(AuthViewModel::Validating));
        QCOMPARE(page->property("signedInValue").toInt(), int(AuthViewModel::SignedIn));
    }

    void qmlComparesAnAttachmentsKindByName() {
        QQmlEngine engine;
        const std::unique_ptr<QObject> kinds = create(engine, R"(
import QtQml
import NorvaneBar
QtObject {
    readonly property int file: AttachmentListModel.File
    readonly property int image: AttachmentListModel.Image
    readonly property int video: AttachmentListModel.Video
}
)",
                                                      {});
        QVERIFY(kinds);
        QCOMPARE(kinds->property("file").toInt(), int(AttachmentListModel::File));
        QCOMPARE(kinds->property("image").toInt(), int(AttachmentListModel::Image));
        QCOMPARE(kinds->property("video").toInt(), int(AttachmentListModel::Video));
    }
};

NORVANEBAR_TEST_MAIN(ViewModelTypesTest)
#include "ViewModelTypesTest.moc"
