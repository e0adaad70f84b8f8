#include "json/jsondriver.h"

#include "tests/json/jsoninput.h"
#include "tests/support/testmain.h"

/// What a builder is called with. The two of the library would make the same of a call too many or of a
/// last key that is out of date, so what they make shows neither.
class tst_JsonDriver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBuilderIsCalledLikeThis_data();
    void theBuilderIsCalledLikeThis();
};

namespace {

// Writes down each call: the letter of what begins or ends, and of a member or an element what it is.
// In front of a member stands the last key of its object, "-" where there is none.
class RecordingBuilder
{
public:
    struct Value {
        QVariant scalar;
        QByteArray container;

        void swap(Value &other) { qSwap(*this, other); }
    };

    static QVariant &scalar(Value &value) { return value.scalar; }
    void beginObject(Value &value) { begin("O", value); }
    void addMember(const Value &object, QString &lastKey, QString &key, Value &value)
    {
        const QByteArray last = lastKey.isNull() ? QByteArray("-") : lastKey.toLatin1();
        add(last + "," + key.toLatin1() + "=", object, value);
        lastKey = key;
        key = QString();
    }
    void endObject(const Value &value) { end(value); }
    void beginArray(Value &value) { begin("A", value); }
    void addElement(const Value &array, Value &value) { add("", array, value); }
    void endArray(const Value &value) { end(value); }
    static void dispose(Value &) {}

    QByteArray calls() const { return m_calls; }

    static QByteArray describe(const Value &value)
    {
        return value.container + value.scalar.toString().toLatin1();
    }

private:
    void begin(const char *letter, Value &value)
    {
        record("begin" + describe(value)); // it was null
        value.container = letter;
    }

    void add(const QByteArray &what, const Value &container, Value &value)
    {
        record(container.container + "(" + what + describe(value) + ")");
        value = Value();
    }

    void end(const Value &value) { record("end" + describe(value)); }

    void record(const QByteArray &call) { m_calls += (m_calls.isEmpty() ? "" : " ") + call; }

    QByteArray m_calls;
};

void row(const char *name, const char *text, const char *calls, const char *result)
{
    QTest::newRow(name) << json(text) << QByteArray(calls) << QByteArray(result);
}

} // namespace

void tst_JsonDriver::theBuilderIsCalledLikeThis_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("calls");
    QTest::addColumn<QByteArray>("result");
    row("a scalar needs no call", "1", "", "1");
    row("an empty object is begun and ended", "{}", "begin endO", "O");
    row("an empty array is begun and ended", "[]", "begin endA", "A");
    row("elements come in their order", "[1,'x',true,false]",
        "begin A(1) A(x) A(true) A(false) endA", "A");
    row("an element may be invalid", "[null,1]", "begin A() A(1) endA", "A");
    row("the first element may be missing", "[,1]", "begin A(1) endA", "A");
    row("a member comes with the key before it", "{'b':1,'a':2,'c':3}",
        "begin O(-,b=1) O(b,a=2) O(a,c=3) endO", "O");
    row("the first member may be missing", "{,'a':1}", "begin O(-,a=1) endO", "O");
    row("a container is ended before it is added", "[[1],{'a':2}]",
        "begin A(1) endA begin A(A) begin O(-,a=2) endO A(O) endA", "A");
    row("an object does not know the keys of the one before", "[{'b':1},{'a':2},{,'a':3}]",
        "begin O(-,b=1) endO begin A(O) begin O(-,a=2) endO A(O) begin O(-,a=3) endO A(O) endA",
        "A");
    row("nor those of the one around it or in it", "{'a':{'x':1,'y':2},'b':3}",
        "begin O(-,x=1) O(x,y=2) endO begin O(-,a=O) O(a,b=3) endO", "O");
}

void tst_JsonDriver::theBuilderIsCalledLikeThis()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, calls);
    QFETCH(QByteArray, result);
    RecordingBuilder builder;
    JsonDriver<RecordingBuilder> driver(&builder);
    JsonLexer lexer(text);

    QVERIFY(driver.parse(&lexer));

    QCOMPARE(builder.calls(), calls);
    QCOMPARE(RecordingBuilder::describe(driver.result()), result);
}

NUV_TEST_MAIN(tst_JsonDriver)

#include "tst_jsondriver.moc"
