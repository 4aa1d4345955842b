// Reads the configuration of a switch, shows what is in it, changes it, writes it in other
// encodings, reads it back and validates it. Ends with 1 when anything is not as it should be.
//
//   demo DATA_DIRECTORY [OUTPUT_DIRECTORY]
//
// Without an output directory the files go to a temporary one, which is removed at the end.
#include <compactxml.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "switch.h"
#include "tree_tools.h"

namespace {

namespace fs = std::filesystem;
using namespace demo;

int failures = 0;

// Prints one line of the outcome and remembers a failure.
void expect(bool good, const std::string &what) {
    std::printf("   %s %s\n", good ? "[ok]    " : "[FAILED]", what.c_str());
    if (!good) ++failures;
}

void heading(const char *text) {
    std::printf("\n== %s\n", text);
}

std::string textOf(const XML_DOM_Node *element) {
    const char *text = XML_DOM_GetFirstTextChildValue(element);
    return text ? toUtf8(text) : "";
}

std::string attributeOf(const XML_DOM_Node *element, const char *name) {
    const char *value = XML_DOM_GetNodeAttrValByName(element, name);
    return value ? toUtf8(value) : "";
}

// A node as markup in UTF-8. A part of a document is written in the document's encoding.
std::string markup(const XML_DOM_Node *node) {
    char *text = nullptr;
    std::uint32_t length = 0;
    if (XML_DOM_TranslateStr(node, XML_DOM_NO_DECLARATION, &text, &length) != XML_OK) return "";
    const Owned<char> owner{text};
    return {text, length};
}

std::string readBytes(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Owned<XML_DOM_Node> buildFromFile(const std::string &path) {
    char error[512] = "the file cannot be opened";
    Owned<XML_DOM_Node> root{XML_DOM_BuildTreeByFile(path.c_str(), sizeof error, error)};
    expect(root != nullptr, "read " + path + (root ? "" : ": " + toUtf8(error)));
    return root;
}

// ---- what is in the document ------------------------------------------------------------------

void showCounts(const Counts &counts) {
    std::printf("   elements %lu, attributes %lu, namespace declarations %lu\n", counts.elements,
                counts.attributes, counts.declarations);
    std::printf("   texts %lu, CDATA sections %lu, together %lu bytes in UTF-8\n", counts.texts,
                counts.sections, counts.textBytes);
    std::printf("   elements nested %u deep\n", counts.depth);
}

void showValues(const XML_DOM_Node *root) {
    heading("Values");
    const XML_DOM_Node *system = child(root, "system");
    std::printf("   %s: %s\n", textOf(child(system, "hostname")).c_str(),
                textOf(child(system, "description")).c_str());
    for (auto *vlan = XML_DOM_GetFirstChild(child(root, "vlans")); vlan;
         vlan = XML_DOM_GetNextSibling(vlan)) {
        if (const auto *description = child(vlan, "description")) {
            std::printf("   VLAN %-4s %-11s %s\n", attributeOf(vlan, "id").c_str(),
                        attributeOf(vlan, "name").c_str(), textOf(description).c_str());
        }
    }
    for (auto *port = XML_DOM_GetFirstChild(child(root, "interfaces")); port;
         port = XML_DOM_GetNextSibling(port)) {
        const auto *v4 = child(port, "ipv4");
        const auto *v6 = child(port, "ipv6");
        if (!v4) continue;
        std::printf("   %-9s %s/%s", attributeOf(port, "name").c_str(),
                    attributeOf(v4, "address").c_str(), attributeOf(v4, "prefix").c_str());
        if (v6) {
            std::printf(", %s/%s", attributeOf(v6, "address").c_str(),
                        attributeOf(v6, "prefix").c_str());
        }
        std::printf("\n");
    }
    const char *prefix = nullptr, *space = nullptr;
    XML_DOM_GetNodeNameSpace(child(root, "routing"), &prefix, &space);
    std::printf("   <%s:routing> is in %s\n", prefix, space);
    std::printf("   the banner, a CDATA section:%s",
                toUtf8(XML_DOM_GetFirstCDataChildValue(descend(root, "system/banner"))).c_str());

    expect(textOf(child(system, "hostname")) == "agg-east-3", "the host name is agg-east-3");
    expect(textOf(child(childWith(child(root, "vlans"), "id", "50"), "description")) ==
               "访客：仅互联网 & 限速",
           "VLAN 50 is described as 访客：仅互联网 & 限速");
    expect(XML_Strcmp(space, "urn:example:switch:routing:1") == 0, "the prefix rt is resolved");
}

// ---- changing it ------------------------------------------------------------------------------

// Creates <if:interface ...> with a child in a namespace that the document did not have.
bool addInterface(XML_DOM_Node *interfaces) {
    constexpr const char *kAttributes[][2] = {
        {"name", "1/0/6"}, {"type", "ethernet"}, {"enabled", "true"}, {"speed", "2500"}};
    XML_DOM_Node *port = XML_DOM_CreateElementNode("interface");
    if (XML_DOM_AddChildNode(interfaces, port) != XML_OK) return XML_DOM_DelNode(port), false;
    bool good = XML_DOM_SetNodeNameSpace(port, "if") == XML_OK &&
                XML_DOM_AddNodeNameSpace(port, "loc", "urn:example:location:1") == XML_OK;
    for (const auto &[name, value] : kAttributes) {
        good = good && XML_DOM_AddAttr(port, nullptr, name, value);
    }
    good = good && XML_DOM_AddAttr(port, "loc", "room", "3-106");
    XML_DOM_Node *place =
        XML_DOM_CreateElementWithText("place", toTree("三层东侧，茶水间对面").c_str());
    if (XML_DOM_AddChildNode(port, place) != XML_OK) return XML_DOM_DelNode(place), false;
    return good && XML_DOM_SetNodeNameSpace(place, "loc") == XML_OK;
}

void edit(XML_DOM_Node *root) {
    heading("Changes");
    XML_DOM_Node *description = descend(root, "system/description");
    const std::string text = toTree("东区三号楼汇聚交换机（2026 年扩容）");
    const bool set =
        XML_DOM_SetNodeValue(XML_DOM_GetFirstChild(description), text.c_str()) == XML_OK;
    expect(set, "set a value:      " + markup(description));

    XML_DOM_Node *interfaces = child(root, "interfaces");
    const bool added = addInterface(interfaces);
    const XML_DOM_Node *port = childWith(interfaces, "name", "1/0/6");
    expect(added && port, "added a node:     " + (port ? markup(port) : ""));

    XML_DOM_Node *removed = childWith(interfaces, "name", "2/0/36");
    const std::string was = removed ? markup(removed) : "";
    XML_DOM_DelNode(removed);
    expect(!was.empty() && !childWith(interfaces, "name", "2/0/36"), "removed a node:   " + was);

    XML_DOM_Node *mtu = child(childWith(interfaces, "name", "lag1"), "mtu");
    expect(XML_DOM_SetNodeValue(mtu, "9000") == XML_REFUSED,
           "refused: an element itself has no value, its text child has");
    expect(XML_DOM_AddAttr(mtu, "nosuch", "a", "b") == nullptr,
           "refused: an attribute with an undeclared prefix");
}

// ---- writing it and reading it back -----------------------------------------------------------

// Hands a piece of output to a file stream.
std::uint32_t toStream(void *stream, const char *bytes, std::uint32_t length) {
    return XML_IO_OutStreamAppend(static_cast<XML_IO_OutStream *>(stream), bytes, length);
}

// Writes piece by piece, without ever holding the whole text.
bool write(XML_DOM_Node *root, const std::string &path, std::uint32_t encoding) {
    std::error_code ignored;
    fs::remove(path, ignored);  // a file stream appends
    // The pieces come in the document's encoding already: equal encodings mean no conversion.
    const Owned<XML_IO_OutStream> file{
        XML_IO_FileOutStreamCreate(path.c_str(), encoding, encoding)};
    return file && XML_DOM_SetEncoding(root, encoding) == XML_OK &&
           XML_DOM_OutPutTranslateStr(root, 0, toStream, file.get()) == XML_OK;
}

void showFile(const std::string &path) {
    const std::string bytes = readBytes(path);
    std::string start;
    for (std::size_t i = 0; i < 8 && i < bytes.size(); ++i) {
        char hex[4];
        std::snprintf(hex, sizeof hex, "%02X ", static_cast<unsigned char>(bytes[i]));
        start += hex;
    }
    std::printf("   %s: %zu bytes, from %s...\n", path.c_str(), bytes.size(), start.c_str());
}

void roundTrips(XML_DOM_Node *root, const fs::path &directory) {
    struct Row {
        std::uint32_t encoding;
        const char *file;
    };
    constexpr Row kRows[] = {{XML_ENCODING_UTF_8, "switch.utf-8.xml"},
                             {XML_ENCODING_GB18030, "switch.gb18030.xml"},
                             {XML_ENCODING_UTF_16LE, "switch.utf-16le.xml"}};
    heading("Written and read back");
    for (const Row &row : kRows) {
        const char *name = XML_DOM_EncodingEnumToStr(row.encoding);
        const std::string path = (directory / row.file).string();
        expect(write(root, path, row.encoding), std::string("written in ") + name);
        showFile(path);
        const Owned<XML_DOM_Node> back = buildFromFile(path);
        unsigned long nodes = 0;
        const std::string found = difference(root, back.get(), nodes);
        expect(found.empty(), found.empty() ? std::to_string(nodes) + " nodes are the same"
                                            : "difference: " + found);
        expect(XML_DOM_GetEncoding(back.get()) == row.encoding,
               std::string("the tree knows its encoding, ") + name);
    }

    // Nothing is replaced by "?": a text that the encoding cannot hold is a failure.
    char *text = nullptr;
    XML_DOM_SetEncoding(root, XML_ENCODING_GB2312);
    const bool refused = XML_DOM_TranslateStr(root, 0, &text, nullptr) != XML_OK && !text;
    std::free(text);
    expect(refused, "refused: GB2312 has no 𠮷, which is in a description");
    XML_DOM_SetEncoding(root, XML_ENCODING_UTF_8);
}

// ---- documents and their schema -----------------------------------------------------------------

// What the validator says of a document.
std::string validate(XML_DOM_Node *root, const SchemaRoot &schemas) {
    SchemaErrorInfo error{};
    if (Schema_ValidateXml(root, &schemas, &error) != XML_OK) return "memory exhausted";
    char message[512] = "";
    if (error.code != 0) Schema_GetErrorDesc(&error, sizeof message, message);
    return toUtf8(message);
}

// A change that makes the document invalid, and what is then said of it.
struct Mistake {
    const char *what;
    void (*make)(XML_DOM_Node *root);
    const char *message;
};

XML_DOM_Node *select(XML_DOM_Node *root, const char *path) {
    return XML_DOM_SelectSingleNode(root, path);
}

const Mistake kMistakes[] = {
    {"a VLAN with the number 4095",
     [](XML_DOM_Node *root) {
         XML_DOM_Node *vlan = select(root, "vlans/vlan");
         XML_DOM_DelAttr(vlan, nullptr, "id");
         XML_DOM_AddAttr(vlan, nullptr, "id", "4095");
     },
     "The value of attribute 'id' for element '/switch/vlans[1]/vlan[1]' is invalid. "
     "The value must be less than or equal to 4094."},
    {"a VLAN without a state",
     [](XML_DOM_Node *root) { XML_DOM_DelAttr(select(root, "vlans/vlan"), nullptr, "state"); },
     "The element '/switch/vlans[1]/vlan[1]' should have an attribute 'state'."},
    {"a host name with blanks",
     [](XML_DOM_Node *root) {
         XML_DOM_SetNodeValue(XML_DOM_GetFirstChild(select(root, "system/hostname")), "east 3");
     },
     "The value of element '/switch/system[1]/hostname[1]' is invalid. "
     "The value does not match the regular expression."},
    {"no domain", [](XML_DOM_Node *root) { XML_DOM_DelNode(select(root, "system/domain")); },
     "Expecting element 'urn:example:switch:1':'domain' under element '/switch/system[1]'."},
    {"a range of VLANs from high to low",
     [](XML_DOM_Node *root) {
         XML_DOM_Node *ranges = select(root, "vlans/ranges");
         XML_DOM_DelAttr(ranges, nullptr, "reserved");
         XML_DOM_AddAttr(ranges, nullptr, "reserved", "4094-4040");
     },
     "The value of attribute 'reserved' for element '/switch/vlans[1]/ranges[1]' is invalid. "
     "Invalid VlanRange"},
};

void showValidation(const std::string &path) {
    heading("Validation");
    SchemaRoot schemas;
    Schema_InitRoot(&schemas);
    expect(SchemaReg_switch(&schemas) == XML_OK, "the schema is registered");
    {
        const Owned<XML_DOM_Node> root = buildFromFile(path);
        const std::string message = validate(root.get(), schemas);
        expect(root && message.empty(),
               "the document is valid" + (message.empty() ? "" : ": " + message));
    }
    for (const Mistake &mistake : kMistakes) {
        const Owned<XML_DOM_Node> root{XML_DOM_BuildTreeByFile(path.c_str(), 0, nullptr)};
        if (!root) continue;
        mistake.make(root.get());
        const std::string message = validate(root.get(), schemas);
        expect(message == mistake.message, std::string(mistake.what) + ":\n            " + message);
    }
    SchemaDereg_switch(&schemas);
    Schema_ExitRoot(&schemas);
}

// ---- a document that is not well-formed -------------------------------------------------------

void showBroken(const std::string &path) {
    heading("A broken document");
    char error[512] = "the file cannot be opened";
    const Owned<XML_DOM_Node> root{XML_DOM_BuildTreeByFile(path.c_str(), sizeof error, error)};
    const std::string report = toUtf8(error);
    std::printf("   %s says:\n   %s\n", path.c_str(), report.c_str());
    expect(!root, "no tree came out of it");
    expect(report.starts_with("The Line 4 Column 29 :\""), "line 4, column 29");
    expect(report.ends_with("\", tag name mismatch."), "an end tag with another name");
}

int run(const fs::path &data, const fs::path &output) {
    const std::string path = (data / "switch.xml").string();
    heading("Reading");
    const Owned<XML_DOM_Node> root = buildFromFile(path);
    if (!root) return 1;
    const Counts counts = countTree(root.get());
    showCounts(counts);
    Counts streamed;
    expect(countFile(path, streamed) && streamed == counts,
           "the parser's callbacks counted the same");
    expect(counts == Counts{314, 519, 10, 77, 6, 2126, 6}, "these are the figures of this file");

    heading("The same document in GB18030");
    const std::string bytes = readBytes((data / "switch.gb18030.xml").string());
    char error[512] = "";
    const Owned<XML_DOM_Node> other{XML_DOM_BuildTreeByMem(
        bytes.data(), static_cast<std::uint32_t>(bytes.size()), sizeof error, error)};
    expect(other != nullptr, "read from memory" + std::string(error));
    unsigned long nodes = 0;
    const std::string found = difference(root.get(), other.get(), nodes);
    expect(found.empty(),
           found.empty() ? std::to_string(nodes) + " nodes are the same" : "difference: " + found);

    showValues(root.get());
    edit(root.get());
    // What was compared must be able to differ.
    const std::string changed = difference(root.get(), other.get(), nodes);
    expect(!changed.empty(), "the comparison sees the changes: " + changed);
    roundTrips(root.get(), output);
    showBroken((data / "broken.xml").string());
    showValidation(path);
    std::printf("\n%s\n", failures == 0 ? "All as it should be." : "Something is off: see above.");
    return failures == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char **argv) {
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: demo DATA_DIRECTORY [OUTPUT_DIRECTORY]\n");
        return 1;
    }
    if (argc == 3) {
        std::error_code error;
        fs::create_directories(argv[2], error);
        return run(argv[1], argv[2]);
    }
    std::string directory =
        (fs::temp_directory_path() / "compactxml-demo-").string() + std::string(6, 'X');
    if (!mkdtemp(directory.data())) {
        std::perror("demo: no temporary directory");
        return 1;
    }
    const int result = run(argv[1], directory);
    std::printf("(The files went to a temporary directory. Name a directory to keep them.)\n");
    std::error_code ignored;
    fs::remove_all(directory, ignored);
    return result;
}
