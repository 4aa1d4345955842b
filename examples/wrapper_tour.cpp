// What the guide shows of compactxml.hpp: reads the configuration of a switch, looks through it, changes
// it, writes and validates it, and handles an error in both styles.
//
//   wrapper_tour DATA_DIRECTORY OUTPUT_FILE
#include <algorithm>
#include <compactxml.hpp>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "switch.h"

namespace {

// [tour query]
bool isActive(compactxml::Element vlan) {
    return vlan.attribute("state") == "active";
}

void show(compactxml::Element root) {
    const auto vlans = root.child("vlans").elements("vlan");
    for (const compactxml::Element vlan : vlans) {
        std::cout << "VLAN " << vlan.attribute("id").value_or("?");
        if (const auto description = vlan.child("description")) {
            std::cout << ": " << description.textUtf8().value();
        }
        std::cout << '\n';
    }
    std::cout << std::ranges::count_if(vlans, isActive) << " are active on "
              << root.selectText("system/hostname").value_or("a switch without a name") << '\n';
}
// [tour query end]

// [tour change]
// Adds a VLAN in front of <vlan:ranges>, which has to stay the last.
void addPrinters(compactxml::Element vlans) {
    compactxml::OwnedNode made = compactxml::makeElement("vlan").value();
    const compactxml::Element vlan =
        vlans.insert(vlans.child("ranges"), std::move(made)).value().asElement();
    vlan.setPrefix("vlan").value();  // found above the element, so once it stands there
    vlan.setAttribute("id", "60").value();
    vlan.setAttribute("name", "printers").value();
    vlan.setAttribute("state", "active").value();
    vlan.appendElementUtf8("description", "打印机").value().setPrefix("vlan").value();
}
// [tour change end]

// [tour write]
void save(const compactxml::Document &config, const std::string &path) {
    std::ofstream file(path, std::ios::binary);
    config.writeTo([&file](std::string_view piece) { return bool(file << piece); }).value();
    if (!file.flush()) throw std::runtime_error("cannot write " + path);
}
// [tour write end]

// [tour validate]
bool isValid(const compactxml::Document &config) {
    compactxml::Schemas schemas;  // made once, for any number of documents
    schemas.add(SchemaReg_switch, SchemaDereg_switch).value();
    const compactxml::Verdict verdict = schemas.validate(config);
    if (!verdict) std::cout << "not valid: " << verdict.error().message << '\n';
    return bool(verdict);
}
// [tour validate end]

// [tour errors]
void readWithoutExceptions(const std::string &path) {
    const compactxml::Result<compactxml::Document> config = compactxml::readFile(path);
    if (config) {
        std::cout << "the root is " << config->root().name() << '\n';
    } else {
        std::cout << "not read: " << config.error().message << '\n';
    }
}

void readWithExceptions(const std::string &path) {
    try {
        const compactxml::Document config = compactxml::readFile(path).value();
        std::cout << "the root is " << config.root().name() << '\n';
    } catch (const compactxml::Exception &exception) {
        std::cout << "not read: " << exception.what() << '\n';
    }
}
// [tour errors end]

int run(const std::string &data, const std::string &output) {
    const compactxml::Document config = compactxml::readFile(data + "/switch.xml").value();
    addPrinters(config.root().child("vlans"));
    show(config.root());
    save(config, output);
    const compactxml::Document saved = compactxml::readFile(output).value();
    if (!isValid(saved)) return 1;
    saved.root().select("vlans/vlan").setAttribute("id", "4095").value();
    if (isValid(saved)) return 1;
    readWithoutExceptions(data + "/broken.xml");
    readWithExceptions(data + "/broken.xml");
    return 0;
}

}  // namespace

int main(int argc, char **argv) {
    if (argc != 3) return std::fputs("usage: wrapper_tour DATA_DIRECTORY OUTPUT_FILE\n", stderr), 1;
    try {
        return run(argv[1], argv[2]);
    } catch (const std::exception &exception) {
        std::cerr << exception.what() << '\n';
        return 1;
    }
}
