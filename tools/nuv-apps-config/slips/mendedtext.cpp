// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/slips/mendedtext.h"

#include "tools/nuv-apps-config/slips/brackets.h"
#include "tools/nuv-apps-config/tokens/literals.h"
#include "tools/nuv-apps-config/tokens/numbers.h"
#include "tools/nuv-apps-config/slips/slipfinder.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <deque>

namespace {

const int MostRepairs = 50;
const int LongestLook = 6; ///< tokens in front of the error
const int DeepestDocument = 1000;
const int NearWindow = 250; ///< bytes that every change is tried with
const int FarWindow = 65536; ///< and those that were good so far
const int LongestPart = 65536; ///< bytes between a change and the error
const int costOfOddity = 5;
const int LeastProgress = 1; ///< tokens after the error that a change must gain

/// How far a document can be read.
struct Reach {
    int offset; ///< INT_MAX: to the end
    int tokens; ///< after the error
    int oddities; ///< what the library accepts, and nobody writes
};

/// Reads up to the first syntax error. What the tokenizer can tell from its own bytes (a comment, a
/// string in other quotes, a word without quotes, another spelling of true) is not one here.
class Walk
{
public:
    Walk(const SourceText &source, const Structure &structure)
        : m_source(source),
          m_structure(structure),
          m_tokenizer(source, m_ignored, Tokenizer::Strict)
    {
    }

    const Token &token() const { return m_token; }
    const Structure &structure() const { return m_structure; }

    /// False at the first syntax error and at the end of the text.
    bool next();
    bool isAtEnd() const { return m_token.code == T_END_OF_FILE; }
    int oddities() const { return m_oddities; }

    /// Whether that byte is in a comment.
    bool isComment(int offset) const;

private:
    bool isOdd() const;
    bool takeWord();
    bool endsEntry(int offset) const;
    bool isFollowedByColon(int offset) const;

    const SourceText &m_source;
    Structure m_structure;
    Findings m_ignored;
    Tokenizer m_tokenizer;
    Token m_token;
    int m_oddities = 0;
};

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

bool Walk::isFollowedByColon(int offset) const
{
    while (offset < m_source.size() && isBlank(m_source.bytes().at(offset)))
        ++offset;
    return offset < m_source.size() && m_source.bytes().at(offset) == ':';
}

bool Walk::endsEntry(int offset) const
{
    for (; offset < m_source.size(); ++offset) {
        const char byte = m_source.bytes().at(offset);
        if (!isBlank(byte) || byte == '\n')
            return byte == '\n' || byte == ',' || byte == '}' || byte == ']';
    }
    return true;
}

bool Walk::isComment(int offset) const
{
    const std::vector<Finding> &found = m_ignored.all();
    return std::any_of(found.begin(), found.end(), [offset](const Finding &finding) {
        return std::strcmp(finding.rule, "comment") == 0 && finding.offset <= offset
            && offset < finding.offset + finding.length;
    });
}

// A comma that leads, a string over several lines, a number that is none.
bool Walk::isOdd() const
{
    const char *const begin = m_source.bytes().constData() + m_token.begin;
    const char *const end = m_source.bytes().constData() + m_token.end;
    const Structure::Expected expected = m_structure.expected();
    if (m_token.code == T_COMMA)
        return expected == Structure::FirstKey || expected == Structure::FirstElement;
    if (m_token.code == T_STRING)
        return *begin != '"' || std::memchr(begin, '\n', size_t(end - begin));
    return m_token.code == T_NUMBER && !Literals::isPlainNumber(begin, end);
}

bool Walk::takeWord()
{
    Token word = m_token;
    m_tokenizer.extendWord(&word);
    const QString value = word.value.toString();
    const bool opens = value.endsWith(QLatin1Char('{')) || value.endsWith(QLatin1Char('['));
    return !opens && endsEntry(word.end) && m_structure.take(T_STRING);
}

bool Walk::next()
{
    m_token = m_tokenizer.next();
    m_oddities += isOdd();
    const bool isString = m_token.code == T_STRING;
    const bool isNumber = m_token.code == T_NUMBER;
    const bool isWord =
        m_token.code == Token::Word || (!isString && !isNumber && m_token.value.isValid());
    const bool mayBeKey = isWord || isNumber || (m_token.code >= T_FALSE && m_token.code <= T_NULL);
    if (m_structure.expectsKey() && mayBeKey && isFollowedByColon(m_token.end))
        return m_structure.take(T_STRING);
    if (isWord && m_structure.expectsValue())
        return takeWord();
    return m_structure.take(m_token.code) && m_token.code != T_END_OF_FILE;
}

} // namespace

