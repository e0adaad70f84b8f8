// SPDX-License-Identifier: MIT
#ifndef LAYOUT_H
#define LAYOUT_H

#include "tools/nuv-apps-config/tree/document.h"

#include <QByteArray>

/// The layout of a configuration file. Keys and values stay as they are written, in their order; blanks
/// and line breaks between them become what they should be:
///
/// - an entry on a line of its own, four spaces deeper than what holds it, and one blank after a colon;
/// - an object or an array that began on one line stays on one, where it fits into 100 columns;
/// - of blank lines between entries, one stays;
/// - a line feed at the end.
namespace Layout {

/// `document` must be without errors of syntax.
QByteArray of(const Document &document, const QByteArray &bytes);

} // namespace Layout

#endif // LAYOUT_H
