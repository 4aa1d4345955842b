// Lists of numbers and ranges, and object identifiers: tables, limits of length, cost, and a
// comparison with slow models.
#include <gtest/gtest.h>
#include <regex.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "schema/network_type.h"
#include "tests/support/faults.h"
#include "tests/support/growth.h"

namespace {

constexpr std::uint64_t kPorts = 65535, kVlans = 4094, kIndices = 3221225471;
constexpr std::size_t kPortBytes = 393210, kVlanBytes = 20470;

// Checks a value by its type's row.
bool isValid(const char *type, const std::string &value) {
    char buffer[64] = "";
    const SchemaKestType *row = Schema_FoundKestBltInType(type, nullptr);
    return Schema_checkKestBltInType(row, value.c_str(), sizeof buffer, buffer) == 1;
}

std::string repeated(std::string_view piece, std::size_t count) {
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i) text += piece;
    return text;
}

// ---------------------------------------------------------------- range lists

struct Case {
    const char *value;
    bool ports, vlans, indices;
};

constexpr Case kLists[] = {
    {"1", true, true, true},
    {"80,443,1000-2000", true, true, true},
    {"5-5", true, true, true},
    {"1-2,2-1", false, false, false},
    {"2000-1000", false, false, false},
    {"2-1", false, false, false},
    // Overlaps and any order.
    {"1-10,5-15,7,7,3", true, true, true},
    {"3,2,1", true, true, true},
    // Zero is no number of anything.
    {"0", false, false, false},
    {"0-5", false, false, false},
    {"0-0", false, false, false},
    {"1,0", false, false, false},
    {"00", false, false, false},
    {"0000000000", false, false, false},
    // The greatest numbers.
    {"4094", true, true, true},
    {"4095", true, false, true},
    {"1-4094", true, true, true},
    {"1-4095", true, false, true},
    {"4095-4096", true, false, true},
    {"65535", true, false, true},
    {"65536", false, false, true},
    {"1-65535", true, false, true},
    {"1-65536", false, false, true},
    {"65535-65535", true, false, true},
    {"65536-65536", false, false, true},
    {"3221225471", false, false, true},
    {"3221225472", false, false, false},
    {"1-3221225471", false, false, true},
    {"1-3221225472", false, false, false},
    {"4294967295", false, false, false},
    {"4294967296", false, false, false},
    {"4294967297", false, false, false},
    {"1-4294967297", false, false, false},
    {"9999999999", false, false, false},
    {"9999999999-9999999999", false, false, false},
    {"9999999999-1", false, false, false},
    // Zeros in front, up to ten digits.
    {"080", true, true, true},
    {"0000000080", true, true, true},
    {"00000000080", false, false, false},
    {"00000000001", false, false, false},
    {"18446744073709551617", false, false, false},
    {"0000000001-0000000002", true, true, true},      // 21 bytes
    {"00000000001-0000000002", false, false, false},  // 22
    {"0000000001-00000000002", false, false, false},
    {"000000001-0000000002", true, true, true},                  // 20
    {"0000000000000001-00000000000002", false, false, false},    // 31
    {"0000000000000001-000000000000002", false, false, false},   // 32
    {"0000000000000001-0000000000000002", false, false, false},  // 33
    {"1111111111111111111111111111111", false, false, false},    // 31
    {"11111111111111111111111111111111", false, false, false},   // 32
    {"111111111111111111111111111111111", false, false, false},  // 33
    {"80,1111111111111111111111111111111,90", false, false, false},
    {"80,11111111111111111111111111111111,90", false, false, false},
    {"80,111111111111111111111111111111111,90", false, false, false},
    // Where a long item would be cut, and a character lost, the beginning is too long already.
    {"0000000000000000000000000000001,5", false, false, false},
    {"00000000000000000000000000000001,5", false, false, false},
    {"0000000000000000000000000000000,1", false, false, false},
    // Spelling.
    {"", false, false, false},
    {",", false, false, false},
    {",,", false, false, false},
    {"80,", false, false, false},
    {",80", false, false, false},
    {"80,,81", false, false, false},
    {"80,81,", false, false, false},
    {"-", false, false, false},
    {"--", false, false, false},
    {"1-", false, false, false},
    {"-1", false, false, false},
    {"1--2", false, false, false},
    {"1-2-3", false, false, false},
    {"1-2-", false, false, false},
    {"-1-2", false, false, false},
    {"1-,2", false, false, false},
    {"1,-2", false, false, false},
    {"+1", false, false, false},
    {"1-+2", false, false, false},
    {" 1", false, false, false},
    {"1 ", false, false, false},
    {"1, 2", false, false, false},
    {"1 - 2", false, false, false},
    {"1;2", false, false, false},
    {"1.2", false, false, false},
    {"0x10", false, false, false},
    {"1e3", false, false, false},
    {"a", false, false, false},
    {"1,a", false, false, false},
    {"1\n", false, false, false},
    {"1|2", false, false, false},
    {"\xA3\xB1", false, false, false},
    {"1,\xB1", false, false, false},
};

