// Sends one file to a task with NorvaneClient::uploadFromFile, the streaming path, and reports what
// it cost this process. Run by bench/sandbox_upload.py beside curl sending the same file.
//
//   native-upload-client API_BASE TOKEN TASK_ID FILE
//
// Prints "name value unit" lines: the upload's wall time, VmRSS before it, the peak during it (VmHWM
// reset through clear_refs first) and the growth, and how many files the upload left in the
// temporary directory. A small upload runs first so that the connection and the libraries are warm.
#include "core/api/DirectUploadSession.h"
#include "core/api/NorvaneClient.h"
#include "core/auth/StaticTokenAuth.h"

#include "bench/ProcessStatus.h"
#include "bench/RunToExit.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryFile>
#include <cstdio>

namespace {
QCoro::Task<int> run(const NorvaneClient& client, QString path, QUrl file) {
    QTemporaryFile warmUp;
    if (!warmUp.open() || warmUp.write("warm") != 4) {
        co_return 2;
    }
    warmUp.close();
    QCoro::Task<TaskAttachment> warming =
        client.uploadFromFile(path, QUrl::fromLocalFile(warmUp.fileName()), QStringLiteral("warm.txt"));
    co_await std::move(warming);

    const qint64 before = ProcessStatus::kiB("VmRSS");
    ProcessStatus::resetPeak();
    QElapsedTimer timer;
    timer.start();
    QCoro::Task<TaskAttachment> uploading = client.uploadFromFile(path, file, file.fileName());
    const TaskAttachment attachment = co_await std::move(uploading);
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    const qint64 peak = ProcessStatus::kiB("VmHWM");
    const qsizetype left =
        QDir(QDir::tempPath()).entryList({QStringLiteral("norvanebar-upload-*")}, QDir::Files).size();
    std::printf("native_upload_time %.2f s\n", seconds);
    std::printf("native_rss_before %.1f MiB\n", static_cast<double>(before) / 1024);
    std::printf("native_rss_peak %.1f MiB\n", static_cast<double>(peak) / 1024);
    std::printf("native_rss_growth %.1f MiB\n", static_cast<double>(peak - before) / 1024);
    std::printf("native_temporary_files_left %lld files\n", static_cast<long long>(left));
    std::printf("native_attachment_id %s\n", qPrintable(attachment.id.value_or(QString())));
    co_return 0;
}
} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 5) {
        std::fprintf(stderr, "usage: native-upload-client API_BASE TOKEN TASK_ID FILE\n");
        return 2;
    }
    const StaticTokenAuth auth(arguments[2]);
    QNetworkAccessManager session;
    DirectUploadSession uploads;
    const NorvaneClient client(auth, &session, &uploads, QUrl(arguments[1]));
    return runToExit(application, run(client, QStringLiteral("task/%1/attachment").arg(arguments[3]),
                                      QUrl::fromLocalFile(arguments[4])));
}
