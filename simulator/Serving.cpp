#include "Serving.h"

#include "Browser.h"
#include "CommandLine.h"
#include "Console.h"
#include "Window.h"

namespace sim {

namespace {

constexpr std::chrono::seconds kHttpDeadline(10);

} // namespace

Serving::Serving(const CommandLine &options, Terminal &terminal, int pagesBefore)
    : m_options(options)
    , m_terminal(terminal)
    , m_gateway(options.root, options.allowedOrigins, options.inspector, kHttpDeadline, pagesBefore)
{
}

bool Serving::begin()
{
    if (!m_gateway.listen(m_options.port)) {
        printError(
            QStringLiteral("cannot listen on 127.0.0.1:%1: %2").arg(m_options.port).arg(m_gateway.errorString()));
        return false;
    }
    if (m_options.window)
        m_window = Window::open(m_options, m_terminal, m_gateway);
    const QString address = QStringLiteral("http://127.0.0.1:%1/").arg(m_gateway.port());
    print(QStringLiteral("listening on %1\n").arg(address));
    if (m_options.open && !openInBrowser(address))
        printError(QStringLiteral("no browser could be started; open %1 yourself").arg(address));
    return true;
}

} // namespace sim
