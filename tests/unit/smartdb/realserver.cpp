// SPDX-License-Identifier: MIT
#include "realserver.h"

#include <stdexcept>

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

namespace
{

constexpr int startMilliseconds = 30000;

QString Text(const std::string& text)
{
    return QString::fromStdString(text);
}

} // namespace

RealServer::RealServer(const QString& program)
    : m_program(program)
{
    addAccount("wang", "secret");
    const QString portFile = m_folder.filePath("port");
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(program, {"--data", m_folder.path(), "--listen", "127.0.0.1:0", "--port-file", portFile});
    QElapsedTimer timer;
    timer.start();
    while (!QFile::exists(portFile) && timer.elapsed() < startMilliseconds)
        QThread::msleep(10);
    QFile file(portFile);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("the server has not started");
    m_address = "http://127.0.0.1:" + file.readAll().trimmed().toStdString();

    const auto reply = logIn("wang", "secret");
    m_token = QJsonDocument::fromJson(QByteArray::fromStdString(reply.body))
                  .object()
                  .value("token")
                  .toString()
                  .toStdString();
    if (m_token.empty())
        throw std::runtime_error("no login: " + reply.fault.msg);
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
