#pragma once

#include <QMetaType>

/// A value that JSON cannot carry.
struct NotForJson {};
Q_DECLARE_METATYPE(NotForJson)
