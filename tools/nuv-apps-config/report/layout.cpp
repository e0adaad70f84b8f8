// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/layout.h"

#include "tools/nuv-apps-config/text/utf8.h"

#include <algorithm>

namespace {

const int Step = 4;
const int Widest = 100;

class Writer
{
public:
    Writer(const Document &document, const QByteArray &bytes)
        : m_document(document), m_bytes(bytes), m_widths(document.nodes.size(), Unknown)
    {
    }

    QByteArray text();

private:
    static constexpr int Unknown = -1;

    QByteArray written(int begin, int end) const { return m_bytes.mid(begin, end - begin); }
    QByteArray key(const Node &object, const Node::Child &child) const;
    int widthOf(int index);
    bool isOnOneLine(const Node &node) const;
    bool isAfterBlankLine(int end, int begin) const;
    int beginOf(const Node &node, const Node::Child &child) const;
    void write(int index, int indentation, int room);
    void writeOnOneLine(const Node &node);
    void writeOnLines(const Node &node, int indentation);

    const Document &m_document;
    const QByteArray &m_bytes;
    std::vector<int> m_widths; ///< of each node on one line
    QByteArray m_text;
};

QByteArray Writer::text()
{
    const Node &root = m_document.rootNode();
    if (root.isContainer() && !root.children.empty())
        writeOnLines(root, 0);
    else
        write(m_document.root, 0, Widest);
    return m_text + '\n';
}

QByteArray Writer::key(const Node &object, const Node::Child &child) const
{
    return object.type == Node::Object ? written(child.keyBegin, child.keyEnd) + ": "
                                       : QByteArray();
}

int Writer::beginOf(const Node &node, const Node::Child &child) const
{
    return node.type == Node::Object ? child.keyBegin : m_document.at(child).begin;
}

// No wider than matters: each node is asked for once by what holds it.
int Writer::widthOf(int index)
{
    int &known = m_widths[size_t(index)];
    if (known != Unknown)
        return known;
    const Node &node = m_document.nodes[size_t(index)];
    if (!node.isContainer())
        return known = Utf8::count(m_bytes.constData() + node.begin, node.length());
    int width = node.children.empty() ? 2 : 4;
    for (const Node::Child &child : node.children) {
        const int separator = &child == &node.children.front() ? 0 : 2;
        const QByteArray name = key(node, child);
        width += separator + Utf8::count(name.constData(), name.size()) + widthOf(child.node);
        width = std::min(width, Widest + 1);
    }
    return known = width;
}

bool Writer::isOnOneLine(const Node &node) const
{
    const int first = beginOf(node, node.children.front());
    return !written(node.begin, first).contains('\n');
}

bool Writer::isAfterBlankLine(int end, int begin) const
{
    bool isLineEmpty = false;
    for (int i = end; i < begin; ++i) {
        const char c = m_bytes.at(i);
        if (c == '\n' && isLineEmpty)
            return true;
        isLineEmpty = c == '\n' || (isLineEmpty && (c == ' ' || c == '\t' || c == '\r'));
    }
    return false;
}

// `room` is what is left of the line, the comma included.
void Writer::write(int index, int indentation, int room)
{
    const Node &node = m_document.nodes[size_t(index)];
    if (!node.isContainer())
        m_text += written(node.begin, node.end);
    else if (node.children.empty())
        m_text += node.type == Node::Object ? "{}" : "[]";
    else if (isOnOneLine(node) && widthOf(index) < room)
        writeOnOneLine(node);
    else
        writeOnLines(node, indentation);
}

void Writer::writeOnOneLine(const Node &node)
{
    m_text += node.type == Node::Object ? "{ " : "[ ";
    for (const Node::Child &child : node.children) {
        m_text += &child == &node.children.front() ? "" : ", ";
        m_text += key(node, child);
        const Node &value = m_document.at(child);
        if (value.isContainer() && !value.children.empty())
            writeOnOneLine(value);
        else
            write(child.node, 0, Widest);
    }
    m_text += node.type == Node::Object ? " }" : " ]";
}

void Writer::writeOnLines(const Node &node, int indentation)
{
    const int inner = indentation + Step;
    m_text += node.type == Node::Object ? '{' : '[';
    int end = -1;
    for (const Node::Child &child : node.children) {
        if (end >= 0)
            m_text += isAfterBlankLine(end, beginOf(node, child)) ? ",\n" : ",";
        end = m_document.at(child).end;
        const QByteArray name = key(node, child);
        m_text += '\n' + QByteArray(inner, ' ') + name;
        write(child.node, inner, Widest - inner - Utf8::count(name.constData(), name.size()));
    }
    m_text += '\n' + QByteArray(indentation, ' ') + (node.type == Node::Object ? '}' : ']');
}

} // namespace

QByteArray Layout::of(const Document &document, const QByteArray &bytes)
{
    return Writer(document, bytes).text();
}
