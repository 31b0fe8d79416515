#pragma once

#include <QString>
#include <stdexcept>

// A file that couldn't be created, read or written, with the file layer's own reason.
class FileError : public std::runtime_error {
public:
    FileError(QString path, QString reason)
        : std::runtime_error((path + QStringLiteral(": ") + reason).toStdString())
        , m_path(std::move(path))
        , m_reason(std::move(reason)) {}

    const QString& path() const { return m_path; }
    const QString& reason() const { return m_reason; }

private:
    QString m_path;
    QString m_reason;
};
