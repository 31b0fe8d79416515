#include "platform/linux/SecretServiceStore.h"

#include "core/support/StrictUtf8.h"
#include "platform/linux/SecretServicePrompt.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <algorithm>
#include <limits>
#include <qcoro/qcorodbus.h>

namespace {
const QString secretsService = QStringLiteral("org.freedesktop.secrets");
const QString servicePath = QStringLiteral("/org/freedesktop/secrets");
const QString defaultAlias = QStringLiteral("default");
const QString serviceInterface = QStringLiteral("org.freedesktop.Secret.Service");
const QString collectionInterface = QStringLiteral("org.freedesktop.Secret.Collection");
const QString itemInterface = QStringLiteral("org.freedesktop.Secret.Item");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
// The path the service gives for "no object": no prompt needed, no such alias.
const QString noObject = QStringLiteral("/");

// The attributes earlier versions of the program gave their items, kept so that both find the same items.
const QString serverAttribute = QStringLiteral("server");
const QString userAttribute = QStringLiteral("user");
const QString typeAttribute = QStringLiteral("type");
const QString schemaAttribute = QStringLiteral("xdg:schema");
const QString schema = QStringLiteral("org.qt.keychain");
const QString plaintextType = QStringLiteral("plaintext");
const QString base64Type = QStringLiteral("base64");

using Attributes = QMap<QString, QString>;

// Errors that say the session or an object we kept is gone, as when the service restarted.
bool isStale(const QString& errorName) {
    return errorName == QLatin1String("org.freedesktop.Secret.Error.NoSession") ||
           errorName == QLatin1String("org.freedesktop.Secret.Error.NoSuchObject") ||
           errorName == QLatin1String("org.freedesktop.DBus.Error.UnknownObject") ||
           // gnome-keyring's answer for a path that doesn't exist (any longer)
           errorName == QLatin1String("org.freedesktop.DBus.Error.UnknownMethod");
}

// Secrets used to travel as C strings: text with a NUL, or bytes that aren't UTF-8, go base64-encoded.
bool storableAsText(const QByteArray& value) {
    return !value.contains('\0') && strictUtf8(value).has_value();
}

QList<QDBusObjectPath> objectPaths(const QVariant& value) {
    if (value.userType() == qMetaTypeId<QDBusArgument>()) {
        return qdbus_cast<QList<QDBusObjectPath>>(value.value<QDBusArgument>());
    }
    return value.value<QList<QDBusObjectPath>>();
}

QString objectPath(const QVariant& value) {
    return value.value<QDBusObjectPath>().path();
}
} // namespace

// The operations as one client of the service. Every D-Bus call gets what is left of its operation's
// time; a call that fails because the session (or the collection we kept) is gone makes the
// operation start again once with a new session.
class SecretServiceStore::Client {
public:
    enum class Status { ok, timedOut, dismissed, failed, stale };

    explicit Client(std::chrono::milliseconds timeout)
        : m_timeout(timeout) {
        qDBusRegisterMetaType<Attributes>();
    }

    QCoro::Task<std::optional<QByteArray>> read(QString service, QString account) {
        QCoro::Task<std::pair<Status, std::optional<QByteArray>>> reading =
            readOnce(service, account, QDeadlineTimer(m_timeout));
        auto [status, value] = co_await std::move(reading);
        if (status == Status::stale) {
            forget();
            QCoro::Task<std::pair<Status, std::optional<QByteArray>>> readingAgain =
                readOnce(service, account, QDeadlineTimer(m_timeout));
            std::tie(status, value) = co_await std::move(readingAgain);
        }
        co_return status == Status::ok ? value : std::nullopt;
    }

    QCoro::Task<int> write(QString service, QString account, QByteArray value) {
        QCoro::Task<Status> writing = writeOnce(service, account, value, QDeadlineTimer(m_timeout));
        Status status = co_await std::move(writing);
        if (status == Status::stale) {
            forget();
            QCoro::Task<Status> writingAgain = writeOnce(service, account, value, QDeadlineTimer(m_timeout));
            status = co_await std::move(writingAgain);
        }
        switch (status) {
        case Status::ok:
            co_return successStatus;
        case Status::timedOut:
            co_return timedOutStatus;
        case Status::dismissed:
            co_return accessDeniedStatus;
        case Status::failed:
        case Status::stale:
            break;
        }
        co_return otherErrorStatus;
    }

