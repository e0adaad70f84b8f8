#include "tools/nuv-apps-config/report/excerpt.h"

#include "tools/nuv-apps-config/text/utf8.h"

namespace {

const int Before = 70;
const int Behind = 90;

// Where the secret that `offset` is in ends; `offset` itself outside of secrets.
int endOfSecret(const SecretRanges &secrets, int offset)
{
    const SecretRange *const range = secrets.at(offset);
    return range ? range->end : offset;
}

QString character(const char *p, int size)
{
    const unsigned char first = static_cast<unsigned char>(*p);
    if (first == '\t')
        return QLatin1String(" ");
    if (first < 0x20 || first == 0x7f)
        return QString(QChar(0xfffd));
    if (size == 1 && first >= 0x80)
        return QString(QChar(first < 0xa0 ? 0xfffd : first));
    return QString::fromUtf8(p, size);
}

} // namespace

Excerpt makeExcerpt(const SourceText &source, int offset, int length, const Secrets &secrets)
{
    const char *const bytes = source.bytes().constData();
    const int begin = qMax(source.lineBegin(offset), offset - Before);
    const int end = qMin(source.lineEnd(offset), offset + Behind);
    Excerpt excerpt;
    excerpt.caret = -1;
    int markEnd = -1;
    for (int p = begin; p < end;) {
        const int secretEnd = endOfSecret(secrets.ranges(), p);
        const int size =
            secretEnd > p ? qMin(secretEnd, end) - p : qMax(1, Utf8::length(bytes + p, end - p));
        if (excerpt.caret < 0 && p + size > offset)
            excerpt.caret = excerpt.line.size();
        excerpt.line += secretEnd > p ? Secrets::mask() : character(bytes + p, size);
        p += size;
        if (p <= offset + length)
            markEnd = excerpt.line.size();
    }
    if (excerpt.caret < 0)
        excerpt.caret = excerpt.line.size();
    excerpt.width = qMax(1, markEnd - excerpt.caret);
    return excerpt;
}
