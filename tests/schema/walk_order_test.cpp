// Which of several errors is told of: the first on the walk over the document.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "compactxml.h"
#include "tests/support/schema_maker.h"

namespace {

using support::SchemaMaker;
using support::verdict;

constexpr SchemaSimpleType kInt{nullptr, nullptr, "int", nullptr, SCHEMA_TYPE_INT, 0, 0, 0};
constexpr SchemaSimpleType kString{nullptr, nullptr, "string", nullptr, SCHEMA_TYPE_STRING,
                                   0,       0,       0};

// The elements of these tests:
//
//   c  any number of c, p, s, w, f, t and l; attributes k (int) and q (int, required)
//   p  h, c or none, one or two s
//   l  h and perhaps s in any order
//   w  mixed, anything at all: c, s and w are checked, others are not; any attributes, k is an int
//   f  mixed, fixed to 5
//   t  int as simple content, attribute u (int)
//   s  int
//   h  string
class WalkSchema : public SchemaMaker {
  public:
    WalkSchema() {
        wildcard({nullptr, "##any", 1, 1, 1});
        for (const char *name : {"c", "p", "l", "w", "f", "t", "s", "h"}) {
            SchemaElementDecl particle = plain(name);
            particle.ref = of(name);
            declare(particle);
        }
        const SchemaAttributeDecl *k = attribute(number("k", 0));
        SchemaComplexType type{};
        type.particle = model("choice{0,u}(c, p, s, w, f, t, l)");
        type.attributeUses = uses({k, attribute(number("q", 2))});
        type.attributeUseCount = 2;
        *of("c") = ofComplex("c", complexType(type));
        type = {};
        type.particle = model("seq(h, c{0,1}, s{1,2})");
        *of("p") = ofComplex("p", complexType(type));
        type.particle = model("all(h, s{0,1})");
        *of("l") = ofComplex("l", complexType(type));
        type.particle = model("seq(any{0,u})");
        type.mixed = 1;
        type.attributeWildcard = attributeWildcard({nullptr, "##any", 1});
        *of("w") = ofComplex("w", complexType(type));
        type.attributeWildcard = nullptr;
        type.particle = model("seq(s)");
        *of("f") = ofComplex("f", complexType(type));
        of("f")->hasFixed = 1;
        of("f")->fixedValue = "5";
        SchemaDerivation content{};
        content.derivationKind = SCHEMA_KIND_SIMPLE_EXTENSION;
        content.baseType = &kInt;
        content.baseTypeKind = SCHEMA_KIND_SIMPLE_TYPE;
        content.attributeUses = uses({attribute(number("u", 0))});
        content.attributeUseCount = 1;
        type = {};
        type.content = derivation(content);
        *of("t") = ofComplex("t", complexType(type));
        *of("s") = ofSimple("s", &kInt);
        *of("h") = ofSimple("h", &kString);
        for (const char *name : {"c", "s", "w"}) add(of(name), SCHEMA_KIND_ELEMENT);
        add(k, SCHEMA_KIND_ATTRIBUTE);
    }

  private:
    SchemaElementDecl *of(const std::string &name) {
        const auto found = made_.find(name);
        if (found != made_.end()) return found->second;
        return made_[name] = element(SchemaElementDecl{});
    }
    static SchemaAttributeDecl number(const char *name, std::int32_t use) {
        SchemaAttributeDecl decl{};
        decl.name = name;
        decl.type = &kInt;
        decl.use = use;
        return decl;
    }

    std::map<std::string, SchemaElementDecl *> made_;
};

struct Element {
    std::string name, text;  // the text stands before the children
    std::vector<std::pair<std::string, std::string>> attributes;
    std::vector<Element> children;

    std::string written() const {
        std::string out = "<" + name;
        for (const auto &[attribute, value] : attributes) {
            out += " " + attribute + "='" + value + "'";
        }
        out += ">" + text;
        for (const Element &child : children) out += child.written();
        return out + "</" + name + ">";
    }
};

// The walk in the plainest way: each child is checked completely when it is reached, the attributes
// after all of the content, but for simple types. What is said of the first error, or "".
class Walk {
  public:
    static std::string check(const Element &element, const std::string &path) {
        return Walk(element, path).said();
    }

