#include "core/support/Sha256.h"

#include <openssl/evp.h>

QByteArray sha256(QByteArrayView bytes) {
    QByteArray digest(32, Qt::Uninitialized);
    unsigned int length = 0;
    // A digest of memory in hand fails only when libcrypto itself is broken.
    if (EVP_Digest(bytes.data(), static_cast<size_t>(bytes.size()), reinterpret_cast<unsigned char*>(digest.data()),
                   &length, EVP_sha256(), nullptr) != 1 ||
        length != 32) {
        qFatal("libcrypto could not compute a SHA-256 digest");
    }
    return digest;
}
