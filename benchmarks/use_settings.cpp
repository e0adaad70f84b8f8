// SPDX-License-Identifier: MIT
// A user's work with a file of settings, once:
//
//   use-settings open FILE WHO      opens FILE and asks for every value
//   use-settings change FILE WHO    opens FILE, changes a value, and writes FILE
//   use-settings prepare FILE       writes FILE.keys and FILE.ini, which the two need
//   use-settings verify FILE        compares what all read, and what they read of what they wrote
//
// WHO is "ours", "ini", or one of Formats::names(). Prints nanoseconds, and bytes of the heap.

#include "benchmarks/formats.h"
#include "benchmarks/work.h"
#include "settings/jsonsettingsformat.h"

#include <QFile>
#include <QStringList>

#include <cstdio>

namespace {

const char changedKey[] = "Applications/1/Url";

QSettings::Format formatOf(const QByteArray &who)
{
    if (who == "ours")
        return JsonSettingsFormat;
    return who == "ini" ? QSettings::IniFormat : Formats::prepare(who);
}

QString pathFor(const QByteArray &file, const QByteArray &who)
{
    return QString::fromLocal8Bit(who == "ini" ? file + ".ini" : file);
}

// Read before, so that the heap is as good as fresh.
QStringList keysOf(const QByteArray &file)
{
    QFile keys(QString::fromLocal8Bit(file + ".keys"));
    if (!keys.open(QIODevice::ReadOnly))
        return QStringList();
    return QString::fromUtf8(keys.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

int open(const QByteArray &file, const QByteArray &who)
{
    const QSettings::Format format = formatOf(who);
    const QString path = pathFor(file, who);
    const QStringList keys = keysOf(file);
    const long long since = Work::now();
    Work::begin();
    const QSettings settings(path, format);
    int missing = 0;
    for (const QString &key : keys)
        missing += !settings.value(key).isValid();
    Work::end();
    if (missing || keys.isEmpty())
        return 1;
    Work::report(since);
}

int change(const QByteArray &file, const QByteArray &who)
{
    const QSettings::Format format = formatOf(who);
    const QString path = pathFor(file, who);
    const long long since = Work::now();
    Work::begin();
    QSettings settings(path, format);
    settings.setValue(QLatin1String(changedKey), QLatin1String("http://changed.example/"));
    settings.sync();
    Work::end();
    if (settings.status() != QSettings::NoError)
        return 1;
    Work::report(since);
}

QVariantMap valuesOf(const QString &path, QSettings::Format format)
{
    const QSettings settings(path, format);
    QVariantMap values;
    for (const QString &key : settings.allKeys())
        values.insert(key, settings.value(key));
    return values;
}

int prepare(const QByteArray &file)
{
    const QVariantMap values = valuesOf(pathFor(file, "ours"), JsonSettingsFormat);
    QFile keys(QString::fromLocal8Bit(file + ".keys"));
    if (values.isEmpty() || !keys.open(QIODevice::WriteOnly))
        return 1;
    keys.write(QStringList(values.keys()).join(QLatin1Char('\n')).toUtf8());
    QFile::remove(pathFor(file, "ini"));
    QSettings ini(pathFor(file, "ini"), QSettings::IniFormat);
    for (QVariantMap::const_iterator it = values.constBegin(); it != values.constEnd(); ++it)
        ini.setValue(it.key(), it.value());
    ini.sync();
    return ini.status() == QSettings::NoError ? 0 : 1;
}

// A whole double may come back as an integer, and the other way round: the readers differ there.
bool isSame(const QVariantMap &one, const QVariantMap &other)
{
    if (one.keys() != other.keys())
        return false;
    for (QVariantMap::const_iterator it = one.constBegin(); it != one.constEnd(); ++it) {
        if (it.value().toString() != other.value(it.key()).toString())
            return false;
    }
    return true;
}

bool agrees(const QByteArray &file, const QByteArray &who, const QVariantMap &expected)
{
    const QSettings::Format format = formatOf(who);
    if (!isSame(valuesOf(pathFor(file, who), format), expected))
        return false;
    if (!Formats::canWrite(who))
        return true;
    const QString copy = pathFor(file + "." + who, who);
    QFile::remove(copy);
    QFile::copy(pathFor(file, who), copy);
    {
        QSettings settings(copy, format);
        settings.setValue(QLatin1String(changedKey), QLatin1String("http://changed.example/"));
    }
    QVariantMap changed = expected;
    changed.insert(QLatin1String(changedKey), QLatin1String("http://changed.example/"));
    return isSame(valuesOf(copy, JsonSettingsFormat), changed);
}

int verify(const QByteArray &file)
{
    const QVariantMap expected = valuesOf(pathFor(file, "ours"), JsonSettingsFormat);
    int differing = expected.isEmpty() ? 1 : 0;
    for (const QByteArray &who : Formats::names() + QByteArrayList { "ini" }) {
        if (agrees(file, who, expected))
            continue;
        std::printf("%s reads or writes other settings\n", who.constData());
        ++differing;
    }
    return differing ? 1 : 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QByteArray action = argc > 1 ? argv[1] : "";
    if (argc == 4 && action == "open")
        return open(argv[2], argv[3]);
    if (argc == 4 && action == "change")
        return change(argv[2], argv[3]);
    if (argc == 3 && action == "prepare")
        return prepare(argv[2]);
    if (argc == 3 && action == "verify")
        return verify(argv[2]);
    std::fprintf(stderr, "usage: use-settings open|change FILE WHO | prepare|verify FILE\n");
    return 2;
}
