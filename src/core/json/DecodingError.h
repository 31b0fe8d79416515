#pragma once

#include <QString>
#include <stdexcept>

// A JSON document that doesn't have the shape a record asks for. `path` names where, as in
// "tasks[3].status".
class DecodingError : public std::runtime_error {
public:
    DecodingError(QString path, QString description)
        : std::runtime_error((path + QStringLiteral(": ") + description).toStdString())
        , m_path(std::move(path))
        , m_description(std::move(description)) {}

    const QString& path() const { return m_path; }
    const QString& description() const { return m_description; }

private:
    QString m_path;
    QString m_description;
};
