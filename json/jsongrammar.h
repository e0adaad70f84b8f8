// SPDX-License-Identifier: MIT
#ifndef JSONGRAMMAR_H
#define JSONGRAMMAR_H

#include <QtGlobal>

/// The token codes, which are also the numbers of the grammar's terminals: the tables below are
/// indexed with them.
enum JsonToken {
    T_END_OF_FILE = 0,
    T_STRING = 1,
    T_NUMBER = 2,
    T_LBRACE = 3,
    T_RBRACE = 4,
    T_LBRACKET = 5,
    T_RBRACKET = 6,
    T_COLON = 7,
    T_COMMA = 8,
    T_FALSE = 9,
    T_TRUE = 10,
    T_NULL = 11,
    T_ERROR = 12
};

/// The constant tables of the LALR(1) parser for the grammar in json.g.
///
/// An action `a` means: ACCEPT_STATE accepts; above 0 shifts and goes to state `a`; below 0 reduces
/// by rule -a - 1; 0 is an error. The rows of all states share two arrays: an index table gives where
/// the row of a state starts, and a check entry tells whether the slot belongs to the row.
struct JsonGrammar {
    enum {
        TERMINAL_COUNT = 13,
        NON_TERMINAL_COUNT = 8,
        STATE_COUNT = 26,
        RULE_COUNT = 18,
        ACCEPT_STATE = 12,
        GOTO_INDEX_OFFSET = 26,
        GOTO_INFO_OFFSET = 37,
        GOTO_CHECK_OFFSET = 37
    };

    static const char *const spell[TERMINAL_COUNT + NON_TERMINAL_COUNT + 1];
    static const qint16 lhs[RULE_COUNT];
    static const qint16 rhs[RULE_COUNT];
    static const qint32 rule_index[RULE_COUNT];
    static const qint32 rule_info[45];
    static const qint16 action_default[STATE_COUNT];
    static const qint16 goto_default[NON_TERMINAL_COUNT];
    static const qint16 action_index[2 * STATE_COUNT];
    static const qint16 action_info[52];
    static const qint16 action_check[52];

    /// The action of `state` on the terminal `token`.
    static int tAction(int state, int token)
    {
        const int i = action_index[state] + token;
        if (i < 0 || action_check[i] != token)
            return -action_default[state];
        return action_info[i];
    }

    /// The state that follows `state` on `nonterminal`, a symbol number less TERMINAL_COUNT.
    static int ntAction(int state, int nonterminal)
    {
        const int i = action_index[GOTO_INDEX_OFFSET + state] + nonterminal;
        if (i < 0 || action_check[GOTO_CHECK_OFFSET + i] != nonterminal)
            return goto_default[nonterminal];
        return action_info[GOTO_INFO_OFFSET + i];
    }

    /// True when the only action of `state` is its default, so that no token is needed to act.
    static bool isDefaultOnly(int state) { return action_index[state] == -TERMINAL_COUNT; }
};

#endif // JSONGRAMMAR_H
