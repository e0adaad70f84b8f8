#include "json/jsonparser.h"

#include "tests/support/testmain.h"

class tst_JsonParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void syntaxErrorsGetTheirExactText_data();
    void syntaxErrorsGetTheirExactText();
};

void tst_JsonParser::syntaxErrorsGetTheirExactText_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("message");

    QTest::newRow("empty input") << QByteArray("") << " at line 1 pos 0";
    QTest::newRow("no colon") << QByteArray("{\"a\" 1}") << "Expected ':' at line 1 pos 6";
}

void tst_JsonParser::syntaxErrorsGetTheirExactText()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, message);

    QString error;
    parseJson(json, &error);

    QCOMPARE(error, message);
}

NUV_TEST_MAIN(tst_JsonParser)

#include "tst_jsonparser.moc"
