#pragma once

#include <QByteArray>
#include <QString>

namespace sim {

/// The library keeps the settings that pages save beside the program. A replay saves settings again and must not touch
/// those, so it runs as a copy of the program in a temporary folder.
namespace SettingsFolder {

/// Where the library keeps the settings of that login.
QString fileOf(const QString &login);

/// The content of the login's settings file; empty when there is none.
QByteArray read(const QString &login);

/// Continues as a copy of the program in a folder of its own, which is removed when the process ends. Returns only in
/// that copy, or when there can be none: then it returns why. To be called before any other thread exists.
QString enterOwn(char *argv[]);

/// Puts the content where the library will read it. Only in the folder of enterOwn().
void write(const QString &login, const QByteArray &settings);

} // namespace SettingsFolder
} // namespace sim
