// SPDX-License-Identifier: MIT
#pragma once

#include "client.h"
#include "person.h"

#include <memory>
#include <string>

enum class Operation { firstUpload, upload, download, update };
inline constexpr Operation allOperations[] = {Operation::firstUpload, Operation::upload, Operation::download,
                                              Operation::update};

[[nodiscard]] const char* NameOf(Operation operation);

/// Everything of a project that a person can see, as text; empty when it is not there.
using Content = std::string;

/// Two people at a real server, with a project that goes through its revisions: Anna makes them, Ben gets
/// them. Transfers of the one under test run in processes of their own.
///
/// Findings are words for what is wrong, empty when nothing is.
class Stage
{
public:
    explicit Stage(const QStringList& serverOptions = {});

    [[nodiscard]] RealServer& server() { return m_server; }
    [[nodiscard]] Person& anna() { return m_anna; }
    [[nodiscard]] Person& ben() { return m_ben; }
    [[nodiscard]] const std::string& guid() const { return m_guid; }

    /// Makes something to do for the operation. Throws std::runtime_error.
    void prepare(Operation operation);

    /// The command line of the operation; `address` is the server's unless told.
    [[nodiscard]] QStringList commandOf(Operation operation, const std::string& address = {}) const;
    [[nodiscard]] Outcome run(Operation operation, const QStringList& limit = {}) const;

    /// The time of the operation without faults. Throws std::runtime_error.
    [[nodiscard]] Outcome measure(Operation operation);

    /// Whether everything is as it has to be after a transfer that was done, or has failed at some moment.
    [[nodiscard]] std::string findings(Operation operation, bool isDone);

    /// Runs the operation again, which has to succeed and to clear away what the failed one has left.
    [[nodiscard]] std::string findingsOfRepetition(Operation operation);

    /// What Ben gets from the server, which may be nothing.
    [[nodiscard]] Content look();
    [[nodiscard]] Content contentOf(Person& person) const;

private:
    void makeProject();
    void makeRevision();
    [[nodiscard]] std::string findingsOfUpload(bool isDone);
    [[nodiscard]] std::string findingsOfFetch(bool isDone, bool wasHere);
    [[nodiscard]] std::string serverIntegrity() const;

    RealServer m_server;
    Person m_anna;
    Person m_ben;
    std::string m_annasToken;
    std::string m_bensToken;
    std::string m_guid;
    int m_projects = 0;
    unsigned m_revision = 0;
    Content m_before; ///< the revision before the one that is on its way
    Content m_after;
};
