#include "output/printable_text.h"

#include <cstdint>
#include <cstdio>

#include "output/console.h"

namespace {

struct Character {
    uint32_t code = 0;
    size_t bytes = 0;  // 0: the first byte begins no character
};

Character FirstCharacter(std::string_view text) {
    const auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    const size_t bytes = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    if (lead < 0xc2 || lead > 0xf4 || text.size() < bytes) return {};
    uint32_t code = lead & (0x7fU >> bytes);
    for (size_t at = 1; at < bytes; ++at) {
        if ((byte(at) & 0xc0) != 0x80) return {};
        code = code << 6 | (byte(at) & 0x3fU);
    }
    constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
    if (code < kLeast[bytes] || code > 0x10ffff || isSurrogate) return {};
    return {code, bytes};
}

bool IsUnseen(uint32_t code) {
    constexpr struct {
        uint32_t first, last;
    } kRanges[] = {{0x80, 0x9f},     {0xad, 0xad},     {0x61c, 0x61c},  {0x200b, 0x200f},
                   {0x2028, 0x202e}, {0x2060, 0x206f}, {0xfeff, 0xfeff}};
    for (const auto& range : kRanges) {
        if (code >= range.first && code <= range.last) return true;
    }
    return false;
}

}  // namespace

std::string PrintableText(std::string_view bytes) {
    std::string text;
    char escape[12];
    while (!bytes.empty()) {
        const Character character = FirstCharacter(bytes);
        const std::string_view own = bytes.substr(0, character.bytes == 0 ? 1 : character.bytes);
        if (character.bytes == 0) {
            std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(own[0]));
            text += escape;
        } else if (IsUnseen(character.code)) {
            std::snprintf(escape, sizeof escape, "\\u%04x", character.code);
            text += escape;
        } else if (own == "\\") {
            text += "\\\\";
        } else {
            text += character.bytes == 1 ? OnOneLine(own) : std::string(own);
        }
        bytes.remove_prefix(own.size());
    }
    return text;
}
