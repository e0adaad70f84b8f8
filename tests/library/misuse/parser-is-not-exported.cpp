// SPDX-License-Identifier: MIT
// expected: undefined (reference to|symbol).*parseJson
#include "json/jsonparser.h"

int main()
{
    return parseJson(QByteArray(), nullptr).isValid() ? 0 : 1;
}
