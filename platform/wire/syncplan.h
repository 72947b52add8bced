// SPDX-License-Identifier: MIT
#pragma once

#include "wire/manifest.h"

#include <cstdint>
#include <string>
#include <vector>

namespace wire
{

/// Which way a project has to go so that both sides are equal.
enum class Direction {
    nothing,  ///< both sides are equal
    up,       ///< changed here only
    down,     ///< changed there only
    conflict, ///< changed on both sides, each in its own way
};

/// Where a run of pieces of a file comes from.
struct PieceOrigin {
    static constexpr std::uint32_t elsewhere = UINT32_MAX;

    std::uint32_t file = elsewhere; ///< index of a file that the receiver has; elsewhere: it must be sent
    std::uint32_t first = 0;        ///< first piece in that file
    std::uint32_t count = 0;

    friend bool operator==(const PieceOrigin&, const PieceOrigin&) = default;
};

/// How the receiver comes to one file of the new tree.
struct FileStep {
    std::uint32_t file = 0; ///< index in the new tree

    /// Index of a file with the same content in the tree that the receiver has; then the file costs no bytes.
    std::uint32_t sameAs = PieceOrigin::elsewhere;

    /// For a file that must be put together: where its pieces come from, in order.
    std::vector<PieceOrigin> pieces;

    friend bool operator==(const FileStep&, const FileStep&) = default;
};

/// What makes the receiver's tree equal to the sender's.
struct SyncPlan {
    Direction direction = Direction::nothing;
    std::vector<FileStep> steps;      ///< one for each file of the new tree, in its order
    std::vector<std::string> removed; ///< files of the receiver that the new tree does not have

    friend bool operator==(const SyncPlan&, const SyncPlan&) = default;
};

/// Which way the project has to go. `base` is the tree that both sides were last equal to, the empty one
/// when they never were.
[[nodiscard]] Direction DirectionOf(const Manifest& local, const Manifest& base, const Manifest& remote);

/// The steps by which a receiver that has the tree `have` comes to the tree `want`. Refers to contents, never
/// to what stands under a name at the moment, so that a plan may be carried out twice. No clock, disk or
/// network: equal trees give equal plans.
[[nodiscard]] SyncPlan PlanBetween(const Manifest& have, const Manifest& want);

/// Direction and steps at once: local to remote when the project goes up, remote to local when it comes
/// down, no steps otherwise.
[[nodiscard]] SyncPlan PlanSync(const Manifest& local, const Manifest& base, const Manifest& remote);

} // namespace wire
