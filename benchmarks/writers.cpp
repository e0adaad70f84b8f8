// SPDX-License-Identifier: MIT
#include "benchmarks/writers.h"

#include "json/jsonwriter.h"

QByteArrayList Writers::names()
{
    return { "ours", "qt", "rapidjson", "floor" };
}

Writers::Writing Writers::prepare(const QByteArray &writer, const QVariant &tree)
{
    if (writer == "ours")
        return [tree]() { return JsonWriter::serialize(tree, 4, 0); };
    if (writer == "qt")
        return prepareQt(tree);
    if (writer == "rapidjson")
        return prepareRapidJson(tree);
    if (writer == "floor")
        return prepareFloor(JsonWriter::serialize(tree, 4, 0));
    return nullptr;
}
