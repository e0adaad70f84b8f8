// SPDX-License-Identifier: MIT
#ifndef PAGESETTINGS_H
#define PAGESETTINGS_H

class ApplicationView;
class QVariant;

/// The effects on the page of an application, for the table of properties.
namespace PageSettings {

bool setUrl(ApplicationView &view, const QVariant &address);
bool setUserAgent(ApplicationView &view, const QVariant &name);
bool setUserScript(ApplicationView &view, const QVariant &file);
bool setScale(ApplicationView &view, const QVariant &factor);
bool setTransparentBackground(ApplicationView &view, const QVariant &on);
bool setScrollbar(ApplicationView &view, const QVariant &on);
bool setScrollingProhibited(ApplicationView &view, const QVariant &on);
bool setErrorPage(ApplicationView &view, const QVariant &on);
bool setConsoleSuppressed(ApplicationView &view, const QVariant &on);
bool setLoadedUrlsPrinted(ApplicationView &view, const QVariant &on);

} // namespace PageSettings

#endif // PAGESETTINGS_H
