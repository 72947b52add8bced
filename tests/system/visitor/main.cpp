// SPDX-License-Identifier: MIT
#include "road/samplecontent.h"
#include "road/session.h"

#include "shell/desktopsettings.h"

#include <cstdio>
#include <exception>

#include <QApplication>
#include <QTimer>

// Logs in on the folder that this program was deployed to and does what the argument says: "open" downloads
// and opens a project and stays there, "logout" logs out. Says "there" when it has come so far.

namespace
{

bool Visit(road::Session& session, const QString& aim)
{
    if (!session.enter())
        return false;
    if (aim == QLatin1String("logout"))
        return session.logOut();
    return session.download(road::house) && session.open(road::house);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    shell::ChooseDesktopSettings();
    QApplication app(argumentCount, arguments);
    road::Session session;
    // Inside the event loop, which the closing of the last window ends.
    QTimer::singleShot(0, &app, [&] {
        try {
            if (!Visit(session, QApplication::arguments().value(1)))
                return QApplication::exit(1);
            std::puts("there");
            std::fflush(stdout);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "torvo-visitor: %s\n", error.what());
            QApplication::exit(1);
        }
    });
    return QApplication::exec();
}
