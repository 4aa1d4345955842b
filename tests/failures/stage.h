// tests/failures/stage.h - the objects that one call of an exported function works on.
//
// A row of the table (row.h) prepares the parts that it needs while nothing fails; then its call runs
// once, and the stage tells what has become of everything.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "dom/builder.h"
#include "tests/support/feeds.h"
#include "tests/support/owners.h"
#include "tests/support/schema_maker.h"

namespace failures {

// A build whose callbacks are called by hand, with <a xmlns:p="urn:p"> open.
class OpenBuild {
  public:
    OpenBuild();
    ~OpenBuild();
    OpenBuild(const OpenBuild &) = delete;
    OpenBuild &operator=(const OpenBuild &) = delete;

    XML_SAX_Handler handler{};
    cxml::XML_DOM_BuildState state;
    XML_Parser_Ctx context{};
    char error[128] = "";
};

class Stage {
  public:
    // A file holds only so many bytes of its document.
    explicit Stage(std::size_t fileLimit = std::string::npos) : fileLimit_(fileLimit) {}
    ~Stage();
    Stage(const Stage &) = delete;
    Stage &operator=(const Stage &) = delete;

    // ---- what rows ask for
    void prepareTree(std::uint32_t encoding = XML_ENCODING_UTF_16);  // root, element, text, loose
    void prepareFeed(support::Feed::Kind kind, std::string_view document);
    void prepareInput(support::Feed::Kind kind, std::string_view document);  // the same, opened
    void prepareMemoryOutput(std::uint32_t source, std::uint32_t target);  // which holds "before "
    void prepareFileOutput(std::uint32_t source, std::uint32_t target);
    void prepareOutputPath();  // of a file that is there and empty
    void prepareBuild() { build.emplace(); }
    void prepareSchema();  // schema, and a document that it holds for in root

    // ---- what became of everything
    // All that a refused call must leave as it was, with the addresses of nodes and strings.
    std::string image() const;
    // Bytes that a failing call may have added to: of the output, or of the input read ahead.
    std::string bytes() const;
    // Bytes that the output holds back because they begin a character.
    std::string heldBack() const;
    // Everything, without addresses: equal for two calls with the same outcome.
    std::string account() const;
    // Files that streams of this stage hold open.
    long openFiles() const;
    // Whether the call has handed out anything.
    bool hasProducts() const { return node || text_ || out_; }

    // ---- the parts
    support::NodePtr root, loose;
    XML_DOM_Node *element = nullptr;
    XML_DOM_Node *text = nullptr;
    std::optional<support::Feed> feed;
    XML_IO_InStream *input = nullptr;
    support::StreamPtr output;
    std::unique_ptr<support::TemporaryFile> outputFile;
    std::optional<OpenBuild> build;
    std::unique_ptr<support::SchemaMaker> schema;
    SchemaErrorInfo report{};
    SchemaRoot bareRoot{};  // registered with by hand
    char buffer[512] = "";

    // ---- the products
    support::NodePtr node;
    std::string told;  // to callbacks, piece by piece
    std::string note;  // what was said of it
    char **takeText() { return &text_; }
    std::uint32_t *takeLength() { return &length_; }
    bool hasText() const { return text_ != nullptr; }
    XML_IO_OutStream **takeOutput() { return &out_; }

  private:
    std::size_t fileLimit_;
    char *text_ = nullptr;
    std::uint32_t length_ = 0;
    XML_IO_OutStream *out_ = nullptr;
};

// A document of some 3 KiB with text beyond ASCII, tokens of every kind and a long one, in an encoding;
// "" names UTF-16LE behind its mark.
std::string sampleDocument(std::string_view encoding);

}  // namespace failures
