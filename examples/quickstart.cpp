#include <compactxml.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string_view>

struct Release {
    void operator()(XML_DOM_Node *node) const { XML_DOM_DelNode(node); }
    void operator()(char *text) const { std::free(text); }
};
template <class T>
using Owned = std::unique_ptr<T, Release>;

int main() {
    constexpr std::string_view document = R"(<switch><port name="1/0/1" vlan="10"/></switch>)";
    char error[256] = "", *text = nullptr;
    const Owned<XML_DOM_Node> root{
        XML_DOM_BuildTreeByMem(document.data(), document.size(), sizeof error, error)};
    XML_DOM_Node *port = XML_DOM_GetFirstChild(root.get());
    if (!port) return std::cerr << error << '\n', EXIT_FAILURE;
    std::cout << "port " << XML_DOM_GetNodeAttrValByName(port, "name") << ", VLAN "
              << XML_DOM_GetNodeAttrValByName(port, "vlan") << '\n';
    XML_DOM_AddChildNode(port, XML_DOM_CreateElementWithText("mtu", "9216"));
    if (XML_DOM_TranslateStr(root.get(), 0, &text, nullptr) != XML_OK) return EXIT_FAILURE;
    std::cout << Owned<char>{text}.get() << '\n';
}
