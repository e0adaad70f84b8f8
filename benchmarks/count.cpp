// SPDX-License-Identifier: MIT
// Does one thing once, for callgrind to count the instructions of that call:
//
//   LD_BIND_NOW=1 valgrind --tool=callgrind --collect-atstart=no count ACTION FILE WHO
//
// The actions and who does them are listed in subjects.h. The heap is as fresh as can be, for on a
// recycled one the same code differs by a quarter: the document is read from a file, and nothing of
// the kind is done before. Prints how many units the figure is to be divided by.
//
//   count print DOCUMENT    writes the document with that name
//   count verify            compares the trees that the readers make

#include "benchmarks/documents.h"
#include "benchmarks/readers.h"
#include "benchmarks/subjects.h"
#include "json/varianttree.h"

#include <cstdio>
#include <malloc.h>
#include <valgrind/callgrind.h>

namespace {

int count(const Subject &subject)
{
    if (!subject.run)
        return 2;
    if (subject.renew)
        subject.renew();
    mallopt(M_PERTURB, 0); // tidies up, which the call would have to do otherwise
    CALLGRIND_TOGGLE_COLLECT;
    QVariant result = subject.run();
    CALLGRIND_TOGGLE_COLLECT;
    std::printf("%d\n", Subjects::units(subject, result));
    VariantTree::dispose(result);
    return 0;
}

int verify()
{
    int differing = 0;
    for (const QByteArray &name : Documents::names()) {
        const QByteArray document = Documents::make(name);
        const QVariant expected = Readers::prepare("ours", document)();
        for (const QByteArray &reader : Readers::names()) {
            if (Readers::prepare(reader, document)() == expected)
                continue;
            std::printf("%s reads %s differently\n", reader.constData(), name.constData());
            ++differing;
        }
    }
    return differing ? 1 : 0;
}

int printDocument(const QByteArray &document)
{
    std::fwrite(document.constData(), 1, size_t(document.size()), stdout);
    return document.isEmpty() ? 2 : 0;
}

int run(const QByteArray &action, const QByteArray &what, const QByteArray &who)
{
    if (action == "verify")
        return verify();
    if (action == "print")
        return printDocument(Documents::make(what));
    return count(Subjects::prepare(action, what, who));
}

} // namespace

int main(int argc, char **argv)
{
    // As it is at the start of every process. The allocator raises it when a large block is freed, and
    // the documents that are prepared here would have the growth of large blocks counted as copies.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    const int status =
        run(argc > 1 ? argv[1] : "", argc > 2 ? argv[2] : "", argc > 3 ? argv[3] : "");
    if (status == 2)
        std::fprintf(stderr, "usage: count ACTION FILE WHO | print DOCUMENT | verify\n");
    return status;
}
