#pragma once

#include "gateway/Gateway.h"

#include <QWidget>

#include <memory>

namespace sim {

struct CommandLine;
class Terminal;

/// Serves the terminal to pages in browsers and in the window, as the options say. Made and destroyed by main, after
/// and before the terminal.
class Serving {
public:
    /// pagesBefore: how many numbers of pages are taken.
    Serving(const CommandLine &options, Terminal &terminal, int pagesBefore = 0);

    /// Listens, opens what is to be opened, and prints the address. False when it cannot listen, which it has said
    /// then.
    bool begin();

private:
    const CommandLine &m_options;
    Terminal &m_terminal;
    Gateway m_gateway;
    std::unique_ptr<QWidget> m_window; ///< or null; ends before the gateway
};

} // namespace sim
