// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/secrets/secretnodes.h"

#include "examples/launcher/values/passwords.h"
#include "tools/nuv-apps-config/secrets/decodedtext.h"
#include "tools/nuv-apps-config/secrets/secretnames.h"

namespace {

// A text of megabytes is looked at in pieces, which overlap.
const int LongestPiece = 65536;
const int LongestName = 64;

// Whether key and value are the two pieces of an address with a password: "http://me:se": "cret@host".
bool arePieces(const QString &key, const Node &value)
{
    const QString text = value.value.toString();
    return value.type == Node::Text && text.contains(QLatin1Char('@'))
        && !text.contains(QLatin1String("//")) && key.contains(QLatin1String("//"));
}

// Whether the text goes on after the name as a member would. "reset-password" in an address does not.
bool holdsMember(const QString &text)
{
    int at = SecretNames::endOfSecretName(text);
    while (at >= 0 && at < text.size() && (text.at(at).isLetter() || text.at(at).isSpace()))
        ++at;
    return at >= 0 && at < text.size() && QString(QLatin1String("\"':")).contains(text.at(at));
}

} // namespace

void SecretNodes::add(int begin, int end)
{
    if (begin < end) // a value may be missing
        m_ranges.add(begin, end);
}

// A container comes before what is in it.
void SecretNodes::find()
{
    for (size_t i = 0; i < m_document.nodes.size(); ++i) {
        const Node &node = m_document.nodes[i];
        const bool isObject = node.type == Node::Object;
        for (const Node::Child &child : node.children) {
            Surroundings &inner = m_surroundings[size_t(child.node)];
            inner = m_surroundings[i];
            inner.isCertificate |= isObject && SecretNames::isCertificate(child.key);
            inner.isProxy |= isObject && SecretNames::isProxy(child.key);
            if (isObject)
                findInMember(child, m_surroundings[i]);
            else
                findInElement(m_document.at(child), m_surroundings[i]);
        }
    }
}

void SecretNodes::findInMember(const Node::Child &member, const Surroundings &around)
{
    const Node &value = m_document.at(member);
    const bool isRead = SecretNames::isRead(member.key);
    const bool isShown = SecretNames::isKnown(member.key) || SecretNames::isMeant(member.key);
    const bool isHidden = SecretNames::isSecret(member.key) || (around.isCertificate && !isRead)
        || arePieces(member.key, value);
    const bool hasSign = member.key.contains(QLatin1Char('@')); // as the rest of an address
    if (hasSign || (isHidden && !isShown))
        add(member.keyBegin, member.keyEnd);
    else if (!isShown)
        findInText(member.keyBegin, member.keyEnd, member.key, false, false);
    if (isHidden)
        add(value.begin, value.end);
    else if (value.type == Node::Text)
        findInText(value.begin, value.end, value.value.toString(),
                   m_surroundings[size_t(member.node)].isProxy, isRead);
}

void SecretNodes::findInElement(const Node &element, const Surroundings &around)
{
    if (around.isCertificate && !element.isContainer())
        add(element.begin, element.end);
    else if (element.type == Node::Text)
        findInText(element.begin, element.end, element.value.toString(), around.isProxy, false);
}

void SecretNodes::findInText(int begin, int end, const QString &text, bool isProxy, bool isRead)
{
    if (begin >= end)
        return;
    if (!Passwords::findPrivateKeys(text).empty())
        findPrivateKeys(begin, end);
    const int quote = m_bytes.at(begin) == '"' ? 1 : 0;
    const int textEnd = end - quote;
    for (int at = begin + quote; at < textEnd; at += LongestPiece - LongestName) {
        const DecodedText decoded(m_bytes, at, qMin(at + LongestPiece, textEnd));
        if (isRead ? holdsMember(decoded.text()) : SecretNames::isSecret(decoded.text())) {
            add(begin, end);
            return;
        }
        for (const Passwords::Piece &piece :
             Passwords::find(decoded.text(), isProxy ? Passwords::Proxy : Passwords::AnyText))
            add(decoded.offset(piece.begin), decoded.offset(piece.end));
    }
}

// In the whole text: no piece but the first says that it is a part of a key.
void SecretNodes::findPrivateKeys(int begin, int end)
{
    const DecodedText decoded(m_bytes, begin, end);
    for (const Passwords::Piece &key : Passwords::findPrivateKeys(decoded.text()))
        add(decoded.offset(key.begin), decoded.offset(key.end));
}
