// SPDX-License-Identifier: MIT
#include "road/conversions.h"
#include "road/samplecontent.h"
#include "road/suite.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

using road::Conversions;
using road::engine;
using road::HomeScreen;
using road::house;
using road::ModelsHere;

namespace
{

constexpr int patience = 120000;

/// What the models on this machine are called.
QStringList NamesOfModelsHere()
{
    QStringList names;
    for (const auto& model : ModelsHere()) {
        QFile file(QFileInfo(model).dir().filePath("model.json"));
        if (file.open(QIODevice::ReadOnly))
            names += QJsonDocument::fromJson(file.readAll()).object().value("name").toString();
    }
    return names;
}

} // namespace

/// Several archives under way at once, and what they leave in the projects.
class TestManyArchives : public road::Suite
{
    Q_OBJECT

private slots:
    void fiveArchivesOfTwoProjectsBecomeModels()
    {
        prepare();
        QVERIFY(session->download(house) && session->download(engine));
        const auto before = ModelsHere();
        auto conversions = dialog();
        QVERIFY(conversions.openFor(house));
        const QStringList ofTheHouse{"first", "second", "third"};
        for (const auto& name : ofTheHouse)
            QVERIFY(conversions.send(archive(name)));
        QVERIFY(conversions.close());
        QVERIFY(conversions.openFor(engine));
        const QStringList ofTheEngine{"fourth", "fifth"};
        for (const auto& name : ofTheEngine)
            QVERIFY(conversions.send(archive(name)));

        for (const auto& name : ofTheEngine)
            QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf(name), road::converted, patience);
        QVERIFY(conversions.close());
        QVERIFY(conversions.openFor(house));
        for (const auto& name : ofTheHouse)
            QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf(name), road::converted, patience);
        QCOMPARE(Conversions::names().mid(1), ofTheHouse);
        QVERIFY(conversions.close());

        for (const auto& project : {house, engine}) {
            QTRY_COMPARE_WITH_TIMEOUT(HomeScreen::stateOf(project), road::changedThere, patience);
            QVERIFY(session->update(project));
        }
        QCOMPARE(ModelsHere().size(), before.size() + 5);
        for (const auto& name : ofTheHouse + ofTheEngine)
            QVERIFY2(NamesOfModelsHere().contains(name), qPrintable(name));
    }

    void anUpdateTakesThePlaceOfAModel()
    {
        prepare();
        QVERIFY(session->download(house));
        const auto before = ModelsHere().size();
        auto conversions = dialog();
        QVERIFY(conversions.openFor(house) && conversions.send(archive("annex")));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("annex"), road::converted, patience);
        QVERIFY(conversions.sendInPlaceOf(archive("rebuilt"), "annex"));
        // The old one is not to be seen while the new one is under way.
        QCOMPARE(Conversions::stateOf("annex"), road::noRow);
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("rebuilt"), road::converted, patience);
        QCOMPARE(Conversions::stateOf("annex"), road::noRow);
        QVERIFY(conversions.close());

        QTRY_COMPARE_WITH_TIMEOUT(HomeScreen::stateOf(house), road::changedThere, patience);
        QVERIFY(session->update(house));
        QCOMPARE(ModelsHere().size(), before + 1);
        QVERIFY(NamesOfModelsHere().contains("rebuilt"));
        QVERIFY(!NamesOfModelsHere().contains("annex"));
        QVERIFY(session->open(house));
    }

private:
    void prepare()
    {
        server->kill();
        server->start({"--workers", "2"});
        QVERIFY(road::AllowConversions());
        QVERIFY(session->enter());
    }

    /// An archive of that name, of the first model on this machine.
    [[nodiscard]] QString archive(const QString& name) const
    {
        auto file = m_folder.filePath(name + ".kyv");
        return road::PackModel(ModelsHere().constFirst(), file) ? file : QString();
    }

    [[nodiscard]] Conversions dialog() { return {session->desktop(), session->home()}; }

    QTemporaryDir m_folder;
};

ROAD_MAIN(TestManyArchives)
#include "test_manyarchives.moc"
