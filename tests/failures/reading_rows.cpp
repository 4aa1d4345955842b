// The functions that read: the input streams, the parser and the builder.
#include "tests/failures/row.h"
#include "tests/support/texts.h"
#include "tests/support/tree_dump.h"

namespace failures {
namespace {

using support::Feed;

struct Source {
    const char *name;
    Feed::Kind kind;
    const char *opens, *parses, *builds, *closes;
};
constexpr Source kSources[] = {
    {"memory", Feed::Kind::kMemory, "XML_IO_ByMem", "XML_Parser_ByMem", "XML_DOM_BuildTreeByMem",
     "XML_IO_DestroyByMem"},
    {"file", Feed::Kind::kFile, "XML_IO_ByFile", "XML_Parser_ByFile", "XML_DOM_BuildTreeByFile",
     "XML_IO_DestroyByFile"},
    {"list", Feed::Kind::kList, "XML_IO_ByMemList", "XML_Parser_ByMemList",
     "XML_DOM_BuildTreeByMemList", "XML_IO_DestroyByMemList"},
};

// A stream that failed says so in its state and can be used no further.
Answer stateOf(const XML_IO_InStream *stream) {
    return !stream || (stream->state > 1 && stream->state <= 4) ? Answer::kRefused
                                                                : good(stream->state <= 1);
}

Answer parse(Stage &s) {
    const support::RecordedParse parse = support::record(*s.feed);
    for (std::string each : parse.calls) {
        // The number of the encoding is not known where the conversion could not begin.
        if (each.rfind("startDocument", 0) == 0) each.erase(each.find("encoding"), 11);
        s.told += each + "\n";
    }
    s.note = parse.text;
    const bool consistent = parse.breaches.empty() && parse.errors <= 1;
    return consistent ? code(parse.result) : Answer::kWrong;
}

Answer buildTree(Stage &s) {
    char error[512] = "untouched";
    XML_DOM_Node *root = s.feed->build(sizeof error, error);
    s.note = error;
    return node(s, root);
}

Answer openStream(Stage &s) {
    s.input = s.feed->open();
    return stateOf(s.input);
}

Answer growToTheEnd(Stage &s) {
    // Everything read is kept, so that the buffer has to grow.
    for (;;) {
        const auto before = s.input->end - s.input->base;
        s.input->cur = s.input->end;
        XML_IO_Grow(s.input);
        if (s.input->state != 0 || s.input->end - s.input->base == before) break;
    }
    return stateOf(s.input);
}

std::string nothingToSay(const Stage &) {
    return "";
}

void addSource(std::vector<Row> *rows, const Source &source, std::string_view encoding) {
    const std::string document = sampleDocument(encoding);
    const std::string name = encoding.empty() ? "UTF-16LE by its mark" : std::string(encoding);
    const auto feed = [source, document](Stage &s) { s.prepareFeed(source.kind, document); };
    const auto opened = [source, document](Stage &s) { s.prepareInput(source.kind, document); };
    rows->push_back({source.parses, name, feed, parse, true, Trace::kTold});
    rows->push_back({source.builds, name, feed, buildTree});
    rows->push_back({source.opens, name, feed, openStream, true, Trace::kOwn, nothingToSay});
    const bool inPlace = source.kind == Feed::Kind::kMemory;
    rows->push_back(
        {"XML_IO_Grow", name + ", " + source.name, opened, growToTheEnd, !inPlace, Trace::kBytes});
    const auto destroy = [](Stage &s) {
        s.feed->close(s.input);
        s.input = nullptr;
        return Answer::kGood;
    };
    rows->push_back({source.closes, name, opened, destroy, false});
}

void addSwitches(std::vector<Row> *rows, const Source &source) {
    struct Switch {
        const char *name, *document;
        std::uint32_t first, second;
    };
    static constexpr Switch kSwitches[] = {
        {"begins to convert", "GBK", XML_ENCODING_UTF_8, XML_ENCODING_GBK},
        {"ends converting", "GBK", XML_ENCODING_GBK, XML_ENCODING_UTF_8},
        {"converts from another", "GBK", XML_ENCODING_GBK, XML_ENCODING_GB18030},
    };
    for (const Switch &each : kSwitches) {
        const auto opened = [source, each](Stage &s) {
            s.prepareInput(source.kind, sampleDocument(each.document));
            XML_IO_SwitchEncoding(s.input, each.first);
        };
        const auto change = [each](Stage &s) {
            const std::uint32_t state = XML_IO_SwitchEncoding(s.input, each.second);
            if (state > 1 && state != s.input->state) return Answer::kWrong;
            return stateOf(s.input);
        };
        // Memory is there as it was before it was converted.
        const bool needs = source.kind != Feed::Kind::kMemory || each.second != XML_ENCODING_UTF_8;
        rows->push_back({"XML_IO_SwitchEncoding", std::string(each.name) + ", " + source.name,
                         opened, change, needs, Trace::kOwn, nothingToSay});
    }
}

// ---------------------------------------------------------------- the builder's callbacks

// The message of the error callback, converted before any converter is missing.
const std::string &convertedMessage() {
    static const std::string kMessage = support::gb("文 7 !");
    return kMessage;
}

void openBuild(Stage &s) {
    convertedMessage();
    s.prepareBuild();
}

Answer status(Stage &s) {
    return s.build->context.status == 1 ? Answer::kRefused : good(s.build->context.status == 0);
}

// What is half made stays in the tree, which the error callback frees.
std::string wholeTree(const Stage &s) {
    return support::brokenLink(s.build->state.root);
}

std::string messageOrLess(const Stage &s) {
    if (s.build->state.root) return "the tree is still there";
    const std::string error = s.build->error;
    const bool right =
        error == "文 7 !" || error == convertedMessage() || error == "failed to convert encoding.";
    return right ? "" : error;
}

void addCallbacks(std::vector<Row> *rows) {
    const std::vector<Row> callbacks = {
        {"XML_SAX_StartElementNs", "", openBuild,
         [](Stage &s) {
             const char *declarations[] = {"q", "空间", nullptr, "urn:d"};
             const char value[] = "值";
             const char *attributes[] = {"名", "q", "", value, value + sizeof value - 1,
                                         "x",  "p", "", value, value + sizeof value - 1};
             XML_SAX_StartElementNs(&s.build->context, "元素", "q", nullptr, 2, declarations, 2, 0,
                                    attributes);
             return status(s);
         },
         true, Trace::kOwn, wholeTree},
        {"XML_SAX_Characters", "", openBuild,
         [](Stage &s) {
             XML_SAX_Characters(&s.build->context, "中文", 6);
             return status(s);
         },
         true, Trace::kOwn, wholeTree},
        {"XML_SAX_CData", "", openBuild,
         [](Stage &s) {
             XML_SAX_CData(&s.build->context, "中文", 6);
             return status(s);
         },
         true, Trace::kOwn, wholeTree},
        // The message is then left in UTF-8, or says that it could not be converted.
        {"XML_SAX_Error", "", openBuild,
         [](Stage &s) {
             XML_SAX_Error(&s.build->context, "%s %d %c", "文", 7, '!');
             return s.build->error == convertedMessage() ? Answer::kGood : Answer::kRefused;
         },
         true, Trace::kOwn, messageOrLess},
        {"XML_SAX_EndElementNs", "", openBuild,
         [](Stage &s) {
             XML_SAX_EndElementNs(&s.build->context, "a", nullptr, nullptr);
             return status(s);
         },
         false},
        {"XML_SAX_EndDocument", "", openBuild,
         [](Stage &s) {
             XML_SAX_EndDocument(&s.build->context);
             return status(s);
         },
         false},
    };
    rows->insert(rows->end(), callbacks.begin(), callbacks.end());
}

void addComparisons(std::vector<Row> *rows) {
    const auto opened = [](Stage &s) { s.prepareInput(Feed::Kind::kFile, "<A b='c'/>"); };
    rows->push_back({"XML_IO_Strncmp", "", opened,
                     [](Stage &s) { return good(XML_IO_Strncmp(s.input, "<A", 2) == 1); }, false});
    rows->push_back({"XML_IO_Strncasecmp", "", opened,
                     [](Stage &s) { return good(XML_IO_Strncasecmp(s.input, "<a", 2) == 1); },
                     false});
}

}  // namespace

std::vector<Row> readingRows() {
    std::vector<Row> rows;
    for (const Source &source : kSources) {
        for (const char *encoding : {"UTF-8", "GBK", ""}) addSource(&rows, source, encoding);
        addSwitches(&rows, source);
    }
    addCallbacks(&rows);
    addComparisons(&rows);
    return rows;
}

}  // namespace failures
