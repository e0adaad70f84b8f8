// SPDX-License-Identifier: MIT
#include "benchmarks/subjects.h"

#include "benchmarks/readers.h"
#include "benchmarks/writers.h"
#include "json/jsonparser.h"
#include "json/varianttree.h"

#include <QFile>

Subject Subjects::prepare(const QByteArray &action, const QByteArray &file, const QByteArray &who)
{
    if (action == "load")
        return prepareLoading(file, who);
    if (action == "look-up")
        return prepareLookUp(file, who);
    const QByteArray document = contentOf(file);
    if (action == "read")
        return { Readers::prepare(who, document), document.size() };
    if (action == "write")
        return { Writers::prepare(who, parseJson(document, nullptr)), 0 };
    if (action == "flatten")
        return prepareFlattening(document, who);
    if (action == "unflatten")
        return prepareUnflattening(document, who);
    return { nullptr, 0 };
}

int Subjects::units(const Subject &subject, const QVariant &result)
{
    if (subject.units > 0)
        return subject.units;
    return VariantTree::isMap(result) ? VariantTree::map(result).size()
                                      : result.toByteArray().size();
}

QByteArray Subjects::contentOf(const QByteArray &name)
{
    QFile file(QString::fromLocal8Bit(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
