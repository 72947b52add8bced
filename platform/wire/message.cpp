// SPDX-License-Identifier: MIT
#include "wire/message.h"

#include "wire/bytes.h"

namespace wire
{

std::string WriteMessage(std::string_view head, std::string_view body)
{
    ByteWriter writer;
    writer.u32(static_cast<std::uint32_t>(head.size()));
    writer.raw(head);
    writer.raw(body);
    return writer.take();
}

std::optional<Message> ReadMessage(std::string_view bytes)
{
    ByteReader reader(bytes);
    const auto head = reader.text(reader.u32());
    if (!reader.good())
        return std::nullopt;
    return Message{head, reader.text(reader.left())};
}

} // namespace wire