/// Reads the whole text and remembers what is needed to look for the cause of an error.
class Reading
{
public:
    explicit Reading(const SourceText &source) : m_brackets(source), m_walk(source, Structure()) {}

    void run();
    bool isComplete() const
    {
        return m_walk.isAtEnd() && m_walk.structure().expected() == Structure::Nothing;
    }
    const Structure &structure() const { return m_walk.structure(); }
    const Brackets &brackets() const { return m_brackets; }
    const std::vector<Step> &steps() const { return m_steps; }
    const Token &error() const { return m_walk.token(); }

    /// Where the value of the innermost member begins that has one, -1 for none.
    int lastValue() const { return m_values.empty() ? -1 : m_values.back(); }

private:
    void note(const Token &token);

    Brackets m_brackets;
    Walk m_walk;
    std::vector<Step> m_steps; ///< the last ones
    std::vector<int> m_values;
};

void Reading::run()
{
    for (;;) {
        const Structure::Mark before = m_walk.structure().mark();
        const bool goesOn = m_walk.next();
        if (m_steps.size() > size_t(4) * LongestLook)
            m_steps.erase(m_steps.begin(), m_steps.begin() + std::ptrdiff_t(3) * LongestLook);
        m_steps.push_back(Step { m_walk.token(), before });
        if (!goesOn)
            break;
        if (before.expected == Structure::MemberValue)
            m_values.back() = m_walk.token().begin;
        note(m_walk.token());
    }
    std::reverse(m_steps.begin(), m_steps.end());
    if (m_steps.size() > LongestLook)
        m_steps.resize(LongestLook);
}

void Reading::note(const Token &token)
{
    if (token.code == T_LBRACE || token.code == T_LBRACKET) {
        m_brackets.open(token.begin, token.code);
        m_values.push_back(-1);
    } else if (token.code == T_RBRACE || token.code == T_RBRACKET) {
        m_brackets.close(token.begin, true);
        m_values.pop_back();
    }
}

namespace {

/// Tries changes near one error.
class Trial
{
public:
    Trial(const SourceText &text, const Reading &reading);

    /// False when no change is any good.
    bool best(Slip *slip, int *opened);

    /// The change that the indentation asks for at the end of a file that does not close all.
    bool closing(Slip *slip, int *opened) const;
    bool isClean() const { return m_reach.offset == INT_MAX; }

private:
    void tryFar();
    void tryClosing(int opened, int code, int cost);
    void tryFar(Slip::Kind kind, int cost, int offset, int removed, const QByteArray &inserted,
                int opened);
    bool mayBeFar() const;
    int limit() const;
    bool isBetter(const Reach &reach, const Slip &slip) const;
    Reach reachOf(const Slip &slip, int window) const;
    Reach reachOfAll(const Edit &edit) const;
    void keep(const Slip &slip, const Reach &reach, int opened);

