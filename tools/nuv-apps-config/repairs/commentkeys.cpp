// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/repairs/commentkeys.h"

#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/text/utf8.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cstring>
#include <map>

namespace {

/// A comment, or several that are alone on lines that follow each other.
struct Comment {
    int begin;
    int end;
    std::vector<const Finding *> findings;
    QString text;
};

/// Where in the tree something is.
struct Gap {
    const Node *container = nullptr; ///< null outside of the document
    const Node::Child *before = nullptr; ///< the entry before it
    const Node::Child *after = nullptr;
    const Node::Child *within = nullptr; ///< the member between whose key and value it is
};

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

bool areBlanks(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), isBlank);
}

int beginOf(const Document &document, const Node &container, const Node::Child &child)
{
    return container.type == Node::Object ? child.keyBegin : document.at(child).begin;
}

// The lines without what makes a comment of them.
QStringList linesOf(QString comment)
{
    const char *const marks[][2] = { { "/*", "*/" }, { "<!--", "-->" }, { "//", "" }, { "#", "" } };
    for (const auto &mark : marks) {
        if (!comment.startsWith(QLatin1String(mark[0])))
            continue;
        comment.remove(0, int(std::strlen(mark[0])));
        comment.chop(int(std::strlen(mark[1])));
        break;
    }
    QStringList lines;
    for (QString line : comment.split(QLatin1Char('\n'))) {
        line = line.trimmed();
        if (line.startsWith(QLatin1Char('*')))
            line = line.mid(1).trimmed();
        lines.append(line);
    }
    while (!lines.isEmpty() && lines.first().isEmpty())
        lines.removeFirst();
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

class Comments
{
public:
    explicit Comments(const Analysis &analysis)
        : m_source(analysis.source),
          m_bytes(analysis.source.bytes()),
          m_document(analysis.document),
          m_findings(analysis.findings)
    {
    }

    std::vector<SureRepair> repairs();

private:
    void findRemarks();
    bool isWhole(const Finding &finding) const;
    bool continues(const Comment &remark, int begin) const;
    int endOf(const Finding &finding) const;
    bool isFirstAndLast(const Comment &remark) const;
    Gap gapOf(int offset) const;
    bool hasComma(int begin, int end) const;

    size_t repairGap(size_t first, const Gap &gap);
    void repairInArray(const Comment &remark, const Gap &gap);
    void repairOutside(const Comment &remark);
    void repairWithin(const Comment &remark, const Gap &gap);
    void moveToFront(const Comment &remark, const Node &object);
    void moveToEnd(const Comment &remark, const Node &object);
    void move(const Comment &remark, const Edit &insertion);

    QByteArray member(const Node &object, const QString &remark);
    Edit removal(const Comment &remark) const;
    QByteArray blanksBefore(const Node &object, int offset) const;

    const SourceText &m_source;
    const QByteArray &m_bytes;
    const Document &m_document;
    const Findings &m_findings;
    std::vector<Comment> m_remarks;
    std::map<int, int> m_comments; ///< where each begins and ends
    std::map<const Node *, QSet<QString>> m_keys; ///< of the objects that get one
    std::vector<SureRepair> m_repairs;
};

// The line feed that ends its line is not a part of it, and neither is the carriage return before that.
int Comments::endOf(const Finding &finding) const
{
    int end = finding.offset + finding.length;
    while (isBlank(m_bytes.at(end - 1)))
        --end;
    return end;
}

// Of one that nobody ended it is not sure how far it goes; what follows a word or a colon directly may be
// the rest of an address.
bool Comments::isWhole(const Finding &finding) const
{
    const QByteArray comment = m_bytes.mid(finding.offset, finding.length);
    const char before = finding.offset > 0 ? m_bytes.at(finding.offset - 1) : ' ';
    if (comment.startsWith("/*"))
        return comment.size() >= 4 && comment.endsWith("*/");
    if (comment.startsWith("<!--"))
        return comment.size() >= 7 && comment.endsWith("-->");
    return isBlank(before) || std::strchr("{}[],\"", before);
}

// Whether what begins at `begin` is on the next line, as the remark is alone on its own.
bool Comments::continues(const Comment &remark, int begin) const
{
    const char mark = m_bytes.at(begin);
    const QByteArray between = m_bytes.mid(remark.end, begin - remark.end);
    return (mark == '#' || m_bytes.mid(begin, 2) == "//") && m_bytes.at(remark.begin) == mark
        && m_bytes.mid(remark.begin, 2) != "/*" && m_source.isFirstOnLine(remark.begin)
        && areBlanks(between) && between.count('\n') == 1;
}

void Comments::findRemarks()
{
    for (const Finding &finding : m_findings.all()) {
        if (std::strcmp(finding.rule, "comment") != 0)
            continue;
        m_comments.insert({ finding.offset, finding.offset + finding.length });
        if (!isWhole(finding))
            continue;
        const int end = endOf(finding);
        const QByteArray bytes = m_bytes.mid(finding.offset, end - finding.offset);
        const bool isUtf8 = Utf8::isValid(bytes.constData(), bytes.size());
        const QString text = linesOf(isUtf8 ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes))
                                 .join(QLatin1Char('\n'));
        if (!m_remarks.empty() && continues(m_remarks.back(), finding.offset)) {
            Comment &last = m_remarks.back();
            last.end = end;
            last.findings.push_back(&finding);
            last.text += QLatin1Char('\n') + text;
            continue;
        }
        m_remarks.push_back(Comment { finding.offset, end, { &finding }, text });
    }
    for (Comment &remark : m_remarks)
        remark.text = remark.text.trimmed();
}

