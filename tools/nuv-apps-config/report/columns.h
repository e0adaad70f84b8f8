// SPDX-License-Identifier: MIT
#ifndef COLUMNS_H
#define COLUMNS_H

#include <QString>

/// How wide text is on a terminal. A character may take two columns, or none.
namespace Columns {

int of(const QString &text);

/// Of the terminal that the standard output is, or as the variable COLUMNS says; 0 where nobody knows.
int ofTerminal();

} // namespace Columns

#endif // COLUMNS_H