  private:
    Walk(const Element &element, const std::string &path) : element_(element), path_(path) {}

    std::string said() {
        switch (element_.name[0]) {
            case 's':
            case 'h':
                return simple();
            case 'f':
                return first({fixed(), attributes({}, false)});
            case 't':
                return first({number(), attributes({"u"}, false)});
            case 'c':
                return first({noText(), repeated(), attributes({"k", "q"}, false)});
            case 'p':
                return first({noText(), sequence(), attributes({}, false)});
            case 'l':
                return first({noText(), all(), attributes({}, false)});
            default:
                return first({anything(), attributes({}, true)});
        }
    }

    // What is said first of all parts of an element.
    static std::string first(std::initializer_list<std::string> parts) {
        for (const std::string &part : parts) {
            if (!part.empty()) return part;
        }
        return "";
    }

    std::string simple() const {
        for (const auto &[name, value] : element_.attributes) {
            if (name != "xml:lang") return unexpectedAttribute(name);
            if (value != "en") return language(value);
        }
        if (!element_.children.empty()) return unexpected(0);
        return element_.name == "s" ? numberError() : "";
    }
    std::string number() const {
        if (!element_.children.empty()) {
            return "10 node=" + path_ + ": Element '" + path_ + "' can not have a child element.";
        }
        return numberError();
    }
    std::string numberError() const {
        if (element_.text.empty()) return value("int cannot be empty.");
        if (element_.text == "x") return value("x is an invalid value of int type value.");
        return "";
    }
    std::string fixed() const { return element_.text == "5" ? "" : value("must equal 5"); }
    std::string noText() const {
        if (element_.text.empty()) return "";
        return "9 node=" + path_ + ": Element '" + path_ +
               "' can not have a textual child element.";
    }

    std::string repeated() const {
        for (std::size_t i = 0; i < element_.children.size(); ++i) {
            if (std::string("cpswftl").find(childName(i)) == std::string::npos) {
                return unexpected(i);
            }
            if (const std::string error = checkChild(i); !error.empty()) return error;
        }
        return "";
    }
    std::string sequence() const {
        const std::size_t count = element_.children.size();
        if (count == 0) return occurrences(element_.name);
        if (childName(0) != "h") return expecting("h");
        if (const std::string error = checkChild(0); !error.empty()) return error;
        std::size_t at = 1;
        if (at < count && childName(at) == "c") {
            if (const std::string error = checkChild(at++); !error.empty()) return error;
        }
        std::size_t taken = 0;
        for (; taken < 2 && at < count && childName(at) == "s"; ++taken) {
            if (const std::string error = checkChild(at++); !error.empty()) return error;
        }
        if (taken == 0) return at < count ? expecting("s") : occurrences("s");
        return at < count ? unexpected(at) : "";
    }
    std::string all() const {
        std::size_t at = 0;
        std::map<std::string, int> taken;
        for (; at < element_.children.size(); ++at) {
            if (childName(at) != "h" && childName(at) != "s") break;
            if (const std::string error = checkChild(at); !error.empty()) return error;
            ++taken[childName(at)];
        }
        if (taken["h"] > 1) return occurrences("h");
        if (taken["h"] == 0) return expecting("h");
        if (taken["s"] > 1) return occurrences("s");
        return at < element_.children.size() ? unexpected(at) : "";
    }
    std::string anything() const {
        for (std::size_t i = 0; i < element_.children.size(); ++i) {
            if (std::string("csw").find(childName(i)) == std::string::npos) continue;
            if (const std::string error = checkChild(i); !error.empty()) return error;
        }
        return "";
    }