TEST(RangeList, Table) {
    for (const Case &row : kLists) {
        EXPECT_EQ(isValid("_PortRange", row.value), row.ports) << row.value;
        EXPECT_EQ(isValid("_VlanRange", row.value), row.vlans) << row.value;
        EXPECT_EQ(isValid("_IfIndexRange", row.value), row.indices) << row.value;
    }
}

// A list of this many bytes, all of it items of one byte, but for zeros in the last.
std::string listOf(std::size_t bytes) {
    const std::size_t pairs = (bytes - 2) / 2;
    return repeated("1,", pairs) + std::string(bytes - 2 * pairs - 1, '0') + "1";
}

TEST(RangeList, GreatestLengths) {
    for (const auto &[type, most] :
         {std::pair{"_PortRange", kPortBytes}, std::pair{"_VlanRange", kVlanBytes}}) {
        for (const std::size_t bytes : {most - 1, most, most + 1, most + 2, 2 * most}) {
            const std::string list = listOf(bytes);
            ASSERT_EQ(list.size(), bytes);
            EXPECT_EQ(isValid(type, list), bytes <= most) << type << " of " << bytes;
            EXPECT_TRUE(isValid("_IfIndexRange", list));
        }
    }
    // Five and four digits a number, as the limits are meant.
    EXPECT_TRUE(isValid("_PortRange", repeated("00001,", 65534) + "000001"));
    EXPECT_FALSE(isValid("_PortRange", repeated("00001,", 65534) + "0000001"));
    EXPECT_TRUE(isValid("_VlanRange", repeated("0001,", 4093) + "00001"));
    EXPECT_FALSE(isValid("_VlanRange", repeated("0001,", 4093) + "000001"));
}

std::string everyNumber(unsigned last) {
    std::string list = "1";
    for (unsigned number = 2; number <= last; ++number) list += "," + std::to_string(number);
    return list;
}

TEST(RangeList, EveryNumber) {
    EXPECT_TRUE(isValid("_PortRange", everyNumber(65535)));
    EXPECT_FALSE(isValid("_PortRange", everyNumber(65536)));
    EXPECT_TRUE(isValid("_VlanRange", everyNumber(4094)));
    EXPECT_FALSE(isValid("_VlanRange", everyNumber(4095)));
    EXPECT_TRUE(isValid("_IfIndexRange", everyNumber(65536)));
    for (const char *broken : {",0", ",65536", ",,1", ",1-", ",-1", ",1 "}) {
        EXPECT_FALSE(isValid("_PortRange", everyNumber(65535) + broken)) << broken;
    }
}

// ---------------------------------------------------------------- object identifiers

struct OidCase {
    const char *value;
    bool valid;
};

