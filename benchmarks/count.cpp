// Does one thing once, for callgrind to count the instructions of that call:
//
//   LD_BIND_NOW=1 valgrind --tool=callgrind --collect-atstart=no count read DOCUMENT READER
//   … count write DOCUMENT WRITER
//   … count flatten|unflatten|load DOCUMENT ours|plain
//
// Nothing of the kind is done before, so that the heap is fresh: on a recycled one the same code
// differs by a quarter. Prints how many units the figure is to be divided by: bytes read, bytes
// written, flat keys, or applications.
//
//   count print DOCUMENT    writes the document
//   count verify            compares the trees that the readers make

#include "benchmarks/documents.h"
#include "benchmarks/readers.h"
#include "benchmarks/writers.h"
#include "json/jsonparser.h"
#include "json/varianttree.h"
#include "settings/jsonsettingsformat.h"

#include <cstdio>
#include <valgrind/callgrind.h>

namespace {

int printUnits(int units)
{
    std::printf("%d\n", units);
    return 0;
}

int countReading(const QByteArray &document, const QByteArray &reader)
{
    const Readers::Reading read = Readers::prepare(reader, document);
    if (!read)
        return 2;
    CALLGRIND_TOGGLE_COLLECT;
    QVariant tree = read();
    CALLGRIND_TOGGLE_COLLECT;
    VariantTree::dispose(tree);
    return printUnits(document.size());
}

int countWriting(const QByteArray &document, const QByteArray &writer)
{
    QVariant tree = parseJson(document, nullptr);
    const Writers::Writing write = Writers::prepare(writer, tree);
    if (!write)
        return 2;
    CALLGRIND_TOGGLE_COLLECT;
    const QByteArray text = write();
    CALLGRIND_TOGGLE_COLLECT;
    return printUnits(text.size());
}

// The mapping as it is described, without a thought of its cost: the peer of our own.
void flattenPlainly(QString &prefix, QSettings::SettingsMap &map, const QVariant &value)
{
    if (VariantTree::isMap(value)) {
        const QVariantMap &object = VariantTree::map(value);
        for (QVariantMap::const_iterator it = object.constBegin(); it != object.constEnd(); ++it) {
            prefix += it.key() + QLatin1Char('/');
            flattenPlainly(prefix, map, it.value());
        }
    } else if (VariantTree::isList(value)) {
        const QVariantList &array = VariantTree::list(value);
        map.insert(prefix + QLatin1String("size"), array.size());
        for (int i = 0; i < array.size(); ++i) {
            prefix += QString::number(i + 1) + QLatin1Char('/');
            flattenPlainly(prefix, map, array.at(i));
        }
    } else {
        map.insert(prefix.left(prefix.size() - 1), value);
    }
    prefix.truncate(prefix.lastIndexOf(QLatin1Char('/'), -2) + 1);
}

int countFlattening(const QByteArray &document, const QByteArray &who)
{
    const QVariant tree = parseJson(document, nullptr);
    QString prefix;
    QSettings::SettingsMap map;
    CALLGRIND_TOGGLE_COLLECT;
    if (who == "ours")
        flattenVariant(prefix, map, tree);
    else
        flattenPlainly(prefix, map, tree);
    CALLGRIND_TOGGLE_COLLECT;
    return printUnits(map.size());
}

QVariant unflattenPlainly(const QVariant &node, const QString &key, const QVariant &value)
{
    QVariantMap object = node.toMap();
    const int separator = key.indexOf(QLatin1Char('/'));
    if (separator >= 0) {
        const QString head = key.left(separator);
        object.insert(head, unflattenPlainly(object.value(head), key.mid(separator + 1), value));
        return object;
    }
    if (key != QLatin1String("size")) {
        object.insert(key, value);
        return object;
    }
    QVariantList array;
    for (int n = 1; n <= value.toInt(); ++n)
        array.append(object.value(QString::number(n)));
    return array;
}

int countUnflattening(const QByteArray &document, const QByteArray &who)
{
    const QVariant tree = parseJson(document, nullptr);
    QString prefix;
    QSettings::SettingsMap map;
    flattenVariant(prefix, map, tree);
    QVariant root;
    CALLGRIND_TOGGLE_COLLECT;
    if (who == "ours") {
        root = unflattenMap(map);
    } else {
        for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd();
             ++it)
            root = unflattenPlainly(root, it.key(), it.value());
    }
    CALLGRIND_TOGGLE_COLLECT;
    return printUnits(map.size());
}

int verify()
{
    int differing = 0;
    for (const QByteArray &name : Documents::names()) {
        const QByteArray document = Documents::make(name);
        const QVariant expected = Readers::prepare("ours", document)();
        for (const QByteArray &reader : Readers::names()) {
            if (Readers::prepare(reader, document)() == expected)
                continue;
            std::printf("%s reads %s differently\n", reader.constData(), name.constData());
            ++differing;
        }
    }
    return differing ? 1 : 0;
}

int printDocument(const QByteArray &document)
{
    std::fwrite(document.constData(), 1, size_t(document.size()), stdout);
    return 0;
}

int run(const QByteArray &what, const QByteArray &document, const QByteArray &who)
{
    if (what == "verify")
        return verify();
    if (document.isEmpty())
        return 2;
    if (what == "print")
        return printDocument(document);
    if (what == "read")
        return countReading(document, who);
    if (what == "write")
        return countWriting(document, who);
    if (what == "flatten")
        return countFlattening(document, who);
    if (what == "unflatten")
        return countUnflattening(document, who);
    return 2;
}

} // namespace

int main(int argc, char **argv)
{
    const QByteArray what = argc > 1 ? argv[1] : "";
    const QByteArray document = argc > 2 ? Documents::make(argv[2]) : QByteArray();
    const QByteArray who = argc > 3 ? argv[3] : "";
    const int status = run(what, document, who);
    if (status == 2)
        std::fprintf(stderr,
                     "usage: count read|write|flatten|unflatten DOCUMENT WHO"
                     " | print DOCUMENT | verify\n");
    return status;
}