    // Declared ones in their order (q is required), xml:lang, what is left over.
    std::string attributes(std::vector<std::string> declared, bool any) const {
        const auto &list = element_.attributes;
        const auto find = [&](const std::string &name) {
            return std::find_if(list.begin(), list.end(),
                                [&](const auto &attribute) { return attribute.first == name; });
        };
        if (any) {
            // All are claimed, xml:lang too; of those k alone is known.
            const auto k = find("k");
            return k != list.end() && k->second == "x" ? attributeValue("k") : "";
        }
        for (const std::string &name : declared) {
            const auto found = find(name);
            if (found == list.end() && name == "q") {
                return "2 node=" + path_ + " attr=q: The element '" + path_ +
                       "' should have an attribute 'q'.";
            }
            if (found != list.end() && found->second == "x") return attributeValue(name);
        }
        const auto lang = find("xml:lang");
        if (lang != list.end() && lang->second != "en") return language(lang->second);
        declared.push_back("xml:lang");
        for (const auto &[name, value] : list) {
            if (std::find(declared.begin(), declared.end(), name) == declared.end()) {
                return unexpectedAttribute(name);
            }
        }
        return "";
    }

    const std::string &childName(std::size_t i) const { return element_.children[i].name; }
    std::string childPath(std::size_t i) const {
        std::size_t position = 1;
        for (std::size_t before = 0; before < i; ++before) {
            if (childName(before) == childName(i)) ++position;
        }
        return path_ + "/" + childName(i) + "[" + std::to_string(position) + "]";
    }
    std::string checkChild(std::size_t i) const {
        return check(element_.children[i], childPath(i));
    }

    std::string unexpected(std::size_t i) const {
        return "6 node=" + childPath(i) + ": Unexpected element '':'" + childName(i) +
               "' under element '" + path_;
    }
    std::string expecting(const std::string &name) const {
        return "1 node=" + path_ + " name=" + name + ": Expecting element '':'" + name +
               "' under element '" + path_ + "'.";
    }
    std::string occurrences(const std::string &name) const {
        return "5 node=" + path_ + " name=" + name + ": The number of occurrences of element '" +
               path_ + "/" + name + "' is invalid.";
    }
    std::string value(const std::string &why) const {
        return "3 node=" + path_ + " name=" + element_.name + " text=" + why +
               ": The value of element '" + path_ + "' is invalid. " + why;
    }
    std::string attributeValue(const std::string &name) const {
        const std::string why = "x is an invalid value of int type value.";
        return "4 node=" + path_ + " attr=" + name + " text=" + why + ": The value of attribute '" +
               name + "' for element '" + path_ + "' is invalid. " + why;
    }
    std::string language(const std::string &value) const {
        const std::string ns = "http://www.w3.org/XML/1998/namespace";
        const std::string why = value + " is not a valid value for " + ns + ":lang";
        return "4 node=" + path_ + " attr=lang attrNs=" + ns + " text=" + why +
               ": The value of attribute '" + ns + "':'lang' for element '" + path_ +
               "' is invalid. " + why;
    }
    std::string unexpectedAttribute(const std::string &name) const {
        return "7 node=" + path_ + " attr=" + name + ": Unexpected attribute '" + name +
               "' of element '" + path_ + "'.";
    }

    const Element &element_;
    const std::string path_;
};

// Trees that are valid for the most part.
class TreeSource {
  public:
    TreeSource(std::uint32_t seed, std::uint32_t errorsIn) : random_(seed), errorsIn_(errorsIn) {}

