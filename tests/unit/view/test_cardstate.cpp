// SPDX-License-Identifier: MIT
#include "startedview.h"

#include <array>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

// What the state of a card depends on, each with all its values.
const std::array serverWords = {"-1", "0", "1", "2", "3", "else", "error", "cancelled"};
const std::array organisations = {"none", "some"};
const std::array libraryStates = {"fails", "0", "1", "2", "3", "4"};
const std::array bimSets = {"empty", "same", "newer"};
const std::array parts = {"none", "same", "new", "changed", "changed, gone"};
const std::array formats = {"current", "old"};

/// One line of the table; "*" stands for any value. The first line that fits tells what the card shows.
struct Line {
    const char* format;
    const char* part;
    const char* word;
    const char* organisation;
    const char* bimSet;
    const char* library;
    const char* shown;
};

// clang-format off
const Line table[] = {
    // format  part              word         organisation  bimSet    library  shown
    {"old",    "*",              "*",         "*",          "*",      "*",     "upgrade"},
    {"*",      "changed",        "*",         "*",          "*",      "*",     "2"},
    {"*",      "*",              "error",     "*",          "*",      "*",     "0"},
    {"*",      "*",              "cancelled", "*",          "*",      "*",     "0"},
    {"*",      "*",              "-1",        "*",          "*",      "*",     "5"},
    {"*",      "*",              "2",         "*",          "*",      "*",     "0"},
    {"*",      "*",              "*",         "some",       "newer",  "*",     "3"},
    {"*",      "*",              "*",         "*",          "*",      "fails", "0"},
    {"*",      "*",              "*",         "*",          "*",      "0",     "0"},
    {"*",      "*",              "*",         "*",          "*",      "1",     "1"},
    {"*",      "*",              "*",         "*",          "*",      "2",     "2"},
    {"*",      "*",              "*",         "*",          "*",      "3",     "3"},
    {"*",      "*",              "*",         "*",          "*",      "4",     "4"},
};
// clang-format on

/// One combination of the values.
struct Case {
    QString word, organisation, library, bimSet, part, format;

    [[nodiscard]] QString text() const
    {
        return QStringList({word, organisation, library, bimSet, part, format}).join(" | ");
    }
};

bool Fits(const char* pattern, const QString& value)
{
    return qstrcmp(pattern, "*") == 0 || value == QLatin1String(pattern);
}

QString ShownByTheTable(const Case& c)
{
    for (const auto& line : table) {
        if (Fits(line.format, c.format) && Fits(line.part, c.part) && Fits(line.word, c.word) &&
            Fits(line.organisation, c.organisation) && Fits(line.bimSet, c.bimSet) &&
            Fits(line.library, c.library))
            return line.shown;
    }
    return "no line";
}

template<class Visit>
void ForEachCase(const QString& organisation, const Visit& visit)
{
    for (const char* word : serverWords)
        for (const char* library : libraryStates)
            for (const char* bimSet : bimSets)
                for (const char* part : parts)
                    for (const char* format : formats)
                        visit(Case{word, organisation, library, bimSet, part, format});
}

ZRSmartFormat::SZRFTGuid Key(const wchar_t* text)
{
    return ZRSmartFormat::GuidFromText(text);
}

Fakes::Reply ReplyOf(const QString& word)
{
    if (word == "error")
        return {{}, "no server", false, {}};
    return {word, {}, word == "cancelled", {}};
}

void Arrange(const Case& c)
{
    auto& scene = SmartDB::instance().add("s", "s", "CIM");
    scene.state = c.library == "fails" ? -1 : c.library.toInt();
    scene.needsUpgrade = c.format == "old";
    SmartDB::instance().net.setReply("GetStatusByProjId", "s", ReplyOf(c.word));
    if (c.bimSet != "empty") {
        StartedView::addLocal("bim", "BIM", "1", c.bimSet == "newer" ? 3 : 1);
        scene.bimProjects = {Key(L"bim")};
    }
    if (c.part != "none") {
        const int state = c.part == "same" ? 1 : c.part == "new" ? 0 : 2;
        StartedView::addLocal("part", "BIM", "1", state).isLocal = c.part != "changed, gone";
        scene.project->addObject(Key(L"o"), Key(L"part"));
    }
}

/// What the card shows: "upgrade" or the number of the state.
QString Shown(const CGridViewData& card)
{
    return card.needUpgrade() ? QString("upgrade") : QString::number(card.stateType());
}

} // namespace

/// What a card shows over everything that it depends on, against a table.
class TestCardState : public QObject
{
    Q_OBJECT

private slots:
    void cardShowsWhatTheTableSays_data();
    void cardShowsWhatTheTableSays();
    void everyLineOfTheTableIsMet();
    void upgradeCardCountsAsAProjectThatIsOnlyHere();
};

void TestCardState::cardShowsWhatTheTableSays_data()
{
    QTest::addColumn<QString>("organisation");
    for (const char* organisation : organisations)
        QTest::addRow("organisation: %s", organisation) << QString(organisation);
}

void TestCardState::cardShowsWhatTheTableSays()
{
    QFETCH(QString, organisation);
    StartedView view;
    if (organisation == "some")
        view.giveAnOrganisation();
    StartedView::addLocal("s", "CIM");
    StartedView::writeLocalList({"s"});
    QVERIFY(view.start());
    int cases = 0;
    ForEachCase(organisation, [&](const Case& c) {
        SmartDB::instance().reset();
        Arrange(c);
        StartedView::grid().UpdateCard("s");
        QVERIFY2(StartedView::grid().ContainsCard("s"), qPrintable(c.text()));
        QVERIFY2(Shown(view.card("s")) == ShownByTheTable(c),
                 qPrintable(c.text() + " shows " + Shown(view.card("s")) + ", not " + ShownByTheTable(c)));
        ++cases;
    });
    QCOMPARE(cases, 8 * 6 * 3 * 5 * 2);
}

void TestCardState::everyLineOfTheTableIsMet()
{
    QSet<QString> shown;
    for (const char* organisation : organisations)
        ForEachCase(organisation, [&](const Case& c) { shown.insert(ShownByTheTable(c)); });
    QCOMPARE(shown, QSet<QString>({"upgrade", "0", "1", "2", "3", "4", "5"}));
}

void TestCardState::upgradeCardCountsAsAProjectThatIsOnlyHere()
{
    StartedView view;
    StartedView::addLocal("s", "CIM", "1", 2).needsUpgrade = true;
    StartedView::writeLocalList({"s"});
    QVERIFY(view.start());
    StartedView::grid().UpdateCard("s");
    QVERIFY(view.card("s").needUpgrade());
    QCOMPARE(view.card("s").stateType(), CGridViewData::ST_LocalState);
}

QTEST_MAIN(TestCardState)
#include "test_cardstate.moc"
