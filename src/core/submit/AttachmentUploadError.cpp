#include "core/submit/AttachmentUploadError.h"

#include <QCoreApplication>

AttachmentUploadError::AttachmentUploadError(Case failure)
    : m_failure(failure)
    , m_what(errorDescription().toUtf8()) {}

QString AttachmentUploadError::errorDescription() const {
    switch (m_failure) {
    case Case::fileMissing:
        return QCoreApplication::translate("AttachmentUploadError", "Attachment file not found on disk.");
    }
    return {};
}
