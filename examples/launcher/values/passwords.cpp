#include "values/passwords.h"

namespace {

const Passwords::Piece None = { 0, 0 };

Passwords::Piece between(int begin, int end)
{
    const Passwords::Piece piece = { begin, end > begin ? end - begin : 0 };
    return piece;
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
    const int colon = address.indexOf(QLatin1String("://"));
    const QString scheme = address.left(qMax(colon, 0)).trimmed();
    if (colon >= 0 && beginOfScheme(scheme, scheme.size()) == 0)
        return colon + 3;
    return address.startsWith(QLatin1String("//")) ? 2 : 0;
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
    const int escaped = address.indexOf(QLatin1String("%3a"), at, Qt::CaseInsensitive);
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

// "tv.example" rather than the name of a user.
bool looksLikeHost(const QString &text)
{
    return text.contains(QLatin1Char('.')) || text == QLatin1String("localhost")
        || text.startsWith(QLatin1Char('['));
}

// What follows the colon is a password up to the @, unless a host with its port is complete before it.
Passwords::Piece findBeforeSign(const QString &address, int begin, int colon, int sign)
{
    const int end = endOfAuthority(address, begin);
    const bool hasScheme = begin > 0;
    if (hasScheme && end < colon)
        return None;
    const bool isComplete = hasScheme && end < sign
        && looksLikeHost(address.mid(begin, colon - 1 - begin))
        && isPort(address.mid(colon, end - colon));
    return isComplete ? None : between(colon, sign);
}

// The @ itself may be what was mistyped. What is no port is a password then.
Passwords::Piece findWithoutSign(const QString &address, int begin, int colon)
{
    const int end = endOfAuthority(address, begin);
    if (end < colon || address.mid(begin, 1) == QLatin1String("["))
        return None;
    return isPort(address.mid(colon, end - colon)) ? None : between(colon, address.size());
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

// An address with a scheme, and the rest of the sentence.
QString maskedSegment(const QString &segment)
{
    const Passwords::Piece piece = Passwords::find(segment);
    const int blank = segment.indexOf(QLatin1Char(' '), piece.begin);
    const bool hasSign = segment.contains(QLatin1Char('@'));
    const int end = hasSign || blank < 0 ? piece.begin + piece.length : blank;
    if (piece.length == 0 || end <= piece.begin)
        return segment;
    return segment.left(piece.begin) + Passwords::mask() + segment.mid(end);
}

} // namespace

Passwords::Piece Passwords::find(const QString &address, Kind kind)
{
    const int begin = endOfScheme(address);
    const int colon = endOfColon(address, begin);
    if (colon < 0)
        return None;
    const int sign = address.lastIndexOf(QLatin1Char('@'));
    if (sign >= colon)
        return findBeforeSign(address, begin, colon, sign);
    const bool isAddress = begin > 0 || kind == Proxy;
    return isAddress && sign < 0 ? findWithoutSign(address, begin, colon) : None;
}

QString Passwords::maskedAddress(const QString &address, Kind kind)
{
    const Piece piece = find(address, kind);
    if (piece.length == 0)
        return address;
    return address.left(piece.begin) + mask() + address.mid(piece.begin + piece.length);
}

QString Passwords::maskedText(const QString &text)
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

QString Passwords::mask()
{
    return QLatin1String("********");
}
