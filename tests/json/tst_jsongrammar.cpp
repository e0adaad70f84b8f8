// SPDX-License-Identifier: MIT
#include "json/jsongrammar.h"

#include "tests/support/testmain.h"

#include <QStringList>

namespace {

const int TerminalCount = JsonGrammar::TERMINAL_COUNT;
const int SymbolCount = JsonGrammar::TERMINAL_COUNT + JsonGrammar::NON_TERMINAL_COUNT;
const int StateCount = JsonGrammar::STATE_COUNT;
const int RuleCount = JsonGrammar::RULE_COUNT;
const int DefaultOnly = -13;

template<typename Entry, size_t size>
int sizeOf(const Entry (&)[size])
{
    return int(size);
}

template<typename Entry, size_t size>
QString textOf(const Entry (&table)[size])
{
    QStringList entries;
    for (size_t i = 0; i < size; ++i)
        entries += QString::number(table[i]);
    return entries.join(QLatin1String(" "));
}

QString name(int symbol)
{
    return QLatin1String(JsonGrammar::spell[symbol]);
}

// Where the entry of a rule in rule_info ends.
int ruleEnd(int rule)
{
    return rule + 1 < RuleCount ? JsonGrammar::rule_index[rule + 1]
                                : sizeOf(JsonGrammar::rule_info);
}

} // namespace

class tst_JsonGrammar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void symbolsHaveTheirNumbersAndNames_data();
    void symbolsHaveTheirNumbersAndNames();
    void namesEndWithNull();
    void constantsHaveTheirValues();
    void lengthsFollowFromTheConstants();
    void entriesAreOfTheDocumentedSize();
    void tablesHoldExactlyTheseValues_data();
    void tablesHoldExactlyTheseValues();
    void rulesAreTheGrammar_data();
    void rulesAreTheGrammar();
    void ruleTablesAgree();
    void noActionLookupLeavesItsTables();
    void noGotoLookupLeavesItsTables();
    void everyActionHasAMeaning();
    void everyGotoIsAState();
    void defaultOnlyStatesHaveNoOtherAction();
    void onlyTheEndOfTheRootAccepts();
    void noStateShiftsAnError();
};

void tst_JsonGrammar::symbolsHaveTheirNumbersAndNames_data()
{
    QTest::addColumn<int>("symbol");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("displayName");

    QTest::newRow("T_END_OF_FILE") << int(T_END_OF_FILE) << 0 << "end of file";
    QTest::newRow("T_STRING") << int(T_STRING) << 1 << "string";
    QTest::newRow("T_NUMBER") << int(T_NUMBER) << 2 << "number";
    QTest::newRow("T_LBRACE") << int(T_LBRACE) << 3 << "{";
    QTest::newRow("T_RBRACE") << int(T_RBRACE) << 4 << "}";
    QTest::newRow("T_LBRACKET") << int(T_LBRACKET) << 5 << "[";
    QTest::newRow("T_RBRACKET") << int(T_RBRACKET) << 6 << "]";
    QTest::newRow("T_COLON") << int(T_COLON) << 7 << ":";
    QTest::newRow("T_COMMA") << int(T_COMMA) << 8 << ",";
    QTest::newRow("T_FALSE") << int(T_FALSE) << 9 << "false";
    QTest::newRow("T_TRUE") << int(T_TRUE) << 10 << "true";
    QTest::newRow("T_NULL") << int(T_NULL) << 11 << "null";
    QTest::newRow("T_ERROR") << int(T_ERROR) << 12 << "error";
    QTest::newRow("Root") << 13 << 13 << "Root";
    QTest::newRow("Value") << 14 << 14 << "Value";
    QTest::newRow("Object") << 15 << 15 << "Object";
    QTest::newRow("Members") << 16 << 16 << "Members";
    QTest::newRow("Member") << 17 << 17 << "Member";
    QTest::newRow("Array") << 18 << 18 << "Array";
    QTest::newRow("Values") << 19 << 19 << "Values";
    QTest::newRow("$accept") << 20 << 20 << "$accept";
}