constexpr OidCase kOids[] = {
    {"1.3.6.1", true},
    {"1", true},
    {"0", true},
    {"0.0", true},
    {"00", true},
    {"1.03", true},
    {"9.99.999", true},
    {"4294967295", true},
    {"4294967295.4294967295", true},
    {"4294967296", false},
    {"1.4294967296", false},
    {"4294967296.1", false},
    {"9999999999", false},
    {"0000000001", true},    // ten digits
    {"00000000001", false},  // eleven
    {"1.0000000001", true},
    {"1.00000000001", false},
    {"00000000001.1", false},
    {"000000000000000000000000000000000001", false},
    {"18446744073709551617", false},
    {"", false},
    {".", false},
    {"..", false},
    {".1", false},
    {"1.", false},
    {"1..3", false},
    {"1.3..6", false},
    {"1.3.", false},
    {".1.3", false},
    {"1...3", false},
    {"1,3", false},
    {"1.3 ", false},
    {" 1.3", false},
    {"1. 3", false},
    {"-1", false},
    {"+1", false},
    {"1.-3", false},
    {"a", false},
    {"1.a", false},
    {"1.3.6.1x", false},
    {"0x1", false},
    {"1.3\n", false},
    {"iso.org", false},
    {"\xA3\xB1.3", false},
};

TEST(ObjectIdentifier, Table) {
    for (const OidCase &row : kOids) EXPECT_EQ(isValid("OID", row.value), row.valid) << row.value;
}

TEST(ObjectIdentifier, MostArcs) {
    for (const std::string_view arc : {"1", "0", "4294967295", "0000000000"}) {
        const std::string one(arc);
        const std::string dotted = "." + one;
        EXPECT_TRUE(isValid("OID", one + repeated(dotted, 126)));
        EXPECT_TRUE(isValid("OID", one + repeated(dotted, 127)));
        EXPECT_FALSE(isValid("OID", one + repeated(dotted, 128)));
        EXPECT_FALSE(isValid("OID", one + repeated(dotted, 1000)));
        EXPECT_FALSE(isValid("OID", one + repeated(dotted, 127) + "."));
        EXPECT_FALSE(isValid("OID", one + repeated(dotted, 127) + "x"));
    }
}

// ---------------------------------------------------------------- models

// The fixed pattern of an item, compiled once.
class Pattern {
  public:
    explicit Pattern(const char *text) {
        compiles_ = ::regcomp(&compiled_, text, REG_EXTENDED | REG_NOSUB) == 0;
    }
    ~Pattern() {
        if (compiles_) ::regfree(&compiled_);
    }
    Pattern(const Pattern &) = delete;
    Pattern &operator=(const Pattern &) = delete;
    bool matches(const char *text) const {
        return compiles_ && ::regexec(&compiled_, text, 0, nullptr, 0) == 0;
    }

  private:
    regex_t compiled_;
    bool compiles_;
};

// A range list, split and scanned item by item.
bool modelRangeList(const std::string &value, std::uint64_t greatest, std::size_t mostBytes) {
    static const Pattern item("^[0-9]{1,10}(-[0-9]{1,10})?$");
    if (value.empty() || value.size() > mostBytes || value.back() == ',') return false;
    if (std::strspn(value.c_str(), "1234567890,-") != value.size()) return false;
    constexpr unsigned long long kEnd = 1ull << 32;
    char buffer[32];
    SchemaSplitState state;
    for (const char *text =
             Schema_GetFirstSplitStr(value.c_str(), ",", sizeof buffer, buffer, &state);
         text; text = Schema_GetNextSplitStr(&state)) {
        if (!item.matches(text)) return false;
        unsigned long long first = 0, last = 0;
        if (std::strchr(text, '-')) {
            if (std::sscanf(text, "%llu-%llu", &first, &last) != 2) return false;
            if (first > last || last >= kEnd || last > greatest || first == 0) return false;
        } else {
            if (std::sscanf(text, "%llu", &first) != 1) return false;
            if (first == 0 || first >= kEnd || first > greatest) return false;
        }
    }
    return true;
}

