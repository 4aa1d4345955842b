// Whether the count of work tells lines from squares.
#include "tests/hostile/work.h"

#include <string>

#include "compactxml.h"
#include "tests/support/written.h"

namespace {

using hostile::staysLevel;

// Attributes added one by one, each after a look at those before it, as XML_DOM_AddAttr promises; or
// without that look.
struct Attributes {
    std::size_t size() const { return count; }
    void run() const {
        const support::NodePtr element(XML_DOM_CreateElementNode("e"));
        for (std::size_t i = 0; i < count; ++i) {
            const std::string name = "a" + std::to_string(i);
            ASSERT_TRUE(add(element.get(), name.c_str()));
        }
    }
    std::size_t count;
    XML_DOM_Attr *(*add)(XML_DOM_Node *element, const char *name);
};

TEST(Work, OfSquaresIsNotLevel) {
    EXPECT_FALSE(staysLevel(200, [](std::size_t n) {
        return Attributes{n, [](XML_DOM_Node *element, const char *name) {
                              return XML_DOM_AddAttr(element, nullptr, name, "");
                          }};
    }));
}

TEST(Work, OfLinesIsLevel) {
    EXPECT_TRUE(staysLevel(200, [](std::size_t n) {
        return Attributes{n, [](XML_DOM_Node *element, const char *name) {
                              return XML_DOM_AddAttrInner(element, name, "");
                          }};
    }));
}

TEST(Work, ThatIsNotSeenIsNotLevel) {
    EXPECT_FALSE(staysLevel({1000, 0}, {8000, 0}));
}

}  // namespace
