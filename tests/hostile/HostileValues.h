#pragma once

#include <QList>
#include <QString>
#include <QVariant>

/// A value that a page or the bus may send instead of the expected one.
struct HostileValue {
    const char *name;
    QVariant value;
    QString text; ///< what a reply says where it repeats an argument that is read as a text
};

/// One of each kind that a reader of arguments may get wrong: types, depths, lengths, characters and numbers.
QList<HostileValue> hostileValues();

/// Ten million characters. Not in the list above, because a call with it takes a tenth of a second.
HostileValue endlessText();
