#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

// Writes `bytes` to a new file at `path`, failing the whole test when it can't.
inline QString writtenFile(QString path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("Cannot write %s", qPrintable(path));
    }
    return path;
}

// A new file of `size` bytes at `path` that takes no disk (sparse), failing the whole test when it
// can't be made.
inline QString sparseFile(QString path, qint64 size) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !file.resize(size)) {
        qFatal("Cannot make %s", qPrintable(path));
    }
    return path;
}

// The bytes of a file; empty when it can't be read.
inline QByteArray fileContents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Points TMPDIR at a fresh folder for as long as it lives, so that the files code writes to the
// temporary directory can be checked and are removed with the folder.
class TemporaryFolderOverride {
public:
    TemporaryFolderOverride() { qputenv("TMPDIR", m_folder.path().toLocal8Bit()); }
    ~TemporaryFolderOverride() {
        if (m_hadPrevious) {
            qputenv("TMPDIR", m_previous);
        } else {
            qunsetenv("TMPDIR");
        }
    }
    TemporaryFolderOverride(const TemporaryFolderOverride&) = delete;
    TemporaryFolderOverride& operator=(const TemporaryFolderOverride&) = delete;

    // The names of the files directly in the folder, sorted.
    QStringList fileNames() const { return QDir(m_folder.path()).entryList(QDir::Files, QDir::Name); }

    // A file of that name in a subfolder that fileNames() doesn't list.
    QString writeOutside(const QString& name, const QByteArray& bytes) const {
        QDir(m_folder.path()).mkpath(QStringLiteral("outside"));
        return writtenFile(m_folder.filePath(QStringLiteral("outside/") + name), bytes);
    }

private:
    // Taken before the folder is made, which then lies in the previous temporary directory.
    bool m_hadPrevious = qEnvironmentVariableIsSet("TMPDIR");
    QByteArray m_previous = qgetenv("TMPDIR");
    QTemporaryDir m_folder;
};
