#include "tests/support/parser_model.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/expectations.h"
#include "tests/support/model_chars.h"

namespace support {

namespace {

using std::string;
using std::string_view;
using namespace std::string_view_literals;

constexpr string_view kXmlUri = "http://www.w3.org/XML/1998/namespace";
constexpr string_view kXmlnsUri = "http://www.w3.org/2000/xmlns/";

// A code of the message table, thrown to end the parse.
struct Stop {
    int code;
};

// The number of a declared encoding.
std::uint32_t encodingNumber(string_view name) {
    constexpr string_view kNames[] = {"UTF-8",    "UTF-16LE", "UTF-16BE", "GB2312", "UTF-32LE",
                                      "UTF-32BE", "UTF-16",   "UTF-32",   "GBK",    "GB18030",
                                      "UCS-4",    "UCS-4BE",  "UCS-4LE"};
    const auto upper = [](char c) { return 'a' <= c && c <= 'z' ? static_cast<char>(c - 32) : c; };
    for (std::uint32_t i = 0; i < std::size(kNames); ++i) {
        if (std::equal(name.begin(), name.end(), kNames[i].begin(), kNames[i].end(),
                       [&](char a, char b) { return upper(a) == b; })) {
            return i;
        }
    }
    throw Stop{32};
}

string shown(const std::optional<string> &s) {
    return s ? '"' + printable(*s) + '"' : "null";
}

struct Attribute {
    std::optional<string> prefix;
    string name;
    string value;
    std::optional<string> uri;
};

struct Binding {
    std::optional<string> prefix;
    string uri;
};

class Model {
  public:
    explicit Model(string_view document, const RecordOptions &options = {})
        : document_(document), options_(options) {
        if (follows("\xEF\xBB\xBF")) at_ = 3;
    }

    RecordedParse run() {
        int code = 0;
        try {
            document();
        } catch (const Stop &stop) {
            code = stop.code;
        }
        if (code) report(code);
        return std::move(parse_);
    }

