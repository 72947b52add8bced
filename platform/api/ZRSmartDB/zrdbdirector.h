// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ZRSmartDB
{

class IZRDatabase;

/// The door to the project database. One object per process.
class IZRDBDirector
{
public:
    /// Names the project server, for example L"http://127.0.0.1:8080". Sends nothing.
    /// Returns false when `address` is no address that the library can use; GetDatabase then gives null.
    /// GUI thread, before any other operation.
    [[nodiscard]] virtual bool SetServer(const std::wstring& address) = 0;

    /// The project database, owned by the library; null before a successful SetServer. Any thread.
    [[nodiscard]] virtual IZRDatabase* GetDatabase() = 0;

protected:
    ~IZRDBDirector() = default;
};

/// The process-wide director, made on first use and again after FreeIDBDirector. Not owned by the caller,
/// valid until FreeIDBDirector. Any thread.
[[nodiscard]] IZRDBDirector* GetIDBDirector();

/// Ends the library: closes all projects, gives up requests under way, whose tasks end with an error or
/// cancelled, and waits for the library's threads and for operations under way on other threads, which fail.
/// Pointers to projects are invalid afterwards; operations of the database fail. GUI thread.
void FreeIDBDirector();

} // namespace ZRSmartDB
