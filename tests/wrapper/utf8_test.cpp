#include <gtest/gtest.h>

#include "tests/support/faults.h"
#include "tests/wrapper/documents.h"

namespace {

using namespace compactxml;
using wrapper::parsed;
using wrapper::written;

constexpr std::string_view kPort = "端口", kPortInTree = "\xb6\xcb\xbf\xda";

TEST(WrapperUtf8, Converts) {
    EXPECT_EQ(fromUtf8(kPort).value(), kPortInTree);
    EXPECT_EQ(toUtf8(kPortInTree).value(), kPort);
    EXPECT_EQ(toUtf8("").value(), "");
    EXPECT_EQ(fromUtf8(std::string_view()).value(), "");
    // Every character has its place in GB18030.
    const std::string_view emoji = "a\xf0\x9f\x98\x80z";
    EXPECT_EQ(toUtf8(fromUtf8(emoji).value()).value(), emoji);
    const std::string_view withNul{"口\0口", 7};
    EXPECT_EQ(toUtf8(fromUtf8(withNul).value()).value(), withNul);
}

TEST(WrapperUtf8, RefusesWhatIsBroken) {
    for (const std::string_view broken : {"\xff", "a\xe5\x8f", "\xe5", "a\x80z", "\xe5\x8f z"}) {
        EXPECT_FALSE(fromUtf8(broken)) << broken;
    }
    for (const std::string_view broken : {"\xff", "a\xb6", "\xb6", "a\xb6 z", "\x81\x30\x81"}) {
        EXPECT_FALSE(toUtf8(broken)) << broken;
    }
    EXPECT_EQ(toUtf8("\xff").error().code, XML_REFUSED);
    EXPECT_EQ(toUtf8("\xff").error().message, "the text does not convert");
}

TEST(WrapperUtf8, AsciiNeedsNoConverter) {
    const support::MissingConverters missing;
    EXPECT_EQ(toUtf8("plain \x7f").value(), "plain \x7f");
    EXPECT_EQ(fromUtf8("plain").value(), "plain");
    EXPECT_EQ(missing.wanted(), 0U);
    EXPECT_FALSE(toUtf8(kPortInTree));
    EXPECT_FALSE(fromUtf8(kPort));
    EXPECT_EQ(missing.wanted(), 2U);
}

TEST(WrapperUtf8, OutOfATree) {
    const Document document = parsed("<端口 名='口'>端<![CDATA[口]]></端口>");
    const Element root = document.root();
    EXPECT_EQ(root.name(), kPortInTree);
    EXPECT_EQ(toUtf8(root.name()).value(), kPort);
    EXPECT_EQ(toUtf8(root.path()).value(), "/端口");
    EXPECT_EQ(root.textUtf8().value(), "端");
    EXPECT_EQ(root.children().front().valueUtf8().value(), "端");
    EXPECT_EQ(toUtf8(root.cdata()).value(), "口");
    EXPECT_EQ(root.attributes().front().valueUtf8().value(), "口");
    const std::string name = fromUtf8("名").value();
    EXPECT_EQ(root.attributeUtf8(name).value(), "口");
    const std::string missing = fromUtf8("口").value();
    EXPECT_EQ(root.attributeUtf8(missing).error().message, "no attribute '口'");
}

TEST(WrapperUtf8, IntoATree) {
    const Document document = parsed("<r a='1'>old</r>");
    const Element root = document.root();
    root.setTextUtf8(kPort).value();
    root.setAttributeUtf8("a", "口").value();
    root.setAttributeUtf8("名", "x").value();
    root.appendElementUtf8("端", "口").value();
    EXPECT_EQ(root.text(), kPortInTree);
    EXPECT_EQ(written(document), "<r a=\"口\" 名=\"x\">端口<端>口</端></r>");
}

TEST(WrapperUtf8, BrokenTextDoesNotComeIn) {
    const Document document = parsed("<r a='1'>old</r>");
    const Element root = document.root();
    EXPECT_FALSE(root.setTextUtf8("\xff"));
    EXPECT_FALSE(root.setAttributeUtf8("a", "\xff"));
    EXPECT_FALSE(root.setAttributeUtf8("\xff", "a"));
    EXPECT_FALSE(root.appendElementUtf8("\xff", "a"));
    EXPECT_FALSE(root.appendElementUtf8("a", "\xff"));
    EXPECT_EQ(written(document), "<r a=\"1\">old</r>");
}

TEST(WrapperUtf8, BrokenTextOfATreeDoesNotComeOut) {
    const Document document = parsed("<r a='1'>old</r>");
    const Element root = document.root();
    root.setText("\xff").value();
    root.setAttribute("a", "\xff").value();
    EXPECT_EQ(root.text(), "\xff");
    EXPECT_FALSE(root.textUtf8());
    EXPECT_FALSE(root.attributeUtf8("a"));
    EXPECT_FALSE(document.write());
    // A message is given all the same.
    EXPECT_EQ(root.attributeUtf8("\xff!").error().message, "no attribute '?!'");
}

}  // namespace
