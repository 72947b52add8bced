// SPDX-License-Identifier: MIT
#include "wire/syncplan.h"

#include <optional>
#include <unordered_map>

namespace wire
{

namespace
{

constexpr auto elsewhere = PieceOrigin::elsewhere;

/// Finds whole files and single pieces in a tree.
class Finder
{
public:
    explicit Finder(const Manifest& tree)
        : m_tree(tree)
    {
        for (std::uint32_t file = 0; file < tree.files.size(); ++file) {
            m_byPath.emplace(tree.files[file].path, file);
            m_byContent.emplace(tree.files[file].content, file);
        }
    }

    [[nodiscard]] const Manifest& tree() const { return m_tree; }

    [[nodiscard]] std::uint32_t sameFile(const FileEntry& wanted) const
    {
        const auto named = fileAt(wanted.path);
        if (named != elsewhere && isSame(m_tree.files[named], wanted))
            return named;
        const auto found = m_byContent.find(wanted.content);
        return found != m_byContent.end() && isSame(m_tree.files[found->second], wanted) ? found->second
                                                                                         : elsewhere;
    }

    [[nodiscard]] std::uint32_t fileAt(const std::string& path) const
    {
        const auto found = m_byPath.find(path);
        return found != m_byPath.end() ? found->second : elsewhere;
    }

    /// Some place of a piece; a run that starts there is as good as any.
    [[nodiscard]] PieceOrigin place(const Digest& name)
    {
        if (!m_byPiece)
            indexPieces();
        const auto found = m_byPiece->find(name);
        return found != m_byPiece->end() ? found->second : PieceOrigin{elsewhere, 0, 1};
    }

    [[nodiscard]] bool isAt(std::uint32_t file, std::size_t index, const Digest& name) const
    {
        const auto& pieces = m_tree.files[file].pieces;
        return index < pieces.size() && pieces[index].name == name;
    }

private:
    static bool isSame(const FileEntry& left, const FileEntry& right)
    {
        return left.content == right.content && left.size == right.size && left.cutting == right.cutting &&
               left.pieces == right.pieces;
    }

    /// Only when a file has changed: most plans are of trees with few changes.
    void indexPieces()
    {
        m_byPiece.emplace();
        for (std::uint32_t file = 0; file < m_tree.files.size(); ++file) {
            const auto& pieces = m_tree.files[file].pieces;
            for (std::uint32_t index = 0; index < pieces.size(); ++index)
                m_byPiece->emplace(pieces[index].name, PieceOrigin{file, index, 1});
        }
    }

    const Manifest& m_tree;
    std::unordered_map<std::string, std::uint32_t> m_byPath;
    std::unordered_map<Digest, std::uint32_t> m_byContent;
    std::optional<std::unordered_map<Digest, PieceOrigin>> m_byPiece;
};

std::vector<PieceOrigin> OriginsOf(const FileEntry& wanted, Finder& finder)
{
    const auto samePath = finder.fileAt(wanted.path);
    std::vector<PieceOrigin> origins;
    for (std::size_t index = 0; index < wanted.pieces.size(); ++index) {
        const auto& name = wanted.pieces[index].name;
        auto* last = origins.empty() ? nullptr : &origins.back();
        if (last != nullptr && last->file != elsewhere &&
            finder.isAt(last->file, last->first + last->count, name)) {
            ++last->count;
            continue;
        }
        // Databases change pages in place: the same place of the same file is the best guess.
        const bool isInPlace = samePath != elsewhere && finder.isAt(samePath, index, name);
        const auto origin =
            isInPlace ? PieceOrigin{samePath, static_cast<std::uint32_t>(index), 1} : finder.place(name);
        if (last != nullptr && last->file == elsewhere && origin.file == elsewhere)
            ++last->count;
        else
            origins.push_back(origin);
    }
    return origins;
}

} // namespace

Direction DirectionOf(const Manifest& local, const Manifest& base, const Manifest& remote)
{
    if (local == remote)
        return Direction::nothing;
    if (remote == base)
        return Direction::up;
    return local == base ? Direction::down : Direction::conflict;
}

SyncPlan PlanBetween(const Manifest& have, const Manifest& want)
{
    SyncPlan plan;
    Finder finder(have);
    const Finder wanted(want);
    for (std::uint32_t file = 0; file < want.files.size(); ++file) {
        FileStep step{file, finder.sameFile(want.files[file]), {}};
        if (step.sameAs == elsewhere)
            step.pieces = OriginsOf(want.files[file], finder);
        plan.steps.push_back(std::move(step));
    }
    for (const auto& file : have.files) {
        if (wanted.fileAt(file.path) == elsewhere)
            plan.removed.push_back(file.path);
    }
    return plan;
}

SyncPlan PlanSync(const Manifest& local, const Manifest& base, const Manifest& remote)
{
    const auto direction = DirectionOf(local, base, remote);
    SyncPlan plan;
    if (direction == Direction::up)
        plan = PlanBetween(remote, local);
    else if (direction == Direction::down)
        plan = PlanBetween(local, remote);
    plan.direction = direction;
    return plan;
}

} // namespace wire