    const SourceText &m_text;
    const Reading &m_reading;
    std::vector<Structure> m_states; ///< in front of each step
    Slip m_best = Slip();
    Reach m_reach;
    int m_opened = -1; ///< what a bracket that is put in closes
};

Trial::Trial(const SourceText &text, const Reading &reading)
    : m_text(text), m_reading(reading), m_reach { -1, 0, 0 }
{
    Structure state = reading.structure();
    for (const Step &step : reading.steps()) {
        state.goBack(step.before);
        m_states.push_back(state);
    }
}

// The bytes from the token of the change, and from the one in front of it where the two may grow
// together.
Reach Trial::reachOf(const Slip &slip, int window) const
{
    const std::vector<Step> &steps = m_reading.steps();
    size_t from = size_t(slip.token);
    const Step *const before = from + 1 < steps.size() ? &steps[from + 1] : nullptr;
    int begin = before ? before->token.end : 0;
    if (before && begin == slip.edit.offset && before->token.code != T_STRING) {
        begin = before->token.begin;
        ++from;
    }
    const int changed = qMax(m_reading.error().end, slip.edit.offset + slip.edit.removed);
    if (changed - begin > LongestPart)
        return Reach { -1, 0, 0 };
    const int end = int(qMin<qint64>(m_text.size(), qint64(changed) + window));
    Edit edit = slip.edit;
    edit.offset -= begin;
    const int growth = edit.inserted.size() - edit.removed;
    const SourceText part(QString(), edit.appliedTo(m_text.bytes().mid(begin, end - begin)));
    Walk walk(part, m_states[from]);
    Reach reach = { 0, 0, 0 };
    while (walk.next())
        reach.tokens += walk.token().begin + begin - growth > m_reading.error().begin;
    // A quote taken from an address makes a comment of all that follows it.
    if (walk.isComment(m_reading.error().begin - begin + growth))
        return Reach { -1, 0, 0 };
    const bool isWhole = end == m_text.size();
    reach.oddities = walk.oddities();
    if (!isWhole && walk.token().end == part.size()) {
        reach.offset = end; // its last token is cut off
        return reach;
    }
    if (walk.isAtEnd()) {
        reach.offset = walk.structure().expected() == Structure::Nothing ? INT_MAX : m_text.size();
        reach.tokens += LeastProgress;
    } else {
        reach.offset = walk.token().begin + begin - growth;
    }
    return reach;
}

Reach Trial::reachOfAll(const Edit &edit) const
{
    const int growth = edit.inserted.size() - edit.removed;
    const SourceText whole(QString(), edit.appliedTo(m_text.bytes()));
    Walk walk(whole, Structure());
    Reach reach = { 0, 0, 0 };
    while (walk.next())
        reach.tokens += walk.token().begin - growth > m_reading.error().begin;
    if (!walk.isAtEnd())
        reach.offset = walk.token().begin - growth;
    else
        reach.offset = walk.structure().expected() == Structure::Nothing ? INT_MAX : m_text.size();
    if (walk.isAtEnd())
        reach.tokens += LeastProgress;
    return reach;
}

bool Trial::closing(Slip *slip, int *opened) const
{
    const Brackets &brackets = m_reading.brackets();
    if (brackets.suspect() < 0)
        return false;
    const int place = brackets.placeByIndentation(brackets.suspect(), m_reading.error().begin);
    const QByteArray bracket = brackets.suspectCode() == T_LBRACE ? "}" : "]";
    *slip = Slip { Slip::MissingClosing, Edit { place, 0, bracket }, 0, 0, place, 1 };
    *opened = brackets.suspect();
    return true;
}

bool Trial::isBetter(const Reach &reach, const Slip &slip) const
{
    if (reach.tokens < LeastProgress || reach.offset < m_reading.error().end)
        return false;
    return reach.offset > m_reach.offset
        || (reach.offset == m_reach.offset
            && slip.cost + costOfOddity * reach.oddities
                < m_best.cost + costOfOddity * m_reach.oddities);
}

void Trial::keep(const Slip &slip, const Reach &reach, int opened)
{
    m_best = slip;
    m_reach = reach;
    m_opened = opened;
}

bool Trial::best(Slip *slip, int *opened)
{
    m_best.cost = 1000;
    m_reach.offset = -1;
    std::vector<Slip> good;
    int nearest = 0;
    for (const Slip &each : slipsNear(m_text, m_reading.steps())) {
        const Reach reach = reachOf(each, NearWindow);
        if (reach.tokens < LeastProgress || reach.offset < nearest)
            continue;
        if (reach.offset > nearest)
            good.clear();
        nearest = reach.offset;
        good.push_back(each);
    }
    for (const Slip &each : good) {
        const bool isFarthest = isClean() || (m_reach.offset >= limit() && limit() < m_text.size());
        if (isFarthest && each.cost > m_best.cost + costOfOddity * m_reach.oddities)
            break;
        const Reach reach = reachOf(each, FarWindow);
        if (isBetter(reach, each))
            keep(each, reach,
                 each.kind == Slip::MissingClosing ? m_reading.brackets().innermost() : -1);
    }
    tryFar();
    *slip = m_best;
    *opened = m_opened;
    return m_reach.offset >= 0;
}

// As far as a change is looked at.
int Trial::limit() const
{
    return int(qMin<qint64>(m_text.size(), qint64(m_reading.error().end) + FarWindow));
}

// A bracket too few or too many is noticed long after its place.
bool Trial::mayBeFar() const
{
    const int code = m_reading.error().code;
    const Structure &structure = m_reading.structure();
    return code == T_RBRACE || code == T_RBRACKET || code == T_END_OF_FILE
        || structure.expected() == Structure::Nothing
        || (code == T_COLON && structure.innermost() == '[')
        || (code == T_LBRACE && structure.expectsKey());
}

void Trial::tryFar()
{
    if (!mayBeFar())
        return;
    const Brackets &brackets = m_reading.brackets();
    const QByteArray &bytes = m_text.bytes();
    if (m_reach.offset >= 0 && m_best.kind == Slip::MissingClosing)
        tryClosing(m_opened, m_best.edit.inserted == "}" ? T_LBRACE : T_LBRACKET, 2);
    if (brackets.suspect() >= 0)
        tryClosing(brackets.suspect(), brackets.suspectCode(), 1);
    if (brackets.oddClosing() >= 0)
        tryFar(Slip::ExtraClosing, 2, brackets.oddClosing(), 1, QByteArray(), -1);
    const int innermost = brackets.innermost();
    if (innermost > 0
        && (bytes.at(innermost - 1) == bytes.at(innermost)
            || bytes.mid(innermost + 1, 1) == bytes.mid(innermost, 1)))
        tryFar(Slip::ExtraOpening, 1, innermost, 1, QByteArray(), -1);
    if (m_reading.lastValue() >= 0) {
        tryFar(Slip::MissingOpening, 6, m_reading.lastValue(), 0, "[", -1);
        tryFar(Slip::MissingOpening, 6, m_reading.lastValue(), 0, "{", -1);
    }
}

// The indentation says where the closing bracket belongs.
void Trial::tryClosing(int opened, int code, int cost)
{
    const bool isKnown = m_reach.offset >= 0 && m_best.kind == Slip::MissingClosing;
    const int place = m_reading.brackets().placeByIndentation(
        opened, isKnown ? m_best.edit.offset : m_reading.error().begin);
    tryFar(Slip::MissingClosing, cost, place, 0, code == T_LBRACE ? "}" : "]", opened);
}

void Trial::tryFar(Slip::Kind kind, int cost, int offset, int removed, const QByteArray &inserted,
                   int opened)
{
    const Slip slip = { kind, Edit { offset, removed, inserted }, 0, cost, offset, 1 };
    Reach reach = reachOfAll(slip.edit);
    reach.oddities = m_reach.oddities;
    if (reach.offset > limit() && limit() < m_text.size())
        reach.offset = limit();
    if (isBetter(reach, slip))
        keep(slip, reach, opened);
}

bool endsEarly(const SourceText &text, const Token &error)
{
    if (error.code == T_END_OF_FILE)
        return true;
    const QByteArray rest = text.bytes().mid(error.begin).trimmed();
    return error.end == text.size() && !rest.contains('\n') && !rest.contains('}');
}

} // namespace

