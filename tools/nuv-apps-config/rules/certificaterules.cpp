// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/certificaterules.h"

#include "tools/nuv-apps-config/rules/certificates.h"
#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/rules/nearbyfiles.h"
#include "tools/nuv-apps-config/properties/properties.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

void add(Findings &findings, const char *rule, const Node &place, const QString &what,
         const QString &hint = QString())
{
    findings.add(rule, place.begin, place.length(), what, hint);
}

// Null for a member that is not there.
const Node *valueOf(const Document &document, const Node &object, const char *key)
{
    const Node::Child *member = document.member(object, text(key));
    return member ? &document.at(*member) : nullptr;
}

// The node of a member that is a string; null for any other.
const Node *textMember(const Document &document, const Node &object, const char *key)
{
    const Node *value = valueOf(document, object, key);
    return value && value->type == Node::Text ? value : nullptr;
}

void reportMissing(const Node &path, const QString &name, const DeviceFiles &files,
                   Findings &findings)
{
    const QString given = path.value.toString();
    if (files.mayHave(given)) {
        add(findings, "missing-here", path,
            QString(QLatin1String("there is no %1 on this machine")).arg(given),
            text("--root DIR looks below DIR for the files of the device"));
        return;
    }
    const QString near = given.isEmpty() || QDir::isAbsolutePath(given)
        ? QString()
        : NearbyFiles::nearest(given, files.folder());
    Finding &finding = findings.add("certificate-missing", path.begin, path.length(),
                                    text("there is no file ") + name,
                                    near.isEmpty() ? QString() : near + text(" is there"));
    if (!near.isEmpty())
        finding.edit = Edits::replace(path, Edits::quoted(near));
}

// Returns false, and says why, when the file cannot be had.
bool read(const Node &path, const DeviceFiles &files, QByteArray *bytes, Findings &findings)
{
    const qint64 largest = Q_INT64_C(4) * 1024 * 1024;
    const QString name = files.find(path.value.toString());
    const QFileInfo info(name);
    if (path.value.toString().isEmpty() || !info.exists()) {
        reportMissing(path, name, files, findings);
        return false;
    }
    QFile file(name);
    if (!info.isFile()) { // opening a pipe would wait for its writer
        add(findings, "certificate-unreadable", path,
            name + (info.isDir() ? text(" is a directory") : text(" is a pipe or a device")));
        return false;
    }
    if (file.open(QIODevice::ReadOnly))
        *bytes = file.read(largest);
    if (file.error() != QFile::NoError) {
        add(findings, "certificate-unreadable", path,
            QString(QLatin1String("%1 cannot be read: %2")).arg(name, file.errorString()));
        return false;
    }
    return true;
}

void checkMode(const Node &path, const DeviceFiles &files, Findings &findings)
{
    const QString name = files.find(path.value.toString());
    if (QFileInfo(name).permission(QFile::ReadOther))
        add(findings, "key-readable-by-all", path, text("everyone can read this private key"),
            text("chmod go-r ") + path.value.toString());
}

// Returns false when the certificate cannot be compared with a key.
bool checkCertificate(const Node &path, const QByteArray &bytes, Findings &findings)
{
    const Certificates::Certificate certificate = Certificates::readCertificate(bytes);
    if (!certificate.isValid) {
        add(findings, "certificate-invalid", path,
            text("the file holds no certificate in PEM form"),
            certificate.isBinary ? text("it is in DER form: openssl x509 -inform der -out FILE.pem")
                                 : QString());
        return false;
    }
    if (certificate.isExpired || certificate.isTooEarly)
        add(findings, "certificate-expired", path,
            certificate.isExpired ? text("the certificate has expired")
                                  : text("the certificate is not valid yet"));
    return true;
}

// A pass phrase that is not a string is found as that: the launcher opens the key without it.
void reportLocked(const Node &path, const Node *passPhrase, Findings &findings)
{
    const char *const rule = "wrong-pass-phrase";
    if (!passPhrase) {
        add(findings, rule, path,
            text("the private key is encrypted, and there is no \"PassPhrase\""));
    } else if (passPhrase->type == Node::Text) {
        add(findings, rule, *passPhrase,
            text("the private key cannot be opened with this pass phrase"));
    } else if (passPhrase->type == Node::Null) {
        findings.remove("null-value", passPhrase->begin);
        add(findings, rule, *passPhrase,
            text("the private key is encrypted, and \"PassPhrase\" is null"));
    }
}

void checkKey(const Node &path, const QByteArray &key, const Node *passPhrase,
              const QByteArray &certificate, bool canCompare, Findings &findings)
{
    const bool isText = passPhrase && passPhrase->type == Node::Text;
    const QByteArray phrase = isText ? passPhrase->value.toString().toUtf8() : QByteArray();
    const Certificates::KeyState state = Certificates::readKey(key, phrase);
    if (state == Certificates::NoKey)
        add(findings, "certificate-invalid", path,
            text("the file holds no private key in PEM form"));
    else if (state == Certificates::WrongPassPhrase)
        reportLocked(path, passPhrase, findings);
    else if (canCompare && !Certificates::belongTogether(certificate, key, phrase))
        add(findings, "certificate-mismatch", path,
            text("this private key does not belong to the certificate"));
}

// Without a key of its own the launcher looks for it in the file of the certificate. A key that is not
// known may be meant to name the file.
bool isInOneFile(const Document &document, const Node &certificate)
{
    const Node *key = valueOf(document, certificate, "PrivateKey");
    bool isKnown = true;
    for (const Node::Child &member : certificate.children)
        isKnown = isKnown
            && (Properties::isPassed(member.key)
                || Properties::find(Section::Certificate, member.key));
    return isKnown && (!key || key->type == Node::Null) && !document.isMended(certificate);
}

// What a key file is examined for, in a file that holds a certificate.
void checkKeyInside(const Node &path, const QByteArray &bytes, const Node *passPhrase,
                    const DeviceFiles &files, Findings &findings)
{
    if (Certificates::readKey(bytes, QByteArray()) == Certificates::NoKey) {
        add(findings, "certificate-invalid", path,
            text("the file holds no private key in PEM form, and there is no \"PrivateKey\""),
            text("\"PrivateKey\" names the file of the key"));
        return;
    }
    checkMode(path, files, findings);
    checkKey(path, bytes, passPhrase, bytes, true, findings);
}

} // namespace

void CertificateRules::check(const Document &document, const Node &certificate,
                             const DeviceFiles &files, Findings &findings)
{
    const Node &path = *valueOf(document, certificate, "Path");
    const Node *keyPath = textMember(document, certificate, "PrivateKey");
    QByteArray certificateBytes;
    QByteArray keyBytes;
    const bool hasCertificate = read(path, files, &certificateBytes, findings);
    const bool hasKey = keyPath && read(*keyPath, files, &keyBytes, findings);
    if (hasKey)
        checkMode(*keyPath, files, findings);
    if (!hasCertificate && !hasKey)
        return;
    if (!Certificates::areAvailable()) {
        add(findings, "certificate-unexamined", path,
            text("no OpenSSL library was found to look into the file"));
        return;
    }
    const bool canCompare = hasCertificate && checkCertificate(path, certificateBytes, findings);
    const Node *passPhrase = valueOf(document, certificate, "PassPhrase");
    if (hasKey)
        checkKey(*keyPath, keyBytes, passPhrase, certificateBytes, canCompare, findings);
    else if (canCompare && isInOneFile(document, certificate))
        checkKeyInside(path, certificateBytes, passPhrase, files, findings);
}
