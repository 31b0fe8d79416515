#pragma once

#include <QByteArray>
#include <QString>
#include <exception>
#include <optional>
#include <variant>

// Every way a screen recording fails, with what the person is told.
class ScreenRecordingError : public std::exception {
public:
    // The microphone (or the screen) may not be used; the text says where to allow it.
    struct PermissionDenied {
        QString message;
        bool operator==(const PermissionDenied&) const = default;
    };
    // The movie couldn't be written.
    struct WriterFailed {
        QString message;
        bool operator==(const WriterFailed&) const = default;
    };
    // The movie is larger than a task's attachment may be.
    struct FileTooLarge {
        QString message;
        bool operator==(const FileTooLarge&) const = default;
    };
    // The person ended it; nothing is shown.
    struct Cancelled {
        bool operator==(const Cancelled&) const = default;
    };
    // The picker closed without a screen, window or region.
    struct NoContentSelected {
        bool operator==(const NoContentSelected&) const = default;
    };
    // The finished movie couldn't be added to the draft.
    struct StagingFailed {
        bool operator==(const StagingFailed&) const = default;
    };

    using Case =
        std::variant<PermissionDenied, WriterFailed, FileTooLarge, Cancelled, NoContentSelected, StagingFailed>;

    explicit ScreenRecordingError(Case failure);
    static ScreenRecordingError writerFailed(QString message) {
        return ScreenRecordingError(WriterFailed{std::move(message)});
    }

    const Case& failure() const { return m_failure; }
    template <typename T> bool is() const { return std::holds_alternative<T>(m_failure); }
    bool operator==(const ScreenRecordingError& other) const { return m_failure == other.m_failure; }

    // What the person is told; none for a cancel, which leaves any message on show as it is.
    std::optional<QString> errorDescription() const;
    const char* what() const noexcept override { return m_what.constData(); }

private:
    Case m_failure;
    QByteArray m_what;
};
