#pragma once

#include "core/settings/SettingsStore.h"

#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

// The defaults of a screen recording, as the recording's setup sheet and the "Screen Recording"
// section of the General tab show them: quality, microphone, pointer, the camera and its look, and
// the longest recording. Every change is saved at once, so the last choice is the next default.
class RecordingDefaultsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The windows build their view models.")
    Q_PROPERTY(QStringList qualityLabels READ qualityLabels CONSTANT)
    Q_PROPERTY(int qualityIndex READ qualityIndex WRITE setQualityIndex NOTIFY changed)
    Q_PROPERTY(bool captureMicrophone READ captureMicrophone WRITE setCaptureMicrophone NOTIFY changed)
    Q_PROPERTY(bool showCursor READ showCursor WRITE setShowCursor NOTIFY changed)
    Q_PROPERTY(bool includeFacecam READ includeFacecam WRITE setIncludeFacecam NOTIFY changed)
    Q_PROPERTY(bool facecamVisible READ facecamVisible WRITE setFacecamVisible NOTIFY changed)
    Q_PROPERTY(QStringList shapeLabels READ shapeLabels CONSTANT)
    Q_PROPERTY(int shapeIndex READ shapeIndex WRITE setShapeIndex NOTIFY changed)
    Q_PROPERTY(QStringList positionLabels READ positionLabels CONSTANT)
    Q_PROPERTY(int positionIndex READ positionIndex WRITE setPositionIndex NOTIFY changed)
    Q_PROPERTY(QStringList backgroundLabels READ backgroundLabels CONSTANT)
    Q_PROPERTY(int backgroundIndex READ backgroundIndex WRITE setBackgroundIndex NOTIFY changed)
    Q_PROPERTY(QString backgroundImageName READ backgroundImageName NOTIFY changed)
    Q_PROPERTY(QStringList maxDurationLabels READ maxDurationLabels CONSTANT)
    Q_PROPERTY(int maxDurationIndex READ maxDurationIndex WRITE setMaxDurationIndex NOTIFY changed)

public:
    explicit RecordingDefaultsViewModel(SettingsStore& settings, QObject* parent = nullptr);

    static QStringList qualityLabels();
    int qualityIndex() const;
    void setQualityIndex(int index);

    bool captureMicrophone() const { return settings().recordingCaptureMicrophone; }
    void setCaptureMicrophone(bool capture);
    bool showCursor() const { return settings().recordingShowCursor; }
    void setShowCursor(bool show);
    bool includeFacecam() const { return settings().recordingIncludeFacecam; }
    void setIncludeFacecam(bool include);
    // The setup sheet's switch: switching the camera on also shows it.
    Q_INVOKABLE void chooseIncludeFacecam(bool include);
    bool facecamVisible() const { return settings().recordingFacecamStyle.isVisible; }
    void setFacecamVisible(bool visible);

    static QStringList shapeLabels();
    int shapeIndex() const;
    void setShapeIndex(int index);
    static QStringList positionLabels();
    int positionIndex() const;
    void setPositionIndex(int index);
    // Any choice but a custom image forgets the image.
    static QStringList backgroundLabels();
    int backgroundIndex() const;
    void setBackgroundIndex(int index);
    // The name of the image chosen here for the background; empty before one is chosen.
    const QString& backgroundImageName() const { return m_backgroundImageName; }
    // Copies the image at `file` among the camera's backgrounds and makes it the custom image;
    // false when it can't be copied.
    Q_INVOKABLE bool importBackgroundImage(const QUrl& file);

    static QStringList maxDurationLabels();
    // -1 for a length the settings file holds but the choices don't.
    int maxDurationIndex() const;
    void setMaxDurationIndex(int index);

signals:
    void changed();

private:
    const AppSettings& settings() const { return m_settings.settings(); }

    SettingsStore& m_settings;
    QString m_backgroundImageName;
};
