// SPDX-License-Identifier: MIT
#include "benchmarks/formats.h"

#include "benchmarks/rapidscalars.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <simdjson.h>

#include <climits>

namespace {

typedef QSettings::SettingsMap Map;

QString joined(const QString &path, const QString &name)
{
    return path.isEmpty() ? name : path + QLatin1Char('/') + name;
}

QString element(const QString &path, int index)
{
    return joined(path, QString::number(index + 1));
}

void insertSize(Map &map, const QString &path, int size)
{
    map.insert(joined(path, QStringLiteral("size")), size);
}

QVariant number(qint64 value)
{
    return value >= INT_MIN && value <= INT_MAX ? QVariant(int(value)) : QVariant(value);
}

QVariant number(double value)
{
    return value;
}

// Reading.

void flatten(Map &map, const QString &path, const QJsonValue &value)
{
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (QJsonObject::const_iterator it = object.constBegin(); it != object.constEnd(); ++it)
            flatten(map, joined(path, it.key()), it.value());
    } else if (value.isArray()) {
        const QJsonArray array = value.toArray();
        insertSize(map, path, array.size());
        for (int i = 0; i < array.size(); ++i)
            flatten(map, element(path, i), array.at(i));
    } else {
        map.insert(path, value.toVariant());
    }
}

bool readWithQt(QIODevice &device, Map &map)
{
    const QJsonDocument document = QJsonDocument::fromJson(device.readAll());
    flatten(map, QString(), document.object());
    return true;
}

QString text(const rapidjson::Value &value)
{
    return QString::fromUtf8(value.GetString(), int(value.GetStringLength()));
}

QVariant scalar(const rapidjson::Value &value)
{
    if (value.IsString())
        return text(value);
    if (value.IsBool())
        return value.GetBool();
    if (value.IsInt64())
        return number(qint64(value.GetInt64()));
    return value.IsNumber() ? number(value.GetDouble()) : QVariant();
}

void flatten(Map &map, const QString &path, const rapidjson::Value &value)
{
    if (value.IsObject()) {
        for (const auto &member : value.GetObject())
            flatten(map, joined(path, text(member.name)), member.value);
    } else if (value.IsArray()) {
        insertSize(map, path, int(value.Size()));
        for (int i = 0; i < int(value.Size()); ++i)
            flatten(map, element(path, i), value[rapidjson::SizeType(i)]);
    } else {
        map.insert(path, scalar(value));
    }
}

bool readWithRapidJson(QIODevice &device, Map &map)
{
    QByteArray bytes = device.readAll();
    rapidjson::Document document;
    document.ParseInsitu<rapidjson::kParseFullPrecisionFlag>(bytes.data());
    flatten(map, QString(), document);
    return true;
}

QString text(std::string_view view)
{
    return QString::fromUtf8(view.data(), int(view.size()));
}

QVariant scalar(const simdjson::dom::element &value)
{
    using simdjson::dom::element_type;
    switch (value.type()) {
    case element_type::STRING:
        return text(std::string_view(value));
    case element_type::INT64:
        return number(qint64(int64_t(value)));
    case element_type::UINT64:
        return number(double(uint64_t(value)));
    case element_type::DOUBLE:
        return number(double(value));
    case element_type::BOOL:
        return bool(value);
    default:
        return QVariant();
    }
}

void flatten(Map &map, const QString &path, const simdjson::dom::element &value)
{
    if (value.is_object()) {
        for (const simdjson::dom::key_value_pair &field : simdjson::dom::object(value))
            flatten(map, joined(path, text(field.key)), field.value);
    } else if (value.is_array()) {
        int index = 0;
        for (const simdjson::dom::element &child : simdjson::dom::array(value))
            flatten(map, element(path, index++), child);
        insertSize(map, path, index);
    } else {
        map.insert(path, scalar(value));
    }
}

bool readWithSimdjson(QIODevice &device, Map &map)
{
    const QByteArray bytes = device.readAll();
    simdjson::dom::parser parser;
    simdjson::dom::element root;
    if (!parser.parse(bytes.constData(), size_t(bytes.size())).get(root))
        flatten(map, QString(), root);
    return true;
}

QVariant scalar(const nlohmann::json &value)
{
    if (value.is_string())
        return QString::fromStdString(value.get_ref<const std::string &>());
    if (value.is_boolean())
        return value.get<bool>();
    if (value.is_number_integer())
        return number(qint64(value.get<int64_t>()));
    return value.is_number() ? number(value.get<double>()) : QVariant();
}

void flatten(Map &map, const QString &path, const nlohmann::json &value)
{
    if (value.is_object()) {
        for (const auto &member : value.items())
            flatten(map, joined(path, QString::fromStdString(member.key())), member.value());
    } else if (value.is_array()) {
        insertSize(map, path, int(value.size()));
        for (int i = 0; i < int(value.size()); ++i)
            flatten(map, element(path, i), value[size_t(i)]);
    } else {
        map.insert(path, scalar(value));
    }
}

