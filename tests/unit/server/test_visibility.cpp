// SPDX-License-Identifier: MIT
#include "server/storage/sqlitestore.h"

#include <memory>

#include <QTemporaryDir>
#include <QTest>

using server::Account;
using server::Project;
using server::SqliteStore;

/// Who sees and who may change a model: exactly who may do so with its building project.
class TestVisibility : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void modelOfAPrivateProjectIsItsOwnersAlone();
    void modelOfAnOrganisationsProjectIsTheOrganisations();
    void modelOfADemonstrationIsSeenByAllAndChangedByItsOwner();

private:
    [[nodiscard]] std::int64_t account(const std::string& name, std::optional<std::int64_t> organisation);
    void put(const std::string& guid, const std::string& parent, std::optional<std::int64_t> organisation,
             bool isDemo = false);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SqliteStore> m_store;
    std::int64_t m_organisation = 0;
    std::int64_t m_owner = 0;
    std::int64_t m_colleague = 0;
    std::int64_t m_stranger = 0;
};

void TestVisibility::init()
{
    m_store.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<SqliteStore>(m_folder->filePath("server.db").toStdString());
    m_organisation = m_store->putOrganisation("o", "{}");
    m_owner = account("owner", m_organisation);
    m_colleague = account("colleague", m_organisation);
    m_stranger = account("stranger", std::nullopt);
}

std::int64_t TestVisibility::account(const std::string& name, std::optional<std::int64_t> organisation)
{
    Account account;
    account.name = name;
    account.organisation = organisation;
    return m_store->addAccount(account).value();
}

void TestVisibility::put(const std::string& guid, const std::string& parent,
                         std::optional<std::int64_t> organisation, bool isDemo)
{
    Project project;
    project.guid = guid;
    project.type = parent.empty() ? "BIM" : "MODEL";
    project.record = "{}";
    project.owner = m_owner;
    project.organisation = organisation;
    project.isDemo = isDemo;
    project.parent = parent;
    m_store->putProject(project);
}

void TestVisibility::modelOfAPrivateProjectIsItsOwnersAlone()
{
    put("building", "", std::nullopt);
    // As an upload by a member of an organisation makes it.
    put("model", "building", m_organisation);
    QVERIFY(m_store->findProject(m_owner, "model").has_value());
    QVERIFY(!m_store->findProject(m_colleague, "model").has_value());
    QVERIFY(m_store->mayChange(m_owner, "model"));
    QVERIFY(!m_store->mayChange(m_colleague, "model"));
}

void TestVisibility::modelOfAnOrganisationsProjectIsTheOrganisations()
{
    put("building", "", m_organisation);
    put("model", "building", std::nullopt);
    QVERIFY(m_store->findProject(m_colleague, "model").has_value());
    QVERIFY(m_store->mayChange(m_colleague, "model"));
    QVERIFY(!m_store->findProject(m_stranger, "model").has_value());
    QVERIFY(!m_store->mayChange(m_stranger, "model"));
}

void TestVisibility::modelOfADemonstrationIsSeenByAllAndChangedByItsOwner()
{
    put("building", "", std::nullopt, true);
    put("model", "building", std::nullopt);
    QVERIFY(m_store->findProject(m_stranger, "model").has_value());
    QVERIFY(!m_store->mayChange(m_stranger, "model"));
    QVERIFY(m_store->mayChange(m_owner, "model"));
}

QTEST_GUILESS_MAIN(TestVisibility)
#include "test_visibility.moc"
