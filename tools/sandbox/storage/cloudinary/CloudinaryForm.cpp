#include "sandbox/storage/cloudinary/CloudinaryForm.h"

#include <QDir>
#include <QFile>
#include <QUuid>

CloudinaryForm CloudinaryForm::receive(StreamedBody& body, const QString& folder) {
    CloudinaryForm form;
    if (!body.isMultipart()) {
        body.discard();
        return form;
    }
    QFile stored;
    // Where the bytes of the current part go: the file, a text field, or nowhere (a second file).
    enum class Target { Nowhere, File, Field } target = Target::Nowhere;
    const bool wellFormed = body.readMultipart(
        [&](const MultipartPartHeader& header) {
            stored.close();
            if (header.name == "file" && !form.file) {
                form.file = File{QDir(folder).filePath(QUuid::createUuid().toString(QUuid::WithoutBraces)),
                                 QString::fromUtf8(header.filename),
                                 0,
                                 {}};
                stored.setFileName(form.file->storedPath);
                target = Target::File;
                if (!stored.open(QIODevice::WriteOnly)) {
                    form.problem = Problem::WriteFailed;
                }
            } else if (header.name != "file") {
                form.fields.append({header.name, QByteArray()});
                target = Target::Field;
            } else {
                target = Target::Nowhere;
            }
            return true;
        },
        [&](const char* data, size_t size) {
            const auto length = static_cast<qsizetype>(size);
            if (form.problem != Problem::None) {
                return true;
            }
            if (target == Target::Field) {
                QByteArray& value = form.fields.last().second;
                value.append(data, length);
                if (value.size() > maximumFieldSize) {
                    form.problem = Problem::Malformed;
                }
            } else if (target == Target::File) {
                if (form.file->signature.size() < signatureSize) {
                    form.file->signature.append(data, std::min(length, signatureSize - form.file->signature.size()));
                }
                form.file->size += length;
                if (stored.write(data, length) != length) {
                    form.problem = Problem::WriteFailed;
                }
            }
            return true;
        });
    stored.close();
    if (!wellFormed) {
        body.discard();
        if (form.problem == Problem::None) {
            form.problem = Problem::Malformed;
        }
    }
    if (form.problem != Problem::None && form.file) {
        QFile::remove(form.file->storedPath);
        form.file.reset();
    }
    return form;
}

std::optional<QByteArray> CloudinaryForm::field(QByteArrayView name) const {
    for (const auto& [key, value] : fields) {
        if (key == name) {
            return value;
        }
    }
    return std::nullopt;
}
