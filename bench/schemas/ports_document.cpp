#include "ports_document.h"

#include <string_view>

namespace bench {
namespace {

void addPort(std::string &out, unsigned number, std::string_view mtu) {
    const std::string id = std::to_string(number);
    out.append("  <port id=\"").append(id).append("\" name=\"ge-").append(id);
    out.append("\">\n    <enabled>").append(number % 7 ? "true" : "false");
    out.append("</enabled>\n    <mtu>").append(mtu).append("</mtu>\n");
    if (number % 3) out += "    <speed>1000</speed>\n";
    if (number % 2) {
        out.append("    <description>uplink of floor ").append(id).append("</description>\n");
    }
    for (unsigned vlan = 0; vlan < number % 4; ++vlan) {
        out.append("    <vlan>").append(std::to_string(1 + (number * 7 + vlan) % 4094));
        out += "</vlan>\n";
    }
    out.append("    <octets>").append(std::to_string(9876543210ull * number));
    out += "</octets>\n    <changed>2026-03-14T02:30:00Z</changed>\n  </port>\n";
}

}  // namespace

std::string makePorts(std::size_t size, bool valid) {
    std::string out = "<ports xmlns=\"urn:example:ports\" revision=\"7\">\n";
    out.reserve(size + 1000);
    unsigned number = 1;
    for (; out.size() < size; ++number) {
        addPort(out, number, std::to_string(1500 + number % 5 * 1000));
    }
    if (!valid) addPort(out, number, "9217");
    return out + "</ports>\n";
}

}  // namespace bench
