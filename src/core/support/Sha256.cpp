#include "core/support/Sha256.h"

#include <QLibrary>
#include <openssl/evp.h>

namespace {
// libcrypto's two functions a digest takes, from the library loaded at the first digest: most runs
// of the program never upload to R2, and a program at rest need not map it.
struct LibCrypto {
    decltype(&EVP_Digest) digest = nullptr;
    decltype(&EVP_sha256) sha256 = nullptr;
};

const LibCrypto& libCrypto() {
    static const LibCrypto loaded = [] {
        QLibrary library(QStringLiteral("crypto"), OPENSSL_VERSION_MAJOR);
        return LibCrypto{.digest = reinterpret_cast<decltype(&EVP_Digest)>(library.resolve("EVP_Digest")),
                         .sha256 = reinterpret_cast<decltype(&EVP_sha256)>(library.resolve("EVP_sha256"))};
    }();
    return loaded;
}
} // namespace

QByteArray sha256(QByteArrayView bytes) {
    const LibCrypto& crypto = libCrypto();
    if (!crypto.digest || !crypto.sha256) {
        qFatal("libcrypto could not be loaded for a SHA-256 digest");
    }
    QByteArray digest(32, Qt::Uninitialized);
    unsigned int length = 0;
    // A digest of memory in hand fails only when libcrypto itself is broken.
    if (crypto.digest(bytes.data(), static_cast<size_t>(bytes.size()), reinterpret_cast<unsigned char*>(digest.data()),
                      &length, crypto.sha256(), nullptr) != 1 ||
        length != 32) {
        qFatal("libcrypto could not compute a SHA-256 digest");
    }
    return digest;
}
