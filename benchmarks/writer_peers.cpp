// SPDX-License-Identifier: MIT
#include "benchmarks/writers.h"

#include "benchmarks/rapidscalars.h"
#include "benchmarks/treebuilder.h"

#include <QJsonDocument>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace {

typedef rapidjson::GenericStringBuffer<rapidjson::ASCII<>> Buffer;
typedef rapidjson::PrettyWriter<Buffer, rapidjson::UTF16<ushort>, rapidjson::ASCII<>> RapidWriter;

void write(RapidWriter &writer, const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QVariantMap: {
        const QVariantMap &map = Containers::map(value);
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
        for (const QVariant &child : Containers::list(value))
            write(writer, child);
        writer.EndArray();
        break;
    default:
        writeRapidScalar(writer, value);
    }
}

QByteArray writeWithRapidJson(const QVariant &tree)
{
    Buffer buffer;
    RapidWriter writer(buffer);
    write(writer, tree);
    return QByteArray(buffer.GetString(), int(buffer.GetSize()));
}

// What a writer that goes from byte to byte cannot do without: to look whether there is room, and
// whether the byte is to be escaped, and to store it. Here there is, and none is.
QByteArray storeByteWise(const QByteArray &bytes)
{
    QByteArray text(bytes.size(), Qt::Uninitialized);
    char *out = text.data();
    const char *const end = out + text.size();
    for (const char *in = bytes.constData(); *in != '\0' && *in != '\x7f' && *in > '\t'; ++in) {
        if (out == end)
            break;
        *out++ = *in;
    }
    return text;
}

} // namespace

Writers::Writing Writers::prepareQt(const QVariant &tree)
{
    return [tree]() { return QJsonDocument::fromVariant(tree).toJson(QJsonDocument::Indented); };
}

Writers::Writing Writers::prepareRapidJson(const QVariant &tree)
{
    return [tree]() { return writeWithRapidJson(tree); };
}

Writers::Writing Writers::prepareFloor(const QByteArray &text)
{
    return [text]() { return storeByteWise(text); };
}
