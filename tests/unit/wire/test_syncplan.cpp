// SPDX-License-Identifier: MIT
#include <QTest>

#ifndef Q_MOC_RUN // it cannot read what these include
#include "wire/manifestdelta.h"
#include "wire/syncplan.h"

#include <map>
#include <set>
#include <string>

#include <rapidcheck.h>
#endif

using namespace wire;

namespace
{

constexpr auto elsewhere = PieceOrigin::elsewhere;

/// A file of a test: its pieces are letters.
struct SmallFile {
    std::string letters;
    std::uint32_t mode = 0644;
};
using SmallTree = std::map<std::string, SmallFile>;

Piece PieceOf(char letter)
{
    const std::string bytes(static_cast<std::size_t>(letter - 'a' + 1), letter);
    return {DigestOf(bytes), static_cast<std::uint32_t>(bytes.size())};
}

Manifest ManifestOf(const SmallTree& tree)
{
    Manifest manifest;
    for (const auto& [path, file] : tree) {
        FileEntry entry{path, 0, file.mode, DigestOf(file.letters), Cutting::contentDefined, {}};
        for (const char letter : file.letters) {
            entry.pieces.push_back(PieceOf(letter));
            entry.size += entry.pieces.back().size;
        }
        manifest.files.push_back(std::move(entry));
    }
    return manifest;
}

rc::Gen<SmallTree> AnyTree()
{
    // Few paths and few letters, so that trees have much in common.
    const auto path = rc::gen::element<std::string>("a", "b", "c", "d/e", "d/f");
    const auto letters = rc::gen::container<std::string>(rc::gen::inRange('a', 'g'));
    const auto file = rc::gen::apply(
        [](const std::string& text, bool isProgram) {
            return SmallFile{text, isProgram ? 0755U : 0644U};
        },
        rc::gen::resize(12, letters), rc::gen::arbitrary<bool>());
    return rc::gen::resize(5, rc::gen::container<SmallTree>(path, file));
}

rc::Gen<Manifest> AnyManifest()
{
    return rc::gen::map(AnyTree(), ManifestOf);
}

/// The receiver of a plan: its files, and the pieces that it has got hold of.
struct Receiver {
    Manifest tree;
    std::set<Digest> pieces;

    explicit Receiver(const Manifest& have)
        : tree(have)
    {
        for (const auto& file : have.files) {
            for (const auto& piece : file.pieces)
                pieces.insert(piece.name);
        }
    }

    /// Carries a plan out. `have` is what it was made for. False when it needs what nobody has.
    [[nodiscard]] bool apply(const SyncPlan& plan, const Manifest& have, const Manifest& want)
    {
        Manifest result;
        for (const auto& step : plan.steps) {
            auto file = want.files.at(step.file);
            file.pieces.clear();
            if (step.sameAs != elsewhere)
                file.pieces = have.files.at(step.sameAs).pieces;
            std::size_t index = 0;
            for (const auto& origin : step.pieces) {
                for (std::uint32_t i = 0; i < origin.count; ++i, ++index) {
                    const bool isSent = origin.file == elsewhere;
                    const auto& piece = isSent ? want.files.at(step.file).pieces.at(index)
                                               : have.files.at(origin.file).pieces.at(origin.first + i);
                    if (isSent)
                        pieces.insert(piece.name);
                    if (!pieces.contains(piece.name))
                        return false;
                    file.pieces.push_back(piece);
                }
            }
            result.files.push_back(std::move(file));
        }
        tree = std::move(result);
        return true;
    }
};

std::set<Digest> SentPieces(const SyncPlan& plan, const Manifest& want)
{
    std::set<Digest> sent;
    for (const auto& step : plan.steps) {
        std::size_t index = 0;
        for (const auto& origin : step.pieces) {
            for (std::uint32_t i = 0; i < origin.count && origin.file == elsewhere; ++i)
                sent.insert(want.files[step.file].pieces[index + i].name);
            index += origin.count;
        }
    }
    return sent;
}

} // namespace

/// The planner, over many random trees. The seed is printed; RC_PARAMS="seed=…" runs it again.
class TestSyncPlan : public QObject
{
    Q_OBJECT

private slots:
    void appliedPlanMakesBothSidesEqual();
    void planAppliedTwiceIsThePlanAppliedOnce();
    void planForEqualTreesSendsNothing();
    void onlyWhatTheReceiverLacksIsSent();
    void removedFilesAreThoseThatTheNewTreeLacks();
    void directionFollowsTheSideThatHasMoved();
    void planOfAConflictHasNoSteps();
    void deltaUnfoldsToTheManifest();
    void renamedFileIsTakenWhole();
    void pageChangedInPlaceIsTheOnlyOneSent();
};

void TestSyncPlan::appliedPlanMakesBothSidesEqual()
{
    QVERIFY(rc::check([] {
        const auto have = *AnyManifest();
        const auto want = *AnyManifest();
        Receiver receiver(have);
        RC_ASSERT(receiver.apply(PlanBetween(have, want), have, want));
        RC_ASSERT(receiver.tree == want);
    }));
}

