#include "tests/support/feeds.h"

#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <stdexcept>
#include <utility>

#include "gtest/gtest.h"

namespace support {

// ---------------------------------------------------------------- files

TemporaryFile::TemporaryFile(std::string_view content)
    : path_(testing::TempDir() + "compactxml-" + std::string(6, 'X')) {
    const int fd = mkstemp(path_.data());
    if (fd < 0) throw std::runtime_error("no temporary file");
    while (!content.empty()) {
        const ssize_t written = ::write(fd, content.data(), content.size());
        if (written <= 0) throw std::runtime_error("temporary file not written");
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    ::close(fd);
}

TemporaryFile::~TemporaryFile() {
    ::unlink(path_.c_str());
}

// ---------------------------------------------------------------- feeds

struct Feed::Document {
    // A block of exactly the given bytes; new char[0] is a block without any.
    struct Block {
        explicit Block(std::string_view text) : bytes(new char[text.size()]), size(text.size()) {
            if (!text.empty()) std::memcpy(bytes.get(), text.data(), text.size());
        }
        std::unique_ptr<char[]> bytes;
        std::size_t size;
    };

    std::vector<Block> blocks;
    std::vector<XML_IO_MemChunk> chunks;
    XML_IO_MemList list{};
    std::unique_ptr<TemporaryFile> file;

    void addBlock(std::string_view text) { blocks.emplace_back(text); }

    void linkChunks() {
        chunks.resize(blocks.size());
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            chunks[i].next = i + 1 < chunks.size() ? &chunks[i + 1] : nullptr;
            chunks[i].length = static_cast<std::uint32_t>(blocks[i].size);
            chunks[i].data = reinterpret_cast<const unsigned char *>(blocks[i].bytes.get());
        }
        list.first = chunks.empty() ? nullptr : chunks.data();
    }

    const char *memory() const { return blocks.front().bytes.get(); }
    std::uint32_t length() const { return static_cast<std::uint32_t>(blocks.front().size); }
};

std::uint32_t Feed::parse(XML_SAX_Handler *handler) const {
    switch (kind_) {
        case Kind::kMemory:
            return XML_Parser_ByMem(document_->memory(), document_->length(), handler);
        case Kind::kFile:
            return XML_Parser_ByFile(document_->file->path(), handler);
        case Kind::kList:
            break;
    }
    return XML_Parser_ByMemList(&document_->list, handler);
}

XML_DOM_Node *Feed::build(std::uint32_t errorSize, char *errorBuffer) const {
    switch (kind_) {
        case Kind::kMemory:
            return XML_DOM_BuildTreeByMem(document_->memory(), document_->length(), errorSize,
                                          errorBuffer);
        case Kind::kFile:
            return XML_DOM_BuildTreeByFile(document_->file->path(), errorSize, errorBuffer);
        case Kind::kList:
            break;
    }
    return XML_DOM_BuildTreeByMemList(&document_->list, errorSize, errorBuffer);
}

XML_IO_InStream *Feed::open() const {
    switch (kind_) {
        case Kind::kMemory:
            return XML_IO_ByMem(document_->memory(), document_->length());
        case Kind::kFile:
            return XML_IO_ByFile(document_->file->path());
        case Kind::kList:
            break;
    }
    return XML_IO_ByMemList(&document_->list);
}

void Feed::close(XML_IO_InStream *stream) const {
    switch (kind_) {
        case Kind::kMemory:
            return XML_IO_DestroyByMem(stream);
        case Kind::kFile:
            return XML_IO_DestroyByFile(stream);
        case Kind::kList:
            return XML_IO_DestroyByMemList(stream);
    }
}

Feed memoryFeed(std::string_view document) {
    Feed feed;
    feed.kind_ = Feed::Kind::kMemory;
    feed.name_ = "memory";
    feed.document_ = std::make_shared<Feed::Document>();
    feed.document_->addBlock(document);
    return feed;
}

Feed fileFeed(std::string_view document) {
    Feed feed;
    feed.kind_ = Feed::Kind::kFile;
    feed.name_ = "file";
    feed.document_ = std::make_shared<Feed::Document>();
    feed.document_->file = std::make_unique<TemporaryFile>(document);
    return feed;
}

Feed makeList(std::string name, const std::vector<std::string_view> &pieces) {
    Feed feed;
    feed.kind_ = Feed::Kind::kList;
    feed.name_ = std::move(name);
    feed.document_ = std::make_shared<Feed::Document>();
    for (std::string_view piece : pieces) feed.document_->addBlock(piece);
    feed.document_->linkChunks();
    return feed;
}

Feed listFeed(std::string_view document) {
    std::vector<std::string_view> pieces;
    if (!document.empty()) pieces.push_back(document);
    return makeList("list", pieces);
}

Feed listCutAt(std::string_view document, std::size_t position) {
    return makeList("list cut at " + std::to_string(position),
                    {document.substr(0, position), document.substr(position)});
}

Feed listInPieces(std::string_view document, std::size_t size) {
    std::vector<std::string_view> pieces;
    for (std::size_t at = 0; at < document.size(); at += size) {
        pieces.push_back(document.substr(at, size));
    }
    return makeList("list in pieces of " + std::to_string(size), pieces);
}

Feed listWithEmptyChunks(std::string_view document) {
    std::vector<std::string_view> pieces{document.substr(0, 0), document.substr(0, 0)};
    for (std::size_t at = 0; at < document.size(); at += 5) {
        pieces.push_back(document.substr(at, 5));
        pieces.push_back(document.substr(at, 0));
    }
    return makeList("list with empty chunks", pieces);
}

std::vector<Feed> mainFeeds(std::string_view document) {
    std::vector<Feed> feeds;
    if (!document.empty()) feeds.push_back(memoryFeed(document));
    feeds.push_back(fileFeed(document));
    feeds.push_back(listFeed(document));
    feeds.push_back(listInPieces(document, 1));
    feeds.push_back(listInPieces(document, 65));
    return feeds;
}

std::vector<Feed> everyFeed(std::string_view document) {
    std::vector<Feed> feeds = mainFeeds(document);
    for (std::size_t size : {2, 3, 63, 64, 1023, 1024, 1025}) {
        if (size <= document.size()) feeds.push_back(listInPieces(document, size));
    }
    feeds.push_back(listWithEmptyChunks(document));
    for (std::size_t at = 1; at < document.size(); ++at) {
        const std::size_t unit = at < 2048 ? 64 : 1024;
        const std::size_t distance = std::min(at % unit, unit - at % unit);
        if (document.size() <= 300 || distance <= 1) feeds.push_back(listCutAt(document, at));
    }
    return feeds;
}

// ---------------------------------------------------------------- recorded parses

std::string printable(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    const char *p = bytes.data();
    const char *const end = p + bytes.size();
    while (p != end) {
        const char *const run = p;
        while (p != end && *p >= 0x20 && *p < 0x7F && *p != '\\') ++p;
        text.append(run, p);
        if (p == end) break;
        const auto byte = static_cast<unsigned char>(*p++);
        text += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return text;
}

namespace {

std::string quoted(const char *s) {
    return s ? '"' + printable(s) + '"' : "null";
}

class Recorder {
  public:
    explicit Recorder(const RecordOptions &options) : options_(options) {
        handler_.userData = this;
        handler_.startDocument = onStartDocument;
        handler_.endDocument = onEndDocument;
        handler_.characters = onCharacters;
        handler_.comment = onComment;
        handler_.cdataBlock = onCdataBlock;
        handler_.processingInstruction = onProcessingInstruction;
        handler_.error = onError;
        handler_.startElementNs = onStartElementNs;
        handler_.endElementNs = onEndElementNs;
    }

    XML_SAX_Handler *handler() { return &handler_; }
    RecordedParse parse;

  private:
    static Recorder &of(XML_Parser_Ctx *context) {
        return *static_cast<Recorder *>(context->handler->userData);
    }

    void breach(bool holds, const char *what) {
        if (!holds) parse.breaches.push_back(what);
    }

    // What holds at the beginning of every callback; counts the call and stops the parse if asked.
    void add(XML_Parser_Ctx *context, Slot slot, std::string call) {
        breach(context->handler == &handler_, "handler is not the caller's");
        breach(context->input != nullptr, "no input");
        breach(context->status == 0, "called with a status already set");
        breach(parse.errors == 0, "called after error");
        breach(!stopped_, "called after a callback has set the status");
        breach(context->line >= 1 && context->column >= 1, "position below 1");
        if (options_.positions) {
            call += " @" + std::to_string(context->line) + ':' + std::to_string(context->column);
        }
        parse.calls.push_back(std::move(call));
        if (slot == options_.stopSlot && ++stopCalls_ == options_.stopCall) {
            context->status = options_.stopStatus;
            stopped_ = options_.stopStatus != 0;
        }
    }

    static std::string documentState(const XML_Parser_Ctx *context) {
        return " encoding " + std::to_string(context->encoding) + " version " +
               quoted(context->version);
    }

    static void onStartDocument(XML_Parser_Ctx *context) {
        of(context).add(context, Slot::kStartDocument, "startDocument" + documentState(context));
    }

    static void onEndDocument(XML_Parser_Ctx *context) {
        of(context).add(context, Slot::kEndDocument, "endDocument" + documentState(context));
    }

    static void onCharacters(XML_Parser_Ctx *context, const char *text, int length) {
        Recorder &self = of(context);
        self.breach(length > 0, "characters without any");
        self.breach(text[length] == '\0', "text does not end in NUL");
        const std::string_view bytes(text, static_cast<std::size_t>(length));
        self.add(context, Slot::kCharacters,
                 "characters \"" + printable(bytes) + "\" " + std::to_string(length));
    }

    static void onComment(XML_Parser_Ctx *context, const char *text) {
        of(context).add(context, Slot::kComment, "comment " + quoted(text));
    }

    static void onCdataBlock(XML_Parser_Ctx *context, const char *text, int length) {
        Recorder &self = of(context);
        self.breach(length >= 0 && text != nullptr, "CDATA without a place");
        // The content stands in the input, right before the "]]>" that was just read.
        self.breach(std::memcmp(text + length, "]]>", 3) == 0, "CDATA is not followed by ]]>");
        const std::string_view bytes(text, static_cast<std::size_t>(length));
        self.add(context, Slot::kCdataBlock,
                 "cdataBlock \"" + printable(bytes) + "\" " + std::to_string(length));
    }

    static void onProcessingInstruction(XML_Parser_Ctx *context, const char *target,
                                        const char *data) {
        of(context).add(context, Slot::kProcessingInstruction,
                        "processingInstruction " + quoted(target) + ' ' + quoted(data));
    }

    static std::string declarationList(const char **declarations, int count) {
        std::string text = "[";
        for (int i = 0; i < count; ++i) {
            const char *prefix = declarations[2 * i];
            if (i) text += ' ';
            text += (prefix ? prefix : "") + ('=' + quoted(declarations[2 * i + 1]));
        }
        return text + ']';
    }

    std::string attributeList(const char **attributes, int count) {
        std::string text = "[";
        for (int i = 0; i < count; ++i) {
            const char **group = attributes + 5 * i;
            if (i) text += ' ';
            if (group[1]) text += printable(group[1]) + ':';
            text += printable(group[0]);
            if (group[2]) text += '{' + printable(group[2]) + '}';
            text += '=' + quoted(group[3]);
            breach(group[4] == group[3] + std::strlen(group[3]), "value end is not at its NUL");
            breach((group[1] != nullptr) == (group[2] != nullptr),
                   "attribute with a prefix and no namespace name, or the reverse");
        }
        return text + ']';
    }

    static void onStartElementNs(XML_Parser_Ctx *context, const char *localName, const char *prefix,
                                 const char *namespaceName, int declarationCount,
                                 const char **declarations, int attributeCount, int defaultedCount,
                                 const char **attributes) {
        Recorder &self = of(context);
        self.breach(defaultedCount == 0, "defaultedCount is not 0");
        self.breach(declarationCount >= 0 && attributeCount >= 0, "negative count");
        std::string call = "startElementNs " + quoted(localName) + " prefix " + quoted(prefix) +
                           " uri " + quoted(namespaceName);
        call += " ns " + declarationList(declarations, declarationCount);
        call += " attrs " + self.attributeList(attributes, attributeCount);
        self.add(context, Slot::kStartElementNs, std::move(call));
    }

    static void onEndElementNs(XML_Parser_Ctx *context, const char *localName, const char *prefix,
                               const char *namespaceName) {
        of(context).add(context, Slot::kEndElementNs,
                        "endElementNs " + quoted(localName) + " prefix " + quoted(prefix) +
                            " uri " + quoted(namespaceName));
    }

    static void onError(XML_Parser_Ctx *context, const char *format, ...) {
        Recorder &self = of(context);
        RecordedParse &parse = self.parse;
        ++parse.errors;
        parse.status = context->status;
        parse.contextLine = context->line;
        parse.contextColumn = context->column;
        parse.format = format;
        va_list fields;
        va_list formatted;
        va_start(fields, format);
        va_copy(formatted, fields);
        parse.line = va_arg(fields, int);
        parse.column = va_arg(fields, int);
        parse.snippet = va_arg(fields, const char *);
        parse.message = va_arg(fields, const char *);
        va_end(fields);
        char text[512];
        std::vsnprintf(text, sizeof text, "The Line %d Column %d :\"%s\", %s", formatted);
        va_end(formatted);
        parse.text = text;
        self.breach(context->status != 0, "error with a status of 0");
    }

    RecordOptions options_;
    XML_SAX_Handler handler_{};
    int stopCalls_ = 0;
    bool stopped_ = false;
};

// Whether one snippet is the other but for bytes missing at its front, at most 32 of which stand
// before the position. The later one may reach further: both end 63 bytes after their beginning.
bool sameSnippet(const std::string &a, const std::string &b) {
    const auto beginsLater = [](const std::string &whole, const std::string &late) {
        const std::size_t most = std::min<std::size_t>(whole.size(), 32);
        for (std::size_t missing = 0; missing <= most; ++missing) {
            // A cut inside a character drops up to three bytes at the end of either.
            const std::size_t rest = whole.size() - missing;
            const std::size_t common = std::min(rest, late.size());
            if (whole.compare(missing, common, late, 0, common) == 0 && late.size() + 3 >= rest) {
                return true;
            }
        }
        return false;
    };
    return a == b || beginsLater(a, b) || beginsLater(b, a);
}

}  // namespace

RecordedParse record(const Feed &feed, const RecordOptions &options) {
    Recorder recorder(options);
    recorder.parse.result = feed.parse(recorder.handler());
    return std::move(recorder.parse);
}

bool sameOutcome(const RecordedParse &a, const RecordedParse &b) {
    return a.result == b.result && a.calls == b.calls && a.errors == b.errors &&
           a.status == b.status && a.line == b.line && a.column == b.column &&
           a.message == b.message && a.breaches == b.breaches && sameSnippet(a.snippet, b.snippet);
}

std::ostream &operator<<(std::ostream &out, const RecordedParse &parse) {
    out << "result " << parse.result;
    if (parse.errors) out << ", " << parse.errors << " error(s): " << printable(parse.text);
    for (const std::string &call : parse.calls) out << "\n  " << call;
    for (const std::string &breach : parse.breaches) out << "\n  BREACH: " << breach;
    return out;
}

// ---------------------------------------------------------------- recorded builds

namespace {

void describeElement(const XML_DOM_Node *node, std::string &text) {
    if (node->ns && node->ns->prefix) text += printable(node->ns->prefix) + ':';
    text += node->name ? printable(node->name) : "null";
    if (node->firstNsDecl) {
        text += " ns [";
        for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
            if (decl != node->firstNsDecl) text += ' ';
            text +=
                (decl->prefix ? printable(decl->prefix) : "") + '=' + quoted(decl->namespaceName);
        }
        text += ']';
    }
    if (node->firstAttr) {
        text += " attrs [";
        for (const XML_DOM_Attr *attr = node->firstAttr; attr; attr = attr->next) {
            if (attr != node->firstAttr) text += ' ';
            if (attr->ns && attr->ns->prefix) text += printable(attr->ns->prefix) + ':';
            text += printable(attr->name) + '=' + quoted(attr->value);
        }
        text += ']';
    }
}

}  // namespace

std::string describeTree(const XML_DOM_Node *root) {
    if (!root) return "null\n";
    std::string text;
    if (root->docInfo) {
        text += "encoding " + std::to_string(root->docInfo->encoding) + " version " +
                quoted(root->docInfo->version) + '\n';
    }
    std::size_t level = 0;
    for (const XML_DOM_Node *node = root; node;) {
        // Indentation stops at 40 levels, so that deep trees stay readable and linear in size.
        text.append(2 * std::min<std::size_t>(level, 40), ' ');
        if (node->type == XML_DOM_NODE_ELEMENT) {
            describeElement(node, text);
        } else {
            text += (node->type == XML_DOM_NODE_CDATA ? "CDATA " : "") + quoted(node->value);
        }
        text += '\n';
        if (node->firstChild) {
            node = node->firstChild;
            ++level;
            continue;
        }
        while (node != root && !node->nextSibling) {
            node = node->parent;
            --level;
        }
        node = node == root ? nullptr : node->nextSibling;
    }
    return text;
}

RecordedBuild recordBuild(const Feed &feed) {
    RecordedBuild build;
    char error[512] = "";
    XML_DOM_Node *root = feed.build(sizeof error, error);
    build.built = root != nullptr;
    build.tree = describeTree(root);
    build.error = error;
    XML_DOM_DelNode(root);
    return build;
}

std::ostream &operator<<(std::ostream &out, const RecordedBuild &build) {
    return out << (build.built ? "built\n" : "not built\n") << build.tree << "error \""
               << printable(build.error) << '"';
}

}  // namespace support
