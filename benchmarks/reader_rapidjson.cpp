// SPDX-License-Identifier: MIT
#include "benchmarks/readers.h"

#include "benchmarks/treebuilder.h"

#include <rapidjson/reader.h>

namespace {

// The numbers get the types of our own tree.
class Handler
{
public:
    bool Null() { return add(QVariant()); }
    bool Bool(bool b) { return add(QVariant(b)); }
    bool Int(int i) { return add(QVariant(i)); }
    bool Uint(unsigned u) { return add(QVariant(qlonglong(u))); }
    bool Int64(int64_t i) { return add(QVariant(qlonglong(i))); }
    bool Uint64(uint64_t u) { return add(QVariant(double(u))); }
    bool Double(double d) { return add(QVariant(d)); }
    bool RawNumber(const char *, rapidjson::SizeType, bool) { return false; }
    bool String(const char *text, rapidjson::SizeType size, bool)
    {
        return add(QVariant(QString::fromUtf8(text, int(size))));
    }
    bool Key(const char *text, rapidjson::SizeType size, bool)
    {
        m_builder.key(QString::fromUtf8(text, int(size)));
        return true;
    }
    bool StartObject()
    {
        m_builder.openObject();
        return true;
    }
    bool StartArray()
    {
        m_builder.openArray();
        return true;
    }
    bool EndObject(rapidjson::SizeType)
    {
        m_builder.close();
        return true;
    }
    bool EndArray(rapidjson::SizeType)
    {
        m_builder.close();
        return true;
    }
    QVariant take() { return m_builder.take(); }

private:
    bool add(QVariant value)
    {
        m_builder.value(value);
        return true;
    }

    TreeBuilder m_builder;
};

} // namespace

Readers::Reading Readers::prepareRapidJson(const QByteArray &document)
{
    return [document]() {
        rapidjson::StringStream stream(document.constData());
        rapidjson::Reader reader;
        Handler handler;
        reader.Parse<rapidjson::kParseFullPrecisionFlag>(stream, handler);
        return handler.take();
    };
}
