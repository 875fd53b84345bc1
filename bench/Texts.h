#pragma once

#include "BenchHost.h"

#include <functional>
#include <string>

using MakeValue = std::function<QVariant()>;

/// Gives the value that is made at the first call. Where a tree lies in memory can double the cost of a walk through
/// it, so all that are compared must walk through the same one.
MakeValue madeOnce(const MakeValue &makeValue);

/// Adds the benchmarks NAME/WAY of making the value's text, with nothing around it: by QJsonDocument, by this library's
/// own writer, and by RapidJSON's Writer over the same variants into UTF-16.
void addTexts(const std::string &name, const MakeValue &makeValue);
