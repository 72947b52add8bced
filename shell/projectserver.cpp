// SPDX-License-Identifier: MIT
#include "shell/projectserver.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QThreadPool>

namespace shell
{

namespace
{

constexpr int wrongPassword = 40101;
constexpr int tooManyAttempts = 42900;

QJsonObject ObjectOf(const std::string& body)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(body)).object();
}

std::wstring WideText(const QJsonObject& object, QLatin1String key)
{
    return object.value(key).toString().toStdWString();
}

/// What to tell the user of a fault: what happened, and what to do.
QString WordsFor(const http::Fault& fault, const QString& address)
{
    switch (fault.code) {
    case wrongPassword:
        return QStringLiteral("账号或密码错误，请重新输入。");
    case tooManyAttempts:
        return QStringLiteral("尝试次数过多，请稍后再试。");
    case http::faultcode::loginExpired:
        return QStringLiteral("登录已过期，请重新登录。");
    case http::faultcode::unreachable:
        return QStringLiteral("无法连接工程服务器 %1，请检查网络或服务器地址。").arg(address);
    case http::faultcode::timedOut:
        return QStringLiteral("工程服务器 %1 没有及时响应，请稍后再试。").arg(address);
    case http::faultcode::badReply:
        return QStringLiteral("%1 不是工程服务器，或服务器出现故障。请检查服务器地址。").arg(address);
    default:
        return QStringLiteral("工程服务器拒绝了请求：%1").arg(QString::fromStdString(fault.msg));
    }
}

TorvoSDK::SServerProjectRecord RecordOf(const QJsonObject& project)
{
    TorvoSDK::SServerProjectRecord record;
    record.type = project.value(QLatin1String("type")).toString() == QLatin1String("BIM") ? 1 : 0;
    record.name = WideText(project, QLatin1String("name"));
    record.guid = WideText(project, QLatin1String("guid"));
    record.longitude = WideText(project, QLatin1String("longitude"));
    record.latitude = WideText(project, QLatin1String("latitude"));
    record.isDemo = project.value(QLatin1String("isDemo")).toBool();
    record.iotCode = WideText(project, QLatin1String("iotCode"));
    record.earthConfig = WideText(project, QLatin1String("earthConfig"));
    record.proj4 = WideText(project, QLatin1String("proj4"));
    const auto attributes = project.value(QLatin1String("attributes")).toObject();
    for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
        record.customMap[attribute.key().toStdWString()] = attribute.value().toString().toStdWString();
    // The tree follows the departments, which every record then must name.
    record.customMap.try_emplace(L"deptId");
    return record;
}

TorvoSDK::SOrgNode OrgNodeOf(const QJsonObject& object, int depth = 0)
{
    constexpr int deepest = 64;
    TorvoSDK::SOrgNode node;
    node.id = WideText(object, QLatin1String("id"));
    node.name = WideText(object, QLatin1String("name"));
    node.canSelect = object.value(QLatin1String("canSelect")).toBool();
    const auto children = object.value(QLatin1String("children")).toArray();
    if (depth < deepest) {
        for (const auto& child : children)
            node.children.push_back(OrgNodeOf(child.toObject(), depth + 1));
    }
    return node;
}

ProjectServer::LoginAnswer AskForLogin(http::Client& client, const QString& address, const QString& account,
                                       const QString& password)
{
    const QJsonObject credentials{{QStringLiteral("account"), account},
                                  {QStringLiteral("password"), password}};
    http::Request request;
    request.method = "POST";
    request.path = "/api/v1/login";
    request.contentType = "application/json";
    request.body = QJsonDocument(credentials).toJson(QJsonDocument::Compact).toStdString();
    const auto reply = client.send(request);
    ProjectServer::LoginAnswer answer;
    if (reply.fault) {
        answer.problem = WordsFor(reply.fault, address);
        return answer;
    }
    const auto object = ObjectOf(reply.body);
    answer.login = {address, account, object.value(QLatin1String("token")).toString(),
                    object.value(QLatin1String("loginName")).toString(account),
                    static_cast<qint64>(object.value(QLatin1String("expires")).toDouble())};
    if (answer.login.token.isEmpty())
        answer.problem = WordsFor({http::faultcode::badReply, {}}, address);
    return answer;
}

} // namespace

ProjectServer::ProjectServer(const QString& address, QObject* parent)
    : QObject(parent)
    , m_address(address)
    , m_client(std::make_shared<http::Client>())
{
    static_cast<void>(m_client->setServer(address.toStdString()));
}

ProjectServer::~ProjectServer()
{
    m_client->cancel();
    QThreadPool::globalInstance()->waitForDone();
}

template<class Answer>
void ProjectServer::inBackground(QObject* context, std::function<Answer()> ask,
                                 std::function<void(const Answer&)> done)
{
    const QPointer<QObject> guard(context);
    QThreadPool::globalInstance()->start([guard, ask = std::move(ask), done = std::move(done)] {
        const Answer answer = ask();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, answer, done] {
                if (guard)
                    done(answer);
            },
            Qt::QueuedConnection);
    });
}

void ProjectServer::logIn(const QString& account, const QString& password, QObject* context,
                          std::function<void(const LoginAnswer&)> done)
{
    inBackground<LoginAnswer>(
        context,
        [client = m_client, address = m_address, account, password] {
            return AskForLogin(*client, address, account, password);
        },
        std::move(done));
}

void ProjectServer::setToken(const QString& token)
{
    m_client->setToken(token.toStdString());
    m_projectsTag.clear();
}

void ProjectServer::checkSession(QObject* context, std::function<void(const SessionAnswer&)> done)
{
    inBackground<SessionAnswer>(
        context,
        [client = m_client, address = m_address]() -> SessionAnswer {
            const auto reply = client->send({.path = "/api/v1/session"});
            if (!reply.fault)
                return {true, true, {}};
            const bool isReachable = reply.fault.code == http::faultcode::loginExpired;
            return {false, isReachable, WordsFor(reply.fault, address)};
        },
        std::move(done));
}

void ProjectServer::fetchOrganisation(QObject* context, std::function<void(const Organisation&)> done)
{
    inBackground<Organisation>(
        context,
        [client = m_client]() -> Organisation {
            const auto reply = client->send({.path = "/api/v1/organisation"});
            if (reply.fault)
                return {};
            const auto root = ObjectOf(reply.body).value(QLatin1String("root"));
            return {true, root.isObject() ? std::optional(OrgNodeOf(root.toObject())) : std::nullopt};
        },
        std::move(done));
}

bool ProjectServer::projects(std::vector<TorvoSDK::SServerProjectRecord>& records, QString& note,
                             QString& problem)
{
    http::Request request;
    request.path = "/api/v1/projects";
    if (!m_projectsTag.empty())
        request.headers.emplace_back("If-None-Match", m_projectsTag);
    const auto reply = m_client->send(request);
    if (reply.fault) {
        problem = WordsFor(reply.fault, m_address);
        return false;
    }
    if (reply.status != 304) {
        const auto answer = ObjectOf(reply.body);
        if (!answer.value(QLatin1String("projects")).isArray()) {
            problem = WordsFor({http::faultcode::badReply, {}}, m_address);
            return false;
        }
        m_projects.clear();
        const auto list = answer.value(QLatin1String("projects")).toArray();
        for (const auto& project : list)
            m_projects.push_back(RecordOf(project.toObject()));
        m_note = answer.value(QLatin1String("note")).toString();
        m_projectsTag = reply.etag;
    }
    records = m_projects;
    note = m_note;
    return true;
}

} // namespace shell
