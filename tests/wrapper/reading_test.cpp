#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/wrapper/documents.h"

namespace {

using namespace compactxml;
using wrapper::kWithNul;
using wrapper::parsed;

constexpr char kSwitch[] = R"(<switch xmlns="urn:sw" xmlns:q="urn:qos">
  <vlan id="10" q:class="gold" class="tin"><name>office</name><mtu>9216</mtu></vlan>
  <vlan id="20"><name>-7 and more</name><![CDATA[<b>]]></vlan>
  <q:policy/>
</switch>)";

TEST(WrapperReading, NamesAndText) {
    const Document document = parsed(kSwitch);
    const Element vlan = document.root().child("vlan");
    EXPECT_EQ(vlan.name(), "vlan");
    EXPECT_EQ(vlan.text(), "");
    EXPECT_EQ(vlan.child("name").text(), "office");
    EXPECT_EQ(vlan.child("name").textUtf8().value(), "office");
    EXPECT_EQ(vlan.next().cdata(), "<b>");
    EXPECT_EQ(vlan.cdata(), "");
    const Node text = vlan.child("name").children().front();
    EXPECT_EQ(text.value(), "office");
    EXPECT_EQ(text.name(), "");
    EXPECT_EQ(vlan.value(), "");
}

TEST(WrapperReading, ViewsAreOfTheTreesOwnBytes) {
    const Document document = parsed("<a b='c'>d</a>");
    const Element root = document.root();
    EXPECT_EQ(root.name().data(), XML_DOM_GetNodeName(document.get()));
    EXPECT_EQ(root.text().data(), XML_DOM_GetFirstTextChildValue(document.get()));
    EXPECT_EQ(root.attribute("b")->data(), XML_DOM_GetNodeAttrValByName(document.get(), "b"));
}

TEST(WrapperReading, Navigation) {
    const Document document = parsed("<r>x<a/>y<b/></r>");
    const Element root = document.root();
    EXPECT_EQ(root.child("b").parent(), root);
    EXPECT_FALSE(root.parent());
    EXPECT_EQ(root.child("a").next(), root.child("b"));
    EXPECT_EQ(Node(root.child("a")).next().value(), "y");
    EXPECT_FALSE(root.child("b").next());
    EXPECT_FALSE(root.child("c"));
    EXPECT_EQ(root.children().front().asElement(), Element());
    EXPECT_EQ(Node(root.get()).asElement(), root);
}

TEST(WrapperReading, ANodeThatIsNoElementMakesANullOne) {
    const Document document = parsed("<r>x</r>");
    EXPECT_FALSE(Element(document.root().children().front().get()));
    EXPECT_FALSE(Element(nullptr));
}

TEST(WrapperReading, Attributes) {
    const Document document = parsed(kSwitch);
    const Element vlan = document.root().child("vlan");
    EXPECT_EQ(vlan.attribute("id"), "10");
    EXPECT_EQ(vlan.attribute("class"), "gold");  // the first of any namespace
    EXPECT_EQ(vlan.attribute("urn:qos", "class"), "gold");
    EXPECT_EQ(vlan.attribute("urn:sw", "class"), "tin");  // the default namespace counts
    EXPECT_EQ(vlan.attribute("urn:none", "class"), std::nullopt);
    EXPECT_EQ(vlan.attribute("none"), std::nullopt);
    EXPECT_EQ(vlan.attributeUtf8("id").value(), "10");
    const Document empty = parsed("<a b=''/>");
    EXPECT_EQ(empty.root().attribute("b"), "");
}

TEST(WrapperReading, AMissingAttributeIsNamed) {
    const Document document = parsed(kSwitch);
    const Result<std::string> missing = document.root().attributeUtf8("none");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().code, XML_MISSING);
    EXPECT_EQ(missing.error().message, "no attribute 'none'");
}

TEST(WrapperReading, AttributeHandles) {
    const Document document = parsed(kSwitch);
    const Element vlan = document.root().child("vlan");
    Attribute attribute = vlan.attributes().front();
    EXPECT_TRUE(attribute);
    EXPECT_EQ(attribute.name(), "id");
    EXPECT_EQ(attribute.namespaceName(), std::nullopt);
    EXPECT_EQ(attribute.value(), "10");
    EXPECT_EQ(attribute.valueUtf8().value(), "10");
    EXPECT_EQ(attribute.get(), XML_DOM_GetFirstAttr(vlan.get()));
    attribute = attribute.next();
    EXPECT_EQ(attribute.namespaceName(), "urn:qos");
    const Attribute none;
    EXPECT_FALSE(none);
    EXPECT_FALSE(none.next());
    EXPECT_EQ(none.name(), "");
    EXPECT_EQ(none.namespaceName(), std::nullopt);
    EXPECT_EQ(none.value(), "");
}

