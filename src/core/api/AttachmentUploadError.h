#pragma once

#include <QString>
#include <exception>

// An attachment that can't be sent at all: its file is gone. Never worth another attempt.
class AttachmentUploadError : public std::exception {
public:
    enum class Case { fileMissing };

    explicit AttachmentUploadError(Case failure)
        : m_failure(failure) {}

    Case failure() const { return m_failure; }
    QString errorDescription() const;
    const char* what() const noexcept override;

private:
    Case m_failure;
};
