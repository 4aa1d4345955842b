// tools/cxml/fingerprint.h - one number for all that an element holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "compactxml.h"
#include "walk.h"

namespace tool {

// SipHash-1-3 of words and bytes. Under a key that is drawn for each run nobody can write two
// documents whose fingerprints are the same although they differ.
class Digest {
  public:
    struct Key {
        std::uint64_t a;
        std::uint64_t b;
    };
    static Key drawKey() {
        std::random_device device;
        const auto word = [&device] { return std::uint64_t{device()} << 32 | device(); };
        return {word(), word()};
    }

    explicit Digest(const Key &key)
        : v_{key.a ^ 0x736f6d6570736575u, key.b ^ 0x646f72616e646f6du, key.a ^ 0x6c7967656e657261u,
             key.b ^ 0x7465646279746573u} {}

    void addWord(std::uint64_t word) {
        v_[3] ^= word;
        round();
        v_[0] ^= word;
    }
    // However they are divided among calls.
    void addBytes(std::string_view bytes) {
        for (const char c : bytes) {
            pending_ = pending_ << 8 | static_cast<unsigned char>(c);
            if (++length_ % 8 == 0) addWord(pending_);
        }
    }
    std::uint64_t finish() {
        addWord(pending_);
        addWord(length_);
        v_[2] ^= 0xFF;
        for (int i = 0; i < 3; ++i) round();
        return v_[0] ^ v_[1] ^ v_[2] ^ v_[3];
    }

  private:
    static std::uint64_t rotate(std::uint64_t word, int bits) {
        return word << bits | word >> (64 - bits);
    }
    void round() {
        v_[0] += v_[1];
        v_[1] = rotate(v_[1], 13) ^ v_[0];
        v_[0] = rotate(v_[0], 32);
        v_[2] += v_[3];
        v_[3] = rotate(v_[3], 16) ^ v_[2];
        v_[0] += v_[3];
        v_[3] = rotate(v_[3], 21) ^ v_[0];
        v_[2] += v_[1];
        v_[1] = rotate(v_[1], 17) ^ v_[2];
        v_[2] = rotate(v_[2], 32);
    }

    std::uint64_t v_[4];
    std::uint64_t pending_ = 0;
    std::uint64_t length_ = 0;
};

// Fingerprints of elements: names count by namespace name and local name, attributes in any order,
// declarations not at all, text and CDATA sections beside each other as one text.
class Fingerprints {
  public:
    struct Element {
        std::uint64_t all;
        std::uint64_t namespaceName;
        std::uint64_t localName;
        const char *namespaceText;
    };

    // Of a root and all below it.
    void add(const XML_DOM_Node *root) { walk(root, *this); }

    const Element &of(const XML_DOM_Node *element) const { return elements_.at(element); }

    std::uint64_t ofText(std::string_view text) const { return digest(text); }
    std::uint64_t ofBoth(std::uint64_t a, std::uint64_t b) const {
        Digest digest(key_);
        digest.addWord(a);
        digest.addWord(b);
        return digest.finish();
    }

    std::uint64_t ofName(const XML_DOM_Attr *attribute) {
        const char *local = nullptr;
        XML_DOM_GetAttrNameSpace(attribute, &local, nullptr);
        return ofBoth(ofNamespace(attribute->ns), digest(local));
    }

    // For walk().
    bool enter(const XML_DOM_Node *node, std::size_t) {
        if (XML_DOM_GetNodeType(node) != XML_DOM_NODE_ELEMENT) {
            const std::string_view value = XML_DOM_GetNodeValue(node);
            open_.back().text.addBytes(value);
            open_.back().inText |= !value.empty();  // an empty CDATA section is no text
            return false;
        }
        Open element{Digest(key_), Digest(key_), false, nullptr};
        if (!open_.empty()) {
            endText(open_.back());
            element.defaultNamespace = open_.back().defaultNamespace;
        }
        for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
            if (!decl->prefix) element.defaultNamespace = decl;
        }
        const XML_DOM_NsDecl *decl = node->ns ? node->ns : element.defaultNamespace;
        elements_.emplace(node, Element{0, ofNamespace(decl), digest(XML_DOM_GetNodeName(node)),
                                        decl ? decl->namespaceName : ""});
        open_.push_back(element);
        return true;
    }
    void leave(const XML_DOM_Node *node, std::size_t) {
        if (XML_DOM_GetNodeType(node) != XML_DOM_NODE_ELEMENT) return;
        std::uint64_t attributes = 0;  // a sum, since their order does not count
        for (const XML_DOM_Attr *a = XML_DOM_GetFirstAttr(node); a; a = XML_DOM_GetNextAttr(a)) {
            attributes += ofBoth(ofName(a), digest(XML_DOM_GetAttrValByHandle(a)));
        }
        endText(open_.back());
        Element &element = elements_.at(node);
        Digest all(key_);
        all.addWord(element.namespaceName);
        all.addWord(element.localName);
        all.addWord(attributes);
        all.addWord(open_.back().children.finish());
        element.all = all.finish();
        open_.pop_back();
        if (!open_.empty()) open_.back().children.addWord(element.all);
    }

  private:
    struct Open {
        Digest children;
        Digest text;  // of the text and CDATA nodes since the last element
        bool inText;
        const XML_DOM_NsDecl *defaultNamespace;  // in scope
    };

    std::uint64_t digest(std::string_view text) const {
        Digest digest(key_);
        digest.addBytes(text);
        return digest.finish();
    }
    // Once for each declaration: a long namespace name may be used by many.
    std::uint64_t ofNamespace(const XML_DOM_NsDecl *decl) {
        const auto [known, isNew] = namespaces_.try_emplace(decl, 0);
        if (isNew) known->second = digest(decl ? decl->namespaceName : "");
        return known->second;
    }
    void endText(Open &open) const {
        if (!open.inText) return;
        open.children.addWord(ofBoth(0, open.text.finish()));
        open.text = Digest(key_);
        open.inText = false;
    }

    Digest::Key key_ = Digest::drawKey();
    std::unordered_map<const XML_DOM_Node *, Element> elements_;
    std::unordered_map<const XML_DOM_NsDecl *, std::uint64_t> namespaces_;
    std::vector<Open> open_;
};

}  // namespace tool
