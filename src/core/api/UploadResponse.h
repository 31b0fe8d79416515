#pragma once

#include "core/api/TaskAttachment.h"

#include <QByteArray>
#include <optional>

// Reads the service's answer to an attachment upload: the attachment, or the NVError it amounts to.
// `status` is absent when the answer isn't HTTP; `retryAfter` is the wait a 429 names, if any.
//
// A 2xx answer must be an attachment with an id. The service sometimes reports a failure with a
// success status: a 2xx body that isn't an attachment but carries an error message is a server
// error.
TaskAttachment decodeUploadResponse(const QByteArray& data, std::optional<int> status,
                                    std::optional<double> retryAfter);
