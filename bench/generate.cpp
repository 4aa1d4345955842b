#include "generate.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

namespace bench {
namespace {

// splitmix64: the standard generators are fixed by the standard, the distributions are not.
class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint32_t below(std::uint32_t bound) {
        state_ += 0x9E3779B97F4A7C15u;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return static_cast<std::uint32_t>((z ^ (z >> 31)) % bound);
    }
    bool oneIn(std::uint32_t n) { return below(n) == 0; }
    template <std::size_t N>
    std::string_view pick(const std::array<std::string_view, N> &words) {
        return words[below(N)];
    }

  private:
    std::uint64_t state_;
};

constexpr std::array<std::string_view, 32> kWords = {
    "uplink",   "to",      "the",      "core",     "switch", "in",    "rack",    "row",
    "building", "north",   "customer", "backbone", "link",   "spare", "patched", "through",
    "panel",    "with",    "fibre",    "copper",   "and",    "a",     "second",  "path",
    "for",      "traffic", "of",       "office",   "floor",  "voice", "camera",  "management"};

constexpr std::array<std::string_view, 24> kChineseWords = {
    "核心交换机", "接入", "上行链路", "机房",   "办公楼", "三层",     "备用", "光纤",
    "语音",       "监控", "管理网",   "客户",   "汇聚",   "北区",     "南区", "配线架",
    "服务器",     "无线", "出口",     "防火墙", "负载",   "二号机柜", "链路", "流量"};

constexpr std::array<std::string_view, 4> kTextReferences = {" &amp; ", " &lt;1 ms ", " -&gt; ",
                                                             " &#8212; "};
// Beside Chinese text only those that mean ASCII: a library that takes the bytes of any encoding as
// they are would put UTF-8 in place of the fourth.
constexpr std::array<std::string_view, 3> kAsciiReferences = {" &amp; ", " &lt;1 ms ", " -&gt; "};
constexpr std::array<std::string_view, 4> kPortFamilies = {"GigabitEthernet", "XGigabitEthernet",
                                                           "Ethernet", "Eth-Trunk"};
constexpr std::array<std::string_view, 3> kActions = {"permit", "deny", "permit"};
constexpr std::array<std::string_view, 4> kProtocols = {"tcp", "udp", "icmp", "ip"};
constexpr std::array<std::string_view, 3> kDuplex = {"full", "full", "auto"};

enum class Language { english, chinese, either };  // either: one text in four is Chinese

// Braces evaluate their items in order, which operands of + and arguments need not be; so the
// random numbers come out the same with every compiler.
std::string join(std::initializer_list<std::string_view> parts) {
    std::string joined;
    for (const std::string_view part : parts) joined += part;
    return joined;
}

// Appends indented markup to a document.
class Writer {
  public:
    Writer(std::string &out, Random &random, Language language)
        : out_(out), random_(random), language_(language) {}

    void open(std::string_view name, std::string_view attributes = "") {
        line({"<", name, attributes, ">"});
        names_.emplace_back(name);
    }
    void close() {
        const std::string name = std::move(names_.back());
        names_.pop_back();
        line({"</", name, ">"});
    }
    void leaf(std::string_view name, std::string_view text) {
        line({"<", name, ">", text, "</", name, ">"});
    }
    void line(std::initializer_list<std::string_view> parts) {
        out_.append(2 * names_.size(), ' ');
        for (const std::string_view part : parts) out_ += part;
        out_ += '\n';
    }

    std::string number(std::uint32_t from, std::uint32_t to) {
        return std::to_string(from + random_.below(to - from + 1));
    }
    std::string address4() {
        return join({"10.", number(0, 255), ".", number(0, 255), ".", number(1, 254)});
    }
    std::string network() { return join({address4(), "/", number(8, 32)}); }
    std::string address6() {
        static constexpr char kHex[] = "0123456789abcdef";
        std::string text = "2001:db8";
        for (int group = 0; group < 3; ++group) {
            text += ':';
            for (int digit = 0; digit < 4; ++digit) text += kHex[random_.below(16)];
        }
        return text + "::1";
    }
    std::string port() {
        return join(
            {random_.pick(kPortFamilies), number(0, 7), "/", number(0, 3), "/", number(1, 48)});
    }
    // A reference never stands at an end, so trimmed and untrimmed text agree.
    std::string words(std::uint32_t count, std::uint32_t oneReferenceIn) {
        const bool chinese =
            language_ == Language::chinese || (language_ == Language::either && random_.oneIn(4));
        std::string text;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (i) {
                if (random_.oneIn(oneReferenceIn)) {
                    text += reference();
                } else if (!chinese) {
                    text += ' ';
                }
            }
            text += chinese ? random_.pick(kChineseWords) : random_.pick(kWords);
        }
        return text;
    }
    Random &random() { return random_; }

