// SPDX-License-Identifier: MIT
// The parser and a second, plain recursive reading of the same dialect: the same tree, the same types
// and the same error text to the letter.

#include "fuzz/fuzztarget.h"
#include "json/jsonparser.h"
#include "tests/json/plainreader.h"
#include "tests/support/describe.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const FuzzInput input(data, size);
    const PlainReader plain(input.bytes());
    if (plain.isTooDeep())
        return 0;
    QString error;
    const QVariant tree = parseJson(input.bytes(), &error);
    Fuzz::requireEqual(error.toLatin1(), plain.error().toLatin1(), "both give the same error");
    Fuzz::requireEqual(describe(tree), describe(plain.tree()), "both give the same tree");
    return 0;
}
