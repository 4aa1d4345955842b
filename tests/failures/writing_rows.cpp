// The functions that write: the serializer and the output streams.
#include <gtest/gtest.h>

#include "tests/failures/row.h"

namespace failures {
namespace {

// ASCII and Chinese in GB18030, long enough for a stream to remember the characters it has converted.
const std::string &longText() {
    static const std::string kText = [] {
        std::string text(300, 'x');
        for (int i = 0; i < 10000; ++i) text += i % 7 == 0 ? " and \xD6\xD0" : "\xCE\xC4";
        return text + std::string(900, 'y');
    }();
    return kText;
}

std::uint32_t tell(void *context, const char *bytes, std::uint32_t length) {
    static_cast<Stage *>(context)->told.append(bytes, length);
    return 0;
}

const char *answerText(XML_DOM_Node *node, XML_DOM_TranslateState *state, void *) {
    return state->depth > 1 ? "instead" : node->value;
}

struct Pair {
    const char *name;
    std::uint32_t source, target;
};
constexpr Pair kPairs[] = {
    {"unconverted", XML_ENCODING_UTF_8, XML_ENCODING_UTF_8},
    {"to UTF-8", XML_ENCODING_GB18030, XML_ENCODING_UTF_8},
    {"to UTF-16LE", XML_ENCODING_GB18030, XML_ENCODING_UTF_16LE},
};

void addSerializer(std::vector<Row> *rows, const char *name, std::uint32_t encoding) {
    const auto tree = [encoding](Stage &s) { s.prepareTree(encoding); };
    // What the serializer refuses need not be XML_REFUSED: the failures are summed up.
    const std::vector<Row> serializer = {
        {"XML_DOM_NodeBegin2Str", name, tree,
         [](Stage &s) { return text(s, XML_DOM_NodeBegin2Str(s.root.get(), 0, s.takeLength())); }},
        {"XML_DOM_NodeEnd2Str", name, tree,
         [](Stage &s) { return text(s, XML_DOM_NodeEnd2Str(s.root.get(), s.takeLength())); }},
        {"XML_DOM_TranslateStr", name, tree,
         [](Stage &s) {
             return sum(XML_DOM_TranslateStr(s.root.get(), 0, s.takeText(), s.takeLength()));
         }},
        {"XML_DOM_TranslateStrEx", name, tree,
         [](Stage &s) {
             XML_DOM_TranslateState state{};
             state.textCallback = answerText;
             return sum(XML_DOM_TranslateStrEx(s.root.get(), XML_DOM_NO_DECLARATION, &state,
                                               s.takeText(), s.takeLength()));
         }},
        {"XML_DOM_TranslateStr4AllChild", name, tree,
         [](Stage &s) {
             return sum(XML_DOM_TranslateStr4AllChild(s.root.get(), s.takeText(), s.takeLength()));
         }},
        // A piece that fails ends a list; end tags are still offered, so the rest may differ.
        {"XML_DOM_OutPutTranslateStr", name, tree,
         [](Stage &s) { return sum(XML_DOM_OutPutTranslateStr(s.root.get(), 0, tell, &s)); }, true,
         Trace::kOwn, [](const Stage &) { return ""; }},
    };
    rows->insert(rows->end(), serializer.begin(), serializer.end());
}

void addStreams(std::vector<Row> *rows, const Pair &pair) {
    const auto memory = [pair](Stage &s) { s.prepareMemoryOutput(pair.source, pair.target); };
    const auto file = [pair](Stage &s) { s.prepareFileOutput(pair.source, pair.target); };
    rows->push_back({"XML_IO_MemOutStreamCreate", pair.name, [](Stage &) {},
                     [pair](Stage &s) {
                         return stream(s, XML_IO_MemOutStreamCreate(pair.source, pair.target));
                     }});
    rows->push_back(
        {"XML_IO_FileOutStreamCreate", pair.name, [](Stage &s) { s.prepareOutputPath(); },
         [pair](Stage &s) {
             return stream(
                 s, XML_IO_FileOutStreamCreate(s.outputFile->path(), pair.source, pair.target));
         }});
    const auto append = [](Stage &s) {
        const auto length = static_cast<std::uint32_t>(longText().size());
        return code(XML_IO_OutStreamAppend(s.output.get(), longText().data(), length));
    };
    const auto appendSafe = [](Stage &s) {
        // The last byte is half a character.
        const std::string half = longText() + "\xD6";
        const auto length = static_cast<std::uint32_t>(half.size());
        return code(XML_IO_OutStreamAppendSafe(s.output.get(), half.data(), length));
    };
    const auto appendString = [](Stage &s) {
        return code(XML_IO_OutStreamAppendString(s.output.get(), longText().c_str()));
    };
    const std::string name = pair.name;
    // What is kept of conversions is not needed.
    const bool remembers = pair.source != pair.target && pair.target == XML_ENCODING_UTF_8;
    for (Row row : {Row{"XML_IO_OutStreamAppend", name + ", memory", memory, append},
                    Row{"XML_IO_OutStreamAppendSafe", name + ", memory", memory, appendSafe},
                    Row{"XML_IO_OutStreamAppendString", name + ", memory", memory, appendString}}) {
        row.doesWithout = remembers;
        row.trace = Trace::kBytes;
        rows->push_back(std::move(row));
    }
    // Files take what they are given.
    for (Row row : {Row{"XML_IO_OutStreamAppend", name + ", file", file, append},
                    Row{"XML_IO_OutStreamAppendSafe", name + ", file", file, appendSafe},
                    Row{"XML_IO_OutStreamAppendString", name + ", file", file, appendString}}) {
        row.allocates = row.doesWithout = remembers;
        row.trace = Trace::kBytes;
        rows->push_back(std::move(row));
    }
}

// The second half of a character, the first half of which is held back, and more.
void addHeldBack(std::vector<Row> *rows) {
    constexpr char kHalf[] = "\xD6";
    const auto half = [kHalf](Stage &s) {
        EXPECT_EQ(XML_IO_OutStreamAppend(s.output.get(), kHalf, 1), XML_OK);
    };
    const auto memory = [half](Stage &s) {
        s.prepareMemoryOutput(XML_ENCODING_GB18030, XML_ENCODING_UTF_16);
        // Up to the end of the block, so that the character needs another one.
        const auto used = static_cast<std::uint32_t>(s.bytes().size());
        EXPECT_LT(used, 1022u);
        const std::string text((1022 - used) / 2, 'x');
        EXPECT_EQ(XML_IO_OutStreamAppendString(s.output.get(), text.c_str()), XML_OK);
        half(s);
    };
    const auto file = [half](Stage &s) {
        s.prepareFileOutput(XML_ENCODING_GB18030, XML_ENCODING_UTF_8);
        half(s);
    };
    const auto append = [](Stage &s) {
        return code(XML_IO_OutStreamAppend(s.output.get(), "\xD0 and \xCE", 7));
    };
    Row row = {"XML_IO_OutStreamAppend", "second half of a character, memory", memory, append};
    row.trace = Trace::kBytes;
    rows->push_back(row);
    row = {"XML_IO_OutStreamAppend", "second half of a character, file", file, append, false};
    row.trace = Trace::kBytes;
    rows->push_back(row);
}

void addOthers(std::vector<Row> *rows) {
    const auto memory = [](Stage &s) {
        s.prepareMemoryOutput(XML_ENCODING_GB18030, XML_ENCODING_UTF_8);
    };
    const auto file = [](Stage &s) {
        s.prepareFileOutput(XML_ENCODING_GB18030, XML_ENCODING_UTF_8);
    };
    const auto add = [rows](const char *function, std::function<void(Stage &)> prepare,
                            Answer (*call)(Stage &), const char *scenario = "") {
        rows->push_back({function, scenario, std::move(prepare), call, false});
    };
    add(
        "XML_OutTextString", [](Stage &) {},
        [](Stage &s) { return code(XML_OutTextString(" <&> ", tell, &s)); });
    add("XML_IO_MemOutStreamGetBuf", memory, [](Stage &s) {
        std::uint32_t length = 0;
        const char *content = XML_IO_MemOutStreamGetBuf(s.output.get(), &length);
        if (content) s.told.assign(content, length);
        return pointer(content);
    });
    add("XML_IO_MemOutStreamDetachBuf", memory, [](Stage &s) {
        return text(s, XML_IO_MemOutStreamDetachBuf(s.output.get(), s.takeLength()));
    });
    add("XML_IO_MemOutStreamCleanBuf", memory,
        [](Stage &s) { return nothing([&] { XML_IO_MemOutStreamCleanBuf(s.output.get()); }); });
    add("XML_IO_FileOutStreamFlush", file,
        [](Stage &s) { return nothing([&] { XML_IO_FileOutStreamFlush(s.output.get()); }); });
    add(
        "XML_IO_OutStreamDestroy", memory,
        [](Stage &s) { return nothing([&] { XML_IO_OutStreamDestroy(s.output.release()); }); },
        "memory");
    add(
        "XML_IO_OutStreamDestroy", file,
        [](Stage &s) { return nothing([&] { XML_IO_OutStreamDestroy(s.output.release()); }); },
        "file");
}

}  // namespace

std::vector<Row> writingRows() {
    std::vector<Row> rows;
    addSerializer(&rows, "UTF-8", XML_ENCODING_UTF_8);
    addSerializer(&rows, "UTF-16", XML_ENCODING_UTF_16);
    for (const Pair &pair : kPairs) addStreams(&rows, pair);
    addHeldBack(&rows);
    addOthers(&rows);
    return rows;
}

}  // namespace failures
