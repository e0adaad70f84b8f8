// SPDX-License-Identifier: MIT
#ifndef OPENING_H
#define OPENING_H

class QString;

/// What a test does directly before and directly after the toolkit's opening of a settings file: the
/// linker replaces with a function of ours that constructor of QSettings. Null for nothing.
namespace Opening {

extern void (*before)(const QString &path);
extern void (*behind)();

} // namespace Opening

#endif // OPENING_H
