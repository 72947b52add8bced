// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/projectrecords.h"
#include "http/client.h"
#include "shell/savedlogin.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QObject>
#include <QString>

namespace shell
{

/// What the host asks of the project server. Operations with `done` return at once and call it on the GUI
/// thread, unless `context` has gone by then; the others wait.
class ProjectServer : public QObject
{
    Q_OBJECT

public:
    explicit ProjectServer(const QString& address, QObject* parent = nullptr);
    /// Gives up what is under way and waits for it, a second at most.
    ~ProjectServer() override;

    [[nodiscard]] QString address() const { return m_address; }

    struct LoginAnswer {
        Login login;
        QString problem; ///< words for the user; empty when the login has succeeded
    };
    void logIn(const QString& account, const QString& password, QObject* context,
               std::function<void(const LoginAnswer&)> done);

    /// Uses the token for everything from now on.
    void setToken(const QString& token);

    struct SessionAnswer {
        bool isValid = false;
        bool isReachable = false;
        QString problem;
    };
    void checkSession(QObject* context, std::function<void(const SessionAnswer&)> done);

    struct Organisation {
        bool isKnown = false; ///< the server has answered
        std::optional<TorvoSDK::SOrgNode> root;
    };
    void fetchOrganisation(QObject* context, std::function<void(const Organisation&)> done);

    /// The server's project list. False when it could not be had; `problem` then has the words. Waits; GUI
    /// thread.
    [[nodiscard]] bool projects(std::vector<TorvoSDK::SServerProjectRecord>& records, QString& note,
                                QString& problem);

private:
    template<class Answer>
    void inBackground(QObject* context, std::function<Answer()> ask, std::function<void(const Answer&)> done);

    QString m_address;
    std::shared_ptr<http::Client> m_client;
    std::string m_projectsTag;
    std::vector<TorvoSDK::SServerProjectRecord> m_projects; ///< as the tag names them
    QString m_note;
};

} // namespace shell
