// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/certificates.h"

#include <QLibrary>

#include <cstring>
#include <memory>

namespace {

typedef int PassPhraseCallback(char *buffer, int size, int, void *passPhrase);

// The functions of libcrypto that are used, with their signatures. They have been the same since
// version 1.1.0.
struct Crypto {
    void *(*newBuffer)(const void *bytes, int size);
    int (*freeBuffer)(void *buffer);
    void *(*readCertificate)(void *buffer, void **, PassPhraseCallback *, void *);
    void *(*readBinaryCertificate)(void *buffer, void **);
    void *(*readKey)(void *buffer, void **, PassPhraseCallback *, void *);
    void (*freeCertificate)(void *certificate);
    void (*freeKey)(void *key);
    int (*checkKey)(void *certificate, void *key);
    const void *(*notBefore)(const void *certificate);
    const void *(*notAfter)(const void *certificate);
    int (*compareWithNow)(const void *time, void *);
    void (*clearErrors)();
    bool isLoaded;
};

template<typename Function>
bool resolve(QLibrary &library, Function &function, const char *name)
{
    function = reinterpret_cast<Function>(library.resolve(name));
    return function != nullptr;
}

bool resolveAll(QLibrary &library, Crypto &crypto)
{
    return resolve(library, crypto.newBuffer, "BIO_new_mem_buf")
        && resolve(library, crypto.freeBuffer, "BIO_free")
        && resolve(library, crypto.readCertificate, "PEM_read_bio_X509")
        && resolve(library, crypto.readBinaryCertificate, "d2i_X509_bio")
        && resolve(library, crypto.readKey, "PEM_read_bio_PrivateKey")
        && resolve(library, crypto.freeCertificate, "X509_free")
        && resolve(library, crypto.freeKey, "EVP_PKEY_free")
        && resolve(library, crypto.checkKey, "X509_check_private_key")
        && resolve(library, crypto.notBefore, "X509_get0_notBefore")
        && resolve(library, crypto.notAfter, "X509_get0_notAfter")
        && resolve(library, crypto.compareWithNow, "X509_cmp_time")
        && resolve(library, crypto.clearErrors, "ERR_clear_error");
}

Crypto loadCrypto()
{
    Crypto crypto = Crypto();
    for (const char *version : { "3", "1.1" }) {
        QLibrary library(QLatin1String("crypto"), QLatin1String(version));
        if (library.load() && resolveAll(library, crypto)) {
            crypto.isLoaded = true;
            break;
        }
    }
    return crypto;
}

const Crypto &crypto()
{
    static const Crypto loaded = loadCrypto();
    return loaded;
}

// Without a callback the library would ask at the terminal.
int givePassPhrase(char *buffer, int size, int, void *passPhrase)
{
    const QByteArray &phrase = *static_cast<const QByteArray *>(passPhrase);
    const int length = qMin(size, phrase.size());
    std::memcpy(buffer, phrase.constData(), size_t(length));
    return length;
}

typedef std::unique_ptr<void, void (*)(void *)> Handle;

void freeBuffer(void *buffer)
{
    crypto().freeBuffer(buffer);
}

Handle buffer(const QByteArray &bytes)
{
    return Handle(crypto().newBuffer(bytes.constData(), bytes.size()), freeBuffer);
}

Handle certificate(const QByteArray &bytes)
{
    QByteArray none;
    const Handle source = buffer(bytes);
    Handle result(crypto().readCertificate(source.get(), nullptr, givePassPhrase, &none),
                  crypto().freeCertificate);
    crypto().clearErrors();
    return result;
}

bool isBinaryCertificate(const QByteArray &bytes)
{
    const Handle source = buffer(bytes);
    const Handle found(crypto().readBinaryCertificate(source.get(), nullptr),
                       crypto().freeCertificate);
    crypto().clearErrors();
    return bool(found);
}

Handle key(const QByteArray &bytes, const QByteArray &passPhrase)
{
    QByteArray phrase = passPhrase;
    const Handle source = buffer(bytes);
    Handle result(crypto().readKey(source.get(), nullptr, givePassPhrase, &phrase),
                  crypto().freeKey);
    crypto().clearErrors();
    return result;
}

} // namespace

bool Certificates::areAvailable()
{
    return crypto().isLoaded;
}

Certificates::Certificate Certificates::readCertificate(const QByteArray &bytes)
{
    const Handle found = certificate(bytes);
    Certificate result = { bool(found), false, false, false };
    if (!found) {
        result.isBinary = isBinaryCertificate(bytes);
        return result;
    }
    result.isExpired = crypto().compareWithNow(crypto().notAfter(found.get()), nullptr) < 0;
    result.isTooEarly = crypto().compareWithNow(crypto().notBefore(found.get()), nullptr) > 0;
    return result;
}

Certificates::KeyState Certificates::readKey(const QByteArray &bytes, const QByteArray &passPhrase)
{
    if (key(bytes, passPhrase))
        return Usable;
    const bool isEncrypted =
        bytes.contains("BEGIN ENCRYPTED PRIVATE KEY") || bytes.contains("Proc-Type: 4,ENCRYPTED");
    return isEncrypted ? WrongPassPhrase : NoKey;
}

bool Certificates::belongTogether(const QByteArray &certificateBytes, const QByteArray &keyBytes,
                                  const QByteArray &passPhrase)
{
    const Handle owner = certificate(certificateBytes);
    const Handle found = key(keyBytes, passPhrase);
    const bool result = owner && found && crypto().checkKey(owner.get(), found.get()) == 1;
    crypto().clearErrors();
    return result;
}
