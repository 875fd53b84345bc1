#pragma once

#include "Await.h"
#include "BusinessDataInterface.h"
#include "TerminalTest.h"
#include "gateway/Gateway.h"
#include "window/PageView.h"
#include "window/TerminalWindow.h"

#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>

/// A test with a terminal's window, whose gateway serves the pages of the test. It is evening, and no quote changes,
/// unless the test says otherwise.
class WindowTest : public TerminalTest {
protected:
    using View = QPointer<sim::PageView>;

    explicit WindowTest(double speed = kSpeed, const QTime &start = QTime(16, 0)) : TerminalTest(speed, start)
    {
        EXPECT_TRUE(gateway.listen(0));
        write("index.html", kRecorder);
        window = std::make_unique<sim::TerminalWindow>(terminal, gateway, QStringList());
        window->show();
    }

    void write(const char *name, const QByteArray &page) const
    {
        QFile file(root.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<!doctype html><title>" + QByteArray(name) + "</title><body>" + page);
    }

    QUrl address(const char *path = "", const char *host = "127.0.0.1") const { return addressOn(gateway, path, host); }

    static QUrl addressOn(const sim::Gateway &server, const char *path, const char *host = "127.0.0.1")
    {
        return QUrl(
            QStringLiteral("http://%1:%2/%3").arg(QLatin1String(host)).arg(server.port()).arg(QLatin1String(path)));
    }

    /// Opens the page and waits until it is there.
    View open(const QUrl &url) const
    {
        const View view = &window->open(url);
        EXPECT_TRUE(awaitPage(view, url));
        return view;
    }

    View open() const { return open(address()); }

    static bool awaitPage(const View &view, const QUrl &url)
    {
        return awaitTrue(
            view, QStringLiteral("document.readyState === 'complete' && location.href === '%1'").arg(url.toString()));
    }

    /// What the expression is in the page; nothing when the view ends meanwhile.
    static QVariant evaluate(const View &view, const QString &expression)
    {
        const auto result = std::make_shared<QVariant>();
        const auto hasCome = std::make_shared<bool>(false);
        view->browser().page()->runJavaScript(expression, [=](const QVariant &value) {
            *result = value;
            *hasCome = true;
        });
        EXPECT_TRUE(await([&] { return *hasCome || !view; })) << qPrintable(expression);
        return *result;
    }

    /// Waits until the expression is true in the page, which may still have to load.
    static bool awaitTrue(const View &view, const QString &expression)
    {
        QElapsedTimer timer;
        timer.start();
        while (view && !timer.hasExpired(kPatienceMs)) {
            if (evaluate(view, expression).toBool())
                return true;
        }
        return false;
    }

    /// Calls from index.html, which keeps the events that it hears, each as [name, …arguments].
    static void invoke(const View &view, const char *arguments)
    {
        evaluate(view, QStringLiteral("CallBridge.invokeMethod(%1); 0").arg(QLatin1String(arguments)));
    }

    static bool awaitHeard(const View &view, const char *event, int times = 1)
    {
        return awaitTrue(view, QStringLiteral("heard.filter(([name]) => name === '%1').length >= %2")
                                   .arg(QLatin1String(event))
                                   .arg(times));
    }

    /// The text of the first event of that name.
    static QString heard(const View &view, const char *event)
    {
        return evaluate(view, QStringLiteral("heard.find(([name]) => name === '%1')[1]").arg(QLatin1String(event)))
            .toString();
    }

    static int numberOfOrders()
    {
        int total = -1;
        BusinessDataInterface::GetOrderListByCustomKey({}, total, 0, 1, QList<QString>(), QStringList());
        return total;
    }

    static constexpr int kPatienceMs = 60000;

    /// Keeps what it hears from its first script on.
    static constexpr const char *kRecorder = R"(
<script>
  const heard = [];
  for (const name of ['Data_getToken_RES', 'Data_getLoginTrader_RES', 'Trade_insertOrder_RES', 'Sub_subscribe_RES',
                      'on_tickUpdate'])
    if (window.CallBridge) CallBridge.addEventListener(name, (...args) => heard.push([name, ...args]));
</script>)";

    static constexpr const char *kToken = "'Data_getToken_REQ', 'u1'";
    static constexpr const char *kOrder =
        "'Trade_insertOrder_REQ', 'u2', '880010001', '609001.SH', 'SH', 'Buy', 'Limit', '13.00', '100', 'mine'";

    QTemporaryDir root;
    sim::Gateway gateway{root.path(), {}};
    std::unique_ptr<sim::TerminalWindow> window;
};
