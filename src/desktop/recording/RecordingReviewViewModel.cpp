#include "desktop/recording/RecordingReviewViewModel.h"

#include "core/compose/AttachmentSizeLimits.h"
#include "core/support/ByteCountText.h"

RecordingReviewViewModel::RecordingReviewViewModel(Clock clock, QObject* parent)
    : QObject(parent)
    , m_clock(std::move(clock)) {}

void RecordingReviewViewModel::show(const PendingRecordingPreview& preview, std::function<void()> onAttach,
                                    std::function<void()> onReRecord, std::function<void()> onDiscard) {
    m_preview = preview;
    m_onAttach = std::move(onAttach);
    m_onReRecord = std::move(onReRecord);
    m_onDiscard = std::move(onDiscard);
    emit changed();
}

void RecordingReviewViewModel::clear() {
    m_onAttach = nullptr;
    m_onReRecord = nullptr;
    m_onDiscard = nullptr;
    // The player lets go of the movie, which is moved or deleted next.
    m_preview = PendingRecordingPreview();
    emit changed();
}

QString RecordingReviewViewModel::info() const {
    const QString length = AttachmentSizeLimits::formattedDuration(m_preview.duration);
    const std::optional<qint64> size = AttachmentSizeLimits::fileSize(m_preview.url);
    return size ? tr("%1 · %2").arg(length, formattedByteCount(*size)) : length;
}

QString RecordingReviewViewModel::proposedSaveName() const {
    const QDateTime now = m_clock().toLocalTime();
    return tr("Screen Recording %1.mov").arg(now.toString(QStringLiteral("yyyy-MM-dd 'at' HH.mm.ss")));
}

void RecordingReviewViewModel::attach() {
    take(&RecordingReviewViewModel::m_onAttach);
}

void RecordingReviewViewModel::save() {
    if (isPending()) {
        m_exporter.save(m_preview.url, proposedSaveName());
    }
}

void RecordingReviewViewModel::reRecord() {
    take(&RecordingReviewViewModel::m_onReRecord);
}

void RecordingReviewViewModel::discard() {
    take(&RecordingReviewViewModel::m_onDiscard);
}

void RecordingReviewViewModel::take(std::function<void()> RecordingReviewViewModel::*action) {
    const std::function<void()> chosen = this->*action;
    clear();
    if (chosen) {
        chosen();
    }
}
