#pragma once

#include "BenchHost.h"

#include <functional>
#include <string>

/// Adds the benchmarks NAME/WAY of making the value's text, with nothing around it: by QJsonDocument, by this library's
/// own writer, and by RapidJSON's Writer over the same variants into UTF-16.
void addTexts(const std::string &name, const std::function<QVariant()> &makeValue);
