// SPDX-License-Identifier: MIT
#ifndef VERSION_H
#define VERSION_H

/// They come from the build: they are the project's.
const char ProgramVersion[] = NUV_VERSION;
const char ProgramDate[] = NUV_DATE;

#endif // VERSION_H