// An object identifier, arc by arc.
bool modelOid(const std::string &value) {
    if (value.empty() || std::strspn(value.c_str(), ".0123456789") != value.size()) return false;
    if (value.front() == '.' || value.back() == '.') return false;
    if (value.find("..") != std::string::npos) return false;
    int arcs = 0;
    for (std::size_t at = 0; at < value.size(); ++arcs) {
        const std::size_t digits = std::strspn(value.c_str() + at, "0123456789");
        if (digits > 10) return false;
        unsigned long long arc = 0;
        if (std::sscanf(value.substr(at, 15).c_str(), "%llu", &arc) != 1) return false;
        if (arc >= 1ull << 32) return false;
        at += digits + 1;
    }
    return arcs <= 128;
}

struct Limits {
    std::uint64_t greatest;
    std::size_t mostBytes;
};
constexpr Limits kLimits[] = {
    {kPorts, kPortBytes}, {kVlans, kVlanBytes}, {kIndices, SIZE_MAX}, {12, 9},
    {0xFFFFFFFF, 40},     {1ull << 40, 30},
};

void expectAsModels(const std::string &value, int *validLists, int *validOids) {
    for (const Limits &limits : kLimits) {
        const bool valid = modelRangeList(value, limits.greatest, limits.mostBytes);
        *validLists += valid;
        ASSERT_EQ(cxml::isRangeList(value.c_str(), limits.greatest, limits.mostBytes), valid)
            << value << " up to " << limits.greatest;
    }
    const bool valid = modelOid(value);
    *validOids += valid;
    ASSERT_EQ(cxml::isObjectIdentifier(value.c_str()), valid) << value;
}

TEST(RangeList, EveryShortTextAsTheModels) {
    int validLists = 0, validOids = 0;
    for (const std::string_view alphabet : {"019,-", "01.4,", "1,-.a"}) {
        std::vector<std::string> texts = {""};
        for (std::size_t at = 0; at < texts.size(); ++at) {
            expectAsModels(texts[at], &validLists, &validOids);
            if (HasFatalFailure()) return;
            if (texts[at].size() == 6) continue;
            for (const char c : alphabet) texts.push_back(texts[at] + c);
        }
    }
    EXPECT_GT(validLists, 5000);
    EXPECT_GT(validOids, 500);
}

