// compactxml.hpp - C++20 over the functions of compactxml.h: owners, ranges, string_views, UTF-8.
//
// Optional. Nothing but inline code that calls the C functions: no state, nothing more to link, no
// need of exceptions or RTTI. What holds for every function here:
//
//   Results    What may fail returns a Result. Test it and look at error(), or call value(), which
//              throws an Exception; compiled without exceptions it calls std::abort instead.
//   Owners     Document, OwnedNode, Buffer and Schemas own what they hold. All but Schemas move.
//   Handles    Node, Element and Attribute point into a tree as a string_view into a string: cheap
//              to copy, const or not alike, good until what they point to is deleted. A null handle
//              answers null and empty, and refuses to be changed.
//   Text       A string_view, in or out, is bytes of the tree: GB18030, in which ASCII is what it is
//              in UTF-8. Beyond ASCII use toUtf8 and fromUtf8, or what ends in Utf8. What is handed
//              out lives until its node changes. What is handed in is copied; with a NUL in it, it
//              is refused or not found, and never cut.
//   Changes    A refused change leaves the tree as it was.
//   Memory     Where the library has none left, that is an Error. Where std::string or std::vector
//              have none, they do what they always do.
//   Threads    As for compactxml.h: a tree belongs to one thread at a time.
//
// Not here: the callbacks of a parse, streams, checks of single values. The C functions take what
// get() returns.
#ifndef COMPACTXML_HPP
#define COMPACTXML_HPP

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <memory>
#include <optional>
#include <ranges>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "compactxml.h"

