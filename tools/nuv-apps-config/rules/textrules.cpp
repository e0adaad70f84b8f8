// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/textrules.h"

#include "examples/launcher/values/hostname.h"
#include "examples/launcher/values/pageaddress.h"
#include "examples/launcher/values/pattern.h"
#include "examples/launcher/values/proxyaddress.h"
#include "examples/launcher/values/scriptfile.h"
#include "examples/launcher/values/useragent.h"
#include "examples/launcher/values/webaddress.h"
#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/rules/escapedcontrols.h"
#include "tools/nuv-apps-config/rules/nearbyfiles.h"
#include "tools/nuv-apps-config/secrets/secrets.h"

#include <QDir>

namespace {

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

struct Judgement {
    const char *rule;
    Objection objection;
};

QString pathIn(const QString &address)
{
    const int end = Pattern("[?#]").indexIn(address);
    return end < 0 ? address : address.left(end);
}

// "www.tv.example/start", but not "menu.html".
bool isLikeHost(const QString &address)
{
    const QString host = address.section(QLatin1Char('/'), 0, 0);
    const QString suffix = host.section(QLatin1Char('.'), -1).toLower();
    const bool isFile = !address.contains(QLatin1Char('/'))
        && QString(QLatin1String(" html htm xhtml php svg js txt xml json pdf png jpg "))
               .contains(QLatin1Char(' ') + suffix + QLatin1Char(' '));
    return host.indexOf(QLatin1Char('.')) > 0 && !isFile && !HostName::normalized(host).isEmpty();
}

// "https//tv.example/" is the path of a file, too.
QString withColon(const QString &address)
{
    Pattern scheme("^(https?)(/+)(.*)$");
    return scheme.isIn(address) ? scheme.cap(1) + QLatin1String("://") + scheme.cap(3) : QString();
}

Judgement judgeMissingPage(const QString &address, const QString &folder, const Objection &missing)
{
    const QString withScheme = withColon(address);
    if (!withScheme.isEmpty())
        return { "unusable-address", Objection("a colon is missing after the scheme", withScheme) };
    if (isLikeHost(address))
        return { "unusable-address",
                 Objection("the scheme is missing", QLatin1String("https://") + address) };
    const QString path = pathIn(address);
    const QString near = NearbyFiles::nearest(path, folder);
    Objection objection = missing;
    if (!near.isEmpty())
        objection.instead = near + address.mid(path.size());
    return { "missing-file", objection };
}

// What is named from the root may be there on the device only.
Judgement judgeAddress(const QString &address, const DeviceFiles &files)
{
    const Parsed<QUrl> page = toPageAddress(address, files.folder());
    if (!page.isUsable() || !page.value.isLocalFile())
        return { "unusable-address", page.objection };
    const bool isRelative =
        WebAddress::schemeOf(address).isEmpty() && !address.startsWith(QLatin1Char('/'));
    const QString path = page.value.toLocalFile();
    const QString name = isRelative ? QDir(files.folder()).relativeFilePath(path) : path;
    const Objection missing = judgeFile(files.find(name));
    if (missing.isNone() || (files.mayHave(name) && QFileInfo::exists(path)))
        return { "missing-file", Objection() };
    if (!isRelative)
        return { files.mayHave(name) ? "missing-here" : "missing-file", missing };
    return judgeMissingPage(address, files.folder(), missing);
}

Judgement judgeScript(const QString &path, const DeviceFiles &files)
{
    const QString found = files.find(path);
    const bool isAbsolute = path.startsWith(QLatin1Char('/'));
    Objection objection = findScript(isAbsolute ? found : path, files.folder()).objection;
    const bool isMissing = !QFileInfo::exists(found);
    if (!objection.isNone() && isMissing && files.mayHave(path))
        return { "missing-here", objection };
    if (!objection.isNone() && isMissing && !isAbsolute && objection.instead.isEmpty())
        objection.instead = NearbyFiles::nearest(path, files.folder());
    return { "missing-file", objection };
}

Judgement judge(const Property &property, const QString &value, const DeviceFiles &files)
{
    switch (property.kind) {
    case Kind::Address:
        return judgeAddress(value, files);
    case Kind::ScriptFile:
        return judgeScript(value, files);
    case Kind::Referrer:
        return { "unusable-address", parseReferrer(value).objection };
    case Kind::Proxy:
        return { "unusable-proxy", parseProxy(value).objection };
    case Kind::UserAgent:
        return { "unusable-user-agent", parseUserAgent(value).objection };
    case Kind::Domain:
        return { "unusable-domain", HostName::parseDomain(value).objection };
    default:
        return { "", Objection() };
    }
}

// The launcher uses it, but nothing that was meant by it has a blank there.
Judgement judgeBlanks(const Property &property, const QString &value)
{
    const bool mayHave = property.kind != Kind::Address && qstrcmp(property.key, "Tag") != 0;
    if (mayHave || value.trimmed() == value)
        return { "", Objection() };
    return { "blank-at-edge", Objection("it begins or ends with a blank", value.trimmed()) };
}

QString quotedName(const Property &property)
{
    return QLatin1Char('"') + QLatin1String(property.key) + QLatin1Char('"');
}

QString sentence(const Property &property, const Node &value, const Judgement &judgement)
{
    const QString given = value.value.toString();
    const auto shown = [&property](const QString &path) {
        return Secrets::shown(text(property.key), path).toString();
    };
    const bool isAbsolute = given.startsWith(QLatin1Char('/')) || given.startsWith(text("file:"));
    const bool isThere = judgement.objection.reason != text("there is no such file");
    if (qstrcmp(judgement.rule, "blank-at-edge") == 0)
        return quotedName(property) + text(" begins or ends with a blank");
    if (qstrcmp(judgement.rule, "missing-here") == 0)
        return QString(QLatin1String("there is no %1 on this machine")).arg(shown(given));
    if (isThere)
        return quotedName(property) + text(" cannot be used: ") + judgement.objection.reason;
    return QString(QLatin1String(isAbsolute ? "there is no %1 on the device"
                                            : "there is no %1 next to the configuration file"))
        .arg(shown(given));
}

void report(const Property &property, const Node &value, const Judgement &judgement,
            Findings &findings)
{
    const QString &instead = judgement.objection.instead;
    const bool isFile = qstrcmp(judgement.rule, "missing-file") == 0;
    const QString shown = Secrets::shown(text(property.key), instead).toString();
    QString hint;
    const bool isForeign = value.value.toString().isEmpty()
        || (property.kind == Kind::ScriptFile
            && judgement.objection.reason != text("there is no such file"));
    const bool isNeeded = property.kind == Kind::Address || property.kind == Kind::Domain;
    if (qstrcmp(judgement.rule, "missing-here") == 0)
        hint = text("--root DIR looks below DIR for the files of the device");
    else if (instead.isEmpty() && isForeign)
        hint = text("for instance ") + text(property.example)
            + text(isNeeded ? "" : ", or remove the key");
    if (!instead.isEmpty())
        hint = isFile ? shown + text(" is there")
                      : QString(QLatin1String("did you mean \"%1\"?")).arg(shown);
    Finding &finding = findings.add(judgement.rule, value.begin, value.length(),
                                    sentence(property, value, judgement), hint);
    if (!instead.isEmpty())
        finding.edit = Edits::replace(value, Edits::quoted(instead));
}

} // namespace

void TextRules::check(const SourceText &source, const Property &property, const Node &value,
                      const DeviceFiles &files, Findings &findings)
{
    const QString given = value.value.toString();
    const bool isHeader = property.kind == Kind::UserAgent;
    if (!isHeader && EscapedControls::report(source, value, findings))
        return;
    if (!isHeader && !EscapedControls::isPlain(source, value))
        return; // the value is not what was meant
    Judgement judgement = judge(property, given, files);
    if (judgement.objection.isNone())
        judgement = judgeBlanks(property, given);
    if (!judgement.objection.isNone())
        report(property, value, judgement, findings);
}

bool TextRules::isUsable(const Property &property, const QString &text, const DeviceFiles &files)
{
    return judge(property, text, files).objection.isNone();
}