    Element tree(const std::string &name, int depth) {
        Element made;
        made.name = name;
        if (name == "c") made.attributes = {{"q", number()}};
        if (name == "c" && wrong()) made.attributes.clear();
        if ((name == "c" || name == "w") && below(4) == 0) add(&made, "k", number());
        if (name == "t" && below(2)) add(&made, "u", number());
        if (below(6) == 0) add(&made, "xml:lang", wrong() ? "zz" : "en");
        if (wrong()) add(&made, "z", "1");
        if (name == "s" || name == "t") {
            made.text = wrong() ? "" : number();
        } else if (name == "f") {
            made.text = wrong() ? "x" : "5";
        } else if (name == "w" || name == "h") {
            made.text = below(2) ? "text" : "";
        } else if (wrong()) {
            made.text = "text";
        }
        for (const std::string &child : childrenOf(name, depth)) {
            made.children.push_back(tree(child, depth - 1));
        }
        if (wrong()) {
            const std::size_t at = below(static_cast<std::uint32_t>(made.children.size()) + 1);
            made.children.insert(made.children.begin() + static_cast<std::ptrdiff_t>(at),
                                 tree(pick("shxct"), 0));
        }
        if ((wrong() || wrong()) && !made.children.empty()) made.children.pop_back();
        if (wrong() && !made.children.empty()) made.children.push_back(made.children[0]);
        return made;
    }

  private:
    std::vector<std::string> childrenOf(const std::string &name, int depth) {
        std::vector<std::string> names;
        if (name == "p") {
            names = {"h"};
            if (depth > 0 && below(2)) names.push_back("c");
            names.resize(names.size() + 1 + below(2), "s");
        } else if (name == "l") {
            names = {"h"};
            if (below(2)) names.insert(names.begin() + below(2), "s");
        } else if (name == "c") {
            for (std::uint32_t i = below(5); i > 0; --i) {
                names.push_back(pick(depth > 0 ? "ccpswftl" : "sft"));
            }
        } else if (name == "w" || name == "f") {
            for (std::uint32_t i = below(4); i > 0; --i) {
                names.push_back(pick(depth > 0 ? "cswxph" : "sxh"));
            }
        } else if (name == "x" && depth > 0) {
            names = {pick("cs")};
        }
        return names;
    }
    std::string pick(const std::string &names) {
        return names.substr(below(static_cast<std::uint32_t>(names.size())), 1);
    }
    void add(Element *element, const char *name, const std::string &value) {
        const auto at = element->attributes.begin() +
                        below(static_cast<std::uint32_t>(element->attributes.size()) + 1);
        element->attributes.insert(at, {name, value});
    }
    std::string number() { return wrong() ? "x" : "7"; }
    std::uint32_t below(std::uint32_t bound) { return random_() % bound; }
    bool wrong() { return below(errorsIn_) == 0; }

