#include "switch_document.h"

#include <initializer_list>
#include <string_view>

namespace bench {
namespace {

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<sw:switch xmlns:sw=\"urn:example:switch:1\" xmlns=\"urn:example:switch:1\""
    " xmlns:if=\"urn:example:switch:interfaces:1\" xmlns:vlan=\"urn:example:switch:vlans:1\""
    " xmlns:acl=\"urn:example:switch:filters:1\" xmlns:rt=\"urn:example:switch:routing:1\""
    " revision=\"2417\" saved=\"2026-03-14T02:30:00+08:00\">\n"
    "  <system>\n"
    "    <hostname>agg-east-3</hostname>\n"
    "    <domain>net.example.net</domain>\n"
    "    <location floor=\"3\" rack=\"B-07\">east campus, building 3</location>\n"
    "    <contact>network &amp; telephones, 6021</contact>\n"
    "    <serial>EX-0000-4711-03</serial>\n"
    "    <timezone offset=\"+08:00\">Asia/Shanghai</timezone>\n"
    "    <maintenance-window day=\"sunday\" from=\"02:00\" to=\"04:30\"/>\n"
    "  </system>\n";
constexpr std::string_view kTree =
    "  <spanning-tree mode=\"rapid\" priority=\"8192\" hello=\"2\" max-age=\"20\">\n"
    "    <edge ports=\"1/0/1-1/0/36 2/0/1-2/0/36\" guard=\"true\"/>\n"
    "  </spanning-tree>\n";

void add(std::string &out, std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) out += part;
}

std::string portName(unsigned number) {
    return std::to_string(1 + number / 480 % 8) + "/" + std::to_string(number / 48 % 10) + "/" +
           std::to_string(1 + number % 48);
}

// As many as the identifiers go; the lists that follow go on.
void addVlan(std::string &out, unsigned number) {
    if (number > 4094) return;
    const std::string id = std::to_string(number), port = portName(number);
    add(out, {"    <vlan:vlan id=\"", id, "\" name=\"vlan-", id, "\" state=\"",
              number % 8 ? "active" : "suspended", "\">\n      <vlan:description>",
              number % 4 == 1 ? "\u529e\u516c\u7f51\uff1a" : "office of floor ", id,
              "</vlan:description>\n      <vlan:tagged ports=\"", port, " lag1\"/>\n"});
    if (number % 3 == 0) out += "      <vlan:isolated>true</vlan:isolated>\n";
    out += "    </vlan:vlan>\n";
}

void addSwitchedPort(std::string &out, unsigned number) {
    const std::string vlan = std::to_string(1 + number % 4094);
    if (number % 4 == 0) {
        add(out, {"      <if:trunk native=\"", vlan, "\" allowed=\"", vlan, " 40 50\"/>\n"});
    } else {
        add(out, {"      <if:access vlan=\"", vlan, "\" voice=\"20\"/>\n"});
    }
    if (number % 3 == 0) out += "      <if:mtu>9216</if:mtu>\n";
    if (number % 5 == 1) {
        out += "      <if:power-over-ethernet class=\"4\" limit=\"30.0\" priority=\"low\"/>\n";
    }
}

void addRoutedPort(std::string &out, unsigned number) {
    const std::string high = std::to_string(number / 250 % 250);
    const std::string low = std::to_string(1 + number % 250);
    add(out, {"      <if:ipv4 address=\"10.1.", high, ".", low, "\" prefix=\"24\"/>\n"});
    add(out, {"      <if:ipv6 address=\"2001:db8:", high, "::", low, "\" prefix=\"64\"/>\n"});
}

void addInterface(std::string &out, unsigned number) {
    const bool routed = number % 6 == 0;
    const std::string id = std::to_string(number), port = portName(number);
    add(out, {"    <if:interface name=\"", port, "\" type=\"", routed ? "routed" : "ethernet",
              "\" enabled=\"", number % 7 ? "true" : "false", "\" speed=\"",
              number % 2 ? "1000" : "auto", "\" duplex=\"full\">\n      <if:description>",
              number % 4 == 3 ? "\u4f1a\u8bae\u5ba4 " : "uplink to the core, row ", id,
              "</if:description>\n"});
    routed ? addRoutedPort(out, number) : addSwitchedPort(out, number);
    out += "    </if:interface>\n";
}

void addRule(std::string &out, unsigned number) {
    const std::string id = std::to_string(number % 9999 + 1);
    const std::string low = std::to_string(number % 250);
    add(out, {"      <acl:rule number=\"", id, "\" action=\"", number % 3 ? "permit" : "deny",
              "\" protocol=\"", number % 4 ? "tcp" : "17",
              "\">\n        <acl:source prefix=\"198.51.100.", low,
              "/32\"/>\n        <acl:destination any=\"true\" ports=\"80 443 8000-8010\"/>\n"
              "      </acl:rule>\n"});
}

void addRoute(std::string &out, unsigned number, std::string_view preference) {
    const std::string high = std::to_string(number / 250 % 250);
    const std::string low = std::to_string(number % 250);
    add(out, {"      <rt:route prefix=\"172.16.", high, ".", low, "/32\" via=\"10.1.", high, ".",
              low, "\" preference=\"", preference, "\">\n        <rt:note>to building ", low,
              "</rt:note>\n      </rt:route>\n"});
}

}  // namespace

std::string makeSwitch(std::size_t size, bool valid) {
    std::string vlans = "  <vlan:vlans>\n", interfaces = "  <if:interfaces>\n";
    std::string rules = "  <acl:filters>\n    <acl:filter name=\"in\" family=\"ipv4\">\n";
    std::string routes = "  <rt:routing router-id=\"192.0.2.3\">\n    <rt:static>\n";
    const auto length = [&] {
        return kHead.size() + vlans.size() + kTree.size() + interfaces.size() + rules.size() +
               routes.size() + 200;  // the end tags
    };
    unsigned number = 1;
    do {
        if (number % 2) addVlan(vlans, number / 2 + 1);
        addInterface(interfaces, number);
        if (number % 3 == 1) addRule(rules, number);
        if (number % 3 == 2) addRoute(routes, number, "60");
        ++number;
    } while (length() < size);
    if (!valid) addRoute(routes, number, "256");
    std::string out;
    out.reserve(length());
    add(out, {kHead, vlans, "  </vlan:vlans>\n", kTree, interfaces, "  </if:interfaces>\n", rules,
              "    </acl:filter>\n  </acl:filters>\n", routes,
              "    </rt:static>\n  </rt:routing>\n</sw:switch>\n"});
    return out;
}

}  // namespace bench