  private:
    std::string_view reference() {
        return language_ == Language::english ? random_.pick(kTextReferences)
                                              : random_.pick(kAsciiReferences);
    }

    std::string &out_;
    Random &random_;
    Language language_;
    std::vector<std::string> names_;  // of the open elements
};

void addInterface(Writer &w, std::uint32_t index) {
    Random &random = w.random();
    w.open("if:interface", join({" index=\"", std::to_string(index), "\" enabled=\"",
                                 random.oneIn(6) ? "false" : "true", "\""}));
    w.leaf("if:name", w.port());
    w.leaf("if:description", w.words(2 + random.below(6), 12));
    w.leaf("if:mtu", random.oneIn(5) ? "9216" : "1500");
    w.open("if:ethernet");
    w.leaf("if:speed", random.oneIn(4) ? "10000" : "1000");
    w.leaf("if:duplex", random.pick(kDuplex));
    w.close();
    if (random.oneIn(3)) {
        w.open("ip:ipv4");
        w.line({"<ip:address ip:prefix-length=\"", w.number(8, 30), "\">", w.address4(),
                "</ip:address>"});
        w.close();
        w.open("ip:ipv6");
        w.line({"<ip:address ip:prefix-length=\"64\">", w.address6(), "</ip:address>"});
        w.close();
    } else {
        w.open("vlan:switchport", random.oneIn(3) ? " mode=\"trunk\"" : " mode=\"access\"");
        w.leaf("vlan:pvid", w.number(1, 4094));
        w.leaf("vlan:allowed",
               join({w.number(2, 99), "-", w.number(100, 999), ",", w.number(1000, 4094)}));
        w.close();
    }
    w.close();
}

void addVlan(Writer &w) {
    w.open("vlan:vlan", join({" id=\"", w.number(1, 4094), "\""}));
    w.leaf("vlan:name", w.words(2, 30));
    w.line({"<vlan:igmp-snooping enabled=\"true\"/>"});
    w.close();
}

void addAccessList(Writer &w, std::uint32_t index) {
    Random &random = w.random();
    w.open("access-list", join({" number=\"", std::to_string(3000 + index % 1000), "\""}));
    const std::uint32_t rules = 2 + random.below(6);
    for (std::uint32_t i = 0; i < rules; ++i) {
        w.open("rule", join({" id=\"", std::to_string(5 * i), "\" action=\"", random.pick(kActions),
                             "\""}));
        w.leaf("protocol", random.pick(kProtocols));
        w.leaf("source", w.network());
        w.leaf("destination", w.network());
        if (random.oneIn(2)) w.leaf("destination-port", w.number(1, 65535));
        w.close();
    }
    w.close();
}

void addRoute(Writer &w) {
    w.line({"<route destination=\"", w.network(), "\" next-hop=\"", w.address4(),
            "\" preference=\"", w.number(1, 255), "\" description=\"", w.words(2, 9), "\"/>"});
}

void addBanner(Writer &w) {
    w.line({"<banner><![CDATA[*** <", w.words(4, 50), "> ***]]></banner>"});
}

// What select-far and select-last look for: elements of names that occur once.
void addManagement(Writer &w) {
    w.open("management");
    w.leaf("contact", join({"operator-", w.number(100, 999)}));
    w.close();
}

void addRevision(Writer &w) {
    w.open("revision");
    w.leaf("value", w.number(1000, 9999));
    w.close();
}

void fillConfiguration(std::string &out, std::size_t size, Random &random, Language language) {
    Writer w(out, random, language);
    w.open("config",
           " xmlns=\"urn:example:switch\" xmlns:if=\"urn:example:interfaces\""
           " xmlns:ip=\"urn:example:ip\" xmlns:vlan=\"urn:example:vlan\"");
    w.open("system");
    w.leaf("hostname", join({"switch-", w.number(1, 999)}));
    w.leaf("location", w.words(4, 8));
    addBanner(w);
    w.close();
    bool halfway = false;
    const auto full = [&] { return out.size() + sizeof "</config>" >= size; };
    for (std::uint32_t index = 1; !full(); ++index) {
        addInterface(w, index);
        if (index % 3 == 0 && !full()) addRoute(w);
        if (index % 4 == 0 && !full()) addVlan(w);
        if (index % 8 == 4 && !full()) addAccessList(w, index);
        if (index % 512 == 0 && !full()) addBanner(w);
        if (!halfway && out.size() >= size / 2) {
            addManagement(w);
            halfway = true;
        }
    }
    addRevision(w);
    w.close();
}

