#include "core/shell/InstanceMessage.h"

namespace InstanceMessages {
namespace {
const QByteArray toggleWord = QByteArrayLiteral("toggle-popover");
}

QByteArray encode(InstanceMessage message) {
    switch (message) {
    case InstanceMessage::togglePopover:
        return toggleWord + '\n';
    }
    return {};
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
        return InstanceMessage::togglePopover;
    }
    return std::nullopt;
}

} // namespace InstanceMessages
