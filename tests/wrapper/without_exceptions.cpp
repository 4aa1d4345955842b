// compactxml.hpp in a program that is compiled without exceptions and without RTTI.
#include <compactxml.hpp>
#include <cstdio>
#include <string_view>

#ifdef __cpp_exceptions
#error "this is to be compiled with -fno-exceptions"
#endif

namespace {

int failures = 0;

void expect(bool good, const char *what) {
    if (good) return;
    std::printf("not so: %s\n", what);
    ++failures;
}

void readAndChange() {
    auto document = compactxml::parse("<switch><port name='1/0/1'/><port name='1/0/2'/></switch>");
    expect(bool(document), "the document is read");
    if (!document) return;
    int ports = 0;
    for (const compactxml::Element port : document->root().elements("port")) {
        if (auto mtu = port.appendElement("mtu", "9216"); !mtu)
            return expect(false, "it is appended");
        expect(port.attribute("name").has_value(), "a port has a name");
        ++ports;
    }
    expect(ports == 2, "there are two ports");
    const auto text = document->write(XML_DOM_NO_DECLARATION);
    expect(text && text->view().ends_with("<port name=\"1/0/2\"><mtu>9216</mtu></port></switch>"),
           "the document is written");
    std::size_t bytes = 0;
    const auto written =
        document->writeTo([&bytes](std::string_view piece) { return bytes += piece.size(), true; },
                          XML_DOM_NO_DECLARATION);
    expect(written && bytes == text->size(), "it is written to a sink");
    expect(!document->writeTo([](std::string_view) { return false; }), "a sink may refuse");
}

void handleErrors() {
    const auto document = compactxml::parse("<a></b>");
    expect(!document && document.error().message.ends_with("tag name mismatch."),
           "an error comes back");
    const auto element = compactxml::makeElement("a b");
    expect(!element && element.error().code == XML_REFUSED, "a bad name is refused");
    const compactxml::Schemas schemas;
    const auto verdict = schemas.validate(compactxml::Element());
    expect(!verdict && !verdict.where(), "nothing is not valid");
}

}  // namespace

int main() {
    readAndChange();
    handleErrors();
    if (failures == 0) std::printf("all as it should be\n");
    return failures == 0 ? 0 : 1;
}
