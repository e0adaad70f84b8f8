// SPDX-License-Identifier: MIT
// expected: undefined (reference to|symbol).*JsonWriter::serialize
#include "json/jsonwriter.h"

int main()
{
    return JsonWriter::serialize(QVariant(), 4, 0).size();
}
