// SPDX-License-Identifier: MIT
#include "fakes/calls.h"

#include <mutex>

namespace Fakes
{

namespace
{

std::mutex bookMutex; ///< guards the book
QStringList& Book()
{
    static QStringList book;
    return book;
}

} // namespace

void Called(const QString& call)
{
    const std::lock_guard lock(bookMutex);
    Book().append(call);
}

QStringList Calls()
{
    const std::lock_guard lock(bookMutex);
    return Book();
}

QStringList CallsOf(const QStringList& names)
{
    QStringList found;
    const auto calls = Calls();
    for (const auto& call : calls) {
        if (names.contains(call.section(QLatin1Char('('), 0, 0)))
            found.append(call);
    }
    return found;
}

void ForgetCalls()
{
    const std::lock_guard lock(bookMutex);
    Book().clear();
}

} // namespace Fakes
