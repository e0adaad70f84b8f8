// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/documents/reference.h"

#include <QRegularExpression>

namespace {

const int Width = 100; // of a line of the header

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

QString comment(const QString &paragraph)
{
    const QString indentation = text("    /// ");
    QString lines = Reference::wrapped(paragraph, Width - indentation.size()).trimmed();
    lines.replace(QLatin1Char('\n'), QLatin1Char('\n') + indentation);
    return indentation + lines + QLatin1Char('\n');
}

// What the value is: its kind, range and unit. The library makes strings of the domains.
QString valueText(const Property &property)
{
    QString value = Properties::kindName(property.kind);
    if (property.kind == Kind::Array)
        value = text("a QStringList; in the file, an array of objects");
    if (Properties::hasRange(property))
        value += QLatin1Char(' ') + Properties::rangeText(property);
    if (property.unit[0])
        value += QString(text(" (%1)")).arg(text(property.unit));
    return value;
}

// Nothing where the property is not secret.
QString secretText(const Property &property)
{
    switch (property.secret) {
    case Secret::Whole:
        return text(" It is a secret.");
    case Secret::Password:
        return text(" A password in it is a secret.");
    case Secret::No:
        break;
    }
    return QString();
}

QString getterComment(const Property &property)
{
    QString value = valueText(property);
    value[0] = value.at(0).toUpper();
    const QStringList needs = Properties::needed(property);
    const QString need =
        needs.isEmpty() ? QString() : QString(text(" Needs %1.")).arg(needs.join(text(" or ")));
    return comment(text(property.description)) + text("    ///\n")
        + comment(QString(text("%1.%2%3 When missing: %4"))
                      .arg(value, need, secretText(property), text(property.whenMissing)));
}

QString accessors(const Property &property)
{
    const QString name = text(property.property);
    return getterComment(property) + QString(text("    QVariant get%1() const;\n")).arg(name)
        + comment(QString(text("Stores %1: %2. See get%1().")).arg(name, valueText(property)))
        + QString(text("    void set%1(QVariant const &value);\n")).arg(name);
}

} // namespace

QByteArray Reference::describedAccessors(const QByteArray &header)
{
    const QString present = QString::fromUtf8(header);
    const QString opening = text("    /// \\{\n");
    const int begin = present.indexOf(opening) + opening.size();
    const int end = present.indexOf(text("\n    /// \\}\n"), begin);
    if (end < begin)
        return header;

    QStringList described;
    const QRegularExpression getter(text("QVariant get(\\w+)\\(\\) const;"));
    QRegularExpressionMatchIterator it = getter.globalMatch(present.mid(begin, end - begin));
    while (it.hasNext()) {
        const Property *property = Properties::findProperty(it.next().captured(1));
        if (!property)
            return header;
        described.append(accessors(*property));
    }
    return (present.left(begin) + QLatin1Char('\n') + described.join(QLatin1Char('\n'))
            + present.mid(end))
        .toUtf8();
}