MendedText::MendedText(const SourceText &source, bool hasSlips)
    : m_source(source),
      m_text(source),
      m_budget(qint64(32) * 1024 * 1024 + 3 * qint64(source.size()))
{
    if (!hasSlips)
        return;
    takeNulBytes();
    takeConflicts();
    takeMarkers();
    run();
}

bool MendedText::isAffordable()
{
    m_budget -= m_text.size();
    return m_budget >= 0 && int(m_edits.size()) < MostRepairs;
}

void MendedText::change(const Edit &edit)
{
    m_text = SourceText(m_source.name(), edit.appliedTo(m_text.bytes()));
    m_edits.push_back(edit);
}

// A file system that lost its last write leaves zeros where the end of the file would be. One that holds
// nothing else is none of JSON.
void MendedText::takeNulBytes()
{
    int begin = m_source.size();
    while (begin > 0 && m_source.bytes().at(begin - 1) == '\0')
        --begin;
    const int count = m_source.size() - begin;
    if (count == 0)
        return;
    m_findings.add("nul-bytes", begin, 1,
                   count == 1 ? QString(QLatin1String("a NUL byte ends the file"))
                              : QString(QLatin1String("%1 NUL bytes end the file")).arg(count),
                   QLatin1String("remove them; a power cut while a file is written leaves such"));
    change(Edit { begin, count, QByteArray() });
}

