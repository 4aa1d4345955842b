#include <compactxml.hpp>
#include <iostream>

int main() try {
    constexpr auto text = R"(<switch><port name="1/0/1" vlan="10"/></switch>)";
    const compactxml::Document config = compactxml::parse(text).value();
    for (const compactxml::Element port : config.root().elements("port")) {
        std::cout << "port " << port.attribute("name").value_or("?") << ", VLAN "
                  << port.attribute("vlan").value_or("none") << '\n';
        port.appendElement("mtu", "9216").value();
    }
    std::cout << config.write().value().view() << '\n';
} catch (const compactxml::Exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
