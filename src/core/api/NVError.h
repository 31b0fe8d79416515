#pragma once

#include "core/json/DecodingError.h"

#include <QByteArray>
#include <QNetworkReply>
#include <QString>
#include <exception>
#include <optional>
#include <variant>

// Every way a request to the service fails, as one exception with the text the user sees.
class NVError : public std::exception {
public:
    // The service answered 401. `detail` is the service's own message, or the default text.
    struct Unauthorized {
        std::optional<QString> detail;
        bool operator==(const Unauthorized&) const = default;
    };
    // The service answered 429 on the retry too; `retryAfter` in seconds from that second answer.
    struct RateLimited {
        std::optional<double> retryAfter;
        bool operator==(const RateLimited&) const = default;
    };
    // Any other status outside 200 to 299.
    struct Server {
        std::optional<QString> code;
        QString message;
        std::optional<int> statusCode;
        bool operator==(const Server&) const = default;
    };
    // The request got no answer: the transport's error. `requestSent` tells that the whole request
    // had gone out before the connection failed, so that the service may have carried it out.
    struct Network {
        QNetworkReply::NetworkError error = QNetworkReply::UnknownNetworkError;
        QString errorString;
        bool requestSent = false;
        bool operator==(const Network&) const = default;
    };
    // A 2xx body that isn't the expected record: where and why it failed.
    struct Decoding {
        QString path;
        QString description;
        bool operator==(const Decoding&) const = default;
    };
    // No token is at hand; no request was made.
    struct NotAuthenticated {
        bool operator==(const NotAuthenticated&) const = default;
    };
    // The workspace's storage is full.
    struct StorageLimitExceeded {
        bool operator==(const StorageLimitExceeded&) const = default;
    };
    // The answer isn't an HTTP response.
    struct InvalidResponse {
        bool operator==(const InvalidResponse&) const = default;
    };

    using Case = std::variant<Unauthorized, RateLimited, Server, Network, Decoding, NotAuthenticated,
                              StorageLimitExceeded, InvalidResponse>;

    // The default text of a rejected token, also the detail of a 401 whose body has no message.
    static QString rejectedTokenText();

    explicit NVError(Case failure);
    static NVError decoding(const DecodingError& error) { return NVError(Decoding{error.path(), error.description()}); }

    const Case& failure() const { return m_failure; }
    template <typename T> bool is() const { return std::holds_alternative<T>(m_failure); }
    // The payload if the failure is of that case, else null.
    template <typename T> const T* as() const { return std::get_if<T>(&m_failure); }

    // Whether the service may have carried out the request although it failed: the request went out
    // whole and no answer came, or a 2xx answer could not be read. A failed write of this kind may
    // have changed the service, and sending it again may change it twice.
    bool outcomeUnknown() const;

    // What the user is shown.
    QString errorDescription() const;
    const char* what() const noexcept override { return m_what.constData(); }

private:
    Case m_failure;
    QByteArray m_what;
};
