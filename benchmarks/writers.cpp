#include "benchmarks/writers.h"

#include "json/jsonwriter.h"
#include "json/varianttree.h"

#include <QJsonDocument>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace {

typedef rapidjson::GenericStringBuffer<rapidjson::UTF8<>> Buffer;
typedef rapidjson::PrettyWriter<Buffer, rapidjson::UTF16<ushort>, rapidjson::UTF8<>> RapidWriter;

void writeText(RapidWriter &writer, const QString &text)
{
    writer.String(text.utf16(), rapidjson::SizeType(text.size()));
}

void write(RapidWriter &writer, const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QVariantMap: {
        const QVariantMap &map = VariantTree::map(value);
        writer.StartObject();
        for (QVariantMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it) {
            writer.Key(it.key().utf16(), rapidjson::SizeType(it.key().size()));
            write(writer, it.value());
        }
        writer.EndObject();
        break;
    }
    case QMetaType::QVariantList:
        writer.StartArray();
        for (const QVariant &child : VariantTree::list(value))
            write(writer, child);
        writer.EndArray();
        break;
    case QMetaType::QString:
        writeText(writer, value.toString());
        break;
    case QMetaType::Bool:
        writer.Bool(value.toBool());
        break;
    case QMetaType::Int:
        writer.Int(value.toInt());
        break;
    case QMetaType::LongLong:
        writer.Int64(value.toLongLong());
        break;
    case QMetaType::Double:
        writer.Double(value.toDouble());
        break;
    default:
        writer.Null();
    }
}

QByteArray writeWithRapidJson(const QVariant &tree)
{
    Buffer buffer;
    RapidWriter writer(buffer);
    write(writer, tree);
    return QByteArray(buffer.GetString(), int(buffer.GetSize()));
}

// What a writer cannot do without: to put every byte into its place.
QByteArray copyByteWise(const QByteArray &text)
{
    QByteArray copy(text.size(), Qt::Uninitialized);
    const volatile char *from = text.constData();
    volatile char *to = copy.data();
    for (int i = 0; i < text.size(); ++i)
        to[i] = from[i];
    return copy;
}

} // namespace

QByteArrayList Writers::names()
{
    return { "ours", "qt", "rapidjson", "floor" };
}

Writers::Writing Writers::prepare(const QByteArray &writer, const QVariant &tree)
{
    if (writer == "ours")
        return [tree]() { return JsonWriter::serialize(tree, 4, 0); };
    if (writer == "qt")
        return
            [tree]() { return QJsonDocument::fromVariant(tree).toJson(QJsonDocument::Indented); };
    if (writer == "rapidjson")
        return [tree]() { return writeWithRapidJson(tree); };
    if (writer == "floor") {
        const QByteArray text = JsonWriter::serialize(tree, 4, 0);
        return [text]() { return copyByteWise(text); };
    }
    return Writing();
}