void addRpcInterface(Writer &w) {
    Random &random = w.random();
    w.open("interface", random.oneIn(2) ? " nc:operation=\"merge\"" : "");
    w.leaf("name", w.port());
    w.leaf("description", w.words(2 + random.below(4), 12));
    w.leaf("type", "ianaift:ethernetCsmacd");
    w.leaf("enabled", random.oneIn(6) ? "false" : "true");
    w.open("ip:ipv4");
    w.leaf("ip:mtu", "1500");
    w.open("ip:address");
    w.leaf("ip:ip", w.address4());
    w.leaf("ip:prefix-length", w.number(8, 30));
    w.close();
    w.close();
    w.close();
}

// A request of the NETCONF protocol to change interfaces.
void fillRpc(std::string &out, std::size_t size, Random &random) {
    Writer w(out, random, Language::english);
    w.open("rpc",
           " xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\""
           " xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\" message-id=\"101\"");
    w.open("edit-config");
    w.open("target");
    w.line({"<running/>"});
    w.close();
    w.leaf("default-operation", "merge");
    w.leaf("test-option", "set");
    w.open("config");
    w.open("interfaces",
           " xmlns=\"urn:ietf:params:xml:ns:yang:ietf-interfaces\""
           " xmlns:ip=\"urn:ietf:params:xml:ns:yang:ietf-ip\""
           " xmlns:ianaift=\"urn:ietf:params:xml:ns:yang:iana-if-type\"");
    bool halfway = false;
    while (out.size() + 200 < size) {  // what still follows takes about that
        addRpcInterface(w);
        if (!halfway && out.size() >= size / 2) {
            addManagement(w);
            halfway = true;
        }
    }
    addRevision(w);
    for (int open = 4; open > 0; --open) w.close();
}

void fillText(std::string &out, std::size_t size, Random &random) {
    Writer w(out, random, Language::english);
    w.open("manual");
    for (std::uint32_t index = 1; out.size() + sizeof "</manual>" < size; ++index) {
        std::string text;
        const std::uint32_t lines = 1 + random.below(12);
        for (std::uint32_t i = 0; i < lines; ++i) {
            if (i) text += "\n    ";
            text += w.words(10 + random.below(6), 40);
        }
        w.line({"<para n=\"", std::to_string(index), "\">", text, "</para>"});
    }
    w.close();
}

void fillAttributes(std::string &out, std::size_t size, Random &random) {
    Writer w(out, random, Language::english);
    w.open("counters", " xmlns=\"urn:example:counters\" xmlns:q=\"urn:example:quality\"");
    for (std::uint32_t index = 1; out.size() + sizeof "</counters>" < size; ++index) {
        w.line({"<port id=\"",
                std::to_string(index),
                "\" name=\"",
                w.port(),
                "\" in-octets=\"",
                w.number(0, 4000000000u),
                "\" in-packets=\"",
                w.number(0, 90000000),
                "\" in-errors=\"",
                w.number(0, 9),
                "\" out-octets=\"",
                w.number(0, 4000000000u),
                "\" out-packets=\"",
                w.number(0, 90000000),
                "\" out-errors=\"",
                w.number(0, 9),
                "\" speed=\"1000\" duplex=\"",
                random.pick(kDuplex),
                "\" q:class=\"",
                w.number(0, 7),
                "\" q:drops=\"",
                w.number(0, 99),
                "\" peer=\"",
                w.words(2, 10),
                "\"/>"});
    }
    w.close();
}

}  // namespace

std::string generate(Kind kind, std::size_t size) {
    Random random(20240229);
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    out.reserve(size + 4096);
    switch (kind) {
        case Kind::rpc:
            fillRpc(out, size, random);
            break;
        case Kind::configuration:
            fillConfiguration(out, size, random, Language::english);
            break;
        case Kind::mixedConfiguration:
            fillConfiguration(out, size, random, Language::either);
            break;
        case Kind::chinese:
            fillConfiguration(out, size, random, Language::chinese);
            break;
        case Kind::text:
            fillText(out, size, random);
            break;
        case Kind::attributes:
            fillAttributes(out, size, random);
            break;
    }
    return out;
}

}  // namespace bench
