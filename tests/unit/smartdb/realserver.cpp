// SPDX-License-Identifier: MIT
#include "realserver.h"

#include <stdexcept>

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#ifdef __linux__
#include <csignal>
#include <sys/prctl.h>
#endif

namespace
{

constexpr int startMilliseconds = 30000;

QString Text(const std::string& text)
{
    return QString::fromStdString(text);
}

} // namespace

void BoundProcess::setupChildProcess()
{
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
}

RealServer::RealServer(const QString& program, const QStringList& options)
    : m_program(program)
    , m_options(options)
{
    addAccount("wang", "secret");
    start();
    m_token = newToken("wang", "secret");
}

void RealServer::start()
{
    const QString portFile = m_folder.filePath("port");
    QFile::remove(portFile);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments{"--data", m_folder.path(), "--listen", m_listen, "--port-file", portFile};
    // Most tests convert nothing.
    if (!m_options.contains("--workers"))
        arguments += {"--workers", "0"};
    m_process.start(m_program, arguments + m_options);
    QElapsedTimer timer;
    timer.start();
    while (!QFile::exists(portFile) && timer.elapsed() < startMilliseconds)
        QThread::msleep(10);
    QFile file(portFile);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("the server has not started");
    m_listen = "127.0.0.1:" + file.readAll().trimmed();
    m_address = "http://" + m_listen.toStdString();
}

std::string RealServer::newToken(const std::string& account, const std::string& password) const
{
    const auto reply = logIn(account, password);
    const auto answer = QJsonDocument::fromJson(QByteArray::fromStdString(reply.body)).object();
    const auto token = answer.value("token").toString().toStdString();
    if (token.empty())
        throw std::runtime_error("no login: " + reply.fault.msg);
    return token;
}

void RealServer::addAccount(const QString& account, const QString& password) const
{
    run({"account", "add", account, "--data", m_folder.path()}, password.toUtf8() + '\n');
}

http::Reply RealServer::logIn(const std::string& account, const std::string& password) const
{
    http::Client client;
    if (!client.setServer(m_address))
        throw std::runtime_error("the server has no address");
    http::Request request;
    request.method = "POST";
    request.path = "/api/v1/login";
    request.contentType = "application/json";
    request.body = QJsonDocument(QJsonObject{{"account", Text(account)}, {"password", Text(password)}})
                       .toJson()
                       .toStdString();
    return client.send(request);
}

RealServer::~RealServer()
{
    kill();
}

void RealServer::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

void RealServer::publish(const std::string& guid, const std::string& type,
                         const std::filesystem::path& folder, const std::string& parent)
{
    const QJsonObject record{{"guid", Text(guid)},
                             {"name", Text(guid)},
                             {"type", Text(type)},
                             {"owner", "wang"},
                             {"parent", Text(parent)}};
    const QString file = m_folder.filePath("record.json");
    QFile output(file);
    if (!output.open(QIODevice::WriteOnly) || output.write(QJsonDocument(record).toJson()) <= 0)
        throw std::runtime_error("the record cannot be written");
    output.close();
    run({"publish", "--data", m_folder.path(), "--project-folder", Text(folder.string()), "--record", file});
}

void RealServer::run(const QStringList& arguments, const QByteArray& input) const
{
    QProcess process;
    process.start(m_program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(startMilliseconds) || process.exitCode() != 0)
        throw std::runtime_error(
            ("torvo-server " + arguments.join(" ") + ": " + process.readAllStandardError()).toStdString());
}
