#include "JsonReference.h"
#include "VariantTree.h"

#include "common/JsonWriter.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Any value at all: the library's writer writes what Qt writes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QVariant tree = variantTree(bytes, size);
    const QByteArray found = difference(qtJson(tree), compactJson(tree));
    if (!found.isEmpty()) {
        std::fputs(found.constData(), stderr);
        std::abort();
    }
    return 0;
}
