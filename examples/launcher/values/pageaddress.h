// SPDX-License-Identifier: MIT
#ifndef PAGEADDRESS_H
#define PAGEADDRESS_H

#include "values/parsed.h"

#include <QUrl>

/// The address of a first page. One without a scheme is a file, relative to `folder`, which is that of
/// the configuration file. Whether the page is there is not looked at.
Parsed<QUrl> toPageAddress(const QString &text, const QString &folder);

#endif // PAGEADDRESS_H
