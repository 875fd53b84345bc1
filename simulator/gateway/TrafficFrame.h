#pragma once

#include "traffic/Entry.h"

#include <QByteArray>

#include <vector>

namespace sim {

/// The JSON object of an entry, as the inspector reads it: fields with their default are left out. Long texts and lists
/// in the arguments are cut; then there is "cut":true.
QString trafficText(const traffic::Entry &entry);

/// The text frame with these entries: a JSON array. It begins with {"kind":"lost","count":…} when that many entries
/// before them are lost to the reader.
QByteArray trafficFrame(quint64 lost, const std::vector<traffic::Entry> &entries);

} // namespace sim
