#pragma once

#include <QByteArray>

namespace sim {

/// The same JSON for Qt's parser, which takes a U+FEFF at the beginning of a text for a byte order mark and drops it,
/// unless it is written as an escape. One at the very beginning is outside of all texts, where Qt skips it.
QByteArray withEscapedMarks(const QByteArray &json);

} // namespace sim
