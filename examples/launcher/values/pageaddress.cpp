// SPDX-License-Identifier: MIT
#include "values/pageaddress.h"

#include "values/pattern.h"
#include "values/webaddress.h"

namespace {

const char *const webSchemes[] = { "http", "https", "ftp" };
const char *const otherSchemes[] = { "about", "data", "file", "qrc" };

template<int size>
bool isOneOf(const char *const (&schemes)[size], const QString &scheme)
{
    for (int i = 0; i < size; ++i) {
        if (scheme == QLatin1String(schemes[i]))
            return true;
    }
    return false;
}

QString lettersOf(const QString &scheme)
{
    QString letters;
    for (const QChar c : scheme) {
        if (c.isLetter())
            letters += c;
    }
    return letters;
}

// Letters that are missing, doubled or exchanged: "htps", "htttp", "hhtps", "ttps".
QString probableScheme(const QString &scheme)
{
    const QString letters = lettersOf(scheme);
    Pattern likeHttp("^(h*t+p+|ht*p+|h+t+|hp+t*|th+t*p+|h+t+[a-z]p|h+[a-z]tp)$");
    const bool isSecure =
        letters.endsWith(QLatin1Char('s')) || letters.contains(QLatin1String("sp"));
    QString plain = letters;
    plain.remove(QLatin1Char('s'));
    if (plain.size() < 2 || plain.size() > 6 || !likeHttp.isIn(plain))
        return QString();
    return QLatin1String(isSecure ? "https" : "http");
}

Objection judgeUnknownScheme(const QString &text, const QString &scheme)
{
    const QString behind = text.mid(scheme.size() + 1);
    const QString meant = probableScheme(scheme);
    if (!meant.isEmpty())
        return Objection("nothing loads addresses of this scheme",
                         meant + QLatin1Char(':') + behind);
    if (Pattern("^[0-9]+([/?#]|$)").isIn(behind))
        return Objection("the scheme is missing", QLatin1String("http://") + text);
    if (scheme.size() == 1)
        return Objection("it is a path of another system, not an address");
    if (scheme == QLatin1String("javascript"))
        return Objection("a script is no page");
    return Objection("nothing loads addresses of this scheme");
}

// A file of this machine. What follows two slashes would be another machine's name.
Objection judgeFileAddress(const QString &text)
{
    const QString behind = text.mid(int(qstrlen("file:")));
    const QUrl url(text);
    const bool isHere = url.host().isEmpty() || url.host() == QLatin1String("localhost");
    if (isHere && url.path().startsWith(QLatin1Char('/')))
        return Objection();
    if (behind.startsWith(QLatin1String("//")))
        return Objection("three slashes must follow file:",
                         QLatin1String("file:///") + behind.mid(2));
    return Objection("the path of a file begins with a slash here", behind);
}

Objection judgeWithoutScheme(const QString &text)
{
    if (text.startsWith(QLatin1String("//")))
        return Objection("the scheme is missing", QLatin1String("https:") + text);
    if (Pattern("[/?#]").before(text).contains(QLatin1Char(':')))
        return Objection("the scheme is missing", QLatin1String("http://") + text);
    return QUrl(text).isValid() ? Objection() : Objection("it is not an address");
}

Objection judge(const QString &text)
{
    const QString scheme = WebAddress::schemeOf(text);
    if (text.trimmed().isEmpty())
        return Objection("it is empty");
    if (text.at(0).isSpace())
        return Objection("there is a blank before the address", text.trimmed());
    if (isOneOf(webSchemes, scheme))
        return WebAddress::judge(text);
    if (scheme == QLatin1String("file"))
        return judgeFileAddress(text);
    if (scheme.isEmpty())
        return judgeWithoutScheme(text);
    if (!isOneOf(otherSchemes, scheme))
        return judgeUnknownScheme(text, scheme);
    return QUrl(text).isValid() ? Objection() : Objection("it is not an address");
}

} // namespace

Parsed<QUrl> toPageAddress(const QString &text, const QString &folder)
{
    Parsed<QUrl> address;
    address.objection = withUsableProposal(judge(text), judge);
    if (!address.isUsable())
        return address;
    address.value = QUrl::fromLocalFile(folder + QLatin1Char('/')).resolved(QUrl(text));
    address.value.setScheme(address.value.scheme().toLower());
    return address;
}