bool readWithNlohmann(QIODevice &device, Map &map)
{
    const QByteArray bytes = device.readAll();
    flatten(map, QString(), nlohmann::json::parse(bytes.constBegin(), bytes.constEnd()));
    return true;
}

// Writing. The keys of a map become a tree of names, which each library is told of in its own way.

struct Node {
    QVariant value;
    QMap<QString, Node> children;

    bool isArray() const { return children.contains(QStringLiteral("size")); }
    int size() const { return children.value(QStringLiteral("size")).value.toInt(); }
    Node element(int index) const { return children.value(QString::number(index + 1)); }
};

Node treeOf(const Map &map)
{
    Node root;
    for (Map::const_iterator it = map.constBegin(); it != map.constEnd(); ++it) {
        Node *node = &root;
        for (const QString &name : it.key().split(QLatin1Char('/')))
            node = &node->children[name];
        node->value = it.value();
    }
    return root;
}

QJsonValue jsonOf(const Node &node)
{
    if (node.isArray()) {
        QJsonArray array;
        for (int i = 0; i < node.size(); ++i)
            array.append(jsonOf(node.element(i)));
        return array;
    }
    if (node.children.isEmpty())
        return QJsonValue::fromVariant(node.value);
    QJsonObject object;
    for (auto it = node.children.constBegin(); it != node.children.constEnd(); ++it)
        object.insert(it.key(), jsonOf(it.value()));
    return object;
}

bool writeWithQt(QIODevice &device, const Map &map)
{
    return device.write(QJsonDocument(jsonOf(treeOf(map)).toObject()).toJson()) >= 0;
}

typedef rapidjson::PrettyWriter<rapidjson::StringBuffer, rapidjson::UTF16<ushort>> RapidWriter;

void write(RapidWriter &writer, const Node &node)
{
    if (node.isArray()) {
        writer.StartArray();
        for (int i = 0; i < node.size(); ++i)
            write(writer, node.element(i));
        writer.EndArray();
    } else if (node.children.isEmpty()) {
        writeRapidScalar(writer, node.value);
    } else {
        writer.StartObject();
        for (auto it = node.children.constBegin(); it != node.children.constEnd(); ++it) {
            writer.Key(it.key().utf16(), rapidjson::SizeType(it.key().size()));
            write(writer, it.value());
        }
        writer.EndObject();
    }
}

bool writeWithRapidJson(QIODevice &device, const Map &map)
{
    rapidjson::StringBuffer buffer;
    RapidWriter writer(buffer);
    write(writer, treeOf(map));
    return device.write(buffer.GetString(), qint64(buffer.GetSize())) >= 0;
}

nlohmann::json nlohmannScalar(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::Double:
        return value.toDouble();
    case QMetaType::QString:
        return value.toString().toStdString();
    default:
        return nullptr;
    }
}

nlohmann::json nlohmannOf(const Node &node)
{
    if (node.children.isEmpty())
        return nlohmannScalar(node.value);
    nlohmann::json json;
    if (node.isArray()) {
        json = nlohmann::json::array();
        for (int i = 0; i < node.size(); ++i)
            json.push_back(nlohmannOf(node.element(i)));
        return json;
    }
    for (auto it = node.children.constBegin(); it != node.children.constEnd(); ++it)
        json[it.key().toStdString()] = nlohmannOf(it.value());
    return json;
}

bool writeWithNlohmann(QIODevice &device, const Map &map)
{
    const std::string text = nlohmannOf(treeOf(map)).dump(4);
    return device.write(text.data(), qint64(text.size())) >= 0;
}

struct Format {
    const char *name;
    QSettings::ReadFunc read;
    QSettings::WriteFunc write;
};

const Format formats[] = {
    { "qt", readWithQt, writeWithQt },
    { "rapidjson", readWithRapidJson, writeWithRapidJson },
    { "simdjson", readWithSimdjson, nullptr },
    { "nlohmann", readWithNlohmann, writeWithNlohmann },
};

const Format *find(const QByteArray &name)
{
    for (const Format &format : formats) {
        if (name == format.name)
            return &format;
    }
    return nullptr;
}

} // namespace

QByteArrayList Formats::names()
{
    QByteArrayList names;
    for (const Format &format : formats)
        names.append(format.name);
    return names;
}

bool Formats::canWrite(const QByteArray &name)
{
    const Format *const format = find(name);
    return format && format->write;
}

QSettings::Format Formats::prepare(const QByteArray &name)
{
    const Format *const format = find(name);
    if (!format)
        return QSettings::InvalidFormat;
    return QSettings::registerFormat(QLatin1String(name), format->read, format->write,
                                     Qt::CaseSensitive);
}
