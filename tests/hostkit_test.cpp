#include <cstring>
#include <memory>
#include <numeric>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include <hostkit/hostkit.h>

namespace {

TEST(Hostkit, MemoryCallsZeroRefuseOverflowAndTakeNull) {
    auto* bytes = static_cast<unsigned char*>(hkRealloc(hkCalloc(7, 9), 100));
    for (int i = 0; i < 63; ++i) EXPECT_EQ(bytes[i], 0) << i;
    hkFree(bytes);
    hkFree(nullptr);
    EXPECT_EQ(hkCalloc(SIZE_MAX / 2, 3), nullptr);
    EXPECT_EQ(hkStrdup(nullptr), nullptr);
    auto* buckets = static_cast<long*>(hk_mem_calloc(hkGetMemoryContext(), 3, sizeof(long)));
    hkOutOfMemoryCheck(buckets);
    EXPECT_EQ(buckets[2], 0);
    hk_mem_free(hkGetMemoryContext(), buckets);
    EXPECT_DEATH(hkOutOfMemoryCheck(nullptr), "Out of memory");
}

TEST(Hostkit, NamesChangedInPlace) {
    char text[] = "@AZ[`{\xC3\x84\xC4z";
    EXPECT_STREQ(hkLowerCase(text), "@az[`{\xC3\x84\xC4z");
    // clang-format off
    const char* const rows[][2] = {
        {"/tmp_mnt/tmp_mnt/a", "/tmp_mnt/a"}, {"/tmp_mnt/", "/"}, {"/tmp_mnt", "/tmp_mnt"},
        {"/tmp_mntx/a", "/tmp_mntx/a"}, {"a/tmp_mnt/b", "a/tmp_mnt/b"}};
    // clang-format on
    for (const auto& [name, fixed] : rows) {
        EXPECT_STREQ(hkFixAutoMountPrefix(std::string(name).data()), fixed) << name;
    }
    EXPECT_EQ(hkFixAutoMountPrefix(nullptr), nullptr);
    EXPECT_EQ(hkLowerCase(nullptr), nullptr);
}

TEST(Hostkit, MultiByteNames) {
    // Before the '|', what precedes the last character.
    for (const std::string row :
         {"a|b", "a|\xC3\xA4", "|\xE2\x82\xAC", "|\xF0\x9F\x98\x80", "\xC0|\x80", "\xE0\x80|\x80",
          "\xED\xA0|\x80", "\xF4\x90\x80|\x80", "\xF0\x8F\x80|\x80", "\xE2|\x82", "\xE2|/", "|\xA4",
          "\xE2\x82\xAC|\xAC", "|\xEF\xBF\xBF", "|"}) {
        const size_t start = row.find('|');
        const std::string text = row.substr(0, start) + row.substr(start + 1);
        const char* begin = text.c_str();
        EXPECT_EQ(hkMultiBytePrevChar(begin, begin + text.size()), begin + start) << row;
    }
    EXPECT_EQ(vpath_pathname_index("\xE2/\xC3\xA4/x"), 4);
    EXPECT_EQ(vpath_pathname_index("\xC3\xAF"), -1);
    EXPECT_TRUE(hk_is_7bit("\x7F\x01 more than a word"));
    for (size_t at = 0; at < 19; ++at) {
        EXPECT_FALSE(hk_is_7bit(std::string(19, 'a').replace(at, 1, "\x80").c_str())) << at;
    }
}

// Each text stands in a block of its own size, so that asan sees a read past the NUL.
TEST(Hostkit, StringHashDependsOnEveryByteAndTheSeed) {
    EXPECT_EQ(hk_hash_string(7, nullptr), 0U);
    std::set<uint32_t> seen{hk_hash_string(0, "")};
    EXPECT_EQ(*seen.begin(), 0U);
    size_t texts = 1;
    for (size_t length = 1; length < 40; ++length) {
        for (size_t changed = 0; changed <= length; ++changed, texts += 2) {
            const auto text = std::make_unique<char[]>(length + 1);
            std::memset(text.get(), 'a', length);
            if (changed < length) text[changed] = 'b';
            seen.insert({hk_hash_string(0, text.get()), hk_hash_string(1, text.get())});
        }
    }
    EXPECT_EQ(seen.size(), texts);
}

// Nothing under 17 but 1 divides it.
bool IsQuasiPrime(uint64_t n) { return std::gcd(n, 2 * 3 * 5 * 7 * 11 * 13) == 1; }

TEST(Hostkit, QuasiPrimesAgreeWithTrialDivision) {
    for (const uint64_t base : {1ULL, 30000ULL, (1ULL << 32) - 103}) {
        for (uint64_t target = base; target < base + 100; ++target) {
            uint64_t above = target, below = target;
            while (!IsQuasiPrime(above)) ++above;
            while (!IsQuasiPrime(below)) --below;
            const auto asked = static_cast<uint32_t>(target);
            EXPECT_EQ(hk_hash_next_quasiprime(nullptr, asked, 1), above);
            EXPECT_EQ(hk_hash_next_quasiprime(nullptr, asked, -1), below);
        }
    }
    for (const int direction : {1, -1}) {  // the ends have a neighbour on one side only
        EXPECT_EQ(hk_hash_next_quasiprime(nullptr, 0, direction), 1U);
        EXPECT_EQ(hk_hash_next_quasiprime(nullptr, UINT32_MAX, direction), UINT32_MAX - 2);
    }
}

TEST(Hostkit, TimingKeepsTheLatestSpans) {
    EXPECT_EQ(hkPERFtic(0), 0U);
    EXPECT_GT(hkPERFtic(1), 0U);
    hkWallClockTime now;
    hkWallClock(&now);
    EXPECT_TRUE(now.hours < 24 && now.minutes < 60 && now.seconds < 61) << now.seconds;
    hkDecrementTicDepth();  // already 0
    for (hkTick i = 0; i < 70; ++i) hkMarkTime("outer", i, i + 1);
    hkIncrementTicDepth();
    hkMarkTime(std::string(50, 'x').c_str(), 5, 9);
    hkDecrementTicDepth();
    hkMarkedTime spans[80];
    ASSERT_EQ(hkGetMarkedTimes(spans, 80), 64U);
    EXPECT_EQ(spans[0].label, std::string(31, 'x'));
    EXPECT_TRUE(spans[0].end == 9 && spans[0].depth == 1);
    EXPECT_TRUE(spans[63].start == 7 && spans[63].depth == 0) << spans[63].start;
}

}  // namespace
