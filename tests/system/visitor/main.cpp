// SPDX-License-Identifier: MIT
#include "road/samplecontent.h"
#include "road/session.h"

#include <cstdio>
#include <exception>

#include <QApplication>

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
    QApplication app(argumentCount, arguments);
    try {
        road::Session session;
        if (!Visit(session, QApplication::arguments().value(1)))
            return 1;
        std::puts("there");
        std::fflush(stdout);
        return QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "torvo-visitor: %s\n", error.what());
        return 1;
    }
}
