// SPDX-License-Identifier: MIT
#include "benchmarks/readers.h"

#include "json/jsonparser.h"

QByteArrayList Readers::names()
{
    return { "ours", "qt", "rapidjson", "simdjson", "nlohmann", "floor" };
}

Readers::Reading Readers::prepare(const QByteArray &reader, const QByteArray &document)
{
    typedef Reading (*Prepare)(const QByteArray &);
    const Prepare all[] = { prepareOurs,     prepareQt,       prepareRapidJson,
                            prepareSimdjson, prepareNlohmann, prepareFloor };
    const int index = names().indexOf(reader);
    return index < 0 ? Reading() : all[index](document);
}

Readers::Reading Readers::prepareOurs(const QByteArray &document)
{
    return [document]() { return parseJson(document, nullptr); };
}
