// SPDX-License-Identifier: MIT
#include "json/jsongrammar.h"

// clang-format off

const char *const JsonGrammar::spell[] = {
    "end of file", "string", "number", "{", "}", "[", "]", ":", ",", "false", "true", "null", "error",
    "Root", "Value", "Object", "Members", "Member", "Array", "Values", "$accept",
    nullptr
};

const qint16 JsonGrammar::lhs[] = {
    13, 15, 16, 16, 16, 17, 14, 14, 14, 14, 14, 14, 14, 18, 19, 19, 19, 20
};

const qint16 JsonGrammar::rhs[] = {
    1, 3, 1, 3, 0, 3, 1, 1, 1, 1, 1, 1, 1, 3, 1, 3, 0, 2
};

// Where each rule starts in rule_info, and there its left-hand symbol and its right-hand symbols.
// They describe the grammar; the parser itself does not read them.
const qint32 JsonGrammar::rule_index[] = {
    0, 2, 6, 8, 12, 13, 17, 19, 21, 23, 25, 27, 29, 31, 35, 37, 41, 42
};

const qint32 JsonGrammar::rule_info[] = {
    13, 14,
    15, 3, 16, 4,
    16, 17,
    16, 16, 8, 17,
    16,
    17, 1, 7, 14,
    14, 9,
    14, 10,
    14, 11,
    14, 15,
    14, 18,
    14, 2,
    14, 1,
    18, 5, 19, 6,
    19, 14,
    19, 19, 8, 14,
    19,
    20, 13, 0
};

const qint16 JsonGrammar::action_default[] = {
    0, 11, 10, 0, 7, 5, 17, 9, 12, 13, 8, 1, 18, 3, 0, 0, 0, 2, 4, 0, 6, 15, 0, 0, 14, 16
};

const qint16 JsonGrammar::goto_default[] = {
    3, 11, 2, 14, 13, 1, 22, 0
};

const qint16 JsonGrammar::action_index[] = {
    24, -13, -13, 0, -13, 12, 24, -13, -13, -13, -13, -13, -13,
    -13, -1, -6, 12, -13, -13, 7, -13, -13, -4, 24, -13, -13,

    -8, -8, -8, -8, -8, -8, -1, -8, -8, -8, -8, -8, -8,
    -8, -8, -8, -2, -8, -8, 0, -8, -8, -8, 6, -8, -8
};

const qint16 JsonGrammar::action_info[] = {
    12, 19, 24, 17, 23, 0, 0, 16, 9, 8, 5, 0, 6, 15, 0, 0, 4, 10, 7,
    0, 0, 0, 0, 0, 0, 9, 8, 5, 0, 6, 0, 0, 0, 4, 10, 7, 0,

    21, 20, 18, 0, 0, 0, 0, 25, 0, 0, 0, 0, 0, 0, 0
};

const qint16 JsonGrammar::action_check[] = {
    0, 7, 6, 4, 8, -1, -1, 8, 1, 2, 3, -1, 5, 1, -1, -1, 9, 10, 11,
    -1, -1, -1, -1, -1, -1, 1, 2, 3, -1, 5, -1, -1, -1, 9, 10, 11, -1,

    1, 1, 4, -1, -1, -1, -1, 1, -1, -1, -1, -1, -1, -1, 0
};
