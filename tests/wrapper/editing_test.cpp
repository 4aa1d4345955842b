#include <gtest/gtest.h>

#include <utility>

#include "tests/wrapper/documents.h"

namespace {

using namespace compactxml;
using wrapper::kWithNul;
using wrapper::parsed;
using wrapper::written;

TEST(WrapperEditing, SetsText) {
    const Document document = parsed("<r><a/><b>old<c/>more</b></r>");
    const Element root = document.root();
    root.child("a").setText("new").value();
    root.child("b").setText("newer").value();
    EXPECT_EQ(written(document), "<r><a>new</a><b>newer<c/>more</b></r>");
    root.child("a").setText("").value();
    root.child("a").setText("").value();  // nothing is there
    root.child("b").setText("").value();
    EXPECT_EQ(written(document), "<r><a/><b><c/>more</b></r>");
}

TEST(WrapperEditing, RefusesTextAndChangesNothing) {
    const Document document = parsed("<r>old</r>");
    const Element root = document.root();
    EXPECT_FALSE(root.setText(kWithNul));
    EXPECT_FALSE(root.children().front().setValue(kWithNul));
    EXPECT_FALSE(root.children().front().setValue(""));
    EXPECT_FALSE(root.setValue("an element has no value"));
    EXPECT_FALSE(Element().setText("x"));
    EXPECT_FALSE(Element().setText(""));
    EXPECT_FALSE(Node().setValue("x"));
    EXPECT_EQ(written(document), "<r>old</r>");
    const Document empty = parsed("<r/>");
    EXPECT_FALSE(empty.root().setText(kWithNul));
    EXPECT_EQ(written(empty), "<r/>");
}

TEST(WrapperEditing, TextMayBePartOfWhatItReplaces) {
    const Document document = parsed("<r a='one two'>one two</r>");
    const Element root = document.root();
    root.setText(root.text().substr(4)).value();
    root.setAttribute("a", root.attribute("a")->substr(0, 3)).value();
    EXPECT_EQ(written(document), "<r a=\"one\">two</r>");
}

TEST(WrapperEditing, SetsAttributes) {
    const Document document = parsed("<r xmlns:p='urn:p' a='1' p:a='2' b='3'/>");
    const Element root = document.root();
    root.setAttribute("a", "4").value();
    root.setAttribute("c", "").value();
    EXPECT_EQ(written(document), R"(<r xmlns:p="urn:p" p:a="2" b="3" a="4" c=""/>)");
    EXPECT_FALSE(root.setAttribute("a b", "x"));
    EXPECT_FALSE(root.setAttribute("", "x"));
    EXPECT_FALSE(root.setAttribute("xmlns", "x"));
    EXPECT_FALSE(root.setAttribute(kWithNul, "x"));
    EXPECT_FALSE(root.setAttribute("a", kWithNul));
    EXPECT_FALSE(root.setAttribute("d", kWithNul));
    EXPECT_FALSE(Element().setAttribute("a", "x"));
    EXPECT_EQ(written(document), R"(<r xmlns:p="urn:p" p:a="2" b="3" a="4" c=""/>)");
}

TEST(WrapperEditing, AnAttributeWithAPrefixIsAnother) {
    const Document document = parsed("<r xmlns:p='urn:p' p:a='1'/>");
    document.root().setAttribute("a", "2").value();
    EXPECT_EQ(written(document), R"(<r xmlns:p="urn:p" p:a="1" a="2"/>)");
}

TEST(WrapperEditing, AddsAndRemovesAttributes) {
    const Document document = parsed("<r xmlns:p='urn:p'/>");
    const Element root = document.root();
    root.addAttribute("p", "a", "1").value();
    root.addAttribute("", "a", "2").value();
    EXPECT_FALSE(root.addAttribute("p", "a", "3"));
    EXPECT_FALSE(root.addAttribute("", "a", "3"));
    EXPECT_FALSE(root.addAttribute("q", "a", "3"));
    EXPECT_FALSE(root.addAttribute(kWithNul, "b", "3"));
    EXPECT_FALSE(root.addAttribute("p", kWithNul, "3"));
    EXPECT_FALSE(root.addAttribute("p", "b", kWithNul));
    EXPECT_FALSE(Element().addAttribute("", "a", "1"));
    EXPECT_EQ(written(document), R"(<r xmlns:p="urn:p" p:a="1" a="2"/>)");
    root.removeAttribute("none");
    root.removeAttribute(kWithNul);
    root.removeAttribute("a", kWithNul);
    root.removeAttribute("a", "q");
    EXPECT_EQ(written(document), R"(<r xmlns:p="urn:p" p:a="1" a="2"/>)");
    root.removeAttribute("a", "p");
    EXPECT_EQ(written(document), R"(<r xmlns:p="urn:p" a="2"/>)");
    root.removeAttribute("a");
    EXPECT_EQ(written(document), R"(<r xmlns:p="urn:p"/>)");
    Element().removeAttribute("a");
}

TEST(WrapperEditing, DeclaresAndSetsPrefixes) {
    const Document document = parsed("<r/>");
    const Element root = document.root();
    EXPECT_FALSE(root.setPrefix("p"));
    root.declare("p", "urn:p").value();
    EXPECT_FALSE(root.declare("p", "urn:q"));
    EXPECT_FALSE(root.declare("q", ""));
    EXPECT_FALSE(root.declare(kWithNul, "urn:q"));
    EXPECT_FALSE(root.declare("q", kWithNul));
    EXPECT_FALSE(Element().declare("q", "urn:q"));
    EXPECT_FALSE(root.setPrefix(kWithNul));
    EXPECT_FALSE(Element().setPrefix(""));
    root.setPrefix("p").value();
    root.appendElement("a").value().setPrefix("p").value();
    EXPECT_EQ(written(document), "<p:r xmlns:p=\"urn:p\"><p:a/></p:r>");
    root.child("a").setPrefix("").value();
    EXPECT_EQ(written(document), "<p:r xmlns:p=\"urn:p\"><a/></p:r>");
}

TEST(WrapperEditing, AppendsElements) {
    const Document document = Document::create("vlans").value();
    const Element vlan = document.root().appendElement("vlan").value();
    vlan.setAttribute("id", "10").value();
    vlan.appendElement("name", "office").value();
    EXPECT_FALSE(vlan.appendElement("a b"));
    EXPECT_FALSE(vlan.appendElement(kWithNul));
    EXPECT_FALSE(vlan.appendElement("a", kWithNul));
    EXPECT_FALSE(Element().appendElement("a"));
    EXPECT_EQ(written(document), R"(<vlans><vlan id="10"><name>office</name></vlan></vlans>)");
}

TEST(WrapperEditing, AppendsAndInsertsNodes) {
    const Document document = parsed("<r><b/></r>");
    const Element root = document.root();
    EXPECT_EQ(root.append(makeText("t").value()).value().value(), "t");
    root.append(makeCData("<c>").value()).value();
    OwnedNode a = makeElement("a", "1").value();
    const Node inserted = root.insert(root.child("b"), std::move(a)).value();
    EXPECT_EQ(inserted, root.child("a"));
    root.insert(inserted, makeText("first").value()).value();
    EXPECT_EQ(written(document), "<r>first<a>1</a><b/>t<![CDATA[<c>]]></r>");
    EXPECT_EQ(inserted.parent(), root);
}

TEST(WrapperEditing, ARefusedNodeStaysTheCallers) {
    const Document document = parsed("<r><b/></r>");
    const Element root = document.root();
    OwnedNode node = makeElement("a").value();
    EXPECT_FALSE(Element().append(std::move(node)));
    EXPECT_TRUE(node);
    EXPECT_FALSE(root.insert(Node(), std::move(node)));
    EXPECT_FALSE(root.insert(root, std::move(node)));  // it is no child of its own
    EXPECT_FALSE(root.child("b").insert(root.child("b"), std::move(node)));
    EXPECT_FALSE(Element().insert(root.child("b"), std::move(node)));
    EXPECT_TRUE(node);
    EXPECT_EQ(written(document), "<r><b/></r>");
    root.append(std::move(node)).value();
    EXPECT_FALSE(node);
    EXPECT_FALSE(root.append(std::move(node)));
    EXPECT_FALSE(root.insert(root.child("b"), std::move(node)));
    EXPECT_EQ(written(document), "<r><b/><a/></r>");
}

TEST(WrapperEditing, ANodeCannotStandInItself) {
    OwnedNode node = makeElement("a").value();
    const Element a(node.get());
    const Element b = a.appendElement("b").value();
    b.appendElement("c").value();
    EXPECT_FALSE(a.append(std::move(node)));
    EXPECT_FALSE(b.append(std::move(node)));
    EXPECT_FALSE(b.insert(b.child("c"), std::move(node)));
    EXPECT_FALSE(a.insert(b, std::move(node)));
    EXPECT_EQ(written(a), "<a><b><c/></b></a>");
}

// What only the C functions can make: an owner of a node that stands in a tree.
TEST(WrapperEditing, WhatStandsElsewhereIsRefused) {
    const Document document = parsed("<r><b/></r>");
    const Document other = parsed("<s><t/></s>");
    const Element root = document.root();
    OwnedNode root2(other.get()), child(other.root().child("t").get());
    EXPECT_FALSE(root.insert(root.child("b"), std::move(root2)));
    EXPECT_FALSE(root.append(std::move(root2)));
    EXPECT_FALSE(root.insert(root.child("b"), std::move(child)));
    EXPECT_FALSE(root.append(std::move(child)));
    root2.release();
    child.release();
    EXPECT_EQ(written(document), "<r><b/></r>");
    EXPECT_EQ(written(other), "<s><t/></s>");
}

TEST(WrapperEditing, RemovesNodes) {
    const Document document = parsed("<r>x<a><b/></a>y</r>");
    document.root().child("a").remove().value();
    document.root().children().front().remove().value();
    EXPECT_EQ(written(document), "<r>y</r>");
    EXPECT_FALSE(document.root().remove());
    EXPECT_FALSE(Node().remove());
    const OwnedNode node = makeElement("a").value();
    EXPECT_FALSE(Node(node.get()).remove());
}

TEST(WrapperEditing, DetachesNodes) {
    const Document document = parsed("<r><a>1</a><b/></r>");
    const Element root = document.root();
    OwnedNode a = root.child("a").detach();
    ASSERT_TRUE(a);
    EXPECT_EQ(written(document), "<r><b/></r>");
    EXPECT_EQ(written(Node(a.get())), "<a>1</a>");
    root.append(std::move(a)).value();
    EXPECT_EQ(written(document), "<r><b/><a>1</a></r>");
    EXPECT_FALSE(root.detach());
    EXPECT_FALSE(Node().detach());
    EXPECT_TRUE(root.child("b").detach());  // and is deleted
    EXPECT_EQ(written(document), "<r><a>1</a></r>");
}

TEST(WrapperEditing, ClonesOutliveTheirTree) {
    OwnedNode copy, text;
    {
        const Document document = parsed("<p:r xmlns:p='urn:p'><p:a p:b='1'>x<c/></p:a></p:r>");
        copy = document.root().child("a").clone().value();
        text = document.root().child("a").children().front().clone().value();
    }
    EXPECT_EQ(written(Node(copy.get())), R"(<p:a xmlns:p="urn:p" p:b="1">x<c/></p:a>)");
    EXPECT_EQ(written(Node(text.get())), "x");
    const Document other = parsed("<s/>");
    other.root().append(std::move(copy)).value();
    EXPECT_EQ(written(other), R"(<s><p:a xmlns:p="urn:p" p:b="1">x<c/></p:a></s>)");
}

TEST(WrapperEditing, MakesNodes) {
    EXPECT_EQ(written(Node(makeElement("a").value().get())), "<a/>");
    EXPECT_EQ(written(Node(makeElement("a", "b").value().get())), "<a>b</a>");
    EXPECT_EQ(written(Node(makeText("<").value().get())), "&lt;");
    EXPECT_EQ(written(Node(makeCData("<").value().get())), "<![CDATA[<]]>");
    EXPECT_TRUE(makeText(""));
    EXPECT_FALSE(makeElement(""));
    EXPECT_FALSE(makeElement("a:b"));
    EXPECT_FALSE(makeElement(kWithNul));
    EXPECT_FALSE(makeElement("a", kWithNul));
    EXPECT_FALSE(makeText(kWithNul));
    EXPECT_FALSE(makeCData(kWithNul));
    EXPECT_FALSE(OwnedNode());
}

}  // namespace