Gap Comments::gapOf(int offset) const
{
    Gap gap;
    const Node *node = &m_document.rootNode();
    while (node && node->isContainer() && node->begin < offset && offset < node->end) {
        gap = Gap();
        gap.container = node;
        const auto next = std::upper_bound(node->children.begin(), node->children.end(), offset,
                                           [&](int at, const Node::Child &child) {
                                               return at < beginOf(m_document, *node, child);
                                           });
        gap.after = next == node->children.end() ? nullptr : &*next;
        gap.before = next == node->children.begin() ? nullptr : &*(next - 1);
        const Node *const value = gap.before ? &m_document.at(*gap.before) : nullptr;
        if (value && offset < value->begin)
            gap.within = gap.before;
        node = value && value->begin <= offset ? value : nullptr;
    }
    return gap;
}

// Whether there is a comma between two places that have nothing between them but blanks and comments.
bool Comments::hasComma(int begin, int end) const
{
    while (begin < end) {
        const auto comment = m_comments.find(begin);
        if (comment == m_comments.end() && m_bytes.at(begin) == ',')
            return true;
        begin = comment == m_comments.end() ? begin + 1 : comment->second;
    }
    return false;
}

QByteArray Comments::member(const Node &object, const QString &remark)
{
    const bool isNew = m_keys.find(&object) == m_keys.end();
    QSet<QString> &keys = m_keys[&object];
    for (const Node::Child &child : object.children) {
        if (isNew)
            keys.insert(child.key);
    }
    QString key = QLatin1String("_comment");
    for (int number = 2; keys.contains(key); ++number)
        key = QString(QLatin1String("_comment%1")).arg(number);
    keys.insert(key);
    return Edits::quoted(key) + ": " + Edits::quoted(remark);
}

bool Comments::isFirstAndLast(const Comment &remark) const
{
    const int lineEnd = m_source.lineEnd(remark.end);
    return m_source.isFirstOnLine(remark.begin)
        && areBlanks(m_bytes.mid(remark.end, lineEnd - remark.end));
}

// With its lines where nothing else is on them, and with one of the blanks around it elsewhere.
Edit Comments::removal(const Comment &remark) const
{
    int begin = remark.begin;
    int end = remark.end;
    const int lineEnd = m_source.lineEnd(end);
    if (isFirstAndLast(remark)) {
        begin = m_source.lineBegin(begin);
        end = m_bytes.indexOf('\n', end) + 1;
        return Edit { begin, (end > 0 ? end : m_bytes.size()) - begin, QByteArray() };
    }
    const bool isAfterBlank = begin == 0 || isBlank(m_bytes.at(begin - 1));
    if (areBlanks(m_bytes.mid(end, lineEnd - end))) {
        while (begin > 0 && (m_bytes.at(begin - 1) == ' ' || m_bytes.at(begin - 1) == '\t'))
            --begin;
    } else if (isAfterBlank && m_bytes.at(end) == ' ') {
        ++end;
    } else if (isAfterBlank && !m_source.isFirstOnLine(begin)) {
        --begin;
    }
    return Edit { begin, end - begin, QByteArray() };
}

// What separates a member from the one before it.
QByteArray Comments::blanksBefore(const Node &object, int offset) const
{
    int begin = offset;
    while (begin > object.begin + 1 && isBlank(m_bytes.at(begin - 1)))
        --begin;
    const QByteArray blanks = m_bytes.mid(begin, offset - begin);
    return blanks.isEmpty()
        ? QByteArray(" ")
        : blanks.mid(qMax(0, blanks.lastIndexOf('\n') - int(blanks.contains("\r\n"))));
}

