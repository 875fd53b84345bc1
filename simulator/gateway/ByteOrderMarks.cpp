#include "gateway/ByteOrderMarks.h"

namespace sim {

QByteArray withEscapedMarks(const QByteArray &json)
{
    static const QByteArray mark = QByteArrayLiteral("\xef\xbb\xbf");
    if (json.indexOf(mark, 1) < 0)
        return json;
    QByteArray rest = json.mid(1);
    return json.left(1) + rest.replace(mark, "\\ufeff");
}

} // namespace sim
