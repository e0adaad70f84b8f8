// SPDX-License-Identifier: MIT
#ifndef SECRETRANGES_H
#define SECRETRANGES_H

#include "tools/nuv-apps-config/secrets/secretrange.h"

#include <QByteArray>

#include <vector>

struct Document;

/// Where in a file secrets are.
class SecretRanges
{
public:
    /// In a file that could be read the tree says what is secret. In one with syntax errors nothing is
    /// where it should be: there every word near the name of a secret is taken for one.
    SecretRanges(const QByteArray &bytes, const Document &document, bool hasSyntaxErrors);

    /// In order, apart from each other.
    const std::vector<SecretRange> &all() const { return m_ranges; }

    /// The range that holds `offset`; null outside of secrets.
    const SecretRange *at(int offset) const;

    /// Whether one byte of the piece is secret.
    bool touches(int offset, int length) const;

private:
    void merge();

    std::vector<SecretRange> m_ranges;
};

#endif // SECRETRANGES_H
