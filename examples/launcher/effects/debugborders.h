// SPDX-License-Identifier: MIT
#ifndef DEBUGBORDERS_H
#define DEBUGBORDERS_H

class QWebPage;

/// The coloured borders of a page's layers. The engine has no setting for them: it looks into the
/// environment whenever a web setting is applied to a page, and keeps for that page what it finds.
namespace DebugBorders {

/// To be called after all other web settings of the page.
void show(QWebPage *page, bool shown);

/// Shows again those that the engine forgot when a setting was applied to all pages.
void restore();

} // namespace DebugBorders

#endif // DEBUGBORDERS_H
