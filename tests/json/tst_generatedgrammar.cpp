// SPDX-License-Identifier: MIT
#include "json/jsongrammar.h"

#include "tests/support/testmain.h"

#include <jsongrammargenerated_p.h>

#include <QStringList>

namespace {

typedef JsonGrammarGenerated Generated;

const int TerminalCount = JsonGrammar::TERMINAL_COUNT;
const int NonterminalCount = JsonGrammar::NON_TERMINAL_COUNT;

// What a lookup gives for every symbol of a state.
QString row(int (*lookup)(int, int), int state, int symbols)
{
    QStringList entries;
    for (int symbol = 0; symbol < symbols; ++symbol)
        entries += QString::number(lookup(state, symbol));
    return entries.join(QLatin1String(" "));
}

} // namespace

/// Compares the tables with those that the parser generator makes of json.g. It packs them in
/// another way, but numbers the states and rules alike.
class tst_GeneratedGrammar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constantsAreTheGeneratedOnes();
    void tokensAreTheGeneratedOnes();
    void namesAreTheGeneratedOnes();
    void rulesAreTheGeneratedOnes();
    void statesBehaveAsTheGeneratedOnes_data();
    void statesBehaveAsTheGeneratedOnes();
};

void tst_GeneratedGrammar::constantsAreTheGeneratedOnes()
{
    QCOMPARE(int(JsonGrammar::TERMINAL_COUNT), int(Generated::TERMINAL_COUNT));
    QCOMPARE(int(JsonGrammar::NON_TERMINAL_COUNT), int(Generated::NON_TERMINAL_COUNT));
    QCOMPARE(int(JsonGrammar::STATE_COUNT), int(Generated::STATE_COUNT));
    QCOMPARE(int(JsonGrammar::RULE_COUNT), int(Generated::RULE_COUNT));
    QCOMPARE(int(JsonGrammar::ACCEPT_STATE), int(Generated::ACCEPT_STATE));
    QCOMPARE(int(JsonGrammar::GOTO_INDEX_OFFSET), int(Generated::GOTO_INDEX_OFFSET));
}

void tst_GeneratedGrammar::tokensAreTheGeneratedOnes()
{
    QCOMPARE(int(T_END_OF_FILE), int(Generated::EOF_SYMBOL));
    QCOMPARE(int(T_STRING), int(Generated::T_STRING));
    QCOMPARE(int(T_NUMBER), int(Generated::T_NUMBER));
    QCOMPARE(int(T_LBRACE), int(Generated::T_LBRACE));
    QCOMPARE(int(T_RBRACE), int(Generated::T_RBRACE));
    QCOMPARE(int(T_LBRACKET), int(Generated::T_LBRACKET));
    QCOMPARE(int(T_RBRACKET), int(Generated::T_RBRACKET));
    QCOMPARE(int(T_COLON), int(Generated::T_COLON));
    QCOMPARE(int(T_COMMA), int(Generated::T_COMMA));
    QCOMPARE(int(T_FALSE), int(Generated::T_FALSE));
    QCOMPARE(int(T_TRUE), int(Generated::T_TRUE));
    QCOMPARE(int(T_NULL), int(Generated::T_NULL));
    QCOMPARE(int(T_ERROR), int(Generated::T_ERROR));
}

void tst_GeneratedGrammar::namesAreTheGeneratedOnes()
{
    for (int symbol = 0; symbol < TerminalCount + NonterminalCount; ++symbol)
        QCOMPARE(QByteArray(JsonGrammar::spell[symbol]), QByteArray(Generated::spell[symbol]));
}

void tst_GeneratedGrammar::rulesAreTheGeneratedOnes()
{
    for (int rule = 0; rule < JsonGrammar::RULE_COUNT; ++rule) {
        QCOMPARE(int(JsonGrammar::lhs[rule]), int(Generated::lhs[rule]));
        QCOMPARE(int(JsonGrammar::rhs[rule]), int(Generated::rhs[rule]));
        const int start = JsonGrammar::rule_index[rule];
        QCOMPARE(start, Generated::rule_index[rule]);
        for (int i = start; i <= start + JsonGrammar::rhs[rule]; ++i)
            QCOMPARE(int(JsonGrammar::rule_info[i]), Generated::rule_info[i]);
    }
}

void tst_GeneratedGrammar::statesBehaveAsTheGeneratedOnes_data()
{
    QTest::addColumn<int>("state");
    for (int state = 0; state < JsonGrammar::STATE_COUNT; ++state)
        QTest::newRow(qPrintable(QString::fromLatin1("state %1").arg(state))) << state;
}

void tst_GeneratedGrammar::statesBehaveAsTheGeneratedOnes()
{
    QFETCH(int, state);

    QCOMPARE(row(JsonGrammar::tAction, state, TerminalCount),
             row(Generated::t_action, state, TerminalCount));
    QCOMPARE(row(JsonGrammar::ntAction, state, NonterminalCount),
             row(Generated::nt_action, state, NonterminalCount));
    QCOMPARE(JsonGrammar::isDefaultOnly(state), Generated::action_index[state] == -TerminalCount);
}

NUV_TEST_MAIN(tst_GeneratedGrammar)

#include "tst_generatedgrammar.moc"
