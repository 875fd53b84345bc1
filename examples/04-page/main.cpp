#include "PageView.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

namespace {

/// Ends the program with status 0 when the page has shown the token and two ticks, with status 1 after a minute.
void testItself(PageView &view)
{
    QTimer::singleShot(60000, qApp, [] { QCoreApplication::exit(1); });
    QObject::connect(&view.browser(), &QWebEngineView::titleChanged, qApp, [ticks = 0](const QString &title) mutable {
        if (!title.startsWith("token-of-the-login "))
            return; // no tick yet
        std::printf("%s\n", qUtf8Printable(title));
        if (++ticks == 2)
            QCoreApplication::quit();
    });
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    PageView view(QUrl("qrc:/page.html"));
    view.resize(480, 320);
    view.show();
    if (application.arguments().contains("--self-test"))
        testItself(view);
    return application.exec();
}
