// SPDX-License-Identifier: MIT
#ifndef REPAIREDFILE_H
#define REPAIREDFILE_H

#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/repairs/piecetable.h"

#include <memory>
#include <vector>

struct SureRepair;

/// A file after all repairs that are sure. What they do not touch is the same to the byte.
class RepairedFile
{
public:
    /// What was done away with.
    struct Mistake {
        const char *rule;
        int offset; ///< in the file as it was
        QString text; ///< without secrets
    };

    /// `files` and `ignored` are those that the file was analysed with: what is ignored is not repaired.
    RepairedFile(std::unique_ptr<Analysis> before, const DeviceFiles &files,
                 const QStringList &ignored = QStringList());

    bool isChanged() const { return !m_mistakes.empty(); }
    QByteArray bytes() const { return now().source.bytes(); }
    const std::vector<Mistake> &mistakes() const { return m_mistakes; }
    std::vector<PieceTable::Change> changes() const { return m_pieces.changes(); }

    /// The file as it was.
    const Analysis &before() const { return *m_before; }

    /// What is left.
    const Analysis &now() const { return m_now ? *m_now : *m_before; }

private:
    struct Attempt;

    /// How a file that cannot be read before its last repair is judged on the way there.
    enum Manner {
        Trusting, ///< by the end: all is well if it is read then
        Careful ///< after each round: what is left must be what was left before
    };

    void run(Manner manner);
    void takeBack();
    bool repairOnce();
    bool repair(const std::vector<SureRepair> &repairs, size_t begin, size_t end);

    DeviceFiles m_files;
    QStringList m_ignored;
    Manner m_manner = Trusting;
    std::unique_ptr<Analysis> m_before;
    std::unique_ptr<Analysis> m_now; ///< null as long as nothing is changed
    PieceTable m_pieces;
    std::vector<Mistake> m_mistakes;
};

#endif // REPAIREDFILE_H