void MendedText::takeConflicts()
{
    const QByteArray marker = "<<<<<<<";
    int begin = 0;
    while (isAffordable() && begin >= 0) {
        begin = m_text.bytes().indexOf(marker, begin);
        if (begin >= 0 && (!m_text.isFirstOnLine(begin) || !takeConflict(begin)))
            ++begin;
    }
}

// The lines of a conflict of which not all were removed.
void MendedText::takeMarkers()
{
    for (const char *marker : { "<<<<<<< ", "=======\n", ">>>>>>> " }) {
        for (int begin = 0; isAffordable();) {
            begin = m_text.bytes().indexOf(marker, begin);
            if (begin < 0)
                break;
            if (begin > 0 && m_text.bytes().at(begin - 1) != '\n') {
                ++begin;
                continue;
            }
            const int end = m_text.lineEnd(begin);
            const Edit edit = { begin, qMin(end + 1, m_text.size()) - begin, QByteArray() };
            m_findings
                .add("merge-conflict", original(begin), end - begin,
                     QLatin1String("a line that a merge left"), QLatin1String("remove it"))
                .edit = original(edit);
            m_mended.add(original(begin), original(end));
            change(edit);
        }
    }
}

// Our side of the conflict stays.
bool MendedText::takeConflict(int begin)
{
    const QByteArray &bytes = m_text.bytes();
    const int base = bytes.indexOf("\n|||||||", begin);
    const int theirs = bytes.indexOf("\n=======", begin);
    const int last = bytes.indexOf("\n>>>>>>>", begin);
    const int ours = bytes.indexOf('\n', begin) + 1;
    if (theirs < 0 || last < theirs)
        return false;
    const int from = base >= 0 && base < theirs ? base + 1 : theirs + 1;
    const int end = qMin(m_text.lineEnd(last + 1) + 1, m_text.size());
    Finding &finding = m_findings.add(
        "merge-conflict", original(begin), m_text.lineEnd(begin) - begin,
        QLatin1String("a merge left two versions of these lines"),
        QLatin1String("keep one of them, and remove the lines of <<<<<<<, ======= and >>>>>>>"));
    finding.remarks.push_back(
        Remark { original(theirs + 1), QLatin1String("the other version begins here") });
    finding.remarks.push_back(Remark { original(last + 1), QLatin1String("and ends here") });
    m_mended.add(original(begin), original(end));
    change(Edit { from, end - from, QByteArray() });
    change(Edit { begin, ours - begin, QByteArray() });
    return true;
}

void MendedText::run()
{
    while (isAffordable()) {
        Reading reading(m_text);
        reading.run();
        if (reading.isComplete() || reading.structure().depth() > DeepestDocument)
            return;
        if (!mendOne(reading))
            return;
    }
}

