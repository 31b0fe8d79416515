#include "core/recording/ScreenRecordingError.h"

#include "core/support/Overloaded.h"

#include <QCoreApplication>

namespace {
QString translated(const char* text) {
    return QCoreApplication::translate("ScreenRecordingError", text);
}
} // namespace

ScreenRecordingError::ScreenRecordingError(Case failure)
    : m_failure(std::move(failure))
    , m_what(errorDescription().value_or(QStringLiteral("cancelled")).toUtf8()) {}

std::optional<QString> ScreenRecordingError::errorDescription() const {
    return std::visit(
        Overloaded{
            [](const PermissionDenied& failure) { return std::optional(failure.message); },
            [](const WriterFailed& failure) {
                return std::optional(translated("Recording failed: ") + failure.message);
            },
            [](const FileTooLarge& failure) { return std::optional(failure.message); },
            [](const Cancelled&) { return std::optional<QString>(); },
            [](const NoContentSelected&) {
                return std::optional(translated("No screen, window, or region was selected."));
            },
            [](const StagingFailed&) { return std::optional(translated("Could not attach the recording.")); },
        },
        m_failure);
}
