// SPDX-License-Identifier: MIT
// The loader that somebody would write instead of WebAppSettings: it fills a hash from a QJsonObject.
//
//   launch-plain link|answer FILE

#include "benchmarks/work.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QVariant>

#include <cstdio>

namespace {

typedef QHash<QString, QVariant> Properties;

Properties properties(const QJsonObject &application)
{
    Properties result;
    for (QJsonObject::const_iterator it = application.constBegin(); it != application.constEnd();
         ++it) {
        if (!it.value().isObject() && !it.value().isArray())
            result.insert(it.key(), it.value().toVariant());
    }
    const QJsonObject certificate = application.value(QLatin1String("Certificate")).toObject();
    for (const char *key : { "Path", "PrivateKey", "PassPhrase" }) {
        if (certificate.contains(QLatin1String(key)))
            result.insert(QLatin1String("Cert") + QLatin1String(key),
                          certificate.value(QLatin1String(key)).toVariant());
    }
    QStringList domains;
    for (const QJsonValue &domain :
         application.value(QLatin1String("GrantBroadcastAccessRightDomains")).toArray())
        domains.append(domain.toObject().value(QLatin1String("Domain")).toString());
    if (!domains.isEmpty())
        result.insert(QLatin1String("GrantBroadcastAccessRightDomains"), domains);
    return result;
}

QHash<QString, Properties> applications(const char *file)
{
    QHash<QString, Properties> result;
    QFile opened(QString::fromLocal8Bit(file));
    if (!opened.open(QIODevice::ReadOnly))
        return result;
    const QJsonObject root = QJsonDocument::fromJson(opened.readAll()).object();
    for (const QJsonValue &value : root.value(QLatin1String("Applications")).toArray()) {
        const QJsonObject application = value.toObject();
        const QString tag = application.value(QLatin1String("Tag")).toString();
        if (!result.contains(tag))
            result.insert(tag, properties(application));
    }
    return result;
}

bool isAnswered(const char *file)
{
    // Kept, as in a launcher.
    const auto *const all = new QHash<QString, Properties>(applications(file));
    return all->value(QLatin1String("app3")).value(QLatin1String("Url")).isValid();
}

} // namespace

int main(int argc, char **argv)
{
    const long long since = Work::started();
    const QByteArray step = argc == 3 ? argv[1] : "";
    Work::beginInStartedProcess();
    const bool done = step == "link" || (step == "answer" && isAnswered(argv[2]));
    Work::end();
    if (done)
        Work::report(since);
    std::fprintf(stderr, "usage: launch-plain link|answer FILE\n");
    return 2;
}
