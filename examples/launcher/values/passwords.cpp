// SPDX-License-Identifier: MIT
#include "values/passwords.h"

#include <algorithm>

namespace {

typedef std::vector<Passwords::Piece> Pieces;

const Passwords::Piece None = { 0, 0 };

Passwords::Piece between(int begin, int end)
{
    const Passwords::Piece piece = { begin, end };
    return piece;
}

bool isEmpty(const Passwords::Piece &piece)
{
    return piece.begin >= piece.end;
}

bool isSchemeCharacter(QChar c)
{
    return (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
        || (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
        || (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('+')
        || c == QLatin1Char('-') || c == QLatin1Char('.');
}

// Where the scheme begins whose "://" is at `slashes`.
int beginOfScheme(const QString &text, int slashes)
{
    while (slashes > 0 && isSchemeCharacter(text.at(slashes - 1)))
        --slashes;
    return slashes;
}

// After the "//" that user and host follow; 0 when there is no scheme.
int endOfScheme(const QString &address)
{
    const int colon = address.indexOf(QLatin1String(":/"));
    const QString scheme = address.left(qMax(colon, 0)).trimmed();
    int begin = 0;
    const bool hasOneSlash = address.mid(colon + 2, 1) != QLatin1String("/");
    const bool isOfWeb = scheme.startsWith(QLatin1String("http"), Qt::CaseInsensitive);
    if (colon >= 0 && beginOfScheme(scheme, scheme.size()) == 0 && (isOfWeb || !hasOneSlash))
        begin = colon + 1;
    else if (!address.startsWith(QLatin1String("//")))
        return 0;
    while (begin < address.size() && address.at(begin) == QLatin1Char('/'))
        ++begin;
    return begin;
}

// The end of user, host and port: what follows is the path.
int endOfAuthority(const QString &address, int begin)
{
    while (begin < address.size() && !QString(QLatin1String("/?#")).contains(address.at(begin)))
        ++begin;
    return begin;
}

// After the first colon, written as itself or as %3A. An IPv6 address has its colons in brackets.
int endOfColon(const QString &address, int begin)
{
    int at = begin;
    if (at < address.size() && address.at(at) == QLatin1Char('['))
        at = qMax(at, address.indexOf(QLatin1Char(']'), at));
    const int colon = address.indexOf(QLatin1Char(':'), at);
    const int escaped = address.contains(QLatin1Char('%'))
        ? address.indexOf(QLatin1String("%3a"), at, Qt::CaseInsensitive)
        : -1;
    if (escaped >= 0 && (colon < 0 || escaped < colon))
        return escaped + 3;
    return colon < 0 ? -1 : colon + 1;
}

// Blanks and marks after the number are a mistake of another kind.
bool isPort(const QString &text)
{
    int digits = 0;
    while (digits < text.size() && text.at(digits) >= QLatin1Char('0')
           && text.at(digits) <= QLatin1Char('9'))
        ++digits;
    for (int i = digits; i < text.size(); ++i) {
        if (!QString(QLatin1String(" \t,;.")).contains(text.at(i)))
            return false;
    }
    return digits <= 5;
}

// Only an IPv6 address in brackets has a percent sign.
bool isHost(const QString &text)
{
    const QLatin1String others(text.startsWith(QLatin1Char('[')) ? "[]:%_" : "[]:_");
    for (const QChar c : text) {
        if (!isSchemeCharacter(c) && !QString(others).contains(c))
            return false;
    }
    return true;
}

// "tv.example" rather than the name of a user, or a mark that is left of one.
bool looksLikeHost(const QString &text)
{
    return text == QLatin1String("localhost")
        || (text.size() > 1 && isHost(text)
            && (text.contains(QLatin1Char('.')) || text.startsWith(QLatin1Char('['))));
}

// Whether what follows the host's colon is no port. The rest of a sentence may have a colon, too.
bool hasWrongPort(const QString &host)
{
    int end = 0;
    while (end < host.size() && !QString(QLatin1String(" \t\n\"")).contains(host.at(end)))
        ++end;
    const QString word = host.left(end);
    const int colon = endOfColon(word, 0);
    return colon >= 0 && !isPort(word.mid(colon));
}

// The last @ ends the password, or another character does that was meant for one: no host has a quote or
// a semicolon in its name, and no port a letter.
int endOfPassword(const QString &address, int sign)
{
    const QString host = address.mid(sign + 1, endOfAuthority(address, sign) - sign - 1);
    const bool isSentence = host.contains(QLatin1Char(' ')) || host.endsWith(QLatin1Char('\n'));
    const bool endsAtSign = !hasWrongPort(host) && (isHost(host) || isSentence);
    return endsAtSign ? sign : address.size();
}

// Whether host and port end before the first "/", and the @ is part of a path.
bool isCompleteBefore(const QString &address, int begin, int sign)
{
    const int end = endOfAuthority(address, begin);
    const int colon = endOfColon(address, begin);
    const int hostEnd = colon < 0 || colon > end ? end : colon - 1;
    return begin > 0 && end < sign && looksLikeHost(address.mid(begin, hostEnd - begin))
        && isPort(address.mid(qMin(hostEnd + 1, end), qMax(0, end - hostEnd - 1)));
}

// Whether user and host begin where they should, so that no slash is before them.
bool isAfterScheme(const QString &address, int begin)
{
    return begin > 0 && begin == address.indexOf(QLatin1String("//")) + 2;
}

// What follows the colon is a password up to the @. Without a colon it may be a key of access, or the
// colon is what was mistyped.
Passwords::Piece findBeforeSign(const QString &address, int begin, int sign, bool isAddress,
                                Passwords::Kind kind)
{
    const int colon = endOfColon(address, begin);
    const bool hasColon = colon >= 0 && colon <= sign;
    const bool isInPath =
        isAfterScheme(address, begin) && endOfAuthority(address, begin) < colon - 1;
    const bool hasUser = hasColon && !isInPath && address.indexOf(QLatin1Char('@'), begin) >= colon;
    const bool isPath = kind != Passwords::Proxy && isCompleteBefore(address, begin, sign);
    if (isPath || !(hasColon || isAddress))
        return None;
    return between(hasUser ? colon : begin, endOfPassword(address, sign));
}

// An IPv6 address, whether its bracket is closed or not.
bool isNumericHost(const QString &text)
{
    for (const QChar c : text) {
        if (!QString(QLatin1String("[]:.%0123456789abcdefABCDEF")).contains(c))
            return false;
    }
    return text.startsWith(QLatin1Char('['));
}

// The @ itself may be what was mistyped. What is no port is a password then.
Passwords::Piece findWithoutSign(const QString &address, int begin)
{
    const int colon = endOfColon(address, begin);
    const int end = endOfAuthority(address, begin);
    if (colon < 0 || end < colon || isNumericHost(address.mid(begin, end - begin)))
        return None;
    return isPort(address.mid(colon, end - colon)) ? None : between(colon, address.size());
}

// What follows the slashes of a path, too: a proxy has none, and after "http:/" nobody knows the host.
Passwords::Piece findInAnyPart(const QString &address, int begin)
{
    while (begin < address.size()) {
        const Passwords::Piece piece = findWithoutSign(address, begin);
        if (!isEmpty(piece))
            return piece;
        begin = endOfAuthority(address, begin) + 1;
    }
    return None;
}

// The first character that cannot be in a name of a user.
int beginOfWord(const QString &text, int end)
{
    while (end > 0 && !QString(QLatin1String(" \t\n\"'=()<>")).contains(text.at(end - 1)))
        --end;
    return end;
}

// Text without a scheme: each word that holds user, password and host.
QString maskedWords(QString text)
{
    for (int sign = text.indexOf(QLatin1Char('@')); sign >= 0;
         sign = text.indexOf(QLatin1Char('@'), sign + 1)) {
        const int begin = beginOfWord(text, sign);
        const int colon = endOfColon(text, begin);
        if (colon < 0 || colon > sign)
            continue;
        text.replace(colon, sign - colon, Passwords::mask());
        sign = colon + Passwords::mask().size();
    }
    return text;
}

// The first character that ends an address in a sentence. No mark of the sentence comes before its slashes.
int endOfAddress(const QString &text)
{
    int end = 0;
    while (end < text.size() && !QString(QLatin1String(" \t\n\"'<>;")).contains(text.at(end)))
        ++end;
    while (QString(QLatin1String(":,.")).contains(text.at(end - 1)))
        --end; // of the sentence
    return end;
}

// An address with a scheme, and the rest of the sentence. A password can hold anything up to its @; without
// one, the sentence goes on after the address. A local file has no password.
QString maskedSegment(const QString &segment)
{
    const bool isFile = segment.startsWith(QLatin1String("file:///"), Qt::CaseInsensitive);
    const bool hasSign = segment.contains(QLatin1Char('@'));
    const int end = isFile || !hasSign ? endOfAddress(segment) : segment.size();
    const QString address = segment.left(end);
    return (isFile ? address : Passwords::maskedAddress(address)) + maskedWords(segment.mid(end));
}

// In a value that is one address.
Passwords::Piece findPassword(const QString &address, Passwords::Kind kind)
{
    const int sign = address.lastIndexOf(QLatin1Char('@'));
    const int begin = endOfScheme(address);
    const bool isAddress = begin > 0 || kind == Passwords::Proxy;
    if (sign >= 0) {
        const int colon = endOfColon(address, begin);
        const bool hasPort = colon > sign && isPort(address.mid(colon));
        const bool hasSlashes = address.left(sign).contains(QLatin1String("//"));
        return findBeforeSign(address, begin, sign, isAddress || hasPort || hasSlashes, kind);
    }
    if (kind == Passwords::Proxy || (begin > 0 && !isAfterScheme(address, begin)))
        return findInAnyPart(address, begin);
    if (begin > 0)
        return findWithoutSign(address, begin);
    const int slashes = address.indexOf(QLatin1String("//"));
    return slashes >= 0 ? findInAnyPart(address, slashes + 2) : None; // the scheme is none
}

// A sentence without private keys.
QString maskedSentence(const QString &text)
{
    int slashes = text.indexOf(QLatin1String("://"));
    int begin = slashes < 0 ? text.size() : beginOfScheme(text, slashes);
    QString result = maskedWords(text.left(begin));
    while (slashes >= 0) {
        slashes = text.indexOf(QLatin1String("://"), slashes + 3);
        const int end = slashes < 0 ? text.size() : qMax(begin, beginOfScheme(text, slashes));
        result += maskedSegment(text.mid(begin, end - begin));
        begin = end;
    }
    return result;
}

// With the piece in its place; what touches it becomes one with it.
void add(Passwords::Piece piece, Pieces &pieces)
{
    Pieces apart;
    for (const Passwords::Piece &other : pieces) {
        if (other.end < piece.begin || piece.end < other.begin)
            apart.push_back(other);
        else
            piece = between(qMin(piece.begin, other.begin), qMax(piece.end, other.end));
    }
    const auto isBefore = [](const Passwords::Piece &a, const Passwords::Piece &b) {
        return a.begin < b.begin;
    };
    apart.insert(std::upper_bound(apart.begin(), apart.end(), piece, isBefore), piece);
    pieces.swap(apart);
}

} // namespace

std::vector<Passwords::Piece> Passwords::findPrivateKeys(const QString &text)
{
    const QString opening = QLatin1String("-----BEGIN ");
    const QString ending =
        QLatin1String("PRIVATE KEY-----"); // after "RSA ", "ENCRYPTED " or nothing
    Pieces keys;
    int at = text.indexOf(ending);
    while (at >= 0) {
        const int begin = at + ending.size();
        const int dashes = text.lastIndexOf(QLatin1String("-----"), at);
        const int closing = text.indexOf(QLatin1String("-----END "), begin);
        const Piece key = between(begin, closing < 0 ? text.size() : closing);
        const bool isOpened = dashes >= 0 && text.mid(dashes, opening.size()) == opening;
        if (isOpened && !isEmpty(key))
            keys.push_back(key);
        at = text.indexOf(ending, isOpened ? key.end : begin);
    }
    return keys;
}

std::vector<Passwords::Piece> Passwords::find(const QString &address, Kind kind)
{
    Pieces pieces = findPrivateKeys(address);
    const Piece password = findPassword(address, kind);
    if (!isEmpty(password))
        add(password, pieces);
    return pieces;
}

QString Passwords::maskedAddress(const QString &address, Kind kind)
{
    QString result;
    int at = 0;
    for (const Piece &piece : find(address, kind)) {
        result += address.mid(at, piece.begin - at) + mask();
        at = piece.end;
    }
    return result + address.mid(at);
}

QString Passwords::maskedText(const QString &text)
{
    QString result;
    int at = 0;
    for (const Piece &key : findPrivateKeys(text)) {
        result += maskedSentence(text.mid(at, key.begin - at)) + mask();
        at = key.end;
    }
    return result + maskedSentence(text.mid(at));
}

QString Passwords::mask()
{
    return QLatin1String("********");
}
