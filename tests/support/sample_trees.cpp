#include "tests/support/sample_trees.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace support {
namespace {

void add(XML_DOM_Node *parent, XML_DOM_Node *child) {
    EXPECT_EQ(XML_DOM_AddChildNode(parent, child), XML_OK);
}

class Generator {
  public:
    Generator(std::uint32_t seed, bool plain) : random_(seed), plain_(plain) {}

    XML_DOM_Node *tree(int levels) {
        XML_DOM_Node *element = XML_DOM_CreateElementNodeInner(name());
        elements_.push_back(element);
        decorate(element);
        for (std::size_t children = levels > 0 ? below(5) : 0; children > 0; --children) {
            switch (below(4)) {
                case 0:
                    add(element, XML_DOM_CreateTextNode(text().c_str()));
                    break;
                case 1:
                    add(element, XML_DOM_CreateCDataNode(text().c_str()));
                    break;
                default:
                    add(element, tree(levels - 1));
                    break;
            }
        }
        return element;
    }

    // Prefixes are set once the tree is whole, for they come from above.
    void setPrefixes() {
        for (XML_DOM_Node *element : elements_) {
            if (below(3) == 0) XML_DOM_SetNodeNameSpace(element, prefix());
            for (XML_DOM_Attr *attr = element->firstAttr; attr; attr = attr->next) {
                if (below(2) == 0) XML_DOM_SetAttrNsInner(attr, prefix());
            }
        }
    }

  private:
    std::size_t below(std::size_t bound) { return random_() % bound; }

    const char *name() {
        static constexpr std::array<const char *, 5> kNames = {
            "a", "port", "x-1", "\xB6\xCB\xBF\xDA", "interface-with-a-long-name"};
        return kNames[below(kNames.size())];
    }
    const char *prefix() {
        static constexpr std::array<const char *, 4> kPrefixes = {"p", "q", "xml", "undeclared"};
        return kPrefixes[below(kPrefixes.size())];
    }

    std::string text() {
        static constexpr std::array<std::string_view, 15> kPlain = {
            " ",   "\t",   "\n",  "\r", "<",        ">", "&", "\"",
            "]]>", "text", "a b", "  ", "\xD6\xD0", "'", ""};
        static constexpr std::array<std::string_view, 6> kRare = {
            "\x94\x39\xFC\x36", "\xA8\xA6", "\xFF", "\xD6", "\x90\x30\x81\x30", "\xC3\xA9"};
        std::string result;
        for (std::size_t parts = below(5); parts > 0; --parts) {
            if (!plain_ && below(12) == 0) {
                result += kRare[below(kRare.size())];
            } else if (below(30) == 0) {
                result += std::string(below(600), 'L');
            } else {
                result += kPlain[below(kPlain.size())];
            }
        }
        return result;
    }

    void decorate(XML_DOM_Node *element) {
        for (const char *prefix : {"p", "q", static_cast<const char *>(nullptr)}) {
            if (below(4) == 0) XML_DOM_AddNodeNameSpaceInner(element, prefix, text().c_str(), 0);
        }
        for (std::size_t attributes = below(4); attributes > 0; --attributes) {
            XML_DOM_AddAttrInner(element, name(), text().c_str());
        }
    }

    std::mt19937 random_;
    bool plain_;
    std::vector<XML_DOM_Node *> elements_;
};

}  // namespace

NodePtr richDocument(std::uint32_t encoding) {
    NodePtr root(XML_DOM_CreateElementNode("r"));
    EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    EXPECT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "p", "urn:p"), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(root.get(), nullptr, "urn:d"), XML_OK);
    EXPECT_NE(XML_DOM_AddAttr(root.get(), nullptr, "a", "1"), nullptr);
    EXPECT_NE(XML_DOM_AddAttr(root.get(), "p", "b", "<&>"), nullptr);
    add(root.get(), XML_DOM_CreateElementWithText("e", " x<y "));
    add(root.get(), XML_DOM_CreateTextNode("mixed \xD6\xD0\xCE\xC4"));
    add(root.get(), XML_DOM_CreateElementWithCData("c", "]] & <"));
    add(root.get(), XML_DOM_CreateElementNode("empty"));
    add(root.get(), XML_DOM_CreateCDataNode(""));
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(root->firstChild, "p"), XML_OK);
    return root;
}

NodePtr randomTree(std::uint32_t seed, bool plain) {
    Generator generator(seed, plain);
    NodePtr root(generator.tree(3));
    generator.setPrefixes();
    if (seed % 2 == 0) {
        EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    }
    return root;
}

}  // namespace support
