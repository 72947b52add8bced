// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/packs.h"
#include "wire/digest.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace server
{

/// What an account has to say about a project, and where it belongs.
struct Project {
    std::string guid;
    std::string type; ///< "CIM", "BIM" or "MODEL"
    std::string name;
    std::string record; ///< the project's record for the list, a JSON object; empty for a model
    std::int64_t owner = 0;
    std::optional<std::int64_t> organisation; ///< everybody of it sees the project
    bool isDemo = false;                      ///< everybody sees the project
    std::string parent;                       ///< a model's building project; who sees that sees this
};

struct Revision {
    wire::Digest root;
    std::string manifest; ///< encoded
    std::string layout;   ///< encoded
};

/// What the store remembers of one piece.
using StoredPiece = std::pair<wire::Digest, PieceLocation>;

} // namespace server
