// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"

#include <filesystem>
#include <string>

#include <QProcess>
#include <QTemporaryDir>

/// A process that is killed when this one dies, however that is: a test that crashes leaves none behind.
class BoundProcess : public QProcess
{
protected:
    void setupChildProcess() override;
};

/// The real project server on a data folder of its own, with one account.
class RealServer
{
public:
    /// `program` is torvo-server. Throws std::runtime_error when it does not start.
    /// `options` go to the server besides the usual ones.
    explicit RealServer(const QString& program, const QStringList& options = {});
    ~RealServer();

    [[nodiscard]] std::string address() const { return m_address; }
    /// A login of the account.
    [[nodiscard]] std::string token() const { return m_token; }

    /// Makes a folder the newest revision of a project of the account; `parent` is the project of a model.
    void publish(const std::string& guid, const std::string& type, const std::filesystem::path& folder,
                 const std::string& parent = {});

    void addAccount(const QString& account, const QString& password) const;
    /// A fresh login. Throws std::runtime_error.
    [[nodiscard]] std::string newToken(const std::string& account, const std::string& password) const;
    [[nodiscard]] http::Reply logIn(const std::string& account, const std::string& password) const;
    [[nodiscard]] QString folder() const { return m_folder.path(); }

    void kill();

    /// Starts the server again on the same data and address.
    void start();

    [[nodiscard]] qint64 process() const { return m_process.processId(); }

private:
    void run(const QStringList& arguments, const QByteArray& input = {}) const;

    QString m_program;
    QStringList m_options;
    QString m_listen = "127.0.0.1:0";
    QTemporaryDir m_folder;
    BoundProcess m_process;
    std::string m_address;
    std::string m_token;
};