void tst_JsonGrammar::symbolsHaveTheirNumbersAndNames()
{
    QFETCH(int, symbol);
    QFETCH(int, number);
    QFETCH(QString, displayName);

    QCOMPARE(symbol, number);
    QCOMPARE(name(symbol), displayName);
}

void tst_JsonGrammar::namesEndWithNull()
{
    QCOMPARE(sizeOf(JsonGrammar::spell), 22);
    QVERIFY(JsonGrammar::spell[21] == nullptr);
}

void tst_JsonGrammar::constantsHaveTheirValues()
{
    QCOMPARE(int(JsonGrammar::TERMINAL_COUNT), 13);
    QCOMPARE(int(JsonGrammar::NON_TERMINAL_COUNT), 8);
    QCOMPARE(int(JsonGrammar::STATE_COUNT), 26);
    QCOMPARE(int(JsonGrammar::RULE_COUNT), 18);
    QCOMPARE(int(JsonGrammar::ACCEPT_STATE), 12);
    QCOMPARE(int(JsonGrammar::GOTO_INDEX_OFFSET), 26);
    QCOMPARE(int(JsonGrammar::GOTO_INFO_OFFSET), 37);
    QCOMPARE(int(JsonGrammar::GOTO_CHECK_OFFSET), 37);
}

void tst_JsonGrammar::lengthsFollowFromTheConstants()
{
    QCOMPARE(sizeOf(JsonGrammar::spell), SymbolCount + 1);
    QCOMPARE(sizeOf(JsonGrammar::lhs), RuleCount);
    QCOMPARE(sizeOf(JsonGrammar::rhs), RuleCount);
    QCOMPARE(sizeOf(JsonGrammar::rule_index), RuleCount);
    QCOMPARE(sizeOf(JsonGrammar::action_default), StateCount);
    QCOMPARE(sizeOf(JsonGrammar::goto_default), int(JsonGrammar::NON_TERMINAL_COUNT));
    QCOMPARE(sizeOf(JsonGrammar::action_index), JsonGrammar::GOTO_INDEX_OFFSET + StateCount);
    QCOMPARE(sizeOf(JsonGrammar::action_info), JsonGrammar::GOTO_INFO_OFFSET + 15);
    QCOMPARE(sizeOf(JsonGrammar::action_check), JsonGrammar::GOTO_CHECK_OFFSET + 15);
    QCOMPARE(sizeOf(JsonGrammar::rule_info), 45);
}

void tst_JsonGrammar::entriesAreOfTheDocumentedSize()
{
    QCOMPARE(sizeof JsonGrammar::lhs[0], sizeof(qint16));
    QCOMPARE(sizeof JsonGrammar::rhs[0], sizeof(qint16));
    QCOMPARE(sizeof JsonGrammar::action_default[0], sizeof(qint16));
    QCOMPARE(sizeof JsonGrammar::goto_default[0], sizeof(qint16));
    QCOMPARE(sizeof JsonGrammar::action_index[0], sizeof(qint16));
    QCOMPARE(sizeof JsonGrammar::action_info[0], sizeof(qint16));
    QCOMPARE(sizeof JsonGrammar::action_check[0], sizeof(qint16));
    QCOMPARE(sizeof JsonGrammar::rule_index[0], sizeof(qint32));
    QCOMPARE(sizeof JsonGrammar::rule_info[0], sizeof(qint32));
}

