// tree_tools.h - what the demo needs beside the library: owners, text conversion, counting, finding
// and comparing trees. Every walk goes by links, so the depth of a document costs no stack.
#pragma once
#include <compactxml.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace demo {

struct Release {
    void operator()(XML_DOM_Node *node) const { XML_DOM_DelNode(node); }
    void operator()(XML_IO_OutStream *stream) const { XML_IO_OutStreamDestroy(stream); }
    void operator()(char *text) const { std::free(text); }
};
template <class T>
using Owned = std::unique_ptr<T, Release>;

// Converts a string from one encoding to another; "(does not convert)" if it does not, "" for null.
std::string convert(const char *text, std::uint32_t from, std::uint32_t to);

// Trees hold GB18030, terminals and this source file are UTF-8.
inline std::string toUtf8(const char *text) {
    return convert(text, XML_ENCODING_GB18030, XML_ENCODING_UTF_8);
}
inline std::string toTree(const char *text) {
    return convert(text, XML_ENCODING_UTF_8, XML_ENCODING_GB18030);
}

struct Counts {
    unsigned long elements = 0, attributes = 0, declarations = 0, texts = 0, sections = 0;
    unsigned long textBytes = 0;  // in UTF-8, texts and CDATA sections together
    unsigned depth = 0;           // of elements
    bool operator==(const Counts &) const = default;
};

// Counts a node and everything below it.
Counts countTree(const XML_DOM_Node *root);

// Counts the same things by parsing the file with callbacks, without a tree. False if it is not
// accepted.
bool countFile(const std::string &path, Counts &counts);

// The first child of this local name; null if there is none.
XML_DOM_Node *child(const XML_DOM_Node *parent, std::string_view name);

// Follows child names separated by "/", the first child of each name.
XML_DOM_Node *descend(const XML_DOM_Node *node, std::string_view path);

// The first child element whose attribute has this value; null if there is none.
XML_DOM_Node *childWith(const XML_DOM_Node *parent, const char *attribute, std::string_view value);

// Compares two trees node by node: types, names, namespaces, declarations, attributes in order, and
// values. Returns "" and the number of nodes compared, or the first difference in words.
std::string difference(const XML_DOM_Node *left, const XML_DOM_Node *right, unsigned long &nodes);

}  // namespace demo
