#include "core/shell/InstanceMessage.h"

#include "core/storage/GoogleDriveAuthManager.h"

namespace InstanceMessages {
namespace {
const QByteArray toggleWord = QByteArrayLiteral("toggle-popover");
const QByteArray callbackWord = QByteArrayLiteral("callback ");

// The address, if it is a whole one of the callback scheme.
std::optional<QUrl> callbackAddress(const QByteArray& encoded) {
    const QUrl url = QUrl::fromEncoded(encoded, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().compare(GoogleDriveAuthManager::callbackScheme(), Qt::CaseInsensitive) != 0) {
        return std::nullopt;
    }
    return url;
}
} // namespace

QByteArray encode(const InstanceMessage& message) {
    return (message.callbackURL ? callbackWord + message.callbackURL->toEncoded() : toggleWord) + '\n';
}

std::optional<InstanceMessage> decode(const QByteArray& bytes) {
    if (bytes.size() > maximumSize) {
        return std::nullopt;
    }
    QByteArray word = bytes;
    if (word.endsWith('\n')) {
        word.chop(1);
    }
    if (word == toggleWord) {
        return InstanceMessage::togglePopover();
    }
    if (word.startsWith(callbackWord) && !word.contains('\n')) {
        if (const std::optional<QUrl> url = callbackAddress(word.mid(callbackWord.size()))) {
            return InstanceMessage::callback(*url);
        }
    }
    return std::nullopt;
}

InstanceMessage fromArguments(const QStringList& arguments) {
    const std::optional<QUrl> url =
        arguments.isEmpty() ? std::nullopt : callbackAddress(QUrl(arguments.first()).toEncoded());
    return url ? InstanceMessage::callback(*url) : InstanceMessage::togglePopover();
}

} // namespace InstanceMessages
