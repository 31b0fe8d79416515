#pragma once

#include "core/shell/ScreenRecordingCoordinator.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// The floating bar of a recording under way: the record mark or the paused symbol with the time
// recorded, the size so far, the microphone's badge, the camera, pause and stop buttons, and the
// size warning. Everything is read from the coordinator and every button calls it.
class RecordingControlsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The recording's windows build their view models.")
    Q_PROPERTY(bool paused READ paused NOTIFY changed)
    Q_PROPERTY(QString elapsedText READ elapsedText NOTIFY changed)
    Q_PROPERTY(QString sizeText READ sizeText NOTIFY changed)
    Q_PROPERTY(bool showsMicrophone READ showsMicrophone NOTIFY changed)
    Q_PROPERTY(QString microphoneLabel READ microphoneLabel NOTIFY changed)
    Q_PROPERTY(QString microphoneSymbol READ microphoneSymbol NOTIFY changed)
    Q_PROPERTY(QString microphoneHelp READ microphoneHelp NOTIFY changed)
    Q_PROPERTY(MicrophoneTone microphoneTone READ microphoneTone NOTIFY changed)
    Q_PROPERTY(bool facecamVisible READ facecamVisible NOTIFY changed)
    Q_PROPERTY(QString sizeWarning READ sizeWarning NOTIFY changed)

public:
    // The badge's colour: orange for a warning, green while audio is written, else the quiet one.
    enum MicrophoneTone { Warning, Connected, Secondary };
    Q_ENUM(MicrophoneTone)

    explicit RecordingControlsViewModel(ScreenRecordingCoordinator& coordinator, QObject* parent = nullptr);

    bool paused() const { return m_coordinator.isPaused(); }
    QString elapsedText() const;
    QString sizeText() const;
    // The badge shows only for a recording with the microphone.
    bool showsMicrophone() const { return m_coordinator.configuration().captureMicrophone; }
    QString microphoneLabel() const;
    QString microphoneSymbol() const;
    QString microphoneHelp() const;
    MicrophoneTone microphoneTone() const;
    bool facecamVisible() const { return m_coordinator.configuration().facecamStyle.isVisible; }
    QString sizeWarning() const { return m_coordinator.sizeWarning().value_or(QString()); }

    Q_INVOKABLE void stop() { m_coordinator.stopRecording(); }
    Q_INVOKABLE void pauseOrResume() { m_coordinator.pauseOrResume(); }
    Q_INVOKABLE void toggleFacecam() { m_coordinator.toggleFacecam(); }

signals:
    void changed();

private:
    ScreenRecordingCoordinator& m_coordinator;
};
