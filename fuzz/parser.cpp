// SPDX-License-Identifier: MIT
// The parser, and the writer after it: both layouts of a tree read back to the same, and what was
// written is read and written without loss. (The entries of a key that comes twice change places each
// time.)

#include "fuzz/fuzztarget.h"
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "json/varianttree.h"

static QByteArray writtenCompactly(const QByteArray &text)
{
    QString error;
    QVariant tree = parseJson(text, &error);
    const VariantTree::Disposer disposer(tree);
    Fuzz::require(error.isEmpty(), "what was written can be read");
    return JsonWriter::serializeCompact(tree);
}

// Of a number that is too large for a double, and of a negative zero, the text changes when it is read
// again.
static bool holdsOddNumbers(const QByteArray &text)
{
    return text.contains("inf") || text.contains("-0") || text.contains("e+308");
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const FuzzInput input(data, size);
    QString error;
    QVariant tree = parseJson(input.bytes(), &error);
    const VariantTree::Disposer disposer(tree);
    Fuzz::require(error.isEmpty() || error.contains(QLatin1String(" at line ")),
                  "an error has its text");

    const QByteArray written = JsonWriter::serializeCompact(tree);
    if (error.isEmpty() && !holdsOddNumbers(written)) {
        const QByteArray again = writtenCompactly(written);
        Fuzz::requireEqual(writtenCompactly(JsonWriter::serialize(tree, 4, 0)), again,
                           "both layouts mean the same");
        Fuzz::requireEqual(writtenCompactly(again), written, "nothing is lost in writing");
    }
    return 0;
}
