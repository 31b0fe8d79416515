#pragma once

#include "core/async/Clock.h"
#include "core/recording/PendingRecordingPreview.h"
#include "desktop/compose/AttachmentExporterViewModel.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>
#include <functional>

// The review of a finished recording: the movie to play, its length and size, the size warning,
// and the four ways out: attach it to the task, save a copy and go on reviewing, record again, or
// discard it (closing the window discards it too).
class RecordingReviewViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The recording's windows build their view models.")
    Q_PROPERTY(QUrl movie READ movie NOTIFY changed)
    Q_PROPERTY(QString info READ info NOTIFY changed)
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
    Q_PROPERTY(AttachmentExporterViewModel* exporter READ exporter CONSTANT)

public:
    explicit RecordingReviewViewModel(Clock clock = Clocks::system(), QObject* parent = nullptr);

    // Shows `preview` until one of the actions is taken or it is cleared.
    void show(const PendingRecordingPreview& preview, std::function<void()> onAttach, std::function<void()> onReRecord,
              std::function<void()> onDiscard);
    void clear();
    // Whether a movie waits for the person's decision.
    bool isPending() const { return bool(m_onDiscard); }

    QUrl movie() const { return m_preview.url; }
    // The length, and the file's size when it can be read.
    QString info() const;
    QString warning() const { return m_preview.sizeWarning.value_or(QString()); }
    AttachmentExporterViewModel* exporter() { return &m_exporter; }
    // "Screen Recording 2026-11-27 at 14.05.09.mov", at the local time of asking.
    Q_INVOKABLE QString proposedSaveName() const;

    Q_INVOKABLE void attach();
    // Asks where to save a copy; the movie stays under review.
    Q_INVOKABLE void save();
    Q_INVOKABLE void reRecord();
    Q_INVOKABLE void discard();

signals:
    void changed();

private:
    // Forgets the actions, so that each runs once, and runs `action`.
    void take(std::function<void()> RecordingReviewViewModel::*action);

    Clock m_clock;
    PendingRecordingPreview m_preview;
    std::function<void()> m_onAttach;
    std::function<void()> m_onReRecord;
    std::function<void()> m_onDiscard;
    AttachmentExporterViewModel m_exporter;
};