    QCoro::Task<> remove(QString service, QString account) {
        QCoro::Task<Status> removal = removeOnce(service, account, QDeadlineTimer(m_timeout));
        if (co_await std::move(removal) == Status::stale) {
            forget();
            QCoro::Task<Status> removalAgain = removeOnce(service, account, QDeadlineTimer(m_timeout));
            co_await std::move(removalAgain);
        }
    }

private:
    struct Answer {
        Status status = Status::failed;
        QVariantList arguments;
    };
    struct Found {
        Status status = Status::failed;
        QList<QDBusObjectPath> unlocked;
        QList<QDBusObjectPath> locked;
    };
    struct Prompted {
        Status status = Status::failed;
        QVariant result;
    };
    struct Created {
        Status status = Status::failed;
        QString path;
        bool prompted = false;
    };

    void forget() {
        m_session.clear();
        m_collection.clear();
    }

    // Calls a method and checks that the answer has the signature `expected`; anything else fails.
    QCoro::Task<Answer> call(QString path, QString interface, QString method, QVariantList arguments, QString expected,
                             QDeadlineTimer deadline) {
        const qint64 left = deadline.remainingTime();
        if (left == 0) {
            co_return Answer{Status::timedOut, {}};
        }
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            co_return Answer{};
        }
        QDBusMessage message = QDBusMessage::createMethodCall(secretsService, path, interface, method);
        message.setArguments(arguments);
        // A timeout of -1 would be D-Bus's default of 25 s, so the left time is never passed as such.
        const int timeoutMs = static_cast<int>(std::clamp<qint64>(left, 1, std::numeric_limits<int>::max()));
        const QDBusMessage reply = co_await bus.asyncCall(message, timeoutMs);
        if (reply.type() == QDBusMessage::ErrorMessage) {
            if (reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.NoReply") || deadline.hasExpired()) {
                co_return Answer{Status::timedOut, {}};
            }
            co_return Answer{isStale(reply.errorName()) ? Status::stale : Status::failed, {}};
        }
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != expected) {
            co_return Answer{};
        }
        co_return Answer{Status::ok, reply.arguments()};
    }

    // Shows a prompt the service handed out, with the longer limit a person typing a password needs.
    QCoro::Task<Prompted> prompt(QString path) {
        QCoro::Task<SecretServicePrompt::Ending> showing =
            SecretServicePrompt::run(QDBusConnection::sessionBus(), secretsService, path, promptTimeout);
        const SecretServicePrompt::Ending ending = co_await std::move(showing);
        switch (ending.outcome) {
        case SecretServicePrompt::Outcome::completed:
            co_return Prompted{Status::ok, ending.result};
        case SecretServicePrompt::Outcome::dismissed:
            co_return Prompted{Status::dismissed, {}};
        case SecretServicePrompt::Outcome::timedOut:
            co_return Prompted{Status::timedOut, {}};
        case SecretServicePrompt::Outcome::failed:
            break;
        }
        co_return Prompted{};
    }

    // The object a Create call answered with (object, prompt): made at once, or once the person
    // answered the prompt.
    QCoro::Task<Created> createdObject(Answer answer) {
        if (answer.status != Status::ok) {
            co_return Created{answer.status};
        }
        const QString path = objectPath(answer.arguments.at(0));
        const QString promptPath = objectPath(answer.arguments.at(1));
        if (path != noObject || promptPath == noObject) {
            co_return Created{Status::ok, path};
        }
        QCoro::Task<Prompted> asking = prompt(promptPath);
        const Prompted prompted = co_await std::move(asking);
        co_return Created{prompted.status, objectPath(prompted.result), true};
    }

    // Opens the session once and keeps it. Its algorithm is "plain": the secret is not encrypted
    // again on its way, which runs over the user's own session bus, between the user's own processes.
    QCoro::Task<Status> openSession(QDeadlineTimer deadline) {
        if (!m_session.isEmpty()) {
            co_return Status::ok;
        }
        QCoro::Task<Answer> opening = call(servicePath, serviceInterface, QStringLiteral("OpenSession"),
                                           {QStringLiteral("plain"), QVariant::fromValue(QDBusVariant(QString()))},
                                           QStringLiteral("vo"), deadline);
        const Answer answer = co_await std::move(opening);
        if (answer.status == Status::ok) {
            m_session = objectPath(answer.arguments.at(1));
        }
        co_return answer.status;
    }

    // The default collection's own path, kept; created when the service has none.
    QCoro::Task<Status> findCollection(QDeadlineTimer deadline) {
        if (!m_collection.isEmpty()) {
            co_return Status::ok;
        }
        QCoro::Task<Answer> reading = call(servicePath, serviceInterface, QStringLiteral("ReadAlias"), {defaultAlias},
                                           QStringLiteral("o"), deadline);
        const Answer alias = co_await std::move(reading);
        if (alias.status != Status::ok) {
            co_return alias.status;
        }
        QString collection = objectPath(alias.arguments.at(0));
        if (collection == noObject) {
            const QVariantMap properties{
                {collectionInterface + QStringLiteral(".Label"), QStringLiteral("Default keyring")}};
            QCoro::Task<Answer> creating = call(servicePath, serviceInterface, QStringLiteral("CreateCollection"),
                                                {properties, defaultAlias}, QStringLiteral("oo"), deadline);
            const Answer answer = co_await std::move(creating);
            QCoro::Task<Created> made = createdObject(answer);
            const Created created = co_await std::move(made);
            if (created.status != Status::ok) {
                co_return created.status;
            }
            collection = created.path;
        }
        if (!collection.startsWith(servicePath + QLatin1Char('/'))) {
            co_return Status::failed;
        }
        m_collection = collection;
        co_return Status::ok;
    }

    // The items under the service and account words, whatever their type or schema.
    QCoro::Task<Found> search(QString service, QString account, QDeadlineTimer deadline) {
        const Attributes attributes{{serverAttribute, service}, {userAttribute, account}};
        QCoro::Task<Answer> searching = call(servicePath, serviceInterface, QStringLiteral("SearchItems"),
                                             {QVariant::fromValue(attributes)}, QStringLiteral("aoao"), deadline);
        const Answer answer = co_await std::move(searching);
        if (answer.status != Status::ok) {
            co_return Found{answer.status, {}, {}};
        }
        co_return Found{Status::ok, objectPaths(answer.arguments.at(0)), objectPaths(answer.arguments.at(1))};
    }

    // Unlocks the objects, through the service's prompt when it asks the person. Sets `prompted`
    // when a prompt was shown, after which the operation's own time starts again.
    QCoro::Task<Status> unlock(QList<QDBusObjectPath> objects, QDeadlineTimer deadline, bool* prompted) {
        QCoro::Task<Answer> unlocking = call(servicePath, serviceInterface, QStringLiteral("Unlock"),
                                             {QVariant::fromValue(objects)}, QStringLiteral("aoo"), deadline);
        const Answer answer = co_await std::move(unlocking);
        if (answer.status != Status::ok) {
            co_return answer.status;
        }
        const QString promptPath = objectPath(answer.arguments.at(1));
        if (promptPath == noObject) {
            co_return objectPaths(answer.arguments.at(0)).isEmpty() ? Status::failed : Status::ok;
        }
        *prompted = true;
        QCoro::Task<Prompted> asking = prompt(promptPath);
        co_return (co_await std::move(asking)).status;
    }

    QCoro::Task<std::pair<Status, std::optional<QByteArray>>> readOnce(QString service, QString account,
                                                                       QDeadlineTimer deadline) {
        QCoro::Task<Found> searching = search(service, account, deadline);
        Found found = co_await std::move(searching);
        if (found.status != Status::ok || (found.unlocked.isEmpty() && found.locked.isEmpty())) {
            co_return {found.status, std::nullopt};
        }
        if (found.unlocked.isEmpty()) {
            bool prompted = false;
            QCoro::Task<Status> unlocking = unlock(found.locked, deadline, &prompted);
            if (const Status status = co_await std::move(unlocking); status != Status::ok) {
                co_return {status, std::nullopt};
            }
            if (prompted) {
                deadline = QDeadlineTimer(m_timeout);
            }
            QCoro::Task<Found> searchingAgain = search(service, account, deadline);
            found = co_await std::move(searchingAgain);
            if (found.status != Status::ok || found.unlocked.isEmpty()) {
                co_return {found.status == Status::ok ? Status::failed : found.status, std::nullopt};
            }
        }
        const QString item = found.unlocked.constFirst().path();

        // The type attribute says whether the secret is base64-encoded.
        QCoro::Task<Answer> reading =
            call(item, propertiesInterface, QStringLiteral("Get"), {itemInterface, QStringLiteral("Attributes")},
                 QStringLiteral("v"), deadline);
        const Answer attributesAnswer = co_await std::move(reading);
        if (attributesAnswer.status != Status::ok) {
            co_return {attributesAnswer.status, std::nullopt};
        }
        const QVariant attributesValue = attributesAnswer.arguments.at(0).value<QDBusVariant>().variant();
        if (attributesValue.userType() != qMetaTypeId<QDBusArgument>() ||
            attributesValue.value<QDBusArgument>().currentSignature() != QLatin1String("a{ss}")) {
            co_return {Status::failed, std::nullopt};
        }
        const auto attributes = qdbus_cast<Attributes>(attributesValue.value<QDBusArgument>());

        QCoro::Task<Status> opening = openSession(deadline);
        if (const Status status = co_await std::move(opening); status != Status::ok) {
            co_return {status, std::nullopt};
        }
        QCoro::Task<Answer> getting =
            call(item, itemInterface, QStringLiteral("GetSecret"), {QVariant::fromValue(QDBusObjectPath(m_session))},
                 QStringLiteral("(oayays)"), deadline);
        const Answer secretAnswer = co_await std::move(getting);
        if (secretAnswer.status != Status::ok) {
            co_return {secretAnswer.status, std::nullopt};
        }
        // (session, parameters, value, content type)
        const auto secret = secretAnswer.arguments.at(0).value<QDBusArgument>();
        QDBusObjectPath session;
        QByteArray parameters;
        QByteArray value;
        QString contentType;
        secret.beginStructure();
        secret >> session >> parameters >> value >> contentType;
        secret.endStructure();

        if (attributes.value(typeAttribute) == base64Type) {
            auto decoded = QByteArray::fromBase64Encoding(value, QByteArray::AbortOnBase64DecodingErrors);
            if (!decoded) {
                co_return {Status::failed, std::nullopt};
            }
            co_return {Status::ok, *decoded};
        }
        co_return {Status::ok, value};
    }

    QCoro::Task<Status> writeOnce(QString service, QString account, QByteArray value, QDeadlineTimer deadline) {
        QCoro::Task<Status> opening = openSession(deadline);
        if (const Status status = co_await std::move(opening); status != Status::ok) {
            co_return status;
        }
        QCoro::Task<Status> finding = findCollection(deadline);
        if (const Status status = co_await std::move(finding); status != Status::ok) {
            co_return status;
        }

        const bool asText = storableAsText(value);
        const Attributes attributes{{serverAttribute, service},
                                    {userAttribute, account},
                                    {typeAttribute, asText ? plaintextType : base64Type},
                                    {schemaAttribute, schema}};
        const QVariantMap properties{
            {itemInterface + QStringLiteral(".Label"), QStringLiteral("%1: %2").arg(service, account)},
            {itemInterface + QStringLiteral(".Attributes"), QVariant::fromValue(attributes)}};
        QDBusArgument secret;
        secret.beginStructure();
        secret << QDBusObjectPath(m_session) << QByteArray() << (asText ? value : value.toBase64())
               << QStringLiteral("text/plain");
        secret.endStructure();
        const QVariantList arguments{properties, QVariant::fromValue(secret), true}; // replace an equal item

        QCoro::Task<Answer> creating = call(m_collection, collectionInterface, QStringLiteral("CreateItem"), arguments,
                                            QStringLiteral("oo"), deadline);
        Answer created = co_await std::move(creating);
        if (created.status == Status::failed) {
            // A locked collection refuses the item: unlock it, then try once more.
            bool prompted = false;
            QCoro::Task<Status> unlocking = unlock({QDBusObjectPath(m_collection)}, deadline, &prompted);
            if (const Status status = co_await std::move(unlocking); status != Status::ok) {
                co_return status;
            }
            if (prompted) {
                deadline = QDeadlineTimer(m_timeout);
            }
            QCoro::Task<Answer> creatingAgain = call(m_collection, collectionInterface, QStringLiteral("CreateItem"),
                                                     arguments, QStringLiteral("oo"), deadline);
            created = co_await std::move(creatingAgain);
        }
        QCoro::Task<Created> made = createdObject(created);
        const Created item = co_await std::move(made);
        if (item.status != Status::ok) {
            co_return item.status;
        }
        if (item.prompted) {
            deadline = QDeadlineTimer(m_timeout);
        }

        // Other items under the same words (another type, another collection) would make reads
        // depend on the order the service lists them in: the new item stays alone.
        QCoro::Task<Found> searching = search(service, account, deadline);
        const Found found = co_await std::move(searching);
        if (found.status == Status::ok) {
            for (const QDBusObjectPath& other : found.unlocked) {
                if (other.path() != item.path) {
                    QCoro::Task<Status> deleting = deleteItem(other.path(), deadline);
                    co_await std::move(deleting);
                }
            }
        }
        co_return Status::ok;
    }

    QCoro::Task<Status> deleteItem(QString item, QDeadlineTimer deadline) {
        QCoro::Task<Answer> deleting =
            call(item, itemInterface, QStringLiteral("Delete"), {}, QStringLiteral("o"), deadline);
        const Answer answer = co_await std::move(deleting);
        if (answer.status != Status::ok) {
            co_return answer.status;
        }
        const QString promptPath = objectPath(answer.arguments.at(0));
        if (promptPath == noObject) {
            co_return Status::ok;
        }
        QCoro::Task<Prompted> asking = prompt(promptPath);
        co_return (co_await std::move(asking)).status;
    }

    QCoro::Task<Status> removeOnce(QString service, QString account, QDeadlineTimer deadline) {
        QCoro::Task<Found> searching = search(service, account, deadline);
        const Found found = co_await std::move(searching);
        if (found.status != Status::ok) {
            co_return found.status;
        }
        if (!found.locked.isEmpty()) {
            bool prompted = false;
            QCoro::Task<Status> unlocking = unlock(found.locked, deadline, &prompted);
            if (const Status status = co_await std::move(unlocking); status != Status::ok) {
                co_return status;
            }
            if (prompted) {
                deadline = QDeadlineTimer(m_timeout);
            }
        }
        for (const QDBusObjectPath& item : found.unlocked + found.locked) {
            QCoro::Task<Status> deleting = deleteItem(item.path(), deadline);
            if (const Status status = co_await std::move(deleting); status != Status::ok) {
                co_return status;
            }
        }
        co_return Status::ok;
    }

    std::chrono::milliseconds m_timeout;
    QString m_session;
    QString m_collection;
};

SecretServiceStore::SecretServiceStore(std::chrono::milliseconds timeout)
    : m_client(std::make_shared<Client>(timeout)) {}

SecretServiceStore::~SecretServiceStore() = default;

QCoro::Task<std::optional<QByteArray>> SecretServiceStore::read(QString service, QString account) {
    const std::shared_ptr<Client> client = m_client; // kept while the operation runs
    QCoro::Task<std::optional<QByteArray>> reading = client->read(service, account);
    co_return co_await std::move(reading);
}

QCoro::Task<int> SecretServiceStore::write(QString service, QString account, QByteArray value) {
    const std::shared_ptr<Client> client = m_client;
    QCoro::Task<int> writing = client->write(service, account, value);
    co_return co_await std::move(writing);
}

QCoro::Task<> SecretServiceStore::remove(QString service, QString account) {
    const std::shared_ptr<Client> client = m_client;
    QCoro::Task<> removal = client->remove(service, account);
    co_await std::move(removal);
}
