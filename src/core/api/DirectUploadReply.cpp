#include "core/api/DirectUploadReply.h"

#include "core/api/ConnectionPool.h"

#include <QCoreApplication>
#include <QSslSocket>
#include <QTimer>

namespace {
// The piece of the body read and written at a time, and how much may wait in the connection's
// buffer: enough to keep a fast link busy, little enough to keep memory flat for any file.
constexpr qint64 bodyPieceBytes = qint64{128} * 1024;
constexpr qint64 bufferedBytes = qint64{512} * 1024;

QByteArray hostField(const QUrl& url) {
    QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    if (host.contains(':')) {
        host = '[' + host + ']';
    }
    const int defaultPort = url.scheme() == u"https" ? 443 : 80;
    if (url.port(defaultPort) != defaultPort) {
        host += ':' + QByteArray::number(url.port());
    }
    return host;
}

QByteArray requestTarget(const QUrl& url) {
    QByteArray target = url.path(QUrl::FullyEncoded).toLatin1();
    if (target.isEmpty()) {
        target = "/";
    }
    if (url.hasQuery()) {
        target += '?' + url.query(QUrl::FullyEncoded).toLatin1();
    }
    return target;
}

QNetworkReply::NetworkError replyError(QAbstractSocket::SocketError error) {
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
        return QNetworkReply::ConnectionRefusedError;
    case QAbstractSocket::RemoteHostClosedError:
        return QNetworkReply::RemoteHostClosedError;
    case QAbstractSocket::HostNotFoundError:
        return QNetworkReply::HostNotFoundError;
    case QAbstractSocket::SocketTimeoutError:
        return QNetworkReply::TimeoutError;
    case QAbstractSocket::NetworkError:
        return QNetworkReply::TemporaryNetworkFailureError;
    case QAbstractSocket::SslHandshakeFailedError:
        return QNetworkReply::SslHandshakeFailedError;
    case QAbstractSocket::ProxyAuthenticationRequiredError:
        return QNetworkReply::ProxyAuthenticationRequiredError;
    case QAbstractSocket::ProxyConnectionRefusedError:
        return QNetworkReply::ProxyConnectionRefusedError;
    case QAbstractSocket::ProxyConnectionClosedError:
        return QNetworkReply::ProxyConnectionClosedError;
    case QAbstractSocket::ProxyConnectionTimeoutError:
        return QNetworkReply::ProxyTimeoutError;
    case QAbstractSocket::ProxyNotFoundError:
        return QNetworkReply::ProxyNotFoundError;
    default:
        return QNetworkReply::UnknownNetworkError;
    }
}
} // namespace

DirectUploadReply::DirectUploadReply(QNetworkAccessManager::Operation operation, const QNetworkRequest& request,
                                     QByteArray verb, QIODevice* body, qint64 bodySize, ConnectionPool* pool,
                                     QObject* parent)
    : QNetworkReply(parent)
    , m_verb(std::move(verb))
    , m_body(body)
    , m_bodySize(bodySize)
    , m_pool(pool) {
    setRequest(request);
    setUrl(request.url());
    setOperation(operation);
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    // Started from the event loop, as Qt's replies are, so the caller connects to it first.
    QTimer::singleShot(0, this, &DirectUploadReply::openConnection);
}

DirectUploadReply::~DirectUploadReply() {
    // A connection closing as it goes reports it; nothing here is left to hear that.
    if (m_connection) {
        m_connection->disconnect(this);
    }
}

void DirectUploadReply::abort() {
    if (isFinished()) {
        return;
    }
    fail(OperationCanceledError, QCoreApplication::translate("QNetworkReply", "Operation canceled"));
}

qint64 DirectUploadReply::bytesAvailable() const {
    return m_answerBody.size() - m_answerRead + QNetworkReply::bytesAvailable();
}

qint64 DirectUploadReply::readData(char* data, qint64 maxSize) {
    const qint64 count = std::min<qint64>(maxSize, m_answerBody.size() - m_answerRead);
    if (count <= 0) {
        return isFinished() ? -1 : 0;
    }
    std::copy_n(m_answerBody.constData() + m_answerRead, count, data);
    m_answerRead += count;
    return count;
}

void DirectUploadReply::openConnection() {
    if (isFinished()) {
        return;
    }
    const QUrl target = url();
    if (m_pool) {
        m_connection = m_pool->take(target);
    }
    const bool reused = m_connection != nullptr;
    if (!reused) {
        if (target.scheme() == u"https") {
            auto secure = std::make_unique<QSslSocket>();
            secure->setSslConfiguration(request().sslConfiguration());
            m_connection = std::move(secure);
        } else {
            m_connection = std::make_unique<QTcpSocket>();
        }
    }
    QTcpSocket* connection = m_connection.get();
    connect(connection, &QIODevice::readyRead, this, &DirectUploadReply::readAnswer);
    connect(connection, &QIODevice::bytesWritten, this, &DirectUploadReply::noteWritten);
    connect(connection, &QAbstractSocket::errorOccurred, this, &DirectUploadReply::connectionFailed);
    connect(connection, &QAbstractSocket::disconnected, this, &DirectUploadReply::connectionEnded);
    if (reused) {
        sendHead();
        return;
    }
    if (auto* secure = qobject_cast<QSslSocket*>(connection)) {
        connect(secure, &QSslSocket::encrypted, this, &DirectUploadReply::sendHead);
        secure->connectToHostEncrypted(target.host(), static_cast<quint16>(target.port(443)));
    } else {
        connect(connection, &QAbstractSocket::connected, this, &DirectUploadReply::sendHead);
        connection->connectToHost(target.host(), static_cast<quint16>(target.port(80)));
    }
}

