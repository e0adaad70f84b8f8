// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/tokens/numbers.h"

#include "tools/nuv-apps-config/text/matching.h"

#include <cmath>

namespace {

QByteArray hexadecimal(const QByteArray &digits)
{
    bool isNumber = false;
    const qlonglong value = digits.toLongLong(&isNumber, 16);
    return isNumber ? QByteArray::number(value) : QByteArray();
}

// The bytes of a quota: a megabyte is 1024 kilobytes.
QByteArray withUnit(const QByteArray &digits, char unit)
{
    const int power = 1 + QByteArray("kmg").indexOf(unit);
    const double bytes = std::ldexp(digits.toDouble(), 10 * power);
    const bool isWhole = bytes < 9e15 && std::floor(bytes) >= bytes;
    return isWhole ? QByteArray::number(qlonglong(bytes)) : QByteArray();
}

QByteArray ofPercent(const QByteArray &digits)
{
    bool isNumber = false;
    const double value = digits.toDouble(&isNumber);
    return isNumber ? QByteArray::number(value / 100, 'g', 15) : QByteArray();
}

// Zeros in front go, and a point has digits on both sides.
QByteArray tidied(QByteArray number)
{
    const bool isNegative = number.startsWith('-');
    if (isNegative || number.startsWith('+'))
        number.remove(0, 1);
    int zeros = 0;
    while (zeros + 1 < number.size() && number.at(zeros) == '0' && number.at(zeros + 1) >= '0'
           && number.at(zeros + 1) <= '9')
        ++zeros;
    number.remove(0, zeros);
    if (number.startsWith('.'))
        number.prepend('0');
    number.replace(".e", "e").replace(".E", "E");
    if (number.endsWith('.'))
        number.chop(1);
    return (isNegative ? "-" : "") + number;
}

QRegularExpression pattern(const char *text)
{
    return QRegularExpression(QLatin1String(text));
}

} // namespace

QByteArray Numbers::meant(const QByteArray &written)
{
    static const QRegularExpression ofBase16 = pattern("^0[xX]([0-9a-fA-F]+)$");
    static const QRegularExpression ofBytes = pattern("^([0-9]+(?:\\.[0-9]+)?)([kKmMgG])i?[bB]?$");
    static const QRegularExpression ofHundredths = pattern("^([0-9]+(?:\\.[0-9]+)?)%$");
    static const QRegularExpression ofC =
        pattern("^([+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?)(?:f|F|L|LL|u|U)?$");
    const QString number = QString::fromLatin1(written)
                               .remove(QLatin1Char('_'))
                               .replace(QLatin1Char(','), QLatin1Char('.'));
    QRegularExpressionMatch match = matched(ofBase16, number);
    if (match.hasMatch())
        return hexadecimal(match.captured(1).toLatin1());
    match = matched(ofBytes, number);
    if (match.hasMatch())
        return withUnit(match.captured(1).toLatin1(), match.captured(2).toLower().toLatin1().at(0));
    match = matched(ofHundredths, number);
    if (match.hasMatch())
        return ofPercent(match.captured(1).toLatin1());
    match = matched(ofC, number);
    return match.hasMatch() ? tidied(match.captured(1).toLatin1()) : QByteArray();
}
