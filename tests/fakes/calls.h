// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// Scripted stand-ins for the contracts. All of them write what is called into one book, so that the order of
/// calls can be checked across them.
namespace Fakes
{

/// Writes a call into the book: its name, with its arguments in parentheses. Any thread.
void Called(const QString& call);

/// The book so far, oldest first. Any thread.
[[nodiscard]] QStringList Calls();

/// Of the book, the calls of these names, that is of what stands before the parenthesis. Any thread.
[[nodiscard]] QStringList CallsOf(const QStringList& names);

/// Starts an empty book. Any thread.
void ForgetCalls();

} // namespace Fakes