    bool readsDeclaredEncoding() const {
        const bool ascii = std::all_of(document_.begin(), document_.end(),
                                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
        const bool likeAscii = encoding_ == XML_ENCODING_GB2312 || encoding_ == XML_ENCODING_GBK ||
                               encoding_ == XML_ENCODING_GB18030;
        return encoding_ == XML_ENCODING_UTF_8 || (likeAscii && ascii);
    }

  private:
    // ------------------------------------------------------------ characters

    bool atEnd() const { return at_ >= document_.size(); }
    int peek() const { return atEnd() ? -1 : static_cast<unsigned char>(document_[at_]); }
    bool follows(string_view s) const { return document_.substr(at_, s.size()) == s; }

    int byteAt(std::size_t i) const {
        return i < document_.size() ? static_cast<unsigned char>(document_[i]) : -1;
    }

    static std::size_t lengthOf(int lead) {
        constexpr std::size_t kLengths[] = {2, 2, 3, 4};
        return lead < 0x80 ? 1 : kLengths[(lead >> 4) & 3];
    }

    void next() {
        const int c = peek();
        if (c < 0) return;
        if (c >= 0x80) {
            at_ = std::min(at_ + lengthOf(c), document_.size());
            ++column_;
        } else if (c == '\n' || (c == '\r' && byteAt(at_ + 1) != '\n')) {
            ++at_;
            ++line_;
            column_ = 1;
        } else {
            ++at_;
            ++column_;
        }
    }

    void skip(std::size_t characters) {
        while (characters--) next();
    }

    void skipBlanks() {
        while (isBlank(peek())) next();
    }

    long current() const {
        const int lead = peek();
        if (lead < 0x80) return lead;
        if ((lead & 0xC0) == 0x80) return -1;
        const std::size_t length = lengthOf(lead);
        if (document_.size() - at_ < length) return -1;
        constexpr int kMasks[] = {0x1F, 0x1F, 0x0F, 0x07};
        long value = lead & kMasks[(lead >> 4) & 3];
        for (std::size_t i = 1; i < length; ++i) {
            const int byte = byteAt(at_ + i);
            if ((byte & 0xC0) != 0x80) return -1;
            if (i == 1 && ((lead == 0xE0 && byte < 0xA0) || (lead == 0xED && byte > 0x9F) ||
                           (lead == 0xF0 && byte < 0x90) || (lead == 0xF4 && byte > 0x8F))) {
                return -1;
            }
            value = value * 64 + (byte & 0x3F);
        }
        return value;
    }

    void legal() const {
        if (!within(kLegal, current())) throw Stop{9};
    }

    void require(string_view s, int code) {
        if (!follows(s)) throw Stop{code};
        for (const std::size_t end = at_ + s.size(); at_ < end;) next();
    }

    char quote() {
        const int c = peek();
        if (c != '"' && c != '\'') throw Stop{33};
        next();
        return static_cast<char>(c);
    }

    string readName() {
        if (!within(kNameStart, current())) throw Stop{9};
        const std::size_t from = at_;
        while (!atEnd() && (within(kNameStart, current()) || within(kNameMore, current()))) next();
        return string(document_.substr(from, at_ - from));
    }

    void readQName(std::optional<string> &prefix, string &name) {
        name = readName();
        prefix.reset();
        if (peek() != ':') return;
        next();
        if (atEnd()) throw Stop{68};
        prefix = name;
        name = readName();
    }

    // ------------------------------------------------------------ calls

    // A callback that stops the parse takes effect at the next obey().
    void call(Slot slot, string text) {
        if (options_.positions) {
            text += " @" + std::to_string(line_) + ':' + std::to_string(column_);
        }
        parse_.calls.push_back(std::move(text));
        if (slot == options_.stopSlot && ++stopCalls_ == options_.stopCall) {
            status_ = options_.stopStatus;
        }
    }

    void obey() const {
        if (status_) throw Stop{status_};
    }

    void callDocument(Slot slot, const char *which) {
        call(slot, string(which) + " encoding " + std::to_string(encoding_) + " version \"1.0\"");
        obey();
    }

    void report(int code) {
        parse_.result = XML_REFUSED;
        parse_.errors = 1;
        parse_.status = code;
        parse_.line = line_;
        parse_.column = column_;
        parse_.message = messageOf(code);
        std::size_t from = at_ < 32 ? 0 : at_ - 32;
        while (from < document_.size() && (byteAt(from) & 0xC0) == 0x80) ++from;
        string_view snippet = document_.substr(from, 63);
        std::size_t last = snippet.size();
        while (last && (static_cast<unsigned char>(snippet[last - 1]) & 0xC0) == 0x80) --last;
        if (last) {
            const int lead = static_cast<unsigned char>(snippet[last - 1]);
            if (snippet.size() - (last - 1) < lengthOf(lead)) snippet = snippet.substr(0, last - 1);
        }
        // The snippet is a string: a NUL in the document ends what can be seen of it.
        parse_.snippet = string(snippet.substr(0, snippet.find('\0')));
    }

    // ------------------------------------------------------------ prolog

    void document() {
        if (follows("<?xml")) declaration();
        callDocument(Slot::kStartDocument, "startDocument");
        misc();
        if (follows("<!DOCTYPE")) {
            doctype();
            misc();
        }
        skipBlanks();
        if (peek() != '<') throw Stop{atEnd() ? 4 : 72};
        element();
        misc();
        if (!atEnd()) throw Stop{5};
        callDocument(Slot::kEndDocument, "endDocument");
    }

    bool declarationEnds() {
        if (atEnd()) return false;
        if (!isBlank(peek())) {
            require("?>", 65);
            return true;
        }
        skipBlanks();
        if (!follows("?>")) return false;
        skip(2);
        return true;
    }

    char pseudoAttribute(string_view name, int missing) {
        require(name, missing);
        skipBlanks();
        require("=", 75);
        skipBlanks();
        return quote();
    }

    void declaration() {
        skip(5);
        if (!isBlank(peek())) throw Stop{65};
        skipBlanks();
        char q = pseudoAttribute("version", 96);
        require("1.0", 97);
        require(string_view(&q, 1), 34);
        if (declarationEnds()) return;
        if (follows("encoding")) {
            q = pseudoAttribute("encoding", 0);
            const std::size_t from = at_;
            while (!atEnd() && peek() != q) next();
            if (atEnd()) throw Stop{34};
            encoding_ = encodingNumber(document_.substr(from, at_ - from));
            next();
            if (declarationEnds()) return;
        }
        q = pseudoAttribute("standalone", 57);
        if (follows("yes") || follows("no")) {
            skip(follows("yes") ? 3 : 2);
        } else {
            throw Stop{78};
        }
        require(string_view(&q, 1), 34);
        skipBlanks();
        require("?>", 57);
    }

    void misc() {
        for (;;) {
            skipBlanks();
            if (follows("<!--")) {
                comment();
            } else if (follows("<?")) {
                instruction();
            } else {
                return;
            }
        }
    }

    void comment() {
        skip(4);
        const std::size_t from = at_;
        while (!follows("-->")) {
            if (atEnd()) throw Stop{45};
            if (follows("--")) throw Stop{80};
            legal();
            next();
            skipBlanks();
        }
        const string text(document_.substr(from, at_ - from));
        skip(3);
        call(Slot::kComment, "comment " + shown(text));
        obey();
    }

    void instruction() {
        skip(2);
        if (atEnd()) throw Stop{46};
        const string target = readName();
        if (target == "xml") throw Stop{46};
        std::optional<string> data;
        if (!follows("?>")) {
            if (!isBlank(peek())) throw Stop{65};
            skipBlanks();
            const std::size_t from = at_;
            while (!follows("?>")) {
                if (atEnd()) throw Stop{47};
                legal();
                next();
                skipBlanks();
            }
            data = string(document_.substr(from, at_ - from));
        }
        call(Slot::kProcessingInstruction,
             "processingInstruction " + shown(target) + ' ' + shown(data));
        skip(2);
        obey();
    }

    void doctype() {
        skip(9);
        if (!isBlank(peek())) throw Stop{65};
        skipBlanks();
        bool subset = false;
        for (;;) {
            if (!subset && peek() == '>') return next();
            if (subset && peek() == ']') {
                next();
                skipBlanks();
                if (peek() == '>') return next();
            }
            if (atEnd()) throw Stop{61};
            legal();
            if (peek() == '[') subset = true;
            next();
        }
    }

    // ------------------------------------------------------------ content

    void element() {
        const std::size_t outer = bindings_.size();
        next();
        if (atEnd()) throw Stop{77};
        std::optional<string> prefix;
        string name;
        readQName(prefix, name);
        std::vector<Attribute> attributes;
        while (!follows(">") && !follows("/>")) {
            if (!isBlank(peek())) throw Stop{65};
            skipBlanks();
            if (follows(">") || follows("/>")) break;
            if (atEnd()) throw Stop{77};
            attribute(attributes, outer);
        }
        for (Attribute &a : attributes) {
            if (!a.prefix) continue;
            a.uri = lookup(a.prefix);
            if (!a.uri) throw Stop{201};
        }
        for (std::size_t i = 0; i < attributes.size(); ++i) {
            for (std::size_t k = 0; k < i; ++k) {
                if (attributes[i].name == attributes[k].name &&
                    attributes[i].uri == attributes[k].uri) {
                    throw Stop{42};
                }
            }
        }
        const std::optional<string> uri = lookup(prefix);
        if (prefix && !uri) throw Stop{201};
        callStart(name, prefix, uri, attributes, outer);
        const string end =
            "endElementNs " + shown(name) + " prefix " + shown(prefix) + " uri " + shown(uri);
        if (follows("/>")) {
            skip(2);
            call(Slot::kEndElementNs, end);
            obey();
        } else {
            next();
            content();
            skip(2);
            if (prefix) require(*prefix + ":", 76);
            require(name, 76);
            skipBlanks();
            require(">", 77);
            call(Slot::kEndElementNs, end);
            obey();
        }
        bindings_.resize(outer);
    }

    void callStart(const string &name, const std::optional<string> &prefix,
                   const std::optional<string> &uri, const std::vector<Attribute> &attributes,
                   std::size_t outer) {
        string text = "startElementNs " + shown(name) + " prefix " + shown(prefix) + " uri " +
                      shown(uri) + " ns [";
        for (std::size_t i = outer; i < bindings_.size(); ++i) {
            if (i > outer) text += ' ';
            text += bindings_[i].prefix.value_or("") + '=' + shown(bindings_[i].uri);
        }
        text += "] attrs [";
        for (const Attribute &a : attributes) {
            if (&a != attributes.data()) text += ' ';
            if (a.prefix) text += printable(*a.prefix) + ':';
            text += printable(a.name);
            if (a.uri) text += '{' + printable(*a.uri) + '}';
            text += '=' + shown(a.value);
        }
        call(Slot::kStartElementNs, text + ']');
        obey();
    }

    void attribute(std::vector<Attribute> &attributes, std::size_t outer) {
        Attribute a;
        readQName(a.prefix, a.name);
        skipBlanks();
        require("=", 75);
        skipBlanks();
        const char q = quote();
        while (peek() != q) {
            if (atEnd()) throw Stop{34};
            if (peek() == '<') throw Stop{38};
            charOrReference(a.value);
        }
        next();
        std::optional<string> declared;
        if (a.prefix == "xmlns") {
            declared = a.name;
        } else if (a.prefix || a.name != "xmlns") {
            attributes.push_back(std::move(a));
            return;
        }
        const bool isXml = declared == "xml";
        if ((declared && a.value.empty()) || declared == "xmlns" || a.value == kXmlnsUri ||
            isXml != (a.value == kXmlUri)) {
            throw Stop{35};
        }
        for (std::size_t i = outer; i < bindings_.size(); ++i) {
            if (bindings_[i].prefix == declared) throw Stop{42};
        }
        bindings_.push_back({declared, a.value});
    }

    std::optional<string> lookup(const std::optional<string> &prefix) const {
        for (std::size_t i = bindings_.size(); i-- > 0;) {
            if (bindings_[i].prefix == prefix) return bindings_[i].uri;
        }
        if (prefix == "xml") return string(kXmlUri);
        return std::nullopt;
    }

    void content() {
        for (;;) {
            if (follows("</")) return;
            if (atEnd()) throw Stop{77};
            if (follows("<![CDATA[")) {
                cdata();
            } else if (follows("<!--")) {
                comment();
            } else if (follows("<?")) {
                instruction();
            } else if (follows("<")) {
                element();
            } else {
                text();
            }
        }
    }

    void cdata() {
        skip(9);
        const std::size_t from = at_;
        while (!follows("]]>")) {
            if (atEnd()) throw Stop{63};
            legal();
            next();
        }
        const string text(document_.substr(from, at_ - from));
        skip(3);
        call(Slot::kCdataBlock,
             "cdataBlock \"" + printable(text) + "\" " + std::to_string(text.size()));
        obey();
    }

    void text() {
        string text;
        std::size_t blanks = 0;
        skipBlanks();
        while (!atEnd() && peek() != '<') {
            if (follows("]]>")) throw Stop{62};
            blanks = isBlank(peek()) ? blanks + 1 : 0;
            charOrReference(text);
        }
        text.resize(text.size() - blanks);
        if (!text.empty()) {
            call(Slot::kCharacters,
                 "characters \"" + printable(text) + "\" " + std::to_string(text.size()));
            obey();
        }
    }

    void charOrReference(string &out) {
        if (peek() != '&') {
            legal();
            const std::size_t from = at_;
            next();
            out += document_.substr(from, at_ - from);
            return;
        }
        if (follows("&#")) {
            const bool hex = follows("&#x");
            skip(hex ? 3 : 2);
            const string_view digits = hex ? "0123456789abcdefABCDEF"sv : "0123456789"sv;
            long value = 0;
            for (; !atEnd() && digits.find(document_[at_]) != digits.npos; next()) {
                const int c = peek();
                const int digit = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
                value = std::min(value * (hex ? 16 : 10) + digit, 0x110000L);
            }
            require(";", 25);
            if (!within(kLegal, value)) throw Stop{9};
            appendUtf8(out, value);
            return;
        }
        next();
        constexpr struct {
            string_view name;
            char c;
        } kEntities[] = {
            {"lt;", '<'}, {"gt;", '>'}, {"amp;", '&'}, {"apos;", '\''}, {"quot;", '"'}};
        for (const auto &entity : kEntities) {
            if (!follows(entity.name)) continue;
            skip(entity.name.size());
            out += entity.c;
            return;
        }
        throw Stop{26};
    }

    static void appendUtf8(string &out, long c) {
        const auto add = [&out](long byte) { out += static_cast<char>(byte); };
        if (c < 0x80) return add(c);
        if (c < 0x800) {
            add(0xC0 | c >> 6);
        } else if (c < 0x10000) {
            add(0xE0 | c >> 12);
            add(0x80 | (c >> 6 & 0x3F));
        } else {
            add(0xF0 | c >> 18);
            add(0x80 | (c >> 12 & 0x3F));
            add(0x80 | (c >> 6 & 0x3F));
        }
        add(0x80 | (c & 0x3F));
    }

    string_view document_;
    RecordOptions options_;
    int stopCalls_ = 0;
    int status_ = 0;
    std::size_t at_ = 0;
    int line_ = 1;
    int column_ = 1;
    std::uint32_t encoding_ = XML_ENCODING_UTF_8;
    std::vector<Binding> bindings_;  // the innermost last
    RecordedParse parse_;
};

}  // namespace

bool modelSpeaksFor(std::string_view document) {
    for (const string_view start : {"\xFF\xFE"sv, "\xFE\xFF"sv, "\0\0\xFE\xFF"sv, "<\0?\0"sv,
                                    "\0<\0?"sv, "<\0\0\0"sv, "\0\0\0<"sv}) {
        if (document.substr(0, start.size()) == start) return false;
    }
    if (document.empty()) return false;
    Model model(document);
    model.run();
    return model.readsDeclaredEncoding();
}

RecordedParse modelParse(std::string_view document, const RecordOptions &options) {
    return Model(document, options).run();
}

}  // namespace support
