// SPDX-License-Identifier: MIT
#include "benchmarks/readers.h"

#include "benchmarks/treebuilder.h"

#include <rapidjson/reader.h>

#include <memory>

namespace {

struct Token {
    enum Kind { Key, Text, Scalar, OpenObject, OpenArray, Close };

    Kind kind;
    int start; ///< of the text in Tokens::text
    int size;
    QVariant value; ///< of a number, false or true
};

// The handler that notes what the reader reports.
class Tokens
{
public:
    std::vector<Token> list;
    std::vector<ushort> text;

    bool Null() { return add(Token::Scalar); }
    bool Bool(bool b) { return add(Token::Scalar, b); }
    bool Int(int i) { return add(Token::Scalar, i); }
    bool Uint(unsigned u) { return add(Token::Scalar, qlonglong(u)); }
    bool Int64(int64_t i) { return add(Token::Scalar, qlonglong(i)); }
    bool Uint64(uint64_t u) { return add(Token::Scalar, double(u)); }
    bool Double(double d) { return add(Token::Scalar, d); }
    bool RawNumber(const char *, rapidjson::SizeType, bool) { return false; }
    bool String(const char *bytes, rapidjson::SizeType size, bool)
    {
        return addText(Token::Text, QString::fromUtf8(bytes, int(size)));
    }
    bool Key(const char *bytes, rapidjson::SizeType size, bool)
    {
        return addText(Token::Key, QString::fromUtf8(bytes, int(size)));
    }
    bool StartObject() { return add(Token::OpenObject); }
    bool StartArray() { return add(Token::OpenArray); }
    bool EndObject(rapidjson::SizeType) { return add(Token::Close); }
    bool EndArray(rapidjson::SizeType) { return add(Token::Close); }

private:
    bool add(Token::Kind kind, const QVariant &value = QVariant())
    {
        list.push_back({ kind, 0, 0, value });
        return true;
    }

    bool addText(Token::Kind kind, const QString &string)
    {
        list.push_back({ kind, int(text.size()), string.size(), QVariant() });
        text.insert(text.end(), string.utf16(), string.utf16() + string.size());
        return true;
    }
};

// Fills every container in the place where it stays.
class Builder
{
public:
    explicit Builder(const Tokens &tokens) : m_text(tokens.text.data())
    {
        m_levels.reserve(16);
        m_levels.push_back({ nullptr, nullptr });
    }

    QVariant build(const std::vector<Token> &tokens)
    {
        for (const Token &token : tokens)
            add(token);
        return std::move(m_root);
    }

private:
    struct Level {
        QVariantMap *map;
        QVariantList *list;
    };

    QString text(const Token &token) const
    {
        return QString(reinterpret_cast<const QChar *>(m_text + token.start), token.size);
    }

    QVariant &place()
    {
        const Level &level = m_levels.back();
        if (level.map)
            return Containers::insertMulti(*level.map, m_key);
        if (!level.list)
            return m_root;
        level.list->append(QVariant());
        return level.list->last();
    }

    void addScalar(const QVariant &value)
    {
        if (m_levels.back().list)
            m_levels.back().list->append(value);
        else
            place() = value;
    }

    void add(const Token &token)
    {
        switch (token.kind) {
        case Token::Key:
            m_key = text(token);
            break;
        case Token::Text:
            place() = QVariant(text(token));
            break;
        case Token::Scalar:
            addScalar(token.value);
            break;
        case Token::OpenObject: {
            QVariant &object = place();
            object = QVariantMap();
            m_levels.push_back({ &Containers::map(object), nullptr });
            break;
        }
        case Token::OpenArray: {
            QVariant &array = place();
            array = QVariantList();
            m_levels.push_back({ nullptr, &Containers::list(array) });
            break;
        }
        case Token::Close:
            m_levels.pop_back();
            break;
        }
    }

    const ushort *m_text;
    std::vector<Level> m_levels;
    QString m_key;
    QVariant m_root;
};

} // namespace

Readers::Reading Readers::prepareFloor(const QByteArray &document)
{
    const std::shared_ptr<Tokens> tokens = std::make_shared<Tokens>();
    rapidjson::StringStream stream(document.constData());
    rapidjson::Reader().Parse<rapidjson::kParseFullPrecisionFlag>(stream, *tokens);
    return [tokens]() { return Builder(*tokens).build(tokens->list); };
}
