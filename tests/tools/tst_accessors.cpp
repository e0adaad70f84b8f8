// SPDX-License-Identifier: MIT
#include "tests/support/testmain.h"

#include "tools/nuv-apps-config/documents/reference.h"

#include <QFile>

/// What the public header says of the 84 accessors is what the table of properties says: their reference
/// is made of these comments.
class tst_Accessors : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyPropertyHasItsPair();
    void theGetterSaysWhatTheTableSays_data();
    void theGetterSaysWhatTheTableSays();
    void theSetterSaysWhatItStores_data();
    void theSetterSaysWhatItStores();
    void aHeaderThatTheTableDoesNotKnowStaysAsItIs_data();
    void aHeaderThatTheTableDoesNotKnowStaysAsItIs();

private:
    QString commentBefore(const QString &declaration) const;

    QStringList m_lines; ///< of the header
};

namespace {

void addProperties()
{
    QTest::addColumn<QString>("name");
    for (const Property &property : Properties::all()) {
        if (property.property)
            QTest::newRow(property.property) << QString(QLatin1String(property.property));
    }
}

// The texts of which a description of the value consists.
QStringList valueTexts(const Property &property)
{
    QStringList texts(property.kind == Kind::Array ? QString(QLatin1String("QStringList"))
                                                   : Properties::kindName(property.kind).mid(1));
    if (Properties::hasRange(property))
        texts.append(Properties::rangeText(property));
    if (property.unit[0])
        texts.append(QLatin1String(property.unit));
    return texts;
}

} // namespace

void tst_Accessors::initTestCase()
{
    QFile header(QLatin1String(SOURCE_FOLDER "/config/appconfig.h"));
    QVERIFY(header.open(QIODevice::ReadOnly));
    m_lines = QString::fromUtf8(header.readAll()).split(QLatin1Char('\n'));
}

// As one line; empty where there is none directly before the declaration.
QString tst_Accessors::commentBefore(const QString &declaration) const
{
    const QString mark = QLatin1String("    ///");
    QStringList comment;
    for (int i = m_lines.indexOf(declaration) - 1; i >= 0 && m_lines.at(i).startsWith(mark); --i)
        comment.prepend(m_lines.at(i).mid(mark.size()).trimmed());
    return comment.join(QLatin1Char(' ')).simplified();
}

void tst_Accessors::everyPropertyHasItsPair()
{
    int count = 0;
    for (const QString &line : m_lines) {
        count += line.startsWith(QLatin1String("    QVariant get"));
        count += line.startsWith(QLatin1String("    void set"));
    }
    QCOMPARE(count, 84 + 2); // with getProperty() and setProperty()
}

void tst_Accessors::theGetterSaysWhatTheTableSays_data()
{
    addProperties();
}

void tst_Accessors::theGetterSaysWhatTheTableSays()
{
    QFETCH(QString, name);
    const Property &property = *Properties::findProperty(name);
    const QString comment =
        commentBefore(QString(QLatin1String("    QVariant get%1() const;")).arg(name));
    QStringList texts = valueTexts(property);
    texts << QLatin1String(property.description) << QLatin1String(property.whenMissing);
    texts += Properties::needed(property);
    for (const QString &text : texts)
        QVERIFY2(comment.contains(text),
                 qPrintable(text + QLatin1String(" is not in: ") + comment));
    QCOMPARE(comment.contains(QLatin1String("secret")), property.secret != Secret::No);
}

void tst_Accessors::theSetterSaysWhatItStores_data()
{
    addProperties();
}

void tst_Accessors::theSetterSaysWhatItStores()
{
    QFETCH(QString, name);
    const Property &property = *Properties::findProperty(name);
    const QString comment =
        commentBefore(QString(QLatin1String("    void set%1(QVariant const &value);")).arg(name));
    QStringList texts = valueTexts(property);
    texts << QString(QLatin1String("Stores %1: ")).arg(name)
          << QString(QLatin1String("See get%1().")).arg(name);
    for (const QString &text : texts)
        QVERIFY2(comment.contains(text),
                 qPrintable(text + QLatin1String(" is not in: ") + comment));
}

void tst_Accessors::aHeaderThatTheTableDoesNotKnowStaysAsItIs_data()
{
    QTest::addColumn<QByteArray>("header");
    const QByteArray begin = "class AppConfig\n{\npublic:\n";
    const QByteArray getter = "    QVariant getNothing() const;\n";
    QTest::newRow("an unknown property")
        << begin + "    /// \\{\n" + getter + "\n    /// \\}\n};\n";
    QTest::newRow("no group") << begin + getter + "};\n";
    QTest::newRow("no file") << QByteArray();
}

// It is edited before the table is, and must not be lost then.
void tst_Accessors::aHeaderThatTheTableDoesNotKnowStaysAsItIs()
{
    QFETCH(QByteArray, header);
    QCOMPARE(Reference::describedAccessors(header), header);
}

NUV_TEST_MAIN(tst_Accessors)
#include "tst_accessors.moc"
