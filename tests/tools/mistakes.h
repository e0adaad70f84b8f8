// SPDX-License-Identifier: MIT
#ifndef MISTAKES_H
#define MISTAKES_H

#include <QByteArray>
#include <QList>

#include <random>

/// Configurations as integrators write them, and the mistakes that they make, each planted at a place
/// by chance: the same ones in every run.
namespace Mistakes {

/// A file with one mistake, and what must be said of it.
struct Planted {
    QByteArray bytes;
    QByteArray rule;
    int offset; ///< where it must be found
    bool isError; ///< for the library's parser
};

struct Kind {
    const char *name; ///< in words
    const char *rule;
    bool (*plant)(Planted *file, std::mt19937 &engine); ///< false: there is no fitting place
};

/// The kinds that concern the syntax, in the order of the published table, and those of meaning.
const QList<Kind> &syntaxKinds();
const QList<Kind> &meaningKinds();

/// The file of the published table with this mistake: the same one in every run, whatever other kinds
/// there are.
Planted published(const Kind &kind);

/// Clean files of about 20 to 2,000 lines, in several layouts.
const QList<QByteArray> &configurations();

/// The one for a round of a test: after the last comes the first again.
const QByteArray &configurationOfRound(int round);

} // namespace Mistakes

#endif // MISTAKES_H