void TestSyncPlan::planAppliedTwiceIsThePlanAppliedOnce()
{
    QVERIFY(rc::check([] {
        const auto have = *AnyManifest();
        const auto want = *AnyManifest();
        const auto plan = PlanBetween(have, want);
        Receiver receiver(have);
        RC_ASSERT(receiver.apply(plan, have, want));
        const auto once = receiver.tree;
        RC_ASSERT(receiver.apply(plan, have, want));
        RC_ASSERT(receiver.tree == once);
        // Planned anew from there, nothing is left to do.
        const auto again = PlanBetween(once, want);
        RC_ASSERT(SentPieces(again, want).empty());
        RC_ASSERT(again.removed.empty());
    }));
}

void TestSyncPlan::planForEqualTreesSendsNothing()
{
    QVERIFY(rc::check([] {
        const auto tree = *AnyManifest();
        const auto plan = PlanBetween(tree, tree);
        for (const auto& step : plan.steps)
            RC_ASSERT(step.sameAs == step.file && step.pieces.empty());
        RC_ASSERT(plan.removed.empty());
    }));
}

void TestSyncPlan::onlyWhatTheReceiverLacksIsSent()
{
    QVERIFY(rc::check([] {
        const auto have = *AnyManifest();
        const auto want = *AnyManifest();
        const auto sent = SentPieces(PlanBetween(have, want), want);
        const Receiver receiver(have);
        for (const auto& name : sent)
            RC_ASSERT(!receiver.pieces.contains(name));
        std::set<Digest> fresh;
        for (const auto& piece : FreshPieces(have, want))
            fresh.insert(piece.name);
        RC_ASSERT(sent == fresh);
    }));
}

void TestSyncPlan::removedFilesAreThoseThatTheNewTreeLacks()
{
    QVERIFY(rc::check([] {
        const auto have = *AnyTree();
        const auto want = *AnyTree();
        std::vector<std::string> expected;
        for (const auto& [path, file] : have) {
            if (!want.contains(path))
                expected.push_back(path);
        }
        RC_ASSERT(PlanBetween(ManifestOf(have), ManifestOf(want)).removed == expected);
    }));
}

void TestSyncPlan::directionFollowsTheSideThatHasMoved()
{
    QVERIFY(rc::check([] {
        const auto base = *AnyManifest();
        const auto other = *AnyManifest();
        const auto third = *AnyManifest();
        RC_PRE(!(base == other) && !(base == third) && !(other == third));
        RC_ASSERT(DirectionOf(base, base, base) == Direction::nothing);
        RC_ASSERT(DirectionOf(other, base, base) == Direction::up);
        RC_ASSERT(DirectionOf(base, base, other) == Direction::down);
        RC_ASSERT(DirectionOf(other, base, third) == Direction::conflict);
        // Both sides have made the same change.
        RC_ASSERT(DirectionOf(other, base, other) == Direction::nothing);
    }));
}

void TestSyncPlan::planOfAConflictHasNoSteps()
{
    const auto base = ManifestOf({{"a", {"a"}}});
    const auto local = ManifestOf({{"a", {"b"}}});
    const auto remote = ManifestOf({{"a", {"c"}}});
    const auto plan = PlanSync(local, base, remote);
    QVERIFY(plan.direction == Direction::conflict);
    QVERIFY(plan.steps.empty() && plan.removed.empty());
}

void TestSyncPlan::deltaUnfoldsToTheManifest()
{
    QVERIFY(rc::check([] {
        const auto base = *AnyManifest();
        const auto manifest = *AnyManifest();
        const auto decoded = DecodeManifestDelta(base, EncodeManifestDelta(base, manifest));
        const auto* result = std::get_if<Manifest>(&decoded);
        RC_ASSERT(result != nullptr);
        RC_ASSERT(*result == manifest);
    }));
}

void TestSyncPlan::renamedFileIsTakenWhole()
{
    const auto have = ManifestOf({{"a", {"abc"}}});
    const auto want = ManifestOf({{"z", {"abc"}}});
    const auto plan = PlanBetween(have, want);
    QCOMPARE(plan.steps.size(), std::size_t{1});
    QCOMPARE(plan.steps[0].sameAs, 0U);
    QCOMPARE(plan.removed, std::vector<std::string>{"a"});
}

void TestSyncPlan::pageChangedInPlaceIsTheOnlyOneSent()
{
    const auto have = ManifestOf({{"a", {"aabbcc"}}});
    const auto want = ManifestOf({{"a", {"aabfcc"}}});
    const auto plan = PlanBetween(have, want);
    QVERIFY(plan.steps[0].pieces == (std::vector<PieceOrigin>{{0, 0, 3}, {elsewhere, 0, 1}, {0, 4, 2}}));
}

int main(int count, char** arguments)
{
    // The trees are small and the planner has many paths: a hundred would not show much.
    const QByteArray given = qgetenv("RC_PARAMS");
    if (!given.contains("max_success"))
        qputenv("RC_PARAMS", "max_success=100000 " + given);
    TestSyncPlan test;
    return QTest::qExec(&test, count, arguments);
}
#include "test_syncplan.moc"
