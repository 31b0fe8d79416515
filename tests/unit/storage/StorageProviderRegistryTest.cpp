#include "core/storage/StorageProviderRegistry.h"
#include "core/storage/StorageProviderError.h"
#include "support/TestMain.h"

#include "support/RunTask.h"

#include <QCoroTimer>
#include <QTest>

namespace {
// Records the settings it was made from, and uploads nowhere.
class SettingsProbe : public ExternalStorageProvider {
public:
    explicit SettingsProbe(AppSettings settings)
        : settings(std::move(settings)) {}

    QString displayName() const override { return QStringLiteral("Probe"); }
    void validateConfiguration() const override {}
    QCoro::Task<QUrl> upload(QUrl, QString) const override { co_return QUrl(QStringLiteral("https://probe/")); }

    const AppSettings settings;
};

// A factory that makes its provider after the event loop has turned once.
QCoro::Task<StorageProviderRegistry::Provider> probeAfterAWait(AppSettings settings) {
    co_await QCoro::sleepFor(std::chrono::milliseconds(0));
    co_return std::make_shared<SettingsProbe>(std::move(settings));
}

AppSettings settingsFor(StorageProviderKind kind) {
    AppSettings settings;
    settings.storageProvider = kind;
    return settings;
}
} // namespace

class StorageProviderRegistryTest : public QObject {
    Q_OBJECT

private slots:
    void theErrorDescribesEachCase() {
        QCOMPARE(StorageProviderError::missingConfiguration(QStringLiteral("Set a bucket.")).errorDescription(),
                 QStringLiteral("Set a bucket."));
        QCOMPARE(StorageProviderError::uploadFailed(QStringLiteral("HTTP 500")).errorDescription(),
                 QStringLiteral("HTTP 500"));
        QCOMPARE(StorageProviderError::invalidResponse().errorDescription(),
                 QStringLiteral("Unexpected response from storage provider."));
        QCOMPARE(QString::fromUtf8(StorageProviderError::invalidResponse().what()),
                 QStringLiteral("Unexpected response from storage provider."));
    }

    void norvaneGivesNoProvider() {
        StorageProviderRegistry registry;
        registry.setFactory(StorageProviderKind::norvane,
                            [](const AppSettings& settings) { return std::make_shared<SettingsProbe>(settings); });
        QVERIFY(!runTask(registry.makeProvider(settingsFor(StorageProviderKind::norvane))));
    }

    void eachExternalKindGoesByItsName() {
        QCOMPARE(StorageProviderRegistry::displayName(StorageProviderKind::cloudflareR2),
                 QStringLiteral("Cloudflare R2"));
        QCOMPARE(StorageProviderRegistry::displayName(StorageProviderKind::cloudinary), QStringLiteral("Cloudinary"));
        QCOMPARE(StorageProviderRegistry::displayName(StorageProviderKind::googleDrive),
                 QStringLiteral("Google Drive"));
    }

    void aKindWithoutFactoryHasNoProvider() {
        const StorageProviderRegistry registry;
        for (const StorageProviderKind kind :
             {StorageProviderKind::cloudflareR2, StorageProviderKind::cloudinary, StorageProviderKind::googleDrive}) {
            QVERIFY(!runTask(registry.makeProvider(settingsFor(kind))));
        }
    }

    void theFactoryOfTheChosenKindMakesTheProviderFromTrimmedTexts() {
        StorageProviderRegistry registry;
        registry.setFactory(StorageProviderKind::cloudinary,
                            [](const AppSettings& settings) { return std::make_shared<SettingsProbe>(settings); });
        AppSettings settings = settingsFor(StorageProviderKind::cloudinary);
        settings.cloudinaryCloudName = QStringLiteral("  demo-cloud\n");
        settings.cloudinaryUploadPreset = QStringLiteral("\tunsigned ");
        settings.cloudflareR2AccountID = QStringLiteral(" account ");
        settings.cloudflareR2Bucket = QStringLiteral("\nbucket\n");
        settings.cloudflareR2PublicURLBase = QStringLiteral(" https://pub.example.com/ ");
        settings.googleDriveFolderID = QStringLiteral(" folder\r\n");

        const auto provider = std::dynamic_pointer_cast<const SettingsProbe>(runTask(registry.makeProvider(settings)));
        QVERIFY(provider);
        QCOMPARE(provider->settings.cloudinaryCloudName, QStringLiteral("demo-cloud"));
        QCOMPARE(provider->settings.cloudinaryUploadPreset, QStringLiteral("unsigned"));
        QCOMPARE(provider->settings.cloudflareR2AccountID, QStringLiteral("account"));
        QCOMPARE(provider->settings.cloudflareR2Bucket, QStringLiteral("bucket"));
        QCOMPARE(provider->settings.cloudflareR2PublicURLBase, QStringLiteral("https://pub.example.com/"));
        QCOMPARE(provider->settings.googleDriveFolderID, QStringLiteral("folder"));
    }

    void anIncompleteConfigurationStillMakesAProvider() {
        StorageProviderRegistry registry;
        registry.setFactory(StorageProviderKind::googleDrive,
                            [](const AppSettings& settings) { return std::make_shared<SettingsProbe>(settings); });
        QVERIFY(runTask(registry.makeProvider(settingsFor(StorageProviderKind::googleDrive))));
        QVERIFY(std::dynamic_pointer_cast<const SettingsProbe>(
            runTask(registry.makeProvider(settingsFor(StorageProviderKind::googleDrive)))));
    }

    void aFactoryServesOnlyItsOwnKind() {
        StorageProviderRegistry registry;
        registry.setFactory(StorageProviderKind::cloudinary,
                            [](const AppSettings& settings) { return std::make_shared<SettingsProbe>(settings); });
        QVERIFY(!runTask(registry.makeProvider(settingsFor(StorageProviderKind::cloudflareR2))));
        QVERIFY(runTask(registry.makeProvider(settingsFor(StorageProviderKind::cloudinary))));
    }

    void aFactoryThatWaitsGivesItsProviderOnceItIsMade() {
        StorageProviderRegistry registry;
        registry.setFactory(StorageProviderKind::cloudflareR2,
                            [](const AppSettings& settings) { return probeAfterAWait(settings); });
        AppSettings settings = settingsFor(StorageProviderKind::cloudflareR2);
        settings.cloudflareR2Bucket = QStringLiteral(" bucket ");
        const auto provider = std::dynamic_pointer_cast<const SettingsProbe>(runTask(registry.makeProvider(settings)));
        QVERIFY(provider);
        QCOMPARE(provider->settings.cloudflareR2Bucket, QStringLiteral("bucket"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(StorageProviderRegistryTest)
#include "StorageProviderRegistryTest.moc"
