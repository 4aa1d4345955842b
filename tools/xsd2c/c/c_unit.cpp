#include "xsd2c/c/c_unit.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "xsd2c/c/c_records.h"
#include "xsd2c/c/c_text.h"

namespace xsd2c {
namespace {

struct KindNames {
    std::int32_t kind;
    const char *record;    // its type in C
    const char *function;  // that gives one by its number
    const char *words;
};

constexpr KindNames kKinds[] = {
    {SCHEMA_KIND_SIMPLE_TYPE, "SchemaSimpleType", "simpleType", "simple type"},
    {SCHEMA_KIND_COMPLEX_TYPE, "SchemaComplexType", "complexType", "complex type"},
    {SCHEMA_KIND_ELEMENT, "SchemaElementDecl", "element", "element"},
    {SCHEMA_KIND_ATTRIBUTE, "SchemaAttributeDecl", "attribute", "attribute"},
    {SCHEMA_KIND_ATTRIBUTE_GROUP, "SchemaAttributeGroup", "attributeGroup", "attribute group"},
    {SCHEMA_KIND_MODEL_GROUP, "SchemaModelGroup", "modelGroup", "group"},
};

const KindNames &namesOf(std::int32_t kind) {
    for (const KindNames &names : kKinds) {
        if (names.kind == kind) return names;
    }
    throw std::logic_error("a unit does not offer things of kind " + std::to_string(kind));
}

std::string firstLine(const UnitName &unit) {
    return "/* Written by xsd2c from " + commentText(unit.document) + ". Do not edit. */\n";
}

std::string accessorHead(const TopObject &object, const std::string &name) {
    return std::string("const ") + namesOf(object.object.kind).record + " *" + name + "(void)";
}

std::string description(const TopObject &object) {
    std::string text = std::string("/* The ") + namesOf(object.object.kind).words + " \"" +
                       commentText(object.name) + "\"";
    if (!object.ns.empty()) text += " of \"" + commentText(object.ns) + "\"";
    return text + ". */\n";
}

std::string markerCode(const UnitName &unit) {
    std::string code = "const char *g_szGatherXsd_" + unit.schema + " =\n    ";
    WordWrap words(code, 4, 4);
    for (const std::string &piece : literalPieces("____xsd2c_xsd_filename____:" + unit.document)) {
        words.add(piece);
    }
    return code + ";\n";
}

std::string tableCode(const Records &records) {
    std::string code =
        "\n/* What is registered, in the order of the schema. */\n"
        "static const SchemaTopObject topObjects[] = {\n";
    for (const TopObject &object : records.top) {
        if (object.isRegistered()) code += "    " + typedRefCode(records, object.object) + ",\n";
    }
    return code + "};\n";
}

// The functions that the accessors call. Clang looks at everything that a function refers to, here
// all records: for many functions that took minutes, and again as soon as these were inline.
std::string lookupCode(const Records &records) {
    std::string code =
        "\n/* Clang takes long over many functions that refer to all records. */\n"
        "#ifdef __clang__\n"
        "#define NOT_INLINE __attribute__((noinline))\n"
        "#else\n#define NOT_INLINE\n#endif\n";
    for (const KindNames &names : kKinds) {
        const auto first =
            std::find_if(records.top.begin(), records.top.end(),
                         [&](const TopObject &object) { return object.object.kind == names.kind; });
        if (first == records.top.end()) continue;
        code += std::string("\nNOT_INLINE static const ") + names.record + " *" + names.function +
                "(size_t number) {\n    return &records." + locate(records, first->object).member +
                "[number];\n}\n";
    }
    return code;
}

std::string accessorCode(const Records &records, const TopObject &object, const std::string &name) {
    return "\n" + accessorHead(object, name) + " {\n    return " +
           namesOf(object.object.kind).function + "(" +
           std::to_string(locate(records, object.object).number) + ");\n}\n";
}

// A function that calls another one of the library for each registered object.
std::string loopCode(const std::string &name, const std::string &function, bool hasObjects) {
    const std::string head = "\nuint32_t " + name + "(SchemaRoot *root) {\n";
    if (!hasObjects) return head + "    (void)root;\n    return XML_OK;\n}\n";
    return head +
           "    uint32_t result = XML_OK;\n"
           "    size_t i;\n"
           "    for (i = 0; i < sizeof topObjects / sizeof topObjects[0]; i++) {\n"
           "        result += " +
           function +
           "(root, &topObjects[i]);\n"
           "    }\n"
           "    return result;\n"
           "}\n";
}

}  // namespace

std::string headerText(const UnitName &unit, const Records &records) {
    const std::string guard = "XSD2C_" + unit.schema + "_H";
    std::string text = firstLine(unit) + "#ifndef " + guard + "\n#define " + guard + "\n";
    text +=
        "\n#include <compactxml.h>\n"
        "\n#ifdef __cplusplus\nextern \"C\" {\n#endif\n"
        "\n/* Names the schema document. */\n"
        "extern const char *g_szGatherXsd_" +
        unit.schema + ";\n";
    const std::vector<std::string> names = accessorNames(unit, records);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const TopObject &object = records.top[i];
        text += "\n" + description(object) + accessorHead(object, names[i]) + ";\n";
    }
    text +=
        "\n/* Registers what the schema declares with a root. Returns 0 when all is registered, "
        "else the\n"
        " * sum of what Schema_RegTopObject returned. */\n"
        "uint32_t SchemaReg_" +
        unit.schema +
        "(SchemaRoot *root);\n"
        "\n/* Removes what the schema declares from a root. Returns 0. */\n"
        "uint32_t SchemaDereg_" +
        unit.schema + "(SchemaRoot *root);\n";
    return text + "\n#ifdef __cplusplus\n}\n#endif\n\n#endif\n";
}

std::string sourceText(const UnitName &unit, const Records &records) {
    std::string text = firstLine(unit) + "#include \"" + unit.schema +
                       ".h\"\n\n#include <stddef.h>\n\n" + markerCode(unit);
    bool hasObjects = false;
    for (const TopObject &object : records.top) hasObjects = hasObjects || object.isRegistered();
    // Nothing would refer to the records of a unit that offers none.
    if (!records.top.empty()) text += "\n" + recordsCode(records) + lookupCode(records);
    if (hasObjects) text += tableCode(records);
    const std::vector<std::string> names = accessorNames(unit, records);
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += accessorCode(records, records.top[i], names[i]);
    }
    text += loopCode("SchemaReg_" + unit.schema, "Schema_RegTopObject", hasObjects);
    return text + loopCode("SchemaDereg_" + unit.schema, "Schema_DeregTopObject", hasObjects);
}

}  // namespace xsd2c