bool MendedText::mendOne(const Reading &reading)
{
    Slip slip;
    int opened = -1;
    Trial trial(m_text, reading);
    const bool isFound = trial.best(&slip, &opened);
    if (endsEarly(m_text, reading.error()) && !trial.isClean()) {
        if (!trial.closing(&slip, &opened))
            return takeCutOff(reading);
    } else if (!isFound) {
        return false;
    }
    take(slip, opened);
    return true;
}

// Takes away the entry that was begun, and closes what is open, on a line of its own: a comment may reach
// to the end of the file.
bool MendedText::takeCutOff(const Reading &reading)
{
    const int depth = reading.structure().depth();
    if (depth == 0)
        return false;
    const int end = reading.steps()[1].token.end;
    const bool endsLine = end < m_text.size() && m_text.bytes().at(end) == '\n';
    Finding &finding = m_findings.add(
        "cut-off", original(endsLine ? end + 1 : end), 1,
        depth == 1 ? QString(QLatin1String("the file ends in the middle: a bracket is open"))
                   : QString(QLatin1String("the file ends in the middle: %1 brackets are open"))
                         .arg(depth),
        QLatin1String("it was cut off while being copied or written; get the whole file"));
    finding.remarks.push_back(Remark { original(reading.brackets().innermost()),
                                       QLatin1String("the innermost one is opened here") });
    Structure structure = reading.structure();
    auto step = reading.steps().begin();
    for (structure.goBack(step->before); !structure.mayClose(); structure.goBack(step->before))
        ++step;
    const int begin = step->token.begin;
    m_doubtful.add(original(begin), m_source.size());
    m_mended.add(original(begin), m_source.size());
    change(Edit { begin, m_text.size() - begin, '\n' + structure.closing() });
    return true;
}

// What the hint proposes, where anything is proposed.
Edit MendedText::numberWritten(int place, const QByteArray &given)
{
    const QByteArray number = Numbers::meant(given);
    return number.isEmpty() ? Edit() : Edit { place, int(given.size()), number };
}

void MendedText::take(const Slip &slip, int opened)
{
    const QByteArray given = m_text.bytes().mid(slip.place, slip.length);
    const int place = original(slip.place);
    Finding &finding = slip.kind == Slip::MissingClosing
        ? Brackets::report(m_source, slip.edit.inserted == "}" ? T_RBRACE : T_RBRACKET, place,
                           original(opened), m_findings)
        : Slips::report(slip, given, place, m_findings);
    if (slip.kind == Slip::NumberWithTail || slip.kind == Slip::DecimalComma)
        finding.edit = numberWritten(place, given);
    else if (slip.kind != Slip::MissingValue)
        finding.edit = original(slip.edit);
    if (slip.kind == Slip::ExtraComma || slip.kind == Slip::TrailingComma)
        m_loose.add(place, place + slip.length);
    if (slip.kind > Slip::ExtraColon)
        m_mended.add(place, place + slip.length);
    if (slip.kind >= Slip::MissingOpeningQuote)
        m_doubtful.add(place, place + slip.length);
    if (slip.kind == Slip::MissingValue || slip.kind == Slip::MissingOpening
        || slip.kind == Slip::ExtraOpening || slip.kind == Slip::WrongBracket)
        m_doubtful.add(original(slip.edit.offset), original(slip.edit.offset));
    if (slip.kind >= Slip::MissingOpening && slip.kind <= Slip::WrongBracket)
        m_moved.add(original(slip.edit.offset), original(slip.edit.offset));
    change(slip.edit);
}

int MendedText::original(int offset) const
{
    for (auto edit = m_edits.rbegin(); edit != m_edits.rend(); ++edit) {
        if (offset >= edit->offset + edit->inserted.size())
            offset += edit->removed - edit->inserted.size();
        else if (offset > edit->offset)
            offset = qMin(offset, edit->offset + edit->removed);
    }
    return offset;
}

Edit MendedText::original(const Edit &edit) const
{
    const int begin = original(edit.offset);
    const int end = originalEnd(edit.offset, edit.offset + edit.removed);
    return Edit { begin, end - begin, edit.inserted };
}
