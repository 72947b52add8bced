// SPDX-License-Identifier: MIT
#include "faultplan.h"
#include "smartdb/failure.h"
#include "stage.h"

#include <set>

#include <QTest>

/// Another process works on a project while it is transferred.
class TestEditMeanwhile : public QObject
{
    Q_OBJECT

private slots:
    void editDuringAnUploadIsInTheRevisionOrStaysAChange();
    void editDuringAnUpdateIsNeverReplaced();

private:
    [[nodiscard]] static bool tryEdit(Stage& stage, const std::string& note);
    [[nodiscard]] static std::string findingsOfEdit(Stage& stage, const std::string& edit,
                                                    const std::set<Content>& revisions);

    enum State { same = 1, changedHere = 2, changedThere = 3, conflict = 4 };
};

void TestEditMeanwhile::editDuringAnUploadIsInTheRevisionOrStaysAChange()
{
    FaultPlan plan(10);
    Stage stage;
    const auto whole = stage.measure(Operation::upload).length;
    for (int i = 0; i < plan.count(); ++i) {
        stage.prepare(Operation::upload);
        std::set<Content> known{stage.contentOf(stage.anna())};
        Client client;
        client.start(stage.commandOf(Operation::upload));
        std::string last;
        for (int edits = 0; client.isRunning() && edits < 100; ++edits) {
            const std::chrono::microseconds pause(
                plan.below(static_cast<std::uint64_t>(whole.count()) / 2 + 1));
            last = "edit " + std::to_string(i) + '.' + std::to_string(edits);
            stage.anna().edit(stage.guid(), last);
            known.insert(stage.contentOf(stage.anna()));
            client.letGo(pause);
        }
        const auto outcome = client.wait();
        std::string words;
        if (!outcome.isDone)
            words += "the upload fails: " + outcome.words.toStdString() + "; ";
        const auto seen = stage.look();
        if (!known.contains(seen))
            words += "somebody else sees what never was; ";
        if (stage.anna().note(stage.guid()) != last)
            words += "the last edit is lost; ";
        const int expected = seen == stage.contentOf(stage.anna()) ? same : changedHere;
        if (const int state = stage.anna().state(stage.guid()); state != expected)
            words += "state " + std::to_string(state) + " instead of " + std::to_string(expected) + "; ";
        if (stage.anna().integrity(stage.guid()) != "ok" || stage.ben().integrity(stage.guid()) != "ok")
            words += "a database is damaged; ";
        stage.prepare(Operation::upload);
        words += stage.findingsOfRepetition(Operation::upload);
        QVERIFY2(words.empty(), plan.told(i, "while it was edited", words).c_str());
    }
}

void TestEditMeanwhile::editDuringAnUpdateIsNeverReplaced()
{
    FaultPlan plan(16);
    Stage stage;
    const auto whole = static_cast<std::uint64_t>(stage.measure(Operation::update).length.count());
    int met = 0;
    for (int i = 0; i < plan.count(); ++i) {
        // Later than the first look at the folder: an edit before that makes a conflict, and no update.
        const std::chrono::microseconds moment(whole / 3 + plan.below(whole));
        stage.prepare(Operation::update);
        const std::set<Content> revisions{stage.contentOf(stage.ben()), stage.contentOf(stage.anna())};
        Client client;
        client.start(stage.commandOf(Operation::update));
        client.sleepUntil(moment);
        met += client.isRunning() ? 1 : 0;
        const auto edit = "edit " + std::to_string(i);
        const bool isEdited = tryEdit(stage, edit);
        const auto outcome = client.wait();
        std::string words;
        if (outcome.hasCrashed)
            words += "the client has crashed; ";
        words += findingsOfEdit(stage, isEdited ? edit : std::string(), revisions);
        std::filesystem::remove_all(stage.ben().folder(stage.guid()));
        words += stage.findingsOfRepetition(Operation::download);
        QVERIFY2(words.empty(),
                 plan.told(i, "after " + std::to_string(moment.count()) + " us", words).c_str());
    }
    QVERIFY2(met > 0, "no edit came in time");
}

/// False when the editor was told that it cannot write.
bool TestEditMeanwhile::tryEdit(Stage& stage, const std::string& note)
{
    try {
        stage.ben().edit(stage.guid(), note);
        return true;
    } catch (const ZRSmartDB::Failure& failure) {
        qInfo("an edit was refused: %s", failure.what());
        return false;
    }
}

/// `edit`: the note that was written, empty for none.
std::string TestEditMeanwhile::findingsOfEdit(Stage& stage, const std::string& edit,
                                              const std::set<Content>& revisions)
{
    auto& ben = stage.ben();
    std::string words;
    if (ben.integrity(stage.guid()) != "ok")
        words += "the database: " + ben.integrity(stage.guid()) + "; ";
    if (!edit.empty() && ben.note(stage.guid()) != edit)
        words += "the edit is lost; ";
    const int state = ben.state(stage.guid());
    if (!edit.empty() && state != changedHere && state != conflict)
        words += "edited, and in state " + std::to_string(state) + "; ";
    if (edit.empty() && !revisions.contains(stage.contentOf(ben)))
        words += "neither revision; ";
    return words;
}

QTEST_GUILESS_MAIN(TestEditMeanwhile)
#include "test_editmeanwhile.moc"