TEST(WrapperReading, Namespaces) {
    const Document document = parsed(kSwitch);
    EXPECT_EQ(document.root().prefix(), "");
    EXPECT_EQ(document.root().namespaceName(), "urn:sw");
    EXPECT_EQ(document.root().child("policy").prefix(), "q");
    EXPECT_EQ(document.root().child("policy").namespaceName(), "urn:qos");
    const Document none = parsed("<a/>");
    EXPECT_EQ(none.root().namespaceName(), "");
}

TEST(WrapperReading, Selection) {
    const Document document = parsed(kSwitch);
    const Element root = document.root();
    EXPECT_EQ(root.select("vlan/mtu").text(), "9216");
    EXPECT_EQ(root.select("/switch/vlan"), root.child("vlan"));
    EXPECT_FALSE(root.select("vlan/none"));
    EXPECT_FALSE(root.select(""));
    EXPECT_EQ(root.selectText("vlan/name"), "office");
    EXPECT_EQ(root.selectText("vlan"), std::nullopt);
    EXPECT_EQ(root.selectInt("vlan/mtu"), 9216);
    EXPECT_EQ(root.selectInt("vlan/name"), std::nullopt);
    EXPECT_EQ(root.child("vlan").next().selectInt("name"), -7);
}

TEST(WrapperReading, PathsAreNotCut) {
    // The library reads 1023 bytes of a path: four of these names and 19 bytes of the fifth.
    const std::string name(250, 'n'), beginning(19, 'n');
    const std::string open = "<" + name + ">", close = "</" + name + ">";
    const Document document = parsed("<r>" + open + open + open + open + "<" + beginning + ">1</" +
                                     beginning + ">" + close + close + close + close + "</r>");
    const Element root = document.root();
    const std::string four = name + "/" + name + "/" + name + "/" + name;
    EXPECT_EQ(root.selectInt(four + "/" + beginning), 1);
    const std::string five = four + "/" + name;
    EXPECT_FALSE(root.select(five));
    EXPECT_EQ(root.selectText(five), std::nullopt);
    EXPECT_EQ(root.selectInt(five), std::nullopt);
}

TEST(WrapperReading, TextsWithANulFindNothing) {
    const Document document = parsed("<r a='1'><a>1</a></r>");
    const Element root = document.root();
    EXPECT_FALSE(root.child(kWithNul));
    EXPECT_EQ(root.attribute(kWithNul), std::nullopt);
    EXPECT_EQ(root.attribute(kWithNul, "a"), std::nullopt);
    EXPECT_EQ(root.attribute("", kWithNul), std::nullopt);
    EXPECT_EQ(root.attributeUtf8(kWithNul).error().code, XML_MISSING);
    EXPECT_FALSE(root.select(kWithNul));
    EXPECT_EQ(root.selectText(kWithNul), std::nullopt);
    EXPECT_EQ(root.selectInt(kWithNul), std::nullopt);
}

TEST(WrapperReading, WhereANodeStands) {
    const Document document = parsed("<r><a/><a><b>x</b></a></r>");
    const Element b = document.root().child("a").next().child("b");
    EXPECT_EQ(b.path(), "/r/a[2]/b[1]");
    EXPECT_EQ(b.children().front().path(), "/r/a[2]/b[1]");
    EXPECT_EQ(Node().path(), "");
}

TEST(WrapperReading, WhereANodeStandsInManyBytes) {
    // Lengths around those at which the buffer grows.
    for (std::size_t length = 240; length < 1100; ++length) {
        Document document = Document::create(std::string(length, 'a')).value();
        ASSERT_EQ(document.root().path(), "/" + std::string(length, 'a'));
    }
}

TEST(WrapperReading, NullHandlesAnswerEmpty) {
    const Element none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get(), nullptr);
    EXPECT_FALSE(none.isElement() || none.isText() || none.isCData());
    EXPECT_FALSE(none.asElement());
    EXPECT_FALSE(none.parent());
    EXPECT_FALSE(none.next());
    EXPECT_FALSE(Node().next());
    EXPECT_EQ(none.name(), "");
    EXPECT_EQ(none.value(), "");
    EXPECT_EQ(none.text(), "");
    EXPECT_EQ(none.cdata(), "");
    EXPECT_EQ(none.textUtf8().value(), "");
    EXPECT_EQ(none.prefix(), "");
    EXPECT_EQ(none.namespaceName(), "");
    EXPECT_FALSE(none.child("a"));
    EXPECT_EQ(none.attribute("a"), std::nullopt);
    EXPECT_EQ(none.attribute("urn:a", "a"), std::nullopt);
    EXPECT_FALSE(none.select("a"));
    EXPECT_EQ(none.selectText("a"), std::nullopt);
    EXPECT_EQ(none.selectInt("a"), std::nullopt);
    EXPECT_FALSE(none.write());
    EXPECT_FALSE(none.clone());
    EXPECT_EQ(none, Element());
}

}  // namespace
