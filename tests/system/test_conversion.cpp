// SPDX-License-Identifier: MIT
#include "road/conversions.h"
#include "road/samplecontent.h"
#include "road/suite.h"

#include <QFile>
#include <QTemporaryDir>

using road::Conversions;
using road::HomeScreen;
using road::house;
using road::ModelsHere;

namespace
{

constexpr int patience = 60000;

} // namespace

/// The road of a model archive over the server: chosen, repacked, sent, converted there, and brought here.
class TestConversion : public road::Suite
{
    Q_OBJECT

private slots:
    void anArchiveBecomesAModelOfTheProject()
    {
        QVERIFY(road::AllowConversions());
        QVERIFY(session->enter() && session->download(house));
        const auto before = ModelsHere();
        QVERIFY(!before.isEmpty());
        const QString archive = m_folder.filePath("annex.kyv");
        QVERIFY(road::PackModel(before.constFirst(), archive));
        auto conversions = dialog();
        QVERIFY(conversions.openFor(house) && conversions.send(archive));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("annex"), road::converted, patience);
        QVERIFY(conversions.close());
        QTRY_COMPARE_WITH_TIMEOUT(HomeScreen::stateOf(house), road::changedThere, patience);
        QVERIFY(session->update(house));
        QCOMPARE(ModelsHere().size(), before.size() + 1);
        QVERIFY(session->open(house));
    }

    void anArchiveThatIsNoneIsToldToHaveFailed()
    {
        QVERIFY(road::AllowConversions());
        QFile noise(m_folder.filePath("noise.kyv"));
        QVERIFY(noise.open(QIODevice::WriteOnly) && noise.write(QByteArray(5000, 'x')) == 5000 &&
                noise.flush());
        QVERIFY(session->enter() && session->download(house));
        auto conversions = dialog();
        QVERIFY(conversions.openFor(house) && conversions.send(noise.fileName()));
        constexpr int repackageFailed = 7;
        QTRY_VERIFY_WITH_TIMEOUT(Conversions::stateOf("noise") == repackageFailed ||
                                     Conversions::stateOf("noise") == road::uploadFailed,
                                 patience);
    }

private:
    [[nodiscard]] Conversions dialog() { return {session->desktop(), session->home()}; }

    QTemporaryDir m_folder;
};

ROAD_MAIN(TestConversion)
#include "test_conversion.moc"
