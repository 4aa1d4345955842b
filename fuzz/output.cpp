// Output streams: between any two encodings, to memory and to a file, in appends cut anywhere,
// beside a plain model; one append of the whole must give the same. Escaped text beside its model,
// too.
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "fuzz/support/converters.h"
#include "fuzz/support/fuzz_input.h"
#include "fuzz/support/require.h"
#include "fuzz/support/target.h"
#include "tests/support/feeds.h"
#include "tests/support/model_serializer.h"
#include "tests/support/model_stream.h"
#include "tests/support/owners.h"
#include "tests/support/reference_iconv.h"

namespace {

using support::ModelStream;
using support::StreamPtr;

constexpr std::size_t kMostAppends = 40;

std::uint32_t append(XML_IO_OutStream *stream, std::string_view bytes, bool safe) {
    const auto length = static_cast<std::uint32_t>(bytes.size());
    return safe ? XML_IO_OutStreamAppendSafe(stream, bytes.data(), length)
                : XML_IO_OutStreamAppend(stream, bytes.data(), length);
}

std::string content(XML_IO_OutStream *stream) {
    std::uint32_t length = 0;
    const char *data = XML_IO_MemOutStreamGetBuf(stream, &length);
    if (!data) return {};
    fuzz::require(data[length] == '\0', "no NUL behind the content");
    return {data, length};
}

std::string pending(const XML_IO_OutStream *stream) {
    return {reinterpret_cast<const char *>(stream->pendingBytes), stream->pendingCount};
}

std::string contentOf(const char *path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A piece of text, as it lies in the input, converted to the source's encoding, or many times over.
std::string piece(fuzz::FuzzInput &input, std::uint32_t source) {
    const unsigned how = input.byte();
    std::string text(input.text(input.byte() % 64));
    if (how & 1) text = support::convertWhole(XML_ENCODING_UTF_8, source, text).bytes;
    if ((how & 0x0E) == 0x0E) {
        const std::string once = text;
        for (unsigned times = how >> 4; times > 0; --times) text += once;
    }
    if ((how & 0x70) == 0x70 && text.size() > 1) {
        while (text.size() < 5000) text += text;
    }
    return text;
}

// Some converters (glibc's own from GB2312 to GBK) take the first byte of a cut character with
// them.
bool keepsCutCharacters(std::uint32_t source, std::uint32_t target) {
    const std::string lead = support::encodeBare(source, U"\u4E2D")->substr(0, 1);
    const support::Conversion cut = support::convertWhole(source, target, lead);
    return cut.error == 0 || cut.consumed == 0;
}

void requireSameContent(XML_IO_OutStream *stream, const ModelStream &model, const char *text) {
    fuzz::requireSame(support::printable(content(stream)), support::printable(model.content()),
                      text);
    fuzz::requireSame(support::printable(pending(stream)), support::printable(model.pending()),
                      "other bytes are held back");
    fuzz::require(
        reinterpret_cast<const XML_IO_MemBuf *>(stream->target)->capacity == model.capacity(),
        "another capacity");
}

void testMemory(fuzz::FuzzInput &input, std::uint32_t source, std::uint32_t target) {
    const StreamPtr stream(XML_IO_MemOutStreamCreate(source, target));
    ModelStream model(source, target);
    fuzz::require((stream != nullptr) == model.open(), "a pair of encodings");
    if (!stream) return;
    std::string whole, all;
    bool comparable = keepsCutCharacters(source, target);
    for (std::size_t i = 0; i < kMostAppends && !input.empty(); ++i) {
        const unsigned action = input.byte() % 16;
        if (action == 0) {
            XML_IO_MemOutStreamCleanBuf(stream.get());
            all += model.content();
            model.clean();
        } else if (action == 1) {
            std::uint32_t length = 0;
            const support::TextPtr taken(XML_IO_MemOutStreamDetachBuf(stream.get(), &length));
            const std::string expected = model.detach();
            fuzz::requireSame(taken ? std::string(taken.get(), length) : "", expected,
                              "other content is taken");
            all += expected;
        } else {
            const std::string text = piece(input, source);
            const bool safe = action < 4;
            const std::uint32_t result = append(stream.get(), text, safe);
            fuzz::requireOr(result == model.append(text, safe), "another result of an append",
                            [&] { return support::printable(text); });
            comparable = comparable && result == XML_OK && !safe;
            whole += text;
        }
        requireSameContent(stream.get(), model, "another content");
    }
    if (!comparable) return;
    const StreamPtr atOnce(XML_IO_MemOutStreamCreate(source, target));
    fuzz::require(append(atOnce.get(), whole, false) == XML_OK, "the whole is refused");
    fuzz::requireSame(support::printable(content(atOnce.get())),
                      support::printable(all + model.content()), "the whole is not its parts");
    fuzz::requireSame(support::printable(pending(atOnce.get())),
                      support::printable(model.pending()), "the whole holds back other bytes");
}

void testFile(fuzz::FuzzInput &input, std::uint32_t source, std::uint32_t target) {
    const std::string before(input.text(input.byte() % 8));
    const support::TemporaryFile file(before);
    StreamPtr stream(XML_IO_FileOutStreamCreate(file.path(), source, target));
    ModelStream model(source, target);
    fuzz::require((stream != nullptr) == model.open(), "a pair of encodings");
    if (!stream) return;
    for (std::size_t i = 0; i < kMostAppends && !input.empty(); ++i) {
        const std::string text = piece(input, source);
        const bool safe = input.flag();
        fuzz::require(append(stream.get(), text, safe) == model.append(text, safe),
                      "another result of an append to a file");
        if (input.byte() == 1) XML_IO_FileOutStreamFlush(stream.get());
    }
    fuzz::require(XML_IO_MemOutStreamGetBuf(stream.get(), nullptr) == nullptr,
                  "a file stream has content");
    stream.reset();
    fuzz::requireSame(support::printable(contentOf(file.path())),
                      support::printable(before + model.content()), "another file");
}

// A sink that fails now and then, and what it has got.
struct Sink {
    std::string pieces;
    unsigned calls = 0;
    unsigned failAt;
    std::uint32_t result;

    std::uint32_t take(std::string_view piece) {
        pieces += piece;
        pieces += '|';
        return ++calls == failAt ? result : 0;
    }
};

uint32_t takePiece(void *context, const char *bytes, uint32_t length) {
    fuzz::require(length != 0, "an empty piece");
    return static_cast<Sink *>(context)->take({bytes, length});
}

void testEscaping(fuzz::FuzzInput &input) {
    Sink real{{}, 0, input.byte() % 16u, input.pair()};
    Sink expected = real;
    const std::string text(input.string());
    const std::uint32_t result = XML_OutTextString(text.c_str(), takePiece, &real);
    const support::ModelSerializer model(
        [&expected](std::string_view piece) { return expected.take(piece); });
    fuzz::require(support::isResultFor(result, model.text(text)), "another result of a text");
    fuzz::requireSame(support::printable(real.pieces), support::printable(expected.pieces),
                      "other pieces of a text");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::holdConverters();
    fuzz::FuzzInput input(data, size);
    const unsigned kind = input.byte() % 8;
    const std::uint32_t source = input.byte() % support::kEncodingCount;
    const std::uint32_t target = input.byte() % support::kEncodingCount;
    if (kind == 0) {
        testEscaping(input);
    } else if (kind == 1) {
        testFile(input, source, target);
    } else {
        testMemory(input, source, target);
    }
    return 0;
}
