#pragma once

#include <QByteArray>
#include <QIODevice>

// A request body that can be read once and never again. Qt's HTTP stack sends a request a second
// time, unseen, when its connection closes before any answer (Qt 6.4, handleUnexpectedEOF); with
// this body it can't rewind, so the request fails instead of reaching the service twice. A task
// the service created but whose answer was lost would otherwise be created again.
class OneShotBody : public QIODevice {
    Q_OBJECT

public:
    explicit OneShotBody(QByteArray bytes, QObject* parent = nullptr);

    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    qint64 size() const override { return m_bytes.size(); }
    qint64 bytesAvailable() const override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 maxSize) override;

private:
    const QByteArray m_bytes;
    qint64 m_read = 0;
};
