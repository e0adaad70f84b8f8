// SPDX-License-Identifier: MIT
#ifndef FINDING_H
#define FINDING_H

#include "tools/nuv-apps-config/findings/rules.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

/// A further place that explains a finding.
struct Remark {
    int offset;
    QString text;
};

/// A change of the file's bytes.
struct Edit {
    int offset = 0;
    int removed = 0;
    QByteArray inserted;

    bool isNothing() const { return removed == 0 && inserted.isEmpty(); }
    QByteArray appliedTo(QByteArray bytes) const
    {
        return bytes.replace(offset, removed, inserted);
    }
};

struct Finding {
    const char *rule; ///< its id in the table of rules
    Severity severity;
    int offset; ///< into the file; -1 for the file as a whole
    int length;
    QString text;
    QString hint; ///< may be empty
    std::vector<Remark> remarks;
    Edit
        edit; ///< does what the hint proposes; nothing where that is no text to be written. May hold
    ///< a secret that the file holds
};

/// What was found in one file.
class Findings
{
public:
    /// Adds a finding with the severity that its rule has. The reference is good until the next one.
    Finding &add(const char *rule, int offset, int length, const QString &text,
                 const QString &hint = QString());

    /// From now on the rule finds nothing between the two places of the file, and what it found
    /// there is gone. Returns what isUsed() takes.
    size_t ignore(const QByteArray &rule, int begin, int end);
    bool isUsed(size_t ignored) const { return m_ignores[ignored].isUsed; }

    /// Takes away what another finding at the same place says better.
    void remove(const char *rule, int offset);

    const std::vector<Finding> &all() const { return m_all; }
    bool has(const char *rule) const;
    bool hasSyntaxError() const;
    int count(Severity severity) const;

    /// Whether one has this severity or a worse one, or may have: those that were not kept count, too.
    bool hasFrom(Severity severity) const;

    /// In the order of the text.
    void sort();

    /// Changes everything that an output may show: messages, hints and remarks.
    typedef std::function<QString(const QString &, const Finding &)> Change;
    void rewrite(const Change &change);

    /// As many as anybody can read. What comes later is counted, but not kept.
    static const int Limit = 1000;
    bool isFull() const { return int(m_all.size()) >= Limit; }
    int dropped() const { return m_dropped; }

    /// Whether a reader gave up because of so many, so that nobody knows what else there is.
    void setCut(bool isCut) { m_isCut = isCut; }
    bool isCut() const { return m_isCut; }

private:
    struct Ignore {
        QByteArray rule;
        int begin;
        int end;
        bool isUsed;
    };

    bool isIgnored(const char *rule, int offset);

    std::vector<Ignore> m_ignores;
    std::vector<Finding> m_all;
    int m_dropped = 0;
    Severity m_worstDropped = Severity::Note;
    bool m_isCut = false;
    Finding m_unkept = Finding();
};

#endif // FINDING_H
