#include "json/jsonparser.h"

#include "json/varianttree.h"

QVariant parseJson(const QByteArray &json, QString *errorMessage)
{
    JsonLexer lexer(json);
    JsonParser parser;
    if (!parser.parse(&lexer) && errorMessage)
        *errorMessage = parser.errorText();
    return parser.takeResult();
}

inline void JsonTreeBuilder::beginObject(QVariant &value)
{
    QVariant members = QVariantMap();
    value.swap(members);
}

// While the keys come in ascending order, `lastKey` holds the last of them, and the next one goes
// straight to the end of the map; it is null from the first that does not.
void JsonTreeBuilder::addMember(QVariant &object, QString &lastKey, QString &key, QVariant &value)
{
    QVariantMap &members = VariantTree::map(object);
    if (members.isEmpty() || (!lastKey.isNull() && !qMapLessThanKey(key, lastKey))) {
        QtCompat::insertMultiLast(members, key).swap(value);
        qSwap(lastKey, key);
    } else {
        QtCompat::insertMulti(members, key).swap(value);
        lastKey = QString();
    }
    key = QString();
}

inline void JsonTreeBuilder::beginArray(QVariant &value)
{
    QVariant values = QVariantList();
    value.swap(values);
}

Q_ALWAYS_INLINE void JsonTreeBuilder::addElement(QVariant &array, QVariant &value)
{
    QVariantList &values = VariantTree::list(array);
    values.append(m_invalid);
    values.last().swap(value);
}

inline void JsonTreeBuilder::dispose(QVariant &value)
{
    VariantTree::dispose(value);
}

JsonParser::JsonParser() : m_driver(&m_builder) {}

JsonParser::~JsonParser() {}

bool JsonParser::parse(JsonLexer *lexer)
{
    return m_driver.parse(lexer);
}

QVariant JsonParser::takeResult()
{
    QVariant result;
    result.swap(m_driver.result());
    return result;
}
