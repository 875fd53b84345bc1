#pragma once

#include <QVariant>
#include <cstddef>

/// The value that these bytes stand for: most often a map, hash or list with anything in it that a QVariant can hold,
/// sometimes such a thing alone. The same bytes give the same value, and any bytes give one.
QVariant variantTree(const uchar *bytes, std::size_t size);
