#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace sim {

/// The library keeps the settings that pages save beside the program. A replay saves settings again and must not touch
/// those, so it runs as a copy of the program in a temporary folder.
namespace SettingsFolder {

/// Where the library keeps the settings of that login.
QString fileOf(const QString &login);

/// The content of the login's settings file; empty when there is none.
QByteArray read(const QString &login);

/// The folder of the program that was started, of which this process may be a copy.
QString programFolder();

/// Goes on as a copy of the program in a folder of its own, which is removed when the copy ends. Returns nothing in
/// that copy. Elsewhere it returns the status with which this process is to end, and the problem when there can be no
/// copy. To be called before any other thread exists.
std::optional<int> enterOwn(char *argv[], QString &problem);

/// Puts the content where the library will read it. Only in the folder of enterOwn().
void write(const QString &login, const QByteArray &settings);

} // namespace SettingsFolder
} // namespace sim