// Items near the limits, joined and then, more often than not, spoilt in one place.
TEST(RangeList, RandomTextsAsTheModels) {
    static constexpr const char *kNumbers[] = {
        "0",          "1",          "2",          "9",           "12",         "13",
        "4094",       "4095",       "65535",      "65536",       "3221225471", "3221225472",
        "4294967295", "4294967296", "4294967297", "9999999999",  "0000000001", "00000000001",
        "0000004094", "0000065535", "080",        "10000000000", "1111111111", "111111111111111",
    };
    static constexpr std::string_view kSpoilers = "0123456789,-.+ /:;aA\t\x80\xFF";
    std::mt19937 random(3);
    const auto number = [&random] { return std::string(kNumbers[random() % std::size(kNumbers)]); };
    int validLists = 0, validOids = 0;
    for (int round = 0; round < 200000; ++round) {
        const bool oid = random() % 2 == 0;
        std::string value;
        for (std::size_t items = random() % 6; items > 0; --items) {
            if (!value.empty()) value += oid ? '.' : ',';
            if (random() % 4) {
                value += std::to_string(1 + random() % (random() % 2 ? 20 : 5000));
            } else {
                value += number();
            }
            if (!oid && random() % 3 == 0) value += "-" + number();
        }
        for (std::size_t spoilt = random() % 3; spoilt > 1 && !value.empty(); --spoilt) {
            const std::size_t at = random() % value.size();
            const char c = kSpoilers[random() % kSpoilers.size()];
            switch (random() % 3) {
                case 0:
                    value[at] = c;
                    break;
                case 1:
                    value.insert(at, 1, c);
                    break;
                default:
                    value.erase(at, 1);
            }
        }
        expectAsModels(value, &validLists, &validOids);
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(validLists, 50000);
    EXPECT_GT(validOids, 10000);
}

// Long items, which the splitter cuts at 31 bytes.
TEST(RangeList, LongItemsAsTheModels) {
    std::mt19937 random(9);
    int validLists = 0, validOids = 0;
    for (int round = 0; round < 50000; ++round) {
        std::string value;
        for (std::size_t items = 1 + random() % 3; items > 0; --items) {
            if (!value.empty()) value += ',';
            const std::size_t zeros = random() % 2 ? random() % 10 : 20 + random() % 48;
            value += std::string(zeros, '0') + "1";
            if (random() % 4 == 0) value += "-2";
        }
        expectAsModels(value, &validLists, &validOids);
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(validLists, 1000);
}

TEST(ObjectIdentifier, NumbersOfArcsAsTheModel) {
    for (std::size_t arcs = 1; arcs <= 140; ++arcs) {
        const std::string value = repeated("7.", arcs - 1) + "7";
        EXPECT_EQ(modelOid(value), arcs <= 128);
        EXPECT_EQ(cxml::isObjectIdentifier(value.c_str()), modelOid(value)) << arcs;
    }
}

// ---------------------------------------------------------------- cost

TEST(RangeList, NeverAllocates) {
    const std::string ports = everyNumber(65535);
    const std::string indices = repeated("1000000-3221225471,", 60000) + "1";
    const std::string oid = repeated("4294967295.", 127) + "1";
    const support::FaultyHeap heap(1, true);
    EXPECT_TRUE(cxml::isRangeList(ports.c_str(), kPorts, kPortBytes));
    EXPECT_TRUE(cxml::isRangeList(indices.c_str(), kIndices, SIZE_MAX));
    EXPECT_TRUE(cxml::isObjectIdentifier(oid.c_str()));
    EXPECT_EQ(heap.allocations(), 0u);
}

TEST(RangeList, CostIsLinear) {
    struct Shape {
        const char *name;
        std::string_view item;
    };
    static constexpr Shape kShapes[] = {
        {"short items", "1,"},
        {"long items", "0000000001-3221225471,"},
        {"ranges", "1-2,"},
    };
    constexpr std::size_t kBytes = std::size_t{1} << 20;
    for (const Shape &shape : kShapes) {
        SCOPED_TRACE(shape.name);
        const std::size_t items = kBytes / shape.item.size();
        const std::string shortList = repeated(shape.item, items) + "1";
        const std::string longList = repeated(shape.item, 8 * items) + "1";
        EXPECT_TRUE(
            support::growsLinearly([&] { EXPECT_TRUE(isValid("_IfIndexRange", shortList)); },
                                   [&] { EXPECT_TRUE(isValid("_IfIndexRange", longList)); }));
    }
}

// What cannot be valid is not read to its end again and again.
TEST(RangeList, CostOfInvalidTextsIsLinear) {
    constexpr std::size_t kBytes = std::size_t{1} << 20;
    struct Shape {
        const char *name, *type;
        char filler;
    };
    static constexpr Shape kShapes[] = {
        {"digits", "_IfIndexRange", '1'}, {"zeros", "_IfIndexRange", '0'},
        {"commas", "_IfIndexRange", ','}, {"dashes", "_IfIndexRange", '-'},
        {"digits", "_PortRange", '1'},    {"arcs of digits", "OID", '1'},
        {"points", "OID", '.'},
    };
    for (const Shape &shape : kShapes) {
        SCOPED_TRACE(shape.name);
        const std::string shortText(kBytes, shape.filler), longText(8 * kBytes, shape.filler);
        EXPECT_TRUE(support::growsLinearly([&] { EXPECT_FALSE(isValid(shape.type, shortText)); },
                                           [&] { EXPECT_FALSE(isValid(shape.type, longText)); }));
    }
}

}  // namespace
