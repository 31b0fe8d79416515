#pragma once

#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <optional>

// What gst-discoverer-1.0 -v, and ffprobe for the count of video frames, read in a movie file.
struct MovieFacts {
    // Whether the file is a movie at all.
    bool playable = false;
    double seconds = 0;
    // The H.264 profile of the video ("high", "constrained-baseline"), empty without H.264 video.
    QString videoProfile;
    int width = 0;
    int height = 0;
    int videoFrames = 0;
    // The caps of the audio stream ("audio/x-raw, format=(string)S16LE, …"), empty without one.
    QString audioCaps;
    // What the tools wrote, for a failure message.
    QString report;
};

inline QString toolOutput(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        return {};
    }
    return QString::fromUtf8(process.readAll());
}

inline MovieFacts probeMovie(const QString& path) {
    MovieFacts facts;
    facts.report = toolOutput(QStringLiteral("gst-discoverer-1.0"), {QStringLiteral("-v"), path});
    const QRegularExpressionMatch duration =
        QRegularExpression(QStringLiteral(R"(^\s*Duration: (\d+):(\d+):([\d.]+))"), QRegularExpression::MultilineOption)
            .match(facts.report);
    facts.playable = duration.hasMatch() && facts.report.contains(QStringLiteral("container #0: video/quicktime"));
    if (duration.hasMatch()) {
        facts.seconds =
            duration.captured(1).toInt() * 3600 + duration.captured(2).toInt() * 60 + duration.captured(3).toDouble();
    }
    const QRegularExpressionMatch video = QRegularExpression(QStringLiteral(R"(^\s*video #\d+: video/x-h264, (.*)$)"),
                                                             QRegularExpression::MultilineOption)
                                              .match(facts.report);
    if (video.hasMatch()) {
        const QString caps = video.captured(1);
        facts.videoProfile =
            QRegularExpression(QStringLiteral(R"(profile=\(string\)([\w-]+))")).match(caps).captured(1);
        facts.width = QRegularExpression(QStringLiteral(R"(width=\(int\)(\d+))")).match(caps).captured(1).toInt();
        facts.height = QRegularExpression(QStringLiteral(R"(height=\(int\)(\d+))")).match(caps).captured(1).toInt();
    }
    facts.audioCaps =
        QRegularExpression(QStringLiteral(R"(^\s*audio #\d+: (.*)$)"), QRegularExpression::MultilineOption)
            .match(facts.report)
            .captured(1);
    // The frames a player shows: decoded, and within the movie's edit list (a last frame without a
    // duration lies outside it).
    const QString frames =
        toolOutput(QStringLiteral("ffprobe"),
                   {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-select_streams"),
                    QStringLiteral("v:0"), QStringLiteral("-count_frames"), QStringLiteral("-show_entries"),
                    QStringLiteral("stream=nb_read_frames"), QStringLiteral("-of"), QStringLiteral("csv=p=0"), path});
    facts.videoFrames = frames.trimmed().toInt();
    facts.report += frames;
    return facts;
}

// The mean loudness of a movie's first sound track in dB below full scale, as ffmpeg's volumedetect
// measures it (silence reads about -91); none without a sound track.
inline std::optional<double> meanVolume(const QString& path) {
    QProcess process;
    process.start(QStringLiteral("ffmpeg"),
                  {QStringLiteral("-nostdin"), QStringLiteral("-i"), path, QStringLiteral("-map"),
                   QStringLiteral("0:a:0"), QStringLiteral("-af"), QStringLiteral("volumedetect"), QStringLiteral("-f"),
                   QStringLiteral("null"), QStringLiteral("-")});
    if (!process.waitForFinished(60'000) || process.exitCode() != 0) {
        return std::nullopt;
    }
    const QRegularExpressionMatch mean = QRegularExpression(QStringLiteral(R"(mean_volume: (-?[\d.]+) dB)"))
                                             .match(QString::fromUtf8(process.readAllStandardError()));
    return mean.hasMatch() ? std::optional(mean.captured(1).toDouble()) : std::nullopt;
}
