// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/reading/documentreader.h"

#include "tools/nuv-apps-config/slips/brackets.h"
#include "tools/nuv-apps-config/tree/edits.h"
#include "tools/nuv-apps-config/reading/foreign.h"
#include "tools/nuv-apps-config/slips/mendedtext.h"
#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/tokens/tokenizer.h"

#include <QSet>

#include <algorithm>
#include <cstring>

namespace {

const int MostSyntaxErrors = 100;

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

bool isKeyword(int code)
{
    return code == T_TRUE || code == T_FALSE || code == T_NULL;
}

bool beginsValue(int code)
{
    return code == T_STRING || code == T_NUMBER || code == T_LBRACE || code == T_LBRACKET
        || isKeyword(code) || code == Token::Word;
}

// One pass over the file. It ends early when a bracket turns out to be missing: the pass is then made
// again with the bracket in its place, so that nothing after it is misunderstood.
class Pass
{
public:
    Pass(const SourceText &source, Document &document, Findings &findings, Brackets &brackets,
         const ProgressSink &progress)
        : m_source(source),
          m_document(document),
          m_findings(findings),
          m_brackets(brackets),
          m_progress(progress),
          m_tokenizer(source, findings)
    {
        m_brackets.beginPass();
    }

    void run();
    bool mustRepeat() const { return m_mustRepeat; }
    bool hasGivenUp() const { return m_hasGivenUp; }

private:
    enum State { First, Next, Colon, Value, Separator };

    struct Level {
        int node;
        State state;
        int comma; ///< the last one, -1 for none
        Node::Child member; ///< the one that is being read
    };

    void advance();
    bool takeInserted();
    void step();
    void stepKey(Level &level);
    void stepElement(Level &level);
    void stepColon(Level &level);
    void stepMemberValue(Level &level);
    void stepSeparator(Level &level);
    void stepRoot();
    void takeKey(Level &level);
    void takeComma(Level &level);
    void takeStrayColon(const Level &level);
    void takeUnexpected();

    int addNode();
    int readValue();
    void reportKeyword(const Token &token);
    void openContainer(int node);
    void attach(int node);
    void close(int code);
    void closeLevel(int end);
    bool isOpen(Node::Type type) const;
    void missing(Node::Type type, int fallback);
    void reportEnd();
    Finding &error(const char *rule, int begin, int length, const QString &what,
                   const QString &hint = QString());
    void giveUp();

    /// Whether the token is in the file, and was not put in for a missing one.
    bool isInFile() const { return m_token.end > m_token.begin; }

    bool isObject(const Level &level) const
    {
        return m_document.nodes[size_t(level.node)].type == Node::Object;
    }

