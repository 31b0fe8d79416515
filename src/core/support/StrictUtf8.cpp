#include "core/support/StrictUtf8.h"

#include <QStringDecoder>

std::optional<QString> strictUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::ConvertInitialBom | QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return text;
}