void Comments::move(const Comment &remark, const Edit &insertion)
{
    SureRepair repair = { remark.findings, { removal(remark) }, 0, 0 };
    if (!remark.text.isEmpty())
        repair.edits.push_back(insertion);
    m_repairs.push_back(repair);
}

void Comments::moveToFront(const Comment &remark, const Node &object)
{
    if (object.children.empty()) {
        const bool isTight = m_bytes.at(object.begin + 1) == '}';
        const QByteArray only = ' ' + member(object, remark.text) + (isTight ? " " : "");
        return move(remark, Edit { object.begin + 1, 0, only });
    }
    int first = object.begin + 1; // a comment, or a key
    while (isBlank(m_bytes.at(first)))
        ++first;
    move(remark,
         Edit { first, 0, member(object, remark.text) + ',' + blanksBefore(object, first) });
}

void Comments::moveToEnd(const Comment &remark, const Node &object)
{
    if (object.children.empty())
        return moveToFront(remark, object);
    const Node::Child &last = object.children.back();
    move(remark,
         Edit { m_document.at(last).end, 0,
                ',' + blanksBefore(object, last.keyBegin) + member(object, remark.text) });
}

// One that ends the line of an object is about that, any other about what follows.
void Comments::repairInArray(const Comment &remark, const Gap &gap)
{
    const Node *const before = gap.before ? &m_document.at(*gap.before) : nullptr;
    const Node *const after = gap.after ? &m_document.at(*gap.after) : nullptr;
    const bool isBehind = before && remark.begin <= m_source.lineEnd(before->end);
    const bool canFollow = before && before->type == Node::Object;
    const bool canLead = after && after->type == Node::Object;
    if (canFollow && (isBehind || !canLead))
        moveToEnd(remark, *before);
    else if (canLead)
        moveToFront(remark, *after);
}

void Comments::repairOutside(const Comment &remark)
{
    const Node &root = m_document.rootNode();
    if (root.type != Node::Object)
        return;
    if (remark.end <= root.begin)
        moveToFront(remark, root);
    else
        moveToEnd(remark, root);
}

// Before the member whose key and value it separates.
void Comments::repairWithin(const Comment &remark, const Gap &gap)
{
    const Node &object = *gap.container;
    move(remark,
         Edit { gap.within->keyBegin, 0,
                member(object, remark.text) + ',' + blanksBefore(object, gap.within->keyBegin) });
}

// All between two members of an object. A comma that separates two entries follows the first of them.
size_t Comments::repairGap(size_t first, const Gap &gap)
{
    SureRepair repair;
    const int limit = gap.after ? gap.after->keyBegin : gap.container->end - 1;
    int last = gap.before ? m_document.at(*gap.before).end : -1; // where the entry before ends
    const auto separate = [&](int next) {
        if (last < 0 || hasComma(last, next))
            return;
        if (repair.edits.empty() || repair.edits.back().inserted.isEmpty())
            repair.edits.push_back(Edit { last, 0, "," });
        else
            repair.edits.back().inserted += ',';
    };
    size_t index = first;
    for (; index < m_remarks.size() && m_remarks[index].begin < limit; ++index) {
        const Comment &remark = m_remarks[index];
        repair.findings.insert(repair.findings.end(), remark.findings.begin(),
                               remark.findings.end());
        if (remark.text.isEmpty()) {
            repair.edits.push_back(removal(remark));
            continue;
        }
        separate(remark.begin);
        repair.edits.push_back(
            Edit { remark.begin, remark.end - remark.begin, member(*gap.container, remark.text) });
        last = remark.end;
    }
    if (gap.after)
        separate(limit);
    m_repairs.push_back(repair);
    return index;
}

std::vector<SureRepair> Comments::repairs()
{
    findRemarks();
    if (m_document.isEmpty())
        return m_repairs;
    for (size_t i = 0; i < m_remarks.size();) {
        const Comment &remark = m_remarks[i];
        const Gap gap = gapOf(remark.begin);
        if (gap.container && gap.container->type == Node::Object && !gap.within) {
            i = repairGap(i, gap);
            continue;
        }
        if (!gap.container)
            repairOutside(remark);
        else if (gap.within)
            repairWithin(remark, gap);
        else
            repairInArray(remark, gap);
        ++i;
    }
    return m_repairs;
}

} // namespace

std::vector<SureRepair> CommentKeys::repairs(const Analysis &analysis)
{
    return Comments(analysis).repairs();
}