void tst_JsonGrammar::tablesHoldExactlyTheseValues_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("values");

    QTest::newRow("action_index")
        << textOf(JsonGrammar::action_index)
        << "24 -13 -13 0 -13 12 24 -13 -13 -13 -13 -13 -13 -13 -1 -6 12 -13 -13 7 -13 -13 -4 24 "
           "-13 "
           "-13 -8 -8 -8 -8 -8 -8 -1 -8 -8 -8 -8 -8 -8 -8 -8 -8 -2 -8 -8 0 -8 -8 -8 6 -8 -8";
    QTest::newRow("action_check") << textOf(JsonGrammar::action_check)
                                  << "0 7 6 4 8 -1 -1 8 1 2 3 -1 5 1 -1 -1 9 10 11 -1 -1 -1 -1 -1 "
                                     "-1 1 2 3 -1 5 -1 -1 -1 9 10 "
                                     "11 -1 1 1 4 -1 -1 -1 -1 1 -1 -1 -1 -1 -1 -1 0";
    QTest::newRow("action_info") << textOf(JsonGrammar::action_info)
                                 << "12 19 24 17 23 0 0 16 9 8 5 0 6 15 0 0 4 10 7 0 0 0 0 0 0 9 8 "
                                    "5 0 6 0 0 0 4 10 7 0 21 20 "
                                    "18 0 0 0 0 25 0 0 0 0 0 0 0";
    QTest::newRow("action_default")
        << textOf(JsonGrammar::action_default)
        << "0 11 10 0 7 5 17 9 12 13 8 1 18 3 0 0 0 2 4 0 6 15 0 0 14 16";
    QTest::newRow("goto_default") << textOf(JsonGrammar::goto_default) << "3 11 2 14 13 1 22 0";
    QTest::newRow("rhs") << textOf(JsonGrammar::rhs) << "1 3 1 3 0 3 1 1 1 1 1 1 1 3 1 3 0 2";
    QTest::newRow("lhs") << textOf(JsonGrammar::lhs)
                         << "13 15 16 16 16 17 14 14 14 14 14 14 14 18 19 19 19 20";
    QTest::newRow("rule_index") << textOf(JsonGrammar::rule_index)
                                << "0 2 6 8 12 13 17 19 21 23 25 27 29 31 35 37 41 42";
    QTest::newRow("rule_info") << textOf(JsonGrammar::rule_info)
                               << "13 14 15 3 16 4 16 17 16 16 8 17 16 17 1 7 14 14 9 14 10 14 11 "
                                  "14 15 14 18 14 2 14 1 18 "
                                  "5 19 6 19 14 19 19 8 14 19 20 13 0";
}

void tst_JsonGrammar::tablesHoldExactlyTheseValues()
{
    QFETCH(QString, table);
    QFETCH(QString, values);

    QCOMPARE(table, values);
}

void tst_JsonGrammar::rulesAreTheGrammar_data()
{
    QTest::addColumn<int>("rule");
    QTest::addColumn<QString>("production");

    QTest::newRow("rule 0") << 0 << "Root ::= Value";
    QTest::newRow("rule 1") << 1 << "Object ::= { Members }";
    QTest::newRow("rule 2") << 2 << "Members ::= Member";
    QTest::newRow("rule 3") << 3 << "Members ::= Members , Member";
    QTest::newRow("rule 4") << 4 << "Members ::=";
    QTest::newRow("rule 5") << 5 << "Member ::= string : Value";
    QTest::newRow("rule 6") << 6 << "Value ::= false";
    QTest::newRow("rule 7") << 7 << "Value ::= true";
    QTest::newRow("rule 8") << 8 << "Value ::= null";
    QTest::newRow("rule 9") << 9 << "Value ::= Object";
    QTest::newRow("rule 10") << 10 << "Value ::= Array";
    QTest::newRow("rule 11") << 11 << "Value ::= number";
    QTest::newRow("rule 12") << 12 << "Value ::= string";
    QTest::newRow("rule 13") << 13 << "Array ::= [ Values ]";
    QTest::newRow("rule 14") << 14 << "Values ::= Value";
    QTest::newRow("rule 15") << 15 << "Values ::= Values , Value";
    QTest::newRow("rule 16") << 16 << "Values ::=";
    QTest::newRow("rule 17") << 17 << "$accept ::= Root end of file";
}

void tst_JsonGrammar::rulesAreTheGrammar()
{
    QFETCH(int, rule);
    QFETCH(QString, production);

    const int start = JsonGrammar::rule_index[rule];
    QString text = name(JsonGrammar::rule_info[start]) + QLatin1String(" ::=");
    for (int i = start + 1; i < ruleEnd(rule); ++i)
        text += QLatin1Char(' ') + name(JsonGrammar::rule_info[i]);

    QCOMPARE(text, production);
}

