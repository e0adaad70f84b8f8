// SPDX-License-Identifier: MIT
#include "benchmarks/readers.h"

#include "benchmarks/treebuilder.h"

#include <nlohmann/json.hpp>

#include <climits>

namespace {

QString text(const std::string &string)
{
    return QString::fromUtf8(string.data(), int(string.size()));
}

QVariant number(qlonglong value)
{
    if (value >= INT_MIN && value <= INT_MAX)
        return QVariant(int(value));
    return QVariant(value);
}

QVariant convert(const nlohmann::json &json)
{
    switch (json.type()) {
    case nlohmann::json::value_t::object: {
        QVariant object = QVariantMap();
        for (auto it = json.begin(); it != json.end(); ++it) {
            QVariant value = convert(it.value());
            Containers::insertMulti(Containers::map(object), text(it.key())).swap(value);
        }
        return object;
    }
    case nlohmann::json::value_t::array: {
        QVariant array = QVariantList();
        for (const nlohmann::json &child : json) {
            QVariant value = convert(child);
            Containers::append(Containers::list(array), value);
        }
        return array;
    }
    case nlohmann::json::value_t::string:
        return text(json.get_ref<const std::string &>());
    case nlohmann::json::value_t::number_integer:
    case nlohmann::json::value_t::number_unsigned:
        return number(json.get<qlonglong>());
    case nlohmann::json::value_t::number_float:
        return QVariant(json.get<double>());
    case nlohmann::json::value_t::boolean:
        return QVariant(json.get<bool>());
    default:
        return QVariant();
    }
}

} // namespace

Readers::Reading Readers::prepareNlohmann(const QByteArray &document)
{
    return [document]() {
        return convert(nlohmann::json::parse(
            document.constData(), document.constData() + document.size(), nullptr, false));
    };
}