    const SourceText &m_source;
    Document &m_document;
    Findings &m_findings;
    Brackets &m_brackets;
    const ProgressSink &m_progress;
    Tokenizer m_tokenizer;
    Token m_token;
    Token m_pending; ///< what comes after a bracket that was put in
    bool m_hasPending = false;
    int m_lastEnd = 0; ///< where the token before this one ended
    std::vector<Level> m_levels;
    int m_syntaxErrors = 0;
    bool m_mustRepeat = false;
    bool m_hasGivenUp = false;
};

Finding &Pass::error(const char *rule, int begin, int length, const QString &what,
                     const QString &hint)
{
    if (++m_syntaxErrors >= MostSyntaxErrors)
        giveUp();
    return m_findings.add(rule, begin, length, what, hint);
}

// The levels stay as they are: the step that gives up may go on with its own.
void Pass::giveUp()
{
    m_hasGivenUp = true;
}

void Pass::advance()
{
    m_lastEnd = m_token.end;
    if (m_hasPending) {
        m_token = m_pending;
        m_hasPending = false;
    } else {
        m_token = m_tokenizer.next();
    }
    takeInserted();
}

// Puts a bracket that the file lacks in front of the token that is to be read.
bool Pass::takeInserted()
{
    const int code = m_brackets.take(m_token.begin);
    if (code < 0)
        return false;
    m_pending = m_token;
    m_hasPending = true;
    m_token = Token();
    m_token.code = code;
    m_token.begin = m_token.end = m_pending.begin;
    return true;
}

int Pass::addNode()
{
    m_document.nodes.emplace_back();
    return int(m_document.nodes.size()) - 1;
}

void Pass::run()
{
    const int stepsBetweenReports = 100000;
    m_document = Document();
    advance();
    stepRoot();
    for (int steps = 1; !m_levels.empty() && !m_mustRepeat && !m_hasGivenUp; ++steps) {
        if (m_findings.isFull()) {
            giveUp();
            return;
        }
        if (m_token.code == T_END_OF_FILE) {
            reportEnd();
            return;
        }
        step();
        if (int(m_document.nodes.size()) > LargestDocument)
            giveUp();
        if (m_progress && steps % stepsBetweenReports == 0)
            m_progress(m_token.begin);
    }
    if (m_document.isEmpty() && !m_findings.hasSyntaxError())
        m_findings.add("empty-file", 0, 0, text("the file holds no value"));
    if (m_mustRepeat || m_hasGivenUp || m_token.code == T_END_OF_FILE)
        return;
    const bool isClosing = m_token.code == T_RBRACE || m_token.code == T_RBRACKET;
    if (isClosing)
        error("extra-closing-bracket", m_token.begin, 1,
              text("nothing is open that this could close"));
    else
        error("text-after-end", m_token.begin, m_token.end - m_token.begin,
              text("the document ended before this"), text("a file holds one value"));
}

void Pass::stepRoot()
{
    if (m_token.code == T_END_OF_FILE)
        return;
    while (!beginsValue(m_token.code) && m_token.code != T_END_OF_FILE && !m_hasGivenUp)
        takeUnexpected();
    if (m_token.code == T_END_OF_FILE || m_hasGivenUp)
        return;
    m_document.root = readValue();
}

void Pass::step()
{
    Level &level = m_levels.back();
    switch (level.state) {
    case First:
    case Next:
        return isObject(level) ? stepKey(level) : stepElement(level);
    case Colon:
        return stepColon(level);
    case Value:
        return stepMemberValue(level);
    case Separator:
        return stepSeparator(level);
    }
}

void Pass::takeUnexpected()
{
    error("unexpected-token", m_token.begin, m_token.end - m_token.begin,
          text("this cannot be here"));
    advance();
}

// A comma where an entry should stand. One before the first entry is accepted.
void Pass::takeComma(Level &level)
{
    if (level.comma < 0)
        m_findings
            .add("leading-comma", m_token.begin, 1,
                 text("a comma before the first entry, which only the library accepts"),
                 text("remove it"))
            .edit = Edit { m_token.begin, 1, QByteArray() };
    else
        error("extra-comma", m_token.begin, 1, text("one comma too many"), text("remove it")).edit =
            Edit { m_token.begin, 1, QByteArray() };
    level.comma = m_token.begin;
    level.state = Next;
    advance();
}

void Pass::stepKey(Level &level)
{
    const int code = m_token.code;
    const bool isAfterComma = level.state == Next;
    if (code == T_RBRACE || code == T_RBRACKET) {
        if (isAfterComma && isInFile())
            error("trailing-comma", level.comma, 1, text("a comma after the last entry"),
                  text("remove it"))
                .edit = Edit { level.comma, 1, QByteArray() };
        if (!m_hasGivenUp)
            close(code);
    } else if (code == T_COMMA) {
        takeComma(level);
    } else if (code == T_LBRACE && isAfterComma && isOpen(Node::Array)) {
        missing(Node::Object, level.comma);
    } else if (code == T_STRING || code == Token::Word || code == T_NUMBER || isKeyword(code)) {
        takeKey(level);
    } else if (code == T_COLON) {
        error("unexpected-token", m_token.begin, 1, text("there is no key in front of this colon"));
        level.member = Node::Child { -1, m_token.begin, m_token.begin, QString() };
        level.state = Colon;
    } else {
        error("unexpected-token", m_token.begin, 1, text("a key belongs here"));
        level.member = Node::Child { -1, m_token.begin, m_token.begin, QString() };
        level.state = Value;
    }
}

void Pass::takeKey(Level &level)
{
    const Token key = m_token;
    level.member = Node::Child { -1, key.begin, key.end, key.value.toString() };
    if (key.code != T_STRING) {
        const QByteArray bytes = m_source.bytes().mid(key.begin, key.end - key.begin);
        level.member.key = QString::fromLatin1(bytes);
        error("unquoted-key", key.begin, key.end - key.begin, text("a key without quotes"),
              text("write it in double quotes"))
            .edit = Edit { key.begin, key.end - key.begin, Edits::quoted(level.member.key) };
        if (m_hasGivenUp)
            return;
    }
    level.state = Colon;
    advance();
}

void Pass::stepColon(Level &level)
{
    if (m_token.code == T_COLON) {
        level.state = Value;
        advance();
        return;
    }
    if (beginsValue(m_token.code)) {
        level.state = Value;
        error("missing-colon", m_lastEnd, 1, text("a colon is missing after the key"));
        return;
    }
    level.state = Value;
}

void Pass::stepMemberValue(Level &level)
{
    if (beginsValue(m_token.code)) {
        readValue();
        return;
    }
    if (m_token.code == T_COLON) {
        takeUnexpected();
        return;
    }
    const int node = addNode();
    m_document.nodes[size_t(node)].begin = m_document.nodes[size_t(node)].end = m_token.begin;
    attach(node);
    level.state = Separator;
    error("missing-value", level.member.keyBegin, level.member.keyEnd - level.member.keyBegin,
          text("a key without a value"), text("remove the key, or give it a value"));
}

void Pass::stepElement(Level &level)
{
    const int code = m_token.code;
    if (beginsValue(code)) {
        readValue();
    } else if (code == T_COMMA) {
        takeComma(level);
    } else if (code == T_RBRACKET || code == T_RBRACE) {
        if (level.state == Next && code == T_RBRACKET && isInFile())
            error("trailing-comma", level.comma, 1, text("a comma after the last entry"),
                  text("remove it"))
                .edit = Edit { level.comma, 1, QByteArray() };
        if (!m_hasGivenUp)
            close(code);
    } else {
        takeStrayColon(level);
    }
}

// A colon in an array: the text in front of it is a key of the object around, so the array should
// have ended by then.
void Pass::takeStrayColon(const Level &level)
{
    if (isOpen(Node::Object) && level.state == Separator)
        missing(Node::Array, level.comma >= 0 ? level.comma : m_token.begin);
    else
        takeUnexpected();
}

void Pass::stepSeparator(Level &level)
{
    const int code = m_token.code;
    if (code == T_COMMA) {
        level.comma = m_token.begin;
        level.state = Next;
        advance();
    } else if (code == T_RBRACE || code == T_RBRACKET) {
        close(code);
    } else if (code == T_COLON) {
        if (isObject(level))
            takeUnexpected();
        else
            takeStrayColon(level);
    } else {
        level.state = Next;
        level.comma = m_lastEnd;
        error("missing-comma", m_lastEnd, 1, text("a comma is missing here"));
    }
}

int Pass::readValue()
{
    if (m_token.code == Token::Word)
        m_tokenizer.extendWord(&m_token);
    const int index = addNode();
    Node &node = m_document.nodes[size_t(index)];
    const Token &token = m_token;
    node.begin = token.begin;
    node.end = token.end;
    if (token.code == T_LBRACE || token.code == T_LBRACKET) {
        node.type = token.code == T_LBRACE ? Node::Object : Node::Array;
        openContainer(index);
        return index;
    }
    const int length = token.end - token.begin;
    if (isKeyword(token.code)) {
        node.type = token.code == T_NULL ? Node::Null : Node::Bool;
        if (token.code != T_NULL)
            node.value = token.code == T_TRUE;
        if (token.value.isValid())
            reportKeyword(token);
    } else {
        node.type = token.code == T_NUMBER ? Node::Number : Node::Text;
        node.value = token.value;
        if (token.code == Token::Word)
            error("unquoted-text", token.begin, length, text("a string without quotes"),
                  text("write it in double quotes"))
                .edit = Edit { token.begin, length, Edits::quoted(token.value.toString()) };
    }
    attach(index);
    if (!m_levels.empty())
        m_levels.back().state = Separator;
    if (!m_hasGivenUp)
        advance();
    return index;
}

void Pass::reportKeyword(const Token &token)
{
    const QString word = token.value.toString();
    const int length = token.end - token.begin;
    if (word.compare(QLatin1String("NaN"), Qt::CaseInsensitive) == 0
        || word.compare(QLatin1String("Infinity"), Qt::CaseInsensitive) == 0) {
        error("bad-number", token.begin, length, text("JSON has no ") + word,
              text("write a number, or remove the key"));
        return;
    }
    const char *const keyword = token.code == T_NULL ? "null"
        : token.code == T_TRUE                       ? "true"
                                                     : "false";
    error("wrong-keyword", token.begin, length, text("this word is not known"),
          text("write ") + text(keyword))
        .edit = Edit { token.begin, length, keyword };
}

void Pass::attach(int node)
{
    if (m_levels.empty())
        return;
    const Level &level = m_levels.back();
    Node::Child child = isObject(level) ? level.member : Node::Child { -1, 0, 0, QString() };
    child.node = node;
    m_document.nodes[size_t(level.node)].children.push_back(child);
}

void Pass::openContainer(int node)
{
    attach(node);
    m_brackets.open(m_token.begin, m_token.code);
    m_levels.push_back(Level { node, First, -1, Node::Child { -1, 0, 0, QString() } });
    m_document.depth = qMax(m_document.depth, int(m_levels.size()));
    advance();
}

bool Pass::isOpen(Node::Type type) const
{
    for (size_t i = m_levels.size() - 1; i-- > 0;) {
        if (m_document.nodes[size_t(m_levels[i].node)].type == type)
            return true;
    }
    return false;
}

void Pass::close(int code)
{
    const bool fits = (code == T_RBRACE) == isObject(m_levels.back());
    if (fits) {
        m_brackets.close(m_token.begin, isInFile());
        closeLevel(m_token.end);
        advance();
        return;
    }
    if (isOpen(code == T_RBRACE ? Node::Object : Node::Array)) {
        missing(isObject(m_levels.back()) ? Node::Object : Node::Array, m_token.begin);
        return;
    }
    error("extra-closing-bracket", m_token.begin, 1, text("nothing is open that this could close"));
    if (!m_hasGivenUp)
        advance();
}

void Pass::closeLevel(int end)
{
    m_document.nodes[size_t(m_levels.back().node)].end = end;
    m_levels.pop_back();
    if (!m_levels.empty())
        m_levels.back().state = Separator;
}

// A closing bracket is missing, at `fallback` or where the indentation says.
void Pass::missing(Node::Type type, int fallback)
{
    if (m_brackets.insertMissing(fallback, type == Node::Object ? T_RBRACE : T_RBRACKET))
        m_mustRepeat = true;
    else
        takeUnexpected();
}

void Pass::reportEnd()
{
    const bool endsLine = m_lastEnd < m_source.size() && m_source.bytes().at(m_lastEnd) == '\n';
    const int place = endsLine ? m_lastEnd + 1 : m_lastEnd;
    for (const Level &level : m_levels)
        m_document.nodes[size_t(level.node)].end = m_source.size();
    if (m_brackets.insertMissing(place, isObject(m_levels.back()) ? T_RBRACE : T_RBRACKET))
        m_mustRepeat = true;
    else
        error(isObject(m_levels.back()) ? "missing-closing-brace" : "missing-closing-bracket",
              place, 1, text("the file ends within an object or an array"));
}

bool isEmpty(const SourceText &source)
{
    return source.bytes().trimmed().isEmpty();
}

Finding &copy(const Finding &finding, int offset, Findings &to)
{
    Finding &result = to.add(finding.rule, offset, finding.length, finding.text, finding.hint);
    result.remarks = finding.remarks;
    result.edit = finding.edit;
    return result;
}

void append(const Findings &from, Findings &to)
{
    for (const Finding &finding : from.all())
        copy(finding, finding.offset, to);
}

bool readAll(const SourceText &source, Document &document, Findings &findings,
             const ProgressSink &progress)
{
    Brackets brackets(source);
    for (;;) {
        Findings found;
        Pass pass(source, document, found, brackets, progress);
        pass.run();
        if (pass.mustRepeat())
            continue;
        brackets.report(found);
        append(found, findings);
        return !pass.hasGivenUp();
    }
}

// From the places of the mended text to those of the file.
void moveBack(const MendedText &mended, Document &document)
{
    for (Node &node : document.nodes) {
        node.end = mended.originalEnd(node.begin, node.end);
        node.begin = mended.original(node.begin);
        for (Node::Child &child : node.children) {
            child.keyEnd = mended.originalEnd(child.keyBegin, child.keyEnd);
            child.keyBegin = mended.original(child.keyBegin);
        }
    }
}

// Mistakes that are told from their own bytes, and leave what is around them as it is.
bool isWithinToken(const char *rule)
{
    const char *const rules[] = { "byte-order-mark", "comment",      "single-quotes",
                                  "smart-quotes",    "unquoted-key", "unquoted-text",
                                  "wrong-keyword",   "bad-number",   "invisible-character" };
    return std::any_of(std::begin(rules), std::end(rules),
                       [rule](const char *each) { return std::strcmp(each, rule) == 0; });
}

bool isSpareComma(const char *rule)
{
    return std::strcmp(rule, "trailing-comma") == 0 || std::strcmp(rule, "extra-comma") == 0;
}

// Whether the reader was sure of everything itself, as in a file of JavaScript, which has commas, comments
// and single quotes everywhere.
bool isPlain(const Findings &found)
{
    return std::all_of(found.all().begin(), found.all().end(), [](const Finding &finding) {
        return !Rules::isSyntaxError(finding.rule) || isWithinToken(finding.rule)
            || isSpareComma(finding.rule);
    });
}

void noteOddities(const MendedText *mended, const Findings &found, Document &document)
{
    for (const Finding &finding : found.all()) {
        const int begin = mended ? mended->original(finding.offset) : finding.offset;
        if (Rules::find(finding.rule).group == RuleGroup::Dialect)
            document.odd.add(begin, begin + finding.length);
    }
    document.odd.settle();
}

// Where the reader itself had to make something out, it is less sure than a repair: the whole line is
// doubtful.
void noteMistakes(const SourceText &source, const MendedText &mended, const Findings &found,
                  bool isSure, Document &document)
{
    document.doubtful = mended.doubtful();
    document.mended = mended.mended();
    document.moved = mended.moved();
    document.loose = mended.loose();
    for (const Finding &finding : found.all()) {
        if (!Rules::isSyntaxError(finding.rule))
            continue;
        const int place = mended.original(finding.offset);
        if (isSure || isWithinToken(finding.rule)) {
            Ranges &places = isWithinToken(finding.rule) ? document.doubtful : document.loose;
            places.add(place, place + finding.length);
            continue;
        }
        document.mended.add(place, place);
        document.moved.add(place, place);
        document.doubtful.add(source.lineBegin(place), source.lineEnd(place));
    }
    document.mended.settle();
    document.doubtful.settle();
    document.moved.settle();
    document.loose.settle();
}

// The first mistake of a line is the cause of the others there. What was mended comes first.
Findings oneALine(const SourceText &source, const MendedText &mended, const Findings &found)
{
    Findings result;
    QSet<int> lines;
    const auto take = [&](const Finding &finding, int offset) {
        const int line = source.place(offset).line;
        if (!mended.isEmpty() && std::strcmp(finding.rule, "empty-file") == 0)
            return; // all that was there was a mistake
        if (Rules::isSyntaxError(finding.rule) && lines.contains(line))
            return;
        if (Rules::isSyntaxError(finding.rule))
            lines.insert(line);
        copy(finding, offset, result);
    };
    for (const Finding &finding : mended.findings().all())
        take(finding, finding.offset);
    for (Finding finding : found.all()) {
        finding.edit = mended.original(finding.edit);
        for (Remark &remark : finding.remarks)
            remark.offset = mended.original(remark.offset);
        take(finding, mended.original(finding.offset));
    }
    return result;
}

} // namespace

bool readDocument(const SourceText &source, Document &document, Findings &findings,
                  const ProgressSink &progress)
{
    if (isEmpty(source)) {
        findings.add("empty-file", 0, 0,
                     source.size() == 0 ? text("the file is empty")
                                        : text("the file holds nothing but blanks"),
                     text("`nuv-apps-config template` prints a configuration to start from"));
        return false;
    }
    Findings found;
    bool isReliable = readAll(source, document, found, progress);
    if (!found.hasSyntaxError()) {
        noteOddities(nullptr, found, document);
        append(found, findings);
        findings.setCut(found.isFull());
        return isReliable;
    }
    if (Foreign::report(source.bytes(), findings))
        return false;
    const bool isSure = isPlain(found);
    const MendedText mended(source, !isSure);
    if (!mended.isEmpty()) {
        found = Findings();
        isReliable = readAll(mended.text(), document, found, progress);
        moveBack(mended, document);
    }
    noteOddities(&mended, found, document);
    noteMistakes(source, mended, found, isSure, document);
    append(oneALine(source, mended, found), findings);
    findings.setCut(found.isFull());
    return isReliable;
}
