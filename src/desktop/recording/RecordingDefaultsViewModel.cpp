#include "desktop/recording/RecordingDefaultsViewModel.h"

#include "core/recording/FacecamBackgroundStore.h"
#include "core/recording/FacecamShape.h"

#include <QFileInfo>
#include <array>

namespace {
constexpr std::array maxDurationMinutes{5, 10, 15, 30, 45};

// The index as an enumeration of `count` cases; none for an index outside them.
template <typename Enum> std::optional<Enum> caseAt(int index, int count) {
    return index >= 0 && index < count ? std::optional(static_cast<Enum>(index)) : std::nullopt;
}
} // namespace

RecordingDefaultsViewModel::RecordingDefaultsViewModel(SettingsStore& settings, QObject* parent)
    : QObject(parent)
    , m_settings(settings) {
    connect(&m_settings, &SettingsStore::settingsChanged, this, &RecordingDefaultsViewModel::changed);
}

QStringList RecordingDefaultsViewModel::qualityLabels() {
    return {tr("720p"), tr("1080p")};
}

int RecordingDefaultsViewModel::qualityIndex() const {
    return settings().recordingQuality == RecordingQuality::hd1080 ? 1 : 0;
}

void RecordingDefaultsViewModel::setQualityIndex(int index) {
    if (index == 0 || index == 1) {
        m_settings.modify([index](AppSettings& changed) {
            changed.recordingQuality = index == 1 ? RecordingQuality::hd1080 : RecordingQuality::hd720;
        });
    }
}

void RecordingDefaultsViewModel::setCaptureMicrophone(bool capture) {
    m_settings.modify([capture](AppSettings& changed) { changed.recordingCaptureMicrophone = capture; });
}

void RecordingDefaultsViewModel::setShowCursor(bool show) {
    m_settings.modify([show](AppSettings& changed) { changed.recordingShowCursor = show; });
}

void RecordingDefaultsViewModel::setIncludeFacecam(bool include) {
    m_settings.modify([include](AppSettings& changed) { changed.recordingIncludeFacecam = include; });
}

void RecordingDefaultsViewModel::chooseIncludeFacecam(bool include) {
    m_settings.modify([include](AppSettings& changed) {
        changed.recordingIncludeFacecam = include;
        if (include) {
            changed.recordingFacecamStyle.isVisible = true;
        }
    });
}

void RecordingDefaultsViewModel::setFacecamVisible(bool visible) {
    m_settings.modify([visible](AppSettings& changed) { changed.recordingFacecamStyle.isVisible = visible; });
}

QStringList RecordingDefaultsViewModel::shapeLabels() {
    return {tr("Square"), tr("Rounded"), tr("Circle")};
}

int RecordingDefaultsViewModel::shapeIndex() const {
    return static_cast<int>(facecamShape(settings().recordingFacecamStyle.cornerRadius));
}

void RecordingDefaultsViewModel::setShapeIndex(int index) {
    if (const std::optional<FacecamShape> shape = caseAt<FacecamShape>(index, 3)) {
        m_settings.modify(
            [shape](AppSettings& changed) { changed.recordingFacecamStyle.cornerRadius = cornerRadius(*shape); });
    }
}

QStringList RecordingDefaultsViewModel::positionLabels() {
    return {tr("Top left"), tr("Top right"), tr("Bottom left"), tr("Bottom right")};
}

int RecordingDefaultsViewModel::positionIndex() const {
    return static_cast<int>(settings().recordingFacecamStyle.corner);
}

void RecordingDefaultsViewModel::setPositionIndex(int index) {
    if (const std::optional<FacecamCorner> corner = caseAt<FacecamCorner>(index, 4)) {
        m_settings.modify([corner](AppSettings& changed) { changed.recordingFacecamStyle.corner = *corner; });
    }
}

QStringList RecordingDefaultsViewModel::backgroundLabels() {
    return {tr("None"), tr("Blur"), tr("Custom image")};
}

int RecordingDefaultsViewModel::backgroundIndex() const {
    return static_cast<int>(settings().recordingFacecamStyle.backgroundKind);
}

void RecordingDefaultsViewModel::setBackgroundIndex(int index) {
    if (const std::optional<FacecamBackgroundKind> kind = caseAt<FacecamBackgroundKind>(index, 3)) {
        if (*kind != FacecamBackgroundKind::customImage) {
            m_backgroundImageName.clear();
        }
        m_settings.modify([kind](AppSettings& changed) {
            changed.recordingFacecamStyle.backgroundKind = *kind;
            if (*kind != FacecamBackgroundKind::customImage) {
                changed.recordingFacecamStyle.customImagePath.reset();
            }
        });
    }
}

bool RecordingDefaultsViewModel::importBackgroundImage(const QUrl& file) {
    const std::optional<QString> imported = FacecamBackgroundStore::importImage(file);
    if (!imported) {
        return false;
    }
    m_backgroundImageName = QFileInfo(file.toLocalFile()).fileName();
    m_settings.modify([&imported](AppSettings& changed) {
        changed.recordingFacecamStyle.backgroundKind = FacecamBackgroundKind::customImage;
        changed.recordingFacecamStyle.customImagePath = imported;
    });
    return true;
}

QStringList RecordingDefaultsViewModel::maxDurationLabels() {
    QStringList labels;
    for (const int minutes : maxDurationMinutes) {
        labels.append(tr("%n minutes", nullptr, minutes));
    }
    return labels;
}

int RecordingDefaultsViewModel::maxDurationIndex() const {
    const auto* found =
        std::find(maxDurationMinutes.begin(), maxDurationMinutes.end(), settings().recordingMaxDurationMinutes);
    return found == maxDurationMinutes.end() ? -1 : static_cast<int>(found - maxDurationMinutes.begin());
}

void RecordingDefaultsViewModel::setMaxDurationIndex(int index) {
    if (index >= 0 && index < int(maxDurationMinutes.size())) {
        m_settings.modify(
            [index](AppSettings& changed) { changed.recordingMaxDurationMinutes = maxDurationMinutes[index]; });
    }
}
