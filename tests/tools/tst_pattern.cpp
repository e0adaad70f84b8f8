// SPDX-License-Identifier: MIT
#include "examples/launcher/values/pattern.h"
#include "tests/support/testmain.h"

namespace {

QString units(std::initializer_list<int> codes)
{
    QString text;
    for (const int code : codes)
        text += QChar(ushort(code));
    return text;
}

} // namespace

/// What is found in a string is the same with every toolkit.
class tst_Pattern : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheSameWithEveryToolkit_data();
    void findsTheSameWithEveryToolkit();
    void groupsAreOfTheTextItself();
    void wordsAreLettersDigitsMarksAndUnderscores();
};

void tst_Pattern::findsTheSameWithEveryToolkit_data()
{
    QTest::addColumn<QByteArray>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("size");

    const auto row = [](const char *name, const char *pattern, const QString &text, int index,
                        int size) {
        QTest::newRow(name) << QByteArray(pattern) << text << index << size;
    };
    row("nothing", "[?#]", QLatin1String("abc"), -1, 0);
    row("the first of a set", "[/?#\\\\]", QLatin1String("ab\\c/"), 2, 1);
    row("an empty match", "^[/\\\\]*", QLatin1String("a//"), 0, 0);
    row("the end is no line's end", "^[0-9]{1,9}$", QLatin1String("12\n"), -1, 0);
    row("the begin is no line's begin", "^[0-9]{1,9}$", QLatin1String("\n12"), -1, 0);
    row("a point is any character", "^(https?)(/+)(.*)$", QLatin1String("http/a\nb"), 0, 8);
    row("an end as an alternative", "^[0-9]+([/?#]|$)", QLatin1String("80"), 0, 2);
    row("the longest run", ":[0-9]*$", QLatin1String("a:1:22"), 3, 3);
    row("after a half of a pair", "[/?#]", units({ 0xd800, 'a', '/' }), 2, 1);
    row("after the other half", "[/?#]", units({ 0xdc00, '/' }), 1, 1);
    row("after a pair", "[/?#]", units({ 0xd83d, 0xde00, '/' }), 2, 1);
    row("a half is any character", "^a.b$", units({ 'a', 0xd800, 'b' }), 0, 3);
    row("a pair is two characters", "^a.b$", units({ 'a', 0xd83d, 0xde00, 'b' }), -1, 0);
    row("a NUL is a character", "^a.b$", units({ 'a', 0, 'b' }), 0, 3);
}

void tst_Pattern::findsTheSameWithEveryToolkit()
{
    QFETCH(QByteArray, pattern);
    QFETCH(QString, text);
    QFETCH(int, index);
    QFETCH(int, size);
    Pattern found(pattern.constData());

    QCOMPARE(found.indexIn(text), index);
    QCOMPARE(found.isIn(text), index >= 0);
    QCOMPARE(found.cap(), text.mid(qMax(0, index), size));
    QCOMPARE(found.before(text), index < 0 ? text : text.left(index));
}

void tst_Pattern::groupsAreOfTheTextItself()
{
    Pattern scheme("^(https?)(/+)(.*)$");
    const QString host = units({ 0xd800, 'x', 0xd83d, 0xde00 });

    QVERIFY(scheme.isIn(QLatin1String("http//") + host));
    QCOMPARE(scheme.cap(1), QString(QLatin1String("http")));
    QCOMPARE(scheme.cap(2), QString(QLatin1String("//")));
    QCOMPARE(scheme.cap(3), host);
    QVERIFY(!scheme.isIn(QLatin1String("ftp//")));
    QCOMPARE(scheme.cap(1), QString());
}

void tst_Pattern::wordsAreLettersDigitsMarksAndUnderscores()
{
    Pattern word("^\\w$");
    for (int code = 0; code < 0x10000; ++code) {
        const QChar unit = QChar(ushort(code));
        const bool isWord = unit.isLetterOrNumber() || unit.isMark() || code == '_';
        QVERIFY2(word.isIn(unit) == isWord, QByteArray::number(code, 16).constData());
    }
}

NUV_TEST_MAIN(tst_Pattern)
#include "tst_pattern.moc"
