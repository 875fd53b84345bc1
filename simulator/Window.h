#pragma once

#include <QString>
#include <QWidget>

#include <memory>

namespace sim {

struct CommandLine;
class Gateway;
class Terminal;

/// What the two programs do differently. varnel-simulator shows nothing, and runs without Qt WebEngine and a display.
/// varnel-simulator-window opens the terminal's window; varnel-simulator becomes that program for --window.
namespace Window {

extern const bool isThere; ///< in this program

/// Called before the QApplication is made. Returns why the program cannot run, for a person; empty if it can.
QString prepare(int argc, char *argv[]);

/// The window, or null. Deleted before the gateway and the terminal.
std::unique_ptr<QWidget> open(const CommandLine &options, Terminal &terminal, Gateway &gateway);

} // namespace Window
} // namespace sim