    std::mt19937 random_;
    std::uint32_t errorsIn_;
};

TEST(WalkOrder, RandomTrees) {
    WalkSchema schema;
    std::map<std::string, int> seen;  // by the code; "" for valid documents
    for (std::uint32_t seed = 0; seed < 6000; ++seed) {
        // From hardly any errors to many in one tree.
        constexpr std::uint32_t kErrorsIn[] = {1000, 150, 60, 25, 10, 4};
        TreeSource source(seed, kErrorsIn[seed % std::size(kErrorsIn)]);
        const Element root = source.tree(seed % 3 == 0 ? "w" : "c", 4);
        const std::string expected = Walk::check(root, "/" + root.name);
        const std::string document = root.written();
        ASSERT_EQ(verdict(document, schema.root()), expected.empty() ? "valid" : expected)
            << "seed " << seed << ": " << document;
        ++seen[expected.substr(0, expected.find(' '))];
    }
    // All the kinds of errors that these elements can have, each often enough.
    for (const char *code : {"", "1", "2", "3", "4", "5", "6", "7", "9", "10"}) {
        EXPECT_GT(seen[code], 15) << "code " << code;
    }
}

struct OrderCase {
    const char *what, *document, *verdict;
};

#define NO_INT "x is an invalid value of int type value."
#define VALUE_OF(path, name)                                                     \
    "3 node=" path " name=" name " text=" NO_INT ": The value of element '" path \
    "' is invalid. " NO_INT
#define MISSING_Q(path) \
    "2 node=" path " attr=q: The element '" path "' should have an attribute 'q'."
#define SURPLUS(path, name) \
    "7 node=" path " attr=" name ": Unexpected attribute '" name "' of element '" path "'."
#define LEFT_OVER(path, name, parent) \
    "6 node=" path ": Unexpected element '':'" name "' under element '" parent

constexpr OrderCase kPairs[] = {
    {"child, then attributes", "<c><s>x</s></c>", VALUE_OF("/c/s[1]", "s")},
    {"grandchild, then attributes of both", "<c><c><s>x</s></c></c>",
     VALUE_OF("/c/c[1]/s[1]", "s")},
    {"attributes of the child, then those of the parent", "<c><c/></c>", MISSING_Q("/c/c[1]")},
    {"attributes alone", "<c><c q='1'/></c>", MISSING_Q("/c")},
    {"earlier sibling", "<c><c/><s>x</s></c>", MISSING_Q("/c/c[1]")},
    {"later sibling", "<c><s>x</s><c/></c>", VALUE_OF("/c/s[1]", "s")},
    {"deep in the earlier sibling", "<c><c q='1'><c q='1'><s>x</s></c></c><s>x</s></c>",
     VALUE_OF("/c/c[1]/c[1]/s[1]", "s")},
    {"structure of the earlier sibling", "<c><p/><s>x</s></c>",
     "5 node=/c/p[1] name=p: The number of occurrences of element '/c/p[1]/p' is invalid."},
    {"value in a child, then structure", "<c><s>x</s><z/></c>", VALUE_OF("/c/s[1]", "s")},
    {"structure behind valid children, then attributes", "<c><s>5</s><z/></c>",
     LEFT_OVER("/c/z[1]", "z", "/c")},
    {"structure before a child that is not valid", "<c><z/><s>x</s></c>",
     LEFT_OVER("/c/z[1]", "z", "/c")},
    {"attribute of a child, then structure", "<c q='1'><c z='1' q='1'/><z/></c>",
     SURPLUS("/c/c[1]", "z")},
    {"value, then an element that is missing", "<c><p><h/><s>x</s><s>5</s><s>5</s></p></c>",
     VALUE_OF("/c/p[1]/s[1]", "s")},
    {"element that is missing, then a later sibling", "<c><p><h/></p><s>x</s></c>",
     "5 node=/c/p[1] name=s: The number of occurrences of element '/c/p[1]/s' is invalid."},
    {"value in an all group, then what it counts", "<c><l><s>5</s><s>x</s></l></c>",
     VALUE_OF("/c/l[1]/s[2]", "s")},
    {"count in an all group, then what follows it", "<c><l><h/><s>5</s><s>5</s><z/></l></c>",
     "5 node=/c/l[1] name=s: The number of occurrences of element '/c/l[1]/s' is invalid."},
    {"text, then children", "<c>text<s>x</s></c>",
     "9 node=/c: Element '/c' can not have a textual child element."},
    {"text, then attributes", "<c z='1'>text</c>",
     "9 node=/c: Element '/c' can not have a textual child element."},
    {"simple type: attribute, then value", "<s z='1'>x</s>", SURPLUS("/s", "z")},
    {"simple type: attribute, then child", "<s z='1'><a/></s>", SURPLUS("/s", "z")},
    {"simple type: child, then value", "<s>x<a/></s>", LEFT_OVER("/s/a[1]", "a", "/s")},
    {"simple content: value, then attribute", "<c><t z='1'>x</t></c>", VALUE_OF("/c/t[1]", "t")},
    {"simple content: child, then value", "<c><t z='1'>x<a/></t></c>",
     "10 node=/c/t[1]: Element '/c/t[1]' can not have a child element."},
    {"below a wildcard, then its own attributes", "<w k='x'><z/><s>x</s></w>",
     VALUE_OF("/w/s[1]", "s")},
};

TEST(WalkOrder, Pairs) {
    WalkSchema schema;
    for (const OrderCase &row : kPairs) {
        EXPECT_EQ(verdict(row.document, schema.root()), row.verdict) << row.what;
    }
}

}  // namespace