void tst_JsonGrammar::ruleTablesAgree()
{
    for (int rule = 0; rule < RuleCount; ++rule) {
        const int start = JsonGrammar::rule_index[rule];
        QCOMPARE(int(JsonGrammar::lhs[rule]), int(JsonGrammar::rule_info[start]));
        QCOMPARE(int(JsonGrammar::rhs[rule]), ruleEnd(rule) - start - 1);
        QVERIFY(JsonGrammar::lhs[rule] >= TerminalCount);
    }
}

void tst_JsonGrammar::noActionLookupLeavesItsTables()
{
    for (int state = 0; state < StateCount; ++state) {
        for (int token = -1; token < TerminalCount; ++token) {
            const int i = JsonGrammar::action_index[state] + token;
            QVERIFY(i < JsonGrammar::GOTO_INFO_OFFSET);
            QVERIFY(i < JsonGrammar::GOTO_CHECK_OFFSET);
        }
    }
}

void tst_JsonGrammar::noGotoLookupLeavesItsTables()
{
    for (int state = 0; state < StateCount; ++state) {
        for (int symbol = 0; symbol < JsonGrammar::NON_TERMINAL_COUNT; ++symbol) {
            const int i =
                JsonGrammar::action_index[JsonGrammar::GOTO_INDEX_OFFSET + state] + symbol;
            QVERIFY(JsonGrammar::GOTO_INFO_OFFSET + i < sizeOf(JsonGrammar::action_info));
            QVERIFY(JsonGrammar::GOTO_CHECK_OFFSET + i < sizeOf(JsonGrammar::action_check));
        }
    }
}

void tst_JsonGrammar::everyActionHasAMeaning()
{
    for (int state = 0; state < StateCount; ++state) {
        for (int token = 0; token < TerminalCount; ++token) {
            const int action = JsonGrammar::tAction(state, token);
            QVERIFY(action >= -RuleCount && action < StateCount);
        }
    }
}

void tst_JsonGrammar::everyGotoIsAState()
{
    for (int state = 0; state < StateCount; ++state) {
        for (int symbol = 0; symbol < JsonGrammar::NON_TERMINAL_COUNT; ++symbol) {
            const int next = JsonGrammar::ntAction(state, symbol);
            QVERIFY(next >= 0 && next < StateCount);
        }
    }
}

void tst_JsonGrammar::defaultOnlyStatesHaveNoOtherAction()
{
    int count = 0;
    for (int state = 0; state < StateCount; ++state) {
        QCOMPARE(JsonGrammar::isDefaultOnly(state),
                 JsonGrammar::action_index[state] == DefaultOnly);
        if (!JsonGrammar::isDefaultOnly(state))
            continue;
        ++count;
        for (int token = -1; token < TerminalCount; ++token)
            QCOMPARE(JsonGrammar::tAction(state, token), -JsonGrammar::action_default[state]);
    }
    QCOMPARE(count, 16);
}

void tst_JsonGrammar::onlyTheEndOfTheRootAccepts()
{
    QStringList accepting;
    for (int state = 0; state < StateCount; ++state) {
        for (int token = 0; token < TerminalCount; ++token) {
            if (JsonGrammar::tAction(state, token) == JsonGrammar::ACCEPT_STATE)
                accepting += QString::number(state) + QLatin1String(" on ") + name(token);
        }
    }
    QCOMPARE(accepting.join(QLatin1String("; ")), QString::fromLatin1("3 on end of file"));
}

void tst_JsonGrammar::noStateShiftsAnError()
{
    for (int state = 0; state < StateCount; ++state)
        QVERIFY(JsonGrammar::tAction(state, T_ERROR) <= 0);
}

NUV_TEST_MAIN(tst_JsonGrammar)

#include "tst_jsongrammar.moc"