namespace compactxml {
// Should a program be made of both, what throws and what aborts go by different names.
#ifdef __cpp_exceptions
inline namespace throwing {
#else
inline namespace aborting {
#endif

// ---- results ----------------------------------------------------------------------------------

struct Error {
    std::uint32_t code = XML_OK;  // what the C function returned, or the code of a validation
    std::string message;          // UTF-8
};

class Exception : public std::runtime_error {
  public:
    explicit Exception(const Error &error) : std::runtime_error(error.message), code_(error.code) {}
    Error error() const { return {code_, what()}; }

  private:
    std::uint32_t code_;
};

namespace detail {
[[noreturn]] inline void fail([[maybe_unused]] const Error &error) {
#ifdef __cpp_exceptions
    throw Exception(error);
#else
    std::abort();
#endif
}
}  // namespace detail

template <class T>
class Result;

// Success, or an Error.
template <>
class [[nodiscard]] Result<void> {
  public:
    Result() = default;
    Result(Error error) : error_(std::move(error)) {}

    explicit operator bool() const noexcept { return error_.code == XML_OK; }
    const Error &error() const noexcept { return error_; }
    void value() const {
        if (!*this) detail::fail(error_);
    }

  private:
    Error error_;
};

// A value, or the Error that there is instead.
template <class T>
class [[nodiscard]] Result : public Result<void> {
  public:
    Result(T value) : value_(std::move(value)) {}
    Result(Error error) : Result<void>(std::move(error)) {}

    T &value() & { return Result<void>::value(), *value_; }
    const T &value() const & { return Result<void>::value(), *value_; }
    T value() && { return Result<void>::value(), std::move(*value_); }
    T &operator*() & { return value(); }
    const T &operator*() const & { return value(); }
    T operator*() && { return std::move(*this).value(); }
    T *operator->() { return &value(); }
    const T *operator->() const { return &value(); }

  private:
    std::optional<T> value_;
};

// ---- text -------------------------------------------------------------------------------------

namespace detail {

struct Release {
    void operator()(XML_DOM_Node *node) const { XML_DOM_DelNode(node); }
    void operator()(XML_IO_OutStream *stream) const { XML_IO_OutStreamDestroy(stream); }
    void operator()(char *text) const { std::free(text); }
};
template <class T>
using Owned = std::unique_ptr<T, Release>;

inline std::string_view view(const char *text) {
    return text ? std::string_view(text) : std::string_view();
}
inline std::optional<std::string_view> found(const char *text) {
    return text ? std::optional<std::string_view>(text) : std::nullopt;
}

// A text as the C functions take it; null, which they refuse, if it holds a NUL or is too long.
class CString {
  public:
    explicit CString(std::string_view text, std::size_t most = std::string_view::npos)
        : copy_(text), whole_(text.size() <= most && text.find('\0') == text.npos) {}
    operator const char *() const { return whole_ ? copy_.c_str() : nullptr; }

  private:
    std::string copy_;
    bool whole_;
};

inline Error refusal(const char *message) {
    return {XML_REFUSED, message};
}
inline Result<void> outcome(bool good, const char *message) {
    return good ? Result<void>() : refusal(message);
}

inline bool isAscii(std::string_view text) {
    unsigned bits = 0;
    for (const char c : text) bits |= static_cast<unsigned char>(c);
    return bits < 0x80;
}

// Converts between encodings in which ASCII is the same.
inline Result<std::string> convert(std::string_view text, std::uint32_t from, std::uint32_t to) {
    if (isAscii(text)) return std::string(text);
    const Owned<XML_IO_OutStream> stream(XML_IO_MemOutStreamCreate(from, to));
    // Half a character at the end waits for its other half; the NUL behind it is none.
    if (std::in_range<std::uint32_t>(text.size()) &&
        XML_IO_OutStreamAppend(stream.get(), text.data(),
                               static_cast<std::uint32_t>(text.size())) == XML_OK &&
        XML_IO_OutStreamAppend(stream.get(), "", 1) == XML_OK) {
        std::uint32_t length = 0;
        const char *bytes = XML_IO_MemOutStreamGetBuf(stream.get(), &length);
        return std::string(bytes, length - 1);
    }
    return refusal("the text does not convert");
}

}  // namespace detail

// Text of a tree in UTF-8. Refuses what is not GB18030, as a tree made by hand may hold.
inline Result<std::string> toUtf8(std::string_view tree) {
    return detail::convert(tree, XML_ENCODING_GB18030, XML_ENCODING_UTF_8);
}

// Text for a tree. Refuses what is not UTF-8.
inline Result<std::string> fromUtf8(std::string_view utf8) {
    return detail::convert(utf8, XML_ENCODING_UTF_8, XML_ENCODING_GB18030);
}

namespace detail {

// A message of the library in UTF-8. One that was cut inside a character does not convert; in it
// question marks take the place of what is not ASCII.
inline std::string messageUtf8(std::string_view message) {
    Result<std::string> converted = toUtf8(message);
    if (converted) return *std::move(converted);
    std::string plain(message);
    for (char &c : plain) {
        if (!isAscii({&c, 1})) c = '?';
    }
    return plain;
}

// A sink that is written to. The library must not be thrown through: an exception waits here.
template <class Sink>
struct SinkCall {
    static std::uint32_t write(void *context, const char *bytes, std::uint32_t length) noexcept {
        auto &call = *static_cast<SinkCall *>(context);
        if (call.ended) return XML_REFUSED;  // end tags are still offered
        call.ended = true;
#ifdef __cpp_exceptions
        try {
            call.ended = !call.sink(std::string_view(bytes, length));
        } catch (...) {
            call.thrown = std::current_exception();
        }
#else
        call.ended = !call.sink(std::string_view(bytes, length));
#endif
        return call.ended ? XML_REFUSED : XML_OK;
    }

    Sink &sink;
    bool ended = false;
    std::exception_ptr thrown = nullptr;
};

}  // namespace detail

// What has been written, with its length; a NUL of its encoding stands behind it.
class Buffer {
  public:
    Buffer() = default;
    Buffer(char *text, std::size_t size) : text_(text), size_(size) {}
    const char *data() const { return text_.get(); }
    std::size_t size() const { return text_ ? size_ : 0; }
    std::string_view view() const { return {data(), size()}; }
    operator std::string_view() const { return view(); }

  private:
    detail::Owned<char> text_;
    std::size_t size_ = 0;
};

// ---- nodes and ranges of them -----------------------------------------------------------------

// Nodes, elements or attributes that follow each other, all or those of a name. Iterators may outlive
// the range, but neither the name nor the node they stand at: go on before you remove it.
template <class Handle>
class Range : public std::ranges::view_base {
  public:
    class Iterator {
      public:
        using value_type = Handle;
        using difference_type = std::ptrdiff_t;
        using pointer = const Handle *;
        using reference = Handle;
        using iterator_concept = std::forward_iterator_tag;
        using iterator_category = std::input_iterator_tag;  // it gives no references

        Iterator() = default;
        Iterator(Handle first, std::optional<std::string_view> name) : at_(first), name_(name) {
            skipOthers();
        }
        Handle operator*() const { return at_; }
        const Handle *operator->() const { return &at_; }
        Iterator &operator++() {
            at_ = at_.next();
            skipOthers();
            return *this;
        }
        Iterator operator++(int) {
            const Iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator &other) const { return at_ == other.at_; }

      private:
        void skipOthers() {
            while (name_ && at_ && at_.name() != *name_) at_ = at_.next();
        }

        Handle at_;
        std::optional<std::string_view> name_;
    };

    Range() = default;
    explicit Range(Handle first, std::optional<std::string_view> name = std::nullopt)
        : first_(first, name) {}
    Iterator begin() const { return first_; }
    Iterator end() const { return {}; }
    bool empty() const { return begin() == end(); }
    Handle front() const { return *first_; }  // null if it is empty

  private:
    Iterator first_;
};

// A node that stands in no tree, with everything below it.
class OwnedNode {
  public:
    OwnedNode() = default;
    explicit OwnedNode(XML_DOM_Node *node) : node_(node) {}
    explicit operator bool() const { return node_ != nullptr; }
    XML_DOM_Node *get() const { return node_.get(); }  // for Node() or Element(), to look at it
    XML_DOM_Node *release() { return node_.release(); }

  private:
    detail::Owned<XML_DOM_Node> node_;
};

class Element;

// An element, a text or a CDATA section.
class Node {
  public:
    constexpr Node() = default;
    constexpr explicit Node(XML_DOM_Node *node) : node_(node) {}
    constexpr XML_DOM_Node *get() const { return node_; }
    constexpr explicit operator bool() const { return node_ != nullptr; }
    bool operator==(const Node &) const = default;

    bool isElement() const { return XML_DOM_GetNodeType(node_) == XML_DOM_NODE_ELEMENT; }
    bool isText() const { return XML_DOM_GetNodeType(node_) == XML_DOM_NODE_TEXT; }
    bool isCData() const { return XML_DOM_GetNodeType(node_) == XML_DOM_NODE_CDATA; }
    Element asElement() const;  // null if it is none
    Element parent() const;
    Node next() const { return Node(XML_DOM_GetNextSibling(node_)); }
    std::string path() const {  // such as "/switch/vlans[1]/vlan[3]"
        std::string path;
        std::uint32_t size = 128, length = 0;
        do {
            path.resize(size *= 2);
            length = XML_DOM_GetXPath(node_, size, path.data());
        } while (length + 1 == size);  // perhaps cut
        path.resize(length);
        return path;
    }

    std::string_view name() const { return detail::view(XML_DOM_GetNodeName(node_)); }
    // Of a text or a section, which cannot be set to nothing: remove it.
    std::string_view value() const { return detail::view(XML_DOM_GetNodeValue(node_)); }
    Result<std::string> valueUtf8() const { return toUtf8(value()); }
    Result<void> setValue(std::string_view value) const {
        return detail::outcome(XML_DOM_SetNodeValue(node_, detail::CString(value)) == XML_OK,
                               "no text, or nothing to set it to");
    }

    // Writes it with all below in the encoding of its document, UTF-8 without one; a root behind a
    // declaration, unless flags is XML_DOM_NO_DECLARATION.
    Result<Buffer> write(std::uint32_t flags = 0) const {
        char *text = nullptr;
        std::uint32_t length = 0;
        const std::uint32_t result = XML_DOM_TranslateStr(node_, flags, &text, &length);
        if (result == XML_OK) return Buffer(text, length);
        return Error{result, "cannot write: no node, no memory, or text beyond the encoding"};
    }
    // Calls sink with each piece, a std::string_view. It returns whether to go on; false, and what it
    // throws, end the writing, which then is refused, or throws the same.
    template <class Sink>
    Result<void> writeTo(Sink &&sink, std::uint32_t flags = 0) const {
        using Call = detail::SinkCall<std::remove_reference_t<Sink>>;
        Call call{sink};
        const std::uint32_t result = XML_DOM_OutPutTranslateStr(node_, flags, Call::write, &call);
#ifdef __cpp_exceptions
        if (call.thrown) std::rethrow_exception(call.thrown);
#endif
        return detail::outcome(result == XML_OK, call.ended ? "the sink ended it" : "cannot write");
    }

    Result<void> remove() const {  // and all below; without a parent it is its owner's
        if (!XML_DOM_GetNodeParent(node_)) return detail::refusal("no parent to remove it from");
        return XML_DOM_DelNode(node_), Result<void>();
    }
    // Takes it out of its parent; null without one. It must not outlive the tree if it takes
    // prefixes from above: a clone may.
    OwnedNode detach() const {
        if (!XML_DOM_GetNodeParent(node_)) return {};
        return XML_DOM_Clip(node_), OwnedNode(node_);
    }
    Result<OwnedNode> clone() const {
        OwnedNode copy(XML_DOM_CopyNode(node_));
        if (copy && (!isElement() || XML_DOM_CopySubTree(copy.get(), node_) == XML_OK)) return copy;
        return detail::refusal("cannot copy");
    }

  private:
    XML_DOM_Node *node_ = nullptr;
};

class Attribute {
  public:
    constexpr Attribute() = default;
    constexpr explicit Attribute(XML_DOM_Attr *attribute) : attribute_(attribute) {}
    constexpr XML_DOM_Attr *get() const { return attribute_; }
    constexpr explicit operator bool() const { return attribute_ != nullptr; }
    bool operator==(const Attribute &) const = default;

    Attribute next() const { return Attribute(XML_DOM_GetNextAttr(attribute_)); }
    std::string_view name() const {
        const char *name = nullptr;
        XML_DOM_GetAttrNameSpace(attribute_, &name, nullptr);
        return detail::view(name);
    }
    std::optional<std::string_view> namespaceName() const {  // none without a prefix
        const char *name = nullptr;
        XML_DOM_GetAttrNameSpace(attribute_, nullptr, &name);
        return detail::found(name);
    }
    std::string_view value() const { return detail::view(XML_DOM_GetAttrValByHandle(attribute_)); }
    Result<std::string> valueUtf8() const { return toUtf8(value()); }

  private:
    XML_DOM_Attr *attribute_ = nullptr;
};

inline Result<OwnedNode> makeText(std::string_view text) {
    if (OwnedNode node{XML_DOM_CreateTextNode(detail::CString(text))}) return node;
    return detail::refusal("cannot make the text");
}
inline Result<OwnedNode> makeCData(std::string_view text) {
    if (OwnedNode node{XML_DOM_CreateCDataNode(detail::CString(text))}) return node;
    return detail::refusal("cannot make the section");
}
// An element, with a text unless that is empty.
inline Result<OwnedNode> makeElement(std::string_view name, std::string_view text = "") {
    const detail::CString local(name), content(text);
    OwnedNode node(text.empty() ? XML_DOM_CreateElementNode(local)
                   : content    ? XML_DOM_CreateElementWithText(local, content)
                                : nullptr);
    if (node) return node;
    return detail::refusal("cannot make the element: its name, a NUL, or no memory");
}

// Names are local names, without the prefix.
class Element : public Node {
  public:
    constexpr Element() = default;
    explicit Element(XML_DOM_Node *node) : Node(Node(node).isElement() ? node : nullptr) {}
    Element next() const { return firstFrom(Node::next()); }  // the next element

    Range<Node> children() const { return Range(Node(XML_DOM_GetFirstChild(get()))); }
    Range<Element> elements() const { return Range(firstFrom(children().front())); }
    Range<Element> elements(std::string_view name) const {
        return Range(firstFrom(children().front()), name);
    }
    Element child(std::string_view name) const { return elements(name).front(); }
    Range<Attribute> attributes() const { return Range(Attribute(XML_DOM_GetFirstAttr(get()))); }

    // Of this name in any namespace, or as for XML_DOM_GetNodeNsAttribute in that one.
    std::optional<std::string_view> attribute(std::string_view name) const {
        return detail::found(XML_DOM_GetNodeAttrValByName(get(), detail::CString(name)));
    }
    std::optional<std::string_view> attribute(std::string_view namespaceName,
                                              std::string_view name) const {
        const detail::CString space(namespaceName), local(name);
        return detail::found(space ? XML_DOM_GetNodeNsAttribute(get(), space, local) : nullptr);
    }
    Result<std::string> attributeUtf8(std::string_view name) const {
        if (const auto value = attribute(name)) return toUtf8(*value);
        return Error{XML_MISSING, "no attribute '" + detail::messageUtf8(name) + "'"};
    }

    // The first text and the first CDATA section among the children.
    std::string_view text() const { return detail::view(XML_DOM_GetFirstTextChildValue(get())); }
    std::string_view cdata() const { return detail::view(XML_DOM_GetFirstCDataChildValue(get())); }
    Result<std::string> textUtf8() const { return toUtf8(text()); }

    // By a path as XML_DOM_SelectSingleNode takes it, of at most 1023 bytes.
    Element select(std::string_view path) const {
        return Element(XML_DOM_SelectSingleNode(get(), detail::CString(path, 1023)));
    }
    std::optional<std::string_view> selectText(std::string_view path) const {
        return detail::found(XML_DOM_GetSelectSingleNodeText(get(), detail::CString(path, 1023)));
    }
    std::optional<long long> selectInt(std::string_view path) const {
        long long number = 0;
        const std::uint32_t result =
            XML_DOM_GetSelectSingleNodeAsInt64(get(), detail::CString(path, 1023), &number);
        return result == XML_OK ? std::optional(number) : std::nullopt;
    }

    // Both are empty without a prefix, but for the name of a default namespace.
    std::string_view prefix() const {
        const char *prefix = nullptr;
        XML_DOM_GetNodeNameSpace(get(), &prefix, nullptr);
        return detail::view(prefix);
    }
    std::string_view namespaceName() const {
        const char *name = nullptr;
        XML_DOM_GetNodeNameSpace(get(), nullptr, &name);
        return detail::view(name);
    }
    // A prefix is declared before it is set; "" is none.
    Result<void> declare(std::string_view prefix, std::string_view namespaceName) const {
        const detail::CString from(prefix), to(namespaceName);
        const bool good = from && to && XML_DOM_AddNodeNameSpace(get(), from, to) == XML_OK;
        return detail::outcome(good, "cannot declare the prefix");
    }
    Result<void> setPrefix(std::string_view prefix) const {
        const detail::CString bytes(prefix);
        const bool good = bytes && XML_DOM_SetNodeNameSpace(get(), bytes) == XML_OK;
        return detail::outcome(good, "the prefix is not declared");
    }

    // Replaces the first text among the children or appends one; "" removes it.
    Result<void> setText(std::string_view text) const {
        Node old = children().front();
        while (old && !old.isText()) old = old.next();
        if (old) return text.empty() ? old.remove() : old.setValue(text);
        if (text.empty()) return detail::outcome(bool(*this), "no element");
        Result<OwnedNode> made = makeText(text);
        return made ? append(*std::move(made)) : made.error();
    }
    Result<void> setTextUtf8(std::string_view text) const {
        const Result<std::string> tree = fromUtf8(text);
        return tree ? setText(*tree) : tree.error();
    }

    // Sets an attribute without a prefix. It becomes the last, whether it was there or not.
    Result<void> setAttribute(std::string_view name, std::string_view value) const {
        const bool isThere = std::ranges::any_of(attributes(), [name](Attribute other) {
            return other.name() == name && !name.empty() && !other.namespaceName();
        });
        if (!isThere) return addAttribute("", name, value);
        // The old one, the first of the two, goes when the new one is there. The name is good.
        const detail::CString local(name), content(value);
        const bool good = XML_DOM_AddAttrInner(get(), local, content) != nullptr;
        if (good) XML_DOM_DelAttr(get(), nullptr, local);
        return detail::outcome(good, "cannot set the attribute: a NUL, or no memory");
    }
    Result<void> setAttributeUtf8(std::string_view name, std::string_view value) const {
        const Result<std::string> local = fromUtf8(name), tree = fromUtf8(value);
        return !local ? local.error() : !tree ? tree.error() : setAttribute(*local, *tree);
    }
    Result<void> addAttribute(std::string_view prefix, std::string_view name,
                              std::string_view value) const {
        const detail::CString bytes(prefix), local(name), content(value);
        const bool good = bytes && XML_DOM_AddAttr(get(), bytes, local, content);
        return detail::outcome(good, "cannot add the attribute: its name, prefix, or it is there");
    }
    void removeAttribute(std::string_view name, std::string_view prefix = "") const {
        const detail::CString local(name), bytes(prefix);
        if (bytes) XML_DOM_DelAttr(get(), bytes, local);
    }

    // Takes a node over as the last child or in front of a child. A refused one stays the caller's.
    Result<Node> append(OwnedNode &&node) const {
        return attached(std::move(node), XML_DOM_AddChildNode(get(), node.get()) == XML_OK);
    }
    Result<Node> insert(Node before, OwnedNode &&node) const {
        // XML_DOM_InsertBeforeNode leaves it to its caller to look at the node.
        const Node child(node.get());
        bool good = before && before.parent() == *this && child && !child.parent() &&
                    !XML_DOM_GetRoot(child.get());
        for (Element e = *this; good && e; e = e.parent()) good = e != child;
        good = good && XML_DOM_InsertBeforeNode(before.get(), child.get()) == XML_OK;
        return attached(std::move(node), good);
    }
    // Makes an element as makeElement does and appends it.
    Result<Element> appendElement(std::string_view name, std::string_view text = "") const {
        Result<OwnedNode> made = makeElement(name, text);
        if (!made) return made.error();
        const Result<Node> node = append(*std::move(made));
        return node ? Result<Element>(Element(node->get())) : node.error();
    }
    Result<Element> appendElementUtf8(std::string_view name, std::string_view text = "") const {
        const Result<std::string> local = fromUtf8(name), tree = fromUtf8(text);
        return !local ? local.error() : !tree ? tree.error() : appendElement(*local, *tree);
    }

  private:
    static Element firstFrom(Node node) {
        while (node && !node.isElement()) node = node.next();
        return Element(node.get());
    }
    static Result<Node> attached(OwnedNode &&node, bool good) {
        return good ? Result<Node>(Node(node.release())) : detail::refusal("it cannot stand there");
    }
};

inline Element Node::asElement() const {
    return Element(node_);
}
inline Element Node::parent() const {
    return Element(XML_DOM_GetNodeParent(node_));
}

// ---- documents --------------------------------------------------------------------------------

class Document {
  public:
    Document() = default;
    explicit Document(XML_DOM_Node *root) : root_(root) {}  // takes over what C functions made

    static Result<Document> create(std::string_view rootName) {
        Document made(XML_DOM_CreateElementNode(detail::CString(rootName)));
        if (XML_DOM_SetRoot(made.get()) == XML_OK) return made;
        return detail::refusal("cannot make a root: its name, or no memory");
    }
    Result<Document> clone() const {
        Document copy(XML_DOM_CopyRoot(get()));
        if (XML_DOM_CopySubTree(copy.get(), get()) == XML_OK) return copy;
        return detail::refusal("cannot copy");
    }

    explicit operator bool() const { return root_ != nullptr; }
    Element root() const & { return Element(get()); }
    Element root() const && = delete;  // it would outlive its document
    XML_DOM_Node *get() const { return root_.get(); }
    XML_DOM_Node *release() { return root_.release(); }

    // The encoding to write in: XML_ENCODING_*.
    std::uint32_t encoding() const { return XML_DOM_GetEncoding(get()); }
    std::string_view encodingName() const {
        return detail::view(XML_DOM_EncodingEnumToStr(encoding()));
    }
    Result<void> setEncoding(std::uint32_t encoding) {
        return detail::outcome(XML_DOM_SetEncoding(get(), encoding) == XML_OK, "no such encoding");
    }

    Result<Buffer> write(std::uint32_t flags = 0) const { return root().write(flags); }
    template <class Sink>
    Result<void> writeTo(Sink &&sink, std::uint32_t flags = 0) const {
        return root().writeTo(std::forward<Sink>(sink), flags);
    }

  private:
    detail::Owned<XML_DOM_Node> root_;
};

namespace detail {
// The document that build(errorSize, errorBuffer) makes, or what it says, or what is said here.
template <class Build>
Result<Document> built(const char *otherwise, const Build &build) {
    char message[512] = "";
    Document document(build(std::uint32_t{sizeof message}, message));
    if (document) return document;
    return Error{XML_REFUSED, messageUtf8(*message ? message : otherwise)};
}
}  // namespace detail

inline Result<Document> parse(std::string_view text) {
    if (!std::in_range<std::uint32_t>(text.size())) return detail::refusal("a text of 4 GiB");
    return detail::built("no memory", [text](std::uint32_t size, char *message) {
        const auto length = static_cast<std::uint32_t>(text.size());
        return XML_DOM_BuildTreeByMem(text.data(), length, size, message);
    });
}

// A document in pieces, which may be cut anywhere.
inline Result<Document> parse(std::span<const std::string_view> pieces) {
    std::vector<XML_IO_MemChunk> chunks(pieces.size());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (!std::in_range<std::uint32_t>(pieces[i].size())) return detail::refusal("4 GiB");
        chunks[i] = {i + 1 < pieces.size() ? &chunks[i + 1] : nullptr,
                     static_cast<std::uint32_t>(pieces[i].size()),
                     reinterpret_cast<const unsigned char *>(pieces[i].data())};
    }
    const XML_IO_MemList list{chunks.data()};
    return detail::built("no memory", [&list](std::uint32_t size, char *message) {
        return XML_DOM_BuildTreeByMemList(&list, size, message);
    });
}

inline Result<Document> readFile(const std::string &path) {
    return detail::built("cannot open the file", [&path](std::uint32_t size, char *message) {
        return XML_DOM_BuildTreeByFile(detail::CString(path), size, message);
    });
}

// ---- validation -------------------------------------------------------------------------------

// Success, or the first thing that is wrong, with where it is. error().code is 1 to 12 then, or
// XML_REFUSED if nothing could be said.
class [[nodiscard]] Verdict : public Result<void> {
  public:
    Verdict() = default;
    Verdict(Error error, Node where) : Result(std::move(error)), where_(where) {}
    Element where() const { return where_.asElement(); }

  private:
    Node where_;
};

// Compiled schemas to validate against. Neither moved nor copied.
class Schemas {
  public:
    using Function = std::uint32_t (*)(SchemaRoot *);

    Schemas() { Schema_InitRoot(&root_); }
    Schemas(const Schemas &) = delete;
    Schemas &operator=(const Schemas &) = delete;
    ~Schemas() {
        for (const Function deregister : deregister_) deregister(&root_);
        Schema_ExitRoot(&root_);
    }
    SchemaRoot *get() { return &root_; }

    // The two functions that xsd2c makes of a schema: SchemaReg_x and SchemaDereg_x.
    Result<void> add(Function registerAll, Function deregisterAll) {
        deregister_.push_back(deregisterAll);
        if (registerAll(&root_) == XML_OK) return {};
        deregister_.pop_back();
        deregisterAll(&root_);
        return detail::refusal("cannot register the schema");
    }

    // mode: as for Schema_ValidateXmlEx.
    Verdict validate(Element root, std::uint32_t mode = 0) const {
        SchemaErrorInfo info;
        if (Schema_ValidateXmlEx(root.get(), &root_, mode, &info) != XML_OK) {
            return {detail::refusal("cannot validate: no document, or no memory"), Node()};
        }
        if (info.code == 0) return {};
        char message[2048] = "";
        Schema_GetErrorDesc(&info, sizeof message, message);
        return {{info.code, detail::messageUtf8(message)}, Node(info.node)};
    }
    Verdict validate(const Document &document, std::uint32_t mode = 0) const {
        return validate(document.root(), mode);
    }

  private:
    SchemaRoot root_;
    std::vector<Function> deregister_;
};

}  // namespace throwing or aborting
}  // namespace compactxml

// An iterator needs no range that lives.
template <class Handle>
inline constexpr bool std::ranges::enable_borrowed_range<compactxml::Range<Handle>> = true;

#endif  // COMPACTXML_HPP
