// Puts one file into an S3 bucket through CloudflareR2Provider, and reports what it cost this
// process. Run by bench/r2_upload.py beside curl --aws-sigv4 doing the same PUT.
//
//   r2-upload-client ENDPOINT_BASE BUCKET ACCESS_KEY_ID SECRET_ACCESS_KEY FILE
//
// Prints "name value unit" lines: the upload's wall time (reading the file, hashing, signing and
// sending), VmRSS before it, the peak during it (VmHWM reset through clear_refs first) and the
// growth, and the public address. A small upload runs first so that the connection and the
// libraries are warm.
#include "core/api/DirectUploadSession.h"
#include "core/storage/CloudflareR2Provider.h"

#include "bench/ProcessStatus.h"
#include "bench/RunToExit.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QTemporaryFile>
#include <cstdio>

namespace {
QCoro::Task<int> run(const CloudflareR2Provider& provider, QUrl file) {
    QTemporaryFile warmUp;
    if (!warmUp.open() || warmUp.write("warm") != 4) {
        co_return 2;
    }
    warmUp.close();
    QCoro::Task<QUrl> warming = provider.upload(QUrl::fromLocalFile(warmUp.fileName()), QStringLiteral("warm.txt"));
    co_await std::move(warming);

    const qint64 before = ProcessStatus::kiB("VmRSS");
    ProcessStatus::resetPeak();
    QElapsedTimer timer;
    timer.start();
    QCoro::Task<QUrl> uploading = provider.upload(file, file.fileName());
    const QUrl url = co_await std::move(uploading);
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    const qint64 peak = ProcessStatus::kiB("VmHWM");
    std::printf("r2_upload_time %.3f s\n", seconds);
    std::printf("r2_rss_before %.1f MiB\n", static_cast<double>(before) / 1024);
    std::printf("r2_rss_peak %.1f MiB\n", static_cast<double>(peak) / 1024);
    std::printf("r2_rss_growth %.1f MiB\n", static_cast<double>(peak - before) / 1024);
    std::printf("r2_public_url %s\n", url.toEncoded().constData());
    co_return 0;
}
} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 6) {
        std::fprintf(stderr, "usage: r2-upload-client ENDPOINT_BASE BUCKET ACCESS_KEY_ID SECRET_ACCESS_KEY FILE\n");
        return 2;
    }
    AppSettings settings;
    settings.cloudflareR2AccountID = QStringLiteral("bench");
    settings.cloudflareR2Bucket = arguments[2];
    settings.cloudflareR2PublicURLBase = QStringLiteral("https://files.example.com");
    settings.cloudflareR2EndpointBaseURL = arguments[1];
    // The session the program's uploads go through.
    DirectUploadSession session;
    const CloudflareR2Provider provider(settings, arguments[3], arguments[4], &session);
    return runToExit(application, run(provider, QUrl::fromLocalFile(arguments[5])));
}
