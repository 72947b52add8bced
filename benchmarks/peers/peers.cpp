// SPDX-License-Identifier: MIT
#include "peers/peers.h"

#include <fstream>
#include <sstream>
#include <string>

#include <QElapsedTimer>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <unistd.h>

namespace bench
{

namespace
{

constexpr int startMilliseconds = 10000;

void WriteText(const QString& file, const QString& text)
{
    QFile output(file);
    if (!output.open(QIODevice::WriteOnly) || output.write(text.toUtf8()) < 0)
        qFatal("no configuration for a peer");
}

} // namespace

int FreePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

void WaitForPort(int port)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < startMilliseconds) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(port));
        if (socket.waitForConnected(1000))
            return;
        QThread::msleep(20);
    }
    qFatal("a peer has not started");
}

double PeakMemoryOf(qint64 process)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stod(line.substr(6)) * 1024;
    }
    return 0;
}

double ProcessorSecondsOf(qint64 process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string stat;
    std::getline(file, stat);
    // The name in front may hold anything; behind it the times are the 12th and 13th field.
    std::istringstream fields(stat.substr(stat.rfind(')') + 1));
    std::string skipped;
    for (int i = 0; i < 11; ++i)
        fields >> skipped;
    double user = 0;
    double system = 0;
    fields >> user >> system;
    return (user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

Nginx::Nginx(const std::filesystem::path& folder)
    : m_port(FreePort())
{
    const QString file = m_folder.filePath("nginx.conf");
    WriteText(file, QStringLiteral("daemon off; pid %1/pid; error_log %1/log; worker_processes 2;\n"
                                   "%4 events {}\n"
                                   "http { access_log off; sendfile on; client_body_temp_path %3/.body;\n"
                                   "proxy_temp_path %1; fastcgi_temp_path %1; uwsgi_temp_path %1;\n"
                                   "scgi_temp_path %1; client_max_body_size 0;\n"
                                   "server { listen 127.0.0.1:%2; root %3; dav_methods PUT; } }\n")
                        .arg(m_folder.path())
                        .arg(m_port)
                        .arg(QString::fromStdString(folder.string()))
                        .arg(::geteuid() == 0 ? "user root;" : ""));
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start("nginx", {"-c", file});
    WaitForPort(m_port);
}

Nginx::~Nginx()
{
    m_process.terminate();
    m_process.waitForFinished();
}

QString Nginx::url(const QString& name) const
{
    return QStringLiteral("http://127.0.0.1:%1/%2").arg(m_port).arg(name);
}

RsyncDaemon::RsyncDaemon(const std::filesystem::path& folder)
    : m_port(FreePort())
{
    const QString file = m_folder.filePath("rsyncd.conf");
    WriteText(file, QStringLiteral("use chroot = no\nnumeric ids = yes\n%2[w]\npath = %1\nread only = no\n")
                        .arg(QString::fromStdString(folder.string()))
                        .arg(::geteuid() == 0 ? "uid = 0\ngid = 0\n" : ""));
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start("rsync", {"--daemon", "--no-detach", "--address=127.0.0.1",
                              QStringLiteral("--port=%1").arg(m_port), "--config=" + file});
    WaitForPort(m_port);
}

RsyncDaemon::~RsyncDaemon()
{
    m_process.terminate();
    m_process.waitForFinished();
}

} // namespace bench