void DirectUploadReply::sendHead() {
    // Small writes go out at once rather than waiting for the acknowledgement of the last ones.
    m_connection->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    const QNetworkRequest& sent = request();
    QByteArray head = m_verb + ' ' + requestTarget(url()) + " HTTP/1.1\r\nHost: " + hostField(url()) + "\r\n";
    for (const QByteArray& name : sent.rawHeaderList()) {
        if (name.compare("Content-Length", Qt::CaseInsensitive) != 0) {
            head += name + ": " + sent.rawHeader(name) + "\r\n";
        }
    }
    if (!sent.hasRawHeader("User-Agent")) {
        // What Qt's session sends, so the service sees every request of the program alike.
        head += "User-Agent: Mozilla/5.0\r\n";
    }
    head += "Content-Length: " + QByteArray::number(m_bodySize) + "\r\n\r\n";
    m_headSize = head.size();
    m_connection->write(head);
    writeBody();
}

void DirectUploadReply::writeBody() {
    while (m_bodyQueued < m_bodySize && m_connection->bytesToWrite() < bufferedBytes) {
        m_piece.resize(std::min(bodyPieceBytes, m_bodySize - m_bodyQueued));
        const qint64 count = m_body->read(m_piece.data(), m_piece.size());
        if (count <= 0) {
            fail(ProtocolFailure,
                 QCoreApplication::translate("DirectUploadReply", "The file to send ended before its length"));
            return;
        }
        m_connection->write(m_piece.constData(), count);
        m_bodyQueued += count;
    }
}

void DirectUploadReply::noteWritten(qint64 bytes) {
    m_written += bytes;
    const qint64 bodySent = std::clamp<qint64>(m_written - m_headSize, 0, m_bodySize);
    emit uploadProgress(bodySent, m_bodySize);
    if (!isFinished()) {
        writeBody();
    }
}

void DirectUploadReply::readAnswer() {
    if (isFinished() || !m_connection) {
        return;
    }
    const QByteArray body = m_answer.feed(m_connection->readAll());
    if (m_answer.headComplete() && !m_headTaken) {
        takeHead();
    }
    if (!body.isEmpty()) {
        m_answerBody += body;
        emit downloadProgress(m_answerBody.size(), m_answer.contentLength().value_or(-1));
        emit readyRead();
    }
    if (m_answer.failed()) {
        fail(ProtocolFailure, QCoreApplication::translate("DirectUploadReply", "The server's answer is not HTTP"));
    } else if (m_answer.complete()) {
        finishAnswer();
    }
}

void DirectUploadReply::connectionEnded() {
    if (isFinished()) {
        return;
    }
    readAnswer();
    if (isFinished()) {
        return;
    }
    m_answer.endOfStream();
    if (m_answer.complete()) {
        finishAnswer();
    } else {
        fail(RemoteHostClosedError,
             QCoreApplication::translate("QAbstractSocket", "The remote host closed the connection"));
    }
}

void DirectUploadReply::connectionFailed() {
    if (isFinished()) {
        return;
    }
    if (m_connection->error() == QAbstractSocket::RemoteHostClosedError) {
        connectionEnded();
        return;
    }
    fail(replyError(m_connection->error()), m_connection->errorString());
}

void DirectUploadReply::takeHead() {
    m_headTaken = true;
    setAttribute(QNetworkRequest::HttpStatusCodeAttribute, m_answer.status());
    setAttribute(QNetworkRequest::HttpReasonPhraseAttribute, QString::fromLatin1(m_answer.reasonPhrase()));
    for (const auto& [name, value] : m_answer.headers()) {
        const QByteArray earlier = rawHeader(name);
        setRawHeader(name, earlier.isEmpty() ? value : earlier + ", " + value);
    }
    emit metaDataChanged();
}

void DirectUploadReply::fail(NetworkError error, const QString& text) {
    setError(error, text);
    if (m_connection) {
        m_connection->disconnect(this);
        m_connection->abort();
    }
    emit errorOccurred(error);
    end();
}

void DirectUploadReply::finishAnswer() {
    m_connection->disconnect(this);
    // An answer that came before the whole body was sent leaves the connection mid-request.
    if (m_answer.keepsConnection() && m_bodyQueued == m_bodySize && m_connection->bytesToWrite() == 0 && m_pool) {
        m_pool->keep(url(), std::move(m_connection));
    } else {
        m_connection->abort();
    }
    end();
}

void DirectUploadReply::end() {
    setFinished(true);
    emit finished();
}
