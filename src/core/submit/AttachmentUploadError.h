#pragma once

#include <QByteArray>
#include <QString>
#include <exception>

// A native upload that can't begin because of the file itself.
class AttachmentUploadError : public std::exception {
public:
    enum class Case {
        // The pinned file is gone from the disk.
        fileMissing,
    };

    explicit AttachmentUploadError(Case failure);

    Case failure() const { return m_failure; }
    // What the user is shown.
    QString errorDescription() const;
    const char* what() const noexcept override { return m_what.constData(); }

private:
    Case m_failure;
    QByteArray m_what;
};
